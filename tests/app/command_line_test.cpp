// The built program, run as a person runs it from a shell: conversions,
// the dump of runs, macros run against a document with no window, and the
// answers to a wrong command line.
#include "app/command_line.h"
#include "core/codepage.h"
#include "program_run.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

using tornelia::testing::Result;

const QByteArray kLetter =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}"
    "{\\f1\\froman\\fcharset0 Times New Roman;}}\r\n{\\colortbl ;\\red255\\green0\\blue0;}\r\n"
    "\\viewkind4\\uc1\\pard\\f0\\fs20 Caro Mario, \\cf1\\b perch\\'e9\\cf0\\b0  no?\\par\r\n"
    "\\pard\\qc\\li567\\f1\\fs24\\i Saluti\\tab da Roma\\i0\\par\r\n}\r\n";

using CommandLineTest = tornelia::testing::ProgramRunTest;

const QByteArray kShortLetter = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Tahoma;}}\\f0\\fs20 Caro \\b Mario\\b0 ,\\par}";

TEST_F(CommandLineTest, ConvertsBetweenTheThreeKindsAndDumpsTheRuns)
{
    write("lettera.rtf", kLetter);
    const QString text = "Prima riga {con graffe} e \\barra\\\r\n\tSeconda: è già €\r\n\r\nQuarta";
    write("note.txt", text.toUtf8());
    for (const QStringList& args :
         {QStringList{"txt", "lettera.rtf", "-o", "lettera.txt"}, {"tnl", "lettera.rtf", "-o", "lettera.tnl"},
          {"rtf", "lettera.tnl", "-o", "ancora.rtf"}, {"txt", "lettera.tnl", "-o", "da_tnl.txt"},
          {"rtf", "note.txt", "-o", "note.rtf"}, {"txt", "note.rtf", "-o", "note2.txt"}})
        EXPECT_EQ(run(QStringList{"--convert-to"} + args), (Result{0, "", ""})) << args.join(' ').toStdString();
    // RTF to text gives the text alone, paragraphs split by CR LF, and the
    // TNL holds the same document; TNL is RTF, so back to RTF it writes the
    // same bytes; plain text comes back whole from RTF.
    EXPECT_EQ(tornelia::decodePlainText(read("lettera.txt")), "Caro Mario, perché no?\r\nSaluti\tda Roma");
    EXPECT_EQ(read("da_tnl.txt"), read("lettera.txt"));
    EXPECT_EQ(read("ancora.rtf"), read("lettera.tnl"));
    EXPECT_EQ(tornelia::decodePlainText(read("note2.txt")), text);

    // Without -o the output goes to the current folder under the input's name.
    ASSERT_TRUE(QDir(dir.path()).mkpath("fuori"));
    write("Lettera a Mario.rtf", kLetter);
    EXPECT_EQ(run({"--convert-to", "TXT", path("Lettera a Mario.rtf")}, {}, path("fuori")), (Result{0, "", ""}));
    EXPECT_EQ(QDir(path("fuori")).entryList(QDir::Files), QStringList{"Lettera a Mario.txt"});

    const QByteArray runs = R"({"paragraphs":[
      {"align":"left","indent_twips":0,"right_indent_twips":0,"bullet":false,"runs":[
        {"text":"Caro Mario, ","font":"Tahoma","size":10.0,"bold":false,"italic":false,"underline":"none",
         "strike":false,"color":"auto","highlight":"none","offset_half_points":0,"hidden":false,"caps":false},
        {"text":"perché","font":"Tahoma","size":10.0,"bold":true,"italic":false,"underline":"none",
         "strike":false,"color":"#ff0000","highlight":"none","offset_half_points":0,"hidden":false,"caps":false},
        {"text":" no?","font":"Tahoma","size":10.0,"bold":false,"italic":false,"underline":"none",
         "strike":false,"color":"auto","highlight":"none","offset_half_points":0,"hidden":false,"caps":false}]},
      {"align":"center","indent_twips":567,"right_indent_twips":0,"bullet":false,"runs":[
        {"text":"Saluti\tda Roma","font":"Times New Roman","size":12.0,"bold":false,"italic":true,"underline":"none",
         "strike":false,"color":"auto","highlight":"none","offset_half_points":0,"hidden":false,"caps":false}]}],
      "pictures":0})";
    auto compact = [](const auto& json) { return QJsonDocument::fromJson(json).toJson(QJsonDocument::Compact); };
    Result dump = run({"--dump-runs", "lettera.rtf"});
    dump.out = compact(QByteArray::fromStdString(dump.out)).toStdString();  // empty when not JSON
    EXPECT_EQ(dump, (Result{0, compact(runs).toStdString(), ""}));
}

TEST_F(CommandLineTest, MacroRunsAgainstTheDocumentAndSaves)
{
    write("lettera.rtf", kShortLetter);
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
    EXPECT_EQ(read("lettera.rtf"), kShortLetter);

    EXPECT_EQ(run({"--run-macro", "saluto.mac", "lettera.rtf", "-o", "pronta.rtf"}, "X\n"), (Result{0, "", "fatto\nX\n"}));
    const QByteArray rtf = read("pronta.rtf");
    EXPECT_TRUE(rtf.contains("XCaro \\b Mario\\b0 ,1")) << rtf.toStdString();
}

TEST_F(CommandLineTest, MacroWritesBackOnlyWhatChanged)
{
    write("doc.txt", "uno due");
    write("legge.mac", "dim t\r\nsst(0)\r\nsel(3)\r\nseltxt(t)\r\n");
    write("cambia.mac", "sst(0)\r\nsel(3)\r\ntype(\"tre\")\r\n");
    EXPECT_EQ(run({"--run-macro", "legge.mac", "doc.txt"}), (Result{0, "", ""}));
    EXPECT_EQ(read("doc.txt"), "uno due");
    EXPECT_EQ(run({"--run-macro", "cambia.mac", "doc.txt"}), (Result{0, "", ""}));
    EXPECT_EQ(read("doc.txt"), "tre due");
}

// The runs of a document as "text:bi" pieces, from the program's own dump.
std::string runsOf(const Result& dump)
{
    std::string out;
    const QJsonDocument json = QJsonDocument::fromJson(QByteArray::fromStdString(dump.out));
    for (const auto& paragraph : json["paragraphs"].toArray())
        for (const auto& run : paragraph.toObject()["runs"].toArray()) {
            const QJsonObject r = run.toObject();
            const std::string looks = std::string(r["bold"].toBool() ? "b" : "") + (r["italic"].toBool() ? "i" : "");
            out += '[' + r["text"].toString().toStdString() + (looks.empty() ? "" : ":" + looks) + ']';
        }
    return out;
}

// The clipboard commands of a macro work with no window, through the
// process's own clipboard and undo store, in the same three paste modes as
// the window's menu.
TEST_F(CommandLineTest, MacroCopiesCutsAndPastesWithTheirFormats)
{
    write("doc.rtf", "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Tahoma;}}\\f0\\fs20 \\b Ci\\i ao\\b0\\i0  a "
                     "\\i tutti\\i0\\par}");
    const std::pair<const char*, const char*> cases[] = {
        {"sst(0)\nsel(5)\ncopy()\nsst(10)\npaste()\n", "[Ci:b][ao:bi][ a ][tut:i][Ci:b][ao:bi][ ][ti:i]"},
        // Keeping the original formats is the plain paste again.
        {"sst(0)\nsel(5)\ncopy()\nsst(10)\npaste(0)\n", "[Ci:b][ao:bi][ a ][tut:i][Ci:b][ao:bi][ ][ti:i]"},
        // The formats of the place it lands in: the italic of "tutti".
        {"sst(0)\nsel(4)\ncopy()\nsst(10)\npaste(1)\n", "[Ci:b][ao:bi][ a ][tut:i][Ciao:i][ti:i]"},
        // The text alone takes the formats around it too.
        {"sst(0)\nsel(4)\ncopy()\nsst(10)\npaste(2)\n", "[Ci:b][ao:bi][ a ][tutCiaoti:i]"},
        // Cut moves the word; undo takes the paste back, and redo does it again.
        {"sst(0)\nsel(5)\ncut()\nsst(2)\npaste()\n", "[a ][Ci:b][ao:bi][ ][tutti:i]"},
        {"sst(0)\nsel(5)\ncut()\nsst(2)\npaste()\nundo()\n", "[a ][tutti:i]"},
        // Undo and redo of a paste.
        {"sst(0)\nsel(2)\ncopy()\nsst(5)\npaste()\nundo()\nredo()\n", "[Ci:b][ao:bi][ ][Ci:b][a ][tutti:i]"},
    };
    for (const auto& [macro, runs] : cases) {
        write("m.mac", macro);
        EXPECT_EQ(run({"--run-macro", "m.mac", "doc.rtf", "-o", "out.rtf"}), (Result{0, "", ""})) << macro;
        EXPECT_EQ(runsOf(run({"--dump-runs", "out.rtf"})), runs) << macro;
    }
}

// Undo in a macro reaches back to the file as it was opened: typing is one
// change, and the first change made to an opened file can be taken back.
TEST_F(CommandLineTest, MacroUndoesBackToTheOpenedFile)
{
    write("doc.rtf", "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Tahoma;}}\\f0\\fs20 \\b Ciao\\b0  a tutti\\par}");
    write("doc.txt", "uno due");
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"doc.rtf", "sst(0)\ntype(\"Oh \")\nundo()\n", "[Ciao:b][ a tutti]"},
        {"doc.rtf", "sst(0)\ntype(\"Oh \")\nundo()\nredo()\n", "[Oh Ciao:b][ a tutti]"},
        // Two changes, two undos: back to the file; one more does nothing.
        {"doc.rtf", "sst(4)\ntype(\"!\")\nsst(0)\nsel(4)\ncut()\nundo(3)\n", "[Ciao:b][ a tutti]"},
        {"doc.rtf", "sst(4)\ntype(\"!\")\nsst(0)\nsel(4)\ncut()\nundo(2)\nredo()\n", "[Ciao!:b][ a tutti]"},
        {"doc.txt", "sst(3)\ntype(\" e\")\nundo()\n", "[uno due]"},
    };
    for (const auto& [file, macro, runs] : cases) {
        write("m.mac", macro);
        EXPECT_EQ(run({"--run-macro", "m.mac", file, "-o", "out.rtf"}), (Result{0, "", ""})) << macro;
        EXPECT_EQ(runsOf(run({"--dump-runs", "out.rtf"})), runs) << macro;
    }
}

// A file that is missing or cannot be written ends with one line and code
// 1; a wrong command line with what is wrong, the usage and code 2.
TEST_F(CommandLineTest, FaultsEndWithOneLineAndACode)
{
    write("a.rtf", kLetter);
    write("m.mac", "type(\"y\")");
    const std::string usage = tornelia::usageText().toStdString();
    const std::pair<QStringList, Result> cases[] = {
        {{"--convert-to", "txt", "non c'è.rtf"}, {1, "", "tornelia: file inesistente: non c'è.rtf\n"}},
        {{"--dump-runs", "non c'è.rtf"}, {1, "", "tornelia: file inesistente: non c'è.rtf\n"}},
        {{"--dump-runs", "."}, {1, "", "tornelia: non è un file: .\n"}},
        {{"--convert-to", "txt", "a.rtf", "-o", "manca/a.txt"},
         {1, "", "tornelia: impossibile scrivere manca/a.txt: <why>\n"}},
        {{"--run-macro", "manca.mac", "a.rtf"}, {1, "", "tornelia: macro inesistente: manca.mac\n"}},
        {{"--run-macro", "m.mac", "manca.txt"}, {1, "", "tornelia: file inesistente: manca.txt\n"}},
        {{"--run-macro", "m.mac", "a.rtf", "-o", "manca/a.txt"},
         {1, "", "tornelia: impossibile scrivere manca/a.txt: <why>\n"}},
        {{"--convert-to"}, {2, "", "tornelia: --convert-to vuole un formato: rtf, tnl, txt, html o pdf\n" + usage}},
        {{"--convert-to", "doc", "a.rtf"}, {2, "", "tornelia: formato sconosciuto: doc (rtf, tnl, txt, html o pdf)\n" + usage}},
        {{"--convert-to", "txt"}, {2, "", "tornelia: manca il file da leggere\n" + usage}},
        {{"--convert-to", "txt", "a.rtf", "a.rtf"}, {2, "", "tornelia: un solo file da leggere, non 2\n" + usage}},
        {{"--convert-to", "txt", "a.rtf", "-o"}, {2, "", "tornelia: -o vuole il nome del file da scrivere\n" + usage}},
        {{"--dump-runs", "a.rtf", "-o", "x.txt"}, {2, "", "tornelia: -o vale solo con --convert-to\n" + usage}},
        {{"--dump-runs", "--convert-to", "rtf", "a.rtf"},
         {2, "", "tornelia: --convert-to e --dump-runs non vanno insieme\n" + usage}},
        {{"--sconosciuta", "a.rtf"}, {2, "", "tornelia: opzione sconosciuta: --sconosciuta\n" + usage}},
        {{"--help"}, {0, usage, ""}},
    };
    for (const auto& [args, result] : cases)
        EXPECT_EQ(run(args), result) << args.join(' ').toStdString();
    // Nothing was written, and the document of the macro is as it was.
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), (QStringList{"a.rtf", "m.mac"}));
    EXPECT_EQ(read("a.rtf"), kLetter);
}

// How the arguments make one command. A path with blanks may come whole,
// quoted, or in pieces; after "--" nothing is an option.
TEST(CommandLineParseTest, ArgumentsMakeOneCommand)
{
    using tornelia::CommandLine;
    const std::pair<QStringList, QString> cases[] = {
        {{}, "gui |  |  |  | "},
        {{"/tmp/a.rtf"}, "gui | /tmp/a.rtf |  |  | "},
        {{"\"/tmp/Lettera a Mario.rtf\""}, "gui | /tmp/Lettera a Mario.rtf |  |  | "},
        {{"\"/tmp/Lettera", "a", "Mario.rtf\""}, "gui | /tmp/Lettera a Mario.rtf |  |  | "},
        {{"/tmp/Lettera", "-", "copia.rtf"}, "gui | /tmp/Lettera - copia.rtf |  |  | "},
        {{"--", "--strano.rtf"}, "gui | --strano.rtf |  |  | "},
        {{"-o", "x.tnl", "--convert-to=TNL", "a b.rtf"}, "convert | a b.rtf | tnl | x.tnl | "},
        {{"-o", "out.rtf", "--run-macro", "m.mac", "in.rtf"}, "macro | in.rtf |  | out.rtf | m.mac"},
        {{"--run-macro", "m.mac"}, "bad: --run-macro vuole il documento su cui eseguire la macro"},
        {{"--run-macro"}, "bad: --run-macro vuole il file della macro"},
        {{"--run-macro", "m.mac", "a", "--convert-to", "rtf"}, "bad: --run-macro va da solo"},
    };
    const char* const modes[] = {"gui", "convert", "dump", "macro", "help", "bad"};
    for (const auto& [args, expected] : cases) {
        const CommandLine cl = tornelia::parseCommandLine(args);
        const QString got = cl.mode == CommandLine::Mode::BadUsage
                                ? "bad: " + cl.error
                                : QStringList({modes[int(cl.mode)], cl.path, cl.format, cl.output, cl.macro}).join(" | ");
        EXPECT_EQ(got, expected) << args.join('|').toStdString();
    }
    EXPECT_EQ(tornelia::defaultOutputPath("/home/u/doc/lettera.v2.rtf", "txt"), "lettera.v2.txt");
}

}  // namespace
