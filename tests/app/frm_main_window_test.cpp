// The main window's start and close as the settings see them, and the
// controls that follow the caret.
#include "app/main_window.h"
#include "controls/cmb.h"
#include "controls/editor_view.h"
#include "core/autosave.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QSettings>
#include <QToolBar>

namespace tornelia {
namespace {

// The whole settings file, section by section, as "section/key=value".
QStringList settingsOf(testing::TestContext& t, const QStringList& sections)
{
    QStringList out;
    SettingsStore& s = t.context->settings();
    for (const QString& entry : sections) {
        const QString section = entry.section('/', 0, 0);
        const QString key = entry.section('/', 1);
        out << entry + "=" + s.leggiReg(kApp, section, key, "<none>");
    }
    return out;
}

using testing::key;
using testing::typeKeys;

TEST(FrmMainStartTest, StartReadsTheSettingsAndOpensTheCommandLine)
{
    QCoreApplication::setApplicationVersion("2.5.1");
    testing::TestContext t;
    SettingsStore& s = t.context->settings();
    s.scriviReg(kApp, "Ann", "1", "True");
    s.scriviReg(kApp, "Toolbar 1", "1", "False");
    s.scriviReg(kApp, "Font", "1", "Courier New");
    s.scriviReg(kApp, "Font", "2", "14");
    s.scriviReg(kApp, "Appunti", "1", "1");
    s.scriviReg(kApp, "Righello", "1", "True");
    s.scriviReg(kApp, "TipoVis", "1", "False");
    s.scriviReg(kApp, "Salva", "0", "10");
    QFile updater(t.folder.filePath("aggiorna.sh"));
    ASSERT_TRUE(updater.open(QIODevice::WriteOnly));
    updater.close();
    s.scriviReg(kApp, "Update", "1", updater.fileName());
    QFile doc(t.folder.filePath("lettera con spazi.txt"));
    ASSERT_TRUE(doc.open(QIODevice::WriteOnly));
    doc.write("Caro Mario,\r\nciao");
    doc.close();

    MainWindow w(*t.context);
    QStringList said;
    w.Form_Load('"' + doc.fileName() + '"', [&](const QString& text) { said << text; });
    EXPECT_EQ(said, (QStringList{"Impostazione casella di testo...", "Caricamento controlli...",
                                 "Caricamento opzioni...", "Caricamento completato"}));

    auto checked = [&](const char* name) { return w.action(name)->isChecked() ? QString(name) : "!" + QString(name); };
    EXPECT_EQ((QStringList{checked("mnuDisabilitaAnnulla"), checked("mnuBarraStandard"),
                           checked("mnuBarraFormattazione"), checked("mnuAppunti"), checked("mnuRighello"),
                           checked("mnuVisPagina"), checked("mnuParNessuno"),
                           w.action("mnuGuida")->isEnabled() ? "guida" : "!guida",
                           w.action("mnuAggiornamento")->isEnabled() ? "agg" : "!agg",
                           w.toolButton(1, 18)->isChecked() ? "autosave" : "!autosave"}),
              (QStringList{"mnuDisabilitaAnnulla", "!mnuBarraStandard", "mnuBarraFormattazione", "mnuAppunti",
                           "mnuRighello", "mnuVisPagina", "mnuParNessuno", "!guida", "agg", "autosave"}));
    EXPECT_TRUE(w.toolbar(0)->isHidden());
    EXPECT_FALSE(w.toolbar(1)->isHidden());
    EXPECT_TRUE(w.toolBarBreak(w.toolbar(1)));
    EXPECT_TRUE(t.context->undo().annullaOff());

    // The document of the command line, its length as saved, the controls in line.
    EXPECT_EQ((QStringList{w.windowTitle(), t.context->testo().Text(), w.statusPanel(2)->text(),
                           w.CbDim()->currentText(), t.context->document().fileCambiato() ? "changed" : "saved"}),
              // A new document takes the default font of the settings.
              (QStringList{"Tornelia - lettera con spazi.txt", "Caro Mario,\r\nciao", "Lin: 1, Col: 1", "14", "saved"}));
    EXPECT_EQ(settingsOf(t, {"Dir/2", "Help/1"}),
              (QStringList{"Dir/2=" + QCoreApplication::applicationDirPath() + "/", "Help/1=<none>"}));
    QFile version(t.folder.filePath("data/Version.dat"));
    ASSERT_TRUE(version.open(QIODevice::ReadOnly));
    EXPECT_EQ(version.readAll(), "2.5.1\r\n");
    EXPECT_TRUE(t.messages->said.isEmpty());
}

// A missing document and an unreadable number start all the same.
TEST(FrmMainStartTest, BadStartValuesGiveANewDocument)
{
    testing::TestContext t;
    t.context->settings().scriviReg(kApp, "Salva", "0", "dieci");
    t.context->settings().scriviReg(kApp, "Toolbar 2", "2", "alto");
    MainWindow w(*t.context);
    w.Form_Load(t.folder.filePath("non esiste.tnl"));
    // A top that is no number reads as the first row, with the other toolbar.
    EXPECT_FALSE(w.toolBarBreak(w.toolbar(1)));
    EXPECT_EQ((QStringList{w.windowTitle(), t.context->document().nomeFile, t.context->testo().Text()}),
              (QStringList{"Tornelia - Documento 1", "Documento 1", ""}));
    // The interval reads as off: no timer, though the button stays pressed.
    EXPECT_EQ(w.autosave().minuti(), 0);
    EXPECT_FALSE(w.autosave().TimAuTO().isActive());
    EXPECT_TRUE(w.toolButton(1, 18)->isChecked());
    EXPECT_TRUE(t.messages->said.isEmpty());
}

// Each answer of the close question, on a window of its own: what stays
// in the text and what the settings get.
TEST(FrmMainCloseTest, EachAnswerLeavesItsTrace)
{
    const QStringList keys{"Toolbar 1/1", "Toolbar 2/1"};
    QStringList results;
    for (const char* answer : {"", "an", "no", "si"}) {
        testing::TestContext t;
        MainWindow w(*t.context);
        w.Form_Load({});
        w.show();
        w.toggleToolbar(1);  // hidden, and remembered at once
        t.context->settings().scriviReg(kApp, "Toolbar 1", "1", "");
        if (*answer) {
            t.context->testo().setText("lavoro");
            t.context->undo().unDO();
            t.messages->answers = {answer};
            t.dialogs->savePath = t.folder.filePath("salvato.txt");
        }
        const bool closed = w.close();
        QFile saved(t.folder.filePath("salvato.txt"));
        results << QStringList{answer, closed ? "closed" : "open", t.context->testo().Text(),
                               QString::number(t.context->undo().passoTot()),
                               saved.open(QIODevice::ReadOnly) ? QString(saved.readAll()) : "-"}
                           .join(" ") + " | " + settingsOf(t, keys).join(" ");
    }
    EXPECT_EQ(results.join("\n").toStdString(),
              QStringList({" closed  0 - | Toolbar 1/1=True Toolbar 2/1=False",
                           "an open lavoro 1 - | Toolbar 1/1=<none> Toolbar 2/1=False",
                           "no closed  0 - | Toolbar 1/1=<none> Toolbar 2/1=False",
                           "si closed  0 lavoro | Toolbar 1/1=True Toolbar 2/1=False"})
                  .join("\n")
                  .toStdString());
}

class FrmMainShownTest : public testing::ShownWindowTest {};

TEST_F(FrmMainShownTest, ControlsFollowTheCaret)
{
    EditorView* view = window.editor();
    typeKeys(view, "riga uno\rdue");
    QStringList seen{window.statusPanel(2)->text()};

    // Control+A centres the paragraph and selects nothing; the buttons show it.
    key(view, Qt::Key_A, Qt::ControlModifier);
    QApplication::processEvents();
    seen << QString::number(testo().SelAlignment().value_or(-1)) + " " + QString::number(testo().SelLength());
    auto pressed = [this] {
        QString s;
        for (int i : {6, 7, 8, 9, 13, 14, 15})
            s += window.toolButton(1, i)->isChecked() ? '1' : '0';
        return s + (window.action("mnuCentrato")->isChecked() ? " centred" : "");
    };
    seen << pressed();
    testo().setSelStart(0);
    testo().setSelLength(4);
    window.Clic(37);
    window.Clic(40);
    seen << pressed();
    testo().setSelColor(0x0000FF);
    window.aggText();
    seen << window.CmbC(0)->currentText() + " " + window.CmbC(1)->currentText();
    EXPECT_EQ(seen, (QStringList{"Lin: 2, Col: 4", "2 0", "0000010 centred", "1001100", "Rosso Bianco"}));
}

TEST_F(FrmMainShownTest, RightButtonPopsTheMenuThatFits)
{
    testo().setText("uno due");
    auto rightClick = [this](long start, long length) {
        testo().setSelStart(start);
        testo().setSelLength(length);
        QWidget* port = window.editor()->viewport();
        const QPoint at(5, 5);
        QMouseEvent press(QEvent::MouseButtonPress, at, port->mapToGlobal(at), Qt::RightButton, Qt::RightButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(port, &press);
        QMenu* menu = window.contextMenu("mnu");
        QString state = menu->isVisible() ? "shown" : "hidden";
        for (const char* name : {"mnumnTaglia", "mnumnCopia", "mnumnIncolla", "mnumnEsegui", "mnuSpcFormattazione"})
            state += window.action(name)->isEnabled() ? " +" : " -";
        menu->hide();
        return state;
    };
    // The right button leaves the selection as it is.
    EXPECT_EQ((QStringList{rightClick(0, 3), rightClick(2, 0), rightClick(3, 1)}),
              (QStringList{"shown + + + + +", "shown - - + - -", "hidden - - + - -"}));
}

// The text view claims the editing keys (Control+Z, Y ...) before any
// shortcut; those the menus carry must reach the menus.
TEST_F(FrmMainShownTest, MenuKeysAreNotClaimedByTheText)
{
    EditorView* view = window.editor();
    QStringList claimed;
    for (const auto& [k, name] : {std::pair{Qt::Key_Z, "Z"}, {Qt::Key_Y, "Y"}, {Qt::Key_S, "S"}, {Qt::Key_C, "C"}}) {
        QKeyEvent e(QEvent::ShortcutOverride, k, Qt::ControlModifier, QString());
        e.ignore();
        QCoreApplication::sendEvent(view, &e);
        if (e.isAccepted())
            claimed << name;
    }
    // Control+C is the text's own, through its key handling.
    EXPECT_EQ(claimed, QStringList{"C"});

    typeKeys(view, "uno due ");
    const bool enabled = window.action("mnuAnnulla")->isEnabled();
    window.action("mnuAnnulla")->trigger();
    EXPECT_EQ((QStringList{enabled ? "enabled" : "disabled", testo().Text()}), (QStringList{"enabled", "uno due"}));
}

}  // namespace
}  // namespace tornelia
