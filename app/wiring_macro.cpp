#include "app/window_registry.h"

namespace tornelia {

void registerMacroWindows(WindowRegistry& /*registry*/) {}

}  // namespace tornelia
