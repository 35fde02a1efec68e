#include "app/window_registry.h"

namespace tornelia {

// The filedialog folder's windows and procedures join the registry here; until one
// is added, the commands that reach it stay disabled.
void registerFileDialogWindows(WindowRegistry& /*registry*/)
{
}

}  // namespace tornelia
