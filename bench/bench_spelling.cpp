// Spelling marks on large documents, with the real Italian dictionary: a
// keystroke in the middle of the text with the marks on (and off, to compare),
// the letter followed by the slice of checking it queues; and the time from
// opening a document to the last mark in it. The prose has a letter changed
// every 97 characters, so that about one word in fifteen is misspelled and
// most misspellings differ from each other.
//
//   tornelia_bench_spelling [benchmark options]

#include "bench/widgets_main.h"
#include "bench/rtf_samples.h"
#include "controls/editor_view.h"
#include "core/ports.h"
#include "core/undo_store.h"
#include "tools/spell_marks.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace tornelia;

namespace {

class QuietMessages final : public MessagePort {
public:
    QString mostraMsg(const QString&, const QString&, int, int) override { return QStringLiteral("ok"); }
    QString inputBox(const QString&, const QString&) override { return {}; }
};

QString misspelledProse(int chars)
{
    QString text = bench::prose(chars);
    for (qsizetype i = 50; i < text.size(); i += 97)
        if (text.at(i).isLetter())
            text[i] = QLatin1Char('x');
    return text;
}

struct Desk {
    QTemporaryDir dir;
    RichTextSurface testo;
    UndoStore undo{testo};
    QuietMessages messages;
    SettingsStore settings{dir.filePath(QStringLiteral("cfg"))};
    EditorView view{testo};
    std::unique_ptr<SpellingSession> session;

    explicit Desk(bool marksOn)
    {
        setSpellWhileTypingSetting(settings, marksOn);
        view.resize(900, 700);
        session = std::make_unique<SpellingSession>(testo, undo, settings, messages, &view,
                                                    dir.filePath(QStringLiteral("personale.txt")));
    }
};

// Arguments: characters, marks on (1) or off (0).
void BM_KeystrokeWithMarks(benchmark::State& state)
{
    Desk desk(state.range(1) != 0);
    desk.testo.setText(misspelledProse(int(state.range(0))));
    desk.session->marks().finish();
    desk.testo.setSelStart(desk.testo.length() / 2);
    QCoreApplication::processEvents();
    // A word and its blank, a key at a time: letters are cheap, the blank
    // finishes the word and has it checked.
    const QString keys = QStringLiteral("parola ");
    int k = 0;
    for (auto _ : state) {
        desk.testo.typeText(QString(keys.at(k++ % keys.size())));
        QCoreApplication::processEvents();
    }
    state.counters["marks"] = double(desk.session->marks().marks().size());
}
BENCHMARK(BM_KeystrokeWithMarks)
    ->Args({50000, 1})
    ->Args({50000, 0})
    ->Args({1000000, 1})
    ->Args({1000000, 0})
    ->Unit(benchmark::kMicrosecond);

// From the new text to its last mark, running the slices as the event loop
// would; the first slice (the part on screen) is reported apart.
void BM_MarkOpenedDocument(benchmark::State& state)
{
    Desk desk(true);
    const QString text = misspelledProse(int(state.range(0)));
    double firstSliceMs = 0;
    int slices = 0;
    for (auto _ : state) {
        state.PauseTiming();
        desk.testo.setText(QString());
        desk.session->marks().finish();
        desk.testo.setText(text);
        state.ResumeTiming();
        QElapsedTimer first;
        first.start();
        desk.session->marks().runSlice(8);
        firstSliceMs = double(first.nsecsElapsed()) / 1e6;
        slices = 1;
        while (desk.session->marks().busy()) {
            desk.session->marks().runSlice(8);
            ++slices;
        }
    }
    state.counters["first_slice_ms"] = firstSliceMs;
    state.counters["slices"] = slices;
    state.counters["marks"] = double(desk.session->marks().marks().size());
}
BENCHMARK(BM_MarkOpenedDocument)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

int main(int argc, char** argv)
{
    return tornelia::bench::runWithWidgets(argc, argv);
}
