#include "app/window_registry.h"

namespace tornelia {

// The services folder's windows and procedures join the registry here; until one
// is added, the commands that reach it stay disabled.
void registerServicesWindows(WindowRegistry& /*registry*/)
{
}

}  // namespace tornelia
