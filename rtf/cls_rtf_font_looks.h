#pragma once

// Colour and appearance by RTF surgery: toggles of single control words,
// hidden text, one colour-table entry per coloured character, and the
// background highlight written as RTF.

#include "rtf/rtf_toolkit.h"

#include <functional>
#include <optional>
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

    // The colour effects: one colour per visible character of a selection
    // of two characters or more, as text colour (toText) or background.
    // Each does nothing on a shorter selection; a stream it cannot colour is
    // reported and left as it was. The arithmetic is in colour_effects.h.
    void Candy(int sector, int mode, bool toText);
    void SpectrumSector(int sector, bool mirror, bool foreToBack, bool toText);
    void RainBow(bool forward, bool toText);
    // A material by its name in the table; an unknown name gives black.
    void Materials(const QString& name, bool mirror, bool foreToBack, bool toText);
    void MaterialsTest(int unused, bool mirror, bool foreToBack, bool toText, int lo, int hi, int red, int green,
                       int blue, double f);
    void RandomColour(int kind, bool toText);
    void ShuffleColour(int kind, bool shuffle);
    // From one colour to another, both asked for (and kept) or given; with
    // mirror the blend runs to the middle and back.
    void Blender(bool mirror, bool toText);
    void BlenderHard(Colour start, Colour end, bool mirror, bool toText);
    // One colour, asked for (and kept) or given, darkening step by step.
    void Dither(bool mirror, bool foreToBack, bool toText);
    void DitherHard(Colour colour, bool mirror, bool foreToBack, bool toText);
    // The rainbow over five segments, with both array steps.
    void RainBowIO(bool forward, bool mirror, bool toText);
    // Black for every character, with the array steps.
    void ColourTemplate(bool mirror, bool foreToBack, bool toText);
    // Every colour index of the selection back to the automatic one.
    void ColourRemove(bool toText);
    void ColourRemoveAll();
    // Every character its own raise, size, toggles and underline; mode 1 and
    // 2 then colour text or background at random, 3 shuffles both.
    void Ransom(int mode);
    bool IsSelection() const { return rtb_ && rtb_->SelLength() >= 1; }

    // The ripple: mode 0 rides the characters up and down ("\up"), mode 1
    // grows and shrinks them ("\fs"). value is where the wave stands, and
    // the caller keeps where it ended.
    void RippleEngine(int mode, int amplitude, bool goDown, int& value, int step);
    // Writes one mask per visible character into the selection's stream.
    // Throws RtfStreamError when the stream cannot be cut or the masks run out.
    void ApplyMasks(const QStringList& masks);
    // The size ("\fs", half-points) the selection starts with.
    int FirstFontSize();

protected:
    struct Steps {
        bool mirror;
        bool foreToBack;
    };
    // The frame of every colour effect: on a selection of two characters or
    // more, make gives one colour per character from the selection's edges,
    // steps (if any) reorder them, and they are applied. A stream that cannot
    // be coloured is reported and left as it was.
    void selectionEffect(const std::function<std::vector<Colour>(long first, long last)>& make, bool toText,
                         std::optional<Steps> steps = std::nullopt, bool shuffle = false);
    void reportEffectError();

    Colour lastBlendEndColour_ = 0;
    Colour lastBlendStartColour_ = 0;
    Colour lastDitherColor_ = 0;
    Colour lastHighlightColour_ = 0;
    Colour lastHighlightForeColour_ = 0;
};

}  // namespace tornelia
