#include "app/app_context.h"
#include "app/window_registry.h"
#include "macro/frm_mac.h"

#include <QWidget>

namespace tornelia {

void registerMacroWindows(WindowRegistry& registry)
{
    registry.add(Window::frmMac, [](const WindowHost& host) {
        // One macro window beside the document: asked again, it comes to
        // the front with the macro that is in it.
        if (host.owner) {
            if (auto* open = host.owner->findChild<frmMac*>(QStringLiteral("frmMac"), Qt::FindDirectChildrenOnly)) {
                open->show();
                open->raise();
                open->activateWindow();
                return;
            }
        }
        AppContext& ctx = host.context;
        auto* window = new frmMac(MacroHost{ctx.testo(), ctx.messages(), host.procedures, &ctx.document(), &ctx.undo()},
                                  ctx.dialogs(), host.owner);
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->show();
    });
}

}  // namespace tornelia
