#include "text_tools_ports.h"
#include "tools/frm_spell.h"
#include "tools/spell_marks.h"

#include "controls/editor_view.h"
#include "core/undo_store.h"

#include <QAction>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QTextBlock>
#include <QMenu>
#include <QPushButton>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <set>

using namespace tornelia;

namespace {

bool haveItalian() { return SpellChecker::installedLanguages().contains(QStringLiteral("it_IT")); }

#define NEED_ITALIAN()                                              \
    if (!haveItalian())                                             \
    GTEST_SKIP() << "the Italian dictionary is not installed"

QStringList wordsIn(const QString& text, const QList<WordSpan>& spans)
{
    QStringList out;
    for (const WordSpan& w : spans)
        out << text.mid(w.start, w.length);
    return out;
}

TEST(SpellChecker, FindsTheMisspelledWordsAndSuggestsTheRightOne)
{
    NEED_ITALIAN();
    QTemporaryDir dir;
    SpellChecker c(dir.filePath("personale.txt"));
    ASSERT_TRUE(c.setLanguage("it_IT"));
    EXPECT_EQ(wordsIn("La casa è bella", c.misspelled("La casa è bella")), QStringList{});
    // "bela" is a form of "belare" (to bleat): the dictionary rightly knows it.
    EXPECT_EQ(wordsIn("La csa è bela", c.misspelled("La csa è bela")), QStringList{"csa"});
    const QString bad = QStringLiteral("La csa è bellla");
    EXPECT_EQ(c.misspelled(bad), (QList<WordSpan>{{3, 3}, {9, 6}}));
    EXPECT_TRUE(c.suggestions("csa").contains("casa"));
    // Elided articles, accented capitals and curly apostrophes are Italian too.
    const QString elided = QStringLiteral("Dell'anima e dell’amore, l'anma. È così.");
    EXPECT_EQ(wordsIn(elided, c.misspelled(elided)), QStringList{"l'anma"});
    // Codes, numbers, addresses and acronyms are no business of the dictionary.
    const QString codes = QStringLiteral("Il foglio A4 costa 3,50 euro: scrivete a mario@esempio.it o www.esempio.it, "
                                         "dice la FAO nel 2024.");
    EXPECT_EQ(wordsIn(codes, c.misspelled(codes)), QStringList{});
    // A language that is not installed leaves the current one in place.
    EXPECT_FALSE(c.setLanguage("xx_XX"));
    EXPECT_EQ(c.language(), "it_IT");
    if (c.setLanguage("en_US")) {
        EXPECT_EQ(wordsIn("The hause is nice, isn't it?", c.misspelled("The hause is nice, isn't it?")),
                  QStringList{"hause"});
    }
}

TEST(SpellChecker, KeepsAddedWordsAcrossARestartAndIgnoredOnesOnlyForTheSession)
{
    NEED_ITALIAN();
    QTemporaryDir dir;
    const QString file = dir.filePath("sub/Dizionario personale.txt");
    {
        SpellChecker c(file);
        c.setLanguage("it_IT");
        EXPECT_FALSE(c.isCorrect("Tornelia"));
        EXPECT_TRUE(c.addToPersonal("Tornelia"));
        EXPECT_TRUE(c.addToPersonal("gnocchetto"));
        c.ignoreAll("bellla");
        EXPECT_TRUE(c.isCorrect("Tornelia"));
        EXPECT_TRUE(c.isCorrect("bellla"));
    }
    SpellChecker again(file);
    again.setLanguage("it_IT");
    EXPECT_EQ(again.personalWords(), (QStringList{"Tornelia", "gnocchetto"}));
    EXPECT_TRUE(again.isCorrect("Tornelia"));
    EXPECT_FALSE(again.isCorrect("bellla"));
    // Changing language keeps the person's words.
    if (again.setLanguage("en_US")) {
        EXPECT_TRUE(again.isCorrect("gnocchetto"));
    }
}

class MarksTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!haveItalian())
            GTEST_SKIP() << "the Italian dictionary is not installed";
        settings = std::make_unique<SettingsStore>(dir.filePath("cfg"));
        session = std::make_unique<SpellingSession>(s, undo, *settings, messages, &view, dir.filePath("pers.txt"));
        view.resize(600, 400);
    }

    QStringList marked()
    {
        session->marks().finish();
        QStringList out;
        const QString text = s.document()->toPlainText();
        for (const WordSpan& w : session->marks().marks())
            out << text.mid(w.start, w.length);
        return out;
    }

    void type(const QString& text)
    {
        for (QChar c : text) {
            s.typeText(QString(c));
            session->marks().runSlice(1000);
        }
    }

    QTemporaryDir dir;
    RichTextSurface s;
    UndoStore undo{s};
    EditorView view{s};
    tooltest::Messages messages;
    std::unique_ptr<SettingsStore> settings;
    std::unique_ptr<SpellingSession> session;
};

TEST_F(MarksTest, MarksMisspelledWordsWithoutTouchingTheDocument)
{
    s.setText("La casa è bella.\r\nLa csa è bellla.");
    EXPECT_EQ(marked(), (QStringList{"csa", "bellla"}));

    const QString rtfMarked = s.TextRTF();
    const auto marks = session->marks().marks();
    session->marks().setEnabled(false);
    EXPECT_EQ(marked(), QStringList{});
    EXPECT_EQ(s.TextRTF(), rtfMarked);
    session->marks().setEnabled(true);
    EXPECT_EQ(marked(), (QStringList{"csa", "bellla"}));

    // Marking changes neither the text nor the undo steps, and raises no Change.
    int changes = 0;
    QObject::connect(&s, &RichTextSurface::Change, [&] { ++changes; });
    const int steps = undo.passoTot();
    session->marks().recheckAll();
    session->marks().setEnabled(false);
    session->marks().setEnabled(true);
    EXPECT_EQ(marked(), (QStringList{"csa", "bellla"}));
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(undo.passoTot(), steps);
    EXPECT_EQ(s.TextRTF(), rtfMarked);
    // The wave is in the view's layout only.
    const QTextBlock second = s.document()->findBlock(marks[0].start);
    ASSERT_FALSE(second.layout()->formats().isEmpty());
    EXPECT_EQ(second.layout()->formats()[0].format.underlineStyle(), QTextCharFormat::WaveUnderline);
}

TEST_F(MarksTest, AWordIsCheckedOnceFinished)
{
    type("La csa");
    EXPECT_EQ(marked(), QStringList{}) << "still typing the word";
    type(" è bellla");
    EXPECT_EQ(marked(), QStringList{"csa"});
    type(",");
    EXPECT_EQ(marked(), (QStringList{"csa", "bellla"}));
    // Correcting the word takes the mark away once it is finished again.
    s.setSelStart(3);
    s.setSelLength(3);
    type("casa");
    s.setSelStart(s.length());
    EXPECT_EQ(marked(), QStringList{"bellla"});
    // Enter finishes a word too.
    s.setSelStart(s.length());
    type("ciaoo\r");
    EXPECT_EQ(marked(), (QStringList{"bellla", "ciaoo"}));
    // A word typed in front of another runs into it until the blank: the
    // two make no marked word while it is typed.
    s.setSelStart(0);
    type("Ecc");
    EXPECT_EQ(marked(), (QStringList{"bellla", "ciaoo"}));
    type("o ");
    EXPECT_EQ(marked(), (QStringList{"bellla", "ciaoo"}));
    s.setSelStart(s.Text().indexOf("casa"));
    type("xx");
    EXPECT_EQ(marked(), (QStringList{"bellla", "ciaoo"}));
    s.setSelStart(s.length());
    EXPECT_EQ(marked(), (QStringList{"xxcasa", "bellla", "ciaoo"}));
}

// A long document is checked from the event loop, but not between the keys
// of someone typing: the paragraph typed in is checked at each key, the rest
// once the typing pauses.
TEST_F(MarksTest, TheRestOfALongDocumentWaitsWhileThePersonTypes)
{
    QString text;
    for (int i = 0; i < 200; ++i)
        text += QStringLiteral("La casa è bella e la csa no.\r\n");
    s.setText(text + QStringLiteral("Fine"));
    s.setSelStart(s.length());
    for (QChar c : QStringLiteral(" ciaoo bellla "))
        s.typeText(QString(c));
    const auto paragraphsMarked = [&] {
        std::set<int> blocks;
        for (const WordSpan& w : session->marks().marks())
            blocks.insert(s.document()->findBlock(w.start).blockNumber());
        return blocks;
    };
    // The keys and the event loop for a moment after them: the last
    // paragraph only.
    QElapsedTimer moment;
    moment.start();
    while (moment.elapsed() < 100)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    EXPECT_EQ(paragraphsMarked(), std::set<int>{200});
    EXPECT_TRUE(session->marks().busy());

    // Left alone, the checking goes on by itself and reaches every paragraph.
    QElapsedTimer waited;
    waited.start();
    while (session->marks().busy() && waited.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    EXPECT_FALSE(session->marks().busy());
    EXPECT_EQ(paragraphsMarked().size(), 201u);
    EXPECT_EQ(session->marks().marks().size(), 202u);
}

TEST_F(MarksTest, TheContextMenuPutsSuggestionsAboveItsOwnEntries)
{
    s.setText("La csa è bella");
    undo.unDO();
    session->marks().finish();
    QMenu menu;
    menu.addAction("Taglia");
    menu.addAction("Copia");
    auto texts = [&] {
        QStringList out;
        for (QAction* a : menu.actions())
            out << (a->isSeparator() ? QStringLiteral("-") : a->text());
        return out;
    };
    // On a right word the menu is its own.
    EXPECT_FALSE(session->prepareMenu(&menu, 10));
    EXPECT_EQ(texts(), (QStringList{"Taglia", "Copia"}));

    ASSERT_TRUE(session->prepareMenu(&menu, 4));
    const QStringList all = texts();
    const QStringList suggestions = session->checker().suggestions("csa", 5);
    ASSERT_TRUE(suggestions.contains("casa"));
    EXPECT_EQ(all, (suggestions + QStringList{"Ignora tutto", "Aggiungi al dizionario", "-", "Taglia", "Copia"}));
    // Asked again the entries are replaced, not piled up.
    ASSERT_TRUE(session->prepareMenu(&menu, 3));
    EXPECT_EQ(texts(), all);

    s.setSelStart(3);
    s.setSelLength(3);
    s.setSelBold(true);
    const QString before = s.Text();
    menu.actions().at(int(suggestions.indexOf("casa")))->trigger();
    EXPECT_EQ(s.Text(), "La casa è bella");
    s.setSelStart(4);
    EXPECT_EQ(s.SelBold(), std::optional<bool>(true));
    EXPECT_EQ(marked(), QStringList{});
    undo.UnDoo();
    EXPECT_EQ(s.Text(), before);

    // "Aggiungi al dizionario" reaches the list on disk.
    session->marks().finish();
    ASSERT_TRUE(session->prepareMenu(&menu, 4));
    menu.actions().at(int(suggestions.size()) + 1)->trigger();
    EXPECT_EQ(marked(), QStringList{});
    QFile f(dir.filePath("pers.txt"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), "csa\n");
    EXPECT_FALSE(session->prepareMenu(&menu, 4));
    EXPECT_EQ(texts(), (QStringList{"Taglia", "Copia"}));
}

TEST_F(MarksTest, ChangeAllReplacesEveryOccurrenceInOneStepAndKeepsTheFormat)
{
    s.setText("Una csa, due csa, tre csa e la csatura.");
    undo.unDO();
    s.setSelStart(13);
    s.setSelLength(3);
    s.setSelBold(true);
    const QString before = s.TextRTF();
    const std::vector<int> at = session->replaceAll("csa", "casa");
    EXPECT_EQ(at, (std::vector<int>{4, 13, 22}));
    EXPECT_EQ(s.Text(), "Una casa, due casa, tre casa e la csatura.");
    auto boldAt = [&](long pos) {
        s.setSelStart(pos);
        s.setSelLength(1);
        return s.SelBold().value_or(false);
    };
    EXPECT_EQ((std::vector<bool>{boldAt(4), boldAt(14), boldAt(17), boldAt(24)}),
              (std::vector<bool>{false, true, true, false}));
    undo.UnDoo();
    EXPECT_EQ(s.TextRTF(), before);
}

TEST_F(MarksTest, TheWindowWalksFromTheCaretWrapsOnceAndSaysWhenItIsDone)
{
    s.setText("Prima bellla riga.\r\nSeconda csa e csa.\r\nTerza rga.");
    undo.unDO();
    s.setSelStart(20);  // the start of the second paragraph
    FrmSpell w(*session);
    ASSERT_TRUE(w.start());
    EXPECT_EQ(w.currentWord(), "csa");
    EXPECT_EQ(s.SelText(), "csa");
    EXPECT_EQ(s.SelStart(), 28);
    w.changeTo()->setText("casa");
    w.button("Cambia tutto")->click();
    EXPECT_EQ(w.currentWord(), "rga");
    w.button("Ignora")->click();
    EXPECT_EQ(w.currentWord(), "bellla") << "wrapped to the top";
    const QString fix = w.changeTo()->text();
    EXPECT_EQ(fix, w.suggestions()->item(0)->text());
    w.button("Cambia")->click();
    EXPECT_EQ(messages.take(), QStringList{"Correzione testo | Controllo ortografico completato."});
    EXPECT_EQ(s.Text(), "Prima " + fix + " riga.\r\nSeconda casa e casa.\r\nTerza rga.");
    // Two changes, two undo steps.
    undo.UnDoo();
    EXPECT_TRUE(s.Text().startsWith("Prima bellla riga.\r\nSeconda casa e casa."));
    undo.UnDoo();
    EXPECT_EQ(s.Text(), "Prima bellla riga.\r\nSeconda csa e csa.\r\nTerza rga.");

    // A document with nothing to correct gives only the message.
    s.setText("Tutto bene.");
    FrmSpell clean(*session);
    EXPECT_FALSE(clean.start());
    EXPECT_EQ(messages.take(), QStringList{"Correzione testo | Controllo ortografico completato."});
}

}  // namespace
