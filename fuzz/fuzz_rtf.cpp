// Feeds arbitrary bytes to the RTF reader as a file load does, then drives the
// writer and the reader over what was read: the whole document written and
// read again, and a selection in the middle copied and pasted over itself.
//
// Besides crashes, hangs and runaway memory, it stops on a broken round trip:
// what was read, written, read and written again must give the same bytes,
// and setting TextRTF or SelRTF to itself must leave the text as it was. Set
// TORNELIA_FUZZ_NO_CHECKS=1 to look for crashes alone.
//
//   CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DTORNELIA_FUZZ=ON
//       -DTORNELIA_TESTS=OFF -DTORNELIA_BENCH=OFF
//   cmake --build build-fuzz --target tornelia_fuzz_rtf
//   build-fuzz/fuzz/tornelia_fuzz_rtf -max_total_time=600 -rss_limit_mb=4096 -timeout=10
//       -max_len=65536 -dict=fuzz/rtf.dict -artifact_prefix=fuzz-out/
//       fuzz-out/corpus fuzz/seeds ../shared/corpus/rtf
//
// The first folder collects what the run finds; the others only seed it.
// With -fork=1 -ignore_crashes=1 a run goes on past each fault and keeps them all.

#include "core/rich_text_surface.h"

#include <QGuiApplication>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace tornelia;

namespace {

bool checks = true;

void quiet(QtMsgType, const QMessageLogContext&, const QString&) {}

void setUp()
{
    static int argc = 1;
    static char name[] = "tornelia_fuzz_rtf";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quiet);
    static QGuiApplication app(argc, argv);
    checks = qEnvironmentVariableIntValue("TORNELIA_FUZZ_NO_CHECKS") == 0;
}

[[noreturn]] void broken(const char* what, const QString& a, const QString& b)
{
    std::fprintf(stderr, "round trip broken: %s\n--- before\n%s\n--- after\n%s\n", what,
                 a.toUtf8().constData(), b.toUtf8().constData());
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool ready = (setUp(), true);
    (void)ready;

    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    // A file load reads the bytes as Latin-1 and leaves code pages to the reader.
    s.setTextRTF(QString::fromLatin1(reinterpret_cast<const char*>(data), qsizetype(size)));

    const QString text = s.Text();
    const QString rtf = s.TextRTF();
    s.setTextRTF(rtf);
    if (checks) {
        if (s.Text() != text)
            broken("TextRTF = TextRTF changed the text", text, s.Text());
        const QString again = s.TextRTF();
        if (again != rtf)
            broken("written, read and written again differ", rtf, again);
    }

    // Copy a selection in the middle and paste it over itself.
    const long len = s.length();
    s.setSelStart(len / 3);
    s.setSelLength(len / 3);
    const long selLength = s.SelLength();
    const QString selText = s.SelText();
    const QString sel = s.SelRTF();
    const QString before = s.Text();
    s.setSelRTF(sel);
    if (checks && s.Text() != before) {
        // The selection's own text tells the fault apart from its surroundings.
        broken(qPrintable(QStringLiteral("SelRTF = SelRTF changed the text (selection %1 chars: \"%2\")")
                              .arg(selLength)
                              .arg(selText.left(80))),
               before, s.Text());
    }
    return 0;
}
