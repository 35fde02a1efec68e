#include "app/window_registry.h"

#include "app/app_context.h"
#include "app/frm_cor.h"
#include "app/frm_opz.h"
#include "app/frm_recuper.h"
#include "app/main_window.h"
#include "core/recent_files.h"

#include <QDir>

namespace tornelia {

void registerAppWindows(WindowRegistry& registry)
{
    // The options and the corrections change settings that the program reads
    // as it goes: modal, so nothing runs against half-changed values.
    registry.add(Window::FrmOpz, [](const WindowHost& host) {
        auto* w = new FrmOpz(host.context.settings(), host.context.dialogs(), host.context.messages(), host.owner);
        // Clearing the list there empties the File menu at once.
        if (auto* main = qobject_cast<MainWindow*>(host.owner))
            w->setRecentFiles(&main->recentFiles());
        w->setAssociazioni([procedures = &host.procedures] { procedures->showWindow(Window::FrmAsso); });
        w->setAttribute(Qt::WA_DeleteOnClose);
        w->setWindowModality(Qt::ApplicationModal);
        w->exec();
        // The clipboard panel takes its page of the options at once.
        if (QWidget* clip = host.owner ? host.owner->findChild<QWidget*>(QStringLiteral("Clip")) : nullptr)
            QMetaObject::invokeMethod(clip, "rileggiOpzioni");
    });
    registry.add(Window::frmCor, [](const WindowHost& host) {
        auto* w = new FrmCor(host.context.settings(), host.owner);
        w->setAttribute(Qt::WA_DeleteOnClose);
        w->setWindowModality(Qt::ApplicationModal);
        w->exec();
    });
    // The recovery list can stay open beside the document.
    registry.add(Window::frmRecuper, [](const WindowHost& host) {
        // Asked for again, the open list comes to the front.
        if (auto* open = host.owner->findChild<FrmRecuper*>(QString(), Qt::FindDirectChildrenOnly)) {
            open->raise();
            open->activateWindow();
            return;
        }
        const QString temp = QDir(AppContext::ensureDataFolder()).filePath(QStringLiteral("temp"));
        auto* w = new FrmRecuper(host.context.document(), host.context.messages(), host.context.shell(), temp,
                                 host.owner);
        w->setAttribute(Qt::WA_DeleteOnClose);
        w->show();
    });
}

}  // namespace tornelia
