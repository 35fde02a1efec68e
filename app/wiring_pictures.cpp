#include "app/window_registry.h"

#include "app/app_context.h"
#include "colour/colore.h"
#include "core/picture.h"
#include "pictures/picture_windows.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTextCursor>

#include <algorithm>

namespace tornelia {

namespace {

using namespace pictures;

// The selected picture's image, read while the clipboard is borrowed for a
// copy of it, as the paste and copy of the document would see it.
QImage copySelectedPicture(AppContext& context)
{
    ClipboardGuard guard;
    guard.saveClipboard();
    context.testo().Copy();
    QImage image = QGuiApplication::clipboard()->image();
    if (image.isNull())
        image = selectedPicture(context.testo());
    guard.restoreClipboard();
    return image;
}

// The chosen bullet goes at the start of the current paragraph at once;
// Enter then starts each new line with a copy of it.
void startPictureBullet(AppContext& context, MainProcedures& procedures, const QImage& picture)
{
    RichTextSurface& t = context.testo();
    procedures.setBulletPicture(picture);
    QTextCursor c = t.cursor();
    c.clearSelection();
    c.movePosition(QTextCursor::StartOfBlock);
    t.adoptCursor(c);
    // The blanks after the bullet take the paragraph's font, so that the
    // line reads on in it.
    const QTextCharFormat typed = textFormatAt(c);
    procedures.saveClipboard();
    procedures.copyBulletPicture();
    context.undo().unDO();
    t.Paste();
    t.setSelText(QStringLiteral("  "));
    QTextCursor blanks = t.cursor();
    blanks.setPosition(std::max(0, blanks.position() - 2), QTextCursor::KeepAnchor);
    blanks.setCharFormat(typed);
    context.undo().unDO();
    procedures.restoreClipboard();
}

}  // namespace

void registerPicturesWindows(WindowRegistry& registry)
{
    registry.add(Window::frmIm, [](const WindowHost& host) {
        FrmIm dialog(host.context.testo(), host.context.undo(), host.context.dialogs(), host.owner);
        dialog.exec();
    });
    registry.add(Window::Form1, [](const WindowHost& host) {
        AppContext& ctx = host.context;
        const QString temp = ctx.dataFolder() + QStringLiteral("/temp");
        QWidget* owner = host.owner;
        Form1 dialog(ctx.testo(), ctx.undo(), ctx.messages(), temp,
                     [&ctx, owner](Colour start) -> std::optional<Colour> {
                         colour::Colore c(ctx.dataFolder(), &ctx.messages());
                         c.setColor(start);
                         if (!c.Show(owner))
                             return std::nullopt;
                         return c.Color();
                     },
                     owner);
        dialog.exec();
    });
    registry.add(Window::frmPar, [](const WindowHost& host) {
        FrmPar dialog(host.owner);
        if (dialog.exec() == QDialog::Accepted && !dialog.chosen().isNull())
            startPictureBullet(host.context, host.procedures, dialog.chosen());
    });
    registry.addFeature(Feature::PaRImM, [](const WindowHost& host, const QString&) {
        FrmPar dialog(host.owner);
        if (dialog.exec() == QDialog::Accepted && !dialog.chosen().isNull())
            startPictureBullet(host.context, host.procedures, dialog.chosen());
    });
    registry.addFeature(Feature::proprietaImmagine, [](const WindowHost& host, const QString&) {
        AppContext& ctx = host.context;
        if (!isPictureSelected(ctx.testo())) {
            ctx.messages().mostraMsg(QStringLiteral("Proprietà immagine"),
                                     QStringLiteral("Selezionare prima un'immagine del documento."), 0, 48);
            return;
        }
        FrmAIm progress(host.owner);
        progress.show();
        progress.Aggion();
        const QImage picture = copySelectedPicture(ctx);
        FrmImProp dialog(ctx.testo(), ctx.messages(), ctx.dialogs(), picture, host.owner);
        progress.close();
        dialog.exec();
    });
    registry.addFeature(Feature::salvaImmagine, [](const WindowHost& host, const QString&) {
        AppContext& ctx = host.context;
        const QImage picture = copySelectedPicture(ctx);
        if (picture.isNull()) {
            ctx.messages().mostraMsg(QStringLiteral("Salva immagine"),
                                     QStringLiteral("Selezionare prima un'immagine del documento."), 0, 48);
            return;
        }
        const auto path = ctx.dialogs().chooseFile(FileChoice::SavePicture, QStringLiteral("immagine.png"));
        if (path && !picture.save(*path))
            ctx.messages().mostraMsg(QStringLiteral("Salva immagine"),
                                     QStringLiteral("Impossibile salvare l'immagine in \"%1\".").arg(*path), 0, 16);
    });
}

}  // namespace tornelia
