#include "core/rich_text_surface.h"
#include "core/settings.h"
#include "core/undo_store.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <random>
#include <vector>

namespace tornelia {
// Feeds the store strings that the surface's writer never makes.
struct UndoStoreProbe {
    static void store(UndoStore& u, const QString& s) { u.store(s); }
};
}  // namespace tornelia

using namespace tornelia;

namespace {

class UndoTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    SettingsStore settings{dir.path()};
    RichTextSurface s;
    UndoStore u{s};
    UndoCommands shown;

    UndoTest() { u.onCommands = [this](const UndoCommands& c) { shown = c; }; }
    // The text with "^" at the caret (runs of one character longer than 16
    // written "<count char>"), the step pointer and count, and what the
    // window shows: "+" an enabled command, "-" a disabled one.
    QString state() const
    {
        QString text = s.Text(), squeezed;
        text.insert(s.SelStart(), '^');
        for (qsizetype i = 0, j = 0; i < text.size(); i = j) {
            while (j < text.size() && text[j] == text[i])
                ++j;
            squeezed += j - i > 16 ? QString("<%1 %2>").arg(j - i).arg(text[i]) : text.mid(i, j - i);
        }
        auto cmd = [](const CommandState& c) { return (c.enabled ? "+" : "-") + c.caption; };
        return QString("[%1] %2/%3%4: %5, %6").arg(squeezed).arg(u.passoCorr()).arg(u.passoTot())
            .arg(u.annullaOff() ? " off" : "", cmd(shown.annulla), cmd(shown.ripristina));
    }
    // Runs the commands before the "[" of each line and expects the state
    // they leave after it, so a whole session is compared at once.
    // "+word": the typing handler's step, then "word " typed at the end;
    // "s" a step alone; "u", "r" undo and redo, "U", "R" the same with a
    // Change handler that takes a step, as typing assistance does; "c" clear;
    // "d" Disabilita annulla; "@n" the caret to n.
    void play(const QString& script)
    {
        QStringList out;
        for (const QString& line : script.split('\n')) {
            const QString commands = line.section('[', 0, 0);
            for (const QString& c : commands.split(' ', Qt::SkipEmptyParts))
                run(c);
            out << (line.contains('[') ? commands + state() : line);
        }
        EXPECT_EQ(out.join('\n'), script);
    }
    void run(const QString& c)
    {
        const auto assist = c == "U" || c == "R" ? QObject::connect(&s, &RichTextSurface::Change, [this] { u.unDO(); })
                                                 : QMetaObject::Connection();
        if (c.startsWith('+')) {
            u.unDO();
            s.setSelStart(s.length());
            s.typeText(c.mid(1) + ' ');
        } else if (c.startsWith('@')) {
            s.setSelStart(c.mid(1).toLong());
        } else {
            switch (c.toLatin1()[0]) {
            case 's': u.unDO(); break;
            case 'u': case 'U': u.UnDoo(); break;
            case 'r': case 'R': u.RedOO(); break;
            case 'c': u.clear(); break;
            case 'd': u.disabilitaAnnulla(settings); break;
            default: ADD_FAILURE() << "unknown command " << c.toStdString();
            }
        }
        QObject::disconnect(assist);
    }
};

// Index 0 is empty, so the first step alone cannot be undone. Undo first
// stores the typing since the last step, so that it can be redone. A new
// step goes to the end without cutting the redo tail, and the pointer stays
// on an old step. The caret goes back where it was, or to the end.
TEST_F(UndoTest, UndoAndRedoWalkTheSteps)
{
    play(R"(
+uno          [uno ^] 1/1: -Impossibile annullare, -Impossibile ripristinare
u             [uno ^] 1/1: -Impossibile annullare, -Impossibile ripristinare
+due +tre     [uno due tre ^] 3/3: +Annulla, -Impossibile ripristinare
u             [uno due ^] 3/4: +Annulla, +Ripristina
u u u         [^] 1/4: -Impossibile annullare, +Ripristina
r r r r       [^uno due tre ] 4/4: +Annulla, -Impossibile ripristinare
@10 u         [uno due ^] 3/4: +Annulla, +Ripristina
@2 u          [un^o ] 2/4: +Annulla, +Ripristina
+quattro      [uno quattro ^] 3/5: +Annulla, +Ripristina
u             [uno due ^] 3/6: +Annulla, +Ripristina
u             [uno ^] 2/6: +Annulla, +Ripristina
r             [uno ^due ] 3/6: +Annulla, +Ripristina
r             [uno ^due tre ] 4/6: +Annulla, +Ripristina
r             [uno ^] 5/6: +Annulla, +Ripristina
r r           [uno ^quattro ] 6/6: +Annulla, -Impossibile ripristinare
U R           [uno ^quattro ] 6/6: +Annulla, -Impossibile ripristinare
c             [uno ^quattro ] 0/0: -Annulla disabilitato, -Impossibile ripristinare
+cinque       [uno quattro cinque ^] 1/1: -Impossibile annullare, -Impossibile ripristinare
+sei d        [uno quattro cinque sei ^] 2/2 off: -Annulla disabilitato, -Ripristina disabilitato
+sette u r    [uno quattro cinque sei sette ^] 2/2 off: -Annulla disabilitato, -Ripristina disabilitato
d             [uno quattro cinque sei sette ^] 2/2: +Annulla, -Impossibile ripristinare
)");
    EXPECT_EQ(settings.leggiReg("", "Ann", "1"), "False");
}

// A step of a text of 50,000 characters keeps undo on; one above turns it
// off, but the restore of an undo turns it on again.
TEST_F(UndoTest, TheStepAboveFiftyThousandTurnsUndoOff)
{
    s.setText(QString(50000, 'a'));
    play(R"(
s             [^<50000 a>] 1/1: -Impossibile annullare, -Impossibile ripristinare
+b            [<50000 a>b ^] 2/2: +Annulla, -Impossibile ripristinare
u             [<50000 a>^] 2/3: +Annulla, +Ripristina
r s           [<50000 a>^b ] 4/4 off: -Annulla disabilitato, -Ripristina disabilitato
s u r         [<50000 a>^b ] 4/4 off: -Annulla disabilitato, -Ripristina disabilitato
)");
}

// The 16-bit counters stop at 32,767: a further step is dropped and the
// steps taken stay good.
TEST_F(UndoTest, AFullStoreKeepsItsSteps)
{
    for (int i = 1; i <= 32767; ++i)
        UndoStoreProbe::store(u, QString::number(i));
    play(R"(
s u           [^32766] 32766/32767: +Annulla, +Ripristina
r             [^32767] 32767/32767: +Annulla, -Impossibile ripristinare
)");
    EXPECT_EQ(u.passo(12345), "12345");
}

// Undo stores the current text first only when its TextRTF length differs
// from the current step's: a format change of the same length is lost.
TEST_F(UndoTest, FormatChangeOfTheSameLengthAddsNoStep)
{
    s.setText("uno due tre");
    u.unDO();
    s.setSelStart(4);
    s.setSelLength(3);
    s.setSelBold(true);
    u.unDO();
    s.setSelBold(false);
    s.setSelItalic(true);
    ASSERT_TRUE(s.TextRTF().size() == u.passo(2).size() && s.TextRTF() != u.passo(2));
    u.UnDoo();
    EXPECT_EQ(std::pair(u.passoTot(), s.TextRTF()), std::pair(2, u.passo(1)));
}

// Steps kept as differences and keys give back every string exactly, in any
// script, whether it changed at the start, the end, the middle, all or not at all.
TEST_F(UndoTest, EveryStepReadsBackExactly)
{
    std::mt19937 rng(7);
    auto pick = [&](int n) { return int(rng() % unsigned(n)); };
    const QString alphabet = QString::fromUtf8("ab {}\\\r\nè€") + QChar(0xD83D) + QChar(0xDE00);
    auto randomText = [&](int n) { QString t; while (n-- > 0) t += alphabet[pick(alphabet.size())]; return t; };
    std::vector<QString> expected{QString()};
    QString cur = randomText(3000);
    for (int step = 0; step < 400; ++step) {
        const int pos = pick(int(cur.size()) + 1);
        switch (pick(7)) {
        case 0: cur.insert(pos, randomText(pick(8))); break;
        case 1: cur.remove(pos, pick(20)); break;
        case 2: cur.replace(0, pick(5), randomText(pick(5))); break;
        case 3: cur.chop(pick(5)); cur += randomText(pick(5)); break;
        case 4: break;
        case 5: cur = randomText(pick(4000)); break;
        case 6: cur = QString(pick(2000), 'z') + (pick(2) ? "\\'e8" : ""); break;
        }
        UndoStoreProbe::store(u, cur);
        expected.push_back(cur);
    }
    expected.push_back(QString());  // beyond the last
    std::vector<QString> stored;
    for (int i = 0; i <= 401; ++i)
        stored.push_back(u.passo(i));
    EXPECT_EQ(stored, expected);
}

// A word at a time on a long document costs a small part of whole copies.
TEST_F(UndoTest, WordStepsAreKeptSmall)
{
    QString text;
    std::size_t whole = 0;
    for (int i = 0; i < 4000; ++i)
        text += QString::number(i * 7919 % 10007) + ' ';
    for (int i = 0; i < 1000; ++i) {
        text.insert(text.size() - 6, QStringLiteral("parola "));
        UndoStoreProbe::store(u, text);
        whole += std::size_t(text.size()) * 2;
    }
    EXPECT_LT(u.memoryBytes() * 20, whole);
}

}  // namespace
