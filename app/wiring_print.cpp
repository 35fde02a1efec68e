#include "app/window_registry.h"

namespace tornelia {

void registerPrintWindows(WindowRegistry& /*registry*/) {}

}  // namespace tornelia
