// Thousands of random macros made of the language's own pieces must all
// run to their end: no crash, no endless scan, whatever the mix.

#include "macro_fixture.h"

#include <random>

namespace tornelia {

namespace {

// The one line the language scans for ever: an assignment without "("
// whose right side leaves a double quote without its partner.
bool scansForEver(QString line)
{
    line = trimBlanks(line);
    const qsizetype hash = line.indexOf(u'#');
    if (hash >= 0)
        line.truncate(hash);
    const qsizetype space = line.indexOf(u' ');
    if (space >= 0 && line.left(space).toLower() == QLatin1String("dim"))
        return false;
    qsizetype eq = -1;
    for (qsizetype i = 0; i < line.size() && eq < 0; ++i) {
        if (line.at(i) == u'(')
            return false;
        if (line.at(i) == u'=')
            eq = i;
    }
    return eq >= 0 && !line.contains(u'(') && line.mid(eq + 1).count(u'"') % 2 == 1;
}

class MacroGenerator {
public:
    explicit MacroGenerator(unsigned seed) : rng_(seed) {}

    QString macro()
    {
        QStringList lines;
        const int n = pick(1, 12);
        for (int i = 0; i < n; ++i)
            lines << line();
        QStringList runnable;
        // Lines are what CR LF separates, whatever the pieces held.
        for (const QString& l : lines.join(QStringLiteral("\r\n")).split(QStringLiteral("\r\n")))
            runnable << (scansForEver(l) ? QString() : l);
        return runnable.join(QStringLiteral("\r\n"));
    }

private:
    int pick(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng_); }
    template <typename T>
    const T& any(const std::vector<T>& v) { return v[std::size_t(pick(0, int(v.size()) - 1))]; }

    QString piece()
    {
        static const std::vector<QString> names = {"a", "b", "x", "abc", "Abc", "5", "", " ", "a b"};
        static const std::vector<QString> commands = {
            "msgbox", "inputbox", "seltxt", "clear", "type", "sst", "sel", "new", "prop", "pag", "ant", "stampa",
            "undo", "redo", "cut", "copy", "paste", "font", "dime", "gras", "cors", "sott", "barr", "par", "imm",
            "txt", "lin", "mai", "conta", "vai", "tast", "acapo", "asc", "chr", "TYPE", "nope"};
        static const std::vector<QString> texts = {"\"5\"", "\"2.5\"", "\"-1\"", "\"abc\"", "\"\"", "\"a#b\"",
                                                   "\"(\"", "\")\"", "\"1e3\"", "\"&HFF\"", "\"99999\"", "\"€\""};
        static const std::vector<QString> marks = {"+", "-", "*", "/", "\\", "^", "&", "=", "(", ")", "\"",
                                                   "#", ",", " ", "  ", "\t", "\n", "\r", "<", ">"};
        switch (pick(0, 5)) {
        case 0: return any(names);
        case 1: return any(commands) + u'(' + (pick(0, 1) ? any(texts) : any(names)) + (pick(0, 4) ? ")" : "");
        case 2: return any(texts);
        case 3: return any(marks);
        case 4: return QString::number(pick(-3, 300));
        default: return QString(QChar(char16_t(pick(32, 126))));
        }
    }

    QString operand()
    {
        static const std::vector<QString> names = {"a", "b", "x", "abc", "Abc", "5", "n"};
        static const std::vector<QString> texts = {"\"5\"", "\"2.5\"", "\"-1\"", "\"abc\"", "\"\"", "\"0\"",
                                                   "\"1e3\"", "\"&HFF\"", "\"99999\"", "\"€\"", "\"1e308\""};
        return pick(0, 1) ? any(names) : any(texts);
    }
    QString blanks() { return QString(pick(0, 2), u' '); }
    QString call()
    {
        static const std::vector<QString> commands = {
            "msgbox", "inputbox", "seltxt", "clear", "type", "sst", "sel", "new", "prop", "pag", "ant", "stampa",
            "undo", "redo", "cut", "copy", "paste", "font", "dime", "gras", "cors", "sott", "barr", "par", "imm",
            "txt", "lin", "mai", "conta", "vai", "tast", "acapo", "asc", "chr", "TYPE", "nope", ""};
        QString arg = pick(0, 5) ? operand() : QString::number(pick(-3, 40));
        if (pick(0, 6) == 0)
            arg = operand() + blanks() + u'&' + blanks() + operand();
        return any(commands) + u'(' + blanks() + (pick(0, 7) ? arg : QString()) + (pick(0, 9) ? ")" : "");
    }

    // Mostly lines of the shapes people write, some of them bent, and now
    // and then a run of loose pieces.
    QString line()
    {
        static const std::vector<QString> ops = {"+", "-", "*", "/", "\\", "^", "&"};
        QString l;
        switch (pick(0, 5)) {
        case 0: {
            l = pick(0, 3) ? QStringLiteral("dim ") : QStringLiteral("Dim ");
            const int n = pick(1, 4);
            for (int i = 0; i < n; ++i)
                l += (i ? QStringLiteral(",") + blanks() : QString()) + any(std::vector<QString>{"a", "b", "x", "abc", "Abc", "n", "5", ""});
            break;
        }
        case 1: {
            l = operand() + blanks() + u'=' + blanks() + operand();
            const int n = pick(0, 4);
            for (int i = 0; i < n; ++i)
                l += blanks() + (pick(0, 5) ? any(ops) : any(ops) + blanks() + any(ops)) + blanks() + operand();
            break;
        }
        case 2: l = operand() + blanks() + u'=' + blanks() + call(); break;
        case 3: case 4: l = blanks() + call(); break;
        default: {
            const int n = pick(0, 8);
            for (int i = 0; i < n; ++i)
                l += piece();
        }
        }
        if (pick(0, 6) == 0)
            l += blanks() + QStringLiteral("# ") + piece();
        return l;
    }

    std::mt19937 rng_;
};

}  // namespace

TEST_F(MacroTest, RandomMacrosAlwaysRunToTheirEnd)
{
    MacroGenerator generate(20261122);
    int stopped = 0;
    QString first;
    for (int i = 0; i < 4000; ++i) {
        if (i % 50 == 0) {
            testo.setText(QStringLiteral("Il testo di prova,\r\nsu due righe."));
            messages.messages.clear();
        }
        c engine(MacroHost{testo, messages, procedures, &document, &undo, nullptr});
        // Far beyond what twelve short lines need; reaching it means a scan
        // that does not end.
        engine.stepLimit = 2000000;
        engine.ScriptText = generate.macro();
        engine.ScriptExecute();
        if (engine.stoppedAtLimit() && stopped++ == 0)
            first = engine.ScriptText;
        EXPECT_TRUE(engine.VarNames().isEmpty());
    }
    EXPECT_EQ(stopped, 0) << first.toStdString();
}

}  // namespace tornelia
