#include "app/window_registry.h"

namespace tornelia {

void registerToolsWindows(WindowRegistry& /*registry*/) {}

}  // namespace tornelia
