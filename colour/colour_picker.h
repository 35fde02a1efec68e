#pragma once

// The state and rules of the colour picker, apart from its window: the
// current colour in both models, the field mode, where a click on the field
// or the slider lands, the checks of the boxes and the custom colours.

#include "colour/colour_model.h"

#include <QPoint>
#include <QString>

#include <cstdint>
#include <optional>

namespace tornelia::colour {

enum class FieldMode { Hue = 0, Saturation = 1, Brightness = 2 };

// The boxes of the dialog, each checked on its own.
enum class Box { H, S, B, Red, Green, Blue };

class ColourPicker {
public:
    ColourPicker();

    std::uint32_t colour() const { return rgb(r_, g_, b_); }
    int red() const { return r_; }
    int green() const { return g_; }
    int blue() const { return b_; }
    // Hue in degrees 0..360, saturation and brightness in percent.
    int hueBox() const;
    int saturationBox() const;
    int brightnessBox() const;

    void setColour(std::uint32_t c);
    void setHsb(double hueDegrees, double saturation, double brightness);

    FieldMode mode() const { return mode_; }
    void setMode(FieldMode m) { mode_ = m; }

    // A click or drag at a point of the field (0..255 from the top left) or
    // at a row of the slider (0..255 from the top); outside points are held
    // to the edge.
    void pickField(QPoint p);
    void pickSlider(int row);
    // Where the pointer and the slider's mark stand for the current colour.
    QPoint fieldPosition() const;
    int sliderRow() const;

    void drawField(PixelBuffer& field) const;
    void drawSlider(PixelBuffer& slider) const;

    // The message for a bad value, or nothing when the value is taken; a
    // good value changes the colour. An empty box is not yet a value.
    std::optional<QString> enterBox(Box box, const QString& text, bool final);

    // The palette colour number index (1 black .. 216 white): its parts, its
    // hexadecimal form and its value. An index outside leaves the outputs
    // as they were and gives -1.
    static long GetSafeColor(int index, int& r, int& g, int& b, QString& hex, long& colour);
    static void GetHexVal(int r, int g, int b, QString& text);

    CustomColours& custom() { return custom_; }
    const CustomColours& custom() const { return custom_; }

private:
    void hsbFromRgb();
    void rgbFromHsb();

    int r_ = 0, g_ = 0, b_ = 0;
    double h_ = 0, s_ = 0, v_ = 0;  // degrees, 0..1, 0..1
    FieldMode mode_ = FieldMode::Hue;
    CustomColours custom_;
};

}  // namespace tornelia::colour
