// Whole renders of the designer on small canvases. The letters' shape comes
// from a plain render; every other result is worked out here from it and
// compared pixel for pixel.

#include "pictures/designer/designer_engine.h"
#include "designer/image_print.h"

#include <QImage>

#include <gtest/gtest.h>

#include <cmath>
#include <set>

using namespace tornelia::designer;

namespace {

constexpr Colour kBack = 0xC08030;  // blue 0xC0, green 0x80, red 0x30
constexpr Colour kInk = 0x2010F0;

DesignerSettings small()
{
    DesignerSettings s;
    s.text = QStringLiteral("nom");
    s.fontFamily = QStringLiteral("DejaVu Sans");
    s.size = 12;
    s.sizeX = 64;
    s.sizeY = 32;
    s.backColour = kBack;
    s.solidColour[0] = kInk;
    s.solidColour[1] = 0x0000A0;
    return s;
}

QImage render(const DesignerSettings& s)
{
    DesignerEngine engine;
    engine.renderPicture(s);
    return engine.picture();
}

QImage plainBackground(const DesignerSettings& s)
{
    DesignerSettings bare = s;
    bare.text.clear();
    return render(bare);
}

using Mask = std::set<std::pair<int, int>>;

// The pixels that differ from the background: the letters of a plain render.
Mask lettersOf(const QImage& picture, const QImage& background)
{
    Mask m;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixel(x, y) != background.pixel(x, y))
                m.insert({x, y});
    return m;
}

// The union of the shape moved by every offset in [x0, x1] x [y0, y1].
Mask grown(const Mask& m, int x0, int x1, int y0, int y1)
{
    Mask out;
    for (const auto& [x, y] : m)
        for (int dx = x0; dx <= x1; ++dx)
            for (int dy = y0; dy <= y1; ++dy)
                out.insert({x + dx, y + dy});
    return out;
}

QRgb rgb(Colour c)
{
    return toQRgb(c);
}

int mix(int back, int fill, int percent)
{
    return int(std::min(255L, std::lround((back * (100 - percent) + fill * percent) / 100.0)));
}

QRgb mixed(QRgb back, Colour fill, int percent)
{
    return qRgb(mix(qRed(back), redOf(fill), percent), mix(qGreen(back), greenOf(fill), percent),
                mix(qBlue(back), blueOf(fill), percent));
}

void paint(QImage& image, const Mask& m, QRgb colour)
{
    for (const auto& [x, y] : m)
        if (image.valid(x, y))
            image.setPixel(x, y, colour);
}

QImage patterned(int w, int h)
{
    QImage image(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            image.setPixel(x, y, qRgb(20 + 40 * x % 230, 200 - 30 * y % 190, (x * 7 + y * 13) % 256));
    return image;
}

}  // namespace

TEST(DesignerRender, HardEdgedAndTheSameEveryTime)
{
    DesignerSettings s = small();
    const QImage first = render(s);
    const QImage background = plainBackground(s);
    // Only two colours: no smoothing softened any edge.
    int ink = 0;
    for (int y = 0; y < first.height(); ++y)
        for (int x = 0; x < first.width(); ++x) {
            const QRgb p = first.pixel(x, y);
            ASSERT_TRUE(p == rgb(kBack) || p == rgb(kInk)) << x << ',' << y;
            ink += p == rgb(kInk);
        }
    EXPECT_GT(ink, 40);
    QImage uniform(first.size(), QImage::Format_RGB32);
    uniform.fill(rgb(kBack));
    EXPECT_EQ(background, uniform);

    // A richer design, twice on one engine and once on another.
    s.size = 36;
    s.sizeX = kDefaultWidth;
    s.sizeY = kDefaultHeight;
    s.border = true;
    s.borderSize = 3;
    s.antiAlias = true;
    s.chkCol[0] = false;
    s.chkGrad[0] = true;
    s.grStyle[0] = 0;
    s.chkGrad[2] = true;
    DesignerEngine one;
    one.renderPicture(s);
    const QImage a = one.picture().copy();
    one.renderPicture(small());
    one.renderPicture(s);
    EXPECT_EQ(one.picture(), a);
    EXPECT_EQ(render(s), a);
    const QByteArray bytes(reinterpret_cast<const char*>(a.constBits()), int(a.sizeInBytes()));
    EXPECT_EQ(QByteArray(reinterpret_cast<const char*>(render(s).constBits()), int(a.sizeInBytes())), bytes);
}

TEST(DesignerRender, AlignmentPlacesTheTextAndKeepsTheBorderOnTheCanvas)
{
    DesignerSettings s = small();
    DesignerEngine e;
    e.renderPicture(s);
    const int tw = e.textWidth(s), th = e.textHeight(s);
    ASSERT_GT(tw, 10);
    ASSERT_GT(th, 10);
    const int y = int(std::lround((32 - th) / 2.0));
    EXPECT_EQ(e.textX(), int(std::lround((64 - tw) / 2.0)));
    EXPECT_EQ(e.textY(), y);

    s.border = true;
    s.borderSize = 3;
    s.align = int(Align::Sinistra);
    e.renderPicture(s);
    EXPECT_EQ(e.textX(), 3);
    EXPECT_EQ(e.textY(), y);
    s.align = int(Align::Destra);
    e.renderPicture(s);
    EXPECT_EQ(e.textX(), 64 - tw - 3);

    s.align = int(Align::Manuale);
    const QPoint dragged = e.moveTextTo(20, 10, s);
    EXPECT_EQ(dragged, QPoint(20 - tw / 2, 10 - th / 2));
    EXPECT_EQ(QPoint(e.textX(), e.textY()), dragged);
    s.textX = dragged.x();
    s.textY = dragged.y();
    e.renderPicture(s);
    EXPECT_EQ(QPoint(e.textX(), e.textY()), dragged);
}

TEST(DesignerRender, BackgroundGradientsInTheirThreeStyles)
{
    DesignerSettings s = small();
    s.text.clear();
    s.chkGrad[2] = true;
    s.gradColour[4] = 0x10E020;  // red 0x20, green 0xE0, blue 0x10
    s.gradColour[5] = 0xF01090;
    const double c1[3] = {0x20, 0xE0, 0x10}, c2[3] = {0x90, 0x10, 0xF0};
    const auto colour = [](const double c[3], const double d[3], double k) {
        return qRgb(int(std::lround(c[0] + k * d[0])), int(std::lround(c[1] + k * d[1])), int(std::lround(c[2] + k * d[2])));
    };

    // "Orizziontale": a column of colour per x, over the canvas width.
    s.grStyle[2] = 1;
    QImage expected(64, 32, QImage::Format_RGB32);
    double d[3];
    for (int c = 0; c < 3; ++c)
        d[c] = (c2[c] - c1[c]) / 64;
    for (int x = 0; x < 64; ++x)
        for (int y = 0; y < 32; ++y)
            expected.setPixel(x, y, colour(c1, d, x));
    EXPECT_EQ(render(s), expected);

    // "Verticale": a row per y, over the height.
    s.grStyle[2] = 2;
    for (int c = 0; c < 3; ++c)
        d[c] = (c2[c] - c1[c]) / 32;
    for (int x = 0; x < 64; ++x)
        for (int y = 0; y < 32; ++y)
            expected.setPixel(x, y, colour(c1, d, y));
    EXPECT_EQ(render(s), expected);

    // "Circolare": filled circles over the larger side, from the outside in,
    // painted here one over the other.
    s.grStyle[2] = 0;
    for (int c = 0; c < 3; ++c)
        d[c] = 2 * (c2[c] - c1[c]) / 64;
    expected.fill(colour(c2, d, 0));
    int count = 0;
    for (double r = 32; r >= 1; r -= 1, ++count)
        for (int x = 0; x < 64; ++x)
            for (int y = 0; y < 32; ++y)
                if ((x - 32.0) * (x - 32.0) + (y - 16.0) * (y - 16.0) <= r * r)
                    expected.setPixel(x, y, colour(c2, d, -count));
    EXPECT_EQ(render(s), expected);
    EXPECT_EQ(count, 32);
    // The innermost circle is about the first colour.
    EXPECT_NEAR(qGreen(expected.pixel(32, 16)), 0xE0, 8);
}

TEST(DesignerRender, TextGradientSpansTheTextAndNotTheCanvas)
{
    DesignerSettings s = small();
    DesignerEngine e;
    e.renderPicture(s);
    const Mask letters = lettersOf(e.picture(), plainBackground(s));
    const int tw = e.textWidth(s), th = e.textHeight(s);

    s.chkCol[0] = false;
    s.chkGrad[0] = true;
    s.gradColour[0] = 0x0000FF;
    s.gradColour[1] = 0xFF0000;
    for (const int style : {1, 2}) {
        s.grStyle[0] = style;
        e.renderPicture(s);
        const int length = style == 1 ? tw : th;
        QImage expected = plainBackground(s);
        for (const auto& [x, y] : letters) {
            // The gradient starts at the text's corner in its own layer, which
            // lands on the text's corner in the picture.
            const int i = style == 1 ? x - e.textX() : y - e.textY();
            const double k = double(i) / length;
            expected.setPixel(x, y, qRgb(int(std::lround(255 - 255 * k)), 0, int(std::lround(255 * k))));
        }
        EXPECT_EQ(e.picture(), expected) << "style " << style;
    }

    // No text: no width to spread the colours over, and nothing to show.
    s.text.clear();
    for (const int style : {0, 1, 2}) {
        s.grStyle[0] = style;
        s.grStyle[1] = style;
        s.border = true;
        s.chkCol[1] = false;
        s.chkGrad[1] = true;
        EXPECT_EQ(render(s), plainBackground(s)) << "style " << style;
    }
}

TEST(DesignerRender, BorderFollowsTheEdgeBoxesAndTheHoleShowsTheBackground)
{
    DesignerSettings s = small();
    s.tile = true;
    DesignerEngine e;
    e.setBackground(patterned(5, 3));
    e.renderPicture(s);
    const QImage background = [&] {
        DesignerEngine bare;
        bare.setBackground(patterned(5, 3));
        DesignerSettings b = s;
        b.text.clear();
        bare.renderPicture(b);
        return bare.picture();
    }();
    const Mask letters = lettersOf(e.picture(), background);
    ASSERT_FALSE(letters.empty());

    s.border = true;
    s.borderSize = 2;
    // All four edges: the border grows two pixels every way.
    e.renderPicture(s);
    QImage expected = background.copy();
    paint(expected, grown(letters, -2, 2, -2, 2), rgb(s.solidColour[1]));
    paint(expected, letters, rgb(kInk));
    EXPECT_EQ(e.picture(), expected);

    // Right and bottom only, with a transparent text: a hole in the border.
    s.left = s.top = false;
    s.transparent = true;
    e.renderPicture(s);
    expected = background.copy();
    paint(expected, grown(letters, 0, 2, 0, 2), rgb(s.solidColour[1]));
    for (const auto& p : letters)
        expected.setPixel(p.first, p.second, background.pixel(p.first, p.second));
    EXPECT_EQ(e.picture(), expected);

    // No edge box at all: one stamp, all under the text.
    s.right = s.bottom = false;
    s.transparent = false;
    e.renderPicture(s);
    expected = background.copy();
    paint(expected, letters, rgb(kInk));
    EXPECT_EQ(e.picture(), expected);
}

TEST(DesignerRender, GlowBlendsTheRingByTheRedChannel)
{
    DesignerSettings s = small();
    const QImage background = plainBackground(s);
    const Mask letters = lettersOf(render(s), background);

    // Size 0: the ring loop never runs and the letters cover the blend.
    s.glow = true;
    s.borderSize = 0;
    EXPECT_EQ(render(s), render(small()));
    s.glow = false;
    s.fade = true;
    EXPECT_EQ(render(s), render(small()));

    // Size 2 with glow: n = 4, the outer ring at 25 %, the inner at 50 %,
    // towards the text's colour.
    s.fade = false;
    s.glow = true;
    s.borderSize = 2;
    QImage expected = background.copy();
    const QRgb back = rgb(kBack);
    paint(expected, grown(letters, -2, 2, -2, 2), mixed(back, kInk, 25));
    paint(expected, grown(letters, -1, 1, -1, 1), mixed(back, kInk, 50));
    paint(expected, letters, rgb(kInk));
    EXPECT_EQ(render(s), expected);

    // Size 1 with fade and a solid colour: n = 2, the ring at 50 %.
    s.glow = false;
    s.fade = true;
    s.borderSize = 1;
    expected = background.copy();
    paint(expected, grown(letters, -1, 1, -1, 1), mixed(back, kInk, 50));
    paint(expected, letters, rgb(kInk));
    EXPECT_EQ(render(s), expected);
}

TEST(DesignerRender, AlphaInvertAndMirror)
{
    DesignerSettings s = small();
    const QImage background = plainBackground(s);
    const Mask letters = lettersOf(render(s), background);

    s.alpha = true;
    s.antiAlias = true;
    s.alphaPercent = 0;
    EXPECT_EQ(render(s), background);

    s.antiAlias = false;
    s.alphaPercent = 40;
    QImage expected = background.copy();
    paint(expected, letters, mixed(rgb(kBack), kInk, 40));
    EXPECT_EQ(render(s), expected);

    s = small();
    s.invert = true;
    expected = background.copy();
    paint(expected, letters, qRgb(255 - redOf(kBack), 255 - greenOf(kBack), 255 - blueOf(kBack)));
    EXPECT_EQ(render(s), expected);

    // Mirrored in its layer, then taken from the same box.
    s = small();
    s.mirror = true;
    DesignerEngine e;
    e.renderPicture(s);
    const int cx = (64 - e.textWidth(s)) / 2;
    expected = background.copy();
    for (const auto& [x, y] : letters) {
        const int layerX = x - e.textX() + cx;
        const int mirroredX = 63 - layerX - cx + e.textX();
        if (mirroredX >= e.textX() && mirroredX < e.textX() + e.textWidth(s))
            expected.setPixel(mirroredX, y, rgb(kInk));
    }
    EXPECT_EQ(e.picture(), expected);
}

TEST(DesignerRender, BackgroundTileStretchShrinkAndMove)
{
    DesignerSettings s = small();
    s.text.clear();
    s.sizeX = 12;
    s.sizeY = 7;
    DesignerEngine e;
    const auto expect = [&](const QImage& source, auto at) {
        e.setBackground(source);
        e.renderPicture(s);
        QImage expected(12, 7, QImage::Format_RGB32);
        for (int y = 0; y < 7; ++y)
            for (int x = 0; x < 12; ++x)
                expected.setPixel(x, y, at(x, y));
        return std::pair(e.picture(), expected);
    };
    const QImage small53 = patterned(5, 3);

    s.tile = true;
    auto [tiled, tiledExpected] = expect(small53, [&](int x, int y) { return small53.pixel(x % 5, y % 3); });
    EXPECT_EQ(tiled, tiledExpected);
    s.tile = false;

    s.stretch = true;
    auto [up, upExpected] = expect(small53, [&](int x, int y) { return small53.pixel(x * 5 / 12, y * 3 / 7); });
    EXPECT_EQ(up, upExpected);
    // Taller than the canvas: only the width is stretched.
    const QImage tall = patterned(5, 10);
    auto [wide, wideExpected] = expect(tall, [&](int x, int y) { return tall.pixel(x * 5 / 12, y); });
    EXPECT_EQ(wide, wideExpected);
    EXPECT_EQ(e.backScroll(s).enabledY, true);
    EXPECT_EQ(e.backScroll(s).maxY, 3);
    EXPECT_EQ(e.backScroll(s).enabledX, false);

    s.stretch = false;
    s.shrink = true;
    const QImage long20 = patterned(20, 3);
    auto [shrunk, shrunkExpected] = expect(long20, [&](int x, int y) {
        return y < 3 ? long20.pixel(x * 20 / 12, y) : rgb(kBack);
    });
    EXPECT_EQ(shrunk, shrunkExpected);
    EXPECT_FALSE(e.backScroll(s).enabledX);
    EXPECT_FALSE(e.backScroll(s).enabledY);

    s.shrink = false;
    s.moveBackX = 3;
    s.moveBackY = 2;
    const QImage big = patterned(20, 10);
    auto [moved, movedExpected] = expect(big, [&](int x, int y) { return big.pixel(x + 3, y + 2); });
    EXPECT_EQ(moved, movedExpected);
    const BackScroll bars = e.backScroll(s);
    EXPECT_TRUE(bars.enabledX && bars.enabledY);
    EXPECT_EQ(bars.maxX, 8);
    EXPECT_EQ(bars.maxY, 3);

    e.clearBackground();
    e.renderPicture(s);
    QImage plain(12, 7, QImage::Format_RGB32);
    plain.fill(rgb(kBack));
    EXPECT_EQ(e.picture(), plain);
    EXPECT_FALSE(e.backScroll(s).enabledX);
}

TEST(DesignerRender, TextureTilesInTheLettersAndItsBarLightensIt)
{
    DesignerSettings s = small();
    const QImage background = plainBackground(s);
    const Mask letters = lettersOf(render(s), background);
    const QImage texture = patterned(4, 3);

    s.chkCol[0] = false;
    DesignerEngine e;
    e.setTexture(0, texture);
    e.renderPicture(s);
    const int cx = (64 - e.textWidth(s)) / 2, cy = (32 - e.textHeight(s)) / 2;
    QImage expected = background.copy();
    for (const auto& [x, y] : letters)
        expected.setPixel(x, y, texture.pixel((x - e.textX() + cx) % 4, (y - e.textY() + cy) % 3));
    EXPECT_EQ(e.picture(), expected);

    // The bar at 255 gives white; an unconfirmed preview is dropped by the
    // next render; a confirmed one becomes the texture.
    QImage white(4, 3, QImage::Format_RGB32);
    white.fill(Qt::white);
    EXPECT_EQ(e.texturePreview(0, 255), white);
    EXPECT_TRUE(e.texturePreviewPending(0));
    e.renderPicture(s);
    EXPECT_FALSE(e.texturePreviewPending(0));
    EXPECT_EQ(e.texturePreviewImage(0), texture);
    EXPECT_EQ(e.picture(), expected);

    e.confirmTexture(0, 40);
    QImage lighter = texture.copy();
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) {
            const QRgb p = texture.pixel(x, y);
            lighter.setPixel(x, y, qRgb(std::min(255, qRed(p) + 40), std::min(255, qGreen(p) + 40), std::min(255, qBlue(p) + 40)));
        }
    EXPECT_EQ(e.texture(0), lighter);
    EXPECT_FALSE(e.texturePreviewPending(0));
}

TEST(DesignerRender, HoverAndShadowFromThePad)
{
    DesignerSettings s = small();
    const QImage plain = render(s);
    const QImage background = plainBackground(s);
    const Mask letters = lettersOf(plain, background);

    DesignerEngine e;
    // The light straight above: the shadow hides under the letters.
    e.renderPicture(s);
    e.hover(100, 100, s);
    EXPECT_EQ(e.picture(), plain);
    // The light at the pad's right edge: the shadow 10 pixels to the left,
    // at half the alpha.
    e.renderPicture(s);
    e.hover(200, 100, s);
    QImage expected = background.copy();
    paint(expected, grown(letters, -10, -10, 0, 0), mixed(rgb(kBack), 0, 50));
    paint(expected, letters, rgb(kInk));
    EXPECT_EQ(e.picture(), expected);

    // The light at the pad's foot: no shadow falls.
    e.renderPicture(s);
    e.shadow(60, 200, s);
    EXPECT_EQ(e.picture(), plain);
    // Higher up it falls beside the text and the pad shows a preview.
    e.renderPicture(s);
    e.shadowPreview(20, 10, s);
    EXPECT_EQ(e.picture(), plain);
    EXPECT_NE(e.magnify().pixel(100, 100), qRgb(255, 255, 255));
    e.shadow(20, 10, s);
    EXPECT_NE(e.picture(), plain);
    for (const auto& [x, y] : letters)
        EXPECT_EQ(e.picture().pixel(x, y), rgb(kInk));
    e.bend(s);
    EXPECT_EQ(e.picture(), background);
}

TEST(DesignerRender, LightStopsAtTheLettersUnlessReal)
{
    DesignerSettings s = small();
    s.backColour = 0x101010;
    s.solidColour[0] = 0x404040;
    DesignerEngine e;
    e.renderPicture(s);
    const QImage before = e.picture().copy();
    e.light(2, 16, 0x00FFFF, false, 50, 20, s);
    const QImage stopped = e.picture().copy();
    e.renderPicture(s);
    e.light(2, 16, 0x00FFFF, true, 50, 20, s);
    const QImage real = e.picture().copy();

    // Yellow light: red and green grow, blue stays.
    EXPECT_EQ(qRed(stopped.pixel(2, 16)), 255);
    EXPECT_EQ(qGreen(stopped.pixel(2, 16)), 255);
    EXPECT_EQ(qBlue(stopped.pixel(2, 16)), 0x10);
    int darker = 0;
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 64; ++x) {
            const QRgb a = stopped.pixel(x, y), b = real.pixel(x, y), o = before.pixel(x, y);
            EXPECT_GE(qRed(b), qRed(a));
            EXPECT_GE(qRed(a), qRed(o));
            EXPECT_EQ(qBlue(b), qBlue(o));
            darker += qRed(b) > qRed(a);
            // Beyond the reach of the light nothing changes.
            if ((x - 2) * (x - 2) + (y - 16) * (y - 16) > 52 * 52) {
                EXPECT_EQ(b, o);
            }
        }
    EXPECT_GT(darker, 20);  // the letters cast a shadow of light
}

TEST(DesignerRender, DrawingToolsAndTheEyedropper)
{
    DesignerSettings s = small();
    s.text.clear();
    DesignerEngine e;
    e.renderPicture(s);
    QImage expected = e.picture().copy();
    e.drawBox(10, 5, 3, 2, 0x0000FF);
    e.drawPoint(40, 20, 0x00FF00);
    e.drawPoint(70, 20, 0x00FF00);  // off the picture: nothing
    e.drawLine(20, 30, 29, 30, 0xFF0000);
    for (int x = 3; x <= 10; ++x) {
        expected.setPixel(x, 2, qRgb(255, 0, 0));
        expected.setPixel(x, 5, qRgb(255, 0, 0));
    }
    for (int y = 2; y <= 5; ++y) {
        expected.setPixel(3, y, qRgb(255, 0, 0));
        expected.setPixel(10, y, qRgb(255, 0, 0));
    }
    expected.setPixel(40, 20, qRgb(0, 255, 0));
    for (int x = 20; x <= 29; ++x)
        expected.setPixel(x, 30, qRgb(0, 0, 255));
    EXPECT_EQ(e.picture(), expected);
    EXPECT_EQ(e.pickColour(40, 20), 0x00FF00u);
    EXPECT_EQ(e.pickColour(0, 0), kBack);
}

TEST(DesignerRender, OddSettingsClipAndNeverFail)
{
    // Text far wider and taller than the picture, every option on, and
    // sizes at and below one pixel: the copies clip, the picture keeps its size.
    DesignerSettings s = small();
    s.size = 72;
    s.border = s.glow = s.antiAlias = s.alpha = s.mirror = true;
    s.borderSize = 4;
    s.alphaPercent = 70;
    s.chkCol = {false, false};
    s.chkGrad = {true, true, true};
    s.grStyle = {0, 1, 0};
    s.align = 9;
    s.moveBackX = -5;
    for (const QSize size : {QSize(64, 32), QSize(1, 1), QSize(0, -3), QSize(3, 90)}) {
        s.sizeX = size.width();
        s.sizeY = size.height();
        for (const bool invert : {false, true}) {
            s.invert = invert;
            DesignerEngine e;
            e.setBackground(patterned(7, 5));
            e.renderPicture(s);
            EXPECT_EQ(e.picture().size(), QSize(std::max(1, size.width()), std::max(1, size.height())));
            for (int f = 0; f < 4; ++f)
                e.applyFilter(f);
            e.light(-3, 500, 0xFFFFFF, false, 30, 0, s);
            e.shadow(0, 0, s);
            e.hover(200, 0, s);
            e.shadowPreview(300, -50, s);
            e.drawLine(-10, -10, 100, 100, 0);
        }
    }
    s.size = 0;
    s.text = QStringLiteral("x");
    s.borderSize = 1000;
    s.glow = false;
    s.fade = true;
    DesignerEngine e;
    e.renderPicture(s);
    EXPECT_GT(e.textWidth(s), 0);
}
