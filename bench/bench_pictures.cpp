// What a picture in the document costs: a photograph read and written back
// (every open, save and undo snapshot does it), and a change of its size,
// which rewrites the selection's RTF with all the picture's data.

#include "bench/rtf_samples.h"
#include "core/picture.h"
#include "core/rich_text_surface.h"
#include "pictures/picture_size.h"

#include <benchmark/benchmark.h>

#include <QRandomGenerator>

using namespace tornelia;

namespace {

// About 1.5 MB of PNG: noise does not compress.
QString photoDocument()
{
    QImage photo(800, 600, QImage::Format_RGB32);
    QRandomGenerator rng(7);
    for (int y = 0; y < photo.height(); ++y)
        for (int x = 0; x < photo.width(); ++x)
            photo.setPixel(x, y, rng.generate());
    return QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Tahoma;}}\\pard Foto: ") +
           QString::fromLatin1(pngPictureGroup(photo)) + QStringLiteral("\\par}");
}

void BM_PhotoReadAndWrite(benchmark::State& state)
{
    const QString rtf = photoDocument();
    RichTextSurface t;
    for (auto _ : state) {
        t.setTextRTF(rtf);
        benchmark::DoNotOptimize(t.TextRTF());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * rtf.size());
}
BENCHMARK(BM_PhotoReadAndWrite)->Unit(benchmark::kMillisecond);

void BM_PhotoResize(benchmark::State& state)
{
    RichTextSurface t;
    t.setTextRTF(photoDocument());
    t.setSelStart(6);
    t.setSelLength(1);
    for (auto _ : state) {
        const auto changed = pictures::applyPictureSize(t.SelRTF(), QStringLiteral("2835"), QStringLiteral("1701"));
        t.setSelRTF(*changed);
        t.setSelStart(6);
        t.setSelLength(1);
    }
}
BENCHMARK(BM_PhotoResize)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return tornelia::bench::runBenchmarks(argc, argv); }
