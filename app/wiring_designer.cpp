#include "app/window_registry.h"

#include "app/app_context.h"
#include "pictures/designer/designer_window.h"

namespace tornelia {

void registerDesignerWindows(WindowRegistry& registry)
{
    // One designer at a time: asking again brings the open one forward,
    // with the picture the user was working on.
    registry.add(Window::form2, [](const WindowHost& host) {
        AppContext& ctx = host.context;
        if (host.owner) {
            if (auto* open = host.owner->findChild<designer::Form2*>(); open && open->isVisible()) {
                open->raise();
                open->activateWindow();
                return;
            }
        }
        const QString data = ctx.dataFolder();
        auto* w = new designer::Form2(designer::DesignerHost{ctx.testo(), ctx.undo(), ctx.messages(), ctx.dialogs(),
                                                            data + QStringLiteral("/temp"),
                                                            data + QStringLiteral("/sfondi"),
                                                            designer::shippedSfondiFolder()},
                                      host.owner);
        w->setAttribute(Qt::WA_DeleteOnClose);
        w->show();
    });
}

}  // namespace tornelia
