// Every entry of the menus and every toolbar button reaches its procedure:
// a window that records the procedures instead of running them is walked
// entry by entry, and the whole record is compared.
#include "app/main_window.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QWidgetAction>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

namespace tornelia {
namespace {

#define REC0(name) \
    void name() override { calls << #name; }
#define REC1(name, T) \
    void name(T a) override { calls << QStringLiteral(#name " ") + text(a); }

class RecordingWindow : public MainWindow {
public:
    using MainWindow::MainWindow;
    QStringList calls;
    int cmen = 0;

    static QString text(const QString& s) { return '"' + s + '"'; }
    static QString text(int i) { return QString::number(i); }
    static QString text(bool b) { return b ? "on" : "off"; }

    void showWindow(Window w) override { calls << "show " + testing::windowName(w); }
    void CmeN() override { ++cmen; }
    REC1(Novo, int)
    REC0(nuovaSessione)
    REC1(Aprii, const QString&)
    REC1(Salvare, const QString&)
    REC0(SalvareN)
    REC0(DelFile)
    REC0(pROP)
    REC1(RecENt, const QString&)
    REC0(esci)
    REC0(disabilitaAnnulla)
    REC0(UnDoo)
    REC0(RedOO)
    REC0(CopYa)
    REC0(copiaSoloTesto)
    REC1(INco, const QString&)
    REC0(TaGl)
    REC0(DeleteSelectedText)
    REC0(appunti)
    REC0(opzioniAppunti)
    REC0(selezionaRiga)
    REC0(selezionaTutto)
    REC0(FindA)
    REC0(maiuscoleF2)
    REC0(inserisciData)
    REC0(eseguiSelezione)
    REC0(CorrEzionE)
    REC0(chooseFont)
    REC0(coloreTesto)
    REC0(coloreSfondo)
    REC1(Clic, int)
    REC1(setAlignment, int)
    REC1(setCharOffset, int)
    REC0(paragrafoPuntato)
    REC0(nessunPuntato)
    REC0(SelVisible)
    REC0(HiddenTextShow)
    REC0(salvaImmagine)
    REC0(proprietaImmagine)
    REC1(toggleToolbar, int)
    REC0(toggleRuler)
    REC1(setViewKind, bool)
    REC1(zoom, const QString&)
    REC0(TasTiER)
    REC0(CripT)
    REC0(DeCripT)
    REC0(cifraturaDocumento)
    REC0(cifraDocumentoCorrente)
    REC0(sarbena)
    REC0(guida)
    REC0(aggiornamento)
    REC0(DeBugG)
    REC0(sitoWeb)
    REC0(informazioni)
    REC1(autosaveToggled, bool)
    REC0(AntEP)
    REC0(StaMpa)
    REC0(PaRImM)
    REC0(CpAr)
    REC1(MaIL, const QString&)
    REC0(InSFilE)
};

// Each entry as "caption [key] = what it called", submenus as "[title]" followed
// by their entries with "  " in front, separators as "-".
QStringList walk(RecordingWindow& w, QMenu* menu, const QString& indent = {})
{
    QStringList out;
    for (QAction* a : menu->actions()) {
        if (a->isSeparator()) {
            out << indent + "-";
        } else if (a->menu()) {
            out << indent + "[" + a->text() + "]";
            out << walk(w, a->menu(), indent + "  ");
        } else if (!a->text().isEmpty()) {
            w.calls.clear();
            // Entries that wait for a state (undo, guide) are tried all the same.
            a->setEnabled(true);
            a->trigger();
            const QString keys = a->shortcut().isEmpty() ? QString() : " [" + a->shortcut().toString() + "]";
            out << indent + a->text() + keys + " = " + w.calls.join(", ");
        }
    }
    return out;
}

TEST(CommandSurfaceTest, MenusHoldTheirEntriesInOrderAndEachReachesItsProcedure)
{
    testing::TestContext t;
    RecordingWindow w(*t.context);
    w.recentEntry(0)->setText("/tmp/lettera.tnl");
    w.recentEntry(0)->setVisible(true);
    const int cmenBefore = w.cmen;
    QStringList all;
    int triggered = 0;
    for (QMenu* m : w.menus()) {
        all << "[" + m->title() + "]";
        const QStringList entries = walk(w, m, "  ");
        for (const QString& e : entries)
            triggered += e.contains(" = ") ? 1 : 0;
        all << entries;
    }
    const QStringList expected{
        "[&File]",
        "  &Nuovo... [Ctrl+N] = Novo 1",
        "  Nuova sessione di Tornelia...           = nuovaSessione",
        "  -",
        "  &Apri [Ctrl+O] = Aprii \"\"",
        "  &Salva [Ctrl+S] = Salvare \"\"",
        "  Salva con nome... = SalvareN",
        "  -",
        "  E&limina file corrente = DelFile",
        "  &Proprietà file corrente... = pROP",
        "  -",
        "  &Imposta pagina... = show frmImp",
        "  -",
        "  Ant&eprima di stampa... = AntEP",
        "  &Stampa... [Ctrl+P] = StaMpa",
        "  -",
        "  /tmp/lettera.tnl = RecENt \"/tmp/lettera.tnl\"",
        "  -",
        "  Esci = esci",
        "[&Modifica]",
        "  Disabilita annulla = disabilitaAnnulla",
        "  -",
        // Before any change the undo entries say why they are off.
        "  Annulla disabilitato [Ctrl+Z] = UnDoo",
        "  Impossibile ripristinare [Ctrl+Y] = RedOO",
        "  -",
        "  Ta&glia = TaGl",
        "  &Copia = CopYa",
        "  &Incolla = INco \"\"",
        "  Copia / incolla speciale... = show frmInc",
        "  &Visualizza appunti... = show frmApp",
        "  &Appunti di Tornelia... = appunti",
        "  -",
        "  Seleziona riga = selezionaRiga",
        "  Seleziona t&utto = selezionaTutto",
        "  -",
        "  &Maiuscole / minuscole...                        = show frmMai",
        "  Conteggio &parole... = CpAr",
        "  Vai a... [Ctrl+G] = show frmGoTo",
        "  &Trova... [Ctrl+F] = FindA",
        "  -",
        "  Invia a... = MaIL \"\"",
        "  maiuscole F2 = maiuscoleF2",
        "[&Testo]",
        "  Font... = chooseFont",
        "  [C&olore]",
        "    Colore &testo... = coloreTesto",
        "    Colore &sfondo... = coloreSfondo",
        "    Colori ed evidenziazioni speciali... = show frmCE",
        "  [St&ile carattere]",
        "    &Grassetto [Ctrl+B] = Clic 37",
        "    &Corsivo [Ctrl+I] = Clic 38",
        "    &Barrato = Clic 40",
        "    &Sottolineato normale [Ctrl+U] = Clic 39",
        "    Sottolineato s&peciale... = show frmSott",
        "  [&Allineamento]",
        "    &Sinistra = setAlignment 0",
        "    &Centrato = setAlignment 2",
        "    &Destra = setAlignment 1",
        "  [&Posizione]",
        "    &Normale = setCharOffset 0",
        "    &Apice = setCharOffset 50",
        "    &Pedice = setCharOffset -50",
        "    &Livello personalizzato... = show FrmApiPed",
        "  -",
        "  Paragrafo puntato = paragrafoPuntato",
        "  Paragrafo puntato con immagine...             = PaRImM",
        "  -",
        "  Correzione testo... = CorrEzionE",
        "  Stili... = show FrmSt",
        "  Converti in &HTML... = show frmHTM",
        "  -",
        "  [Testo nascost&o]",
        "    &Nascondi testo selezionato        = SelVisible",
        "    Mostra testo nascosto                 = HiddenTextShow",
        "  Moto ondoso... = show frmOnd",
        "  Esegui selezionato = eseguiSelezione",
        "  -",
        "  [Inse&risci]",
        "    &Data = inserisciData",
        "    Data e ora &personalizzate...       = show frmTimeDate",
        "    -",
        "    &Immagine... = show frmIm",
        "    &Linea... = show Form1",
        "    &Testo speciale... = show form2",
        "    &Carattere speciale... = show form3",
        "    &File... = InSFilE",
        "    &Testo ciclico... = show frmcic",
        "[&Visualizza]",
        "  &Visualizzatore caratteri... = show Fontt",
        "  -",
        "  Barra strumenti &Standard           = toggleToolbar 0",
        "  Barra strumenti &Formattazione                = toggleToolbar 1",
        "  &Righello = toggleRuler",
        "  [&Tipo di visualizzazione]",
        "    Visualizzazione Normale = setViewKind off",
        "    Visualizzazione pagina  (WYSIWYG) = setViewKind on",
        "  [&Zoom]",
        "    50% = zoom \"50%\"",
        "    75% = zoom \"75%\"",
        "    80% = zoom \"80%\"",
        "    90% = zoom \"90%\"",
        "    100% - dimensioni reali      . = zoom \"100% - dimensioni reali      .\"",
        "    110% = zoom \"110%\"",
        "    120% = zoom \"120%\"",
        "    150% = zoom \"150%\"",
        "    200% = zoom \"200%\"",
        "    250% = zoom \"250%\"",
        "  -",
        "  &Cripta documento... = CripT",
        "  &Decripta documento... = DeCripT",
        "  -",
        "  &Macro... = show frmMac",
        "  Correzione automatica... = show frmCor",
        "  &Opzioni... = show FrmOpz",
        "  &Tastiera = TasTiER",
        "  -",
        "  Recupero documenti... = show frmRecuper",
        "[&Extras]",
        "  &Sarbena...       = sarbena",
        "  [C&ifratura]",
        "    &Cifratura/decifratura documento... = cifraturaDocumento",
        "    Cifra &documento corrente... = cifraDocumentoCorrente",
        "  C&ompressione documento... = show frmZip",
        "[&Help]",
        "  Guida... [F1] = guida",
        "  &Aggiornamento programma... = aggiornamento",
        "  -",
        "  Segnala errori... = DeBugG",
        "  Il sito di Tornelia... = sitoWeb",
        "  -",
        "  &Informazioni su Tornelia...      = informazioni",
    };
    EXPECT_EQ(all.join("\n").toStdString(), expected.join("\n").toStdString());
    // The zoom entries show their level in the zoom combo.
    EXPECT_EQ(w.cbZoom()->currentText(), "250%");
    // After each command the undo entries are brought up to date.
    EXPECT_EQ(w.cmen - cmenBefore, triggered);
    // The recent files are items 15 to 19 of File, counting separators.
    EXPECT_EQ(w.fileMenu()->actions().indexOf(w.recentEntry(0)), 15);
    EXPECT_EQ(w.fileMenu()->actions().indexOf(w.recentEntry(4)), 19);
}

TEST(CommandSurfaceTest, ToolbarsHoldTheirButtonsAtTheirIndexes)
{
    testing::TestContext t;
    RecordingWindow w(*t.context);
    w.show();
    QStringList bars[2];
    for (int bar = 0; bar < 2; ++bar) {
        for (int i = 0; i < w.toolButtonCount(bar); ++i) {
            QAction* a = w.toolButton(bar, i);
            w.calls.clear();
            if (a->isSeparator()) {
                bars[bar] << QString::number(i) + " -";
                continue;
            }
            if (qobject_cast<QWidgetAction*>(a)) {
                bars[bar] << QString::number(i) + " " + w.toolbar(bar)->widgetForAction(a)->objectName();
                continue;
            }
            a->setEnabled(true);
            a->trigger();
            bars[bar] << QString::number(i) + " " + a->text() + " = " + w.calls.join(", ");
        }
    }
    EXPECT_EQ(bars[0], (QStringList{
                           "0 Nuovo file = Novo 0",
                           "1 Apri documento esistente = Aprii \"\"",
                           "2 Salva documento = Salvare \"\"",
                           "3 -",
                           "4 Stampa = StaMpa",
                           "5 Anteprima di stampa = AntEP",
                           "6 Imposta pagina = show frmImp",
                           "7 -",
                           "8 Taglia = TaGl",
                           "9 Copia = CopYa",
                           "10 Incolla = INco \"\"",
                           "11 Cancella testo selezionato = DeleteSelectedText",
                           "12 -",
                           "13 Annulla ultima azione = UnDoo",
                           "14 Ripristina ultima azione = RedOO",
                           "15 -",
                           "16 Invia a... = MaIL \"\"",
                           "17 Esegui selezionato = eseguiSelezione",
                           "18 -",
                           "19 Iserisci immagine = show frmIm",
                           "20 Inserisci linea = show Form1",
                           "21 Iserisci testo speciale = show form2",
                           "22 -",
                           "23 Inserisci data/ora = show frmTimeDate",
                           "24 -",
                           "25 Opzioni = show FrmOpz",
                           "26 Tastiera = TasTiER",
                       }));
    EXPECT_EQ(bars[1], (QStringList{
                           "0 CbFont",
                           "1 CbDim",
                           "2 CbSti",
                           "3 cbZoom",
                           "4 CmbC0",
                           "5 CmbC1",
                           "6 Grassetto = Clic 37",
                           "7 Corsivo = Clic 38",
                           "8 Sottolineato = Clic 39",
                           "9 Barrato = Clic 40",
                           "10 -",
                           "11 Trova = FindA",
                           "12 -",
                           "13 Allineamento a sinistra = setAlignment 0",
                           "14 Allineamento centrato = setAlignment 2",
                           "15 Allineamento a destra = setAlignment 1",
                           "16 Paragrafo puntato = ",
                           "17 -",
                           "18 Attiva/disattiva salvataggio automatico = autosaveToggled off",
                       }));
    // The bullet button drops its menu from under itself.
    QMenu* bullets = w.contextMenu("mnuP");
    EXPECT_TRUE(bullets->isVisible());
    QStringList entries = walk(w, bullets);
    EXPECT_EQ(entries, (QStringList{"Paragrafo puntato standard                       = paragrafoPuntato",
                                    "Paragrafo puntato Immagini         . = PaRImM",
                                    "Nessun paragrafo puntato            = nessunPuntato"}));
    bullets->hide();
}

TEST(CommandSurfaceTest, ContextMenusReachTheirProcedures)
{
    testing::TestContext t;
    RecordingWindow w(*t.context);
    QStringList all;
    for (const char* name : {"mnu", "mnuImma", "mnuCl", "mnuIn"}) {
        all << QString("[") + name + "]";
        all << walk(w, w.contextMenu(name), "  ");
    }
    EXPECT_EQ(all, (QStringList{
                       "[mnu]",
                       "  &Taglia = TaGl",
                       "  &Copia = CopYa",
                       "  &Incolla = INco \"\"",
                       "  [Speciali]",
                       "    [Copia]",
                       "      Copia testo e formattazione = CopYa",
                       "      Copia solo testo = copiaSoloTesto",
                       "    [Incolla       .]",
                       "      Mantieni formattazione originale = INco \"0\"",
                       "      Applica formattazione di destinaz.       . = INco \"1\"",
                       "      Incolla solo testo = INco \"2\"",
                       "  -",
                       "  &Trova = FindA",
                       "  &Esegui selezionato                             = eseguiSelezione",
                       "[mnuImma]",
                       "  &Taglia = TaGl",
                       "  &Copia = CopYa",
                       "  &Incolla = INco \"\"",
                       "  -",
                       "  Salva immagine con nome... = salvaImmagine",
                       "  Proprietà immagine... = proprietaImmagine",
                       "[mnuCl]",
                       "  &Opzioni appunti...                                       = opzioniAppunti",
                       "  &Nascondi = appunti",
                       "[mnuIn]",
                       "  &Incolla = INco \"\"",
                   }));
}

}  // namespace
}  // namespace tornelia
