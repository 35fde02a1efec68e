#include "rtf/api_zoom.h"

#include "core/ports.h"
#include "core/rich_text_surface.h"

#include <QComboBox>

#include <algorithm>

namespace tornelia {

namespace {

constexpr std::uint32_t pack(std::uint32_t num, std::uint32_t den)
{
    return (num << 16) | den;
}

// startMark + value + endMark placed in a caption, replacing the piece that
// is there; an empty value takes the piece away.
QString addSlug(QString text, const QString& startMark, const QString& value, const QString& endMark,
                bool atFront)
{
    const int p = text.indexOf(startMark);
    if (p >= 0) {
        const int q = text.indexOf(endMark, p + 1);
        // Without a closing mark the whole text follows the new piece.
        const QString rest = q >= 0 ? text.mid(q + endMark.size()) : text;
        text = text.left(p) + startMark + value + endMark + rest;
        const QString empty = startMark + endMark;
        if (text.contains(empty))
            text.remove(empty);
        return text;
    }
    if (value.isEmpty())
        return text;
    const QString slug = startMark + value + endMark;
    return atFront ? slug + text : text + slug;
}

}  // namespace

const QStringList& ClsAPIZoom::levels()
{
    static const QStringList l{QStringLiteral("50%"),  QStringLiteral("75%"),  QStringLiteral("80%"),
                               QStringLiteral("90%"),  QStringLiteral("100%"), QStringLiteral("110%"),
                               QStringLiteral("120%"), QStringLiteral("150%"), QStringLiteral("200%"),
                               QStringLiteral("250%")};
    return l;
}

const std::array<std::uint32_t, 14>& ClsAPIZoom::table()
{
    // 110% and 120% stand as 1/1: the levels are offered and show at 100%.
    static const std::array<std::uint32_t, 14> t{pack(1, 2), pack(3, 4), pack(4, 5), pack(9, 10), pack(1, 1),
                                                 pack(1, 1), pack(1, 1), pack(3, 2), pack(2, 1), pack(5, 2),
                                                 0,          0,          0,          0};
    return t;
}

void ClsAPIZoom::AssignControls(RichTextSurface* rtb, QComboBox* combo)
{
    rtb_ = rtb;
    combo_ = combo;
    if (!combo_)
        return;
    combo_->clear();
    for (const QString& level : levels())
        combo_->addItem(level, QVariant::fromValue(table()[combo_->count()]));
    const int i = combo_->findText(QStringLiteral("100%"));
    combo_->setCurrentIndex(i);
    if (combo_->isEditable())
        combo_->setEditText(QStringLiteral("100%"));
}

void ClsAPIZoom::ZoomDo(int index)
{
    if (!rtb_) {
        report();
        return;
    }
    index = std::clamp(index, 0, int(table().size()) - 1);
    const std::uint32_t v = table()[index];
    const int num = std::clamp(int(v >> 16), 1, 63);
    const int den = std::clamp(int(v & 0x7FFF), 1, 63);
    rtb_->SetZoom(num, den);
}

QString ClsAPIZoom::ZoomSlug(const QString& text, bool percent) const
{
    if (!rtb_) {
        report();
        return text;
    }
    int num = 0;
    int den = 0;
    rtb_->GetZoom(num, den);
    QString value;
    if (num >= 1 && den >= 1)
        value = percent ? QString::number(num * 100 / den) + QLatin1Char('%')
                        : QString::number(num) + QLatin1Char(':') + QString::number(den);
    return addSlug(text, QStringLiteral("<"), value, QStringLiteral(">"), false);
}

void ClsAPIZoom::report() const
{
    if (messages_)
        messages_->mostraMsg(QStringLiteral("Errore"), QStringLiteral("Errore inaspettato!"), 0, 3);
}

}  // namespace tornelia
