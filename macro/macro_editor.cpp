#include "macro/macro_editor.h"

#include "core/ports.h"

#include <QClipboard>
#include <QGuiApplication>

#include <exception>

namespace tornelia {

namespace {

const QString kModified = QStringLiteral("Il file è stato modificato. Salvare?");

}  // namespace

const std::vector<MacroCommandHelp>& macroCommandList()
{
    // The help texts stand as the users have always read them.
    static const std::vector<MacroCommandHelp> list = {
        {QStringLiteral("msgbox"), QStringLiteral("Finestra di messaggio"),
         QStringLiteral("msgbox(testo)"),
         QStringLiteral("Visualizza una finestra di messaggio")},
        {QStringLiteral("inputbox"), QStringLiteral("Permette all'utente di inserire il valore nella variable manualmente"),
         QStringLiteral("inputbox(variabile)"),
         QStringLiteral("Memorizza nella variabile il testo immesso dall'utente all'esecuzione della macro. Se la variabile non è vuota visualizza il valore come domanda")},
        {QStringLiteral("type"), QStringLiteral("Scrivi"),
         QStringLiteral("type(testo da scrivere) "),
         QStringLiteral("Inserisce nel documento il testo espresso tra le parentesi")},
        {QStringLiteral("sst"), QStringLiteral("Punto d'inserimento"),
         QStringLiteral("sst(numero carattere) "),
         QStringLiteral("Imposta il punto di inserimento del testo")},
        {QStringLiteral("sel"), QStringLiteral("Seleziona testo"),
         QStringLiteral("sel(lunghezza selezione) "),
         QStringLiteral("Seleziona una parte del documento")},
        {QStringLiteral("seltxt"), QStringLiteral("Testo selezionato"),
         QStringLiteral("seltxt(variabile)"),
         QStringLiteral("Restituisce il testo selezionato nella variabile specificata")},
        {QStringLiteral("clear"), QStringLiteral("Cancella il testo"),
         QStringLiteral("clear(0/1)"),
         QStringLiteral("Argomento 0 = cancella testo selezionato; Argomento 1 = cancella tutto il testo")},
        {QStringLiteral("new"), QStringLiteral("Nuovo"),
         QStringLiteral("new() "),
         QStringLiteral("Crea un nuovo documento")},
        {QStringLiteral("open"), QStringLiteral("Apri"),
         QStringLiteral("open(nome file) "),
         QStringLiteral("Apre un documento specificato tra parentesi. Se lasciato vuoto mostra la finestra di dialogo Apri")},
        {QStringLiteral("save"), QStringLiteral("Salva"),
         QStringLiteral("save(nome file) "),
         QStringLiteral("Salva il documento col nome specificato tra parentesi. Se lasciato vuoto mostra la finestra di dialogo Salva")},
        {QStringLiteral("delete"), QStringLiteral("Elimina"),
         QStringLiteral("delete() "),
         QStringLiteral("Elimina il file corrente")},
        {QStringLiteral("prop"), QStringLiteral("Proprietà"),
         QStringLiteral("prop() "),
         QStringLiteral("Visualizza le proprietà del documento")},
        {QStringLiteral("pag"), QStringLiteral("Imposta pagina"),
         QStringLiteral("pag() "),
         QStringLiteral("Apre la finestra imposta pagina")},
        {QStringLiteral("ant"), QStringLiteral("Anteprima"),
         QStringLiteral("ant() "),
         QStringLiteral("Visualizza l'anteprima di stampa del documento")},
        {QStringLiteral("stampa"), QStringLiteral("Stampa"),
         QStringLiteral("sta() "),
         QStringLiteral("Mostra la finetra di dialogo Stampa")},
        {QStringLiteral("undo"), QStringLiteral("Annulla"),
         QStringLiteral("undo(numero di annullamenti) "),
         QStringLiteral("Annulla l'ultima azione (o più di un azione se si specifica un numero tra parentesi)")},
        {QStringLiteral("redo"), QStringLiteral("Ripristina"),
         QStringLiteral("redo(numero di ripristini) "),
         QStringLiteral("Ripristina l'ultimo annullamento (o più di un annullamento se si specifica un numero tra parentesi)")},
        {QStringLiteral("cut"), QStringLiteral("Taglia"),
         QStringLiteral("cut() "),
         QStringLiteral("Taglia la porzione di testo selezionata e la copia negli appunti")},
        {QStringLiteral("copy"), QStringLiteral("Copia"),
         QStringLiteral("copy() "),
         QStringLiteral("Copia la porzione di testo selezionata negli appunti")},
        {QStringLiteral("paste"), QStringLiteral("Incolla"),
         QStringLiteral("paste(numero) "),
         QStringLiteral("Incolla nel documento il testo contenuto negli appunti. Numero specifica incolla speciale (0 - formatt.originale, 1 - formatt.destinazione, 2 - solo testo")},
        {QStringLiteral("font"), QStringLiteral("Font"),
         QStringLiteral("font(font) "),
         QStringLiteral("Imposta il font espresso tra parentesi")},
        {QStringLiteral("dime"), QStringLiteral("Dimensioni font"),
         QStringLiteral("dime(dimensioni) "),
         QStringLiteral("Imposta le dimensioni, espresse tra parentesi, del carattere")},
        {QStringLiteral("gras"), QStringLiteral("Grassetto"),
         QStringLiteral("gras(0/1) "),
         QStringLiteral("Abilita 1 / disabilita 0 il grassetto")},
        {QStringLiteral("cors"), QStringLiteral("Corsivo"),
         QStringLiteral("cors(0/1) "),
         QStringLiteral("Abilita 1 / disabilita 0 il corsivo")},
        {QStringLiteral("sott"), QStringLiteral("Sottolineato"),
         QStringLiteral("sott(0/1) "),
         QStringLiteral("Abilita 1 / disabilita 0 il sottolineato")},
        {QStringLiteral("barr"), QStringLiteral("Barrato"),
         QStringLiteral("barr(0/1) "),
         QStringLiteral("Abilita 1 / disabilita 0 il barrato")},
        {QStringLiteral("par"), QStringLiteral("Paragrafo puntato"),
         QStringLiteral("par(0/1) "),
         QStringLiteral("Paragrafo puntato standard 0 / paragrafo puntato con immagini 1")},
        {QStringLiteral("imm"), QStringLiteral("Inserisci immagine"),
         QStringLiteral("imm()"),
         QStringLiteral("Apre la finestra inserisci immagine")},
        {QStringLiteral("txt"), QStringLiteral("Inserisci testo speciale"),
         QStringLiteral("txt()"),
         QStringLiteral("Apre la finestra inserisci testo speciale")},
        {QStringLiteral("lin"), QStringLiteral("Inserisci linea"),
         QStringLiteral("lin()"),
         QStringLiteral("Apre la finestra inserisci linea")},
        {QStringLiteral("mai"), QStringLiteral("Maiuscole-minuscole"),
         QStringLiteral("mai()"),
         QStringLiteral("Apre la finestra Maiuscole-minuscole")},
        {QStringLiteral("conta"), QStringLiteral("Conteggio parole"),
         QStringLiteral("conta()"),
         QStringLiteral("Apre la finestra conteggio parole")},
        {QStringLiteral("vai"), QStringLiteral("Vai a"),
         QStringLiteral("vai()"),
         QStringLiteral("Apre la finestra vai a...")},
        {QStringLiteral("mail"), QStringLiteral("Invia a..."),
         QStringLiteral("mail(indirizzo)"),
         QStringLiteral("Invia il documento con il mailer predefinito all'indirizzo specificato")},
        {QStringLiteral("ins"), QStringLiteral("Inserisci file"),
         QStringLiteral("ins(percorso)"),
         QStringLiteral("Inserisce nel documento il file specificato tra parentesi. Se omesso il percorso apre la finestra Inserisci file")},
        {QStringLiteral("tast"), QStringLiteral("Tastiera"),
         QStringLiteral("tast(0/1)"),
         QStringLiteral("Visualizza 1 / nasconde 0 la tastiera")},
        {QStringLiteral("dim"), QStringLiteral("Dichiara variabile"),
         QStringLiteral("Dim nome variabile"),
         QStringLiteral("Dichiara una variabile")},
        {QStringLiteral("acapo"), QStringLiteral("Vai a capo"),
         QStringLiteral("acapo()"),
         QStringLiteral("Crea una nuova riga di testo")},
        {QStringLiteral("asc"), QStringLiteral("Converte carattere in ascii"),
         QStringLiteral("asc(variabile)"),
         QStringLiteral("Converte il valore contenuto nella variabile nel rispettivo codice ascii")},
        {QStringLiteral("chr"), QStringLiteral("Converte ascii in carattere"),
         QStringLiteral("chr(variabile)"),
         QStringLiteral("Converte il valore ascii contenuto nella variabile nel rispettivo carattere")},
    };
    return list;
}

QStringList macroFileFilters()
{
    return {QStringLiteral("Macro Tornelia (*.mac)"), QStringLiteral("Tutti i file (*)")};
}

MacroEditor::MacroEditor(MacroHost host, DialogPort& dialogs) : host_(host), dialogs_(dialogs)
{
    host_.hidden = &r_;
    // The text area is plain text in a fixed-width face, where the columns
    // of a macro line up.
    t_.setDefaultFormat(QStringLiteral("Monospace"), 10);
    t_.setText(QString());
    QObject::connect(&t_, &RichTextSurface::Change, [this] { changed(); });
}

MacroEditor::~MacroEditor() = default;

void MacroEditor::changed()
{
    if (dirty_)
        return;
    dirty_ = true;
    if (onStateChanged)
        onStateChanged();
}

QString MacroEditor::syntaxLabel(int entry)
{
    const auto& list = macroCommandList();
    if (entry < 0 || entry >= int(list.size()))
        return {};
    return u' ' + list[std::size_t(entry)].syntax + u' ';
}

QString MacroEditor::descriptionLabel(int entry)
{
    const auto& list = macroCommandList();
    if (entry < 0 || entry >= int(list.size()))
        return {};
    const MacroCommandHelp& h = list[std::size_t(entry)];
    return h.title + QStringLiteral(" - ") + h.description;
}

void MacroEditor::insertCommand(int entry)
{
    const auto& list = macroCommandList();
    if (entry < 0 || entry >= int(list.size()))
        return;
    t_.setSelText(list[std::size_t(entry)].name + QStringLiteral("()"));
}

void MacroEditor::copyText()
{
    if (QClipboard* cb = QGuiApplication::clipboard())
        cb->setText(t_.SelText());
}

void MacroEditor::cutText()
{
    copyText();
    t_.setSelText(QString());
}

void MacroEditor::pasteText()
{
    if (QClipboard* cb = QGuiApplication::clipboard())
        t_.setSelText(cb->text());
}

void MacroEditor::empty()
{
    t_.setText(QString());
    fileName_.clear();
    status_ = kMacroNotSaved;
    dirty_ = false;
    if (onStateChanged)
        onStateChanged();
}

QString MacroEditor::askSave(const QString& title)
{
    return host_.messages.mostraMsg(title, kModified, 3, 4);
}

std::optional<QString> MacroEditor::chooseSaveName()
{
    const std::optional<QString> name = dialogs_.saveFile(QStringLiteral("Salva macro"), macroFileFilters(), QString());
    if (!name || name->isEmpty())
        return std::nullopt;
    return name;
}

bool MacroEditor::saveTo(const QString& path)
{
    try {
        t_.SaveFile(path, RichTextSurface::TextKind);
        return true;
    } catch (const SurfaceError& e) {
        host_.messages.mostraMsg(QStringLiteral("Salva macro"),
                                 QStringLiteral("Impossibile salvare il file %1: %2").arg(path, QString::fromUtf8(e.what())),
                                 0, 3);
        return false;
    }
}

bool MacroEditor::load(const QString& path)
{
    try {
        t_.LoadFile(path, RichTextSurface::TextKind);
    } catch (const SurfaceError& e) {
        host_.messages.mostraMsg(QStringLiteral("Apri macro"),
                                 QStringLiteral("Impossibile leggere il file %1: %2").arg(path, QString::fromUtf8(e.what())),
                                 0, 3);
        return false;
    }
    return true;
}

void MacroEditor::nuovo()
{
    if (!dirty_) {
        empty();
        return;
    }
    const QString answer = askSave(QStringLiteral("Nuovo"));
    if (answer == QLatin1String("si")) {
        // Saved aside, and the macro stays on screen as it was.
        if (const auto name = chooseSaveName())
            saveTo(*name);
    } else if (answer == QLatin1String("no")) {
        empty();
    }
}

void MacroEditor::apri()
{
    if (dirty_) {
        const QString answer = askSave(QStringLiteral("Apri"));
        if (answer == QLatin1String("si")) {
            const std::optional<QString> name = fileName_.isEmpty() ? chooseSaveName() : std::optional(fileName_);
            if (name && !saveTo(*name))
                return;
            dirty_ = false;
            if (onStateChanged)
                onStateChanged();
        } else if (answer == QLatin1String("no")) {
            empty();
        } else {
            return;
        }
    }
    const std::optional<QString> path = dialogs_.openFile(QStringLiteral("Apri macro"), macroFileFilters());
    if (!path || path->isEmpty())
        return;
    if (!load(*path))
        return;
    fileName_ = *path;
    status_ = fileName_;
    // A macro just read is as it stands on disk.
    dirty_ = false;
    if (onStateChanged)
        onStateChanged();
}

void MacroEditor::salva()
{
    if (!fileName_.isEmpty()) {
        if (!saveTo(fileName_))
            return;
    } else {
        const std::optional<QString> name = chooseSaveName();
        if (name && !saveTo(*name))
            return;
        fileName_ = name.value_or(QString());
        status_ = fileName_.isEmpty() ? kMacroNotSaved : fileName_;
    }
    dirty_ = false;
    if (onStateChanged)
        onStateChanged();
}

void MacroEditor::esegui()
{
    c engine(host_);
    engine.ScriptText = t_.Text();
    engine.ScriptExecute();
}

}  // namespace tornelia
