#include "colour/colour_picker.h"

#include <algorithm>
#include <cmath>

namespace tornelia::colour {

namespace {

const QString kTo360 = QStringLiteral("Inserisci un valore valido tra 1 e 360");
const QString kTo100 = QStringLiteral("Inserisci un valore valido tra 1 e 100");

int hueRow(double degrees)
{
    return std::clamp(int(std::lround(degrees * 255 / 360)), 0, 255);
}

double rowHue(int row)
{
    return std::clamp(row, 0, 255) * 360.0 / 255;
}

// The pure hue of an angle, on the same linear scale as the field's.
void pureHue(double degrees, double c[3])
{
    static constexpr double kHues[7][3] = {{255, 0, 0},   {255, 255, 0}, {0, 255, 0}, {0, 255, 255},
                                           {0, 0, 255},   {255, 0, 255}, {255, 0, 0}};
    const double t = std::clamp(degrees, 0.0, 360.0) / 60;
    const int k = std::clamp(int(t), 0, 5);
    const double f = t - k;
    for (int i = 0; i < 3; ++i)
        c[i] = kHues[k][i] + (kHues[k + 1][i] - kHues[k][i]) * f;
}

}  // namespace

ColourPicker::ColourPicker()
{
    custom_.fill(kEmptyCustom);
}

int ColourPicker::hueBox() const { return int(std::lround(h_)); }
int ColourPicker::saturationBox() const { return int(std::lround(s_ * 100)); }
int ColourPicker::brightnessBox() const { return int(std::lround(v_ * 100)); }

void ColourPicker::setColour(std::uint32_t c)
{
    splitColour(c & 0x00FFFFFF, r_, g_, b_);
    hsbFromRgb();
}

void ColourPicker::setHsb(double hueDegrees, double saturation, double brightness)
{
    h_ = std::clamp(hueDegrees, 0.0, 360.0);
    s_ = std::clamp(saturation, 0.0, 1.0);
    v_ = std::clamp(brightness, 0.0, 1.0);
    rgbFromHsb();
}

void ColourPicker::hsbFromRgb()
{
    const int hi = std::max({r_, g_, b_});
    const int lo = std::min({r_, g_, b_});
    v_ = hi / 255.0;
    s_ = hi == 0 ? 0 : double(hi - lo) / hi;
    // A grey has no hue of its own; it keeps the one it had, so the field
    // does not jump to red when the saturation passes through zero.
    if (hi == lo)
        return;
    const double d = hi - lo;
    double h;
    if (hi == r_)
        h = (g_ - b_) / d;
    else if (hi == g_)
        h = 2 + (b_ - r_) / d;
    else
        h = 4 + (r_ - g_) / d;
    h *= 60;
    if (h < 0)
        h += 360;
    h_ = h;
}

void ColourPicker::rgbFromHsb()
{
    // The pure hue on the same scale as the field and the slider, then
    // towards white by the saturation and towards black by the brightness.
    double c[3];
    pureHue(h_, c);
    for (double& v : c)
        v = (255 + (v - 255) * s_) * v_;
    r_ = int(std::lround(c[0]));
    g_ = int(std::lround(c[1]));
    b_ = int(std::lround(c[2]));
}

void ColourPicker::pickField(QPoint p)
{
    const double across = std::clamp(p.x(), 0, 255) / 255.0;
    const double down = 1 - std::clamp(p.y(), 0, 255) / 255.0;
    switch (mode_) {
    case FieldMode::Hue: setHsb(h_, across, down); break;
    case FieldMode::Saturation: setHsb(rowHue(std::clamp(p.x(), 0, 255)), s_, down); break;
    case FieldMode::Brightness: setHsb(rowHue(std::clamp(p.x(), 0, 255)), down, v_); break;
    }
}

void ColourPicker::pickSlider(int row)
{
    const double down = 1 - std::clamp(row, 0, 255) / 255.0;
    switch (mode_) {
    case FieldMode::Hue: setHsb(rowHue(row), s_, v_); break;
    case FieldMode::Saturation: setHsb(h_, down, v_); break;
    case FieldMode::Brightness: setHsb(h_, s_, down); break;
    }
}

QPoint ColourPicker::fieldPosition() const
{
    const int hue = hueRow(h_);
    const int s = int(std::lround(s_ * 255)), v = 255 - int(std::lround(v_ * 255));
    switch (mode_) {
    case FieldMode::Hue: return {s, v};
    case FieldMode::Saturation: return {hue, v};
    case FieldMode::Brightness: return {hue, 255 - s};
    }
    return {};
}

int ColourPicker::sliderRow() const
{
    switch (mode_) {
    case FieldMode::Hue: return hueRow(h_);
    case FieldMode::Saturation: return 255 - int(std::lround(s_ * 255));
    case FieldMode::Brightness: return 255 - int(std::lround(v_ * 255));
    }
    return 0;
}

void ColourPicker::drawField(PixelBuffer& field) const
{
    double c[3];
    pureHue(h_, c);
    const double r = c[0], g = c[1], b = c[2];
    const int v = int(std::lround(v_ * 255));
    switch (mode_) {
    case FieldMode::Hue:
        drawFieldHue(field, rgb(int(std::lround(r)), int(std::lround(g)), int(std::lround(b))));
        break;
    case FieldMode::Saturation:
        // Only the saturation of the colour passed counts.
        drawFieldSaturation(field, rgb(255, int(std::lround(255 * (1 - s_))), int(std::lround(255 * (1 - s_)))));
        break;
    case FieldMode::Brightness: drawFieldBrightness(field, rgb(v, v, v)); break;
    }
}

void ColourPicker::drawSlider(PixelBuffer& slider) const
{
    double c[3];
    pureHue(h_, c);
    const double r = c[0], g = c[1], b = c[2];
    switch (mode_) {
    case FieldMode::Hue: drawSliderHue(slider); break;
    case FieldMode::Saturation:
        drawSliderToWhite(slider, int(std::lround(r * v_)), int(std::lround(g * v_)), int(std::lround(b * v_)));
        break;
    case FieldMode::Brightness: {
        const auto full = [&](double pure) { return int(std::lround(255 + (pure - 255) * s_)); };
        drawSliderToBlack(slider, full(r), full(g), full(b));
        break;
    }
    }
}

std::optional<QString> ColourPicker::enterBox(Box box, const QString& text, bool final)
{
    const QString t = text.trimmed();
    if (t.isEmpty() && !final)
        return std::nullopt;
    bool ok = false;
    const int v = t.toInt(&ok);
    int top = 255;
    if (box == Box::H)
        top = 360;
    else if (box == Box::S || box == Box::B)
        top = 100;
    if (!ok || v < 0 || v > top)
        return box == Box::B ? kTo100 : kTo360;
    switch (box) {
    case Box::H: setHsb(v, s_, v_); break;
    case Box::S: setHsb(h_, v / 100.0, v_); break;
    case Box::B: setHsb(h_, s_, v / 100.0); break;
    case Box::Red: r_ = v; hsbFromRgb(); break;
    case Box::Green: g_ = v; hsbFromRgb(); break;
    case Box::Blue: b_ = v; hsbFromRgb(); break;
    }
    return std::nullopt;
}

long ColourPicker::GetSafeColor(int index, int& r, int& g, int& b, QString& hex, long& colour)
{
    int count = 0;
    for (int rr = 0; rr <= 255; rr += 51)
        for (int gg = 0; gg <= 255; gg += 51)
            for (int bb = 0; bb <= 255; bb += 51)
                if (++count == index) {
                    r = rr;
                    g = gg;
                    b = bb;
                    GetHexVal(r, g, b, hex);
                    colour = long(rgb(r, g, b));
                    return colour;
                }
    return -1;
}

void ColourPicker::GetHexVal(int r, int g, int b, QString& text)
{
    const auto two = [](int v) { return QString::number(v & 0xFF, 16).toUpper().rightJustified(2, u'0'); };
    text = two(r) + two(g) + two(b);
}

}  // namespace tornelia::colour
