// The text tools on a document of 50,000 characters with a format change
// every 40: the HTML walk, which reads about ten properties per character
// through the selection, and replace all, which edits the document at each
// hit and searches again from there.
//
//   tornelia_bench_tools [benchmark options]

#include "bench/rtf_samples.h"
#include "core/ports.h"
#include "core/undo_store.h"
#include "tools/find_replace.h"
#include "tools/html_export.h"

#include <benchmark/benchmark.h>

#include <memory>

using namespace tornelia;

namespace {

constexpr int kChars = 50000;

class QuietMessages final : public MessagePort {
public:
    QString mostraMsg(const QString&, const QString& text, int, int) override
    {
        last = text;
        return QStringLiteral("ok");
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    QString last;
};

void BM_RichToHTML(benchmark::State& state)
{
    auto doc = bench::formattedDocument(kChars);
    for (auto _ : state)
        benchmark::DoNotOptimize(RichToHTML(*doc));
    state.counters["chars"] = double(doc->length());
}
BENCHMARK(BM_RichToHTML)->Unit(benchmark::kMillisecond);

// One paragraph with a colour of its own for every character: the most runs
// a walk can meet.
void BM_RichToHTML_ColourPerCharacter(benchmark::State& state)
{
    RichTextSurface doc;
    doc.setTextRTF(QString::fromLatin1(bench::colourPerCharacterRtf(int(state.range(0)))));
    for (auto _ : state)
        benchmark::DoNotOptimize(RichToHTML(doc));
    state.counters["chars"] = double(doc.length());
}
BENCHMARK(BM_RichToHTML_ColourPerCharacter)->Arg(50000)->Unit(benchmark::kMillisecond);

// Replace all of a word by a longer one; the counter is the number of hits.
void BM_ReplaceAll(benchmark::State& state, const char* find, const char* replace)
{
    double count = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto doc = bench::formattedDocument(kChars);
        UndoStore undo(*doc);
        QuietMessages messages;
        FindReplace f(*doc, undo, messages);
        f.findText = QString::fromLatin1(find);
        f.replaceText = QString::fromLatin1(replace);
        state.ResumeTiming();
        count = f.replaceAll();
    }
    state.counters["hits"] = count;
}
BENCHMARK_CAPTURE(BM_ReplaceAll, word, "di", "della")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReplaceAll, letter, "e", "E")->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv)
{
    return bench::runBenchmarks(argc, argv);
}
