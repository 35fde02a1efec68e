#pragma once

// The special text designer's pixel work, without a window.
//
// How the window drives it:
//  - It keeps one DesignerSettings with the value of every control and calls
//    renderPicture(settings) after each change; picture() is then the
//    finished picture (Pic(1)) to show, save as a bitmap or copy.
//  - A texture comes in through setTexture(i, image), a background picture
//    through setBackground(image) / clearBackground(); after either, and after
//    a size change, backScroll(settings) says how the move bars are set.
//  - The transparency bar of a texture calls texturePreview(i, value) and
//    shows the result; its OK button calls confirmTexture(i, value). After a
//    render, texturePreviewPending(i) false means: bar back to 0, OK hidden,
//    and texturePreviewImage(i) is the preview to show.
//  - The last tab works on the picture in place: applyFilter (with a callback
//    once per column, for the progress bar and the event pump), light,
//    shadow/hover (and their previews on magnify()), the drawing tools and
//    bend(). A later render discards all of it.
//  - Colours everywhere are the program's 0x00BBGGRR values.

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QString>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tornelia::designer {

using Colour = std::uint32_t;  // 0x00BBGGRR

// The key colour that marks "the fill shows here" in the text layer.
inline constexpr Colour kFillKey = 1;
// The key colour of the white around the text in the later layers.
inline constexpr Colour kWhiteKey = 0xFFFFFF;

inline constexpr int kDefaultWidth = 400;
inline constexpr int kDefaultHeight = 150;
inline constexpr int kMagnifySide = 200;
inline constexpr int kTrigEntries = 3601;

enum class Align { Centro = 0, Sinistra = 1, Destra = 2, Manuale = 3 };
enum class GradientStyle { Circolare = 0, Orizziontale = 1, Verticale = 2 };
enum class Filter { Monocromatico = 0, Blur = 1, DePixel = 2, Negativo = 3 };

// The value of every control the pipeline reads. Arrays are indexed as the
// controls are: 0 the text, 1 the border, 2 the background.
struct DesignerSettings {
    QString text = QStringLiteral("Tornelia");              // Text1
    QString fontFamily = QStringLiteral("DejaVu Sans");     // CboName
    int style = 0;                                          // CboStyle: 0 Normale, 1 Grassetto, 2 Corsivo, 3 Sottolineato
    double size = 36;                                       // CboSize, points
    int align = 0;                                          // CboAlign, see Align
    bool antiAlias = false;                                 // ChkAlias
    bool alpha = false;                                     // ChkAlpha
    int alphaPercent = 100;                                 // TxtAlpha
    bool border = false;                                    // ChkBorder
    int borderSize = 1;                                     // TxtBordersize
    bool mirror = false;                                    // ChkMirror
    bool invert = false;                                    // ChkInvert
    int sizeX = kDefaultWidth;                              // TxtSizeX
    int sizeY = kDefaultHeight;                             // TxtSizeY
    std::array<bool, 2> chkCol{true, true};                 // ChkCol(0..1)
    std::array<Colour, 2> solidColour{0x000000, 0x808080};  // CmdSolCol(0..1)
    std::array<bool, 3> chkGrad{false, false, false};       // ChkGrad(0..2)
    std::array<Colour, 6> gradColour{0x0000FF, 0xFF0000,    // CmdGrCol(0..5), pairs 2i, 2i+1
                                     0x00FFFF, 0x008000,
                                     0xFFFFFF, 0xC08040};
    std::array<int, 3> grStyle{1, 1, 2};                    // CboGrStyle(0..2), see GradientStyle
    bool transparent = false;                               // ChkTransparent
    bool glow = false;                                      // ChkGlow
    bool fade = false;                                      // ChkFade
    bool left = true, right = true, top = true, bottom = true;  // ChkLeft ...
    bool tile = false;                                      // ChkTile
    bool shrink = false;                                    // ChkShrink
    bool stretch = false;                                   // ChkStretch
    int moveBackX = 0;                                      // HScrMoveBack
    int moveBackY = 0;                                      // VScrMoveBack
    Colour backColour = 0xFFFFFF;                           // CmdBackcolor
    int textX = 0, textY = 0;                               // where "Manuale" put the text
};

// ---------------------------------------------------------------------------
// The pixel buffer: (x, y) from the bottom-left corner, x the fast index.

struct Pixel {
    std::uint8_t blue = 0, green = 0, red = 0, unused = 0;
    friend bool operator==(const Pixel&, const Pixel&) = default;
};

struct PixelBuffer {
    int width = 0;
    int height = 0;
    std::vector<Pixel> data;  // offset = y * width + x, y = 0 the lowest row

    Pixel& at(int x, int y) { return data[std::size_t(y) * std::size_t(width) + std::size_t(x)]; }
    const Pixel& at(int x, int y) const { return data[std::size_t(y) * std::size_t(width) + std::size_t(x)]; }
    bool contains(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
    friend bool operator==(const PixelBuffer&, const PixelBuffer&) = default;
};

PixelBuffer readPixels(const QImage& surface);
// The buffer must have the surface's size; the surface keeps its format.
void writePixels(QImage& surface, const PixelBuffer& buffer);

// Colour parts. Blue divides by 65535, rounded, which gives the true byte.
int redOf(Colour c);
int greenOf(Colour c);
int blueOf(Colour c);
Colour rgbColour(int red, int green, int blue);
// Between the program's colours and the surfaces' pixels.
std::uint32_t toQRgb(Colour c);
Colour fromQRgb(std::uint32_t rgb);

// The part of text behind the last marker; empty when there is none.
QString CutBefore(const QString& text, const QString& marker);
float Distance(float x1, float y1, float x2, float y2);

// Cosine and sine by tenths of a degree, 0 to 360.
using TrigTable = std::array<std::pair<float, float>, kTrigEntries>;
TrigTable buildTrigTable();

// Copies rect of src to dest at (x, y), except pixels of the key colour.
void keyCopy(QImage& dest, const QImage& src, const QRect& rect, int x, int y, Colour key);

// Joins src into dest with alpha, optionally with the four-neighbour
// anti-alias. srcX, srcY are buffer (bottom-up) positions; dstY is converted.
void transferAlpha(const QImage& src, int srcX, int srcY, int w, int h, QImage& dst, int dstX, int dstY,
                   Colour key, bool antiAlias, int alphaPercent);
// Inverts dest under every source pixel that is not the key.
void transferInvert(const QImage& src, int srcX, int srcY, int w, int h, QImage& dst, int dstX, int dstY,
                    Colour key);

// The filters, in place on one buffer, x outer and y inner; column(x) is
// called after each column.
void filterPixels(PixelBuffer& buffer, Filter filter, const std::function<void(int)>& column = {});

// Nearest-pixel stretch of the whole of src to w x h.
QImage stretched(const QImage& src, int w, int h);

// ---------------------------------------------------------------------------

// Where the move bars of the background stand.
struct BackScroll {
    bool enabledX = false;
    int maxX = 0;
    bool enabledY = false;
    int maxY = 0;
};

class DesignerEngine {
public:
    DesignerEngine();

    // The whole pipeline; writes Pic(1).
    void renderPicture(const DesignerSettings& s);

    // The parts of the pipeline the window calls on its own.
    void placeByAlignment(const DesignerSettings& s);
    void paintBackground(const DesignerSettings& s);
    void fillTexture(int index, const DesignerSettings& s);
    void fillGradient(int index, const DesignerSettings& s);
    BackScroll backScroll(const DesignerSettings& s) const;
    BackScroll updateBackScroll(const DesignerSettings& s) const { return backScroll(s); }

    // Textures and background.
    void setTexture(int index, const QImage& image);
    const QImage& texture(int index) const { return texture_[index & 1]; }
    QImage texturePreview(int index, int barValue);  // HScrDL moved
    void confirmTexture(int index, int barValue);    // CmdDLOK
    bool texturePreviewPending(int index) const { return previewPending_[index & 1]; }
    const QImage& texturePreviewImage(int index) const { return preview_[index & 1]; }
    void setBackground(const QImage& image);
    void clearBackground();
    bool hasBackground() const { return !pic_[4].isNull(); }

    // Text metrics and position, in pixels.
    int textWidth(const DesignerSettings& s) const;
    int textHeight(const DesignerSettings& s) const;
    int textX() const { return textX_; }
    int textY() const { return textY_; }
    // Dragging in "Manuale": the text centred on the pointer. textX()/textY()
    // take the new place at once, and it is returned too; the window keeps it
    // in settings.textX/textY and sets align to 3 for the next render.
    QPoint moveTextTo(int px, int py, const DesignerSettings& s);

    // The last tab: work on Pic(1) in place.
    void applyFilter(Filter filter, const std::function<void(int)>& column = {});
    void applyFilter(int index, const std::function<void(int)>& column = {}) { applyFilter(Filter(index), column); }
    bool busy() const { return busy_; }
    // Light from (x, y) of the picture; strength is "Lunghezza", distance "Distanza".
    void light(int x, int y, Colour colour, bool real, int strength, int distance, const DesignerSettings& s);
    // (sx, sy) is the marker's centre on the 200 x 200 pad.
    void shadow(int sx, int sy, const DesignerSettings& s);
    void hover(int sx, int sy, const DesignerSettings& s);
    void shadowPreview(int sx, int sy, const DesignerSettings& s);
    void hoverPreview(int sx, int sy, const DesignerSettings& s);
    void clearMagnify();
    void drawPoint(int x, int y, Colour colour);
    void drawLine(int x1, int y1, int x2, int y2, Colour colour);
    void drawBox(int x1, int y1, int x2, int y2, Colour colour);
    Colour pickColour(int x, int y) const;
    void bend(const DesignerSettings& s);  // the text gone, the background kept

    const QImage& picture() const { return pic_[1]; }
    const QImage& surface(int index) const { return pic_[std::size_t(std::clamp(index, 0, 4))]; }  // Pic(0..4)
    const QImage& magnify() const { return magnify_; }
    const TrigTable& trig() const { return trig_; }

private:
    struct Stamp;
    const Stamp& stampFor(const DesignerSettings& s) const;
    void printText(QImage& surface, int x, int y, Colour colour, const DesignerSettings& s) const;
    // The text printed at (x, y) moved by every offset of the rectangle.
    void printTextOver(QImage& surface, int x, int y, const QRect& offsets, Colour colour,
                       const DesignerSettings& s) const;
    std::vector<char> letterMask(int x, int y, int margin, const DesignerSettings& s) const;
    std::vector<int> chessboardDistance(int x, int y, int margin, const DesignerSettings& s) const;
    void resizeLayers(int w, int h);
    void glowAndFade(const DesignerSettings& s, int cx, int cy, Colour foreground);
    QRect textBox(const DesignerSettings& s) const;
    QImage shadowShape(const DesignerSettings& s) const;
    QImage shadowOf(const QImage& base, int sx, int sy, bool hoverMode, bool preview, const DesignerSettings& s) const;
    void placeText(const DesignerSettings& s, bool invert, bool antiAlias, int alpha);
    void showOnMagnify(const QImage& picture);
    int borderOf(const DesignerSettings& s) const;
    int alphaOf(const DesignerSettings& s) const;

    std::array<QImage, 5> pic_;
    std::array<QImage, 2> texture_;
    std::array<QImage, 2> preview_;
    std::array<bool, 2> previewPending_{false, false};
    QImage magnify_;
    TrigTable trig_;
    int textX_ = 0;
    int textY_ = 0;
    int cx_ = 0;
    int cy_ = 0;
    bool busy_ = false;
    mutable std::shared_ptr<Stamp> stamp_;  // the last text's pixels, kept while the text stays
};

}  // namespace tornelia::designer
