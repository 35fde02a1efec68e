// What the clipboard panel's refresh costs: it runs every second, so the
// common case, nothing new on the clipboard, must stay cheap even with a
// screen-sized picture there; and a new copy pays for one thumbnail.

#include "bench/rtf_samples.h"
#include "clipboard/clip_history.h"

#include <benchmark/benchmark.h>

using namespace tornelia;

namespace {

class Source final : public ClipSource {
public:
    QByteArray rtfData;
    QImage picture;
    QString plain;
    QByteArray rtf() const override { return rtfData; }
    QImage image() const override { return picture; }
    QString text() const override { return plain; }
};

QImage screenShot(QColor colour)
{
    QImage i(1920, 1080, QImage::Format_ARGB32);
    i.fill(colour);
    return i;
}

// A poll that finds the same screen-sized picture again.
void BM_RefreshUnchangedPicture(benchmark::State& state)
{
    Source source;
    ClipHistory history(source);
    source.picture = screenShot(Qt::blue);
    history.Aggiorna();
    // A copy of the same pixels, as the clipboard hands out each time.
    source.picture = source.picture.copy();
    for (auto _ : state)
        benchmark::DoNotOptimize(history.Aggiorna());
}
BENCHMARK(BM_RefreshUnchangedPicture)->Unit(benchmark::kMicrosecond);

// A poll that finds the same 50,000 characters of rich text again.
void BM_RefreshUnchangedRichText(benchmark::State& state)
{
    Source source;
    ClipHistory history(source);
    source.rtfData = "{\\rtf1\\ansi " + QByteArray(50000, 'x') + "}";
    source.plain = QString(50000, u'x');
    history.Aggiorna();
    for (auto _ : state)
        benchmark::DoNotOptimize(history.Aggiorna());
}
BENCHMARK(BM_RefreshUnchangedRichText)->Unit(benchmark::kMicrosecond);

// A new screen-sized picture each time: the entry, its thumbnail and the
// shift of the ten.
void BM_RefreshNewPicture(benchmark::State& state)
{
    Source source;
    ClipHistory history(source);
    const QImage pictures[2] = {screenShot(Qt::blue), screenShot(Qt::red)};
    int k = 0;
    for (auto _ : state) {
        source.picture = pictures[k ^= 1];
        benchmark::DoNotOptimize(history.Aggiorna());
    }
}
BENCHMARK(BM_RefreshNewPicture)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return tornelia::bench::runBenchmarks(argc, argv); }
