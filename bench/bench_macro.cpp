// The macro language on long work: the interpreter alone on a macro of
// 2,000 lines (assignments, arithmetic, typing, moving the caret), and
// "tornelia --run-macro" as a whole process on a document of 50,000
// characters with a macro of 100 lines, start-up and save included.
//
//   tornelia_bench_macro [benchmark options]

#include "bench/rtf_samples.h"
#include "core/ports.h"
#include "core/procedures.h"
#include "core/rich_text_surface.h"
#include "macro/interpreter.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <memory>

using namespace tornelia;

namespace {

class SilentMessages final : public MessagePort {
public:
    QString mostraMsg(const QString&, const QString&, int, int) override { return QStringLiteral("ok"); }
    QString inputBox(const QString&, const QString& prompt) override { return prompt; }
};

// Ten lines that use every part of the engine, repeated.
QString macroOf(int lines)
{
    const QStringList block = {
        "dim a, b, total, word, code",
        "a = \"12\"",
        "b = a + \"30\" * \"2\" - \"1\" / \"4\"",
        "total = b \\ \"3\" & \" pezzi\"",
        "word = \"voce\" # the name of the thing",
        "sst(0)",
        "type(word)",
        "code = \"65\"",
        "chr(code)",
        "sst(999999)",
    };
    QStringList out;
    for (int i = 0; i < lines; ++i)
        out << block.at(i % block.size());
    return out.join(QStringLiteral("\r\n"));
}

// The measured macro types and moves only: no command of it reaches these.
class Unreached final : public MainProcedures {
public:
    void CopYa() override {}
    void AntEP() override {}
    void showForm1() override {}
    void INco(const QString&) override {}
    void TaGl() override {}
    void showWindow(Window) override {}
    void StaMpa() override {}
    void PaRImM() override {}
    void CpAr() override {}
    void MaIL(const QString&) override {}
    void InSFilE() override {}
    void showKeyboard(bool) override {}
};

void BM_Interpreter_LongMacro(benchmark::State& state)
{
    const QString text = macroOf(int(state.range(0)));
    SilentMessages messages;
    Unreached none;
    for (auto _ : state) {
        state.PauseTiming();
        auto testo = bench::formattedDocument(50000);
        state.ResumeTiming();
        c engine(MacroHost{*testo, messages, none});
        engine.ScriptText = text;
        engine.ScriptExecute();
        benchmark::DoNotOptimize(testo->length());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Interpreter_LongMacro)->Arg(100)->Arg(2000)->Unit(benchmark::kMillisecond);

void BM_RunMacroProcess(benchmark::State& state)
{
    QTemporaryDir dir;
    const QString doc = dir.filePath("documento.rtf");
    const QString macro = dir.filePath("cento.mac");
    bench::formattedDocument(50000)->SaveFile(doc, RichTextSurface::RtfKind);
    {
        QFile f(macro);
        if (!f.open(QIODevice::WriteOnly)) {
            state.SkipWithError("cannot write the macro");
            return;
        }
        f.write(macroOf(100).toUtf8());
    }
    const QStringList args = {"--run-macro", macro, doc, "-o", dir.filePath("uscita.rtf")};
    for (auto _ : state) {
        QProcess p;
        p.start(QStringLiteral(TORNELIA_BINARY), args);
        if (!p.waitForFinished(60000) || p.exitCode() != 0) {
            state.SkipWithError(qPrintable(QStringLiteral("the run failed: ") + QString::fromUtf8(p.readAllStandardError())));
            return;
        }
    }
}
BENCHMARK(BM_RunMacroProcess)->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace

int main(int argc, char** argv)
{
    return bench::runBenchmarks(argc, argv);
}
