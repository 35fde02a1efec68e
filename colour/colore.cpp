#include "colour/colore.h"

#include "colour/frm_col.h"
#include "core/ports.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QMessageBox>
#include <QScreen>
#include <QWidget>

namespace tornelia::colour {

Colore::Colore(QString folder, MessagePort* messages) : folder_(std::move(folder)), messages_(messages) {}

bool Colore::setIcon(const QString& path)
{
    QImageReader reader(path);
    const QByteArray format = reader.format().toLower();
    const QSize size = reader.size();
    // An icon is an .ico file, or a small square picture such as the
    // desktop's own icons.
    const bool isIcon = format == "ico"
                        || ((format == "png" || format == "svg" || format == "xpm") && size.isValid()
                            && size.width() == size.height() && size.width() <= 256);
    QIcon icon;
    if (isIcon)
        icon = QIcon(path);
    if (!isIcon || icon.isNull()) {
        const QString title = QStringLiteral("Errore"), text = QStringLiteral("Non è un icona!");
        if (messages_)
            messages_->mostraMsg(title, text, 0, 3);
        else
            QMessageBox::warning(nullptr, title, text);
        return false;
    }
    icon_ = icon;
    return true;
}

QPoint Colore::placeFor(QSize size, QWidget* owner) const
{
    QScreen* screen = owner ? owner->screen() : QGuiApplication::primaryScreen();
    const QRect avail = screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
    QPoint at;
    switch (start_) {
    case Manual: at = QPoint(left_, top_); break;
    case CenterOwner:
        if (owner) {
            const QRect o = owner->window()->frameGeometry();
            at = o.center() - QPoint(size.width() / 2, size.height() / 2);
            break;
        }
        [[fallthrough]];
    case CenterScreen: at = avail.center() - QPoint(size.width() / 2, size.height() / 2); break;
    case WindowsDefault: at = avail.topLeft() + QPoint(40, 40); break;
    }
    if (adjust_) {
        at.setX(std::max(avail.left(), std::min(at.x(), avail.right() + 1 - size.width())));
        at.setY(std::max(avail.top(), std::min(at.y(), avail.bottom() + 1 - size.height())));
    }
    return at;
}

bool Colore::Show(QWidget* owner)
{
    FrmCol dialog(color_, mode_, folder_, messages_, owner);
    if (!icon_.isNull())
        dialog.setWindowIcon(icon_);
    dialog.adjustSize();
    dialog.move(placeFor(dialog.sizeHint(), owner));
    if (dialog.exec() != QDialog::Accepted)
        return false;
    color_ = dialog.colour();
    return true;
}

}  // namespace tornelia::colour
