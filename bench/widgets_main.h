#pragma once

// The main of a benchmark program whose subjects are widgets: offscreen, with
// the per-user folders of Qt's test mode, so nothing of the person's is touched.

#include <QApplication>
#include <QStandardPaths>

#include <benchmark/benchmark.h>

namespace tornelia::bench {

inline int runWithWidgets(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

}  // namespace tornelia::bench
