// The RTF string engine on a formatted document of 50,000 characters: a
// bold toggle and an extended underline toggle over the whole text (each
// iteration turns the format on or off in turn, so the document keeps its
// size), with the parts a toggle is made of (the fetch of the selection's
// RTF, the cut into bits and the join, the store) to show where the time
// goes; and a highlight that gives 5,000 characters a colour-table entry
// each.
//
//   tornelia_bench_engine [benchmark options]

#include "bench/bench_ports.h"
#include "bench/rtf_samples.h"
#include "core/ports.h"
#include "rtf/cls_extended_rtf.h"
#include "rtf/cls_rtf_font_looks.h"

#include <benchmark/benchmark.h>

#include <memory>

using namespace tornelia;

namespace {

constexpr int kChars = 50000;

using bench::SilentMessages;

struct Document {
    SilentMessages messages;
    std::unique_ptr<RichTextSurface> testo = bench::formattedDocument(kChars);
    ClsExtendedRTF extended{messages};
    ClsRTFFontLooks looks{messages};
    Document()
    {
        extended.AssignControls(testo.get(), nullptr);
        looks.AssignControls(testo.get(), nullptr);
        selectAll();
    }
    void selectAll()
    {
        testo->setSelStart(0);
        testo->setSelLength(testo->length());
    }
};

void BM_ToggleBold(benchmark::State& state)
{
    Document d;
    for (auto _ : state)
        d.looks.ToggleWord(QStringLiteral("\\b"));
    state.counters["chars"] = double(d.testo->length());
}
BENCHMARK(BM_ToggleBold)->Unit(benchmark::kMillisecond);

void BM_ToggleDotted(benchmark::State& state)
{
    Document d;
    for (auto _ : state)
        d.extended.setSelDot(true);
    state.counters["chars"] = double(d.testo->length());
}
BENCHMARK(BM_ToggleDotted)->Unit(benchmark::kMillisecond);

// Nothing selected: the toggle works on TextRTF.
void BM_ToggleDottedWholeDocument(benchmark::State& state)
{
    Document d;
    d.testo->setSelStart(0);
    for (auto _ : state)
        d.extended.setSelDot(true);
}
BENCHMARK(BM_ToggleDottedWholeDocument)->Unit(benchmark::kMillisecond);

void BM_Part_Fetch(benchmark::State& state)
{
    Document d;
    for (auto _ : state)
        benchmark::DoNotOptimize(d.extended.RtfFetch(false));
}
BENCHMARK(BM_Part_Fetch)->Unit(benchmark::kMillisecond);

void BM_Part_SplitToggleJoin(benchmark::State& state)
{
    Document d;
    const QString s = d.extended.RtfFetch(false);
    const int headerLen = d.extended.headerLen();
    for (auto _ : state) {
        QString head;
        QStringList bits;
        rtfkit::SplitStreamFull(s, headerLen, head, bits);
        for (QString& bit : bits)
            bit = rtfkit::SlugOrText(bit, ClsExtendedRTF::ToggleBit(bit, QStringLiteral("\\uld"), true));
        benchmark::DoNotOptimize(head + rtfkit::JoinBits(bits, QStringLiteral(" ")));
    }
}
BENCHMARK(BM_Part_SplitToggleJoin)->Unit(benchmark::kMillisecond);

void BM_Part_Store(benchmark::State& state)
{
    Document d;
    const QString plain = d.testo->SelRTF();
    d.extended.setSelDot(true);
    d.selectAll();
    const QString dotted = d.testo->SelRTF();
    bool on = false;
    for (auto _ : state) {
        d.selectAll();
        d.testo->setSelRTF(on ? dotted : plain);
        on = !on;
    }
}
BENCHMARK(BM_Part_Store)->Unit(benchmark::kMillisecond);

void BM_HighlightFiveThousand(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        Document d;
        d.testo->setSelStart(0);
        d.testo->setSelLength(5000);
        state.ResumeTiming();
        d.looks.RTFHighlightHard(0x00FFFF);
    }
}
BENCHMARK(BM_HighlightFiveThousand)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv)
{
    return bench::runBenchmarks(argc, argv);
}
