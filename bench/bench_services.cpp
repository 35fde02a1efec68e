// The document services' own work: RC4 over a document-sized buffer (with
// and without a progress handler, which runs once a percent) and the letter
// written into an empty surface, as the composer's OK does it.
//
//   tornelia_bench_services [benchmark options]

#include "bench/rtf_samples.h"
#include "core/rich_text_surface.h"
#include "services/cls_rc4.h"
#include "services/doc_services.h"

#include <benchmark/benchmark.h>

using namespace tornelia;

namespace {

void BM_RC4(benchmark::State& state)
{
    clsRC4 rc4;
    rc4.Key(QStringLiteral("chiave di prova"));
    int reports = 0;
    if (state.range(1))
        rc4.Progress = [&reports](int&) { ++reports; };
    QByteArray bytes(qsizetype(state.range(0)), 'a');
    for (auto _ : state) {
        rc4.EncryptByte(bytes);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
    benchmark::DoNotOptimize(reports);
}
BENCHMARK(BM_RC4)->Args({1 << 20, 0})->Args({1 << 20, 1})->Unit(benchmark::kMillisecond);

void BM_ComposeLetter(benchmark::State& state)
{
    LetterFields f;
    f.date = QStringLiteral("23 novembre 2026");
    f.sender[0] = f.closingName = QStringLiteral("Mario Rossi");
    f.sender[1] = QStringLiteral("Via Roma 1\r\n00100 Roma");
    f.recipient[0] = QStringLiteral("Ditta Bianchi");
    f.opening = QStringLiteral("Egregio signore");
    f.closing = QStringLiteral("Cordiali saluti");
    RichTextSurface t;
    for (auto _ : state) {
        composeLetter(t, f);
        benchmark::DoNotOptimize(t.length());
    }
}
BENCHMARK(BM_ComposeLetter)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv)
{
    return bench::runBenchmarks(argc, argv);
}
