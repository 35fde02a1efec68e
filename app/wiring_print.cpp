#include "app/window_registry.h"

#include "app/app_context.h"
#include "app/main_layout.h"
#include "print/frm_imp.h"
#include "print/frm_preview.h"
#include "print/print_job.h"

#include <QWidget>

namespace tornelia {

namespace {

FrmPreview* openPreview(const WindowHost& host)
{
    return host.owner ? host.owner->findChild<FrmPreview*>() : nullptr;
}

// AntEP: the stored page, then the preview laid out on it; an open preview
// is laid out again and comes forward.
void showPreview(const WindowHost& host)
{
    PageSettings page;
    CaricaMargini(host.context.settings(), page);
    if (FrmPreview* open = openPreview(host)) {
        open->layOut(marginsForPrint(page), page.Orientamento);
        open->raise();
        open->activateWindow();
        return;
    }
    auto* preview = new FrmPreview(*host.context.testo().document(), page, host.context.messages(), host.owner);
    preview->show();
}

}  // namespace

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
            // An open preview follows the new page as well.
            QWidget* owner = host.owner;
            QObject::connect(dialog, &FrmImp::confirmed, owner, [owner](const PageSettings& page) {
                if (auto* preview = owner->findChild<FrmPreview*>())
                    preview->relayFromPageWindow(page);
            });
        }
        dialog->show();
    });

    registry.add(Window::frmPreview, showPreview);
    registry.addFeature(Feature::AntEP, [](const WindowHost& host, const QString&) { showPreview(host); });
    registry.addFeature(Feature::StaMpa, [](const WindowHost& host, const QString&) {
        PageSettings page;
        CaricaMargini(host.context.settings(), page);
        StaMpa(host.owner, host.context.messages(), *host.context.testo().document(), page);
    });
}

}  // namespace tornelia
