#include "colour/colore.h"

#include "colour/frm_col.h"
#include "core/ports.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QMessageBox>
#include <QScreen>
#include <QWidget>

#include <algorithm>

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
    iconPath_ = path;
    return true;
}

QVariantMap Colore::properties() const
{
    return {{QStringLiteral("Color"), qlonglong(color_)},
            {QStringLiteral("Icon"), iconPath_},
            {QStringLiteral("DialogLeft"), left_},
            {QStringLiteral("DialogTop"), top_},
            {QStringLiteral("AdjustPosition"), adjust_},
            {QStringLiteral("DialogStartUpPosition"), int(start_)},
            {QStringLiteral("Mode"), int(mode_)}};
}

void Colore::setProperties(const QVariantMap& bag)
{
    const auto number = [&bag](const char* key, int low, int high, int fallback) {
        bool ok = false;
        const int v = bag.value(QLatin1String(key)).toInt(&ok);
        return ok && v >= low && v <= high ? v : fallback;
    };
    if (bag.contains(QStringLiteral("Color")))
        setColor(std::uint32_t(bag.value(QStringLiteral("Color")).toLongLong()));
    left_ = number("DialogLeft", -100000, 100000, left_);
    top_ = number("DialogTop", -100000, 100000, top_);
    if (bag.contains(QStringLiteral("AdjustPosition")))
        adjust_ = bag.value(QStringLiteral("AdjustPosition")).toBool();
    start_ = StartUpPosition(number("DialogStartUpPosition", Manual, WindowsDefault, int(start_)));
    mode_ = FieldMode(number("Mode", 0, 2, int(mode_)));
    // An icon file that has gone or changed is refused with its message.
    const QString icon = bag.value(QStringLiteral("Icon")).toString();
    if (!icon.isEmpty() && icon != iconPath_)
        setIcon(icon);
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
