#include "app/window_registry.h"

#include "app/app_context.h"
#include "services/doc_services.h"
#include "services/service_windows.h"

#include <QCoreApplication>
#include <QWidget>

namespace tornelia {

namespace {

// One window of a kind at a time: asked again, the open one comes forward.
template <typename W>
bool raiseOpen(QWidget* owner)
{
    if (!owner)
        return false;
    for (QObject* child : owner->children()) {
        if (auto* w = qobject_cast<W*>(child); w && w->isVisible()) {
            w->raise();
            w->activateWindow();
            return true;
        }
    }
    return false;
}

template <typename W>
void runModal(W* w)
{
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->setWindowModality(Qt::ApplicationModal);
    w->exec();
}

void openCR(const WindowHost& host)
{
    // Shown without waiting and owned by nobody, so it outlives nothing.
    auto* w = new CR(host.context.undo(), host.context.messages(), nullptr);
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->show();
}

void openAbout(const WindowHost& host)
{
    const QString tool = findTool(QStringLiteral("about"), toolFolders(host.context.dataFolder()));
    if (!tool.isEmpty() && host.context.shell().startDetached(tool, {}))
        return;
    runModal(new FrmInfo(host.context.dataFolder(), host.owner));
}

}  // namespace

void registerServicesWindows(WindowRegistry& registry)
{
    registry.add(Window::cR, openCR);
    registry.add(Window::frmZip, [](const WindowHost& host) {
        if (raiseOpen<FrmZip>(host.owner))
            return;
        auto* w = new FrmZip(host.context.dialogs(), host.context.messages(), host.context.shell(),
                             toolFolders(host.context.dataFolder()), host.owner);
        w->setAttribute(Qt::WA_DeleteOnClose);
        w->show();
    });
    registry.add(Window::FrmDebuG, [](const WindowHost& host) {
        if (raiseOpen<FrmDebuG>(host.owner))
            return;
        auto* w = new FrmDebuG(host.context.messages(), host.context.shell(), host.context.dataFolder(), host.owner);
        w->setAttribute(Qt::WA_DeleteOnClose);
        w->show();
    });
    // Modal: the options window that opens it is modal too.
    registry.add(Window::FrmAsso, [](const WindowHost& host) {
        runModal(new FrmAsso(host.context.messages(), QCoreApplication::applicationFilePath(), host.owner));
    });
    // The composers replace the whole document: nothing else may run meanwhile.
    registry.add(Window::frmLett,
                 [](const WindowHost& host) { runModal(new FrmLett(host.context.testo(), host.owner)); });
    registry.add(Window::frmFax, [](const WindowHost& host) { runModal(new FrmFax(host.context.testo(), host.owner)); });

    registry.addFeature(Feature::MaIL, [](const WindowHost& host, const QString& address) {
        sendByMail(host.context.shell(), host.context.testo(), address);
    });
    registry.addFeature(Feature::CripT, [](const WindowHost& host, const QString&) { openCR(host); });
    registry.addFeature(Feature::DeCripT, [](const WindowHost& host, const QString&) { openCR(host); });
    registry.addFeature(Feature::cifraturaDocumento, [](const WindowHost& host, const QString&) {
        const QString tool = findTool(QStringLiteral("encrypt"), toolFolders(host.context.dataFolder()));
        if (!tool.isEmpty())
            host.context.shell().startDetached(tool, {});
    });
    registry.addFeature(Feature::cifraDocumentoCorrente, [](const WindowHost& host, const QString&) {
        encryptCurrentDocument(host.context.document(), host.context.testo(), host.context.messages(),
                               host.context.shell(), toolFolders(host.context.dataFolder()));
    });
    registry.addFeature(Feature::DeBugG,
                        [](const WindowHost& host, const QString&) { host.procedures.showWindow(Window::FrmDebuG); });
    registry.addFeature(Feature::informazioni, [](const WindowHost& host, const QString&) { openAbout(host); });
    registry.addFeature(Feature::associazioni,
                        [](const WindowHost& host, const QString&) { host.procedures.showWindow(Window::FrmAsso); });
    registry.addFeature(Feature::lettera,
                        [](const WindowHost& host, const QString&) { host.procedures.showWindow(Window::frmLett); });
    registry.addFeature(Feature::fax,
                        [](const WindowHost& host, const QString&) { host.procedures.showWindow(Window::frmFax); });
}

}  // namespace tornelia
