#include "core/codepage.h"
#include "core/rich_text_surface.h"
#include "core/settings.h"
#include "core/typing_assist.h"
#include "core/undo_store.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <deque>
#include <initializer_list>
#include <string>
#include <vector>

using namespace tornelia;

namespace {

const QChar kLeft(0xF0DF);   // Wingdings 223 as the document keeps it
const QChar kRight(0xF0E0);  // Wingdings 224

// The key code a character's key has on the Italian keyboard, 0 for the
// keys the view raises no KeyDown for.
int keyCodeOf(QChar c)
{
    if (c.isLetter() && c.unicode() < 128)
        return c.toUpper().unicode();
    if (c.isDigit() || c == u' ')
        return c.unicode();
    switch (c.unicode()) {
    case u',': return 188;
    case u'-': return 189;
    case u'.': return 190;
    case u'<': return 226;
    default: return 0;
    }
}

// Plays keys into the surface the way the editor view does: KeyDown,
// KeyPress with the Windows-1252 code, the character the handlers leave
// typed, KeyUp.
class Keyboard {
public:
    explicit Keyboard(RichTextSurface& t) : t_(t) {}

    // "\n" is Enter and "\t" is Tab.
    void type(const QString& text)
    {
        for (const QChar c : text) {
            if (c == u'\n')
                key(13, 0, 13, QString(QChar(QChar::ParagraphSeparator)));
            else if (c == u'\t')
                key(9, 0, 9, QStringLiteral("\t"));
            else
                key(keyCodeOf(c), c.isUpper() ? 1 : 0, asciiOf(c), QString(c));
        }
    }

    // A key with no character: F2, Delete, the Control keys.
    void press(int code, int shift = 0)
    {
        int c = code;
        int s = shift;
        t_.raiseKeyDown(c, s);
        if (c == 46) {
            // What Qt's text control does with Delete when nobody swallows it.
            if (t_.SelLength() == 0)
                t_.setSelLength(1);
            t_.setSelText(QString());
        }
        up(code, shift);
    }

    // Characters that come while the pump runs inside a handler.
    std::deque<QString> queued;
    void playQueued()
    {
        if (queued.empty())
            return;
        const QString next = queued.front();
        queued.pop_front();
        type(next);
    }

private:
    static int asciiOf(QChar c)
    {
        const int b = cp1252Byte(c.unicode());
        return b >= 0 ? b : c.unicode();
    }

    void key(int code, int shift, int ascii, const QString& asTyped)
    {
        if (code != 0) {
            int c = code;
            int s = shift;
            t_.raiseKeyDown(c, s);
            if (c == 0) {
                up(code, shift);
                return;
            }
        }
        int k = ascii;
        t_.raiseKeyPress(k);
        if (k != 0) {
            const QString text = k == ascii ? asTyped
                                 : (k >= 128 && k <= 255) ? QString(QChar(cp1252Char(static_cast<unsigned char>(k))))
                                                          : QString(QChar(k));
            t_.typeText(text);
        }
        up(code, shift);
    }

    void up(int code, int shift)
    {
        if (code == 0)
            return;
        int c = code;
        int s = shift;
        t_.raiseKeyUp(c, s);
    }

    RichTextSurface& t_;
};

// The text with the caret as "|" or the selection in brackets.
std::string shown(const RichTextSurface& t)
{
    QString s = t.Text();
    const long start = t.SelStart();
    const long len = t.SelLength();
    if (len == 0)
        s.insert(start, u'|');
    else
        s.insert(start + len, u']').insert(start, u'[');
    return s.toStdString();
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
    void saveClipboard() override
    {
        calls.push_back("saveClipboard");
        saved = QGuiApplication::clipboard()->text();
    }
    void copyBulletPicture() override
    {
        calls.push_back("copyBulletPicture");
        QGuiApplication::clipboard()->setText(QStringLiteral("[*]"));
    }
    void restoreClipboard() override
    {
        calls.push_back("restoreClipboard");
        QGuiApplication::clipboard()->setText(saved);
    }
    void rulerFollowsCaret() override { ++rulerCount; }

    std::vector<std::string> calls;
    int aggTextCount = 0;
    int rulerCount = 0;
    bool bullets = false;
    QString saved;
};

class Typing : public ::testing::Test {
protected:
    Typing() : settings(dir.path()), undo(t), assist(t, settings, undo), keys(t)
    {
        assist.setProcedures(&procs);
    }

    // Exactly these rules on, the others off.
    void rules(std::initializer_list<int> on)
    {
        std::array<bool, 9> all{};
        for (const int r : on)
            all[r - 1] = true;
        writeCorrections(settings, all);
    }
    std::string typed(const QString& text)
    {
        keys.type(text);
        return shown(t);
    }

    QTemporaryDir dir;
    SettingsStore settings;
    RichTextSurface t;
    UndoStore undo;
    TypingAssist assist;
    RecordingProcedures procs;
    Keyboard keys;
};

}  // namespace

TEST_F(Typing, EachRuleOnAloneAndOffAmongTheOthers)
{
    struct Case {
        int rule;
        QString keys;
        std::string withRule;
    };
    const std::vector<Case> cases = {
        {2, "a,b,", "a, b, |"},
        {3, "a;b", "a; b|"},
        {4, "ore:10", "ore: 10|"},
        {5, "x(c)y(C)", "x©y©|"},
        // The compare is in lower case, and upper-case letters reach it
        // untouched.
        {6, "(r)(R)", "®®|"},
        {7, "a(tm)(TM)", "a™™|"},
        {8, "£5", "€5|"},
        {9, "a->b<-c", QString("a%1b%2c|").arg(kRight).arg(kLeft).toStdString()},
    };
    for (const Case& c : cases) {
        t.setText(QString());
        rules({c.rule});
        EXPECT_EQ(typed(c.keys), c.withRule) << "rule " << c.rule;

        // Without its rule the text stays as typed, every other rule on.
        t.setText(QString());
        std::array<bool, 9> all{};
        all.fill(true);
        all[c.rule - 1] = false;
        writeCorrections(settings, all);
        EXPECT_EQ(typed(c.keys), c.keys.toStdString() + "|") << "all but rule " << c.rule;
    }
}

TEST_F(Typing, RulesTogetherAndReadAtEveryKey)
{
    rules({1, 2, 3, 4, 5, 6, 7, 8, 9});
    EXPECT_EQ(typed("ciao. come va,bene(c) -> fine;prezzo:£3 (TM)<-"),
              QString("ciao. come va, bene© %1 fine; prezzo: €3 ™%2|").arg(kRight).arg(kLeft).toStdString());

    // A change of the settings holds from the next key.
    rules({});
    EXPECT_EQ(typed(",(c)"), QString("ciao. come va, bene© %1 fine; prezzo: €3 ™%2,(c)|")
                                 .arg(kRight)
                                 .arg(kLeft)
                                 .toStdString());
}

TEST_F(Typing, ParenthesisRulesPutTheCaretBackWhereTheKeyWasTyped)
{
    rules({5, 6, 7});
    // In the middle of the text the caret ends past the characters the
    // replacement took up: one for "(c", two for "(tm".
    t.setText(QStringLiteral("ab"));
    t.setSelStart(1);
    EXPECT_EQ(typed("(c)"), "a©b|");
    EXPECT_EQ(typed("x"), "a©bx|");

    t.setText(QStringLiteral("12345"));
    t.setSelStart(1);
    EXPECT_EQ(typed("(tm)"), "1™23|45");

    // At the start: a caret before the start is refused and skipped, and the
    // one past the end comes back to the end.
    t.setText(QString());
    EXPECT_EQ(typed("(c)"), "©|");
    EXPECT_EQ(typed("z"), "©z|");
    t.setText(QString());
    EXPECT_EQ(typed("(tm)"), "™|");

    // A ")" with nothing to replace leaves the text as typed.
    t.setText(QString());
    EXPECT_EQ(typed(")(x)"), ")(x)|");
}

TEST_F(Typing, ArrowsAreWingdingsAndTheFontGoesOnAfterThem)
{
    rules({9});
    EXPECT_EQ(typed("a<"), "a<|");
    EXPECT_EQ(typed("-"), QString("a%1|").arg(kLeft).toStdString());
    EXPECT_EQ(typed("x->"), QString("a%1x%2|").arg(kLeft).arg(kRight).toStdString());
    EXPECT_EQ(typed("y"), QString("a%1x%2y|").arg(kLeft).arg(kRight).toStdString());

    QStringList fonts;
    for (long i = 0; i < t.length(); ++i) {
        t.setSelStart(i);
        t.setSelLength(1);
        fonts << t.SelFontName().value_or(QStringLiteral("?"));
    }
    EXPECT_EQ(fonts.join(u','), QStringLiteral("Tahoma,Wingdings,Tahoma,Wingdings,Tahoma"));
    // In RTF the arrows are the bytes 223 and 224 of the symbol font.
    const QString rtf = t.TextRTF();
    EXPECT_TRUE(rtf.contains(QStringLiteral("{\\f1\\fnil\\fcharset2 Wingdings;}"))) << rtf.toStdString();
    EXPECT_TRUE(rtf.contains(QStringLiteral("\\fs20 a\\f1\\'df\\f0 x\\f1\\'e0\\f0 y\\par"))) << rtf.toStdString();

    // Hyphens and ">" that make no arrow leave the font of the text alone.
    t.setText(QString());
    EXPECT_EQ(typed("a-b>c"), "a-b>c|");
    EXPECT_FALSE(t.TextRTF().contains(QStringLiteral("\\f1"))) << t.TextRTF().toStdString();
}

// Every ")" , "-" and ">" moves the selection over the text before it and
// back, rule or no rule; each move is a selection change.
TEST_F(Typing, CorrectionsMoveTheSelectionAndPutItBack)
{
    rules({});
    keys.type(QStringLiteral("ab"));
    int changes = 0;
    QObject::connect(&t, &RichTextSurface::SelChange, [&changes] { ++changes; });
    keys.type(QStringLiteral("c"));
    EXPECT_EQ(changes, 1);
    changes = 0;
    keys.type(QStringLiteral("-"));
    EXPECT_EQ(changes, 4);  // back one, select one, back, and the typing
    changes = 0;
    keys.type(QStringLiteral(")"));
    EXPECT_EQ(changes, 6);  // two and three characters selected, and back
    EXPECT_EQ(shown(t), "abc-)|");
}

TEST_F(Typing, CapitalRuleWaitsForAStopAndABlankWithNoSelectionChange)
{
    rules({1});
    int k = 0;
    const auto press = [&](int code) {
        k = code;
        t.raiseKeyPress(k);
        return k;
    };
    // Keys that reach the handler with no selection change between them.
    press('.');
    press(' ');
    EXPECT_TRUE(assist.puntoVisto() && assist.spazioVisto());
    EXPECT_EQ(press('c'), 'C');
    EXPECT_FALSE(assist.puntoVisto() || assist.spazioVisto());
    EXPECT_EQ(press('c'), 'c');

    // Enter counts as both.
    press(13);
    EXPECT_EQ(press('n'), 'N');

    // An upper-case letter takes the place of the capital.
    press('.');
    press(' ');
    EXPECT_EQ(press('B'), 'B');
    EXPECT_FALSE(assist.puntoVisto() || assist.spazioVisto());
    EXPECT_EQ(press('b'), 'b');

    // A selection change between the blank and the letter ends the wait.
    t.setText(QStringLiteral("abc"));
    press('.');
    press(' ');
    t.setSelStart(1);
    EXPECT_EQ(press('c'), 'c');

    // With the rule off only Enter starts the wait, and nothing comes of it.
    rules({});
    press('.');
    press(' ');
    EXPECT_FALSE(assist.puntoVisto());
    EXPECT_FALSE(assist.spazioVisto());
    press(13);
    EXPECT_EQ(press('c'), 'c');
}

TEST_F(Typing, CapitalRuleAndTheCaretMovedByTyping)
{
    rules({1});
    // Each typed character moves the caret, and the selection change that
    // follows ends the wait: typed one key after the other, nothing changes.
    EXPECT_EQ(typed("ciao. come"), "ciao. come|");

    // Keys that come in while the handlers let events through see the wait
    // still on, as when the user types fast.
    t.setText(QString());
    assist.setPump([this] { keys.playQueued(); });
    keys.queued = {QStringLiteral(" "), QStringLiteral("c")};
    keys.type(QStringLiteral("."));
    EXPECT_EQ(shown(t), ". C|");
}

TEST_F(Typing, TabAndControlKeys)
{
    rules({});
    keys.type(QStringLiteral("a\tb"));
    EXPECT_EQ(shown(t), "a\tb|");

    t.setText(QStringLiteral("uno\r\ndue"));
    t.setSelStart(6);
    for (const int code : {'C', 'E', 'L', 'V', 'X'}) {
        int c = code;
        int s = 2;
        t.raiseKeyDown(c, s);
        EXPECT_EQ(c, 0);
        EXPECT_EQ(s, 0);
    }
    EXPECT_EQ(procs.calls, (std::vector<std::string>{"CopYa", "AntEP", "Form1", "INco()", "TaGl"}));

    // Control+A centres the paragraph and selects nothing.
    keys.press('A', 2);
    EXPECT_EQ(t.SelAlignment(), 2);
    EXPECT_EQ(shown(t), "uno\r\nd|ue");
    t.setSelStart(0);
    EXPECT_EQ(t.SelAlignment(), 0);

    keys.press(190, 2);
    EXPECT_EQ(shown(t), "…|uno\r\ndue");
    keys.press(189, 2);
    EXPECT_EQ(t.Text(), QStringLiteral("…") + QString(54, QChar(0x2014)) + QStringLiteral("uno\r\ndue"));

    // Any other key with Control alone is swallowed too; with Shift as well,
    // and Control by itself, the keys go on.
    const auto down = [&](int code, int shift) {
        t.raiseKeyDown(code, shift);
        return code;
    };
    EXPECT_EQ(down('Z', 2), 0);
    EXPECT_EQ(down(37, 2), 0);
    EXPECT_EQ(down('C', 3), 'C');
    EXPECT_EQ(down(17, 2), 17);
    EXPECT_EQ(procs.calls.size(), 5u);
    // The formatting controls follow every key, one that does nothing else too.
    procs.aggTextCount = 0;
    EXPECT_EQ(down(16, 1), 16);
    EXPECT_EQ(procs.aggTextCount, 1);
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
    // Letters change one for one, so the selection keeps its length.
    EXPECT_EQ(seen, (std::vector<std::string>{"[L'UOMO È\tQUI, STRAßE.] fine", "[l'uomo è\tqui, straße.] fine",
                                              "[L'uomo È\tQui, Straße.] fine", "[L'UOMO È\tQUI, STRAßE.] fine"}));
    // The cycle goes on from where it stopped, on another selection.
    t.setSelStart(22);
    t.setSelLength(4);
    keys.press(113);
    EXPECT_EQ(shown(t), "L'UOMO È\tQUI, STRAßE. [fine]");
    EXPECT_EQ(assist.statoMaiuscole(), 2);
    // One undo step before each change.
    EXPECT_EQ(undo.passoTot(), 5);
}

TEST_F(Typing, UndoStepsAtBlankEnterDeleteAndF2)
{
    rules({});
    std::vector<QString> before;
    const auto step = [&](const QString& k) {
        before.push_back(t.TextRTF());
        keys.type(k);
    };
    keys.type(QStringLiteral("uno"));
    step(QStringLiteral(" "));
    keys.type(QStringLiteral("due"));
    step(QStringLiteral("\n"));
    keys.type(QStringLiteral("tre"));
    t.setSelStart(0);
    before.push_back(t.TextRTF());
    keys.press(46);
    EXPECT_EQ(shown(t), "|no due\r\ntre");
    EXPECT_EQ(undo.passoTot(), 3);
    EXPECT_EQ(undo.passoCorr(), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(undo.passo(i + 1), before[i]) << i;

    // No other key takes a step; with undo off, none does.
    keys.type(QStringLiteral("x,.-()"));
    EXPECT_EQ(undo.passoTot(), 3);
    undo.setAnnullaOff(true);
    keys.type(QStringLiteral(" \n"));
    keys.press(46);
    EXPECT_EQ(undo.passoTot(), 3);
}

TEST_F(Typing, EnterInAPictureBulletParagraphPastesTheBullet)
{
    QGuiApplication::clipboard()->setText(QStringLiteral("degli utenti"));
    procs.bullets = true;
    t.setText(QStringLiteral("ab"));
    t.setSelStart(1);
    keys.type(QStringLiteral("\n"));
    EXPECT_EQ(shown(t), "a\r\n[*]  |b");
    EXPECT_EQ(procs.calls,
              (std::vector<std::string>{"saveClipboard", "copyBulletPicture", "restoreClipboard"}));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("degli utenti"));
    // No undo step: the Enter never reached KeyPress.
    EXPECT_EQ(undo.passoTot(), 0);
}
