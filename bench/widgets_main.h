#pragma once

// The main of a benchmark program whose subjects are widgets.

#include "bench/bench_main.h"

#include <QApplication>

namespace tornelia::bench {

inline int runWithWidgets(int argc, char** argv) { return runWith<QApplication>(argc, argv); }

}  // namespace tornelia::bench
