#include "app/window_registry.h"

namespace tornelia {

void registerRtfWindows(WindowRegistry& /*registry*/) {}

}  // namespace tornelia
