#include "app/window_registry.h"

#include "app/app_context.h"
#include "app/main_layout.h"
#include "print/frm_imp.h"

#include <QWidget>

namespace tornelia {

void registerPrintWindows(WindowRegistry& registry)
{
    registry.add(Window::frmImp, [](const WindowHost& host) {
        auto* dialog = new FrmImp(host.context.settings(), host.context.messages(), host.owner);
        // The main window's layout, when it has one, shows the new page at once.
        if (host.owner) {
            if (auto* layout = host.owner->findChild<MainLayout*>(QString(), Qt::FindDirectChildrenOnly))
                QObject::connect(dialog, &FrmImp::confirmed, layout, &MainLayout::applyPage);
        }
        dialog->show();
    });
}

}  // namespace tornelia
