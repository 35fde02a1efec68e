#include "app/window_registry.h"

namespace tornelia {

// The file dialog has no command of its own: every chooser of the program
// reaches frmCD through the window's DialogPort (app/gui_ports.cpp), so
// nothing is registered here.
void registerFileDialogWindows(WindowRegistry& /*registry*/)
{
}

}  // namespace tornelia
