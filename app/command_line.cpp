#include "app/command_line.h"

#include "app/app_context.h"
#include "app/scripted_ports.h"
#include "app/start.h"
#include "core/procedures.h"
#include "core/run_dump.h"
#include "macro/interpreter.h"
#include "print/page_settings.h"
#include "print/print_layout.h"
#include "tools/html_export.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>

#include <cstdio>
#include <exception>
#include <iostream>
#include <memory>
#include <string>

namespace tornelia {

namespace {

const QString kProgram = QStringLiteral("tornelia");

void writeTo(FILE* stream, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

void fail(const QString& line)
{
    writeTo(stderr, kProgram + QStringLiteral(": ") + line + u'\n');
}

bool isHeadless(CommandLine::Mode m)
{
    return m == CommandLine::Mode::Convert || m == CommandLine::Mode::DumpRuns || m == CommandLine::Mode::RunMacro;
}

// "File inesistente!" becomes "file inesistente", to stand in one line
// with the program's name and the path.
QString asErrorLine(const QString& message)
{
    QString s = message.trimmed();
    while (s.endsWith(u'!') || s.endsWith(u'.'))
        s.chop(1);
    if (!s.isEmpty())
        s[0] = s[0].toLower();
    return s;
}

bool isReadOnlyWarning(const RecordedMessage& m)
{
    return m.title == QLatin1String("File di sola lettura");
}

// Standard error of a headless command carries its own one-line messages;
// Qt's chatter about the environment (no runtime folder, no display
// features) would break scripts that read it. Only Qt's real errors pass.
void quietMessages(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        writeTo(stderr, message + u'\n');
}

int runHeadless(const CommandLine& cl)
{
    auto messages = std::make_unique<ScriptedMessagePort>();
    ScriptedMessagePort& said = *messages;
    Ports ports{std::move(messages), std::make_unique<ScriptedDialogPort>(), std::make_unique<ScriptedShellPort>()};
    AppContext ctx(std::move(ports));
    Document& doc = ctx.document();

    const QFileInfo in(cl.path);
    if (in.exists()) {
        if (in.isDir()) {
            fail(QStringLiteral("non è un file: ") + cl.path);
            return 1;
        }
        QFile probe(in.absoluteFilePath());
        if (!probe.open(QIODevice::ReadOnly)) {
            fail(QStringLiteral("file illeggibile: ") + cl.path);
            return 1;
        }
    }

    // The same road as "&Apri" takes, so a file converts as it opens.
    doc.Aprii(in.exists() ? in.absoluteFilePath() : cl.path);
    for (const RecordedMessage& m : said.messages) {
        // The warning about a read-only input does not touch a conversion.
        if (isReadOnlyWarning(m))
            continue;
        fail(asErrorLine(m.text) + QStringLiteral(": ") + cl.path);
        return 1;
    }

    if (cl.mode == CommandLine::Mode::DumpRuns) {
        writeTo(stdout, dumpRuns(ctx.testo()) + u'\n');
        return 0;
    }

    const QString out = cl.output.isEmpty() ? defaultOutputPath(cl.path, cl.format) : cl.output;
    said.messages.clear();
    if (doc.readOnlyTest(out, false)) {
        fail(QStringLiteral("file di sola lettura: ") + out);
        return 1;
    }
    const int kind = cl.format == QLatin1String("txt") ? RichTextSurface::TextKind : RichTextSurface::RtfKind;
    try {
        if (cl.format == QLatin1String("pdf")) {
            // The pages as they print, on the page the settings hold.
            PageSettings page;
            CaricaMargini(ctx.settings(), page);
            if (!writePdf(*ctx.testo().document(), page, out)) {
                fail(QStringLiteral("impossibile scrivere ") + out);
                return 1;
            }
        } else if (cl.format == QLatin1String("html"))
            saveHtmlFile(out, htmlPage(doc.nomeFile, RichToHTML(ctx.testo())));
        else
            ctx.testo().SaveFile(out, kind);
    } catch (const SurfaceError& e) {
        fail(QStringLiteral("impossibile scrivere ") + out + QStringLiteral(": ") + QString::fromUtf8(e.what()));
        return 1;
    }
    return 0;
}

// --- macros without a window ---

// What a macro says goes to standard error, and what it asks is read from
// standard input, one line per question. While the document opens, the
// messages are only kept, so that a failed open ends the command with one
// line of its own.
class ConsoleMessagePort final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int buttons, int icon) override
    {
        if (echo)
            writeTo(stderr, text + u'\n');
        else
            kept.append({title, text, buttons, icon});
        // Nothing is saved or deleted that was not asked for.
        return buttons == 0 ? QStringLiteral("ok") : QStringLiteral("no");
    }
    QString inputBox(const QString&, const QString& prompt) override
    {
        if (!prompt.isEmpty())
            writeTo(stderr, prompt + u'\n');
        std::string line;
        if (!std::getline(std::cin, line))
            return {};
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        return QString::fromLocal8Bit(line.data(), qsizetype(line.size()));
    }
    bool echo = false;
    QList<RecordedMessage> kept;
};

int runMacroHeadless(const CommandLine& cl)
{
    // The macro is read as the editor's open reads it: plain text into a
    // text control, whose text is what runs. A file with LF line ends thus
    // runs as one with CR LF.
    RichTextSurface macroText;
    if (!QFileInfo(cl.macro).isFile()) {
        fail(QStringLiteral("macro inesistente: ") + cl.macro);
        return 1;
    }
    try {
        macroText.LoadFile(cl.macro, RichTextSurface::TextKind);
    } catch (const SurfaceError&) {
        fail(QStringLiteral("macro illeggibile: ") + cl.macro);
        return 1;
    }

    auto messages = std::make_unique<ConsoleMessagePort>();
    ConsoleMessagePort& said = *messages;
    Ports ports{std::move(messages), std::make_unique<ScriptedDialogPort>(), std::make_unique<ScriptedShellPort>()};
    AppContext ctx(std::move(ports));
    Document& doc = ctx.document();

    const QFileInfo in(cl.path);
    if (!in.isFile()) {
        fail((in.exists() ? QStringLiteral("non è un file: ") : QStringLiteral("file inesistente: ")) + cl.path);
        return 1;
    }
    doc.Aprii(in.absoluteFilePath());
    for (const RecordedMessage& m : said.kept) {
        if (isReadOnlyWarning(m) && !cl.output.isEmpty())
            continue;
        fail(asErrorLine(m.text) + QStringLiteral(": ") + cl.path);
        return 1;
    }
    said.echo = true;

    const QString before = ctx.testo().TextRTF();
    MainProcedures noWindow;  // commands that only show a window do nothing
    c engine(MacroHost{ctx.testo(), said, noWindow, &doc, &ctx.undo()});
    engine.ScriptText = macroText.Text();
    engine.ScriptExecute();

    QString out = cl.output;
    if (out.isEmpty()) {
        if (ctx.testo().TextRTF() == before)
            return 0;
        out = in.absoluteFilePath();
    }
    said.echo = false;
    said.kept.clear();
    if (doc.readOnlyTest(out, false)) {
        fail(QStringLiteral("file di sola lettura: ") + out);
        return 1;
    }
    // Kind 2 is plain text; .tnl and .rtf are written as RTF.
    const int kind = Document::kindOf(out) == 2 ? RichTextSurface::TextKind : RichTextSurface::RtfKind;
    try {
        ctx.testo().SaveFile(out, kind);
    } catch (const SurfaceError& e) {
        fail(QStringLiteral("impossibile scrivere ") + out + QStringLiteral(": ") + QString::fromUtf8(e.what()));
        return 1;
    }
    return 0;
}

// --run-macro MACRO IN [-o OUT]: the words left after the options are the
// macro and the document.
CommandLine finishRunMacro(CommandLine cl, const QStringList& words)
{
    if (words.isEmpty()) {
        cl.mode = CommandLine::Mode::BadUsage;
        cl.error = QStringLiteral("--run-macro vuole il documento su cui eseguire la macro");
        return cl;
    }
    if (words.size() > 1) {
        cl.mode = CommandLine::Mode::BadUsage;
        cl.error = QStringLiteral("un solo documento, non ") + QString::number(words.size());
        return cl;
    }
    cl.path = words.first();
    cl.mode = CommandLine::Mode::RunMacro;
    return cl;
}

// The window's start: the splash, the start sequence and the document
// of the command line, the same whether or not a path was given.
int runGui(QApplication& app, const QString& path)
{
    AppContext::ensureDataFolder();
    return startMainWindow(app, path);
}

}  // namespace

QString usageText()
{
    return QStringLiteral(
        "Uso: tornelia [FILE]\n"
        "     tornelia --convert-to rtf|tnl|txt|html|pdf FILE [-o USCITA]\n"
        "     tornelia --dump-runs FILE\n"
        "     tornelia --run-macro MACRO FILE [-o USCITA]\n"
        "     tornelia --help\n"
        "\n"
        "  FILE                   il documento da aprire nella finestra\n"
        "  --convert-to FORMATO   converte FILE in rtf, tnl, txt, html o pdf senza finestre;\n"
        "                         senza -o scrive il nome di FILE con la nuova\n"
        "                         estensione nella cartella corrente\n"
        "  -o, --output USCITA    il file da scrivere\n"
        "  --dump-runs FILE       stampa i paragrafi e i formati di FILE in JSON\n"
        "  --run-macro MACRO      esegue la macro su FILE senza aprire finestre e lo\n"
        "                         salva in USCITA, o in FILE se la macro l'ha cambiato;\n"
        "                         msgbox scrive sullo standard error, inputbox legge\n"
        "                         una riga dallo standard input\n"
        "  --help                 mostra questo aiuto\n");
}

CommandLine parseCommandLine(const QStringList& args)
{
    CommandLine cl;
    QStringList words;
    bool convert = false;
    bool dump = false;
    bool help = false;
    bool hasOutput = false;
    auto bad = [&cl](const QString& error) {
        cl.mode = CommandLine::Mode::BadUsage;
        cl.error = error;
        return cl;
    };

    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& a = args.at(i);
        if (a == QLatin1String("--")) {
            words += args.mid(i + 1);
            break;
        }
        if (a == QLatin1String("--help")) {
            help = true;
        } else if (a == QLatin1String("--convert-to") || a.startsWith(QLatin1String("--convert-to="))) {
            if (convert)
                return bad(QStringLiteral("--convert-to è dato due volte"));
            convert = true;
            if (a.contains(u'=')) {
                cl.format = a.section(u'=', 1);
            } else {
                if (i + 1 >= args.size())
                    return bad(QStringLiteral("--convert-to vuole un formato: rtf, tnl, txt, html o pdf"));
                cl.format = args.at(++i);
            }
        } else if (a == QLatin1String("--dump-runs")) {
            dump = true;
        } else if (a == QLatin1String("--run-macro")) {
            if (!cl.macro.isEmpty())
                return bad(QStringLiteral("--run-macro è dato due volte"));
            if (i + 1 >= args.size())
                return bad(QStringLiteral("--run-macro vuole il file della macro"));
            cl.macro = args.at(++i);
        } else if (a == QLatin1String("-o") || a == QLatin1String("--output")) {
            if (hasOutput)
                return bad(QStringLiteral("-o è dato due volte"));
            if (i + 1 >= args.size())
                return bad(a + QStringLiteral(" vuole il nome del file da scrivere"));
            hasOutput = true;
            cl.output = args.at(++i);
        } else if (a.startsWith(QLatin1String("--"))) {
            return bad(QStringLiteral("opzione sconosciuta: ") + a);
        } else {
            words.append(a);
        }
    }

    if (help) {
        cl.mode = CommandLine::Mode::Help;
        return cl;
    }
    if (convert && dump)
        return bad(QStringLiteral("--convert-to e --dump-runs non vanno insieme"));
    if (!cl.macro.isEmpty()) {
        if (convert || dump)
            return bad(QStringLiteral("--run-macro va da solo"));
        return finishRunMacro(cl, words);
    }
    if (hasOutput && !convert)
        return bad(QStringLiteral("-o vale solo con --convert-to"));

    if (convert || dump) {
        if (words.isEmpty())
            return bad(QStringLiteral("manca il file da leggere"));
        if (words.size() > 1)
            return bad(QStringLiteral("un solo file da leggere, non ") + QString::number(words.size()));
        cl.path = words.first();
        if (convert) {
            cl.format = cl.format.toLower();
            if (cl.format != QLatin1String("rtf") && cl.format != QLatin1String("tnl") &&
                cl.format != QLatin1String("txt") && cl.format != QLatin1String("html") &&
                cl.format != QLatin1String("pdf"))
                return bad(QStringLiteral("formato sconosciuto: ") + cl.format +
                           QStringLiteral(" (rtf, tnl, txt, html o pdf)"));
            cl.mode = CommandLine::Mode::Convert;
        } else {
            cl.mode = CommandLine::Mode::DumpRuns;
        }
        return cl;
    }

    cl.mode = CommandLine::Mode::Gui;
    cl.path = unquotePath(words.join(u' '));
    return cl;
}

QString defaultOutputPath(const QString& input, const QString& format)
{
    return QFileInfo(input).completeBaseName() + u'.' + format;
}

int runTornelia(int argc, char** argv)
{
    QStringList raw;
    for (int i = 1; i < argc; ++i)
        raw.append(QString::fromLocal8Bit(argv[i]));
    CommandLine cl = parseCommandLine(raw);

    switch (cl.mode) {
    case CommandLine::Mode::Help:
        writeTo(stdout, usageText());
        return 0;
    case CommandLine::Mode::BadUsage:
        fail(cl.error);
        writeTo(stderr, usageText());
        return 2;
    default:
        break;
    }

    QCoreApplication::setApplicationName(QStringLiteral("Tornelia"));
    QCoreApplication::setApplicationVersion(QStringLiteral("0.1.0"));
    QGuiApplication::setDesktopFileName(QStringLiteral("tornelia"));

    if (isHeadless(cl.mode)) {
        // Conversions run where there is no display, on servers and in CI.
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(quietMessages);
        QGuiApplication app(argc, argv);
        try {
            if (cl.mode == CommandLine::Mode::RunMacro)
                return runMacroHeadless(cl);
            return runHeadless(cl);
        } catch (const std::exception& e) {
            fail(QStringLiteral("errore inaspettato: ") + QString::fromUtf8(e.what()));
            return 1;
        }
    }

    QApplication app(argc, argv);
    // Qt has taken its own options (-platform, -style ...) out of argv: the
    // document is what is left.
    QStringList rest;
    for (int i = 1; i < argc; ++i)
        rest.append(QString::fromLocal8Bit(argv[i]));
    cl = parseCommandLine(rest);
    return runGui(app, cl.path);
}

}  // namespace tornelia
