// What the text designer costs on each control change: a full render of the
// default canvas with a border of 5 (121 stamps) and a gradient fill, and the
// "Blur" filter over a large picture.

#include "bench/widgets_main.h"
#include "pictures/designer/designer_engine.h"

#include <benchmark/benchmark.h>

using namespace tornelia::designer;

static void BM_RenderBorderGradient(benchmark::State& state)
{
    DesignerEngine engine;
    DesignerSettings s;
    s.border = true;
    s.borderSize = 5;
    s.chkCol[0] = false;
    s.chkGrad[0] = true;
    s.grStyle[0] = int(state.range(0));
    for (auto _ : state) {
        engine.renderPicture(s);
        benchmark::DoNotOptimize(engine.picture().constBits());
    }
}
BENCHMARK(BM_RenderBorderGradient)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

static void BM_RenderGlow(benchmark::State& state)
{
    DesignerEngine engine;
    DesignerSettings s;
    s.glow = true;
    s.borderSize = 5;
    s.antiAlias = true;
    s.alpha = true;
    s.alphaPercent = 70;
    for (auto _ : state) {
        engine.renderPicture(s);
        benchmark::DoNotOptimize(engine.picture().constBits());
    }
}
BENCHMARK(BM_RenderGlow)->Unit(benchmark::kMillisecond);

static void BM_Blur800x300(benchmark::State& state)
{
    DesignerEngine engine;
    DesignerSettings s;
    s.sizeX = 800;
    s.sizeY = 300;
    s.size = 72;
    s.border = true;
    s.borderSize = 3;
    s.chkCol[0] = false;
    s.chkGrad[0] = true;
    engine.renderPicture(s);
    int columns = 0;
    for (auto _ : state) {
        engine.applyFilter(Filter::Blur, [&](int) { ++columns; });
        benchmark::DoNotOptimize(engine.picture().constBits());
    }
    benchmark::DoNotOptimize(columns);
}
BENCHMARK(BM_Blur800x300)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    return tornelia::bench::runWithWidgets(argc, argv);
}
