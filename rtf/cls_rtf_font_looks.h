#pragma once

// Colour and appearance by RTF surgery: toggles of single control words,
// hidden text, one colour-table entry per coloured character, and the
// background highlight written as RTF.

#include "rtf/rtf_toolkit.h"

#include <vector>

namespace tornelia {

class ClsRTFFontLooks : public RtfEngine {
public:
    explicit ClsRTFFontLooks(MessagePort& messages) : RtfEngine(messages, false) {}

    // Colours the effects and the highlight setters used last.
    Colour LastBlendEndColour() const { return lastBlendEndColour_; }
    Colour LastBlendStartColour() const { return lastBlendStartColour_; }
    Colour LastDitherColor() const { return lastDitherColor_; }
    Colour LastHighlightColour() const { return lastHighlightColour_; }
    Colour LastHighlightForeColour() const { return lastHighlightForeColour_; }

    // Head and bits of the selection's stream, cut before the word that
    // stands ahead of "\uc". Throws RtfStreamError without one.
    void SplitBits(QString& head, QStringList& bits);

    // The same toggle as the extended formats', over SplitBits.
    bool ToggleWord(const QString& word);
    // Hidden text: the written value is not looked at, each set toggles.
    void setSelVisible(bool) { ToggleWord(QStringLiteral("\\v")); }

    // One colour per visible character of the selection, as text colour
    // ("\cf") or background ("\highlight"); with shuffle each bit draws
    // which at random. Throws RtfStreamError when the stream cannot be cut
    // or holds more characters than colours; nothing is stored then.
    void ApplyColours(const std::vector<Colour>& colours, bool toText, bool shuffle);

    // The background of the selection, one table entry per character.
    void RTFHighlightHard(Colour colour);
    void RTFHighlightHardHard(Colour back, Colour fore);
    // 0x80000005, the window-colour code, goes into the table as it is.
    void RTFHighlightRemove() { RTFHighlightHard(kWindowColourCode); }
    void RTFHighlightUser();
    void RTFHighlightUserAuto();
    void RTFHighlightUserUser();

    static constexpr Colour kWindowColourCode = 0x80000005u;

protected:
    Colour lastBlendEndColour_ = 0;
    Colour lastBlendStartColour_ = 0;
    Colour lastDitherColor_ = 0;
    Colour lastHighlightColour_ = 0;
    Colour lastHighlightForeColour_ = 0;
};

}  // namespace tornelia
