#include "controls/cmb.h"

#include <QFontDatabase>
#include <QPainter>
#include <QPixmap>
#include <QStyledItemDelegate>

namespace tornelia {

namespace {

constexpr int kColourRole = Qt::UserRole + 1;

QColor toQColor(Colour c) { return QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF)); }

QIcon swatch(Colour c)
{
    QPixmap p(16, 12);
    p.fill(Qt::transparent);
    QPainter g(&p);
    g.setPen(QColor(96, 96, 96));
    g.setBrush(toQColor(c));
    g.drawRect(0, 0, 15, 11);
    return QIcon(p);
}

// Each font's name in the font itself; a symbol font keeps the system
// font for its name, which could not be read otherwise.
class FontPreviewDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const QString family = index.data(Qt::DisplayRole).toString();
        const QList<QFontDatabase::WritingSystem> systems = QFontDatabase::writingSystems(family);
        if (!systems.contains(QFontDatabase::Symbol) || systems.contains(QFontDatabase::Latin)) {
            QFont f(family);
            f.setPointSizeF(option->font.pointSizeF() * 1.15);
            option->font = f;
        }
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QSize s = QStyledItemDelegate::sizeHint(option, index);
        return {s.width(), std::max(s.height(), option.fontMetrics.height() * 3 / 2)};
    }
};

}  // namespace

Cmb::Cmb(QWidget* parent) : QComboBox(parent)
{
    // Flat in the toolbar, framed only when the mouse is over it.
    setFrame(false);
    setMaxVisibleItems(16);
    connect(this, qOverload<int>(&QComboBox::activated), this, [this](int) { emit click(); });
}

void Cmb::setText(const QString& text)
{
    const int i = findText(text);
    if (i >= 0) {
        setCurrentIndex(i);
    } else if (isEditable()) {
        setCurrentIndex(-1);
        setEditText(text);
    } else {
        setCurrentIndex(-1);
    }
}

void Cmb::AddItem(const QString& text) { addItem(text); }

ColourCmb::ColourCmb(QWidget* parent) : Cmb(parent) { setIconSize(QSize(16, 12)); }

void ColourCmb::AddItem(const QString& text, Colour colour)
{
    addItem(swatch(colour), text);
    setItemData(count() - 1, QVariant::fromValue<qint64>(colour), kColourRole);
}

void ColourCmb::addStandardColours()
{
    static const std::pair<const char*, Colour> kColours[] = {
        {"Nero", 0x000000},         {"Bianco", 0xFFFFFF},      {"Rosso", 0x0000FF},
        {"Verde", 0x00FF00},        {"Blu", 0xFF0000},         {"Giallo", 0x00FFFF},
        {"Magenta", 0xFF00FF},      {"Azzurro", 0xFFFF00},     {"Grigio", 0x808080},
        {"Grigio chiaro", 0xC0C0C0}, {"Rosso scuro", 0x000080}, {"Verde scuro", 0x008000},
        {"Blu scuro", 0x800000},    {"Oliva", 0x008080},       {"Viola", 0x800080},
        {"Verde acqua", 0x808000},  {"Arancione", 0x0080FF},   {"Marrone", 0x004080},
    };
    for (const auto& [name, c] : kColours)
        AddItem(QString::fromUtf8(name), c);
}

qint64 ColourCmb::colour() const
{
    const QVariant v = currentData(kColourRole);
    return v.isValid() ? v.toLongLong() : -1;
}

void ColourCmb::setColour(qint64 colour)
{
    setCurrentIndex(colour < 0 ? -1 : findData(QVariant::fromValue<qint64>(colour), kColourRole));
}

FontCmb::FontCmb(QWidget* parent) : Cmb(parent)
{
    setItemDelegate(new FontPreviewDelegate(this));
    setMinimumContentsLength(14);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
}

void FontCmb::addSystemFonts()
{
    for (const QString& family : QFontDatabase::families())
        if (!QFontDatabase::isPrivateFamily(family))
            AddItem(family);
}

}  // namespace tornelia
