#include "app/command_table.h"

#include "app/main_window.h"
#include "controls/cmb.h"

#include <QAction>
#include <QComboBox>

#include <array>

namespace tornelia {

bool Need::metBy(const WindowRegistry& registry) const
{
    switch (kind) {
    case Kind::Nothing:
        return true;
    case Kind::Window:
        return registry.has(tornelia::Window(id));
    case Kind::Feature:
        return registry.hasFeature(tornelia::Feature(id));
    }
    return false;
}

QString toolButtonName(int bar, int index)
{
    return QStringLiteral("t%1_%2").arg(bar).arg(index);
}

QString rowName(const CommandRow& row)
{
    if (row.button >= 0)
        return toolButtonName(row.parent[1] - '0', row.button);
    return QString::fromLatin1(row.id);
}

void applyNeed(QAction* action, const CommandRow& row, const WindowRegistry& registry)
{
    if (row.need.metBy(registry))
        return;
    action->setEnabled(false);
    action->setToolTip(kNotYetAvailable);
    action->setStatusTip(kNotYetAvailable);
}

namespace {

constexpr QKeyCombination kNone{};
constexpr QKeyCombination ctrl(Qt::Key k) { return QKeyCombination(Qt::ControlModifier, k); }

constexpr Need W(Window w) { return Need::window(w); }
constexpr Need F(Feature f) { return Need::feature(f); }
constexpr Need kAny = Need::nothing();

constexpr CommandRow menu(const char* id, const char* parent, const char* caption, unsigned flags = 0)
{
    return {RowKind::Menu, id, parent, -1, caption, "", "", kNone, kAny, nullptr, flags};
}
constexpr CommandRow sep(const char* parent)
{
    return {RowKind::Separator, "", parent, -1, "", "", "", kNone, kAny, nullptr, 0};
}
constexpr CommandRow item(const char* id, const char* parent, const char* caption, const char* icon,
                          QKeyCombination key, Need need, void (*run)(MainWindow&), unsigned flags = 0)
{
    return {RowKind::Command, id, parent, -1, caption, icon, "", key, need, run, flags};
}
constexpr CommandRow button(int bar, int index, const char* tip, const char* icon, Need need,
                            void (*run)(MainWindow&), unsigned flags = 0)
{
    return {RowKind::Command, "", bar == 0 ? "t0" : "t1", index, "", icon, tip, kNone, need, run, flags};
}
constexpr CommandRow recent(const char* id)
{
    return {RowKind::Recent, id, "mnuf", -1, "", "", "", kNone, kAny, nullptr, Hidden};
}
// id is the combo's own name; its action is named by its place, as a button's.
constexpr CommandRow combo(int index, const char* id, const char* tip, void (*run)(MainWindow&))
{
    return {RowKind::Combo, id, "t1", index, "", "", tip, kNone, kAny, run, 0};
}
constexpr CommandRow key(const char* id, QKeyCombination k, Need need = kAny)
{
    return {RowKind::Key, id, "", -1, "", "", "", k, need, nullptr, 0};
}
// The row with the macro command that reaches the same procedure.
constexpr CommandRow mac(const char* name, CommandRow row)
{
    row.macro = name;
    return row;
}

#define PROC(body) [](MainWindow& w) { body; }
#define SHOW(win) W(Window::win), [](MainWindow& w) { w.showWindow(Window::win); }

template <int N>
void zoomTo(MainWindow& w)
{
    static const char* const levels[] = {"50%", "75%", "80%", "90%", "100% - dimensioni reali      .",
                                         "110%", "120%", "150%", "200%", "250%"};
    const QString level = QString::fromLatin1(levels[N]);
    if (w.cbZoom())
        w.cbZoom()->setCurrentText(level);
    w.zoom(level);
}

// clang-format off
constexpr CommandRow kRows[] = {
    // File. The recent files stand at items 15 to 19, counting the separators.
    menu("mnuf", "", "&File"),
    mac("new", item("mnuNuovo", "mnuf", "&Nuovo...", "document-new", ctrl(Qt::Key_N), kAny, PROC(w.Novo(1)))),
    item("mnuNuovaSessione", "mnuf", "Nuova sessione di Tornelia...          ", "window-new", kNone, kAny,
         PROC(w.nuovaSessione())),
    sep("mnuf"),
    mac("open", item("mnuApri", "mnuf", "&Apri", "document-open", ctrl(Qt::Key_O), kAny, PROC(w.Aprii(QString())))),
    mac("save", item("mnuSalva", "mnuf", "&Salva", "document-save", ctrl(Qt::Key_S), kAny, PROC(w.Salvare(QString())))),
    item("mnuSalvaConNome", "mnuf", "Salva con nome...", "document-save-as", kNone, kAny, PROC(w.SalvareN())),
    sep("mnuf"),
    mac("delete", item("mnuElimina", "mnuf", "E&limina file corrente", "edit-delete", kNone, kAny, PROC(w.DelFile()))),
    mac("prop", item("mnuProprieta", "mnuf", "&Proprietà file corrente...", "document-properties", kNone, kAny,
         PROC(w.pROP()))),
    sep("mnuf"),
    mac("pag", item("mnuImpostaPagina", "mnuf", "&Imposta pagina...", "document-page-setup", kNone, SHOW(frmImp))),
    sep("mnuf"),
    mac("ant", item("mnuAnteprima", "mnuf", "Ant&eprima di stampa...", "document-print-preview", kNone, F(Feature::AntEP),
         PROC(w.AntEP()))),
    mac("stampa", item("mnuStampa", "mnuf", "&Stampa...", "document-print", ctrl(Qt::Key_P), F(Feature::StaMpa),
         PROC(w.StaMpa()))),
    sep("mnuf"),
    recent("mnuRecente15"), recent("mnuRecente16"), recent("mnuRecente17"), recent("mnuRecente18"),
    recent("mnuRecente19"),
    sep("mnuf"),
    item("mnuEsci", "mnuf", "Esci", "application-exit", kNone, kAny, PROC(w.esci())),

    // Modifica.
    menu("mnum", "", "&Modifica"),
    item("mnuDisabilitaAnnulla", "mnum", "Disabilita annulla", "", kNone, kAny, PROC(w.disabilitaAnnulla()),
         Checkable),
    sep("mnum"),
    mac("undo", item("mnuAnnulla", "mnum", "&Annulla", "edit-undo", ctrl(Qt::Key_Z), kAny, PROC(w.UnDoo()))),
    mac("redo", item("mnuRipristina", "mnum", "&Ripristina", "edit-redo", ctrl(Qt::Key_Y), kAny, PROC(w.RedOO()))),
    sep("mnum"),
    // Control+X, C and V reach these through the text's own keys.
    mac("cut", item("mnuTaglia", "mnum", "Ta&glia", "edit-cut", kNone, kAny, PROC(w.TaGl()))),
    mac("copy", item("mnuCopia", "mnum", "&Copia", "edit-copy", kNone, kAny, PROC(w.CopYa()))),
    mac("paste", item("mnuIncolla", "mnum", "&Incolla", "edit-paste", kNone, kAny, PROC(w.INco(QString())))),
    item("mnuIncollaSpeciale", "mnum", "Copia / incolla speciale...", "", kNone, SHOW(frmInc)),
    item("mnuVisualizzaAppunti", "mnum", "&Visualizza appunti...", "", kNone, SHOW(frmApp)),
    item("mnuAppunti", "mnum", "&Appunti di Tornelia...", "", kNone, F(Feature::appunti), PROC(w.appunti()),
         Checkable),
    sep("mnum"),
    item("mnuSelezionaRiga", "mnum", "Seleziona riga", "", kNone, kAny, PROC(w.selezionaRiga())),
    item("mnuSelezionaTutto", "mnum", "Seleziona t&utto", "edit-select-all", kNone, kAny,
         PROC(w.selezionaTutto())),
    sep("mnum"),
    mac("mai", item("mnuMaiuscole", "mnum", "&Maiuscole / minuscole...                       ", "", kNone, SHOW(frmMai))),
    mac("conta", item("mnuConteggio", "mnum", "Conteggio &parole...", "", kNone, kAny, PROC(w.CpAr()))),
    mac("vai", item("mnuVaiA", "mnum", "Vai a...", "go-jump", ctrl(Qt::Key_G), SHOW(frmGoTo))),
    item("mnuTrova", "mnum", "&Trova...", "edit-find", ctrl(Qt::Key_F), kAny, PROC(w.FindA())),
    sep("mnum"),
    mac("mail", item("mnuInviaA", "mnum", "Invia a...", "mail-send", kNone, F(Feature::MaIL), PROC(w.MaIL(QString())))),
    item("mnuMaiuscoleF2", "mnum", "maiuscole F2", "", kNone, kAny, PROC(w.maiuscoleF2()), Hidden),

    // Testo.
    menu("mnuT", "", "&Testo"),
    item("mnuFont", "mnuT", "Font...", "preferences-desktop-font", kNone, kAny, PROC(w.chooseFont())),
    menu("mnucol", "mnuT", "C&olore"),
    item("mnuColoreTesto", "mnucol", "Colore &testo...", "", kNone, kAny, PROC(w.coloreTesto())),
    item("mnuColoreSfondo", "mnucol", "Colore &sfondo...", "", kNone, kAny, PROC(w.coloreSfondo())),
    item("mnuColoriSpeciali", "mnucol", "Colori ed evidenziazioni speciali...", "", kNone, SHOW(frmCE)),
    menu("mnuSt", "mnuT", "St&ile carattere"),
    mac("gras", item("mnuGrassetto", "mnuSt", "&Grassetto", "format-text-bold", ctrl(Qt::Key_B), kAny, PROC(w.Clic(37)))),
    mac("cors", item("mnuCorsivo", "mnuSt", "&Corsivo", "format-text-italic", ctrl(Qt::Key_I), kAny, PROC(w.Clic(38)))),
    mac("barr", item("mnuBarrato", "mnuSt", "&Barrato", "format-text-strikethrough", kNone, kAny, PROC(w.Clic(40)))),
    mac("sott", item("mnuSottolineato", "mnuSt", "&Sottolineato normale", "format-text-underline", ctrl(Qt::Key_U), kAny,
         PROC(w.Clic(39)))),
    item("mnuSottolineatoSpeciale", "mnuSt", "Sottolineato s&peciale...", "", kNone, SHOW(frmSott)),
    menu("mnual", "mnuT", "&Allineamento"),
    item("mnuSinistra", "mnual", "&Sinistra", "format-justify-left", kNone, kAny, PROC(w.setAlignment(0)),
         Checkable | Exclusive),
    item("mnuCentrato", "mnual", "&Centrato", "format-justify-center", kNone, kAny, PROC(w.setAlignment(2)),
         Checkable | Exclusive),
    item("mnuDestra", "mnual", "&Destra", "format-justify-right", kNone, kAny, PROC(w.setAlignment(1)),
         Checkable | Exclusive),
    menu("mnud", "mnuT", "&Posizione"),
    item("mnuNormale", "mnud", "&Normale", "", kNone, kAny, PROC(w.setCharOffset(0))),
    item("mnuApice", "mnud", "&Apice", "", kNone, kAny, PROC(w.setCharOffset(50))),
    item("mnuPedice", "mnud", "&Pedice", "", kNone, kAny, PROC(w.setCharOffset(-50))),
    item("mnuLivello", "mnud", "&Livello personalizzato...", "", kNone, SHOW(FrmApiPed)),
    sep("mnuT"),
    mac("par", item("mnuParagrafoPuntato", "mnuT", "Paragrafo puntato", "format-indent-more", kNone, kAny,
         PROC(w.paragrafoPuntato()))),
    item("mnuPuntatoImmagine", "mnuT", "Paragrafo puntato con immagine...            ", "", kNone,
         F(Feature::PaRImM), PROC(w.PaRImM())),
    sep("mnuT"),
    item("mnuCorrezioneTesto", "mnuT", "Correzione testo...", "", kNone, F(Feature::CorrEzionE),
         PROC(w.CorrEzionE())),
    item("mnuStili", "mnuT", "Stili...", "", kNone, SHOW(FrmSt)),
    item("mnuHTML", "mnuT", "Converti in &HTML...", "", kNone, SHOW(frmHTM)),
    sep("mnuT"),
    menu("mnun", "mnuT", "Testo nascost&o"),
    item("mnuNascondi", "mnun", "&Nascondi testo selezionato       ", "", kNone, kAny, PROC(w.SelVisible())),
    item("mnuMostraNascosto", "mnun", "Mostra testo nascosto                ", "", kNone, kAny,
         PROC(w.HiddenTextShow())),
    item("mnuMotoOndoso", "mnuT", "Moto ondoso...", "", kNone, SHOW(frmOnd)),
    item("mnuEseguiSelezionato", "mnuT", "Esegui selezionato", "system-run", kNone, kAny,
         PROC(w.eseguiSelezione())),
    sep("mnuT"),
    menu("mnuIns", "mnuT", "Inse&risci"),
    item("mnuData", "mnuIns", "&Data", "", kNone, kAny, PROC(w.inserisciData())),
    item("mnuDataOra", "mnuIns", "Data e ora &personalizzate...      ", "appointment-new", kNone,
         SHOW(frmTimeDate)),
    sep("mnuIns"),
    mac("imm", item("mnuImmagine", "mnuIns", "&Immagine...", "insert-image", kNone, SHOW(frmIm))),
    mac("lin", item("mnuLinea", "mnuIns", "&Linea...", "", kNone, SHOW(Form1))),
    mac("txt", item("mnuTestoSpeciale", "mnuIns", "&Testo speciale...", "insert-text", kNone, SHOW(form2))),
    item("mnuCarattereSpeciale", "mnuIns", "&Carattere speciale...", "", kNone, SHOW(form3)),
    mac("ins", item("mnuInsFile", "mnuIns", "&File...", "", kNone, kAny, PROC(w.InSFilE()))),
    item("mnuTestoCiclico", "mnuIns", "&Testo ciclico...", "", kNone, SHOW(frmcic)),

    // Visualizza.
    menu("mnuv", "", "&Visualizza"),
    item("mnuVisualizzatore", "mnuv", "&Visualizzatore caratteri...", "", kNone, SHOW(Fontt)),
    sep("mnuv"),
    item("mnuBarraStandard", "mnuv", "Barra strumenti &Standard          ", "", kNone, kAny,
         PROC(w.toggleToolbar(0)), Checkable),
    item("mnuBarraFormattazione", "mnuv", "Barra strumenti &Formattazione               ", "", kNone, kAny,
         PROC(w.toggleToolbar(1)), Checkable),
    item("mnuRighello", "mnuv", "&Righello", "", kNone, kAny, PROC(w.toggleRuler()), Checkable),
    menu("mnuTipovis", "mnuv", "&Tipo di visualizzazione"),
    item("mnuVisNormale", "mnuTipovis", "Visualizzazione Normale", "", kNone, kAny, PROC(w.setViewKind(false)),
         Checkable | Exclusive),
    item("mnuVisPagina", "mnuTipovis", "Visualizzazione pagina  (WYSIWYG)", "", kNone, kAny,
         PROC(w.setViewKind(true)), Checkable | Exclusive),
    menu("mnuzoom", "mnuv", "&Zoom"),
    item("mnuZoom0", "mnuzoom", "50%", "", kNone, kAny, zoomTo<0>),
    item("mnuZoom1", "mnuzoom", "75%", "", kNone, kAny, zoomTo<1>),
    item("mnuZoom2", "mnuzoom", "80%", "", kNone, kAny, zoomTo<2>),
    item("mnuZoom3", "mnuzoom", "90%", "", kNone, kAny, zoomTo<3>),
    item("mnuZoom4", "mnuzoom", "100% - dimensioni reali      .", "", kNone, kAny, zoomTo<4>),
    item("mnuZoom5", "mnuzoom", "110%", "", kNone, kAny, zoomTo<5>),
    item("mnuZoom6", "mnuzoom", "120%", "", kNone, kAny, zoomTo<6>),
    item("mnuZoom7", "mnuzoom", "150%", "", kNone, kAny, zoomTo<7>),
    item("mnuZoom8", "mnuzoom", "200%", "", kNone, kAny, zoomTo<8>),
    item("mnuZoom9", "mnuzoom", "250%", "", kNone, kAny, zoomTo<9>),
    sep("mnuv"),
    item("mnuCripta", "mnuv", "&Cripta documento...", "", kNone, F(Feature::CripT), PROC(w.CripT())),
    item("mnuDecripta", "mnuv", "&Decripta documento...", "", kNone, F(Feature::DeCripT), PROC(w.DeCripT())),
    sep("mnuv"),
    item("mnuMacro", "mnuv", "&Macro...", "", kNone, SHOW(frmMac)),
    item("mnuCorrezioneAutomatica", "mnuv", "Correzione automatica...", "", kNone, SHOW(frmCor)),
    item("mnuOpzioni", "mnuv", "&Opzioni...", "preferences-system", kNone, SHOW(FrmOpz)),
    mac("tast", item("mnuTastiera", "mnuv", "&Tastiera", "input-keyboard", kNone, kAny, PROC(w.TasTiER()), Checkable)),
    sep("mnuv"),
    item("mnuRecupero", "mnuv", "Recupero documenti...", "document-revert", kNone, SHOW(frmRecuper)),

    // Extras.
    menu("mnuExt", "", "&Extras"),
    item("mnuSarbena", "mnuExt", "&Sarbena...      ", "", kNone, kAny, PROC(w.sarbena())),
    menu("mnuCifratura", "mnuExt", "C&ifratura"),
    item("mnuExCr1", "mnuCifratura", "&Cifratura/decifratura documento...", "", kNone,
         F(Feature::cifraturaDocumento), PROC(w.cifraturaDocumento())),
    item("mnuExCr", "mnuCifratura", "Cifra &documento corrente...", "", kNone, F(Feature::cifraDocumentoCorrente),
         PROC(w.cifraDocumentoCorrente())),
    item("mnuExZip", "mnuExt", "C&ompressione documento...", "", kNone, SHOW(frmZip)),

    // Help.
    menu("mnuH", "", "&Help"),
    item("mnuGuida", "mnuH", "Guida...", "help-contents", QKeyCombination(Qt::Key_F1), kAny, PROC(w.guida())),
    item("mnuAggiornamento", "mnuH", "&Aggiornamento programma...", "", kNone, kAny, PROC(w.aggiornamento())),
    sep("mnuH"),
    item("mnuSegnala", "mnuH", "Segnala errori...", "", kNone, F(Feature::DeBugG), PROC(w.DeBugG())),
    item("mnuSito", "mnuH", "Il sito di Tornelia...", "", kNone, kAny, PROC(w.sitoWeb())),
    sep("mnuH"),
    item("mnuInformazioni", "mnuH", "&Informazioni su Tornelia...     ", "help-about", kNone,
         F(Feature::informazioni), PROC(w.informazioni())),

    // The context menus.
    menu("mnu", "", "nascosto", Popup),
    item("mnumnTaglia", "mnu", "&Taglia", "edit-cut", kNone, kAny, PROC(w.TaGl())),
    item("mnumnCopia", "mnu", "&Copia", "edit-copy", kNone, kAny, PROC(w.CopYa())),
    item("mnumnIncolla", "mnu", "&Incolla", "edit-paste", kNone, kAny, PROC(w.INco(QString()))),
    menu("mnuSpec", "mnu", "Speciali"),
    menu("mnuSpc", "mnuSpec", "Copia"),
    item("mnuSpcFormattazione", "mnuSpc", "Copia testo e formattazione", "", kNone, kAny, PROC(w.CopYa())),
    item("mnuSpcTesto", "mnuSpc", "Copia solo testo", "", kNone, kAny, PROC(w.copiaSoloTesto())),
    menu("mnumnn", "mnuSpec", "Incolla       ."),
    item("mnumnnOriginale", "mnumnn", "Mantieni formattazione originale", "", kNone, kAny,
         PROC(w.INco(QStringLiteral("0")))),
    item("mnumnnDestinazione", "mnumnn", "Applica formattazione di destinaz.       .", "", kNone, kAny,
         PROC(w.INco(QStringLiteral("1")))),
    item("mnumnnTesto", "mnumnn", "Incolla solo testo", "", kNone, kAny, PROC(w.INco(QStringLiteral("2")))),
    sep("mnu"),
    item("mnumnTrova", "mnu", "&Trova", "edit-find", kNone, kAny, PROC(w.FindA())),
    item("mnumnEsegui", "mnu", "&Esegui selezionato                            ", "system-run", kNone, kAny,
         PROC(w.eseguiSelezione())),

    menu("mnuImma", "", "immagine", Popup),
    item("mnuImmTaglia", "mnuImma", "&Taglia", "edit-cut", kNone, kAny, PROC(w.TaGl())),
    item("mnuImmCopia", "mnuImma", "&Copia", "edit-copy", kNone, kAny, PROC(w.CopYa())),
    item("mnuImmIncolla", "mnuImma", "&Incolla", "edit-paste", kNone, kAny, PROC(w.INco(QString()))),
    sep("mnuImma"),
    item("mnuImmSalva", "mnuImma", "Salva immagine con nome...", "", kNone, F(Feature::salvaImmagine),
         PROC(w.salvaImmagine())),
    item("mnuImmProprieta", "mnuImma", "Proprietà immagine...", "", kNone, F(Feature::proprietaImmagine),
         PROC(w.proprietaImmagine())),

    menu("mnuP", "", "puntato", Popup),
    item("mnuParStandard", "mnuP", "Paragrafo puntato standard                      ", "", kNone, kAny,
         PROC(w.paragrafoPuntato()), Checkable | Exclusive),
    item("mnuParImmagini", "mnuP", "Paragrafo puntato Immagini         .", "", kNone, F(Feature::PaRImM),
         PROC(w.PaRImM()), Checkable | Exclusive),
    item("mnuParNessuno", "mnuP", "Nessun paragrafo puntato           ", "", kNone, kAny,
         PROC(w.nessunPuntato()), Checkable | Exclusive),

    menu("mnuCl", "", "nascosto clip", Popup),
    item("mnuClipOpzioni", "mnuCl", "&Opzioni appunti...                                      ", "", kNone,
         F(Feature::opzioniAppunti), PROC(w.opzioniAppunti())),
    item("mnuClipNascondi", "mnuCl", "&Nascondi", "", kNone, F(Feature::appunti), PROC(w.appunti())),

    menu("mnuIn", "", "incolla", Popup),
    item("mnuincolla", "mnuIn", "&Incolla", "edit-paste", kNone, kAny, PROC(w.INco(QString()))),

    // t(0), the standard toolbar.
    button(0, 0, "Nuovo file", "document-new", kAny, PROC(w.Novo(0))),
    button(0, 1, "Apri documento esistente", "document-open", kAny, PROC(w.Aprii(QString()))),
    button(0, 2, "Salva documento", "document-save", kAny, PROC(w.Salvare(QString()))),
    button(0, 4, "Stampa", "document-print", F(Feature::StaMpa), PROC(w.StaMpa())),
    button(0, 5, "Anteprima di stampa", "document-print-preview", F(Feature::AntEP), PROC(w.AntEP())),
    button(0, 6, "Imposta pagina", "document-page-setup", SHOW(frmImp)),
    button(0, 8, "Taglia", "edit-cut", kAny, PROC(w.TaGl())),
    button(0, 9, "Copia", "edit-copy", kAny, PROC(w.CopYa())),
    button(0, 10, "Incolla", "edit-paste", kAny, PROC(w.INco(QString()))),
    button(0, 11, "Cancella testo selezionato", "edit-clear", kAny, PROC(w.DeleteSelectedText())),
    button(0, 13, "Annulla ultima azione", "edit-undo", kAny, PROC(w.UnDoo())),
    button(0, 14, "Ripristina ultima azione", "edit-redo", kAny, PROC(w.RedOO())),
    button(0, 16, "Invia a...", "mail-send", F(Feature::MaIL), PROC(w.MaIL(QString()))),
    button(0, 17, "Esegui selezionato", "system-run", kAny, PROC(w.eseguiSelezione())),
    button(0, 19, "Iserisci immagine", "insert-image", SHOW(frmIm)),
    button(0, 20, "Inserisci linea", "list-remove", SHOW(Form1)),
    button(0, 21, "Iserisci testo speciale", "insert-text", SHOW(form2)),
    button(0, 23, "Inserisci data/ora", "appointment-new", SHOW(frmTimeDate)),
    button(0, 25, "Opzioni", "preferences-system", SHOW(FrmOpz)),
    button(0, 26, "Tastiera", "input-keyboard", kAny, PROC(w.TasTiER()), Checkable),

    // t(1): the six combos stand at 0 to 5, then the buttons.
    mac("font", combo(0, "CbFont", "Carattere", PROC(w.fontPicked()))),
    mac("dime", combo(1, "CbDim", "Dimensione", PROC(w.sizePicked()))),
    combo(2, "CbSti", "Stile", PROC(w.stylePicked())),
    combo(3, "cbZoom", "Zoom", PROC(w.zoomPicked())),
    combo(4, "CmbC0", "Colore testo", PROC(w.pickTextColour(w.CmbC(0)->currentIndex()))),
    combo(5, "CmbC1", "Colore evidenziatore", PROC(w.pickHighlight(w.CmbC(1)->currentIndex()))),
    button(1, 6, "Grassetto", "format-text-bold", kAny, PROC(w.Clic(37)), Checkable),
    button(1, 7, "Corsivo", "format-text-italic", kAny, PROC(w.Clic(38)), Checkable),
    button(1, 8, "Sottolineato", "format-text-underline", kAny, PROC(w.Clic(39)), Checkable),
    button(1, 9, "Barrato", "format-text-strikethrough", kAny, PROC(w.Clic(40)), Checkable),
    button(1, 11, "Trova", "edit-find", kAny, PROC(w.FindA())),
    button(1, 13, "Allineamento a sinistra", "format-justify-left", kAny, PROC(w.setAlignment(0)), Checkable),
    button(1, 14, "Allineamento centrato", "format-justify-center", kAny, PROC(w.setAlignment(2)), Checkable),
    button(1, 15, "Allineamento a destra", "format-justify-right", kAny, PROC(w.setAlignment(1)), Checkable),
    button(1, 16, "Paragrafo puntato", "format-indent-more", kAny, PROC(w.dropBulletMenu())),
    button(1, 18, "Attiva/disattiva salvataggio automatico", "media-floppy", kAny,
           PROC(w.autosaveToggled(w.toolButton(1, 18)->isChecked())), Checkable | OnToggle),

    // The keys the text's KeyDown takes for itself; the typing handlers do
    // the work. Control with any other key of code 18 and above is swallowed.
    key("keyTab", QKeyCombination(Qt::Key_Tab)),
    key("keyEnterPictureBullet", QKeyCombination(Qt::Key_Return), F(Feature::PaRImM)),
    key("keyDelete", QKeyCombination(Qt::Key_Delete)),
    key("keyF2", QKeyCombination(Qt::Key_F2)),
    key("keyCtrlA", ctrl(Qt::Key_A)),
    key("keyCtrlC", ctrl(Qt::Key_C)),
    key("keyCtrlE", ctrl(Qt::Key_E), F(Feature::AntEP)),
    key("keyCtrlL", ctrl(Qt::Key_L), W(Window::Form1)),
    key("keyCtrlV", ctrl(Qt::Key_V)),
    key("keyCtrlX", ctrl(Qt::Key_X)),
    key("keyCtrlMinus", ctrl(Qt::Key_Minus)),
    key("keyCtrlPeriod", ctrl(Qt::Key_Period)),
};
// clang-format on

#undef PROC
#undef SHOW

}  // namespace

std::span<const CommandRow> commandTable()
{
    return kRows;
}

}  // namespace tornelia
