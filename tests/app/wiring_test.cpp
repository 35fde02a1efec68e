// The main window reaching the features built beside it: what a person
// does through the menus, the toolbars and the macros lands in the feature,
// and what the feature changes shows in the window.
#include "app/main_layout.h"
#include "app/main_window.h"
#include "controls/cmb.h"
#include "controls/form_tast.h"
#include "core/autosave.h"
#include "core/recent_files.h"
#include "macro/interpreter.h"
#include "print/frm_imp.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>

namespace tornelia {
namespace {

using testing::ShownWindowTest;

// The File menu's recent part: the separator's state, then each shown entry.
QStringList recentPart(MainWindow& w)
{
    QStringList out{w.fileMenu()->actions().at(14)->isVisible() ? "-" : "no separator"};
    for (int i = 0; i < RecentFiles::kSlots; ++i)
        if (w.recentEntry(i)->isVisible())
            out << w.recentEntry(i)->text();
    return out;
}

class WiringTest : public ShownWindowTest {
protected:
    QString writeFile(const QString& name, const QByteArray& bytes)
    {
        const QString path = t.folder.filePath(name);
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        f.write(bytes);
        return path;
    }
    // Picks item `text` of a combo as the person would from its list.
    static void pick(QComboBox* combo, const QString& text)
    {
        const int i = combo->findText(text);
        ASSERT_GE(i, 0) << text.toStdString();
        combo->setCurrentIndex(i);
        emit combo->activated(i);
    }
};

TEST_F(WiringTest, RecentFilesFollowOpeningAndClearingInTheOptions)
{
    QStringList seen{recentPart(window).join(" | ")};
    const QString a = writeFile("a.txt", "primo");
    const QString b = writeFile("b.txt", "secondo");
    window.Aprii(a);
    window.Aprii(b);
    seen << recentPart(window).join(" | ");
    // Opening the older one again keeps the order.
    window.recentEntry(1)->trigger();
    seen << recentPart(window).join(" | ") + " / " + testo().Text();

    // "Cancella l'elenco dei file recenti" in the options empties the menu at once.
    QTimer::singleShot(0, [&] {
        QWidget* d = QApplication::activeModalWidget();
        ASSERT_NE(d, nullptr);
        for (QPushButton* button : d->findChildren<QPushButton*>())
            if (button->text() == "Cancella l'elenco dei file recenti")
                button->click();
        d->close();
    });
    window.action("mnuOpzioni")->trigger();
    seen << recentPart(window).join(" | ");
    EXPECT_EQ(seen, (QStringList{"no separator", "- | " + b + " | " + a, "- | " + b + " | " + a + " / primo",
                                 "no separator"}));
    EXPECT_TRUE(t.messages->said.contains("File recenti | L'elenco dei file recenti è stato cancellato. | 0 | 1"));
}

TEST_F(WiringTest, AutosaveButtonAndIntervalReachTheTimer)
{
    QAction* button = window.toolButton(1, 18);
    QStringList seen;
    auto state = [&] {
        seen << QString("%1 %2 %3")
                    .arg(button->isChecked() ? "pressed" : "raised")
                    .arg(window.autosave().attivo() ? "on" : "off")
                    .arg(window.autosave().TimAuTO().isActive() ? "ticking" : "still");
    };
    state();
    button->trigger();
    state();
    button->trigger();
    state();
    // A start with an interval sets the timer going.
    t.context->settings().scriviReg(kApp, "Salva", "0", "3");
    window.Form_Load({});
    state();
    EXPECT_EQ(seen, (QStringList{"pressed on still", "raised off still", "pressed on still", "pressed on ticking"}));
    EXPECT_EQ(window.autosave().minuti(), 3);
}

TEST_F(WiringTest, HighlightComboSetsTheColourAndFollowsTheCaret)
{
    testo().setText("uno due tre");
    ColourCmb* combo = window.CmbC(1);
    testo().setSelStart(4);
    testo().setSelLength(3);
    pick(combo, "Giallo");
    QStringList seen;
    auto at = [&](long start, long length) {
        testo().setSelStart(start);
        testo().setSelLength(length);
        QApplication::processEvents();
        seen << QString("%1+%2 %3").arg(start).arg(length).arg(combo->currentText());
    };
    at(5, 1);
    at(1, 0);
    at(0, 6);
    // Any other colour, asked for, goes in through the RTF and joins the list.
    t.dialogs->colour = 0x336699;
    testo().setSelStart(8);
    testo().setSelLength(3);
    pick(combo, "Altro colore...");
    at(9, 1);
    // The undo store takes each change.
    window.UnDoo();
    at(9, 1);
    at(5, 1);
    EXPECT_EQ(seen, (QStringList{"5+1 Giallo", "1+0 Bianco", "0+6 ", "9+1 #996633", "9+1 Bianco", "5+1 Giallo"}));
    EXPECT_EQ(testo().Text(), "uno due tre");
}

TEST_F(WiringTest, TextColourComboColoursTheSelection)
{
    testo().setText("rosso");
    testo().setSelStart(0);
    testo().setSelLength(5);
    pick(window.CmbC(0), "Rosso");
    EXPECT_EQ(testo().SelColor(), std::optional<Colour>(0x0000FF));
    t.dialogs->colour = 0x102030;
    pick(window.CmbC(0), "Altro colore...");
    EXPECT_EQ(testo().SelColor(), std::optional<Colour>(0x102030));
    // The dialog given up leaves the colour.
    t.dialogs->colour.reset();
    pick(window.CmbC(0), "Altro colore...");
    EXPECT_EQ(testo().SelColor(), std::optional<Colour>(0x102030));
    EXPECT_EQ(window.CmbC(0)->currentText(), "#302010");
}

TEST_F(WiringTest, ViewMenuSwitchesThePageLayoutRulerAndZoom)
{
    QStringList seen;
    auto state = [&] {
        const auto& page = window.editor()->pageLayout();
        seen << QString("%1 %2 ruler %3%4 %5")
                    .arg(page ? "page" : "normal")
                    .arg(t.context->settings().leggiReg(kApp, "TipoVis", "1"))
                    .arg(window.action("mnuRighello")->isEnabled() ? "on" : "off")
                    .arg(window.action("mnuRighello")->isChecked() ? " checked" : "")
                    .arg(window.cbZoom()->currentText());
    };
    state();
    window.action("mnuVisPagina")->trigger();
    state();
    const double width100 = window.editor()->pageLayout()->textWidth;
    window.action("mnuRighello")->trigger();
    state();
    window.action("mnuZoom8")->trigger();  // 200%
    state();
    int num = 0;
    int den = 0;
    testo().GetZoom(num, den);
    seen << QString("%1/%2").arg(num).arg(den);
    window.action("mnuVisNormale")->trigger();
    state();
    EXPECT_EQ(seen, (QStringList{"normal  ruler off 100%", "page False ruler on checked 100%",
                                 "page False ruler on 100%", "page False ruler on 200%", "2/1",
                                 "normal True ruler off 200%"}));
    EXPECT_GT(width100, 0);
}

TEST_F(WiringTest, ConfirmedPageSetupRelaysThePageView)
{
    window.action("mnuVisPagina")->trigger();
    const PageLayout before = *window.editor()->pageLayout();
    window.action("mnuImpostaPagina")->trigger();
    auto* dialog = window.findChild<FrmImp*>();
    ASSERT_NE(dialog, nullptr);
    PageSettings wide;
    wide.MargineSin = 4;
    wide.Orientamento = 2;
    emit dialog->confirmed(wide);
    const PageLayout after = *window.editor()->pageLayout();
    // Landscape gives the text more room even with the wider left margin.
    EXPECT_EQ(after.left, 2 * before.left);
    EXPECT_GT(after.textWidth, before.textWidth);
    EXPECT_EQ(t.context->settings().leggiReg(kApp, "Margini", "4"), "2");
    dialog->close();
}

TEST_F(WiringTest, KeyboardShowsAndHidesFromMenuButtonAndMacro)
{
    QStringList seen;
    auto state = [&] {
        QApplication::processEvents();
        seen << QString("%1 %2 %3 %4")
                    .arg(window.keyboard()->isVisible() ? "shown" : "hidden")
                    .arg(window.action("mnuTastiera")->isChecked() ? "checked" : "-")
                    .arg(window.toolButton(0, 26)->isChecked() ? "pressed" : "-")
                    .arg(t.context->settings().leggiReg(kApp, "Tast", "1"));
    };
    window.action("mnuTastiera")->trigger();
    state();
    window.toolButton(0, 26)->trigger();
    state();
    c macro(MacroHost{testo(), t.context->messages(), window, &t.context->document(), &t.context->undo()});
    macro.ScriptText = "tast(\"0\")";
    macro.ScriptExecute();
    state();
    // The keyboard types into the document as the keys would.
    window.keyboard()->premi("x");
    macro.ScriptText = "tast(\"1\")";
    macro.ScriptExecute();
    state();
    EXPECT_EQ(seen, (QStringList{"shown checked pressed True", "hidden - - False", "shown checked pressed False",
                                 "hidden - - False"}));
    EXPECT_EQ(testo().Text(), "x");
}

TEST_F(WiringTest, CaretMovedWithoutTypingMovesTheStatusLine)
{
    testo().setText("uno\rdue\rtre");
    QStringList seen;
    // Positions count a paragraph's end as two characters.
    for (long at : {11L, 5L, 0L}) {
        testo().setSelStart(at);
        QApplication::processEvents();
        seen << window.statusPanel(2)->text();
    }
    EXPECT_EQ(seen, (QStringList{"Lin: 3, Col: 2", "Lin: 2, Col: 1", "Lin: 1, Col: 1"}));
}

}  // namespace
}  // namespace tornelia
