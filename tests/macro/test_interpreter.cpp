// The language's rules, each checked by running whole macros.

#include "macro_fixture.h"

#include <QLocale>

namespace tornelia {

namespace {

using V = MacroValue;
const V kEmpty{};
V text(const char* s) { return V{QString::fromUtf8(s)}; }

}  // namespace

TEST_F(MacroTest, ExpressionsAreFlatAndReadLeftToRight)
{
    run({
        "dim a, b, x, abc, p, q, r, s, t, u, v, w, y, z, m, n, o",
        "a = \"5\"",
        "b = a + \"3\"",
        "abc = \"2\"",
        "x = abc+\"1\"",
        "p = abc + \"1\"",
        "q = abc  + \"1\"",
        "r = \"3\" + \"4\" * \"2\"",
        "s = \"2\" ^ \"3\" ^ \"2\"",
        "t = \"a\" & \"b\"",
        "u = \"1\" & \"2\" + \"3\"",
        "v = \"7\" \\ \"2\"",
        "w = \"7.5\" \\ \"2\"",
        "y = - \"5\"",
        "z = \"2\" - - \"3\"",
        "m = \"2\" * - \"3\"",
        "n = \"1\" / \"0\"",
        "o = \"ab\" + \"1\"",
        "#probe",
    });
    const std::map<QString, V> expected = {
        {"a", text("5")},    {"b", V{8.0}},     {"abc", text("2")}, {"x", V{1.0}},  {"p", V{3.0}},
        {"q", V{1.0}},       {"r", V{14.0}},    {"s", V{64.0}},     {"t", text("ab")}, {"u", V{15.0}},
        {"v", V{std::int32_t(3)}}, {"w", V{std::int32_t(4)}}, {"y", V{-5.0}}, {"z", V{-1.0}}, {"m", V{-1.0}},
        {"n", text("1")},    {"o", V{1.0}},
    };
    EXPECT_EQ(probe, expected);
}

TEST_F(MacroTest, NamesEndOneCharacterEarlyAndBareNumbersAreNames)
{
    run({
        "dim a, b, c1, d, e, 5",
        "a = \"5\"",
        "b = a+\"3\"",   // the name before "+" has no characters left
        "c1 = 5",        // a variable called 5, empty
        "d = \"a\" # comment",
        "e = a # comment",  // the blank before "#" ends the line: a is never read
        "#probe",
        "5 = \"9\"",
        "c1 = 5",
        "#probe",
    });
    EXPECT_EQ(probe.at("b"), V{3.0});
    EXPECT_EQ(probe.at("d"), text("a"));
    EXPECT_EQ(probe.at("e"), kEmpty);
    EXPECT_EQ(probe.at("c1"), text("9"));
}

TEST_F(MacroTest, CallsOnAssignmentLines)
{
    run({
        "dim a, x, y, z",
        "x = (\"1\" + \"2\")",
        "y = msgbox(\"hi\")",
        "a = \"A\"",
        "z = asc(a)",
        "#probe",
    });
    EXPECT_EQ(probe.at("x"), kEmpty);
    EXPECT_EQ(probe.at("y"), V{std::int32_t(1)});
    EXPECT_EQ(probe.at("a"), V{std::int16_t(65)});
    EXPECT_EQ(probe.at("z"), kEmpty);
    EXPECT_EQ(shown(), QStringList{"Tornelia|hi"});
}

TEST_F(MacroTest, ArgumentsAreTakenAsWrittenAndCommentsCutAnywhere)
{
    const std::vector<std::pair<QString, QString>> cases = {
        {"type(\"a#b\")", "\""},
        {"type(\"x\") # comment", "x\""},
        {"type(\"a\" & \"b\")", "a\" & \"b"},
        {"type(\"abc)", "ab"},
        {"TYPE(\"x\")", "x"},
        {"type(12)", "12"},
        {"type(nothing)", ""},
        {"type(\"a, b\")", "a, b"},
    };
    for (const auto& [line, typed] : cases) {
        testo.setText(QString());
        run({line});
        EXPECT_EQ(testo.Text(), typed) << line.toStdString();
    }
}

TEST_F(MacroTest, DeclarationsAndTheVariableStore)
{
    run({
        "Dim a, a",
        "a = \"1\"",
        "type(a)",       // writes went to the last entry, reads find the first
        "dim Abc",
        "Abc = \"k\"",
        "type(abc)",     // names keep their case
        "type(Abc)",
        "dim",
        "\tdim t",
        "t = \"lost\"",  // never declared: the value goes nowhere
        "type(t)",
        "undeclared = \"z\"",
        "type(undeclared)",
        "just words",
        "#probe",
    });
    EXPECT_EQ(testo.Text(), "k");
    EXPECT_EQ(probe.size(), 2u);
    EXPECT_EQ(probe.at("a"), text(""));
    EXPECT_EQ(probe.at("Abc"), text("k"));
}

TEST_F(MacroTest, AssignedVariablesMoveToTheEndOfTheStore)
{
    std::vector<QStringList> orders;
    c engine(MacroHost{testo, messages, procedures, &document, &undo, nullptr});
    engine.LineStart = [&](QString& line, std::int16_t&) {
        if (line == QLatin1String("#probe"))
            orders.push_back(engine.VarNames());
    };
    engine.ScriptText = QStringLiteral("dim a, b, c\r\n#probe\r\na = \"1\"\r\n#probe\r\nb = \"2\"\r\n#probe");
    engine.ScriptExecute();
    EXPECT_EQ(orders, (std::vector<QStringList>{{"a", "b", "c"}, {"b", "c", "a"}, {"c", "a", "b"}}));
    EXPECT_TRUE(engine.VarNames().isEmpty());
}

TEST_F(MacroTest, BrokenCallsTypeWhatIsLeft)
{
    run({"msgbox(", "msgbox(\")", "type(\")"});
    EXPECT_EQ(shown(), (QStringList{"Tornelia|", "Tornelia|\""}));
    EXPECT_EQ(testo.Text(), "\"");
}

TEST_F(MacroTest, LinesEndOnlyAtCrLf)
{
    testo.setText(QString());
    c engine(MacroHost{testo, messages, procedures, &document, &undo, nullptr});
    QStringList lines;
    QList<int> numbers;
    engine.LineStart = [&](QString& line, std::int16_t& number) {
        lines << line;
        numbers << number;
    };
    engine.ScriptText = QStringLiteral("  type(\"a\")  \r\n\r\n   \r\ntype(\"b\")\ntype(\"c\")\r\n# only a comment\r\ntype(\"d\")");
    engine.ScriptExecute();
    // A lone LF stays inside the line; the last line runs without an end.
    EXPECT_EQ(testo.Text(), "ab\")\r\ntype(\"cd");
    EXPECT_EQ(lines, (QStringList{"type(\"a\")", "type(\"b\")\ntype(\"c\")", "# only a comment", "type(\"d\")"}));
    EXPECT_EQ(numbers, (QList<int>{0, 3, 4, 5}));
}

TEST_F(MacroTest, LineStartMayRewriteTheLine)
{
    c engine(MacroHost{testo, messages, procedures, &document, &undo, nullptr});
    engine.LineStart = [](QString& line, std::int16_t&) { line.replace(QStringLiteral("old"), QStringLiteral("new")); };
    engine.ScriptText = QStringLiteral("type(\"old\")");
    engine.ScriptExecute();
    EXPECT_EQ(testo.Text(), "new");
}

TEST_F(MacroTest, TooManyLinesRunNothing)
{
    QStringList lines(32768, QStringLiteral("type(\"x\")"));
    run(lines);
    EXPECT_EQ(testo.Text(), "");
    lines.fill(QStringLiteral("no call here"), 32766);
    lines << QStringLiteral("type(\"end\")");
    run(lines);
    EXPECT_EQ(testo.Text(), "end");
}

TEST_F(MacroTest, AnUnpairedQuoteScansUntilTheStepLimit)
{
    run({"dim x", "type(\"before\")", "x = \"abc", "type(\"after\")"}, 100000);
    EXPECT_EQ(testo.Text(), "before");
}

TEST_F(MacroTest, FractionsFollowTheLocalesDecimalMark)
{
    const QLocale saved;
    QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy));
    run({"dim x, y", "x = \"2.5\" + \"0\"", "y = x + \"1\"", "type(x)", "type(\" \")", "type(y)"});
    QLocale::setDefault(QLocale::c());
    run({"dim x, y", "x = \"2.5\" + \"0\"", "y = x + \"1\"", "type(\"|\")", "type(y)",
         "x = \"0.1\" + \"0.2\"", "y = x - \"0.3\"", "type(\"|\")", "type(y)"});
    QLocale::setDefault(saved);
    // "2,5" reads back as 2: a chain of fractions depends on the locale.
    EXPECT_EQ(testo.Text(), "2,5 3|3.5|0");
}

TEST_F(MacroTest, ParenthesesAndComparisonsOfTheEngine)
{
    c engine(MacroHost{testo, messages, procedures, &document, &undo, nullptr});
    engine.ScriptText = QStringLiteral("dim a");
    // Declarations stay until the run ends, which is what these need.
    engine.LineStart = [&](QString&, std::int16_t&) {};
    EXPECT_EQ(engine.EvalParen(QStringLiteral("(\"1\" + \"2\") * \"3\"")), V{9.0});
    EXPECT_EQ(engine.EvalParen(QStringLiteral("\"2\" * ((\"1\" + \"2\") - \"1\")")), V{4.0});
    EXPECT_EQ(engine.EvalParen(QStringLiteral("\"(\" & \")\"")), text("()"));
    EXPECT_EQ(engine.EvalParen(QStringLiteral("(\"1\"")), text("1"));  // no closed pair
    const std::vector<std::pair<const char*, bool>> comparisons = {
        {"\"2\" < \"10\"", true},   {"\"2\" > \"10\"", false},  {"\"3\" <> \"3\"", false},
        {"\"3\" >= \"3\"", true},   {"\"4\" <= \"3\"", false},  {"\"Ab\" = \"ab\"", false},
        {"\"Ab\" == \"ab\"", true}, {"(\"1\" + \"1\") = \"2\"", true}, {"\"1\" ! \"1\"", false},
        {"\"1\"", false},
    };
    for (const auto& [expression, result] : comparisons)
        EXPECT_EQ(engine.EvalCompare(QString::fromUtf8(expression)), result) << expression;
}

TEST(MacroValues, Conversions)
{
    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(numberOfText("12abc"), 12);
    EXPECT_EQ(numberOfText("abc"), 0);
    EXPECT_EQ(numberOfText(" 1 2\t.5"), 12.5);
    EXPECT_EQ(numberOfText("-3e2x"), -300);
    EXPECT_EQ(numberOfText("&HFF"), 255);
    EXPECT_EQ(numberOfText("&hFFFF"), -1);
    EXPECT_EQ(numberOfText("&O17"), 15);
    EXPECT_EQ(numberOfText("2,5"), 2);
    EXPECT_EQ(textOf(V{0.1 + 0.2}), "0.3");
    EXPECT_EQ(textOf(V{std::int16_t(-7)}), "-7");
    EXPECT_EQ(textOf(kEmpty), "");
    EXPECT_EQ(strictInt16("12.5"), 12);
    EXPECT_EQ(strictInt16("13.5"), 14);
    EXPECT_EQ(strictInt32(" -2.5 "), -2);
    EXPECT_THROW(strictInt16("40000"), MacroError);
    EXPECT_THROW(strictInt32("abc"), MacroError);
    EXPECT_THROW(strictInt32(""), MacroError);
    EXPECT_TRUE(c::IsFun("chr"));
    EXPECT_FALSE(c::IsFun("inputbox"));
    EXPECT_FALSE(c::IsFun("Type"));
}

}  // namespace tornelia
