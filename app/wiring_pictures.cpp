#include "app/window_registry.h"

namespace tornelia {

// The pictures folder's windows and procedures join the registry here; until one
// is added, the commands that reach it stay disabled.
void registerPicturesWindows(WindowRegistry& /*registry*/)
{
}

}  // namespace tornelia
