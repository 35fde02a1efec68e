#include "text_tools_ports.h"
#include "tools/find_replace.h"

#include "core/undo_store.h"

#include <gtest/gtest.h>

using namespace tornelia;

namespace {

class FindReplaceTest : public ::testing::Test {
protected:
    RichTextSurface s;
    UndoStore undo{s};
    tooltest::Messages messages;
    FindReplace f{s, undo, messages};

    // Presses "Trova successivo" n times: each hit as "position:selected
    // text", a miss as "-".
    QString press(int n)
    {
        QStringList out;
        for (int i = 0; i < n; ++i) {
            f.findNext();
            out << (f.foundAt() < 0 ? QStringLiteral("-")
                                    : QString::number(f.foundAt()) + u':' + s.SelText());
        }
        return out.join(u' ');
    }
};

TEST_F(FindReplaceTest, FindNextGoesForwardWithTheOptionsAndStartsAgainAfterAMiss)
{
    s.setText("Il gatto e il Gatto, gattone.");
    f.findText = "gatto";
    struct Case {
        bool matchCase, wholeWord;
        QString hits;
    };
    const Case cases[] = {
        {false, false, "3:gatto 14:Gatto 21:gatto - 3:gatto"},
        {true, false, "3:gatto 21:gatto - 3:gatto"},
        {false, true, "3:gatto 14:Gatto - 3:gatto"},
        {true, true, "3:gatto - 3:gatto"},
    };
    for (const Case& c : cases) {
        f.matchCase = c.matchCase;
        f.wholeWord = c.wholeWord;
        EXPECT_EQ(press(c.hits.count(' ') + 1), c.hits) << c.matchCase << c.wholeWord;
        EXPECT_EQ(messages.take(), QStringList{"Fine ricerca | Testo non trovato"});
        while (f.foundAt() >= 0)  // on to the miss again, which puts the search back at the top
            f.findNext();
        messages.take();
    }
    // A new search text goes on from the last hit, not from the top.
    f.matchCase = f.wholeWord = false;
    press(1);
    f.findText = "il";
    EXPECT_EQ(press(1), "11:il");
    EXPECT_TRUE(f.replaceEnabled());
    f.findText = "nulla";
    EXPECT_EQ(press(1), "-");
    EXPECT_FALSE(f.replaceEnabled());
    EXPECT_EQ(f.searchPos(), 0);
    f.findText.clear();
    EXPECT_FALSE(f.findEnabled());

    // An empty document misses like any other.
    s.setText("");
    f.findText = "x";
    EXPECT_EQ(press(1), "-");
}

TEST_F(FindReplaceTest, HistoriesKeepTheirOddRuleForTheSearchList)
{
    s.setText("x a");
    // Find next adds its text unless it stands at index 1 of the list,
    // letters compared without case; replace adds only what is missing.
    for (const char* text : {"x", "a", "a", "A", "x"}) {
        f.findText = text;
        f.findNext();
    }
    EXPECT_EQ(f.findList(), (QStringList{"x", "a", "x"}));
    f.findText = "a";
    f.replaceText = "b";
    f.replace();
    f.replace();
    EXPECT_EQ(f.findList(), (QStringList{"x", "a", "x"}));
    EXPECT_EQ(f.replaceList(), QStringList{"b"});
    EXPECT_EQ(findStringExact({"uno", "Due"}, "DUE"), 1);
    EXPECT_EQ(findStringExact({"uno"}, "un"), -1);
}

TEST_F(FindReplaceTest, ReplaceTakesTheHitOrFindsOneAndCanBeUndone)
{
    s.setText("Uno due uno tre");
    f.findText = "uno";
    f.replaceText = "sei";
    f.replace();  // nothing selected: it finds the first, found without regard to case
    EXPECT_EQ(s.Text(), "sei due uno tre");
    f.replace();
    EXPECT_EQ(s.Text(), "sei due sei tre");
    f.replace();  // no more hits: the miss is told and nothing changes
    EXPECT_EQ(s.Text(), "sei due sei tre");
    EXPECT_EQ(messages.take(), QStringList{"Fine ricerca | Testo non trovato"});
    EXPECT_FALSE(f.replaceEnabled());

    // The hit selected by find next is replaced as it stands.
    s.setText("a b a");
    f.findText = "a";
    f.replaceText = "cc";
    f.findNext();
    f.findNext();
    f.replace();
    EXPECT_EQ(s.Text(), "a b cc");
    undo.UnDoo();
    EXPECT_EQ(s.Text(), "a b a");
}

TEST_F(FindReplaceTest, ReplaceAllCountsAndMovesOnByTheSearchText)
{
    struct Case {
        QString text, find, replace;
        bool matchCase, wholeWord;
        QString result;
        QStringList said;
    };
    const QString one = "Sostituisci | 1 elemento cambiato";
    const QString notFound = "Fine ricerca | Testo non trovato";
    const Case cases[] = {
        {"aaa", "a", "aa", false, false, "aaaaaa", {"Sostituisci | 3 elementi cambiati"}},
        {"il cane", "cane", "gatto", false, false, "il gatto", {one}},
        // A shorter replacement: the next search starts past what follows it.
        {"abab", "ab", "x", false, false, "xab", {one}},
        {"Casa casa CASA", "casa", "x", false, false, "x casa x", {"Sostituisci | 2 elementi cambiati"}},
        {"Casa casa CASA", "casa", "x", true, false, "Casa x CASA", {one}},
        {"con cono con", "con", "per", false, true, "per cono per", {"Sostituisci | 2 elementi cambiati"}},
        {"abc", "x", "y", false, false, "abc", {notFound, "Sostituisci | 0 elementi cambiati"}},
        {"", "x", "y", false, false, "", {notFound, "Sostituisci | 0 elementi cambiati"}},
        {"riga uno\r\nriga due", "riga", "", false, false, " uno\r\n due", {"Sostituisci | 2 elementi cambiati"}},
    };
    for (const Case& c : cases) {
        s.setText(c.text);
        s.setSelStart(2);
        f.findText = c.find;
        f.replaceText = c.replace;
        f.matchCase = c.matchCase;
        f.wholeWord = c.wholeWord;
        f.replaceAll();
        EXPECT_EQ(s.Text(), c.result) << c.text.toStdString();
        EXPECT_EQ(messages.take(), c.said) << c.text.toStdString();
        EXPECT_EQ(s.SelStart(), 0);
        EXPECT_EQ(s.SelLength(), 0);
        EXPECT_FALSE(f.replacing());
    }
    undo.UnDoo();
    EXPECT_EQ(s.Text(), "riga uno\r\nriga due");
}

TEST_F(FindReplaceTest, CancelStopsReplaceAllAtTheNextRound)
{
    s.setText("x x x x x");
    f.findText = "x";
    f.replaceText = "y";
    int rounds = 0;
    bool closes = true;
    f.processEvents = [&] {
        if (++rounds == 3)
            closes = f.cancel();
    };
    QStringList busy;
    f.setBusy = [&](bool on) { busy << (on ? "on" : "off"); };
    EXPECT_EQ(f.replaceAll(), 2);
    EXPECT_FALSE(closes);
    EXPECT_EQ(s.Text(), "y y x x x");
    EXPECT_EQ(messages.take(), QStringList{"Sostituisci | 2 elementi cambiati"});
    EXPECT_EQ(busy, (QStringList{"on", "off"}));
    // Not replacing, "Annulla" closes the window.
    EXPECT_TRUE(f.cancel());
}

TEST_F(FindReplaceTest, SelectionFillsTheTexts)
{
    s.setText("Una frase piuttosto lunga da cercare");
    s.setSelStart(4);
    s.setSelLength(30);
    f.takeSelection();
    EXPECT_EQ(f.findText, "frase piuttosto lung");
    f.useSelection(1);
    EXPECT_EQ(f.replaceText, "frase piuttosto lunga da cerca");
    s.setSelLength(0);
    f.takeSelection();
    EXPECT_EQ(f.findText, "frase piuttosto lung");
}

}  // namespace
