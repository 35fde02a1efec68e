// Macros run from the shell against a document, with no window.
#include "app/command_line.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <ostream>

namespace {

struct Outcome {
    int code = -1;
    std::string err;
    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& r, std::ostream* os) { *os << r.code << " | " << r.err; }

class RunMacroTest : public ::testing::Test {
protected:
    QTemporaryDir dir;

    Outcome run(const QStringList& args, const QByteArray& input = {})
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
            env.remove(name);
        env.insert("XDG_CONFIG_HOME", path("config"));
        env.insert("XDG_DATA_HOME", path("data"));
        QProcess p;
        p.setProcessEnvironment(env);
        p.setWorkingDirectory(dir.path());
        p.start(TORNELIA_BINARY, args);
        p.write(input);
        p.closeWriteChannel();
        EXPECT_TRUE(p.waitForFinished(60000)) << "the program did not end";
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
                QString::fromUtf8(p.readAllStandardError()).toStdString()};
    }
    QString path(const QString& name) const { return dir.filePath(name); }
    void write(const QString& name, const QByteArray& bytes)
    {
        QFile f(path(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
    }
    QByteArray read(const QString& name) const
    {
        QFile f(path(name));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : "<missing>";
    }
};

const QByteArray kLetter = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Tahoma;}}\\f0\\fs20 Caro \\b Mario\\b0 ,\\par}";

TEST_F(RunMacroTest, RunsAgainstTheDocumentAndSaves)
{
    write("lettera.rtf", kLetter);
    // LF line ends, as a shell script writes them.
    write("saluto.mac",
          "dim nome, n\n"
          "a = \"ignored\"\n"
          "inputbox(nome)\n"
          "sst(0)\n"
          "type(nome)\n"
          "n = msgbox(\"fatto\")\n"
          "sst(99999)\n"
          "type(n)\n"
          "inputbox(nome)\n"
          "type(nome)\n"
          "pag()\n");
    const Outcome out = run({"--run-macro", "saluto.mac", "lettera.rtf", "-o", "pronta.txt"}, "Gentile \n");
    // The second question shows the first answer, and finds no line left.
    EXPECT_EQ(out, (Outcome{0, "fatto\nGentile \n"}));
    EXPECT_EQ(read("pronta.txt"), "Gentile Caro Mario,1");
    EXPECT_EQ(read("lettera.rtf"), kLetter);

    EXPECT_EQ(run({"--run-macro", "saluto.mac", "lettera.rtf", "-o", "pronta.rtf"}, "X\n"), (Outcome{0, "fatto\nX\n"}));
    const QByteArray rtf = read("pronta.rtf");
    EXPECT_TRUE(rtf.contains("XCaro \\b Mario\\b0 ,1")) << rtf.toStdString();
}

TEST_F(RunMacroTest, WritesBackOnlyWhatChanged)
{
    write("doc.txt", "uno due");
    write("legge.mac", "dim t\r\nsst(0)\r\nsel(3)\r\nseltxt(t)\r\n");
    write("cambia.mac", "sst(0)\r\nsel(3)\r\ntype(\"tre\")\r\n");
    EXPECT_EQ(run({"--run-macro", "legge.mac", "doc.txt"}), (Outcome{0, ""}));
    EXPECT_EQ(read("doc.txt"), "uno due");
    EXPECT_EQ(run({"--run-macro", "cambia.mac", "doc.txt"}), (Outcome{0, ""}));
    EXPECT_EQ(read("doc.txt"), "tre due");
}

TEST_F(RunMacroTest, FaultsEndWithOneLineAndACode)
{
    write("doc.txt", "x");
    write("m.mac", "type(\"y\")");
    EXPECT_EQ(run({"--run-macro", "manca.mac", "doc.txt"}), (Outcome{1, "tornelia: macro inesistente: manca.mac\n"}));
    EXPECT_EQ(run({"--run-macro", "m.mac", "manca.txt"}), (Outcome{1, "tornelia: file inesistente: manca.txt\n"}));
    EXPECT_EQ(run({"--run-macro", "m.mac", "doc.txt", "-o", "nessuna/cartella/out.txt"}).code, 1);
    EXPECT_EQ(read("doc.txt"), "x");

    using tornelia::CommandLine;
    using tornelia::parseCommandLine;
    EXPECT_EQ(parseCommandLine({"--run-macro", "m.mac"}).error,
              "--run-macro vuole il documento su cui eseguire la macro");
    EXPECT_EQ(parseCommandLine({"--run-macro"}).error, "--run-macro vuole il file della macro");
    EXPECT_EQ(parseCommandLine({"--run-macro", "m.mac", "a", "--convert-to", "rtf"}).error, "--run-macro va da solo");
    const CommandLine ok = parseCommandLine({"-o", "out.rtf", "--run-macro", "m.mac", "in.rtf"});
    EXPECT_EQ(ok.mode, CommandLine::Mode::RunMacro);
    EXPECT_EQ(QStringList({ok.macro, ok.path, ok.output}), QStringList({"m.mac", "in.rtf", "out.rtf"}));
}

}  // namespace
