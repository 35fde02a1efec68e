#pragma once

// The arithmetic of the colour and shape effects: each effect first computes
// one colour (or one format mask) per position of the selection, and only
// then is the RTF of the selection rewritten, once. Keeping the arithmetic
// here, free of any surface, lets each sequence be checked on its own.

#include "rtf/rtf_toolkit.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace tornelia::rtfkit {

using Colours = std::vector<Colour>;
using RandomSource = std::function<double()>;

// Rounds to the nearest integer, halves to the even one.
long CLng(double v);

// The colour of value (0..255) in one of the six sectors of the spectrum,
// red to yellow, yellow to green, ... magenta to red; black outside them.
Colour SpectrumColour(int sector, int value);

// part of whole in percent, at most 100, in single precision; 0 for an
// empty whole.
float Percent(double part, double whole);

// Turns the sequence round.
void ReverseColours(Colours& colours);
// Runs the sequence at double speed up to the middle and back again.
void MirrorColours(Colours& colours);
// Reverse when foreToBack is false, then mirror when asked: always in that
// order.
void ArraySteps(Colours& colours, bool mirror, bool foreToBack);

// An ink colour and a wave over it.
struct Material {
    QString name;
    double f;  // frequency; zero or less takes the cosine
    int lo, hi;
    int red, green, blue;
};
const std::vector<Material>& MaterialTable();
// Exact, case-sensitive; nullptr for a name not in the table.
const Material* FindMaterial(const QString& name);
void MaterialsSafeValues(int& lo, int& hi, int& red, int& green, int& blue, double& f);
// Fills colours with the ink plus a sine (or cosine) between lo and hi.
void MaterialWave(Colours& colours, int lo, int hi, int red, int green, int blue, double f);

// start at t 0, end at t 1, each component in between.
Colour MixColour(Colour start, Colour end, double t);

// The colours of the effects for the positions first..last. Candy's mode 3
// divides by a zero segment on a very short selection: that throws
// RtfStreamError.
Colours CandyColours(long first, long last, int sector, int mode);
Colours SpectrumColours(long first, long last, int sector);
Colours RainBowColours(long first, long last, bool forward);
// The rainbow over five segments and no lower bound: a selection shorter
// than five has no segment, and that throws RtfStreamError.
Colours RainBowIOColours(long first, long last);
// start to end by the percent of each position of last (not of the
// selection's length); mirrored, to the middle and back.
Colours BlendColours(long first, long last, Colour start, Colour end, bool mirror);
// colour, each component less one more every (last - first) / 255 positions.
Colours DitherColours(long first, long last, Colour colour);

// One random draw of the kinds of the random colours: 0 any colour, 1 any
// spectrum sector, 2..7 one sector, 8 a grey, anything else black.
Colour RandomKindColour(int kind, const RandomSource& rnd);

// The thresholds of the ransom masks are integers: the fractions they are
// written with are rounded on the way in.
void RandomWord(QString& on, QString& off, int threshold, const QString& word, const RandomSource& rnd);
void RandomUnderline(QString& on, QString& off, int threshold, const RandomSource& rnd);
// One character's ransom format: its raise, size, toggles and underline on,
// "***" for the character, then what switches them off again.
QString RansomMask(int size, const RandomSource& rnd);

// One step of the position wave: turns at the amplitude, stays within it.
void WavePosition(int& value, int amplitude, bool& goDown, int step);
// One step of the size wave: turns outside lo..hi, never clamps.
void WaveSize(int& value, int lo, int hi, bool& goDown, int step);

// Puts one mask per visible character of bit (and one per empty bit, the
// blank it stands for), "***" standing for the character. Escapes, control
// words and what follows them in a bit take no mask. Throws RtfStreamError
// when the masks run out.
QString MaskBit(const QString& bit, const QStringList& masks, qsizetype& idx);
// The whole masking of a stream: head, then the masked bits.
QString MaskStream(const QString& s, const QStringList& masks);

}  // namespace tornelia::rtfkit
