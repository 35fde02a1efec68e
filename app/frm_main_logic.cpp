#include "app/frm_main_logic.h"

#include "app/command_line_procedures.h"
#include "core/go_on.h"

#include <QClipboard>
#include <QDate>
#include <QGuiApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <exception>

namespace tornelia {

namespace {

const QString kHelp = QStringLiteral("Help");
const QString kUpdate = QStringLiteral("Update");
const QString kInstalledGuide = QStringLiteral("help/GuidaTNL.chm");

// A failed step of the start or the close is skipped, and the rest goes on.
template <typename F>
void goOn(F&& step)
{
    goOnAt("Avvio e chiusura", step);
}

bool isTrue(const QString& value)
{
    return value.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0;
}

}  // namespace

FrmMainLogic::FrmMainLogic(AppContext& context, QString programFolder, QString dataFolder)
    : ctx_(context), programFolder_(std::move(programFolder)), dataFolder_(std::move(dataFolder))
{
}

QString FrmMainLogic::formatLine(long line)
{
    // "##,###" prints nothing for zero.
    if (line == 0)
        return {};
    return QLocale(QLocale::Italian, QLocale::Italy).toString(qlonglong(line));
}

QString FrmMainLogic::Conalinee()
{
    RichTextSurface& t = ctx_.testo();
    const long start = t.SelStart();
    const long line = t.LineFromChar(start) + 1;
    const long column = start + 1 - t.LineIndex(line - 1);
    return QStringLiteral("Lin: ") + formatLine(line) + QStringLiteral(", Col: ") + QString::number(column);
}

long FrmMainLogic::lineCount() const
{
    return ctx_.testo().GetLineCount();
}

void FrmMainLogic::Clic(int code)
{
    RichTextSurface& t = ctx_.testo();
    // A mixed selection reads as none, and flips to on.
    auto flip = [](std::optional<bool> v) { return !v.value_or(false); };
    switch (code) {
    case 37:
        ctx_.undo().unDO();
        t.setSelBold(flip(t.SelBold()));
        break;
    case 38:
        ctx_.undo().unDO();
        t.setSelItalic(flip(t.SelItalic()));
        break;
    case 39:
        ctx_.undo().unDO();
        t.setSelUnderline(flip(t.SelUnderline()));
        break;
    case 40:
        ctx_.undo().unDO();
        t.setSelStrikeThru(flip(t.SelStrikeThru()));
        break;
    case 51:
        openGuide();
        break;
    default:
        break;
    }
}

FormatControls FrmMainLogic::aggText() const
{
    const RichTextSurface& t = ctx_.testo();
    FormatControls c;
    c.font = t.SelFontName();
    if (const auto size = t.SelFontSize())
        c.size = QString::number(double(*size)).trimmed();
    if (const auto colour = t.SelColor())
        c.textColour = long(*colour);
    if (const auto h = t.SelHighlight())
        c.highlightColour = *h == kNoHighlight ? 0xFFFFFF : long(*h);
    return c;
}

void FrmMainLogic::setAlignment(int alignment)
{
    ctx_.undo().unDO();
    ctx_.testo().setSelAlignment(alignment);
}

void FrmMainLogic::setCharOffset(int twips)
{
    ctx_.undo().unDO();
    ctx_.testo().setSelCharOffset(twips);
}

void FrmMainLogic::toggleBullet()
{
    ctx_.undo().unDO();
    RichTextSurface& t = ctx_.testo();
    t.setSelBullet(!t.SelBullet().value_or(false));
}

void FrmMainLogic::chooseFont()
{
    RichTextSurface& t = ctx_.testo();
    FontChoice seed;
    seed.name = t.SelFontName().value_or(QString());
    seed.size = t.SelFontSize().value_or(0);
    seed.bold = t.SelBold().value_or(false);
    seed.italic = t.SelItalic().value_or(false);
    seed.underline = t.SelUnderline().value_or(false);
    seed.strike = t.SelStrikeThru().value_or(false);
    seed.colour = t.SelColor().value_or(0);
    const auto chosen = ctx_.dialogs().chooseFont(seed);
    if (!chosen)
        return;
    ctx_.undo().unDO();
    if (!chosen->name.isEmpty())
        t.setSelFontName(chosen->name);
    if (chosen->size > 0)
        t.setSelFontSize(chosen->size);
    t.setSelBold(chosen->bold);
    t.setSelItalic(chosen->italic);
    t.setSelUnderline(chosen->underline);
    t.setSelStrikeThru(chosen->strike);
}

void FrmMainLogic::chooseTextColour()
{
    RichTextSurface& t = ctx_.testo();
    const auto colour = ctx_.dialogs().chooseColour(t.SelColor().value_or(0));
    if (!colour)
        return;
    ctx_.undo().unDO();
    t.setSelColor(*colour);
}

void FrmMainLogic::chooseBackColour()
{
    RichTextSurface& t = ctx_.testo();
    const auto colour = ctx_.dialogs().chooseColour(t.BackColor());
    if (!colour)
        return;
    t.setBackColor(*colour);
    ctx_.document().mostraMsg(
        QStringLiteral("Colore sfondo"),
        QStringLiteral("NB. il colore di sfondo viene visualizzato solo sullo schermo e non sarà stampato."), 0, 1);
}

void FrmMainLogic::eseguiSelezione()
{
    const QString sel = ctx_.testo().SelText();
    if (sel.isEmpty())
        return;
    if (sel.contains(u'@') && !sel.toLower().contains(QLatin1String("mailto:")))
        ctx_.shell().openDocument(QStringLiteral("mailto:") + sel);
    else
        ctx_.shell().openDocument(sel);
}

void FrmMainLogic::INco(const QString& how)
{
    pasteClipboard(ctx_.testo(), ctx_.undo(), how);
}

void FrmMainLogic::copiaSoloTesto()
{
    QGuiApplication::clipboard()->setText(ctx_.testo().SelText());
}

void FrmMainLogic::insertDate()
{
    ctx_.undo().unDO();
    ctx_.testo().setSelText(QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat));
}

void FrmMainLogic::selectLine()
{
    // Home, then Shift+End: the line as it is laid out, without its break.
    RichTextSurface& t = ctx_.testo();
    const long start = t.LineIndex(t.LineFromChar(t.SelStart()));
    const long length = t.LineLength(start);
    t.setSelStart(start);
    t.setSelLength(length);
}

void FrmMainLogic::selectAll()
{
    RichTextSurface& t = ctx_.testo();
    t.setSelStart(0);
    t.setSelLength(t.length());
}

ContextMenuState FrmMainLogic::contextMenu() const
{
    const RichTextSurface& t = ctx_.testo();
    ContextMenuState s;
    const QString sel = t.SelText();
    if (sel == QLatin1String(" ") || sel == QString(QChar(QChar::ObjectReplacementCharacter))) {
        // A picture is one character of the text, read as a blank by some;
        // only its RTF tells it from a real blank.
        const QString rtf = t.SelRTF();
        if (rtf.contains(QLatin1String("\\pict\\")) || rtf.contains(QLatin1String("Paint.Picture}")))
            s.menu = ContextMenuState::Menu::Picture;
        return s;
    }
    s.menu = ContextMenuState::Menu::Text;
    s.selectionCommands = t.SelLength() > 0;
    return s;
}

QString FrmMainLogic::findProgram(const QString& name) const
{
    QStringList names{name};
    if (name.endsWith(QLatin1String(".exe"), Qt::CaseInsensitive))
        names << name.chopped(4);
    else
        names << name + QStringLiteral(".exe");
    for (const QString& folder : {dataFolder_, programFolder_}) {
        if (folder.isEmpty())
            continue;
        for (const QString& n : names) {
            const QFileInfo f(QDir(folder).filePath(n));
            if (f.isFile())
                return f.absoluteFilePath();
        }
    }
    return {};
}

bool FrmMainLogic::startProgram(const QString& name)
{
    const QString path = findProgram(name);
    if (path.isEmpty())
        return false;
    return ctx_.shell().startDetached(path, {});
}

QString FrmMainLogic::guidePath() const
{
    const QString key = ctx_.settings().leggiReg(kApp, kHelp, QStringLiteral("1"));
    if (!key.isEmpty() && QFileInfo(key).isFile())
        return key;
    const QString installed = QDir(programFolder_).filePath(kInstalledGuide);
    return QFileInfo(installed).isFile() ? installed : QString();
}

bool FrmMainLogic::openGuide()
{
    const QString path = guidePath();
    return !path.isEmpty() && ctx_.shell().openDocument(path);
}

QString FrmMainLogic::updaterPath() const
{
    const QString key = ctx_.settings().leggiReg(kApp, kUpdate, QStringLiteral("1"));
    return !key.isEmpty() && QFileInfo(key).isFile() ? key : QString();
}

bool FrmMainLogic::startUpdater()
{
    const QString path = updaterPath();
    return !path.isEmpty() && ctx_.shell().startDetached(path, {});
}

void FrmMainLogic::openSite()
{
    ctx_.shell().openDocument(kSiteAddress);
}

void FrmMainLogic::seedGuideKey()
{
    SettingsStore& s = ctx_.settings();
    if (!s.leggiReg(kApp, kHelp, QStringLiteral("1")).isEmpty())
        return;
    const QString installed = QDir(programFolder_).filePath(kInstalledGuide);
    if (QFileInfo(installed).isFile())
        s.scriviReg(kApp, kHelp, QStringLiteral("1"), installed);
}

void FrmMainLogic::writeProgramFolder()
{
    ctx_.settings().scriviReg(kApp, QStringLiteral("Dir"), QStringLiteral("2"),
                              programFolder_.endsWith(u'/') ? programFolder_ : programFolder_ + u'/');
}

bool FrmMainLogic::undoDisabled() const
{
    return isTrue(ctx_.settings().leggiReg(kApp, QStringLiteral("Ann"), QStringLiteral("1")));
}

void FrmMainLogic::readUndoFlag()
{
    ctx_.undo().setAnnullaOff(undoDisabled());
}

bool FrmMainLogic::clipboardPanelShown() const
{
    return ctx_.settings().leggiReg(kApp, QStringLiteral("Appunti"), QStringLiteral("1")) == QLatin1String("1");
}

QString FrmMainLogic::toolbarSection(int index)
{
    return QStringLiteral("Toolbar %1").arg(index + 1);
}

ToolbarPlace FrmMainLogic::readToolbar(int index) const
{
    const SettingsStore& s = ctx_.settings();
    const QString section = toolbarSection(index);
    ToolbarPlace p;
    // A toolbar never hidden has no key yet and shows.
    const QString visible = s.leggiReg(kApp, section, QStringLiteral("1"));
    p.visible = visible.isEmpty() || isTrue(visible) || visible == QLatin1String("1") || visible == QLatin1String("-1");
    p.top = s.leggiReg(kApp, section, QStringLiteral("2")).toInt();
    p.left = s.leggiReg(kApp, section, QStringLiteral("3")).toInt();
    return p;
}

void FrmMainLogic::writeToolbar(int index, const ToolbarPlace& place)
{
    SettingsStore& s = ctx_.settings();
    const QString section = toolbarSection(index);
    s.scriviReg(kApp, section, QStringLiteral("1"), place.visible ? QStringLiteral("True") : QStringLiteral("False"));
    s.scriviReg(kApp, section, QStringLiteral("2"), QString::number(place.top));
    s.scriviReg(kApp, section, QStringLiteral("3"), QString::number(place.left));
}

void FrmMainLogic::writeVersionFile(const QString& version)
{
    if (dataFolder_.isEmpty())
        return;
    QDir().mkpath(dataFolder_);
    QFile f(QDir(dataFolder_).filePath(QStringLiteral("Version.dat")));
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(version.toUtf8() + "\r\n");
}

CloseAnswer FrmMainLogic::QueryUnload()
{
    Document& doc = ctx_.document();
    if (!doc.fileCambiato())
        return CloseAnswer::Close;
    const QString answer = doc.mostraMsg(QStringLiteral("Salva"),
                                         QStringLiteral("Il file è stato modificato. Vuoi salvare le modifiche?"), 3, 0);
    if (answer == QLatin1String("an"))
        return CloseAnswer::Cancel;
    if (answer != QLatin1String("si"))
        return CloseAnswer::CloseBare;
    try {
        doc.Salvare(QString());
    } catch (const std::exception& e) {
        doc.mostraMsg(QStringLiteral("Errore"), QStringLiteral("Errore inaspettato!\n") + QString::fromUtf8(e.what()),
                      0, 3);
        return CloseAnswer::Cancel;
    }
    // A save dialog given up leaves the work unsaved, and nothing is lost:
    // the window stays.
    return doc.fileCambiato() ? CloseAnswer::Cancel : CloseAnswer::Close;
}

void FrmMainLogic::clearForClose()
{
    goOn([&] { ctx_.testo().setText(QString()); });
    goOn([&] { ctx_.undo().clear(); });
    // The cleared text is what the document now holds.
    ctx_.document().segnaSalvato();
}

}  // namespace tornelia
