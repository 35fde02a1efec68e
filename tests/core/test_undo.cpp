#include "core/rich_text_surface.h"
#include "core/settings.h"
#include "core/undo_store.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <ostream>
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

const CommandState annulla{true, "Annulla"};
const CommandState annullaOff{false, "Annulla disabilitato"};
const CommandState annullaNone{false, "Impossibile annullare"};
const CommandState ripristina{true, "Ripristina"};
const CommandState ripristinaOff{false, "Ripristina disabilitato"};
const CommandState ripristinaNone{false, "Impossibile ripristinare"};

// What the document, the store and the window show after a command.
struct State {
    QString text;
    int passoCorr = 0;
    int passoTot = 0;
    bool off = false;
    UndoCommands shown;
    bool operator==(const State&) const = default;
};

void PrintTo(const State& s, std::ostream* os)
{
    auto cmd = [](const CommandState& c) { return (c.enabled ? "+" : "-") + c.caption.toStdString(); };
    *os << "{\"" << s.text.toStdString() << "\" " << s.passoCorr << "/" << s.passoTot << (s.off ? " off " : " ")
        << cmd(s.shown.annulla) << ", " << cmd(s.shown.ripristina) << "}";
}

class UndoTest : public ::testing::Test {
protected:
    RichTextSurface s;
    UndoStore u{s};
    UndoCommands shown;

    void SetUp() override
    {
        u.onCommands = [this](const UndoCommands& c) { shown = c; };
    }
    // The typing handler's step, then a word typed at the end.
    void type(const QString& word)
    {
        u.unDO();
        s.setSelStart(s.length());
        s.typeText(word);
    }
    State state() const { return {s.Text(), u.passoCorr(), u.passoTot(), u.annullaOff(), shown}; }
    static State st(const char* text, int corr, int tot, CommandState a, CommandState r, bool off = false)
    {
        return {QString::fromUtf8(text), corr, tot, off, {a, r}};
    }
};

TEST_F(UndoTest, UndoAndRedoWalkTheSteps)
{
    EXPECT_EQ(u.CmeN(), (UndoCommands{annullaOff, ripristinaNone}));
    type("uno ");
    // The first step alone cannot be undone: index 0 is empty.
    EXPECT_EQ(state(), st("uno ", 1, 1, annullaNone, ripristinaNone));
    u.UnDoo();
    EXPECT_EQ(state(), st("uno ", 1, 1, annullaNone, ripristinaNone));
    type("due ");
    EXPECT_EQ(state(), st("uno due ", 2, 2, annulla, ripristinaNone));
    type("tre ");

    // The typing since the last step becomes a step of its own, so it can be redone.
    u.UnDoo();
    EXPECT_EQ(state(), st("uno due ", 3, 4, annulla, ripristina));
    u.UnDoo();
    EXPECT_EQ(state(), st("uno ", 2, 4, annulla, ripristina));
    u.UnDoo();
    EXPECT_EQ(state(), st("", 1, 4, annullaNone, ripristina));
    u.UnDoo();
    EXPECT_EQ(state(), st("", 1, 4, annullaNone, ripristina));

    u.RedOO();
    u.RedOO();
    EXPECT_EQ(state(), st("uno due ", 3, 4, annulla, ripristina));
    u.RedOO();
    EXPECT_EQ(state(), st("uno due tre ", 4, 4, annulla, ripristinaNone));
    u.RedOO();
    EXPECT_EQ(state(), st("uno due tre ", 4, 4, annulla, ripristinaNone));

    u.clear();
    EXPECT_EQ(state(), st("uno due tre ", 0, 0, annullaOff, ripristinaNone));
    EXPECT_EQ(u.passo(1), QString());
    type("quattro ");
    EXPECT_EQ(state(), st("uno due tre quattro ", 1, 1, annullaNone, ripristinaNone));
}

// A new step goes to the end without cutting the redo tail, and the pointer
// is left on an old step: undo then goes to that step's neighbour.
TEST_F(UndoTest, NewStepAfterUndoKeepsTheTail)
{
    std::vector<QString> rtf{{}, s.TextRTF()};
    for (const char* w : {"uno ", "due ", "tre "}) {
        type(w);
        rtf.push_back(s.TextRTF());
    }
    u.UnDoo();
    u.UnDoo();
    type("quattro ");
    EXPECT_EQ(state(), st("uno quattro ", 3, 5, annulla, ripristina));

    u.UnDoo();
    EXPECT_EQ(state(), st("uno due ", 3, 6, annulla, ripristina));
    u.UnDoo();
    EXPECT_EQ(state(), st("uno ", 2, 6, annulla, ripristina));
    std::vector<QString> texts;
    for (int i = 0; i < 4; ++i) {
        u.RedOO();
        texts.push_back(s.Text());
    }
    EXPECT_EQ(texts, (std::vector<QString>{"uno due ", "uno due tre ", "uno ", "uno quattro "}));
    EXPECT_EQ(state(), st("uno quattro ", 6, 6, annulla, ripristinaNone));

    const std::vector<QString> expected{{}, rtf[1], rtf[2], rtf[3], rtf[4], rtf[2], s.TextRTF(), {}};
    std::vector<QString> stored;
    for (int i = 0; i < 8; ++i)
        stored.push_back(u.passo(i));
    EXPECT_EQ(stored, expected);
}

// UnDoo stores the current text first only when its TextRTF length differs
// from the current step's; a format change of the same length is lost.
TEST_F(UndoTest, FormatChangeOfTheSameLengthAddsNoStep)
{
    s.setText("uno due tre");
    u.unDO();
    const QString plain = s.TextRTF();
    s.setSelStart(4);
    s.setSelLength(3);
    s.setSelBold(true);
    u.unDO();
    const QString bold = s.TextRTF();
    s.setSelBold(false);
    s.setSelItalic(true);
    ASSERT_EQ(s.TextRTF().size(), bold.size());
    ASSERT_NE(s.TextRTF(), bold);

    u.UnDoo();
    EXPECT_EQ(u.passoTot(), 2);
    EXPECT_EQ(s.TextRTF(), plain);
    u.RedOO();
    EXPECT_EQ(s.TextRTF(), bold);

    s.setSelStart(4);
    s.setSelLength(3);
    s.setSelUnderline(true);
    const QString underlined = s.TextRTF();
    u.UnDoo();
    EXPECT_EQ(u.passoTot(), 3);
    EXPECT_EQ(s.TextRTF(), bold);
    u.RedOO();
    EXPECT_EQ(s.TextRTF(), underlined);
}

TEST_F(UndoTest, CaretReturnsOrStopsAtTheEnd)
{
    for (const char* w : {"uno ", "due ", "tre "})
        type(w);
    s.setSelStart(10);
    u.UnDoo();
    EXPECT_EQ(s.SelStart(), 8);
    s.setSelStart(2);
    u.UnDoo();
    EXPECT_EQ(s.SelStart(), 2);
    u.RedOO();
    EXPECT_EQ(s.SelStart(), 2);

    // Handlers of Change (typing assistance) take no step of a restore.
    QObject::connect(&s, &RichTextSurface::Change, &s, [this] { u.unDO(); });
    u.UnDoo();
    u.RedOO();
    EXPECT_EQ(state(), st("uno due ", 3, 4, annulla, ripristina));
}

TEST_F(UndoTest, TheStepAboveFiftyThousandTurnsUndoOff)
{
    const QString limit(50000, 'a');
    s.setText(limit);
    u.unDO();
    u.unDO();
    EXPECT_EQ(state(), (State{limit, 2, 2, false, {annulla, ripristinaNone}}));
    s.setSelStart(50000);
    s.typeText("b");

    // UnDoo's own step crosses the limit, and the restore turns undo on again.
    u.UnDoo();
    EXPECT_EQ(state(), (State{limit, 2, 3, false, {annulla, ripristina}}));
    const QString above = u.passo(3);

    u.RedOO();
    u.unDO();
    EXPECT_EQ(u.passo(4), above);
    const State off{limit + "b", 4, 4, true, {annullaOff, ripristinaOff}};
    EXPECT_EQ(state(), off);
    u.unDO();
    u.UnDoo();
    u.RedOO();
    EXPECT_EQ(state(), off);
}

TEST_F(UndoTest, DisabilitaAnnullaIsRemembered)
{
    QTemporaryDir dir;
    SettingsStore settings(dir.path());
    type("uno ");
    type("due ");
    u.disabilitaAnnulla(settings);
    EXPECT_EQ(settings.leggiReg("", "Ann", "1"), "True");
    type("tre ");
    u.UnDoo();
    EXPECT_EQ(state(), st("uno due tre ", 2, 2, annullaOff, ripristinaOff, true));

    u.disabilitaAnnulla(settings);
    EXPECT_EQ(settings.leggiReg("", "Ann", "1"), "False");
    EXPECT_EQ(state(), st("uno due tre ", 2, 2, annulla, ripristinaNone));
}

// Steps kept as differences and keys give back every string exactly, in any
// script, whether it changed at the start, the end, the middle, all or not at all.
TEST(UndoSteps, EveryStepReadsBackExactly)
{
    RichTextSurface s;
    UndoStore u(s);
    std::mt19937 rng(7);
    auto pick = [&](int n) { return int(rng() % unsigned(n)); };
    const QString alphabet = QString::fromUtf8("ab {}\\\r\nè€") + QChar(0xD83D) + QChar(0xDE00);
    auto randomText = [&](int n) {
        QString t;
        for (int i = 0; i < n; ++i)
            t += alphabet[pick(alphabet.size())];
        return t;
    };
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
    std::vector<QString> stored;
    for (int i = 0; i <= 401; ++i)
        stored.push_back(u.passo(i));
    expected.push_back(QString());
    EXPECT_EQ(stored, expected);
}

// A word at a time on a long document costs a small part of whole copies.
TEST(UndoSteps, WordStepsAreKeptSmall)
{
    RichTextSurface s;
    UndoStore u(s);
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
    EXPECT_EQ(u.passo(517).size(), text.size() - 483 * 7);
}

// The 16-bit counters stop at 32,767: a further step is dropped and the
// steps taken stay good.
TEST(UndoSteps, AFullStoreKeepsItsSteps)
{
    RichTextSurface s;
    UndoStore u(s);
    for (int i = 1; i <= 32767; ++i)
        UndoStoreProbe::store(u, QString::number(i));
    u.unDO();
    EXPECT_EQ(u.passoTot(), 32767);
    EXPECT_EQ(u.passoCorr(), 32767);
    u.UnDoo();
    EXPECT_EQ(s.Text(), "32766");
    u.RedOO();
    EXPECT_EQ(s.Text(), "32767");
    EXPECT_EQ(u.passo(32767), "32767");
    EXPECT_EQ(u.passo(12345), "12345");
}

}  // namespace
