#include "app/app_context.h"
#include "app/window_registry.h"
#include "rtf/frm_api_ped.h"
#include "rtf/frm_ce.h"
#include "rtf/frm_ond.h"
#include "rtf/frm_sott.h"

#include <QDialog>

namespace tornelia {

namespace {

// Every change these windows make to the document can be undone.
std::function<void()> undoStep(const WindowHost& host)
{
    AppContext* context = &host.context;
    MainProcedures* procedures = &host.procedures;
    return [context, procedures] {
        context->undo().unDO();
        procedures->CmeN();
    };
}

// The windows stay open beside the document and go when closed. Asking
// for one that is open already brings it to the front instead of opening a
// second.
template <typename Make>
void showModeless(const WindowHost& host, const QString& name, Make make)
{
    QDialog* window = host.owner ? host.owner->findChild<QDialog*>(name, Qt::FindDirectChildrenOnly) : nullptr;
    // A closed one is on its way out.
    if (!window || !window->isVisible()) {
        window = make();
        window->setAttribute(Qt::WA_DeleteOnClose);
    }
    window->show();
    window->raise();
    window->activateWindow();
}

}  // namespace

void registerRtfWindows(WindowRegistry& registry)
{
    registry.add(Window::frmOnd, [](const WindowHost& host) {
        showModeless(host, QStringLiteral("frmOnd"), [&] {
            return new FrmOnd(host.context.testo(), host.context.messages(), undoStep(host), host.owner);
        });
    });
    registry.add(Window::frmCE, [](const WindowHost& host) {
        showModeless(host, QStringLiteral("frmCE"), [&] {
            return new FrmCE(host.context.testo(), host.context.messages(), &host.context.dialogs(), undoStep(host),
                             host.owner);
        });
    });
    registry.add(Window::frmSott, [](const WindowHost& host) {
        showModeless(host, QStringLiteral("frmSott"), [&] {
            return new FrmSott(host.context.testo(), host.context.messages(), undoStep(host), host.owner);
        });
    });
    registry.add(Window::FrmApiPed, [](const WindowHost& host) {
        showModeless(host, QStringLiteral("FrmApiPed"), [&] {
            return new FrmApiPed(host.context.testo(), host.context.messages(), undoStep(host), host.owner);
        });
    });
}

}  // namespace tornelia
