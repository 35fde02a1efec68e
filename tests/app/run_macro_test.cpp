// Macros run from the shell against a document, with no window.
#include "app/command_line.h"
#include "program_run.h"

#include <gtest/gtest.h>

namespace {

using tornelia::testing::Result;
using RunMacroTest = tornelia::testing::ProgramRunTest;

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
    const Result out = run({"--run-macro", "saluto.mac", "lettera.rtf", "-o", "pronta.txt"}, "Gentile \n");
    // The second question shows the first answer, and finds no line left.
    EXPECT_EQ(out, (Result{0, "", "fatto\nGentile \n"}));
    EXPECT_EQ(read("pronta.txt"), "Gentile Caro Mario,1");
    EXPECT_EQ(read("lettera.rtf"), kLetter);

    EXPECT_EQ(run({"--run-macro", "saluto.mac", "lettera.rtf", "-o", "pronta.rtf"}, "X\n"), (Result{0, "", "fatto\nX\n"}));
    const QByteArray rtf = read("pronta.rtf");
    EXPECT_TRUE(rtf.contains("XCaro \\b Mario\\b0 ,1")) << rtf.toStdString();
}

TEST_F(RunMacroTest, WritesBackOnlyWhatChanged)
{
    write("doc.txt", "uno due");
    write("legge.mac", "dim t\r\nsst(0)\r\nsel(3)\r\nseltxt(t)\r\n");
    write("cambia.mac", "sst(0)\r\nsel(3)\r\ntype(\"tre\")\r\n");
    EXPECT_EQ(run({"--run-macro", "legge.mac", "doc.txt"}), (Result{0, "", ""}));
    EXPECT_EQ(read("doc.txt"), "uno due");
    EXPECT_EQ(run({"--run-macro", "cambia.mac", "doc.txt"}), (Result{0, "", ""}));
    EXPECT_EQ(read("doc.txt"), "tre due");
}

TEST_F(RunMacroTest, FaultsEndWithOneLineAndACode)
{
    write("doc.txt", "x");
    write("m.mac", "type(\"y\")");
    EXPECT_EQ(run({"--run-macro", "manca.mac", "doc.txt"}), (Result{1, "", "tornelia: macro inesistente: manca.mac\n"}));
    EXPECT_EQ(run({"--run-macro", "m.mac", "manca.txt"}), (Result{1, "", "tornelia: file inesistente: manca.txt\n"}));
    EXPECT_EQ(run({"--run-macro", "m.mac", "doc.txt", "-o", "nessuna/cartella/out.txt"}).code, 1);
    EXPECT_EQ(read("doc.txt"), "x");

}

}  // namespace
