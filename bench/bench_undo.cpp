// Undo on a long session: 2,000 words typed one at a time into a formatted
// document of 40,000 characters, one undo step before each word, as the
// typing handler takes them. Reports the memory the store holds and the time
// of one step (unDO), one undo (UnDoo) and one redo (RedOO), with the parts
// an undo is made of (the surface's TextRTF write, its TextRTF read, and a
// read from the store) to show where the time goes.
//
//   tornelia_bench_undo [benchmark options]

#include "bench/rtf_samples.h"
#include "core/rich_text_surface.h"
#include "core/undo_store.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QStandardPaths>

#include <memory>
#include <random>

using namespace tornelia;

namespace {

constexpr int kWords = 2000;
constexpr double kMB = 1024.0 * 1024.0;

void typeWord(RichTextSurface& s)
{
    s.setSelStart(s.length());
    s.typeText(QStringLiteral("word "));
}

// The document and its store after the 2,000 words, shared by the benchmarks
// that go back and forth through the steps.
struct Session {
    std::unique_ptr<RichTextSurface> testo = bench::formattedDocument(40000);
    UndoStore store{*testo};
    Session()
    {
        for (int i = 0; i < kWords; ++i) {
            store.unDO();
            typeWord(*testo);
        }
    }
};

Session& session()
{
    static Session s;
    return s;
}

// One step per word: the time is that of unDO alone, the typing is not counted.
void BM_UnDO_PerWord(benchmark::State& state)
{
    auto testo = bench::formattedDocument(40000);
    UndoStore store(*testo);
    double plainBytes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        typeWord(*testo);
        state.ResumeTiming();
        store.unDO();
        state.PauseTiming();
        plainBytes += double(store.passo(store.passoTot()).size()) * sizeof(QChar);
        state.ResumeTiming();
    }
    state.counters["steps"] = store.passoTot();
    state.counters["undo_on"] = store.annullaOff() ? 0 : 1;
    state.counters["rtf_KB"] = double(testo->TextRTF().size()) / 1024.0;
    state.counters["store_MB"] = double(store.memoryBytes()) / kMB;
    state.counters["whole_copies_MB"] = plainBytes / kMB;
}
BENCHMARK(BM_UnDO_PerWord)->Unit(benchmark::kMillisecond)->Iterations(kWords);

// Undo right after typing: UnDoo stores the typing first, then goes back.
void BM_UnDoo_AfterTyping(benchmark::State& state)
{
    Session& s = session();
    for (auto _ : state) {
        state.PauseTiming();
        typeWord(*s.testo);
        state.ResumeTiming();
        s.store.UnDoo();
    }
    state.counters["steps"] = s.store.passoTot();
}
BENCHMARK(BM_UnDoo_AfterTyping)->Unit(benchmark::kMillisecond)->Iterations(100);

// Undo after undo: no step is stored, one step is read back.
void BM_UnDoo_Again(benchmark::State& state)
{
    Session& s = session();
    for (auto _ : state)
        s.store.UnDoo();
    state.counters["passoCorr"] = s.store.passoCorr();
}
BENCHMARK(BM_UnDoo_Again)->Unit(benchmark::kMillisecond)->Iterations(500);

void BM_RedOO(benchmark::State& state)
{
    Session& s = session();
    for (auto _ : state)
        s.store.RedOO();
    state.counters["passoCorr"] = s.store.passoCorr();
}
BENCHMARK(BM_RedOO)->Unit(benchmark::kMillisecond)->Iterations(500);

// The parts of an undo.
void BM_Part_SurfaceTextRTFWrite(benchmark::State& state)
{
    Session& s = session();
    for (auto _ : state)
        benchmark::DoNotOptimize(s.testo->TextRTF());
}
BENCHMARK(BM_Part_SurfaceTextRTFWrite)->Unit(benchmark::kMillisecond);

void BM_Part_SurfaceTextRTFRead(benchmark::State& state)
{
    Session& s = session();
    const QString rtf = s.testo->TextRTF();
    for (auto _ : state)
        s.testo->setTextRTF(rtf);
}
BENCHMARK(BM_Part_SurfaceTextRTFRead)->Unit(benchmark::kMillisecond);

// A step anywhere in the store, which costs one key and its differences.
void BM_Part_StoreRead(benchmark::State& state)
{
    Session& s = session();
    std::mt19937 rng(7);
    for (auto _ : state)
        benchmark::DoNotOptimize(s.store.passo(1 + int(rng() % unsigned(s.store.passoTot()))));
}
BENCHMARK(BM_Part_StoreRead)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv)
{
    return bench::runBenchmarks(argc, argv);
}
