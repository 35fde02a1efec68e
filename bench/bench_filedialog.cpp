// The file dialog in a folder of 10,000 files: reading it whole, and the
// window filling its list from the event loop. "open_ms" is the time until
// the window is up with its first slice; "longest_turn_ms" the longest time
// it then kept the event loop to itself while filling: what a click or a
// key may have to wait.

#include "bench/widgets_main.h"
#include "core/ports.h"
#include "core/settings.h"
#include "filedialog/cd_logic.h"
#include "filedialog/frm_cd.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>

namespace {

using namespace tornelia;

class SilentMessages final : public MessagePort {
public:
    QString mostraMsg(const QString&, const QString&, int, int) override { return QStringLiteral("ok"); }
    QString inputBox(const QString&, const QString&) override { return {}; }
};

// One folder for every run: 10,000 files of the three document kinds.
QString bigFolder()
{
    static QTemporaryDir dir;
    static bool made = false;
    if (!made) {
        const char* kinds[] = {".rtf", ".tnl", ".txt"};
        for (int i = 0; i < 10000; ++i) {
            QFile f(dir.path() + QStringLiteral("/documento %1").arg(i, 5, 10, QLatin1Char('0'))
                    + QLatin1String(kinds[i % 3]));
            f.open(QIODevice::WriteOnly);
            f.write(QByteArray(i % 5000, 'x'));
        }
        made = true;
    }
    return dir.path();
}

void BM_ReadFolder10k(benchmark::State& state)
{
    const QString folder = bigFolder();
    const QStringList patterns{QStringLiteral("*.tnl"), QStringLiteral("*.rtf"), QStringLiteral("*.txt")};
    for (auto _ : state) {
        const auto rows = readFolder(folder, patterns, false, false);
        benchmark::DoNotOptimize(rows.data());
        if (rows.size() != 10001)
            state.SkipWithError("wrong number of rows");
    }
}
BENCHMARK(BM_ReadFolder10k)->Unit(benchmark::kMillisecond);

void BM_WindowFills10k(benchmark::State& state)
{
    const QString folder = bigFolder();
    QTemporaryDir config;
    SettingsStore settings(config.path());
    settings.scriviReg({}, QStringLiteral("DirOp"), QStringLiteral("5"), folder);
    SilentMessages messages;
    qint64 longest = 0;
    qint64 open = 0;
    for (auto _ : state) {
        QElapsedTimer turn;
        turn.start();
        frmCD dialog(requestFor(FileChoice::OpenDocument, settings), settings, messages);
        dialog.show();
        open = std::max(open, turn.nsecsElapsed());
        while (dialog.filling()) {
            turn.restart();
            QApplication::processEvents();
            longest = std::max(longest, turn.nsecsElapsed());
        }
        QApplication::processEvents();
    }
    state.counters["open_ms"] = double(open) / 1e6;
    state.counters["longest_turn_ms"] = double(longest) / 1e6;
}
BENCHMARK(BM_WindowFills10k)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv)
{
    return tornelia::bench::runWithWidgets(argc, argv);
}
