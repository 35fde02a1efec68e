// The designer's pixel operations on small canvases, each compared whole with
// what the operation's rule gives when worked out here cell by cell.

#include "pictures/designer/designer_engine.h"
#include "designer/image_print.h"

#include <QImage>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numeric>
#include <vector>

using namespace tornelia::designer;

namespace {

// A canvas whose pixels come from a small formula, so that neighbours differ.
QImage patterned(int w, int h, int seed)
{
    QImage image(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            image.setPixel(x, y, qRgb((x * 37 + y * 11 + seed) % 256, (x * 13 + y * 71 + 3 * seed) % 256,
                                      (x * 91 + y * 29 + 7 * seed) % 256));
    return image;
}

QImage filled(int w, int h, QRgb colour)
{
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

// The canvas as the buffer sees it: [x][y] with y = 0 the lowest row, and
// each pixel as red, green, blue.
struct Grid {
    int w = 0, h = 0;
    std::vector<std::array<int, 3>> cells;
    std::array<int, 3>& at(int x, int y) { return cells[std::size_t(x * h + y)]; }
};

Grid gridOf(const QImage& image)
{
    Grid g{image.width(), image.height(), {}};
    g.cells.resize(std::size_t(g.w * g.h));
    for (int x = 0; x < g.w; ++x)
        for (int y = 0; y < g.h; ++y) {
            const QRgb p = image.pixel(x, g.h - 1 - y);
            g.at(x, y) = {qRed(p), qGreen(p), qBlue(p)};
        }
    return g;
}

QImage imageOf(Grid& g)
{
    QImage image(g.w, g.h, QImage::Format_RGB32);
    for (int x = 0; x < g.w; ++x)
        for (int y = 0; y < g.h; ++y)
            image.setPixel(x, g.h - 1 - y, qRgb(g.at(x, y)[0], g.at(x, y)[1], g.at(x, y)[2]));
    return image;
}

QImage filtered(const QImage& image, Filter f, std::vector<int>* columns = nullptr)
{
    PixelBuffer b = readPixels(image);
    filterPixels(b, f, [&](int x) {
        if (columns)
            columns->push_back(x);
    });
    QImage out = image.copy();
    writePixels(out, b);
    return out;
}

}  // namespace

TEST(DesignerPixels, BufferIsBottomUpWithXTheFastIndex)
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.setPixel(0, 0, qRgb(1, 2, 3));   // top left
    image.setPixel(1, 0, qRgb(4, 5, 6));
    image.setPixel(2, 0, qRgb(7, 8, 9));
    image.setPixel(0, 1, qRgb(10, 11, 12));  // bottom left
    image.setPixel(1, 1, qRgb(13, 14, 15));
    image.setPixel(2, 1, qRgb(16, 17, 18));

    const PixelBuffer b = readPixels(image);
    ASSERT_EQ(b.width, 3);
    ASSERT_EQ(b.height, 2);
    // Blue, green, red, unused; the bottom row first.
    const std::vector<Pixel> expected = {{12, 11, 10, 0}, {15, 14, 13, 0}, {18, 17, 16, 0},
                                         {3, 2, 1, 0},    {6, 5, 4, 0},    {9, 8, 7, 0}};
    EXPECT_EQ(b.data, expected);

    QImage back = filled(3, 2, qRgb(0, 0, 0));
    writePixels(back, b);
    EXPECT_EQ(back, image);
}

TEST(DesignerPixels, ColourPartsGiveTheTrueBytes)
{
    for (int v = 0; v < 256; ++v) {
        const Colour c = Colour(v) | Colour(255 - v) << 8 | Colour(v ^ 0x5A) << 16;
        EXPECT_EQ(redOf(c), v);
        EXPECT_EQ(greenOf(c), 255 - v);
        EXPECT_EQ(blueOf(c), v ^ 0x5A);
        EXPECT_EQ(rgbColour(redOf(c), greenOf(c), blueOf(c)), c);
        EXPECT_EQ(fromQRgb(toQRgb(c)), c);
    }
    EXPECT_EQ(toQRgb(0x0000FF) & 0xFFFFFF, 0xFF0000u);  // 0x00BBGGRR: red is the low byte
}

TEST(DesignerPixels, CutBeforeAndDistance)
{
    EXPECT_EQ(CutBefore(QStringLiteral("c:\\sfondi\\legno\\noce.bmp"), QStringLiteral("\\")), QStringLiteral("noce.bmp"));
    EXPECT_EQ(CutBefore(QStringLiteral("/a/b.png"), QStringLiteral("/")), QStringLiteral("b.png"));
    EXPECT_EQ(CutBefore(QStringLiteral("carta.png"), QStringLiteral("/")), QString());
    EXPECT_EQ(CutBefore(QStringLiteral("cartella/"), QStringLiteral("/")), QString());
    EXPECT_EQ(CutBefore(QStringLiteral("a::b::c"), QStringLiteral("::")), QStringLiteral("c"));
    EXPECT_EQ(CutBefore(QStringLiteral("a"), QStringLiteral("abc")), QString());

    EXPECT_FLOAT_EQ(Distance(1, 2, 4, 6), 5.0f);
    EXPECT_FLOAT_EQ(Distance(4, 6, 1, 2), 5.0f);
    EXPECT_FLOAT_EQ(Distance(3, 3, 3, 3), 0.0f);
}

TEST(DesignerPixels, TrigTableByTenthsOfADegree)
{
    const TrigTable t = buildTrigTable();
    for (int i = 0; i < 3600; i += 150) {
        const double radians = i / 10.0 * M_PI / 180.0;
        EXPECT_NEAR(t[std::size_t(i)].first, std::cos(radians), 2e-4) << i;
        EXPECT_NEAR(t[std::size_t(i)].second, std::sin(radians), 2e-4) << i;
    }
    // The constant has six decimals: the sine at half a turn is not zero.
    EXPECT_GT(std::fabs(t[1800].second), 1e-7);
    EXPECT_LT(std::fabs(t[1800].second), 1e-3);
}

TEST(DesignerPixels, KeyCopyLeavesTheKeyOutForEachKey)
{
    const QRgb keyOne = toQRgb(kFillKey);
    const QRgb white = qRgb(255, 255, 255);
    QImage src = patterned(9, 7, 5);
    // Scatter both keys over the source.
    for (int y = 0; y < 7; ++y)
        for (int x = 0; x < 9; ++x) {
            if ((x + 2 * y) % 3 == 0)
                src.setPixel(x, y, keyOne);
            else if ((x * y) % 4 == 1)
                src.setPixel(x, y, white);
        }
    const QImage base = patterned(11, 8, 40);
    const QRect rect(2, 1, 6, 5);

    for (Colour key : {kFillKey, kWhiteKey}) {
        QImage dest = base.copy();
        keyCopy(dest, src, rect, 7, 4, key);  // lands partly beyond the right and lower edges
        QImage expected = base.copy();
        for (int j = 0; j < rect.height(); ++j)
            for (int i = 0; i < rect.width(); ++i) {
                const int dx = 7 + i, dy = 4 + j;
                if (dx >= 11 || dy >= 8)
                    continue;
                const QRgb s = src.pixel(rect.left() + i, rect.top() + j);
                if ((s & 0xFFFFFF) != (toQRgb(key) & 0xFFFFFF))
                    expected.setPixel(dx, dy, s);
            }
        EXPECT_EQ(dest, expected) << "key " << key;
    }

    // White text over a white key disappears entirely.
    QImage dest = base.copy();
    keyCopy(dest, filled(9, 7, white), QRect(0, 0, 9, 7), 0, 0, kWhiteKey);
    EXPECT_EQ(dest, base);
}

namespace {

// The transfer with alpha, worked from its rule on the grids.
QImage expectedAlpha(const QImage& src, int srcX, int srcY, int w, int h, const QImage& dst, int dstX, int dstY,
                     QRgb key, bool antiAlias, int alphaPercent)
{
    Grid s = gridOf(src), d = gridOf(dst);
    const int row = 2 * int(std::floor((d.h - h) / 2.0)) - dstY;
    std::vector<std::vector<bool>> mask(std::size_t(d.w), std::vector<bool>(std::size_t(d.h), false));
    for (int x = 0; x <= w; ++x)
        for (int y = 0; y <= h; ++y)
            if (x < d.w && y < d.h && srcX + x < s.w && srcY + y < s.h) {
                const auto& p = s.at(srcX + x, srcY + y);
                mask[std::size_t(x)][std::size_t(y)] = p[0] != qRed(key) || p[1] != qGreen(key) || p[2] != qBlue(key);
            }
    const auto set = [&](int x, int y) {
        return x >= 0 && y >= 0 && x < d.w && y < d.h && mask[std::size_t(x)][std::size_t(y)];
    };
    Grid out = d;
    for (int x = 0; x <= w; ++x)
        for (int y = 0; y <= h; ++y) {
            if (!set(x, y) || dstX + x >= d.w || row + y < 0 || row + y >= d.h)
                continue;
            double a = alphaPercent / 100.0;
            if (antiAlias)
                a *= (set(x - 1, y) + set(x + 1, y) + set(x, y - 1) + set(x, y + 1)) / 4.0;
            for (int c = 0; c < 3; ++c)
                out.at(dstX + x, row + y)[c] =
                    int(std::min(255L, std::lround((1 - a) * d.at(dstX + x, row + y)[c] + a * s.at(srcX + x, srcY + y)[c])));
        }
    return imageOf(out);
}

// A source that is white except for a blob of a few colours, with single
// pixels, an edge against the border of the canvas and a full interior.
QImage blobSource()
{
    QImage src = filled(12, 10, qRgb(255, 255, 255));
    for (int y = 2; y < 7; ++y)
        for (int x = 0; x < 6; ++x)
            src.setPixel(x, y, qRgb(200 - 20 * x, 30 * y, 90));
    src.setPixel(9, 1, qRgb(10, 250, 10));  // a lone point
    src.setPixel(8, 8, qRgb(0, 0, 0));
    src.setPixel(8, 9, qRgb(60, 0, 120));   // touching the lowest row
    return src;
}

}  // namespace

TEST(DesignerPixels, TransferAlphaWithAndWithoutAntiAlias)
{
    const QImage src = blobSource();
    const QImage dst = patterned(12, 10, 77);
    const QRgb white = qRgb(255, 255, 255);
    struct Case {
        int srcX, srcY, w, h, dstX, dstY;
        bool antiAlias;
        int alpha;
    };
    // Even and odd differences of heights (the dstY conversion), corners
    // against the edges, and alphas full, partial and zero.
    const Case cases[] = {
        {0, 0, 11, 9, 0, 0, false, 100}, {0, 0, 11, 9, 0, 0, true, 100},  {0, 0, 11, 8, 0, 1, false, 40},
        {0, 0, 11, 7, 0, 0, true, 60},   {2, 1, 6, 5, 3, 2, true, 100},   {0, 0, 11, 9, 0, 0, false, 0},
        {0, 0, 11, 9, 0, 0, true, 0},    {1, 0, 12, 12, 0, -1, true, 100},
    };
    for (const Case& c : cases) {
        QImage out = dst.copy();
        transferAlpha(src, c.srcX, c.srcY, c.w, c.h, out, c.dstX, c.dstY, kWhiteKey, c.antiAlias, c.alpha);
        EXPECT_EQ(out, expectedAlpha(src, c.srcX, c.srcY, c.w, c.h, dst, c.dstX, c.dstY, white, c.antiAlias, c.alpha))
            << c.srcX << ',' << c.srcY << ' ' << c.w << 'x' << c.h << " aa " << c.antiAlias << " alpha " << c.alpha;
        if (c.alpha == 0) {
            EXPECT_EQ(out, dst);
        }
    }
}

TEST(DesignerPixels, TransferAlphaAntiAliasByHand)
{
    // A 3 x 3 square in the middle of a 5 x 5 black canvas over a white one:
    // the centre has four neighbours, the edges three, the corners two.
    QImage src = filled(5, 5, qRgb(255, 255, 255));
    for (int y = 1; y <= 3; ++y)
        for (int x = 1; x <= 3; ++x)
            src.setPixel(x, y, qRgb(0, 0, 0));
    QImage dst = filled(5, 5, qRgb(200, 200, 200));
    transferAlpha(src, 0, 0, 4, 4, dst, 0, 0, kWhiteKey, true, 100);
    const int corner = 100, edge = 50, centre = 0;  // 200 * (1 - count / 4)
    const int rows[5][5] = {{200, 200, 200, 200, 200},
                            {200, corner, edge, corner, 200},
                            {200, edge, centre, edge, 200},
                            {200, corner, edge, corner, 200},
                            {200, 200, 200, 200, 200}};
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 5; ++x)
            EXPECT_EQ(qRed(dst.pixel(x, y)), rows[y][x]) << x << ',' << y;
}

TEST(DesignerPixels, TransferInvertUsesTheShapeNotItsColour)
{
    const QImage src = blobSource();
    const QImage dst = patterned(12, 10, 9);
    for (const int dstY : {0, 1, 3}) {
        QImage out = dst.copy();
        transferInvert(src, 0, 1, 8, 7, out, 2, dstY, kWhiteKey);

        Grid s = gridOf(src), d = gridOf(dst);
        const int row = 2 * ((10 - 7) / 2) - dstY;
        for (int x = 0; x <= 8; ++x)
            for (int y = 0; y <= 7; ++y) {
                if (1 + y >= s.h || 2 + x >= d.w || row + y < 0 || row + y >= d.h)
                    continue;
                const auto& p = s.at(x, 1 + y);
                if (p[0] == 255 && p[1] == 255 && p[2] == 255)
                    continue;
                for (int c = 0; c < 3; ++c)
                    d.at(2 + x, row + y)[c] = 255 - d.at(2 + x, row + y)[c];
            }
        EXPECT_EQ(out, imageOf(d)) << dstY;
    }
}

TEST(DesignerPixels, MonocromaticoAndNegativoOnEveryPixel)
{
    const QImage image = patterned(13, 9, 1);
    Grid mono = gridOf(image), neg = gridOf(image);
    for (auto& p : mono.cells) {
        const int grey = int(std::lround(0.59 * p[1] + 0.3 * p[0] + 0.11 * p[2]));
        p = {grey, grey, grey};
    }
    for (auto& p : neg.cells)
        p = {255 - p[0], 255 - p[1], 255 - p[2]};

    std::vector<int> columns;
    EXPECT_EQ(filtered(image, Filter::Monocromatico, &columns), imageOf(mono));
    std::vector<int> all(13);
    std::iota(all.begin(), all.end(), 0);
    EXPECT_EQ(columns, all);
    EXPECT_EQ(filtered(image, Filter::Negativo), imageOf(neg));
    // Grey stays grey, and a negative twice is the picture again.
    EXPECT_EQ(filtered(imageOf(mono), Filter::Monocromatico), imageOf(mono));
    EXPECT_EQ(filtered(filtered(image, Filter::Negativo), Filter::Negativo), image);
}

TEST(DesignerPixels, BlurInPlaceInColumnOrder)
{
    const QImage image = patterned(11, 8, 3);
    Grid g = gridOf(image);
    // In place: the left and lower neighbours are already blurred.
    for (int x = 2; x <= g.w - 2; ++x)
        for (int y = 2; y <= g.h - 2; ++y)
            for (int c = 0; c < 3; ++c) {
                int sum = 0;
                for (int dx = -1; dx <= 1; ++dx)
                    for (int dy = -1; dy <= 1; ++dy)
                        if (dx != 0 || dy != 0)
                            sum += g.at(x + dx, y + dy)[c];
                g.at(x, y)[c] = int(std::lround(sum / 8.0));
            }
    std::vector<int> columns;
    EXPECT_EQ(filtered(image, Filter::Blur, &columns), imageOf(g));
    EXPECT_EQ(columns, (std::vector<int>{2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(DesignerPixels, DePixelKeepsItsTestOfRawBytes)
{
    // Few values, so that the equalities often hold, and bytes whose AND is
    // zero (0x0F and 0xF0) beside bytes that share a bit.
    const int values[3] = {0x0F, 0xF0, 0xFF};
    QImage image(20, 16, QImage::Format_RGB32);
    unsigned seed = 12345;
    const auto next = [&] {
        seed = seed * 1103515245u + 12345u;
        return values[(seed >> 16) % 3];
    };
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 20; ++x) {
            const int r = next(), g = next(), b = next();
            image.setPixel(x, y, qRgb(r, g, b));
        }

    Grid g = gridOf(image);
    int changed = 0, blocked = 0;
    for (int x = 2; x <= g.w - 2; ++x)
        for (int y = 2; y <= g.h - 2; ++y)
            for (int c = 0; c < 3; ++c) {
                const auto p = [&](int px, int py) { return g.at(px, py)[c]; };
                const bool same = p(x - 1, y) == p(x - 1, y - 1) && p(x + 1, y + 1) == p(x - 1, y - 1);
                const int bits = p(x - 1, y + 1) & p(x, y - 1) & p(x, y + 1) & p(x + 1, y - 1) & p(x + 1, y);
                blocked += same && bits == 0 && p(x, y) != p(x - 1, y - 1);
                if (same && bits != 0) {
                    changed += p(x, y) != p(x - 1, y - 1);
                    g.at(x, y)[c] = p(x - 1, y - 1);
                }
            }
    // The case does exercise the rule both ways.
    EXPECT_GT(changed, 0);
    EXPECT_GT(blocked, 0);
    EXPECT_EQ(filtered(image, Filter::DePixel), imageOf(g));
}

TEST(DesignerPixels, BlurAndDePixelLeaveSmallCanvasesAlone)
{
    for (const QSize size : {QSize(1, 1), QSize(3, 3), QSize(3, 12), QSize(12, 3), QSize(2, 9)}) {
        const QImage image = patterned(size.width(), size.height(), 11);
        EXPECT_EQ(filtered(image, Filter::Blur), image) << size.width() << 'x' << size.height();
        EXPECT_EQ(filtered(image, Filter::DePixel), image) << size.width() << 'x' << size.height();
    }
    // At side 4 only the one inner pixel (2, 2) of the buffer may change.
    const QImage four = patterned(4, 4, 2);
    const QImage blurred = filtered(four, Filter::Blur);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            if (!(x == 2 && y == 1)) {  // buffer (2, 2) is the second row from the top
                EXPECT_EQ(blurred.pixel(x, y), four.pixel(x, y)) << x << ',' << y;
            }
    EXPECT_NE(blurred.pixel(2, 1), four.pixel(2, 1));
}

TEST(DesignerPixels, StretchTakesTheNearestPixel)
{
    const QImage src = patterned(5, 3, 8);
    for (const QSize size : {QSize(12, 7), QSize(3, 2), QSize(5, 9)}) {
        const QImage out = stretched(src, size.width(), size.height());
        QImage expected(size, QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                expected.setPixel(x, y, src.pixel(x * 5 / size.width(), y * 3 / size.height()));
        EXPECT_EQ(out, expected);
    }
}
