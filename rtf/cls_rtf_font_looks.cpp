#include "rtf/cls_rtf_font_looks.h"

#include "rtf/cls_extended_rtf.h"

namespace tornelia {

using namespace rtfkit;

void ClsRTFFontLooks::SplitBits(QString& head, QStringList& bits)
{
    SplitStream(RtfFetch(false), head, bits);
}

bool ClsRTFFontLooks::ToggleWord(const QString& word)
{
    return surface() && ClsExtendedRTF::ToggleStream(*this, word, false);
}

void ClsRTFFontLooks::ApplyColours(const std::vector<Colour>& colours, bool toText, bool shuffle)
{
    if (!surface())
        return;
    // Busy until the stream is back, and no longer once it failed.
    struct Busy {
        ClsRTFFontLooks* self;
        ~Busy() { self->BusyState(false); }
    } busy{this};
    BusyState(true);
    RtfStore(ColourStream(RtfFetch(false), colours, toText, shuffle, [this] { return Rnd(); }));
}

void ClsRTFFontLooks::RTFHighlightHard(Colour colour)
{
    lastHighlightColour_ = colour;
    long first = 0, last = 0;
    if (!surface() || !SelEdges(first, last))
        return;
    try {
        ApplyColours(std::vector<Colour>(size_t(last - first + 1), colour), false, false);
    } catch (const RtfStreamError&) {
        ReportError();
    }
}

void ClsRTFFontLooks::RTFHighlightHardHard(Colour back, Colour fore)
{
    RTFHighlightHard(back);
    lastHighlightForeColour_ = fore;
    if (rtb_)
        rtb_->setSelColor(fore);
}

void ClsRTFFontLooks::RTFHighlightUser()
{
    if (const auto c = ColourUser())
        RTFHighlightHard(*c);
}

void ClsRTFFontLooks::RTFHighlightUserAuto()
{
    if (const auto c = ColourUser())
        RTFHighlightHardHard(*c, ContrastColour(*c));
}

void ClsRTFFontLooks::RTFHighlightUserUser()
{
    const auto back = ColourUser();
    if (!back)
        return;
    if (const auto fore = ColourUser())
        RTFHighlightHardHard(*back, *fore);
}

}  // namespace tornelia
