#pragma once

// The main of every benchmark program: offscreen, with the per-user folders
// of Qt's test mode, so nothing of the person's is touched. App is the kind
// of application its subjects need (QGuiApplication, or QApplication for
// widgets).

#include <QStandardPaths>

#include <benchmark/benchmark.h>

namespace tornelia::bench {

template <typename App>
int runWith(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    App app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

}  // namespace tornelia::bench
