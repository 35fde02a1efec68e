// The designer's surfaces and its pipeline: text stamps, fills, background,
// the join of the layers, and the work of the last tab on the picture.

#include "pictures/designer/designer_engine.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tornelia::designer {

namespace {

// 96 dots to the inch on every surface, so a size in points gives the same
// pixels on any screen and offscreen.
constexpr int kDotsPerMeter = 3780;
constexpr int kMaxSide = 8000;
constexpr int kMaxBorder = 100;

QImage makeSurface(int w, int h, QRgb fill)
{
    QImage image(std::clamp(w, 1, kMaxSide), std::clamp(h, 1, kMaxSide), QImage::Format_RGB32);
    image.setDotsPerMeterX(kDotsPerMeter);
    image.setDotsPerMeterY(kDotsPerMeter);
    image.fill(fill);
    return image;
}

// A loaded picture laid over white, so that a transparent part of a PNG is
// white and not black once the alpha is dropped.
QImage opaque(const QImage& image)
{
    if (image.isNull())
        return {};
    QImage out = makeSurface(image.width(), image.height(), qRgb(255, 255, 255));
    QPainter p(&out);
    p.drawImage(0, 0, image);
    return out;
}

void fillSurface(QImage& image, Colour c)
{
    image.fill(toQRgb(c));
}

int floorHalf(int v)
{
    return int(std::floor(v / 2.0));
}

}  // namespace

// The text as a set of pixel offsets from its top-left corner. Drawn once with
// a font that has no anti-alias, so every pixel is either text or not, and
// then stamped as often as the border needs.
struct DesignerEngine::Stamp {
    QString text;
    QString family;
    int style = 0;
    double size = 0;
    int width = 0;
    int height = 0;
    std::vector<QPoint> pixels;
};

DesignerEngine::DesignerEngine()
    : trig_(buildTrigTable())
{
    for (int i = 0; i < 4; ++i)
        pic_[std::size_t(i)] = makeSurface(kDefaultWidth, kDefaultHeight, qRgb(255, 255, 255));
    magnify_ = makeSurface(kMagnifySide, kMagnifySide, qRgb(255, 255, 255));
}

const DesignerEngine::Stamp& DesignerEngine::stampFor(const DesignerSettings& s) const
{
    const double size = std::clamp(s.size, 1.0, 500.0);
    if (stamp_ && stamp_->text == s.text && stamp_->family == s.fontFamily && stamp_->style == s.style &&
        stamp_->size == size)
        return *stamp_;

    auto stamp = std::make_shared<Stamp>();
    stamp->text = s.text;
    stamp->family = s.fontFamily;
    stamp->style = s.style;
    stamp->size = size;

    QFont font(s.fontFamily);
    font.setPointSizeF(size);
    font.setBold(s.style == 1);
    font.setItalic(s.style == 2);
    font.setUnderline(s.style == 3);
    // Hard-edged glyphs: every later step compares colours exactly.
    font.setStyleStrategy(QFont::NoAntialias);
    font.setHintingPreference(QFont::PreferFullHinting);

    QImage probe = makeSurface(1, 1, qRgb(255, 255, 255));
    const QFontMetrics metrics(font, &probe);
    stamp->width = metrics.horizontalAdvance(s.text);
    stamp->height = metrics.height();

    if (!s.text.isEmpty()) {
        // Room around the cell for overhangs: italics, accents, descenders.
        const int margin = stamp->height;
        QImage sheet = makeSurface(stamp->width + 2 * margin, stamp->height + 2 * margin, qRgb(255, 255, 255));
        {
            QPainter p(&sheet);
            p.setRenderHint(QPainter::TextAntialiasing, false);
            p.setRenderHint(QPainter::Antialiasing, false);
            p.setFont(font);
            p.setPen(Qt::black);
            p.drawText(margin, margin + metrics.ascent(), s.text);
        }
        for (int y = 0; y < sheet.height(); ++y) {
            const auto* line = reinterpret_cast<const QRgb*>(sheet.constScanLine(y));
            for (int x = 0; x < sheet.width(); ++x)
                if ((line[x] & 0xFFFFFF) != 0xFFFFFF)
                    stamp->pixels.emplace_back(x - margin, y - margin);
        }
    }
    stamp_ = std::move(stamp);
    return *stamp_;
}

void DesignerEngine::printText(QImage& surface, int x, int y, Colour colour, const DesignerSettings& s) const
{
    const Stamp& stamp = stampFor(s);
    const QRgb rgb = toQRgb(colour);
    const int w = surface.width(), h = surface.height();
    uchar* bits = surface.bits();
    const qsizetype stride = surface.bytesPerLine();
    for (const QPoint& p : stamp.pixels) {
        const int px = x + p.x(), py = y + p.y();
        if (px >= 0 && py >= 0 && px < w && py < h)
            reinterpret_cast<QRgb*>(bits + py * stride)[px] = rgb;
    }
}

std::vector<char> DesignerEngine::letterMask(int x, int y, int margin, const DesignerSettings& s) const
{
    // The letters at (x, y) on the surface, over a margin around it so that
    // letters cut by the edge still reach in when moved.
    const int w = pic_[0].width() + 2 * margin, h = pic_[0].height() + 2 * margin;
    std::vector<char> mask(std::size_t(w) * std::size_t(h), 0);
    for (const QPoint& p : stampFor(s).pixels) {
        const int px = x + p.x() + margin, py = y + p.y() + margin;
        if (px >= 0 && py >= 0 && px < w && py < h)
            mask[std::size_t(py) * std::size_t(w) + std::size_t(px)] = 1;
    }
    return mask;
}

void DesignerEngine::printTextOver(QImage& surface, int x, int y, const QRect& offsets, Colour colour,
                                   const DesignerSettings& s) const
{
    // The same as printing at every offset, done as a dilation of the
    // letters: a row pass and a column pass of running counts, so a thick
    // border costs no more than a thin one.
    const int margin = std::max({-offsets.left(), offsets.right(), -offsets.top(), offsets.bottom(), 0});
    const int w = surface.width() + 2 * margin, h = surface.height() + 2 * margin;
    const std::vector<char> mask = letterMask(x, y, margin, s);
    std::vector<char> rows(mask.size(), 0);
    for (int py = 0; py < h; ++py) {
        const char* in = &mask[std::size_t(py) * std::size_t(w)];
        char* out = &rows[std::size_t(py) * std::size_t(w)];
        // out(px) is set when in(px - dx) is, for some dx in the offsets.
        int count = 0;
        for (int px = 0; px < w; ++px) {
            if (px == 0) {
                count = 0;
                for (int dx = offsets.left(); dx <= offsets.right(); ++dx) {
                    const int sx = px - dx;
                    count += sx >= 0 && sx < w && in[sx];
                }
            } else {
                const int gone = px - 1 - offsets.right();
                const int come = px - offsets.left();
                count -= gone >= 0 && gone < w && in[gone];
                count += come >= 0 && come < w && in[come];
            }
            out[px] = count > 0;
        }
    }
    const QRgb rgb = toQRgb(colour);
    for (int px = 0; px < w; ++px) {
        int count = 0;
        for (int py = 0; py < h; ++py) {
            if (py == 0) {
                for (int dy = offsets.top(); dy <= offsets.bottom(); ++dy) {
                    const int sy = py - dy;
                    count += sy >= 0 && sy < h && rows[std::size_t(sy) * std::size_t(w) + std::size_t(px)];
                }
            } else {
                const int gone = py - 1 - offsets.bottom();
                const int come = py - offsets.top();
                count -= gone >= 0 && gone < h && rows[std::size_t(gone) * std::size_t(w) + std::size_t(px)];
                count += come >= 0 && come < h && rows[std::size_t(come) * std::size_t(w) + std::size_t(px)];
            }
            const int sx = px - margin, sy = py - margin;
            if (count > 0 && sx >= 0 && sy >= 0 && sx < surface.width() && sy < surface.height())
                reinterpret_cast<QRgb*>(surface.scanLine(sy))[sx] = rgb;
        }
    }
}

std::vector<int> DesignerEngine::chessboardDistance(int x, int y, int margin, const DesignerSettings& s) const
{
    // Two passes over the eight neighbours give the exact chessboard
    // distance; anything beyond the margin only needs to read as far.
    const int w = pic_[0].width() + 2 * margin, h = pic_[0].height() + 2 * margin;
    const std::vector<char> mask = letterMask(x, y, margin, s);
    const int far = margin + 1;
    std::vector<int> d(mask.size());
    const auto at = [&](int px, int py) -> int& { return d[std::size_t(py) * std::size_t(w) + std::size_t(px)]; };
    for (int py = 0; py < h; ++py)
        for (int px = 0; px < w; ++px) {
            int v = mask[std::size_t(py) * std::size_t(w) + std::size_t(px)] ? 0 : far;
            if (v != 0) {
                if (px > 0)
                    v = std::min(v, at(px - 1, py) + 1);
                if (py > 0) {
                    v = std::min(v, at(px, py - 1) + 1);
                    if (px > 0)
                        v = std::min(v, at(px - 1, py - 1) + 1);
                    if (px + 1 < w)
                        v = std::min(v, at(px + 1, py - 1) + 1);
                }
            }
            at(px, py) = v;
        }
    for (int py = h - 1; py >= 0; --py)
        for (int px = w - 1; px >= 0; --px) {
            int v = at(px, py);
            if (px + 1 < w)
                v = std::min(v, at(px + 1, py) + 1);
            if (py + 1 < h) {
                v = std::min(v, at(px, py + 1) + 1);
                if (px + 1 < w)
                    v = std::min(v, at(px + 1, py + 1) + 1);
                if (px > 0)
                    v = std::min(v, at(px - 1, py + 1) + 1);
            }
            at(px, py) = v;
        }
    return d;
}

int DesignerEngine::textWidth(const DesignerSettings& s) const
{
    return stampFor(s).width;
}

int DesignerEngine::textHeight(const DesignerSettings& s) const
{
    return stampFor(s).height;
}

int DesignerEngine::borderOf(const DesignerSettings& s) const
{
    // The glow and the fade grow their ring by the same size as the border.
    if (!s.border && !s.glow && !s.fade)
        return 0;
    return std::clamp(s.borderSize, 0, kMaxBorder);
}

int DesignerEngine::alphaOf(const DesignerSettings& s) const
{
    return s.alpha ? std::clamp(s.alphaPercent, 0, 100) : 100;
}

void DesignerEngine::resizeLayers(int w, int h)
{
    w = std::clamp(w, 1, kMaxSide);
    h = std::clamp(h, 1, kMaxSide);
    for (int i = 0; i < 4; ++i)
        if (pic_[std::size_t(i)].width() != w || pic_[std::size_t(i)].height() != h)
            pic_[std::size_t(i)] = makeSurface(w, h, qRgb(255, 255, 255));
}

void DesignerEngine::placeByAlignment(const DesignerSettings& s)
{
    const int tw = textWidth(s), th = textHeight(s);
    const int width = pic_[0].width(), height = pic_[0].height();
    const int y = int(std::lround((height - th) / 2.0));
    switch (Align(std::clamp(s.align, 0, 3))) {
    case Align::Centro:
        textX_ = int(std::lround((width - tw) / 2.0));
        textY_ = y;
        break;
    case Align::Sinistra:
        textX_ = 0;
        textY_ = y;
        break;
    case Align::Destra:
        textX_ = width - tw;
        textY_ = y;
        break;
    case Align::Manuale:
        textX_ = s.textX;
        textY_ = s.textY;
        break;
    }
    if (s.border) {
        if (s.align == int(Align::Sinistra))
            textX_ += borderOf(s);
        else if (s.align == int(Align::Destra))
            textX_ -= borderOf(s);
    }
}

QPoint DesignerEngine::moveTextTo(int px, int py, const DesignerSettings& s)
{
    textX_ = px - textWidth(s) / 2;
    textY_ = py - textHeight(s) / 2;
    return {textX_, textY_};
}

void DesignerEngine::fillTexture(int index, const DesignerSettings& s)
{
    index = std::clamp(index, 0, 1);
    QImage& canvas = pic_[2];
    const QImage& tex = texture_[std::size_t(index)];
    if (tex.isNull()) {
        // No texture loaded (the backgrounds folder is missing): the solid
        // colour of the tab keeps the text readable.
        fillSurface(canvas, s.solidColour[std::size_t(index)]);
        return;
    }
    QPainter p(&canvas);
    p.setCompositionMode(QPainter::CompositionMode_Source);
    for (int y = 0; y < canvas.height(); y += tex.height())
        for (int x = 0; x < canvas.width(); x += tex.width())
            p.drawImage(x, y, tex);
}

void DesignerEngine::fillGradient(int index, const DesignerSettings& s)
{
    index = std::clamp(index, 0, 2);
    QImage& canvas = pic_[2];
    const int width = canvas.width(), height = canvas.height();
    const int style = std::clamp(s.grStyle[std::size_t(index)], 0, 2);
    const Colour c1 = s.gradColour[std::size_t(2 * index)];
    const Colour c2 = s.gradColour[std::size_t(2 * index + 1)];
    const double first[3] = {double(redOf(c1)), double(greenOf(c1)), double(blueOf(c1))};
    const double second[3] = {double(redOf(c2)), double(greenOf(c2)), double(blueOf(c2))};

    const bool alongX = style < 2;
    int start = 0;
    int length = 0;
    if (index < 2) {
        // The text's own extent, so the whole run of colours lies on the letters.
        if (alongX) {
            start = floorHalf(width - textWidth(s));
            length = textWidth(s);
        } else {
            start = floorHalf(height - textHeight(s));
            length = textHeight(s);
        }
    } else {
        length = alongX ? width : height;
        if (style == 0)
            length = std::max(width, height);
    }

    // A text of no width has no run to spread the colours over: the step is
    // zero and the gradient is its first colour (the second, for a circle).
    double step[3] = {0, 0, 0};
    if (length > 0)
        for (int c = 0; c < 3; ++c)
            step[c] = (second[c] - first[c]) / length;

    const auto pack = [](double r, double g, double b) {
        return toQRgb(rgbColour(int(std::lround(r)), int(std::lround(g)), int(std::lround(b))));
    };

    if (style == 0) {
        // Filled circles from radius length/2 down to 1, each a step nearer
        // the first colour; a pixel keeps the colour of the smallest circle
        // that covers it, the outer area the second colour.
        const double radius = length / 2.0;
        const int last = radius >= 1 ? int(std::floor(radius - 1)) : -1;
        const double centreX = width / 2.0, centreY = height / 2.0;
        std::vector<QRgb> ring(std::size_t(std::max(last + 2, 1)));
        for (int k = 0; k <= last; ++k)
            ring[std::size_t(k)] = pack(second[0] - k * 2 * step[0], second[1] - k * 2 * step[1],
                                        second[2] - k * 2 * step[2]);
        const QRgb outer = pack(second[0], second[1], second[2]);
        for (int y = 0; y < height; ++y) {
            auto* line = reinterpret_cast<QRgb*>(canvas.scanLine(y));
            for (int x = 0; x < width; ++x) {
                const double dx = x - centreX, dy = y - centreY;
                const double d2 = dx * dx + dy * dy;
                // Largest k with (radius - k)^2 >= d2, found from the root
                // and settled exactly on the squares.
                int k = int(std::floor(radius - std::sqrt(d2)));
                k = std::min(k, last);
                while (k + 1 <= last && (radius - k - 1) * (radius - k - 1) >= d2)
                    ++k;
                while (k >= 0 && (radius - k) * (radius - k) < d2)
                    --k;
                line[x] = k >= 0 ? ring[std::size_t(k)] : outer;
            }
        }
        return;
    }

    for (int i = 0; i <= length; ++i) {
        const QRgb colour = pack(first[0] + i * step[0], first[1] + i * step[1], first[2] + i * step[2]);
        const int at = start + i;
        if (alongX) {
            if (at < 0 || at >= width)
                continue;
            for (int y = 0; y < height; ++y)
                reinterpret_cast<QRgb*>(canvas.scanLine(y))[at] = colour;
        } else {
            if (at < 0 || at >= height)
                continue;
            auto* line = reinterpret_cast<QRgb*>(canvas.scanLine(at));
            std::fill(line, line + width, colour);
        }
    }
}

void DesignerEngine::paintBackground(const DesignerSettings& s)
{
    QImage& out = pic_[1];
    if (out.width() != s.sizeX || out.height() != s.sizeY)
        out = makeSurface(s.sizeX, s.sizeY, toQRgb(s.backColour));
    fillSurface(out, s.backColour);

    if (s.chkGrad[2]) {
        resizeLayers(out.width(), out.height());
        fillSurface(pic_[2], kWhiteKey);
        fillGradient(2, s);
        out = pic_[2].copy();
        return;
    }
    const QImage& back = pic_[4];
    if (back.isNull())
        return;

    QPainter p(&out);
    if (s.tile) {
        for (int y = 0; y < out.height(); y += back.height())
            for (int x = 0; x < out.width(); x += back.width())
                p.drawImage(x, y, back);
        return;
    }
    if (!s.stretch && !s.shrink) {
        p.drawImage(0, 0, back, std::max(s.moveBackX, 0), std::max(s.moveBackY, 0));
        return;
    }
    // Each axis on its own: stretched up only when smaller, down only when
    // larger, and left as it is otherwise.
    int w = back.width(), h = back.height();
    if ((s.stretch && w < out.width()) || (s.shrink && w > out.width()))
        w = out.width();
    if ((s.stretch && h < out.height()) || (s.shrink && h > out.height()))
        h = out.height();
    p.drawImage(0, 0, stretched(back, w, h));
}

BackScroll DesignerEngine::backScroll(const DesignerSettings& s) const
{
    BackScroll bars;
    const QImage& back = pic_[4];
    if (back.isNull() || s.shrink)
        return bars;
    if (back.width() > s.sizeX) {
        bars.enabledX = true;
        bars.maxX = back.width() - s.sizeX;
    }
    if (back.height() > s.sizeY) {
        bars.enabledY = true;
        bars.maxY = back.height() - s.sizeY;
    }
    return bars;
}

void DesignerEngine::setTexture(int index, const QImage& image)
{
    index = std::clamp(index, 0, 1);
    texture_[std::size_t(index)] = opaque(image);
    preview_[std::size_t(index)] = texture_[std::size_t(index)];
    previewPending_[std::size_t(index)] = false;
}

QImage DesignerEngine::texturePreview(int index, int barValue)
{
    index = std::clamp(index, 0, 1);
    const QImage& tex = texture_[std::size_t(index)];
    if (tex.isNull())
        return {};
    // It lightens rather than lets anything through: each channel gains the
    // bar's value, up to white.
    PixelBuffer buffer = readPixels(tex);
    const int add = std::clamp(barValue, -255, 255);
    for (Pixel& p : buffer.data) {
        p.blue = std::uint8_t(std::clamp(p.blue + add, 0, 255));
        p.green = std::uint8_t(std::clamp(p.green + add, 0, 255));
        p.red = std::uint8_t(std::clamp(p.red + add, 0, 255));
    }
    QImage out = tex.copy();
    writePixels(out, buffer);
    preview_[std::size_t(index)] = out;
    previewPending_[std::size_t(index)] = true;
    return out;
}

void DesignerEngine::confirmTexture(int index, int barValue)
{
    index = std::clamp(index, 0, 1);
    const QImage lighter = texturePreview(index, barValue);
    if (!lighter.isNull())
        texture_[std::size_t(index)] = lighter;
    previewPending_[std::size_t(index)] = false;
}

void DesignerEngine::setBackground(const QImage& image)
{
    pic_[4] = opaque(image);
}

void DesignerEngine::clearBackground()
{
    pic_[4] = QImage();
}

void DesignerEngine::glowAndFade(const DesignerSettings& s, int cx, int cy, Colour foreground)
{
    // Pic(0)'s red byte stops being a colour here and becomes the share of
    // the fill, in percent, growing towards the letters.
    const int size = borderOf(s);
    const int n = size + 1 + (s.glow ? 1 : 0);
    // Ring k prints the text at every offset up to r = size - k + 1 in
    // share k, each ring over the last: a pixel ends with the share of the
    // smallest square that reaches it, that is of its chessboard distance
    // from the letters.
    if (size > 0) {
        const std::vector<int> distance = chessboardDistance(cx, cy, size, s);
        const int spanW = pic_[0].width() + 2 * size;
        for (int y = 0; y < pic_[0].height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(pic_[0].scanLine(y));
            for (int x = 0; x < pic_[0].width(); ++x) {
                const int d = distance[std::size_t(y + size) * std::size_t(spanW) + std::size_t(x + size)];
                if (d <= size)
                    line[x] = toQRgb(Colour(int(100.0 / n * (size - std::max(d, 1) + 1))));
            }
        }
    }
    printText(pic_[0], cx, cy, foreground, s);

    PixelBuffer kept;
    if (s.glow)
        kept = readPixels(pic_[2]);
    const bool solid = s.chkCol[0] || s.glow;
    if (solid)
        fillSurface(pic_[2], s.solidColour[0]);
    const PixelBuffer back = readPixels(pic_[1]);
    const PixelBuffer fill = readPixels(pic_[2]);
    PixelBuffer out = readPixels(pic_[0]);
    if (solid) {
        fillSurface(pic_[2], s.solidColour[1]);
        if (s.glow)
            writePixels(pic_[2], kept);
    }

    const auto blend = [](int b, int f, int v) { return std::uint8_t(std::min(255L, std::lround((b * (100 - v) + f * v) / 100.0))); };
    // The first row and column are left as they are.
    for (int x = 1; x < out.width; ++x)
        for (int y = 1; y < out.height; ++y) {
            Pixel& p = out.at(x, y);
            const int v = p.red;
            if (v >= 100)
                continue;
            const Pixel& b = back.at(x, y);
            const Pixel& f = fill.at(x, y);
            p.red = blend(b.red, f.red, v);
            p.green = blend(b.green, f.green, v);
            p.blue = blend(b.blue, f.blue, v);
        }
    writePixels(pic_[3], out);
    fillSurface(pic_[0], kWhiteKey);
    printText(pic_[0], cx, cy, foreground, s);
}

void DesignerEngine::renderPicture(const DesignerSettings& s)
{
    // A transparency preview not confirmed goes back to the texture itself.
    for (std::size_t i = 0; i < 2; ++i)
        if (previewPending_[i]) {
            preview_[i] = texture_[i];
            previewPending_[i] = false;
        }

    resizeLayers(s.sizeX, s.sizeY);
    placeByAlignment(s);
    for (int i = 0; i < 4; ++i)
        fillSurface(pic_[std::size_t(i)], kWhiteKey);
    paintBackground(s);

    const int width = pic_[0].width(), height = pic_[0].height();
    const int tw = textWidth(s), th = textHeight(s);
    const int cx = floorHalf(width - tw);
    const int cy = floorHalf(height - th);
    cx_ = cx;
    cy_ = cy;
    const int b = borderOf(s);
    // The layers share one geometry, so the joins between them copy the
    // whole canvas in place.
    const QRect workRect(0, 0, width, height);

    if (s.border && !s.fade) {
        Colour pen = kFillKey;
        if (s.chkCol[1])
            pen = s.solidColour[1];
        else if (s.chkGrad[1])
            fillGradient(1, s);
        else
            fillTexture(1, s);
        const int left = s.left ? cx - b : cx;
        const int right = s.right ? cx + b : cx;
        const int top = s.top ? cy - b : cy;
        const int bottom = s.bottom ? cy + b : cy;
        printTextOver(pic_[0], cx, cy, QRect(QPoint(left - cx, top - cy), QPoint(right - cx, bottom - cy)), pen, s);
        if (s.transparent)
            printText(pic_[0], cx, cy, kWhiteKey, s);
        keyCopy(pic_[2], pic_[0], workRect, 0, 0, kFillKey);
        keyCopy(pic_[3], pic_[2], workRect, 0, 0, kWhiteKey);
        fillSurface(pic_[0], kWhiteKey);
    }

    if (!s.transparent) {
        Colour pen = kFillKey;
        if (s.chkCol[0])
            pen = s.solidColour[0];
        else if (s.chkGrad[0])
            fillGradient(0, s);
        else
            fillTexture(0, s);
        if (s.glow || s.fade)
            glowAndFade(s, cx, cy, pen);
        printText(pic_[0], cx, cy, pen, s);
    }

    keyCopy(pic_[2], pic_[0], workRect, 0, 0, kFillKey);
    if (s.antiAlias && b != 0)
        transferAlpha(pic_[2], cx - b, cy - b, tw + 2 * b, th + 2 * b, pic_[3], cx - b, cy - b, kWhiteKey, true, 100);
    else
        keyCopy(pic_[3], pic_[2], workRect, 0, 0, kWhiteKey);

    if (s.mirror)
        pic_[3] = pic_[3].mirrored(true, false);
    placeText(s, s.invert, s.antiAlias, alphaOf(s));
}

QRect DesignerEngine::textBox(const DesignerSettings& s) const
{
    const int b = borderOf(s);
    int x = textX_ - b, y = textY_ - b;
    int w = stampFor(s).width + 2 * b, h = stampFor(s).height + 2 * b;
    // A picture narrower than the text takes the text from its left edge;
    // one lower than the text from its top-left corner.
    if (s.sizeX < w) {
        w = s.sizeX;
        x = 0;
    }
    if (s.sizeY < h) {
        h = s.sizeY;
        x = 0;
        y = 0;
    }
    return {x, y, w, h};
}

void DesignerEngine::placeText(const DesignerSettings& s, bool invert, bool antiAlias, int alpha)
{
    const int b = borderOf(s);
    const QRect box = textBox(s);
    const int sx = cx_ - b, sy = cy_ - b;
    if (invert) {
        transferInvert(pic_[3], sx, sy, box.width(), box.height(), pic_[1], box.x(), box.y(), kWhiteKey);
        return;
    }
    if (!antiAlias && !s.alpha) {
        keyCopy(pic_[1], pic_[3], QRect(sx, sy, box.width(), box.height()), box.x(), box.y(), kWhiteKey);
        return;
    }
    transferAlpha(pic_[3], sx, sy, box.width(), box.height(), pic_[1], box.x(), box.y(), kWhiteKey, antiAlias,
                  alpha);
}

// ---------------------------------------------------------------------------
// The last tab.

void DesignerEngine::applyFilter(Filter filter, const std::function<void(int)>& column)
{
    if (busy_)
        return;
    busy_ = true;
    PixelBuffer buffer = readPixels(pic_[1]);
    filterPixels(buffer, filter, column);
    writePixels(pic_[1], buffer);
    busy_ = false;
}

void DesignerEngine::light(int x, int y, Colour colour, bool real, int strength, int distance,
                           const DesignerSettings& s)
{
    QImage& out = pic_[1];
    const int width = out.width(), height = out.height();
    const double fraction[3] = {redOf(colour) / 255.0, greenOf(colour) / 255.0, blueOf(colour) / 255.0};

    // Where the letters stand on the picture: they stop a ray unless "Reale".
    std::vector<char> letters(std::size_t(width) * std::size_t(height), 0);
    for (const QPoint& p : stampFor(s).pixels) {
        const int px = textX_ + p.x(), py = textY_ + p.y();
        if (px >= 0 && py >= 0 && px < width && py < height)
            letters[std::size_t(py) * std::size_t(width) + std::size_t(px)] = 1;
    }

    const float length = float(std::max(strength, 1));
    const double height2 = std::pow(std::max(distance, 1), 2);
    std::vector<float> lit(std::size_t(width) * std::size_t(height), 0.0f);
    // Rays every tenth of a degree; each pixel keeps the strongest light
    // that reaches it, so the many rays near the source do not pile up.
    for (std::size_t a = 0; a + 1 < trig_.size(); ++a) {
        const float endX = x + length * trig_[a].first;
        const float endY = y + length * trig_[a].second;
        const float reach = Distance(float(x), float(y), endX, endY);
        const float stepX = (endX - x) / length, stepY = (endY - y) / length;
        for (int t = 0; t <= int(reach); ++t) {
            const int px = int(std::lround(x + t * stepX));
            const int py = int(std::lround(y + t * stepY));
            if (px < 0 || py < 0 || px >= width || py >= height)
                break;
            if (!real && letters[std::size_t(py) * std::size_t(width) + std::size_t(px)])
                break;
            // Fainter with the distance walked, and fainter the higher the
            // lamp stands ("Distanza") at the same reach.
            const double value = 255.0 * (1.0 - t / double(length)) * std::sqrt(height2 / (height2 + double(t) * t));
            float& cell = lit[std::size_t(py) * std::size_t(width) + std::size_t(px)];
            cell = std::max(cell, float(value));
        }
    }

    PixelBuffer buffer = readPixels(out);
    for (int py = 0; py < height; ++py)
        for (int px = 0; px < width; ++px) {
            const float value = lit[std::size_t(py) * std::size_t(width) + std::size_t(px)];
            if (value <= 0)
                continue;
            Pixel& p = buffer.at(px, height - 1 - py);
            p.red = std::uint8_t(std::min(255L, std::lround(p.red + value * fraction[0])));
            p.green = std::uint8_t(std::min(255L, std::lround(p.green + value * fraction[1])));
            p.blue = std::uint8_t(std::min(255L, std::lround(p.blue + value * fraction[2])));
        }
    writePixels(out, buffer);
}

QImage DesignerEngine::shadowShape(const DesignerSettings& s) const
{
    // The text with its border as the last render left it, black on white.
    const int b = borderOf(s);
    const QRect box = textBox(s);
    QImage shape = makeSurface(box.width(), box.height(), qRgb(255, 255, 255));
    const QImage& layer = pic_[3];
    for (int y = 0; y < box.height(); ++y)
        for (int x = 0; x < box.width(); ++x) {
            const int lx = cx_ - b + x, ly = cy_ - b + y;
            if (lx < 0 || ly < 0 || lx >= layer.width() || ly >= layer.height())
                continue;
            if ((layer.pixel(lx, ly) & 0xFFFFFF) != 0xFFFFFF)
                shape.setPixel(x, y, qRgb(0, 0, 0));
        }
    return shape;
}

QImage DesignerEngine::shadowOf(const QImage& base, int sx, int sy, bool hoverMode, bool preview,
                                const DesignerSettings& s) const
{
    QImage out = base;
    const QRect box = textBox(s);
    const QImage shape = shadowShape(s);
    const int h = shape.height();
    std::vector<char> dark(std::size_t(out.width()) * std::size_t(out.height()), 0);
    const auto mark = [&](int x, int y) {
        if (x >= 0 && y >= 0 && x < out.width() && y < out.height())
            dark[std::size_t(y) * std::size_t(out.width()) + std::size_t(x)] = 1;
    };

    if (hoverMode) {
        // The text floats: its shadow lies under it, moved away from the light.
        const double factor = preview ? 15 : 10;
        const int shiftX = int(std::lround((sx / 100.0 - 1) * factor));
        const int shiftY = int(std::lround((sy / 100.0 - 1) * factor));
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < shape.width(); ++x)
                if ((shape.pixel(x, y) & 0xFFFFFF) == 0)
                    mark(box.x() - shiftX + x, box.y() - shiftY + y);
    } else {
        // The shadow falls on the ground behind the text: it keeps the foot
        // of the letters and leans away from the light row by row, flattened
        // to a sixth of the light's height.
        const double d = 100 - sx;
        const double e = (200 - sy) / 2.0;
        if (e > 0) {
            const double shiftStep = h > 1 ? d / (h - 1) : 0;
            const double riseStep = h > 1 ? (e / 6) / (h - 1) : 0;
            for (int y = 0; y < h; ++y) {
                const int k = h - 1 - y;  // rows counted up from the foot
                const int row = box.y() + h - 1 - int(std::lround(k * riseStep));
                const int shift = int(std::lround(k * shiftStep));
                for (int x = 0; x < shape.width(); ++x)
                    if ((shape.pixel(x, y) & 0xFFFFFF) == 0)
                        mark(box.x() + x + shift, row);
            }
        }
    }

    // The shadow at half the text's alpha.
    const double a = alphaOf(s) / 200.0;
    for (int y = 0; y < out.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < out.width(); ++x)
            if (dark[std::size_t(y) * std::size_t(out.width()) + std::size_t(x)]) {
                const QRgb p = line[x];
                line[x] = qRgb(int(std::lround((1 - a) * qRed(p))), int(std::lround((1 - a) * qGreen(p))),
                               int(std::lround((1 - a) * qBlue(p))));
            }
    }
    return out;
}

void DesignerEngine::shadow(int sx, int sy, const DesignerSettings& s)
{
    paintBackground(s);
    pic_[1] = shadowOf(pic_[1], sx, sy, false, false, s);
    placeText(s, false, s.antiAlias, alphaOf(s));
}

void DesignerEngine::hover(int sx, int sy, const DesignerSettings& s)
{
    paintBackground(s);
    pic_[1] = shadowOf(pic_[1], sx, sy, true, false, s);
    placeText(s, false, s.antiAlias, alphaOf(s));
}

void DesignerEngine::clearMagnify()
{
    magnify_ = makeSurface(kMagnifySide, kMagnifySide, qRgb(255, 255, 255));
}

void DesignerEngine::showOnMagnify(const QImage& picture)
{
    clearMagnify();
    const QImage small = picture.scaled(kMagnifySide, kMagnifySide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter p(&magnify_);
    p.drawImage((kMagnifySide - small.width()) / 2, (kMagnifySide - small.height()) / 2, small);
}

void DesignerEngine::shadowPreview(int sx, int sy, const DesignerSettings& s)
{
    // The effect on a copy of the picture, shown small on the pad; the
    // picture itself changes only when the marker is fixed.
    const QImage kept = pic_[1];
    paintBackground(s);
    pic_[1] = shadowOf(pic_[1], sx, sy, false, true, s);
    placeText(s, false, s.antiAlias, alphaOf(s));
    showOnMagnify(pic_[1]);
    pic_[1] = kept;
}

void DesignerEngine::hoverPreview(int sx, int sy, const DesignerSettings& s)
{
    const QImage kept = pic_[1];
    paintBackground(s);
    pic_[1] = shadowOf(pic_[1], sx, sy, true, true, s);
    placeText(s, false, s.antiAlias, alphaOf(s));
    showOnMagnify(pic_[1]);
    pic_[1] = kept;
}

void DesignerEngine::drawPoint(int x, int y, Colour colour)
{
    if (pic_[1].valid(x, y))
        pic_[1].setPixel(x, y, toQRgb(colour));
}

void DesignerEngine::drawLine(int x1, int y1, int x2, int y2, Colour colour)
{
    // Both ends included, one pixel a step along the longer axis.
    const int dx = std::abs(x2 - x1), dy = -std::abs(y2 - y1);
    const int stepX = x1 < x2 ? 1 : -1, stepY = y1 < y2 ? 1 : -1;
    int error = dx + dy;
    for (;;) {
        drawPoint(x1, y1, colour);
        if (x1 == x2 && y1 == y2)
            break;
        const int twice = 2 * error;
        if (twice >= dy) {
            error += dy;
            x1 += stepX;
        }
        if (twice <= dx) {
            error += dx;
            y1 += stepY;
        }
    }
}

void DesignerEngine::drawBox(int x1, int y1, int x2, int y2, Colour colour)
{
    drawLine(x1, y1, x2, y1, colour);
    drawLine(x2, y1, x2, y2, colour);
    drawLine(x2, y2, x1, y2, colour);
    drawLine(x1, y2, x1, y1, colour);
}

Colour DesignerEngine::pickColour(int x, int y) const
{
    if (!pic_[1].valid(x, y))
        return 0;
    return fromQRgb(pic_[1].pixel(x, y));
}

void DesignerEngine::bend(const DesignerSettings& s)
{
    paintBackground(s);
}

}  // namespace tornelia::designer
