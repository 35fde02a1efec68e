#include "rtf/cls_api_highlight.h"

#include "core/text_format.h"

#include <QTextCursor>

namespace tornelia {

using namespace rtfkit;

void ClsAPIHighlight::SetBackColour(Colour colour)
{
    RichTextSurface* s = surface();
    if (!s)
        return;
    s->setSelHighlight(colour == kWindowColourCode ? s->BackColor() : (colour & 0xFFFFFF));
}

Colour ClsAPIHighlight::GetBackColour()
{
    RichTextSurface* s = surface();
    if (!s)
        return 0;
    const std::optional<Colour> c = s->SelHighlight();
    if (c)
        return *c == kNoHighlight ? 0 : *c;
    // Mixed: the first character speaks for the selection.
    QTextCursor first(s->document());
    first.setPosition(s->cursor().selectionStart() + 1);
    const qint64 h = highlightOf(first.charFormat());
    return h < 0 ? 0 : Colour(h);
}

int ClsAPIHighlight::IsHighlight()
{
    RichTextSurface* s = surface();
    if (!s)
        return 0;
    const std::optional<Colour> c = s->SelHighlight();
    if (!c)
        return 2;
    return *c == kNoHighlight ? 0 : 1;
}

QString ClsAPIHighlight::GetHighLightColorRGB()
{
    if (IsHighlight() == 0)
        return {};
    int r, g, b;
    SplitColour(GetBackColour(), r, g, b);
    return QStringLiteral("%1:%2:%3").arg(r).arg(g).arg(b);
}

QString ClsAPIHighlight::HighLightDescription()
{
    if (IsHighlight() == 0)
        return {};
    switch (GetBackColour()) {
    case 0x00C8C8FA: return QStringLiteral("beige");  // RGB(250,200,200), as NamedColour knows it
    case 65280: return QStringLiteral("Green");
    case 0: return QStringLiteral("Black Highlight");
    case 0x000000FF: return QStringLiteral("New Addition");
    case 0x00C0C0C0: return QStringLiteral("Button on Demo");
    default: return {};
    }
}

QString ClsAPIHighlight::HighLightSlug(const QString& text, const QString& startMark, int kind, const QString& endMark)
{
    QString value;
    if (IsHighlight() != 0) {
        switch (kind) {
        case 0: value = GetHighLightColorRGB(); break;
        case 1: value = QString::number(GetBackColour()); break;
        case 2: value = HighLightDescription(); break;
        default: break;
        }
    }
    return AddSlug(text, startMark, value, endMark, false);
}

Colour ClsAPIHighlight::NamedColour(const QString& name)
{
    const QString n = name.toLower();
    if (n == QLatin1String("beige") || n == QLatin1String("fadedpink"))
        return RGB(250, 200, 200);
    if (n == QLatin1String("fred"))
        return RGB(23, 200, 200);
    if (n == QLatin1String("random")) {
        const int r = int(Rnd() * 255);
        const int g = int(Rnd() * 255);
        const int b = int(Rnd() * 255);
        return RGB(r, g, b);
    }
    return 0;
}

void ClsAPIHighlight::APIHighlightHardHard(Colour back, Colour fore)
{
    SetBackColour(back);
    if (rtb_)
        rtb_->setSelColor(fore);
}

void ClsAPIHighlight::APIHighlightAuto(Colour colour)
{
    SetBackColour(colour);
    if (rtb_)
        rtb_->setSelColor(ContrastColour(colour));
}

void ClsAPIHighlight::APIHighlightUser()
{
    if (const auto c = UserColor())
        SetBackColour(*c);
}

void ClsAPIHighlight::APIHighlightUserAuto()
{
    if (const auto c = UserColor())
        APIHighlightAuto(*c);
}

void ClsAPIHighlight::APIHighlightUserUser()
{
    const auto back = UserColor();
    if (!back)
        return;
    if (const auto fore = UserColor())
        APIHighlightHardHard(*back, *fore);
}

}  // namespace tornelia
