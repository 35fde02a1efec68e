#include "core/codepage.h"
#include "core/rich_text_surface.h"
#include "core/settings.h"
#include "core/typing_assist.h"
#include "core/undo_store.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <array>
#include <initializer_list>
#include <string>
#include <vector>

using namespace tornelia;

namespace {

const std::string kLeft = QString(QChar(0xF0DF)).toStdString();   // Wingdings 223 as the document keeps it
const std::string kRight = QString(QChar(0xF0E0)).toStdString();  // Wingdings 224

// Plays keys into the surface the way the editor view does: KeyDown,
// KeyPress with the Windows-1252 code, the character the handlers leave
// typed, KeyUp. "\n" is Enter, "\t" Tab and "\x7f" Delete. Punctuation
// raises no KeyDown here: without Control no handler looks at its code.
struct Keyboard {
    RichTextSurface& t;

    void type(const QString& text)
    {
        for (const QChar c : text) {
            if (c == u'\x7f') {
                press(46);
                continue;
            }
            const int code = c == u'\n' ? 13
                             : c == u'\t' ? 9
                             : c.isLetterOrNumber() || c == u' ' ? c.toUpper().unicode() : 0;
            int down = code;
            int shift = c.isUpper() ? 1 : 0;
            if (code != 0)
                t.raiseKeyDown(down, shift);
            // A key swallowed at KeyDown raises no KeyPress.
            const int ascii = code == 13 ? 13 : cp1252Byte(c.unicode());
            int k = code != 0 && down == 0 ? 0 : ascii;
            if (k != 0)
                t.raiseKeyPress(k);
            if (k != 0)
                t.typeText(k != ascii ? QString(QChar(cp1252Char(static_cast<unsigned char>(k))))
                           : code == 13 ? QString(QChar(QChar::ParagraphSeparator)) : QString(c));
            if (code != 0)
                t.raiseKeyUp(down = code, shift);
        }
    }

    // A key with no character: F2, Delete, the Control keys.
    void press(int code, int shift = 0)
    {
        int c = code;
        int s = shift;
        t.raiseKeyDown(c, s);
        if (c == 46) {
            // What Qt's text control does with Delete when nobody swallows it.
            if (t.SelLength() == 0)
                t.setSelLength(1);
            t.setSelText(QString());
        }
        t.raiseKeyUp(code, shift);
    }
};

// The text with the caret as "|" or the selection in brackets.
std::string shown(const RichTextSurface& t)
{
    QString s = t.Text();
    const long at = t.SelStart();
    return (t.SelLength() == 0 ? s.insert(at, u'|') : s.insert(at + t.SelLength(), u']').insert(at, u'['))
        .toStdString();
}

// What the window's procedures were asked to do, in order.
class RecordingProcedures : public TypingProcedures {
public:
    void CopYa() override { calls.push_back("CopYa"); }
    void AntEP() override { calls.push_back("AntEP"); }
    void showForm1() override { calls.push_back("Form1"); }
    void INco(const QString& how) override { calls.push_back("INco(" + how.toStdString() + ")"); }
    void TaGl() override { calls.push_back("TaGl"); }
    void aggText() override { ++aggTextCount; }
    bool bulletImmagine() const override { return bullets; }
    void saveClipboard() override { calls.push_back("saveClipboard"); }
    void copyBulletPicture() override
    {
        calls.push_back("copyBulletPicture");
        QGuiApplication::clipboard()->setText(QStringLiteral("[*]"));
    }
    void restoreClipboard() override { calls.push_back("restoreClipboard"); }

    std::vector<std::string> calls;
    int aggTextCount = 0;
    bool bullets = false;
};

class Typing : public ::testing::Test {
protected:
    Typing() : settings(dir.path()), undo(t), assist(t, settings, undo) { assist.setProcedures(&procs); }

    // Exactly these rules on, or off, and the others the other way.
    void rules(std::initializer_list<int> listed, bool on = true)
    {
        std::array<bool, 9> all;
        all.fill(!on);
        for (const int r : listed)
            all[r - 1] = on;
        writeCorrections(settings, all);
    }
    // Keys typed into start with the caret at caret.
    std::string typed(const QString& text, const QString& start = {}, long caret = 0)
    {
        t.setText(start);
        t.setSelStart(caret);
        keys.type(text);
        return shown(t);
    }

    QTemporaryDir dir;
    SettingsStore settings;
    RichTextSurface t;
    UndoStore undo;
    TypingAssist assist;
    RecordingProcedures procs;
    Keyboard keys{t};
};

}  // namespace

// Each rule on alone corrects; off, every other rule on, the keys stay as typed.
TEST_F(Typing, EachRuleOnAloneAndOffAmongTheOthers)
{
    const std::vector<std::pair<int, QString>> cases = {
        {2, "a,b,"}, {3, "a;b"}, {4, "ore:10"}, {5, "x(c)y(C)"}, {6, "(r)(R)"}, {7, "a(tm)(TM)"}, {8, "£5"},
        {9, "a->b<-c"},
    };
    std::vector<std::string> alone;
    std::vector<std::string> withoutIt;
    for (const auto& [rule, keys] : cases) {
        rules({rule});
        alone.push_back(typed(keys));
        rules({rule}, false);
        withoutIt.push_back(typed(keys));
    }
    EXPECT_EQ(alone, (std::vector<std::string>{"a, b, |", "a; b|", "ore: 10|", "x©y©|", "®®|", "a™™|", "€5|",
                                               "a" + kRight + "b" + kLeft + "c|"}));
    EXPECT_EQ(withoutIt, (std::vector<std::string>{"a,b,|", "a;b|", "ore:10|", "x(c)y(C)|", "(r)(R)|", "a(tm)(TM)|",
                                                   "£5|", "a->b<-c|"}));
}

TEST_F(Typing, AllRulesTogetherWhereverTheCaretIs)
{
    rules({1, 2, 3, 4, 5, 6, 7, 8, 9});
    const std::vector<std::string> got = {
        // Typed key after key, each character moves the caret and so ends
        // the wait for a capital.
        typed("ciao. come va,bene(c) -> fine;prezzo:£3 (TM)<-"),
        // The caret goes back where the ")" was typed: past the characters
        // the replacement took up in the middle of the text; at the start a
        // caret before the start is refused and one past the end comes back.
        typed("(c)x", "ab", 1), typed("(tm)", "12345", 1), typed("(c)z"), typed("(tm)"), typed(")(x)"),
        // Tab is typed, once; hyphens and ">" that make no arrow stay.
        typed("a\tb"), typed("a-b>c<-x->y"),
    };
    EXPECT_EQ(got, (std::vector<std::string>{
                       "ciao. come va, bene© " + kRight + " fine; prezzo: €3 ™" + kLeft + "|", "a©bx|", "1™23|45", "©z|",
                       "™|", ")(x)|", "a\tb|", "a-b>c" + kLeft + "x" + kRight + "y|"}));
    // The arrows are the bytes 223 and 224 of Wingdings, and the text goes on
    // in its own font; what makes no arrow leaves the font alone.
    const QString rtf = t.TextRTF();
    EXPECT_TRUE(rtf.contains(QStringLiteral("{\\f1\\fnil\\fcharset2 Wingdings;}"))) << rtf.toStdString();
    EXPECT_TRUE(rtf.contains(QStringLiteral("\\fs20 a-b>c\\f1\\'df\\f0 x\\f1\\'e0\\f0 y\\par"))) << rtf.toStdString();
}

// Every ")" , "-" and ">" moves the selection over the text before it and
// back, rule or no rule; each move runs the selection-change handler.
// In a table Tab goes from cell to cell, selecting the cell it reaches,
// Shift+Tab back; from the last cell it opens a new row. The text gets no
// tab of its own there.
TEST_F(Typing, TabMovesThroughTheCellsOfATable)
{
    rules({}, true);
    t.setTextRTF(QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard top\\par"
                                "\\trowd\\cellx1000\\cellx2000\\pard\\intbl a\\cell b\\cell\\row\\pard end\\par}"));
    t.setSelStart(6);  // after "a"
    std::vector<std::string> seen;
    keys.type(QStringLiteral("\t"));
    seen.push_back(shown(t));
    keys.type(QStringLiteral("B"));
    seen.push_back(shown(t));
    keys.press(9, 1);
    seen.push_back(shown(t));
    keys.press(9);
    keys.press(9);
    keys.type(QStringLiteral("c"));
    seen.push_back(shown(t));
    t.setSelStart(1);
    keys.type(QStringLiteral("\t"));
    seen.push_back(shown(t));
    EXPECT_EQ(seen, (std::vector<std::string>{"top\r\na\t[b]\r\nend", "top\r\na\tB|\r\nend",
                                              "top\r\n[a]\tB\r\nend", "top\r\na\tB\r\nc|\t\r\nend",
                                              "t\t|op\r\na\tB\r\nc\t\r\nend"}));
}

TEST_F(Typing, CorrectionsMoveTheSelectionAndPutItBack)
{
    rules({});
    keys.type(QStringLiteral("ab"));
    std::vector<int> changes;
    QObject::connect(&t, &RichTextSurface::SelChange, [&changes] { ++changes.back(); });
    for (const char* k : {"c", "-", ")"}) {
        changes.push_back(0);
        keys.type(QString::fromLatin1(k));
    }
    // Typing alone; back one, select one, back, typing; two and three selected and back.
    EXPECT_EQ(changes, (std::vector<int>{1, 4, 6}));
    EXPECT_EQ(shown(t), "abc-)|");
}

TEST_F(Typing, CapitalRuleWaitsForAStopAndABlankWithNoSelectionChange)
{
    // Keys that reach the handler with no selection change between them; what it leaves of them.
    const auto pressed = [this](const std::string& codes) {
        std::string out;
        for (const char c : codes) {
            int k = c;
            t.raiseKeyPress(k);
            out += char(k);
        }
        return out;
    };
    // Enter counts as stop and blank; an upper-case letter takes the place of the capital.
    rules({1});
    std::string got = pressed(". cc\rn. Bb") + " / ";
    // A selection change between the blank and the letter ends the wait.
    t.setText(QStringLiteral("abc"));
    pressed(". ");
    t.setSelStart(1);
    got += pressed("c") + " / ";
    rules({});
    got += pressed(". c\rc");
    EXPECT_EQ(got, ". Cc\rN. Bb / c / . c\rc");

    // Keys that come in while the handlers let events through see the wait
    // still on, as when the user types fast.
    rules({1});
    t.setText(QString());
    QStringList queued{QStringLiteral(" "), QStringLiteral("c")};
    assist.setPump([&] {
        if (!queued.isEmpty())
            keys.type(queued.takeFirst());
    });
    keys.type(QStringLiteral("."));
    EXPECT_EQ(shown(t), ". C|");
}

TEST_F(Typing, ControlKeys)
{
    t.setText(QStringLiteral("uno\r\ndue"));
    t.setSelStart(6);
    procs.aggTextCount = 0;
    // With Control alone every key is swallowed, some run the window's
    // commands or edit; with Shift as well, and Control by itself, they go on.
    std::string left;
    for (const auto& [code, shift] : std::vector<std::pair<int, int>>{{'C', 2}, {'E', 2}, {'L', 2}, {'V', 2}, {'X', 2},
                                                                      {'Z', 2}, {37, 2}, {'A', 2}, {190, 2}, {189, 2},
                                                                      {'C', 3}, {17, 2}, {16, 1}}) {
        int c = code;
        int s = shift;
        t.raiseKeyDown(c, s);
        left += std::to_string(c) + "/" + std::to_string(s) + " ";
    }
    EXPECT_EQ(left, "0/0 0/0 0/0 0/0 0/0 0/0 0/0 0/0 0/0 0/0 67/3 17/2 16/1 ");
    EXPECT_EQ(procs.calls, (std::vector<std::string>{"CopYa", "AntEP", "Form1", "INco()", "TaGl"}));
    EXPECT_EQ(shown(t), "uno\r\nd…" + QString(54, QChar(0x2014)).toStdString() + "|ue");
    // The formatting controls follow every key, and the caret moved by two of them.
    EXPECT_EQ(procs.aggTextCount, 15);
    // Control+A centres the caret's paragraph only.
    EXPECT_EQ(t.SelAlignment(), 2);
    t.setSelStart(0);
    EXPECT_EQ(t.SelAlignment(), 0);
}

TEST_F(Typing, F2CyclesTheCaseAndKeepsTheSelection)
{
    t.setText(QStringLiteral("l'uomo è\tQUI, straße. fine"));
    t.setSelStart(0);
    t.setSelLength(21);
    std::vector<std::string> seen;
    for (int i = 0; i < 4; ++i) {
        keys.press(113);
        seen.push_back(shown(t));
    }
    // The cycle goes on from where it stopped, on another selection.
    t.setSelStart(22);
    t.setSelLength(4);
    keys.press(113);
    seen.push_back(shown(t));
    // Letters change one for one, so the selection keeps its length.
    EXPECT_EQ(seen, (std::vector<std::string>{"[L'UOMO È\tQUI, STRAßE.] fine", "[l'uomo è\tqui, straße.] fine",
                                              "[L'uomo È\tQui, Straße.] fine", "[L'UOMO È\tQUI, STRAßE.] fine",
                                              "L'UOMO È\tQUI, STRAßE. [fine]"}));
    // One undo step before each change.
    EXPECT_EQ(undo.passoTot(), 5);
}

TEST_F(Typing, UndoStepsAtBlankEnterAndDelete)
{
    rules({});
    // The document as it was before each key that takes a step.
    std::vector<QString> before;
    for (const char* k : {"uno", " ", "due", "\n", "tre", "\x7f", "x,.-()"}) {
        if (k[1] == 0)
            before.push_back(t.TextRTF());
        keys.type(QString::fromLatin1(k));
    }
    EXPECT_EQ((std::vector<QString>{undo.passo(1), undo.passo(2), undo.passo(3)}), before);
    EXPECT_EQ(std::pair(undo.passoCorr(), undo.passoTot()), std::pair(3, 3));
    // With undo off no key takes one.
    undo.setAnnullaOff(true);
    keys.type(QStringLiteral(" \n\x7f"));
    EXPECT_EQ(undo.passoTot(), 3);
}

TEST_F(Typing, EnterInAPictureBulletParagraphPastesTheBullet)
{
    procs.bullets = true;
    EXPECT_EQ(typed("\n", "ab", 1), "a\r\n[*]  |b");
    // The user's clipboard is kept around the paste.
    EXPECT_EQ(procs.calls, (std::vector<std::string>{"saveClipboard", "copyBulletPicture", "restoreClipboard"}));
    // No undo step: the Enter never reached KeyPress.
    EXPECT_EQ(undo.passoTot(), 0);
}
