// The pixel operations of the designer that need no engine state: the
// bottom-up buffer, colour parts, the key-colour copy, the two transfers and
// the filters.

#include "pictures/designer/designer_engine.h"

#include <algorithm>
#include <cmath>

namespace tornelia::designer {

namespace {

std::uint8_t clampByte(double v)
{
    const long r = std::lround(v);
    return std::uint8_t(std::clamp(r, 0L, 255L));
}

QImage asRgb32(const QImage& image)
{
    return image.format() == QImage::Format_RGB32 ? image : image.convertToFormat(QImage::Format_RGB32);
}

bool sameColour(const Pixel& p, int red, int green, int blue)
{
    return p.red == red && p.green == green && p.blue == blue;
}

}  // namespace

PixelBuffer readPixels(const QImage& surface)
{
    const QImage image = asRgb32(surface);
    PixelBuffer buffer;
    buffer.width = image.width();
    buffer.height = image.height();
    buffer.data.resize(std::size_t(buffer.width) * std::size_t(buffer.height));
    for (int y = 0; y < buffer.height; ++y) {
        // Row 0 of the buffer is the lowest row of the picture.
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(buffer.height - 1 - y));
        for (int x = 0; x < buffer.width; ++x) {
            Pixel& p = buffer.at(x, y);
            p.blue = std::uint8_t(qBlue(line[x]));
            p.green = std::uint8_t(qGreen(line[x]));
            p.red = std::uint8_t(qRed(line[x]));
            p.unused = 0;
        }
    }
    return buffer;
}

void writePixels(QImage& surface, const PixelBuffer& buffer)
{
    if (surface.format() != QImage::Format_RGB32)
        surface = surface.convertToFormat(QImage::Format_RGB32);
    const int w = std::min(surface.width(), buffer.width);
    const int h = std::min(surface.height(), buffer.height);
    for (int y = 0; y < h; ++y) {
        auto* line = reinterpret_cast<QRgb*>(surface.scanLine(surface.height() - 1 - y));
        for (int x = 0; x < w; ++x) {
            const Pixel& p = buffer.at(x, y);
            line[x] = qRgb(p.red, p.green, p.blue);
        }
    }
}

int redOf(Colour c)
{
    return int(c & 0xFF);
}

int greenOf(Colour c)
{
    return int((c & 0xFF00) / 256);
}

int blueOf(Colour c)
{
    // 65535 rather than 65536: the quotient is a hair above the byte and
    // rounds back to it for every value.
    return int(std::lround(double(c & 0xFF0000) / 65535.0));
}

Colour rgbColour(int red, int green, int blue)
{
    return Colour(std::clamp(red, 0, 255)) | Colour(std::clamp(green, 0, 255)) << 8 |
           Colour(std::clamp(blue, 0, 255)) << 16;
}

std::uint32_t toQRgb(Colour c)
{
    return qRgb(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF));
}

Colour fromQRgb(std::uint32_t rgb)
{
    return rgbColour(qRed(rgb), qGreen(rgb), qBlue(rgb));
}

QString CutBefore(const QString& text, const QString& marker)
{
    if (marker.isEmpty() || marker.size() > text.size())
        return {};
    const qsizetype at = text.lastIndexOf(marker, text.size() - marker.size());
    if (at < 0)
        return {};
    return text.mid(at + marker.size());
}

float Distance(float x1, float y1, float x2, float y2)
{
    return std::sqrt((x2 - x1) * (x2 - x1) + (y2 - y1) * (y2 - y1));
}

TrigTable buildTrigTable()
{
    TrigTable table{};
    // A running sum in single precision: its rounding decides how many
    // entries the loop reaches, and the light's rays follow the table.
    float angle = 0.0f;
    for (std::size_t i = 0; i < table.size() && angle <= 360.0f; ++i) {
        const double radians = double(angle) * 3.141592 / 180.0;
        table[i] = {float(std::cos(radians)), float(std::sin(radians))};
        angle += 0.1f;
    }
    return table;
}

void keyCopy(QImage& dest, const QImage& src, const QRect& rect, int x, int y, Colour key)
{
    if (dest.format() != QImage::Format_RGB32)
        dest = dest.convertToFormat(QImage::Format_RGB32);
    const QImage source = asRgb32(src);
    const QRgb keyRgb = toQRgb(key) & 0xFFFFFF;
    for (int j = 0; j < rect.height(); ++j) {
        const int sy = rect.top() + j;
        const int dy = y + j;
        if (sy < 0 || sy >= source.height() || dy < 0 || dy >= dest.height())
            continue;
        const auto* in = reinterpret_cast<const QRgb*>(source.constScanLine(sy));
        auto* out = reinterpret_cast<QRgb*>(dest.scanLine(dy));
        for (int i = 0; i < rect.width(); ++i) {
            const int sx = rect.left() + i;
            const int dx = x + i;
            if (sx < 0 || sx >= source.width() || dx < 0 || dx >= dest.width())
                continue;
            if ((in[sx] & 0xFFFFFF) != keyRgb)
                out[dx] = in[sx] | 0xFF000000;
        }
    }
}

namespace {

// The buffer row the destination's top-down dstY lands on, as the transfers
// have always computed it; an odd difference of heights shifts by a row.
int bufferRow(int dstHeight, int h, int dstY)
{
    return 2 * int(std::floor((dstHeight - h) / 2.0)) - dstY;
}

}  // namespace

void transferAlpha(const QImage& src, int srcX, int srcY, int w, int h, QImage& dst, int dstX, int dstY,
                   Colour key, bool antiAlias, int alphaPercent)
{
    const PixelBuffer source = readPixels(src);
    PixelBuffer target = readPixels(dst);
    const int row = bufferRow(target.height, h, dstY);
    const double alpha = alphaPercent / 100.0;
    const int keyRed = redOf(key), keyGreen = greenOf(key), keyBlue = blueOf(key);

    // The mask is as large as the destination and indexed from the corner of
    // the transfer; a cell beyond it reads as not set.
    std::vector<std::int16_t> mask(std::size_t(target.width) * std::size_t(target.height), 0);
    const auto isSet = [&](int x, int y) {
        return x >= 0 && y >= 0 && x < target.width && y < target.height &&
               mask[std::size_t(y) * std::size_t(target.width) + std::size_t(x)] != 0;
    };
    for (int x = 0; x <= w && x < target.width; ++x)
        for (int y = 0; y <= h && y < target.height; ++y) {
            if (!source.contains(srcX + x, srcY + y))
                continue;
            if (!sameColour(source.at(srcX + x, srcY + y), keyRed, keyGreen, keyBlue))
                mask[std::size_t(y) * std::size_t(target.width) + std::size_t(x)] = -1;
        }

    for (int x = 0; x <= w && x < target.width; ++x)
        for (int y = 0; y <= h && y < target.height; ++y) {
            if (!isSet(x, y) || !target.contains(dstX + x, row + y))
                continue;
            double a = alpha;
            if (antiAlias) {
                const int count = int(isSet(x - 1, y)) + int(isSet(x + 1, y)) + int(isSet(x, y - 1)) +
                                  int(isSet(x, y + 1));
                a = count / 4.0 * alpha;
            }
            const Pixel& in = source.at(srcX + x, srcY + y);
            Pixel& out = target.at(dstX + x, row + y);
            if (a == 1.0) {
                out.blue = in.blue;
                out.green = in.green;
                out.red = in.red;
            } else {
                out.blue = clampByte((1 - a) * out.blue + a * in.blue);
                out.green = clampByte((1 - a) * out.green + a * in.green);
                out.red = clampByte((1 - a) * out.red + a * in.red);
            }
        }
    writePixels(dst, target);
}

void transferInvert(const QImage& src, int srcX, int srcY, int w, int h, QImage& dst, int dstX, int dstY,
                    Colour key)
{
    const PixelBuffer source = readPixels(src);
    PixelBuffer target = readPixels(dst);
    const int row = bufferRow(target.height, h, dstY);
    const int keyRed = redOf(key), keyGreen = greenOf(key), keyBlue = blueOf(key);
    for (int x = 0; x <= w; ++x)
        for (int y = 0; y <= h; ++y) {
            if (!source.contains(srcX + x, srcY + y) || !target.contains(dstX + x, row + y))
                continue;
            if (sameColour(source.at(srcX + x, srcY + y), keyRed, keyGreen, keyBlue))
                continue;
            Pixel& out = target.at(dstX + x, row + y);
            out.blue = std::uint8_t(255 - out.blue);
            out.green = std::uint8_t(255 - out.green);
            out.red = std::uint8_t(255 - out.red);
        }
    writePixels(dst, target);
}

namespace {

using Channel = std::uint8_t Pixel::*;
constexpr Channel kRedGreenBlue[3] = {&Pixel::red, &Pixel::green, &Pixel::blue};

void blur(PixelBuffer& b, const std::function<void(int)>& column)
{
    for (int x = 2; x <= b.width - 2; ++x) {
        for (int y = 2; y <= b.height - 2; ++y)
            for (Channel c : kRedGreenBlue) {
                const int sum = b.at(x - 1, y - 1).*c + b.at(x - 1, y).*c + b.at(x - 1, y + 1).*c +
                                b.at(x, y - 1).*c + b.at(x, y + 1).*c + b.at(x + 1, y - 1).*c +
                                b.at(x + 1, y).*c + b.at(x + 1, y + 1).*c;
                b.at(x, y).*c = clampByte(sum / 8.0);
            }
        if (column)
            column(x);
    }
}

void dePixel(PixelBuffer& b, const std::function<void(int)>& column)
{
    for (int x = 2; x <= b.width - 2; ++x) {
        for (int y = 2; y <= b.height - 2; ++y)
            for (Channel c : kRedGreenBlue) {
                const auto p = [&](int px, int py) { return b.at(px, py).*c; };
                // The last five bytes are ANDed together rather than compared:
                // a pixel is only taken over when they share a set bit.
                const int bits = p(x - 1, y + 1) & p(x, y - 1) & p(x, y + 1) & p(x + 1, y - 1) & p(x + 1, y);
                if (p(x - 1, y) == p(x - 1, y - 1) && p(x + 1, y + 1) == p(x - 1, y - 1) && bits != 0)
                    b.at(x, y).*c = p(x - 1, y - 1);
            }
        if (column)
            column(x);
    }
}

}  // namespace

void filterPixels(PixelBuffer& b, Filter filter, const std::function<void(int)>& column)
{
    switch (filter) {
    case Filter::Monocromatico:
        for (int x = 0; x < b.width; ++x) {
            for (int y = 0; y < b.height; ++y) {
                Pixel& p = b.at(x, y);
                const std::uint8_t grey = clampByte(0.59 * p.green + 0.3 * p.red + 0.11 * p.blue);
                p.red = p.green = p.blue = grey;
            }
            if (column)
                column(x);
        }
        break;
    case Filter::Blur:
        blur(b, column);
        break;
    case Filter::DePixel:
        dePixel(b, column);
        break;
    case Filter::Negativo:
        for (int x = 0; x < b.width; ++x) {
            for (int y = 0; y < b.height; ++y) {
                Pixel& p = b.at(x, y);
                p.blue = std::uint8_t(255 - p.blue);
                p.green = std::uint8_t(255 - p.green);
                p.red = std::uint8_t(255 - p.red);
            }
            if (column)
                column(x);
        }
        break;
    }
}

QImage stretched(const QImage& src, int w, int h)
{
    QImage out(std::max(w, 1), std::max(h, 1), QImage::Format_RGB32);
    out.setDotsPerMeterX(src.dotsPerMeterX());
    out.setDotsPerMeterY(src.dotsPerMeterY());
    const QImage in = asRgb32(src);
    if (in.isNull()) {
        out.fill(Qt::white);
        return out;
    }
    // Each target pixel takes the source pixel it falls on, no blending.
    for (int y = 0; y < out.height(); ++y) {
        const int sy = int(std::int64_t(y) * in.height() / out.height());
        const auto* line = reinterpret_cast<const QRgb*>(in.constScanLine(sy));
        auto* target = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < out.width(); ++x)
            target[x] = line[std::int64_t(x) * in.width() / out.width()];
    }
    return out;
}

}  // namespace tornelia::designer
