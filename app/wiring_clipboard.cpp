#include "app/window_registry.h"

#include "app/app_context.h"
#include "app/main_layout.h"
#include "clipboard/clip_panel.h"
#include "clipboard/clip_windows.h"

#include <QAction>
#include <QWidget>

namespace tornelia {

namespace {

const QString kApp = QStringLiteral("Tornelia");
const QString kSection = QStringLiteral("Appunti");

Clip* findPanel(QWidget* owner)
{
    return owner ? owner->findChild<Clip*>(QStringLiteral("Clip")) : nullptr;
}

// Shows or hides the panel with its splitter, keeps the menu check and the
// stored state in step, and lets the window lay itself out again.
void showPanel(AppContext& context, QWidget* owner, Clip* clip, bool shown)
{
    if (auto* sep = owner->findChild<ClipSplitter*>(QStringLiteral("PSep")))
        sep->setVisible(shown);
    clip->setVisible(shown);
    context.settings().scriviReg(kApp, kSection, QStringLiteral("1"), shown ? QStringLiteral("1") : QStringLiteral("0"));
    if (auto* check = owner->findChild<QAction*>(QStringLiteral("mnuAppunti")))
        check->setChecked(shown);
    if (auto* layout = owner->findChild<MainLayout*>()) {
        layout->RiDime();
        layout->moVCliP();
    }
    if (shown)
        clip->Aggiorna();
}

// The panel is made once, the first time something needs it, as a child of
// the area the main window's layout places.
Clip* ensurePanel(const WindowHost& host)
{
    if (!host.owner)
        return nullptr;
    if (Clip* clip = findPanel(host.owner))
        return clip;
    auto* layout = host.owner->findChild<MainLayout*>();
    QWidget* parent = layout && layout->area() ? layout->area() : host.owner;
    auto* source = new SystemClipSource;
    auto* target = new SurfaceClipTarget(host.context.testo(), host.context.undo(), host.procedures);
    auto* clip = new Clip(*source, *target, host.context.settings(), parent);
    QObject::connect(clip, &QObject::destroyed, [source, target] {
        delete source;
        delete target;
    });
    clip->hide();
    auto* sep = new ClipSplitter(*clip, parent);
    sep->hide();
    AppContext* context = &host.context;
    QWidget* owner = host.owner;
    clip->onNascondi = [context, owner, clip] { showPanel(*context, owner, clip, false); };
    clip->onRilettura = [context, owner, clip] {
        const bool stored = context->settings().leggiReg(kApp, kSection, QStringLiteral("1"), QStringLiteral("1")) ==
                            QLatin1String("1");
        if (stored == clip->isHidden())
            showPanel(*context, owner, clip, stored);
    };
    sep->relayout = [layout] {
        if (layout)
            layout->moVCliP();
    };
    sep->widthChosen = [context, clip](int width) {
        ClipOptions o = clip->options();
        o.width = width;
        o.write(context->settings());
        clip->applyOptions(o);
    };
    if (layout)
        layout->setClipPanel(clip, sep);
    return clip;
}

}  // namespace

void registerClipboardWindows(WindowRegistry& registry)
{
    // "avvio" brings the panel back as it was left; anything else toggles it.
    registry.addFeature(Feature::appunti, [](const WindowHost& host, const QString& argument) {
        Clip* clip = ensurePanel(host);
        if (!clip)
            return;
        const bool shown = argument == QLatin1String("avvio")
                               ? host.context.settings().leggiReg(kApp, kSection, QStringLiteral("1"),
                                                                  QStringLiteral("1")) == QLatin1String("1")
                               : clip->isHidden();
        showPanel(host.context, host.owner, clip, shown);
    });
    registry.addFeature(Feature::opzioniAppunti, [](const WindowHost& host, const QString&) {
        if (Clip* clip = ensurePanel(host))
            clip->opzioni();
    });
    registry.add(Window::frmApp, [](const WindowHost& host) {
        if (host.owner) {
            if (auto* open = host.owner->findChild<FrmApp*>(); open && open->isVisible()) {
                open->guarda();
                open->raise();
                open->activateWindow();
                return;
            }
        }
        auto* viewer = new FrmApp(host.owner);
        viewer->setAttribute(Qt::WA_DeleteOnClose);
        viewer->show();
    });
    registry.add(Window::frmInc, [](const WindowHost& host) {
        if (host.owner) {
            if (auto* open = host.owner->findChild<FrmInc*>(); open && open->isVisible()) {
                open->raise();
                open->activateWindow();
                return;
            }
        }
        auto* dialog = new FrmInc(host.context.testo(), host.procedures, host.owner);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        QWidget* owner = host.owner;
        dialog->refreshPanel = [owner] {
            if (Clip* clip = findPanel(owner))
                clip->Aggiorna();
        };
        dialog->setModal(true);
        dialog->show();
    });
}

}  // namespace tornelia
