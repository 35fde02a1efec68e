#include "app/command_line.h"
#include "app/start.h"

#include <QApplication>

int main(int argc, char** argv)
{
    using namespace tornelia;
    QStringList raw;
    for (int i = 1; i < argc; ++i)
        raw.append(QString::fromLocal8Bit(argv[i]));
    // Conversions, dumps and the usage text run without a window.
    if (parseCommandLine(raw).mode != CommandLine::Mode::Gui)
        return runTornelia(argc, argv);

    QCoreApplication::setApplicationName(QStringLiteral("Tornelia"));
    QCoreApplication::setApplicationVersion(QStringLiteral("0.1.0"));
    QGuiApplication::setDesktopFileName(QStringLiteral("tornelia"));
    QApplication app(argc, argv);
    // Qt has taken its own options (-platform, -style ...) out of argv: the
    // document is what is left.
    QStringList rest;
    for (int i = 1; i < argc; ++i)
        rest.append(QString::fromLocal8Bit(argv[i]));
    return startMainWindow(app, parseCommandLine(rest).path);
}
