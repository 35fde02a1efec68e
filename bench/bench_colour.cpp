// What one step of a drag on the colour picker costs: the field redrawn for
// the new colour in each mode, a slider, and the field blitted to a surface.

#include "colour/colour_model.h"
#include "colour/colour_picker.h"

#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

using namespace tornelia::colour;

static void BM_FieldForMode(benchmark::State& state)
{
    ColourPicker picker;
    picker.setMode(FieldMode(state.range(0)));
    PixelBuffer field;
    int step = 0;
    for (auto _ : state) {
        picker.pickSlider(step++ & 255);
        picker.drawField(field);
        benchmark::DoNotOptimize(field.data());
    }
}
BENCHMARK(BM_FieldForMode)->Arg(0)->Arg(1)->Arg(2);

static void BM_SliderToBlack(benchmark::State& state)
{
    PixelBuffer slider;
    for (auto _ : state) {
        drawSliderToBlack(slider, 200, 120, 40);
        benchmark::DoNotOptimize(slider.data());
    }
}
BENCHMARK(BM_SliderToBlack);

static void BM_BlitField(benchmark::State& state)
{
    PixelBuffer field;
    drawFieldHue(field, rgb(200, 120, 40));
    QImage surface(256, 256, QImage::Format_RGB32);
    QPainter p(&surface);
    for (auto _ : state) {
        blitRgb(p, field.data(), 0, 0, 256, 256, false);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_BlitField);

BENCHMARK_MAIN();
