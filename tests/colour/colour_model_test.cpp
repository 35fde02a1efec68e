#include "colour/colour_model.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

using namespace tornelia::colour;

namespace {

std::uint8_t byteOf(double v)
{
    return std::uint8_t(std::lround(v));
}

// The pure hue at a position of the scale, from the six hues the scale
// passes through, worked out here on its own.
void pureHue(int position, double c[3])
{
    const double hues[7][3] = {{255, 0, 0}, {255, 255, 0}, {0, 255, 0}, {0, 255, 255},
                               {0, 0, 255}, {255, 0, 255}, {255, 0, 0}};
    const double t = position * 6.0 / 255;
    const int k = t >= 6 ? 5 : int(t);
    for (int i = 0; i < 3; ++i)
        c[i] = hues[k][i] + (hues[k + 1][i] - hues[k][i]) * (t - k);
}

// The field as the user sees it: 256 rows of RGB from the top.
QImage shown(const PixelBuffer& field)
{
    QImage out(kFieldSide, kFieldSide, QImage::Format_RGB32);
    out.fill(Qt::magenta);
    QPainter p(&out);
    blitRgb(p, field.data(), 0, 0, kFieldSide, kFieldSide, false);
    return out;
}

QRgb rgbOf(int r, int g, int b)
{
    return qRgb(r, g, b);
}

}  // namespace

TEST(ColourField, HueModeFollowsTheStepsRowByRow)
{
    // Bytes in the order the loop writes them: row count and column count
    // from 255 down, each pixel blue, green, red.
    for (const std::uint32_t c : {rgb(0xCC, 0x66, 0x33), rgb(255, 0, 0), rgb(0, 0, 0), rgb(17, 250, 128)}) {
        int r, g, b;
        splitColour(c, r, g, b);
        PixelBuffer expected;
        for (int y = 255; y >= 0; --y) {
            const double ch[3] = {double(b), double(g), double(r)};
            for (int x = 255; x >= 0; --x)
                for (const double v : ch) {
                    const double start = v - y * (v / 255);
                    const double step = ((255.0 - y) - start) / 255;
                    expected.push_back(byteOf(x * step + start));
                }
        }
        PixelBuffer field;
        drawFieldHue(field, c);
        ASSERT_EQ(field.size(), std::size_t(196608));
        EXPECT_EQ(field, expected) << std::hex << c;

        // On screen: white top left, the colour top right, black below.
        const QImage img = shown(field);
        EXPECT_EQ(img.pixel(0, 0), rgbOf(255, 255, 255));
        EXPECT_EQ(img.pixel(255, 0), rgbOf(r, g, b));
        EXPECT_EQ(img.pixel(0, 255), rgbOf(0, 0, 0));
        EXPECT_EQ(img.pixel(255, 255), rgbOf(0, 0, 0));
    }
    // An inner pixel worked out by hand: red CC, row 100 from the top, column
    // 51 from the left: start 204 - 100*0.8 = 124, end 155, x = 204.
    PixelBuffer field;
    drawFieldHue(field, rgb(0xCC, 0x66, 0x33));
    EXPECT_EQ(qRed(shown(field).pixel(51, 100)), 149);  // 204*31/255 + 124 = 148.8
}

TEST(ColourField, SaturationAndBrightnessModesSpreadTheHueAcross)
{
    struct Case {
        std::uint32_t c;
        bool saturationMode;
    };
    for (const Case k : {Case{rgb(255, 0, 0), true}, Case{rgb(255, 128, 128), true}, Case{rgb(0, 0, 0), true},
                         Case{rgb(255, 255, 255), false}, Case{rgb(120, 60, 30), false}, Case{rgb(0, 0, 0), false}}) {
        int r, g, b;
        splitColour(k.c, r, g, b);
        const int hi = std::max({r, g, b}), lo = std::min({r, g, b});
        const double v = hi / 255.0, s = hi ? double(hi - lo) / hi : 0;
        PixelBuffer field;
        if (k.saturationMode)
            drawFieldSaturation(field, k.c);
        else
            drawFieldBrightness(field, k.c);
        const QImage img = shown(field);
        int mismatches = 0;
        for (int t = 0; t < 256; ++t)
            for (int u = 0; u < 256; ++u) {
                double h[3];
                pureHue(u, h);
                const double row = (255 - t) / 255.0;
                int want[3];
                for (int i = 0; i < 3; ++i)
                    want[i] = k.saturationMode ? int(std::lround((255 + (h[i] - 255) * s) * row))
                                               : int(std::lround((255 + (h[i] - 255) * row) * v));
                const QRgb got = img.pixel(u, t);
                if (qRed(got) != want[0] || qGreen(got) != want[1] || qBlue(got) != want[2])
                    ++mismatches;
            }
        EXPECT_EQ(mismatches, 0) << std::hex << k.c << " saturation mode " << k.saturationMode;
    }

    // Landmarks at full saturation and brightness: red at both ends of the
    // top row, pure green a third across, pure blue two thirds.
    PixelBuffer field;
    drawFieldSaturation(field, rgb(255, 0, 0));
    QImage img = shown(field);
    EXPECT_EQ(img.pixel(0, 0), rgbOf(255, 0, 0));
    EXPECT_EQ(img.pixel(255, 0), rgbOf(255, 0, 0));
    EXPECT_EQ(img.pixel(85, 0), rgbOf(0, 255, 0));
    EXPECT_EQ(img.pixel(170, 0), rgbOf(0, 0, 255));
    EXPECT_EQ(img.pixel(0, 255), rgbOf(0, 0, 0));
    EXPECT_EQ(img.pixel(255, 255), rgbOf(0, 0, 0));

    // Brightness mode at half grey: the bottom row is that grey throughout.
    drawFieldBrightness(field, rgb(128, 128, 128));
    img = shown(field);
    EXPECT_EQ(img.pixel(0, 0), rgbOf(128, 0, 0));
    EXPECT_EQ(img.pixel(85, 0), rgbOf(0, 128, 0));
    EXPECT_EQ(img.pixel(0, 255), rgbOf(128, 128, 128));
    EXPECT_EQ(img.pixel(255, 255), rgbOf(128, 128, 128));
}

TEST(ColourSlider, ToWhiteToBlackAndSolidFillEveryRowWithSixteenPixels)
{
    const auto expectRows = [](const PixelBuffer& slider, auto channel, const char* what) {
        ASSERT_EQ(slider.size(), std::size_t(256 * 16 * 3)) << what;
        PixelBuffer want;
        for (int i = 0; i < 256; ++i)
            for (int p = 0; p < 16; ++p)
                for (int c = 2; c >= 0; --c)  // blue first
                    want.push_back(channel(c, i));
        EXPECT_EQ(slider, want) << what;
    };
    const int col[3] = {200, 100, 7};
    PixelBuffer slider;
    drawSliderToWhite(slider, col[0], col[1], col[2]);
    expectRows(slider, [&](int c, int i) { return byteOf(col[c] * (1 - i / 255.0) + i); }, "to white");
    EXPECT_EQ(slider[0], 7);  // row 0 is the colour itself, blue first
    EXPECT_EQ(slider[2], 200);
    EXPECT_EQ(slider[slider.size() - 1], 255);

    drawSliderToBlack(slider, col[0], col[1], col[2]);
    expectRows(slider, [&](int c, int i) { return byteOf(col[c] - col[c] * i / 255.0); }, "to black");
    EXPECT_EQ(slider[slider.size() - 3], 0);

    drawSolidStrip(slider, 1, 2, 3);
    expectRows(slider, [](int c, int) { return std::uint8_t(c + 1); }, "solid");
}

TEST(ColourBlit, RowsStandBottomUpUnlessTheHeightIsNegative)
{
    // Two rows of three pixels: each row padded to 12 bytes.
    const std::uint8_t buffer[24] = {0, 0, 255, 0, 255, 0, 255, 0, 0, 9, 9, 9,  // red green blue
                                     255, 255, 255, 0, 0, 0, 0, 255, 255, 9, 9, 9};  // white black yellow
    for (const int h : {2, -2}) {
        QImage img(3, 2, QImage::Format_RGB32);
        img.fill(Qt::magenta);
        QPainter p(&img);
        blitRgb(p, buffer, 0, 0, 3, h, true);
        p.end();
        const int first = h < 0 ? 0 : 1;
        EXPECT_EQ(img.pixel(0, first), rgbOf(255, 0, 0)) << h;
        EXPECT_EQ(img.pixel(1, first), rgbOf(0, 255, 0)) << h;
        EXPECT_EQ(img.pixel(2, first), rgbOf(0, 0, 255)) << h;
        EXPECT_EQ(img.pixel(0, 1 - first), rgbOf(255, 255, 255)) << h;
        EXPECT_EQ(img.pixel(2, 1 - first), rgbOf(255, 255, 0)) << h;
    }

    // The slider is drawn 15 wide from rows of 16 pixels, top-down.
    PixelBuffer slider;
    drawSliderToBlack(slider, 0, 255, 0);
    QImage img(15, 256, QImage::Format_RGB32);
    QPainter p(&img);
    blitRgb(p, slider.data(), 0, 0, kSliderDrawnWidth, -256, false);
    p.end();
    for (int i : {0, 100, 255})
        for (int x : {0, 14})
            EXPECT_EQ(img.pixel(x, i), rgbOf(0, byteOf(255 - 255 * i / 255.0), 0)) << i << ' ' << x;
}

TEST(ColourPalette, TwoHundredSixteenCellsRedOuterBlueInner)
{
    std::vector<std::uint32_t> want;
    for (int r = 0; r < 6; ++r)
        for (int g = 0; g < 6; ++g)
            for (int b = 0; b < 6; ++b)
                want.push_back(std::uint32_t(r * 51) | std::uint32_t(g * 51) << 8 | std::uint32_t(b * 51) << 16);
    EXPECT_EQ(paletteColours(), want);

    const QRect area(0, 0, 256, 256);
    QImage img(256, 256, QImage::Format_RGB32);
    img.fill(Qt::magenta);
    QPainter p(&img);
    drawPaletteGrid(p, area);
    p.end();
    std::vector<std::uint32_t> seen;
    for (int i = 0; i < kPaletteCount; ++i) {
        const QRect cell = gridCell(area, kPaletteColumns, kPaletteRows, i);
        EXPECT_TRUE(area.contains(cell)) << i;
        const QRgb c = img.pixel(cell.center());
        seen.push_back(rgb(qRed(c), qGreen(c), qBlue(c)));
    }
    EXPECT_EQ(seen, want);
    // The cells cover the area: the last one reaches the corner.
    EXPECT_EQ(gridCell(area, kPaletteColumns, kPaletteRows, 215).bottomRight(), QPoint(255, 255));
}

TEST(CustomColours, FileIsWrittenAndReadBackByteForByte)
{
    QTemporaryDir dir;
    CustomColours colours;
    colours.fill(kEmptyCustom);
    colours[0] = 0;
    colours[1] = rgb(0x12, 0x34, 0x56);
    colours[2] = 0x00FFFFFF;
    colours[224] = 255;
    ASSERT_TRUE(saveCustomColours(dir.path(), colours));

    // Empty cells as -1.
    QByteArray want = " 0\n 5649426\n 16777215\n";
    for (int i = 3; i < 224; ++i)
        want += "-1\n";
    want += " 255\n";
    QFile file(dir.filePath("colori.col"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    file.close();
    EXPECT_EQ(bytes, want);
    EXPECT_EQ(bytes.count('\n'), 225);

    EXPECT_EQ(loadCustomColours(dir.path()), colours);
    // Read and written again: the same bytes.
    ASSERT_TRUE(saveCustomColours(dir.path(), loadCustomColours(dir.path())));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), want);
}

TEST(CustomColours, OddFilesReadWithoutHarm)
{
    QTemporaryDir dir;
    // No file: every cell empty.
    CustomColours empty;
    empty.fill(kEmptyCustom);
    EXPECT_EQ(loadCustomColours(dir.path()), empty);

    // A line that is no number is black; lines with CR LF read as well; a
    // short file leaves the rest empty; the capitalised name is found.
    QFile file(dir.filePath("Colori.col"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(" 255\r\nabc\r\n\r\n 65280 \r\n-16777216\r\n-1\r\n");
    file.close();
    CustomColours want = empty;
    want[0] = 255;
    want[1] = 0;
    want[2] = 0;
    want[3] = 65280;
    want[4] = 0xFF000000u;
    want[5] = kEmptyCustom;
    EXPECT_EQ(loadCustomColours(dir.path()), want);

    // A folder that cannot be written: false, nothing made.
    EXPECT_FALSE(saveCustomColours(dir.filePath("no/such/folder"), want));
}

TEST(CustomColours, AddingFillsTheNextFreeCellThenDropsTheOldest)
{
    CustomColours c;
    c.fill(kEmptyCustom);
    EXPECT_EQ(addCustomColour(c, 1), 0);
    EXPECT_EQ(addCustomColour(c, 2), 1);
    c[0] = kEmptyCustom;
    EXPECT_EQ(addCustomColour(c, 3), 0);
    for (int i = 2; i < kCustomCount; ++i)
        c[std::size_t(i)] = std::uint32_t(i + 100);
    EXPECT_EQ(addCustomColour(c, 7), kCustomCount - 1);
    EXPECT_EQ(c[0], 2u);
    EXPECT_EQ(c[1], 102u);
    EXPECT_EQ(c[224], 7u);
}
