// Spelling in the main window: the marks start with the window, the options
// window turns them off, "Correzione testo..." opens the spelling window over
// the document and its right-click menu gains the suggestions.
#include "app/main_window.h"
#include "test_ports.h"
#include "tools/spell_marks.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QMenu>
#include <QPushButton>
#include <QTimer>

namespace tornelia {
namespace {

using testing::ShownWindowTest;

class SpellingWiringTest : public ShownWindowTest {
protected:
    void SetUp() override
    {
        ShownWindowTest::SetUp();
        if (!SpellChecker::installedLanguages().contains("it_IT"))
            GTEST_SKIP() << "the Italian dictionary is not installed";
        session = window.findChild<SpellingSession*>();
        ASSERT_NE(session, nullptr);
    }
    int marks()
    {
        session->marks().finish();
        return int(session->marks().marks().size());
    }
    SpellingSession* session = nullptr;
};

TEST_F(SpellingWiringTest, OptionsTurnTheMarksOffAndTheMenuOpensTheSpellingWindow)
{
    testo().setText("La csa è bella, la prta è verde.");
    EXPECT_EQ(marks(), 2);

    QString opened;
    QTimer::singleShot(0, [&] {
        QWidget* d = QApplication::activeModalWidget();
        ASSERT_NE(d, nullptr);
        opened = d->objectName();
        for (QCheckBox* box : d->findChildren<QCheckBox*>())
            if (box->text() == "Controlla ortografia durante la digitazione")
                box->setChecked(false);
        for (QPushButton* button : d->findChildren<QPushButton*>())
            if (button->text() == "Salva modifiche")
                button->click();
    });
    window.action("mnuOpzioni")->trigger();
    EXPECT_EQ(opened, "FrmOpz");
    EXPECT_EQ(marks(), 0);
    // Off, the right button shows the menu as it always was.
    QMenu menu;
    menu.addAction("Taglia");
    EXPECT_FALSE(session->prepareMenu(&menu, 4));

    // The spelling window works whatever the marks, from the caret on.
    testo().setSelStart(12);
    QString word;
    // The window may come up after other events: look until it is there.
    QTimer poll;
    int tries = 0;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        QWidget* d = QApplication::activeModalWidget();
        if (!d && ++tries < 100)
            return;
        poll.stop();
        if (!d)
            return;
        opened = d->objectName();
        word = testo().SelText();
        d->close();
    });
    poll.start(20);
    window.action("mnuCorrezioneTesto")->trigger();
    EXPECT_EQ(opened, "frmSpell") << t.messages->said.join("\n").toStdString();
    EXPECT_EQ(word, "prta");
}

}  // namespace
}  // namespace tornelia
