#pragma once

// The background colour of the selection as a character format of the
// surface (not through the RTF string), read back for the toolbar's colour
// combo, and described as text for captions and the status bar.

#include "rtf/rtf_toolkit.h"

namespace tornelia {

class ClsAPIHighlight : public EngineControls {
public:
    explicit ClsAPIHighlight(MessagePort& messages) : EngineControls(messages) {}

    // 0x80000005 stands for the window colour: the surface's BackColor at
    // the moment of the call, set as a real background.
    static constexpr Colour kWindowColourCode = 0x80000005u;

    void SetBackColour(Colour colour);
    // The background of the selection (of its first character when mixed);
    // 0 when it has none.
    Colour GetBackColour();
    // 0 no background, 1 one background, 2 mixed.
    int IsHighlight();
    Colour GetHighLightColorLong() { return GetBackColour(); }
    // "red:green:blue", or "" without a background.
    QString GetHighLightColorRGB();
    QString HighLightDescription();
    // The highlight put into a tagged caption: kind 0 the RGB text, 1 the
    // number, 2 the description.
    QString HighLightSlug(const QString& text, const QString& startMark, int kind, const QString& endMark);
    Colour NamedColour(const QString& name);
    // The colour dialog, starting from red; a cancel is reported.
    std::optional<Colour> UserColor() { return askColour(255); }

    void APIHighlightHard(Colour colour) { SetBackColour(colour); }
    void APIHighlightHardHard(Colour back, Colour fore);
    void APIHighlightRemove() { SetBackColour(kWindowColourCode); }
    void APIHighlightAuto(Colour colour);
    void APIHighlightUser();
    void APIHighlightUserAuto();
    void APIHighlightUserUser();
};

}  // namespace tornelia
