// The on-screen keyboard typing into a real document, and the windows of
// options, start and recovery driven through their controls.
#include "app/frm_av.h"
#include "app/frm_opz.h"
#include "app/frm_recuper.h"
#include "controls/form_tast.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>
#include <QTreeWidget>

namespace tornelia {
namespace {

const QString kApp = QStringLiteral("Tornelia");

void press(FormTast& k, const QString& key)
{
    QToolButton* b = k.keyFor(key);
    ASSERT_NE(b, nullptr) << key.toStdString();
    b->click();
}

void pressAll(FormTast& k, const QStringList& keys)
{
    for (const QString& key : keys)
        press(k, key);
}

TEST(KeyboardTest, KeysTypeWithShiftCapsAndErase)
{
    testing::TestContext t;
    RichTextSurface& s = t.context->testo();
    FormTast k(s);

    pressAll(k, {"c", "i", "a", "o", " "});
    // Shift holds for one character and the keys show what they would type.
    k.shiftKey()->click();
    EXPECT_EQ(k.keyFor("a")->text(), "A");
    EXPECT_EQ(k.keyFor("1")->text(), "!");
    press(k, "a");
    EXPECT_FALSE(k.shift());
    EXPECT_EQ(k.keyFor("a")->text(), "a");
    // Caps Lock turns letters only; Shift under it gives a small letter.
    k.capsKey()->click();
    pressAll(k, {"b", "1", "{SHIFT}", "c", "{SHIFT}", "1", "ò", "{SHIFT}", "ò"});
    k.capsKey()->click();
    pressAll(k, {"{ENTER}", "x", "{TAB}", "è"});
    EXPECT_EQ(s.Text(), "ciao AB1c!òç\r\nx\tè");

    // Backspace takes one character, the paragraph break whole; Delete the
    // character after the caret, or the selection.
    pressAll(k, {"{BS}", "{BS}", "{BS}", "{BS}"});
    EXPECT_EQ(s.Text(), "ciao AB1c!òç");
    s.setSelStart(0);
    press(k, "{DEL}");
    s.setSelStart(3);
    s.setSelLength(3);
    press(k, "{BS}");
    EXPECT_EQ(s.Text(), "iao1c!òç");
    EXPECT_EQ(s.SelStart(), 3);
}

TEST(KeyboardTest, KeysPassThroughTheTypingAssistance)
{
    testing::TestContext t;
    RichTextSurface& s = t.context->testo();
    t.context->settings().scriviReg(kApp, "Corr", "2", "True");  // ", "
    t.context->settings().scriviReg(kApp, "Corr", "8", "True");  // £ is the euro
    FormTast k(s);
    // A handler may swallow a key, as it may a real one.
    QObject::connect(&s, &RichTextSurface::KeyPress, &s, [](int& code) {
        if (code == 'q')
            code = 0;
    });
    pressAll(k, {"a", ",", "b", "q", "{SHIFT}", "3"});
    EXPECT_EQ(s.Text(), QString::fromUtf8("a, b€"));
}

TEST(KeyboardTest, FollowsCapsLockOfTheRealKeyboard)
{
    testing::TestContext t;
    QWidget focus;
    focus.setFocusPolicy(Qt::StrongFocus);
    focus.show();
    QApplication::setActiveWindow(&focus);
    focus.setFocus();
    if (QApplication::focusWidget() != &focus)
        GTEST_SKIP() << "no keyboard focus on this platform";
    FormTast k(t.context->testo());
    auto send = [&](int key, Qt::KeyboardModifiers mods, const QString& text) {
        QKeyEvent e(QEvent::KeyPress, key, mods, text);
        QApplication::sendEvent(&focus, &e);
        return QString::number(k.capsLock()) + k.keyFor("a")->text();
    };
    const QStringList seen = {
        send(Qt::Key_CapsLock, Qt::NoModifier, {}),  // pressed: on
        send(Qt::Key_B, Qt::NoModifier, "b"),          // a small letter unshifted: it was off after all
        send(Qt::Key_B, Qt::ShiftModifier, "b"),       // small under Shift: on
        send(Qt::Key_1, Qt::NoModifier, "1"),          // a digit tells nothing
        send(Qt::Key_B, Qt::ShiftModifier, "B"),       // capital under Shift: off
    };
    EXPECT_EQ(seen, QStringList({"1A", "0a", "1A", "1A", "0a"}));
}

// --- options ------------------------------------------------------------------

QString allKeys(const SettingsStore& s)
{
    const std::pair<const char*, const char*> keys[] = {
        {"Font", "1"},      {"Font", "2"},      {"Salva", "0"},     {"Salva", "1"},     {"DefaultExt", "Apri"},
        {"DefaultExt", "Salva"}, {"Appunti", "1"}, {"Appunti", "2"}, {"Menu", "Stile"}, {"Toolbar 1", "1"},
        {"Toolbar 2", "1"}, {"Tast", "1"},      {"Load", "1"}};
    QStringList out;
    for (const auto& [section, key] : keys)
        out << s.leggiReg(kApp, section, key);
    return out.join(" | ");
}

TEST(OptionsTest, SaveWritesEveryOptionAndCancelNone)
{
    testing::TestContext t;
    SettingsStore& s = t.context->settings();
    s.scriviReg(kApp, "Salva", "0", "sette");  // not a number: autosave off
    {
        FrmOpz w(s, *t.dialogs, t.context->messages());
        EXPECT_EQ(w.valori(), Opzioni{});
    }
    Opzioni o;
    o.fontNome = "DejaVu Serif";
    o.fontDim = 12.5f;
    o.salvaAuto = true;
    o.minuti = 7;
    o.salvaUscita = true;
    o.filtroApri = "File Tornelia (*.tnl)";
    o.filtroSalva = "Rich Text File (*.rtf)";
    o.appunti = true;
    o.appuntiSecondi = 3;
    o.stileMenu = "Office 2000";
    o.toolbarStandard = false;
    o.tastiera = true;
    o.finestraAvvio = true;
    {
        FrmOpz w(s, *t.dialogs, t.context->messages());
        w.mostra(o);
        w.cancelButton()->click();
        EXPECT_EQ(w.result(), QDialog::Rejected);
    }
    EXPECT_EQ(allKeys(s), " |  | sette |  |  |  |  |  |  |  |  |  | ");
    {
        FrmOpz w(s, *t.dialogs, t.context->messages());
        w.mostra(o);
        // The person unticks the keyboard before saving.
        for (QCheckBox* box : w.findChildren<QCheckBox*>())
            if (box->text() == "Tastiera")
                box->click();
        w.saveButton()->click();
        EXPECT_EQ(w.result(), QDialog::Accepted);
    }
    EXPECT_EQ(allKeys(s), "DejaVu Serif | 12.5 | 7 | 1 | File Tornelia (*.tnl) | Rich Text File (*.rtf) | 1 | 3 | "
                          "Office 2000 | 0 | 1 | False | 1");
    o.tastiera = false;
    FrmOpz again(s, *t.dialogs, t.context->messages());
    EXPECT_EQ(again.valori(), o);

    // Autosave unticked writes 0 minutes; the recent list is cleared at once.
    s.scriviReg(kApp, "FileRecenti", "0", "/d/a.tnl");
    again.clearRecentButton()->click();
    EXPECT_EQ(s.leggiReg(kApp, "FileRecenti", "0"), "");
    o.salvaAuto = false;
    again.mostra(o);
    again.saveButton()->click();
    EXPECT_EQ(s.leggiReg(kApp, "Salva", "0"), "0");
}

// --- start panel and recovery -----------------------------------------------

TEST(StartPanelTest, OpensARecentFileOrSaysItIsGone)
{
    testing::TestContext t;
    SettingsStore& s = t.context->settings();
    const QString there = t.folder.filePath("presente.txt");
    QFile f(there);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("contenuto\r\n");
    f.close();
    s.scriviReg(kApp, "FileRecenti", "0", t.folder.filePath("sparito.rtf"));
    s.scriviReg(kApp, "FileRecenti", "1", there);

    FrmAv w(t.context->document(), s, t.context->messages());
    EXPECT_EQ(w.page(), 0);
    QTreeWidget* recent = w.list(Avvio::PageRecenti);
    ASSERT_EQ(recent->topLevelItemCount(), 2);
    EXPECT_EQ(QStringList({recent->topLevelItem(0)->text(0), recent->topLevelItem(1)->text(0)}),
              QStringList({"sparito.rtf", "presente.txt"}));

    w.showPage(Avvio::PageRecenti);
    recent->setCurrentItem(recent->topLevelItem(0));
    w.confirmButton()->click();
    EXPECT_EQ(t.messages->said, QStringList({"Apri file | Percorso non trovato | 0 | 3"}));
    EXPECT_EQ(w.result(), QDialog::Rejected);
    EXPECT_EQ(t.context->document().nomeFile, kNoDocument);

    recent->setCurrentItem(recent->topLevelItem(1));
    w.confirmButton()->click();
    EXPECT_EQ(w.result(), QDialog::Accepted);
    EXPECT_EQ(t.context->document().nomeFile, there);
    EXPECT_EQ(t.context->testo().Text(), "contenuto\r\n");
    // The check box went back to the settings when the panel closed.
    EXPECT_EQ(s.leggiReg(kApp, "Load", "1"), "0");
}

TEST(RecoveryWindowTest, ListsDeletesAndOpens)
{
    testing::TestContext t;
    const QString temp = t.folder.filePath("temp");
    t.messages->answers = {"si"};
    {
        FrmRecuper w(t.context->document(), t.context->messages(), t.context->shell(), temp);
        EXPECT_EQ(w.note()->text(), "La cartella Temp non esiste");
        EXPECT_EQ(w.foot()->text(), "Totale 0 files. Spazio occupato 0 bytes");
    }
    QDir().mkpath(temp);
    for (const char* name : {"Doc 07 mar 2026 - 09.05.tnl", "lettera.rtf"}) {
        QFile f(QDir(temp).filePath(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("{\\rtf1 recuperato\\par}");
    }
    FrmRecuper w(t.context->document(), t.context->messages(), t.context->shell(), temp);
    ASSERT_EQ(w.list()->topLevelItemCount(), 2);
    EXPECT_EQ(w.list()->topLevelItem(1)->text(0), "lettera.rtf");
    EXPECT_EQ(w.foot()->text(), "Totale 2 files. Spazio occupato 44 bytes");
    EXPECT_FALSE(w.openButton()->isEnabled());

    w.list()->setCurrentItem(w.list()->topLevelItem(1));
    w.openButton()->click();
    EXPECT_EQ(t.context->document().nomeFile, QDir(temp).filePath("lettera.rtf"));
    EXPECT_EQ(t.context->testo().Text(), "recuperato");

    w.deleteButton()->click();
    EXPECT_EQ(w.list()->topLevelItemCount(), 0);
    EXPECT_EQ(w.note()->text(), "La cartella Temp è vuota");
    EXPECT_EQ(QDir(temp).entryList(QDir::Files), QStringList());
}

}  // namespace
}  // namespace tornelia
