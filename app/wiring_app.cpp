#include "app/window_registry.h"

namespace tornelia {

void registerAppWindows(WindowRegistry& registry)
{
    (void)registry.has(Window::frmCor);
}

}  // namespace tornelia
