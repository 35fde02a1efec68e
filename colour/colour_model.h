#pragma once

// The picker's drawing and file layer: 24-bit pixel buffers built by linear
// steps between colours, their blit to a surface, and the file of custom
// colours. Colours are 0x00BBGGRR values throughout. No widget here.

#include <QRect>
#include <QString>

#include <array>
#include <cstdint>
#include <vector>

class QPainter;

namespace tornelia::colour {

constexpr int kFieldSide = 256;
constexpr int kFieldBytes = kFieldSide * kFieldSide * 3;  // 196,608
constexpr int kSliderRows = 256;
constexpr int kSliderRowPixels = 16;
constexpr int kSliderBytes = kSliderRows * kSliderRowPixels * 3;
// The strip drawn on screen is one pixel narrower than a buffer row, which
// keeps each row of the 24-bit bitmap on a four-byte boundary.
constexpr int kSliderDrawnWidth = 15;
constexpr int kCustomCount = 225;
constexpr int kPaletteCount = 216;
// A custom cell that holds nothing yet: no colour has a high byte, so it
// stands apart from white, and the file writes it as -1.
constexpr std::uint32_t kEmptyCustom = 0xFFFFFFFFu;

using PixelBuffer = std::vector<std::uint8_t>;
using CustomColours = std::array<std::uint32_t, kCustomCount>;

inline std::uint32_t rgb(int r, int g, int b)
{
    return std::uint32_t(r & 0xFF) | (std::uint32_t(g & 0xFF) << 8) | (std::uint32_t(b & 0xFF) << 16);
}

void splitColour(std::uint32_t colour, int& r, int& g, int& b);

// The field for colour c, written row by row from the count 255 down to 0 and
// blitted bottom-up: the top row is the last one written. In hue mode c is
// the pure hue: its top-left is white, top-right c, the bottom black.
void drawFieldHue(PixelBuffer& field, std::uint32_t c);
// Hue across, brightness down, at the saturation of c.
void drawFieldSaturation(PixelBuffer& field, std::uint32_t c);
// Hue across, saturation down, at the brightness of c.
void drawFieldBrightness(PixelBuffer& field, std::uint32_t c);

// The pure hue at a position 0..255 of the hue scale, by linear steps between
// red, yellow, green, cyan, blue, magenta and red again.
void hueAt(int position, double& r, double& g, double& b);

// Slider buffers: 256 rows of 16 pixels, blue first, top row first.
void drawSolidStrip(PixelBuffer& slider, int r, int g, int b);
void drawSliderToWhite(PixelBuffer& slider, int r, int g, int b);
void drawSliderToBlack(PixelBuffer& slider, int r, int g, int b);
// The hue scale from the top (position 0) down.
void drawSliderHue(PixelBuffer& slider);

// Draws a 24-bit buffer of rows padded to four bytes at (x, y); rows run
// bottom-up unless h is negative. halftone asks for the smoothing a
// palette-based surface needs; on true-colour surfaces it changes nothing.
void blitRgb(QPainter& dc, const std::uint8_t* buffer, int x, int y, int w, int h, bool halftone);

// The 216 colours of six levels a channel, red outer, green, blue inner.
std::vector<std::uint32_t> paletteColours();
// Cell i of a grid of columns x rows filling area.
QRect gridCell(const QRect& area, int columns, int rows, int index);
constexpr int kPaletteColumns = 18;
constexpr int kPaletteRows = 12;
constexpr int kCustomColumns = 15;
constexpr int kCustomRows = 15;
void drawPaletteGrid(QPainter& dc, const QRect& area);
void drawCustomGrid(QPainter& dc, const QRect& area, const CustomColours& colours);

// "colori.col" in folder: 225 lines, a decimal number each. A missing file
// leaves every cell empty; a line that is no number reads as 0.
QString customColoursPath(const QString& folder);
CustomColours loadCustomColours(const QString& folder);
// False when the file could not be written; the old one is then untouched.
bool saveCustomColours(const QString& folder, const CustomColours& colours);
// Puts c in the first empty cell, or, when the grid is full, drops the oldest
// and puts it last. Gives the index used.
int addCustomColour(CustomColours& colours, std::uint32_t c);

}  // namespace tornelia::colour
