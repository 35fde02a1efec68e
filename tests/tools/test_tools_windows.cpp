#include "text_tools_ports.h"

#include "core/rich_text_surface.h"
#include "core/undo_store.h"
#include "tools/frm_cic.h"
#include "tools/frm_ffile.h"
#include "tools/frm_fontt.h"
#include "tools/frm_form3.h"
#include "tools/frm_go_to.h"
#include "tools/frm_mai.h"
#include "tools/frm_time_date.h"
#include "tools/frm_word_count.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTimer>

using namespace tornelia;

namespace {

void pressEnter(QWidget* w)
{
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    QApplication::sendEvent(w, &press);
}

void mouseAt(QWidget* w, QEvent::Type type, const QPoint& p)
{
    QMouseEvent e(type, QPointF(p), w->mapToGlobal(QPointF(p)), Qt::LeftButton,
                  type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(w, &e);
}

class ToolsWindowTest : public ::testing::Test {
protected:
    ToolsWindowTest() { s.setText(QStringLiteral("prima riga\r\nseconda riga")); }
    RichTextSurface s;
    UndoStore undo{s};
    tooltest::Messages messages;
};

TEST_F(ToolsWindowTest, GoToTakesEnterInTheLineFieldAndSwitchesInputs)
{
    FrmGoTo w(s, messages);
    w.txtGo()->setText(QStringLiteral("2"));
    pressEnter(w.txtGo());
    EXPECT_EQ(s.SelStart(), 12);

    w.txtGo()->setText(QStringLiteral("due"));
    pressEnter(w.txtGo());
    EXPECT_EQ(w.txtGo()->text(), QString());
    w.txtGo()->setText(QStringLiteral("9"));
    pressEnter(w.txtGo());
    EXPECT_EQ(w.txtGo()->text(), QStringLiteral("9"));
    // An empty field and Enter do nothing at all.
    w.txtGo()->clear();
    pressEnter(w.txtGo());
    EXPECT_EQ(messages.said, (QStringList{"Vai a... | Inserire un numero valido!", "Vai a... | Numero di linea non valido!"}));
    EXPECT_EQ(s.SelStart(), 12);

    w.option(GoTo::GotoPer)->setChecked(true);
    EXPECT_EQ(w.prompt()->text(), QStringLiteral("Selezionare la percentuale:"));
    EXPECT_TRUE(w.txtGo()->isHidden());
    EXPECT_FALSE(w.cmbP()->isHidden());
    w.cmbP()->setCurrentText(QStringLiteral("100%"));
    w.cmdGo()->click();
    EXPECT_EQ(s.SelStart(), s.length());
    w.option(GoTo::GotoStart)->setChecked(true);
    w.cmdGo()->click();
    EXPECT_EQ(s.SelStart(), 0);
    w.option(GoTo::GotoLine)->setChecked(true);
    EXPECT_EQ(w.prompt()->text(), QStringLiteral("Inserire il numero della linea:"));
}

TEST_F(ToolsWindowTest, CaseWindowRunsTheChosenConversion)
{
    FrmMai w(s, &undo);
    w.op(1)->setChecked(true);
    w.o(0)->setChecked(true);
    w.u1()->click();
    EXPECT_EQ(s.Text(), QStringLiteral("PRIMA RIGA\r\nSECONDA RIGA"));
    s.setSelStart(0);
    s.setSelLength(5);
    w.op(0)->setChecked(true);
    w.o(1)->setChecked(true);
    w.u1()->click();
    EXPECT_EQ(s.Text(), QStringLiteral("Prima RIGA\r\nSECONDA RIGA"));
    w.op(2)->setChecked(true);
    w.o(0)->setChecked(true);
    w.u1()->click();
    EXPECT_EQ(s.Text(), QStringLiteral("prima riga\r\nseconda riga"));
}

TEST_F(ToolsWindowTest, CyclicWindowRunsTheLoopOfItsTab)
{
    s.setText(QString());
    FrmCic w(s, &undo, messages);
    w.tabs()->setCurrentIndex(1);
    EXPECT_TRUE(w.prefisso()->isEnabled());
    w.testo()->setText(QStringLiteral(" voce"));
    w.t3()->setText(QStringLiteral("3"));
    w.prefisso()->setText(QStringLiteral("["));
    w.suffisso()->setText(QStringLiteral("]"));
    w.ch()->setChecked(false);
    w.c2()->click();
    EXPECT_EQ(s.Text(), QStringLiteral("[1] voce[2] voce[3] voce"));
    EXPECT_EQ(w.pb()->value(), 100);

    w.tabs()->setCurrentIndex(0);
    EXPECT_FALSE(w.prefisso()->isEnabled());
    w.t3()->setText(QStringLiteral("tre"));
    w.c1()->click();
    EXPECT_EQ(messages.said, QStringList{"Testo ciclico | Inserire un valore valido!"});
    EXPECT_EQ(s.Text(), QStringLiteral("[1] voce[2] voce[3] voce"));
}

TEST_F(ToolsWindowTest, FileWindowChoosesThenInserts)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("da inserire.txt"));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("dentro");
    f.close();
    tooltest::Dialogs dialogs;
    dialogs.openPath = path;
    s.setSelStart(5);

    FFile w(s, &undo, messages, dialogs);
    w.show();
    EXPECT_EQ(w.fileLabel()->text(), QStringLiteral("File: Nessuno"));
    EXPECT_FALSE(w.u1()->isEnabled());
    w.u2()->click();
    EXPECT_EQ(w.fileLabel()->text(), QStringLiteral("File: da inserire.txt"));
    w.c()->setChecked(false);
    w.u1()->click();
    EXPECT_EQ(s.Text(), QStringLiteral("primadentro riga\r\nseconda riga"));
    EXPECT_FALSE(w.isVisible());
    EXPECT_TRUE(messages.said.isEmpty());
}

TEST_F(ToolsWindowTest, CharacterGridCollectsClicksAndInsertsInTheFont)
{
    Form3 w(s);
    QString family;
    for (const QString& f : QFontDatabase::families(QFontDatabase::Latin))
        if (!QFontDatabase::writingSystems(f).contains(QFontDatabase::Symbol) && family.isEmpty())
            family = f;
    w.chooseFont(family);
    EXPECT_EQ(w.family(), family);
    const QPoint a = w.grid()->cellRect('A').center();
    const QPoint euro = w.grid()->cellRect(128).center();
    mouseAt(w.grid(), QEvent::MouseMove, euro);
    EXPECT_EQ(w.lbl()->text(), QStringLiteral("Ascii= ALT + 0128"));
    mouseAt(w.grid(), QEvent::MouseButtonPress, a);
    mouseAt(w.grid(), QEvent::MouseButtonPress, euro);
    EXPECT_EQ(w.t()->text(), QStringLiteral("A€"));
    s.setSelStart(0);
    w.u1()->click();
    EXPECT_EQ(s.Text(), QStringLiteral("A€prima riga\r\nseconda riga"));
    s.setSelStart(0);
    s.setSelLength(2);
    EXPECT_EQ(s.SelFontName(), std::optional<QString>(family));
    EXPECT_EQ(w.t()->text(), QString());
}

TEST_F(ToolsWindowTest, DateWindowListsAndInsertsTheMomentOfTheClick)
{
    QDateTime now(QDate(2025, 1, 6), QTime(8, 30, 0));
    FrmTimeDate w(s, &undo, [&] { return now; });
    EXPECT_EQ(w.lstDates()->item(1)->text(), QStringLiteral("06 gennaio 2025"));
    EXPECT_EQ(w.lblSample()->text(), QStringLiteral("06/01/25"));
    now = now.addDays(1);
    s.setSelStart(0);
    w.lstDates()->setCurrentRow(8);
    w.cmdInsert()->click();
    w.lstDates()->setCurrentRow(7);
    w.cmdInsert()->click();
    w.txtCustom()->setText(QStringLiteral("dddd "));
    w.cmdinsCusFor()->click();
    EXPECT_EQ(s.Text(), QStringLiteral("08:30martedì prima riga\r\nseconda riga"));
    EXPECT_EQ(w.lblSample()->text(), QStringLiteral("martedì "));
}

TEST_F(ToolsWindowTest, FontViewerShowsAndAppliesTheLook)
{
    Fontt w(s);
    ASSERT_GT(w.fonts()->count(), 0);
    w.fonts()->setCurrentRow(0);
    const QString family = w.fonts()->item(0)->text();
    w.check(0)->setChecked(true);
    w.check(2)->setChecked(true);
    w.dime()->setCurrentText(QStringLiteral("14"));
    w.setColour(0x0000FF);
    EXPECT_EQ(w.text1()->text(), QStringLiteral("Testo di prova"));
    EXPECT_EQ(w.text1()->font().pointSizeF(), 14.0);
    EXPECT_TRUE(w.text1()->font().bold());
    EXPECT_EQ(w.text1()->palette().color(QPalette::Text), QColor(255, 0, 0));

    s.setSelStart(6);
    s.setSelLength(4);
    w.u1()->click();
    const FontLook expected{family, 14, true, false, true, 0x0000FF};
    EXPECT_EQ(w.look(), expected);
    EXPECT_EQ((FontLook{*s.SelFontName(), *s.SelFontSize(), *s.SelBold(), *s.SelItalic(), *s.SelUnderline(),
                        *s.SelColor()}),
              expected);

    // A size that is no number shows the sample at 10 rather than failing.
    w.dime()->setCurrentText(QStringLiteral("grande"));
    EXPECT_EQ(w.look().size, 10.0f);
}

TEST_F(ToolsWindowTest, WordCountFollowsTheDocument)
{
    St w(s);
    EXPECT_EQ((QStringList{w.valoreParole()->text(), w.valoreCaratteri()->text(), w.valoreLinee()->text()}),
              (QStringList{"3", "21", "2"}));
    s.setText(QString());
    w.aggiorna();
    EXPECT_EQ((QStringList{w.valoreParole()->text(), w.valoreCaratteri()->text(), w.valoreLinee()->text()}),
              (QStringList{"0", "0", "0"}));
    EXPECT_TRUE(w.timer()->isActive());
}

}  // namespace
