// The colour effects over a long selection: the rainbow over 10,000
// characters, from fetching the selection's RTF to storing it back, and the
// ripple over the same text.
//
//   tornelia_bench_effects [benchmark options]

#include "bench/bench_ports.h"
#include "bench/rtf_samples.h"
#include "core/ports.h"
#include "rtf/cls_rtf_font_looks.h"

#include <benchmark/benchmark.h>

using namespace tornelia;

namespace {

constexpr int kChars = 10000;

using bench::SilentMessages;

// Fresh prose each round: a coloured text would carry its table into the
// next and measure a different thing.
template <typename Effect>
void runOnProse(benchmark::State& state, Effect effect)
{
    SilentMessages messages;
    const QString text = bench::prose(kChars);
    for (auto _ : state) {
        state.PauseTiming();
        RichTextSurface surface;
        surface.setText(text);
        surface.setSelStart(0);
        surface.setSelLength(surface.length());
        ClsRTFFontLooks looks(messages);
        looks.AssignControls(&surface, nullptr);
        state.ResumeTiming();
        effect(looks);
        benchmark::DoNotOptimize(surface.length());
    }
}

void BM_RainBow10k(benchmark::State& state)
{
    runOnProse(state, [](ClsRTFFontLooks& l) { l.RainBow(true, true); });
}
BENCHMARK(BM_RainBow10k)->Unit(benchmark::kMillisecond);

void BM_Materials10k(benchmark::State& state)
{
    runOnProse(state, [](ClsRTFFontLooks& l) { l.Materials(QStringLiteral("gold"), false, true, false); });
}
BENCHMARK(BM_Materials10k)->Unit(benchmark::kMillisecond);

void BM_RippleSize10k(benchmark::State& state)
{
    runOnProse(state, [](ClsRTFFontLooks& l) {
        int value = 0;
        l.RippleEngine(1, 3, true, value, 1);
    });
}
BENCHMARK(BM_RippleSize10k)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv)
{
    return bench::runBenchmarks(argc, argv);
}
