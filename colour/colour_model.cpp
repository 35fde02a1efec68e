#include "colour/colour_model.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSaveFile>

#include <algorithm>
#include <cmath>

namespace tornelia::colour {

namespace {

std::uint8_t toByte(double v)
{
    return std::uint8_t(std::clamp<long>(std::lround(v), 0, 255));
}

void put(PixelBuffer& buffer, std::size_t& at, double r, double g, double b)
{
    buffer[at++] = toByte(b);
    buffer[at++] = toByte(g);
    buffer[at++] = toByte(r);
}

void saturationBrightness(std::uint32_t c, double& s, double& v)
{
    int r, g, b;
    splitColour(c, r, g, b);
    const int hi = std::max({r, g, b});
    const int lo = std::min({r, g, b});
    v = hi / 255.0;
    s = hi == 0 ? 0.0 : double(hi - lo) / hi;
}

void fillRow(PixelBuffer& slider, int row, double r, double g, double b)
{
    std::size_t at = std::size_t(row) * kSliderRowPixels * 3;
    for (int i = 0; i < kSliderRowPixels; ++i)
        put(slider, at, r, g, b);
}

}  // namespace

void splitColour(std::uint32_t colour, int& r, int& g, int& b)
{
    r = int(colour & 0xFF);
    g = int((colour >> 8) & 0xFF);
    b = int((colour >> 16) & 0xFF);
}

void drawFieldHue(PixelBuffer& field, std::uint32_t c)
{
    field.assign(kFieldBytes, 0);
    int ri, gi, bi;
    splitColour(c, ri, gi, bi);
    const double r = ri, g = gi, b = bi;
    const double sr = r / 255, sg = g / 255, sb = b / 255;
    std::size_t at = 0;
    for (int y = 255; y >= 0; --y) {
        const double startR = r - y * sr, startG = g - y * sg, startB = b - y * sb;
        const double end = 255 - y;
        const double stepR = (end - startR) / 255, stepG = (end - startG) / 255, stepB = (end - startB) / 255;
        for (int x = 255; x >= 0; --x)
            put(field, at, x * stepR + startR, x * stepG + startG, x * stepB + startB);
    }
}

void hueAt(int position, double& r, double& g, double& b)
{
    static constexpr double kHues[7][3] = {{255, 0, 0},   {255, 255, 0}, {0, 255, 0}, {0, 255, 255},
                                           {0, 0, 255},   {255, 0, 255}, {255, 0, 0}};
    const double t = std::clamp(position, 0, 255) * 6.0 / 255;
    const int k = std::min(int(t), 5);
    const double f = t - k;
    r = kHues[k][0] + (kHues[k + 1][0] - kHues[k][0]) * f;
    g = kHues[k][1] + (kHues[k + 1][1] - kHues[k][1]) * f;
    b = kHues[k][2] + (kHues[k + 1][2] - kHues[k][2]) * f;
}

// The hue scale once for all the rows of a field.
static std::array<std::array<double, 3>, 256> hueScale()
{
    std::array<std::array<double, 3>, 256> out;
    for (int i = 0; i < 256; ++i)
        hueAt(i, out[std::size_t(i)][0], out[std::size_t(i)][1], out[std::size_t(i)][2]);
    return out;
}

void drawFieldSaturation(PixelBuffer& field, std::uint32_t c)
{
    field.assign(kFieldBytes, 0);
    double s, v;
    saturationBrightness(c, s, v);
    const auto hues = hueScale();
    std::size_t at = 0;
    for (int y = 255; y >= 0; --y) {
        const double k = (255 - y) / 255.0;  // brightness of the row
        for (int x = 255; x >= 0; --x) {
            const auto& h = hues[std::size_t(255 - x)];
            put(field, at, (255 + (h[0] - 255) * s) * k, (255 + (h[1] - 255) * s) * k, (255 + (h[2] - 255) * s) * k);
        }
    }
}

void drawFieldBrightness(PixelBuffer& field, std::uint32_t c)
{
    field.assign(kFieldBytes, 0);
    double s, v;
    saturationBrightness(c, s, v);
    const auto hues = hueScale();
    std::size_t at = 0;
    for (int y = 255; y >= 0; --y) {
        const double k = (255 - y) / 255.0;  // saturation of the row
        for (int x = 255; x >= 0; --x) {
            const auto& h = hues[std::size_t(255 - x)];
            put(field, at, (255 + (h[0] - 255) * k) * v, (255 + (h[1] - 255) * k) * v, (255 + (h[2] - 255) * k) * v);
        }
    }
}

void drawSolidStrip(PixelBuffer& slider, int r, int g, int b)
{
    slider.assign(kSliderBytes, 0);
    for (int i = 0; i < kSliderRows; ++i)
        fillRow(slider, i, r, g, b);
}

void drawSliderToWhite(PixelBuffer& slider, int r, int g, int b)
{
    slider.assign(kSliderBytes, 0);
    for (int i = 0; i < kSliderRows; ++i) {
        const double k = 1 - i / 255.0;
        fillRow(slider, i, r * k + i, g * k + i, b * k + i);
    }
}

void drawSliderToBlack(PixelBuffer& slider, int r, int g, int b)
{
    slider.assign(kSliderBytes, 0);
    for (int i = 0; i < kSliderRows; ++i)
        fillRow(slider, i, r - r * i / 255.0, g - g * i / 255.0, b - b * i / 255.0);
}

void drawSliderHue(PixelBuffer& slider)
{
    slider.assign(kSliderBytes, 0);
    for (int i = 0; i < kSliderRows; ++i) {
        double r, g, b;
        hueAt(i, r, g, b);
        fillRow(slider, i, r, g, b);
    }
}

void blitRgb(QPainter& dc, const std::uint8_t* buffer, int x, int y, int w, int h, bool halftone)
{
    const int width = std::abs(w), height = std::abs(h);
    if (!buffer || width == 0 || height == 0)
        return;
    const int stride = (width * 3 + 3) & ~3;
    const QImage rows(buffer, width, height, stride, QImage::Format_BGR888);
    // Rows stored bottom-up stand the right way only once flipped.
    const QImage picture = h < 0 ? rows : rows.mirrored(false, true);
    const bool smooth = dc.testRenderHint(QPainter::SmoothPixmapTransform);
    dc.setRenderHint(QPainter::SmoothPixmapTransform, halftone);
    dc.drawImage(QRect(x, y, width, height), picture);
    dc.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
}

std::vector<std::uint32_t> paletteColours()
{
    std::vector<std::uint32_t> out;
    out.reserve(kPaletteCount);
    for (int r = 0; r <= 255; r += 51)
        for (int g = 0; g <= 255; g += 51)
            for (int b = 0; b <= 255; b += 51)
                out.push_back(rgb(r, g, b));
    return out;
}

QRect gridCell(const QRect& area, int columns, int rows, int index)
{
    const int col = index % columns, row = index / columns;
    const int left = area.left() + area.width() * col / columns;
    const int right = area.left() + area.width() * (col + 1) / columns;
    const int top = area.top() + area.height() * row / rows;
    const int bottom = area.top() + area.height() * (row + 1) / rows;
    return QRect(left, top, right - left, bottom - top);
}

namespace {

QColor toQColor(std::uint32_t c)
{
    int r, g, b;
    splitColour(c, r, g, b);
    return QColor(r, g, b);
}

void drawCells(QPainter& dc, const QRect& area, int columns, int rows, const std::uint32_t* colours, int count)
{
    dc.save();
    dc.fillRect(area, Qt::gray);
    for (int i = 0; i < count; ++i) {
        // A one-pixel gap keeps neighbouring cells of close colours apart.
        const QRect cell = gridCell(area, columns, rows, i).adjusted(1, 1, -1, -1);
        if (colours[i] == kEmptyCustom) {
            // An empty cell looks hollow, unlike a white one.
            dc.fillRect(cell, QColor(0xE8, 0xE8, 0xE8));
            dc.fillRect(cell.adjusted(2, 2, -2, -2), QColor(0xC8, 0xC8, 0xC8));
            continue;
        }
        dc.fillRect(cell, toQColor(colours[i]));
    }
    dc.restore();
}

}  // namespace

void drawPaletteGrid(QPainter& dc, const QRect& area)
{
    const auto colours = paletteColours();
    drawCells(dc, area, kPaletteColumns, kPaletteRows, colours.data(), int(colours.size()));
}

void drawCustomGrid(QPainter& dc, const QRect& area, const CustomColours& colours)
{
    drawCells(dc, area, kCustomColumns, kCustomRows, colours.data(), kCustomCount);
}

QString customColoursPath(const QString& folder)
{
    return QDir(folder).filePath(QStringLiteral("colori.col"));
}

CustomColours loadCustomColours(const QString& folder)
{
    CustomColours colours;
    colours.fill(kEmptyCustom);
    QFile file(customColoursPath(folder));
    if (!file.open(QIODevice::ReadOnly)) {
        // Files copied from elsewhere may carry the capital the reader once used.
        file.setFileName(QDir(folder).filePath(QStringLiteral("Colori.col")));
        if (!file.open(QIODevice::ReadOnly))
            return colours;
    }
    for (int i = 0; i < kCustomCount; ++i) {
        if (file.atEnd())
            break;
        const QByteArray line = file.readLine(256).trimmed();
        // The number at the start of the line, as far as it goes; none is 0.
        qsizetype n = 0;
        if (n < line.size() && (line[n] == '-' || line[n] == '+'))
            ++n;
        while (n < line.size() && line[n] >= '0' && line[n] <= '9')
            ++n;
        bool ok = false;
        const long long v = line.left(n).toLongLong(&ok);
        colours[i] = ok ? std::uint32_t(std::int32_t(v)) : 0;
    }
    return colours;
}

bool saveCustomColours(const QString& folder, const CustomColours& colours)
{
    QByteArray text;
    for (const std::uint32_t c : colours) {
        const std::int32_t v = std::int32_t(c);
        // A blank stands where a minus sign would.
        if (v >= 0)
            text += ' ';
        text += QByteArray::number(v);
        text += '\n';
    }
    QSaveFile file(customColoursPath(folder));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(text);
    return file.commit();
}

int addCustomColour(CustomColours& colours, std::uint32_t c)
{
    const auto empty = std::find(colours.begin(), colours.end(), kEmptyCustom);
    if (empty != colours.end()) {
        *empty = c;
        return int(empty - colours.begin());
    }
    std::rotate(colours.begin(), colours.begin() + 1, colours.end());
    colours.back() = c;
    return kCustomCount - 1;
}

}  // namespace tornelia::colour
