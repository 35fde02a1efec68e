#pragma once

// The window's run of the program: the splash, the main window's start with
// the document of the command line, the event loop.

#include <QString>

class QApplication;

namespace tornelia {

// Returns the exit code of the event loop.
int startMainWindow(QApplication& app, const QString& commandLine);

}  // namespace tornelia
