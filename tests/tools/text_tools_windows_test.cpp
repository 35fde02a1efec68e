// The windows bind their controls to the logic and add no rule of their own:
// these check that what the person does reaches the logic and back.
#include "text_tools_ports.h"
#include "tools/frm_fin.h"
#include "tools/frm_st.h"

#include "core/settings.h"
#include "core/undo_store.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>

using namespace tornelia;

namespace {

QPushButton* button(QWidget* w, const QString& caption)
{
    for (QPushButton* b : w->findChildren<QPushButton*>()) {
        if (b->text().remove(u'&') == caption)
            return b;
    }
    ADD_FAILURE() << "no button " << caption.toStdString();
    return nullptr;
}

TEST(TextToolsWindows, FindWindowFollowsTheSearchTextAndReplaces)
{
    RichTextSurface s;
    UndoStore undo(s);
    tooltest::Messages messages;
    QWidget owner;
    s.setText("uno due uno due");
    s.setSelStart(4);
    s.setSelLength(3);
    fin* w = FindA(s, undo, messages, &owner);
    // A second call brings up the same window.
    EXPECT_EQ(FindA(s, undo, messages, &owner), w);
    auto combos = w->findChildren<QComboBox*>();
    ASSERT_EQ(combos.size(), 2);
    EXPECT_EQ(combos[0]->currentText(), "due");
    EXPECT_FALSE(button(w, "Sostituisci")->isEnabled());
    combos[0]->setEditText("");
    EXPECT_FALSE(button(w, "Trova successivo")->isEnabled());
    EXPECT_FALSE(button(w, "Sostituisci tutto")->isEnabled());
    combos[0]->setEditText("uno");
    combos[1]->setEditText("tre");
    button(w, "Trova successivo")->click();
    EXPECT_TRUE(button(w, "Sostituisci")->isEnabled());
    button(w, "Sostituisci tutto")->click();
    EXPECT_EQ(s.Text(), "tre due tre due");
    EXPECT_EQ(messages.take(), QStringList{"Sostituisci | 2 elementi cambiati"});
    EXPECT_EQ(combos[0]->count(), 1);
    EXPECT_EQ(combos[1]->count(), 1);
}

TEST(TextToolsWindows, StylesComboOffersTheTableAndAppliesWithoutShowingTheChoice)
{
    QTemporaryDir dir;
    SettingsStore settings(dir.filePath("settings"));
    {
        QFile f(dir.filePath("s.sti"));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("Grande\r\nArial\r\n30\r\n1\r\n\r\n\r\n");
    }
    settings.scriviReg({}, "Stili", "1", dir.filePath("s.sti"));
    RichTextSurface s;
    UndoStore undo(s);
    tooltest::Messages messages;
    tooltest::Dialogs dialogs;
    StyleService& styles = StyleService::instance(s, settings, messages, dialogs, undo);
    QComboBox cbSti;
    styles.bindCombo(&cbSti);
    QStringList items;
    for (int i = 0; i < cbSti.count(); ++i)
        items << cbSti.itemText(i);
    EXPECT_EQ(items, (QStringList{"(normale)", "(titolo 1)", "(titolo 2)", "(titolo 3)", "Grande"}));

    s.setText("abc");
    s.setSelStart(0);
    s.setSelLength(3);
    emit cbSti.activated(4);
    EXPECT_EQ(s.SelFontSize(), 30.0f);
    EXPECT_EQ(s.SelBold(), true);
    EXPECT_EQ(cbSti.currentText(), "(normale)");

    // A style stored in the window reaches the combo; closing only hides.
    QWidget owner;
    FrmSt* w = styles.show(&owner);
    auto* list = w->findChild<QListWidget*>();
    ASSERT_EQ(list->count(), 2);
    list->setCurrentRow(1);
    auto* name = w->findChild<QLineEdit*>();
    name->setText("Piccolo");
    emit name->textEdited("Piccolo");
    button(w, "Memorizza")->click();
    EXPECT_EQ(styles.store().styleName[1], "Piccolo");
    EXPECT_EQ(styles.store().styleSize[0], "30");
    EXPECT_EQ(cbSti.itemText(cbSti.count() - 1), "Piccolo");
    messages.answers = {"si"};
    w->close();
    EXPECT_FALSE(w->isVisible());
    EXPECT_EQ(styles.show(&owner), w);
    EXPECT_EQ(messages.take(), QStringList{"Stili | Il file non è stato salvato! Uscire comunque?"});
}

}  // namespace
