#pragma once

// The text work behind the picture properties: reading a picture's size
// from the RTF of the selection, writing a new size back into it, keeping
// the two sides in proportion, and the colour columns of a line's gradient.
// All of it works on strings, so the dialogs stay thin.

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace tornelia::pictures {

// 567 twips make one centimetre; no other conversion is used.
inline constexpr int kTwipsPerCm = 567;

// Only this much of the selection's RTF is searched when reading a size:
// the picture's header lies near the start, the data after it can be huge.
inline constexpr int kSizeWindow = 300;

struct PictureSize {
    QString width;   // twips, as written in the RTF
    QString height;  // twips
};

// The goal size of the first picture in rtf. \picwgoal and \pichgoal are
// taken first; an object group gives \objw and \objh instead. A tag beyond
// the first kSizeWindow characters reads as missing, and a side that cannot
// be read is empty.
PictureSize readPictureSize(const QString& rtf);

// Empty or below one becomes "1", so that a picture never gets no size.
QString validSide(const QString& text);

// rtf with the numbers of \picwgoal and \pichgoal replaced by width and
// height. Nothing when the picture has no goal size to change (object
// groups show their size but cannot be resized this way).
std::optional<QString> applyPictureSize(const QString& rtf, const QString& width, const QString& height);

// Whole twips as the size boxes show them: rounded, and empty for zero.
QString formatTwips(double twips);
// "8,82 cm" for 5000 twips.
QString centimetreLabel(const QString& twips);

// Whether a size box holds a number the proportional update can use.
bool isNumeric(const QString& text);

// The other side of the picture when side `edited` (0 width, 1 height) was
// typed, keeping height / width equal to ratio. Nothing when edited is
// empty; an error when either side is not a number.
enum class ProportionError { None, NotNumeric };
struct ProportionResult {
    ProportionError error = ProportionError::None;
    std::optional<QString> other;  // the new text of the other box
};
ProportionResult proportionalUpdate(int edited, const QString& width, const QString& height, double ratio);

// A colour as the program keeps it: 0x00BBGGRR.
using Colour = std::uint32_t;

// The colour of each column of a gradient width columns wide, from first to
// second, stepping each of red, green and blue linearly.
std::vector<Colour> gradientColumns(Colour first, Colour second, int width);

// The three components of a colour in the order the hexadecimal text gives
// them (blue, green, red).
struct Components {
    int blue = 0;
    int green = 0;
    int red = 0;
};
Components splitColour(Colour c);

}  // namespace tornelia::pictures
