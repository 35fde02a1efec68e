// The hot paths of RTF: writing and reading a formatted document, loading a
// large file, and the one-colour-per-character selections of the colour
// effects.
//
//   tornelia_bench [benchmark options]
//   tornelia_bench --generate PATH [BYTES]   writes the load benchmark's file

#include "bench/bench_ports.h"
#include "bench/rtf_samples.h"
#include "core/document.h"
#include "core/rich_text_surface.h"
#include "core/settings.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QGuiApplication>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

using namespace tornelia;

namespace {

constexpr qsizetype kLoadFileBytes = 5 * 1024 * 1024;

void BM_TextRTF_Write50k(benchmark::State& state)
{
    auto s = bench::formattedDocument(50000);
    qsizetype bytes = 0;
    for (auto _ : state) {
        const QString rtf = s->TextRTF();
        bytes = rtf.size();
        benchmark::DoNotOptimize(rtf.constData());
    }
    state.counters["chars"] = double(s->length());
    state.counters["rtf_bytes"] = double(bytes);
}
BENCHMARK(BM_TextRTF_Write50k)->Unit(benchmark::kMillisecond);

void BM_TextRTF_Read50k(benchmark::State& state)
{
    const QString rtf = bench::formattedDocument(50000)->TextRTF();
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    for (auto _ : state)
        s.setTextRTF(rtf);
    state.counters["chars"] = double(s.length());
    state.counters["rtf_bytes"] = double(rtf.size());
}
BENCHMARK(BM_TextRTF_Read50k)->Unit(benchmark::kMillisecond);

// One character typed in the middle of a 50,000-character document, then the
// character before the caret read back, as the typing corrections do after
// every key. The document grows by one character per iteration.
void BM_TypeCharacter50k(benchmark::State& state)
{
    auto s = bench::formattedDocument(50000);
    s->setSelStart(s->length() / 2);
    for (auto _ : state) {
        s->typeText(QStringLiteral("x"));
        const long caret = s->SelStart();
        benchmark::DoNotOptimize(s->Text().at(caret - 1));
    }
    state.counters["chars"] = double(s->length());
}
BENCHMARK(BM_TypeCharacter50k)->Unit(benchmark::kMicrosecond);

// A table of 1,000 rows of 5 cells with borders, after a paragraph.
QString tableDocument()
{
    QString rtf = QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard Table:\\par");
    for (int r = 0; r < 1000; ++r) {
        rtf += QStringLiteral("\\trowd\\trgaph108\\trleft-108");
        for (int c = 1; c <= 5; ++c)
            rtf += QStringLiteral("\\clbrdrb\\brdrs\\brdrw10\\cellx%1").arg(c * 1800);
        rtf += QStringLiteral("\\pard\\intbl");
        for (int c = 0; c < 5; ++c)
            rtf += QStringLiteral(" row %1 cell %2\\cell").arg(r).arg(c);
        rtf += QStringLiteral("\\row");
    }
    return rtf + QStringLiteral("\\pard End.\\par}");
}

void BM_Table1000Rows_Read(benchmark::State& state)
{
    const QString rtf = tableDocument();
    RichTextSurface s;
    for (auto _ : state)
        s.setTextRTF(rtf);
    state.counters["chars"] = double(s.length());
}
BENCHMARK(BM_Table1000Rows_Read)->Unit(benchmark::kMillisecond);

void BM_Table1000Rows_Write(benchmark::State& state)
{
    RichTextSurface s;
    s.setTextRTF(tableDocument());
    for (auto _ : state) {
        const QString rtf = s.TextRTF();
        benchmark::DoNotOptimize(rtf.constData());
    }
    state.counters["chars"] = double(s.length());
}
BENCHMARK(BM_Table1000Rows_Write)->Unit(benchmark::kMillisecond);

// One character typed in a cell in the middle of the table and the text
// before the caret read back, as after every key.
void BM_Table1000Rows_TypeInCell(benchmark::State& state)
{
    RichTextSurface s;
    s.setTextRTF(tableDocument());
    s.setSelStart(long(s.Text().indexOf(QLatin1String("row 500 cell 2"))) + 3);
    for (auto _ : state) {
        s.typeText(QStringLiteral("x"));
        const long caret = s.SelStart();
        benchmark::DoNotOptimize(s.Text().at(caret - 1));
    }
    state.counters["chars"] = double(s.length());
}
BENCHMARK(BM_Table1000Rows_TypeInCell)->Unit(benchmark::kMicrosecond);

// One temporary copy of the large file for the whole run.
const QString& largeFile()
{
    static QTemporaryDir dir;
    static const QString path = [] {
        const QString p = dir.filePath(QStringLiteral("grande.rtf"));
        QFile f(p);
        if (!f.open(QIODevice::WriteOnly) || f.write(bench::realisticRtf(kLoadFileBytes)) < 0) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(p));
            std::exit(1);
        }
        return p;
    }();
    return path;
}

void BM_LoadFile5MB(benchmark::State& state)
{
    const QString path = largeFile();
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    for (auto _ : state)
        s.LoadFile(path, RichTextSurface::RtfKind);
    state.counters["chars"] = double(s.length());
    state.counters["file_bytes"] = double(QFile(path).size());
}
BENCHMARK(BM_LoadFile5MB)->Unit(benchmark::kMillisecond)->Iterations(3);

// A document over a large file with nobody watching, set up as an open
// sets it up.
struct LargeDocument {
    const QString path = largeFile();
    QTemporaryDir settingsDir;
    SettingsStore settings{settingsDir.path()};
    bench::SilentPorts ports;
    RichTextSurface s;
    Document doc{s, settings, ports, ports, ports, ports};
    LargeDocument() { s.setDefaultFormat(QStringLiteral("Tahoma"), 10); }
};

// The block-wise load alone, as an open runs it.
void BM_LineCar5MB(benchmark::State& state)
{
    LargeDocument d;
    for (auto _ : state)
        benchmark::DoNotOptimize(d.doc.lineCar(d.path, true));
    state.counters["chars"] = double(d.s.length());
}
BENCHMARK(BM_LineCar5MB)->Unit(benchmark::kMillisecond)->Iterations(3);

// The whole open of an RTF file: new document, line count, block-wise load,
// and the file name taken over.
void BM_OpenRtf5MB(benchmark::State& state)
{
    LargeDocument d;
    for (auto _ : state)
        d.doc.Aprii(d.path);
    state.counters["chars"] = double(d.s.length());
}
BENCHMARK(BM_OpenRtf5MB)->Unit(benchmark::kMillisecond)->Iterations(3);

constexpr int kColourChars = 10000;

void BM_ColourPerChar_SetTextRTF(benchmark::State& state)
{
    const QString rtf = QString::fromLatin1(bench::colourPerCharacterRtf(kColourChars));
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    for (auto _ : state)
        s.setTextRTF(rtf);
    state.counters["rtf_bytes"] = double(rtf.size());
}
BENCHMARK(BM_ColourPerChar_SetTextRTF)->Unit(benchmark::kMillisecond);

void BM_ColourPerChar_SelRTF(benchmark::State& state)
{
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    s.setTextRTF(QString::fromLatin1(bench::colourPerCharacterRtf(kColourChars)));
    s.setSelStart(0);
    s.setSelLength(s.length());
    qsizetype bytes = 0;
    for (auto _ : state) {
        const QString rtf = s.SelRTF();
        bytes = rtf.size();
        benchmark::DoNotOptimize(rtf.constData());
    }
    state.counters["sel_chars"] = double(s.SelLength());
    state.counters["rtf_bytes"] = double(bytes);
}
BENCHMARK(BM_ColourPerChar_SelRTF)->Unit(benchmark::kMillisecond);

// The whole path of a colour effect's read: set the text, select it all,
// read the selection back.
void BM_ColourPerChar_SetSelectRead(benchmark::State& state)
{
    const QString rtf = QString::fromLatin1(bench::colourPerCharacterRtf(kColourChars));
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    for (auto _ : state) {
        s.setTextRTF(rtf);
        s.setSelStart(0);
        s.setSelLength(s.length());
        const QString sel = s.SelRTF();
        benchmark::DoNotOptimize(sel.constData());
    }
}
BENCHMARK(BM_ColourPerChar_SetSelectRead)->Unit(benchmark::kMillisecond);

// The effect then writes its RTF back over the selection.
void BM_ColourPerChar_SetSelRTF(benchmark::State& state)
{
    const QString rtf = QString::fromLatin1(bench::colourPerCharacterRtf(kColourChars));
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    s.setTextRTF(rtf);
    s.setSelStart(0);
    s.setSelLength(s.length());
    const QString sel = s.SelRTF();
    for (auto _ : state) {
        s.setSelStart(0);
        s.setSelLength(s.length());
        s.setSelRTF(sel);
    }
}
BENCHMARK(BM_ColourPerChar_SetSelRTF)->Unit(benchmark::kMillisecond);

int generate(const char* path, qsizetype bytes)
{
    QFile f(QString::fromLocal8Bit(path));
    if (!f.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "cannot write %s\n", path);
        return 1;
    }
    const QByteArray rtf = bench::realisticRtf(bytes);
    if (f.write(rtf) != rtf.size()) {
        std::fprintf(stderr, "cannot write %s\n", path);
        return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc >= 3 && std::strcmp(argv[1], "--generate") == 0)
        return generate(argv[2], argc >= 4 ? qsizetype(std::atoll(argv[3])) : kLoadFileBytes);

    return bench::runBenchmarks(argc, argv);
}
