// The main window with a person at the keys: letters, blanks and Enter typed
// into the middle of documents of growing size, and a large RTF file opened
// in the window. Every key goes through the real window and its handlers,
// and the event loop runs after each one, so the repaint is in the figure.
//
//   tornelia_bench_window [benchmark options]
//
// Besides the mean, each typing benchmark reports the median and the 99th
// percentile of one key (p50_ms, p99_ms): a key that stalls now and then is
// what a person feels. The same in processor time of this thread
// (cpu_p50_ms, cpu_p99_ms) holds on a busy machine, where the wall clock
// also counts the time other programs had the processor.

#include "bench/widgets_main.h"
#include "app/app_context.h"
#include "app/main_window.h"
#include "bench/bench_ports.h"
#include "bench/rtf_samples.h"
#include "controls/edit_layout.h"
#include "controls/editor_view.h"

#include <benchmark/benchmark.h>

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QStandardPaths>
#include <QTextBlock>
#include <QTextCursor>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

using namespace tornelia;

namespace {

// Ports that answer nothing, as the window's owner would hand them over.
Ports silentPorts()
{
    struct Messages final : MessagePort {
        QString mostraMsg(const QString&, const QString&, int buttons, int) override
        {
            return buttons == 0 ? QStringLiteral("ok") : QStringLiteral("no");
        }
        QString inputBox(const QString&, const QString&) override { return {}; }
    };
    struct Dialogs final : DialogPort {
        std::optional<QString> openFile(const QString&, const QStringList&) override { return {}; }
        std::optional<QString> saveFile(const QString&, const QStringList&, const QString&) override { return {}; }
        std::optional<QString> chooseFolder(const QString&) override { return {}; }
        std::optional<FontChoice> chooseFont(const FontChoice&) override { return {}; }
        std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return {}; }
    };
    struct Shell final : ShellPort {
        bool openDocument(const QString&) override { return true; }
        bool startDetached(const QString&, const QStringList&) override { return true; }
        void showProperties(const QString&) override {}
    };
    return Ports{std::make_unique<Messages>(), std::make_unique<Dialogs>(), std::make_unique<Shell>()};
}

// The window on screen with its own settings folder.
struct ShownWindow {
    ShownWindow()
        : context(silentPorts(), folder.filePath(QStringLiteral("settings"))), window(context)
    {
        context.setDataFolder(folder.filePath(QStringLiteral("data")));
        context.document().Novo(0);
        window.resize(1120, 720);
        window.show();
        window.activateWindow();
        window.editor()->setFocus();
        QApplication::processEvents();
    }
    RichTextSurface& testo() { return context.testo(); }

    QTemporaryDir folder;
    AppContext context;
    MainWindow window;
};

void press(QWidget* w, int key, const QString& text)
{
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(w, &down);
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(w, &up);
}

double threadCpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return double(ts.tv_sec) * 1e3 + double(ts.tv_nsec) / 1e6;
}

void reportPercentiles(benchmark::State& state, const char* prefix, std::vector<double>& ms)
{
    if (ms.empty())
        return;
    std::sort(ms.begin(), ms.end());
    const std::string p(prefix);
    state.counters[p + "p50_ms"] = ms[ms.size() / 2];
    state.counters[p + "p99_ms"] = ms[std::min(ms.size() - 1, ms.size() * 99 / 100)];
}

// The caret in the middle of a paragraph, after a blank: a person writes
// words between words. In the middle of a word the letters typed would make
// one misspelled word of the two halves.
QTextCursor betweenWords(const QTextBlock& b)
{
    const QString text = b.text();
    const qsizetype blank = text.indexOf(QLatin1Char(' '), text.size() / 2);
    QTextCursor c(b);
    c.setPosition(b.position() + int(blank < 0 ? text.size() : blank + 1));
    return c;
}

// Types `keys` over and over into the middle of a document of range(0)
// characters, one key per iteration; in the page view if `pageView`.
void typeInto(benchmark::State& state, const QString& keys, bool pageView = false)
{
    ShownWindow w;
    w.testo().setText(bench::prose(int(state.range(0))));
    if (pageView) {
        for (QAction* a : w.window.findChildren<QAction*>())
            if (a->text().contains(QStringLiteral("WYSIWYG")))
                a->trigger();
        if (w.window.editor()->sheetCount() == 0) {
            state.SkipWithError("the page view did not open");
            return;
        }
    }
    w.testo().setSelStart(w.testo().length() / 2);
    w.testo().adoptCursor(betweenWords(w.testo().cursor().block()));
    // A large text is laid out in slices while the window runs; the keys
    // are timed once that is done, as a person types into an open document.
    // The window settles first: a status bar that grows with the new text
    // narrows the page, and the layout would start again from the top.
    QApplication::processEvents();
    w.testo().document()->documentLayout()->documentSize();
    QApplication::processEvents();
    QWidget* editor = w.window.editor();
    std::vector<double> ms;
    std::vector<double> cpu;
    ms.reserve(4096);
    cpu.reserve(4096);
    qsizetype i = 0;
    int block = w.testo().cursor().blockNumber();
    const int blocks = w.testo().document()->blockCount();
    for (auto _ : state) {
        // A person ends a paragraph now and then: a paragraph that takes
        // every key of the run would grow to thousands of characters and
        // time the reshaping of a paragraph no one writes. So every 160 keys
        // the caret goes, untimed, into the middle of a paragraph further on.
        if (i > 0 && i % 160 == 0 && keys.size() > 1) {
            state.PauseTiming();
            block = (block + 3) % blocks;
            const QTextBlock b = w.testo().document()->findBlockByNumber(block);
            w.testo().adoptCursor(betweenWords(b));
            QApplication::processEvents();
            state.ResumeTiming();
        }
        const QChar c = keys[i++ % keys.size()];
        const auto t0 = std::chrono::steady_clock::now();
        const double c0 = threadCpuMs();
        if (c == QLatin1Char('\r'))
            press(editor, Qt::Key_Return, QStringLiteral("\r"));
        else
            press(editor, c == QLatin1Char(' ') ? int(Qt::Key_Space) : int(c.toUpper().unicode()), QString(c));
        QApplication::processEvents();
        cpu.push_back(threadCpuMs() - c0);
        ms.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count());
    }
    reportPercentiles(state, "", ms);
    reportPercentiles(state, "cpu_", cpu);
    state.counters["chars"] = double(w.testo().length());
    if (pageView)
        state.counters["sheets"] = w.window.editor()->sheetCount();
    state.counters["whole_passes"] = edit_layout::counts(w.testo().document()).whole;
}

void BM_TypeLetters(benchmark::State& state)
{
    typeInto(state, QStringLiteral("parola nuova e lunga "));
}
BENCHMARK(BM_TypeLetters)->Arg(50000)->Arg(500000)->Arg(2000000)->Unit(benchmark::kMillisecond)
    ->MinTime(2.0);

// The same keys in the page view, the sheets on screen; 1,600,000
// characters make about 300 sheets.
void BM_TypeLettersPageView(benchmark::State& state)
{
    typeInto(state, QStringLiteral("parola nuova e lunga "), true);
}
BENCHMARK(BM_TypeLettersPageView)->Arg(1600000)->Unit(benchmark::kMillisecond)->MinTime(2.0);

void BM_TypeEnter(benchmark::State& state)
{
    typeInto(state, QStringLiteral("\r"));
}
BENCHMARK(BM_TypeEnter)->Arg(50000)->Arg(500000)->Unit(benchmark::kMillisecond)->MinTime(1.0);

// A 16 MB formatted RTF opened in the window, up to the first paint.
void BM_OpenRtf16MB(benchmark::State& state)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("grande.rtf"));
    {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) || f.write(bench::realisticRtf(16 * 1024 * 1024)) < 0) {
            state.SkipWithError("cannot write the document");
            return;
        }
    }
    ShownWindow w;
    for (auto _ : state) {
        w.context.document().Aprii(path);
        QApplication::processEvents();
        w.window.editor()->viewport()->repaint();
    }
    state.counters["chars"] = double(w.testo().length());
}
BENCHMARK(BM_OpenRtf16MB)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace

int main(int argc, char** argv)
{
    return tornelia::bench::runWithWidgets(argc, argv);
}
