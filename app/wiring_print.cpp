#include "app/window_registry.h"

#include "app/app_context.h"
#include "app/main_layout.h"
#include "print/frm_imp.h"

#include <QWidget>

namespace tornelia {

void registerPrintWindows(WindowRegistry& registry)
{
    registry.add(Window::frmImp, [](const WindowHost& host) {
        // One page window at a time: asked again, the open one comes forward.
        if (host.owner) {
            if (auto* open = host.owner->findChild<FrmImp*>()) {
                open->raise();
                open->activateWindow();
                return;
            }
        }
        auto* dialog = new FrmImp(host.context.settings(), host.context.messages(), host.owner);
        // The main window's layout, when it has one, shows the new page at once.
        if (host.owner) {
            if (auto* layout = host.owner->findChild<MainLayout*>())
                QObject::connect(dialog, &FrmImp::confirmed, layout, &MainLayout::applyPage);
        }
        dialog->show();
    });
}

}  // namespace tornelia
