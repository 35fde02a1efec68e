// The commands, run as whole macros against a real document.

#include "macro_fixture.h"

#include <QFile>

namespace tornelia {

namespace {

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

struct Caret {
    QString text;
    long start;
    long length;
    bool operator==(const Caret&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Caret& c)
{
    return os << '"' << c.text.toStdString() << "\" " << c.start << '+' << c.length;
}

}  // namespace

TEST_F(MacroTest, CaretSelectionAndTyping)
{
    testo.setText(QStringLiteral("Hello world"));
    run({
        "dim v",
        "sst(6)",
        "sst(\"abc\")",  // not a number: the caret stays
        "sel(5)",        // only the length, from where the caret is
        "seltxt(v)",
        "sst(0)",
        "type(v)",
        "sst(-1)",
        "acapo()",
        "sel(3)",
    });
    EXPECT_EQ((Caret{testo.Text(), testo.SelStart(), testo.SelLength()}),
              (Caret{"world\r\nHello world", 7, 3}));
}

TEST_F(MacroTest, CharacterFormats)
{
    testo.setText(QStringLiteral("abcdef"));
    run({"sst(0)", "sel(3)", "gras(2)", "cors(0)", "sott()", "barr(1)", "dime(12.5)", "font(\"Courier New\")",
         "gras(\"x\")"});
    EXPECT_EQ(testo.SelBold(), true);
    EXPECT_EQ(testo.SelItalic(), false);
    EXPECT_EQ(testo.SelUnderline(), false);
    EXPECT_EQ(testo.SelStrikeThru(), true);
    EXPECT_EQ(testo.SelFontSize(), 12.0f);
    EXPECT_EQ(testo.SelFontName(), QStringLiteral("Courier New"));
    run({"sst(3)", "sel(3)", "dime(13.5)", "gras(0)", "dime(\"big\")"});
    EXPECT_EQ(testo.SelFontSize(), 14.0f);
    EXPECT_EQ(testo.SelBold(), false);
    EXPECT_EQ(testo.Text(), "abcdef");
}

TEST_F(MacroTest, CommandsReachTheMainWindowsProcedures)
{
    run({"pag()", "ant()", "Stampa()", "cut()", "copy()", "paste()", "paste(01)", "paste(\"abc\")", "paste(2)",
         "par()", "par(1)", "imm()", "txt()", "lin()", "mai()", "conta()", "vai()", "mail(\"a@b.it\")", "ins()",
         "tast(0)", "tast(1)", "tast(2)", "unknown(1)"});
    auto show = [](Window w) { return QStringLiteral("show:") + QString::number(int(w)); };
    EXPECT_EQ(procedures.calls,
              (QStringList{show(Window::frmImp), "AntEP", "StaMpa", "TaGl", "CopYa", "INco:", "INco:1", "INco:2",
                           "PaRImM", "PaRImM", show(Window::frmIm), show(Window::form2), show(Window::Form1),
                           show(Window::frmMai), "CpAr", show(Window::frmGoTo), "MaIL:a@b.it", "InSFilE",
                           "keyboard on", "keyboard off"}));
    EXPECT_TRUE(messages.messages.isEmpty());
}

TEST_F(MacroTest, ParZeroTogglesTheStandardBullet)
{
    testo.setText(QStringLiteral("one"));
    run({"par(0)"});
    EXPECT_EQ(testo.SelBullet(), true);
    run({"par(0)"});
    EXPECT_EQ(testo.SelBullet(), false);
    EXPECT_TRUE(procedures.calls.isEmpty());
}

TEST_F(MacroTest, ClearWipesEverythingUnlessItReadsANumber)
{
    const std::vector<std::pair<QString, QString>> cases = {
        {"clear(0)", "adef"}, {"clear(2)", "adef"}, {"clear(1)", ""}, {"clear()", ""}, {"clear(\"x\")", ""},
    };
    for (const auto& [line, left] : cases) {
        testo.setText(QStringLiteral("abcdef"));
        testo.setSelStart(1);
        testo.setSelLength(2);
        run({line});
        EXPECT_EQ(testo.Text(), left) << line.toStdString();
    }
}

TEST_F(MacroTest, QuestionsAndAnswers)
{
    messages.answers = {"Mario", "Rossi"};
    run({
        "dim a, x, b",
        "a = \"Nome?\"",
        "x = inputbox(a)",
        "inputbox(b)",
        "inputbox(\"lost\")",
        "type(a)",
        "type(b)",
        "msgbox(a)",
        "#probe",
    });
    EXPECT_EQ(shown(), (QStringList{"Tornelia|Nome?", "Tornelia|", "Tornelia|lost", "Tornelia|Mario"}));
    EXPECT_EQ(testo.Text(), "MarioRossi");
    EXPECT_EQ(probe.at("x"), MacroValue{});
}

TEST_F(MacroTest, CharacterCodesByWindows1252)
{
    run({
        "dim a, b, e, big, none",
        "a = \"€\"",
        "asc(a)",
        "b = \"233\"",
        "chr(b)",
        "big = \"300\"",
        "chr(big)",
        "asc(none)",
        "e = \"Ā\"",
        "asc(e)",
        "#probe",
    });
    EXPECT_EQ(probe.at("a"), MacroValue{std::int16_t(128)});
    EXPECT_EQ(probe.at("b"), MacroValue{QStringLiteral("é")});
    EXPECT_EQ(probe.at("big"), MacroValue{QStringLiteral("300")});
    EXPECT_EQ(probe.at("none"), MacroValue{QString()});
    EXPECT_EQ(probe.at("e"), MacroValue{std::int16_t('?')});
}

TEST_F(MacroTest, AFailingProcedureIsToldAndTheMacroGoesOn)
{
    procedures.failWordCount = true;
    run({"Conta()", "type(\"after\")"});
    EXPECT_EQ(shown(), QStringList{"Macro|Argomento non opzionale nella procedura: Conta"});
    EXPECT_EQ(testo.Text(), "after");
}

TEST_F(MacroTest, InsertingFilesBringsTheirPlainText)
{
    const QString rtf = dir.filePath("a.rtf");
    const QString txt = dir.filePath("b.txt");
    writeFile(rtf, "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 \\b bold\\b0  plain\\par}");
    writeFile(txt, "{\\b not rtf}");
    testo.setText(QStringLiteral("[]"));
    testo.setSelStart(1);
    run({"ins(\"" + rtf + "\")", "ins(\"" + dir.filePath("nofile.rtf") + "\")", "type(\"|\")", "ins(\"" + txt + "\")"});
    EXPECT_EQ(testo.Text(), "[bold plain|{\\b not rtf}]");
    testo.setSelStart(0);
    testo.setSelLength(5);
    EXPECT_EQ(testo.SelBold(), false);
    EXPECT_TRUE(messages.messages.isEmpty());
}

TEST_F(MacroTest, UndoAndRedoRepeatTheStoresSteps)
{
    testo.setText(QStringLiteral("a"));
    undo.unDO();
    testo.setText(QStringLiteral("ab"));
    undo.unDO();
    testo.setText(QStringLiteral("abc"));
    QStringList seen;
    for (const char* line : {"undo(0)", "undo()", "undo(5)", "redo(\"x\")", "redo(1)", "redo()", "redo(-3)"}) {
        run({line});
        seen << testo.Text();
    }
    EXPECT_EQ(seen, (QStringList{"abc", "ab", "a", "a", "ab", "abc", "abc"}));
}

TEST_F(MacroTest, DocumentCommandsGoThroughTheLifecycle)
{
    const QString path = dir.filePath("out.txt");
    testo.setText(QStringLiteral("saved text"));
    run({"save(\"" + path + "\")", "new()", "type(\"x\")"});
    EXPECT_EQ(testo.Text(), "x");
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), "saved text");
    run({"open(\"" + path + "\")"});
    EXPECT_EQ(testo.Text(), "saved text");
    EXPECT_EQ(document.nomeFile, path);
}

}  // namespace tornelia
