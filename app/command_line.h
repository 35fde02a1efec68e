#pragma once

// The command line: the document to open in the window, or a conversion or
// a dump that runs with no window at all.

#include <QString>
#include <QStringList>

namespace tornelia {

struct CommandLine {
    enum class Mode {
        Gui,       // open the window, with path when given
        Convert,   // --convert-to format input [-o output]
        DumpRuns,  // --dump-runs input
        RunMacro,  // --run-macro macro input [-o output]
        Help,      // --help
        BadUsage,  // error says what is wrong
    };
    Mode mode = Mode::Gui;
    QString path;    // the document (Gui) or the input
    QString format;  // "rtf", "tnl", "txt", "html" or "pdf"
    QString output;  // given with -o, else empty
    QString macro;   // the macro file of --run-macro
    QString error;
};

// args: the arguments after the program's name. Words that are not options
// are joined with single blanks, since a path with blanks may come in pieces.
CommandLine parseCommandLine(const QStringList& args);

// Where a conversion writes when no -o is given: the input's base name with
// the new extension, in the current folder.
QString defaultOutputPath(const QString& input, const QString& format);

QString usageText();

// The whole program: reads the command line, then runs the window or the
// headless command. Returns the exit code.
int runTornelia(int argc, char** argv);

}  // namespace tornelia
