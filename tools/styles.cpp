#include "tools/styles.h"

#include "core/codepage.h"
#include "core/ports.h"
#include "core/settings.h"
#include "core/undo_store.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace tornelia {

namespace {

const QString kTitle = QStringLiteral("Stili");
const QString kSection = QStringLiteral("Stili");
const QString kFilter = QStringLiteral("File stile (*.sti)");

// One line of a .sti file; false past the end. CR LF ends a line, and so do
// a lone CR or LF, which editors of other systems leave.
bool readLine(const QByteArray& bytes, qsizetype& pos, QString& line)
{
    if (pos >= bytes.size())
        return false;
    line.clear();
    while (pos < bytes.size() && bytes[pos] != '\r' && bytes[pos] != '\n')
        line += QChar(cp1252Char(static_cast<unsigned char>(bytes[pos++])));
    if (pos < bytes.size() && bytes[pos] == '\r')
        ++pos;
    if (pos < bytes.size() && bytes[pos] == '\n')
        ++pos;
    return true;
}

void writeLine(QByteArray& out, const QString& text)
{
    for (const QChar c : text) {
        const int b = cp1252Byte(c.unicode());
        out += b < 0 ? '?' : char(b);
    }
    out += "\r\n";
}

// A flag field as the check box reads it: any number but 0 is ticked.
int flagState(const QString& field) { return field.trimmed().toInt() != 0 ? 1 : 0; }

}  // namespace

StiReadResult parseSti(const QByteArray& bytes)
{
    StiReadResult result;
    qsizetype pos = 0;
    while (pos < bytes.size()) {
        if (result.records.size() == kStyleSlots) {
            result.overflow = true;
            break;
        }
        StyleRecord r;
        QString* fields[] = {&r.name, &r.font, &r.size, &r.bold, &r.italic, &r.underline};
        bool complete = true;
        for (QString* f : fields) {
            if (!readLine(bytes, pos, *f)) {
                complete = false;
                break;
            }
        }
        result.records.append(r);
        if (!complete)
            break;
    }
    return result;
}

QByteArray writeSti(const QList<StyleRecord>& records)
{
    QByteArray out;
    for (const StyleRecord& r : records) {
        for (const QString* f : {&r.name, &r.font, &r.size, &r.bold, &r.italic, &r.underline})
            writeLine(out, *f);
    }
    return out;
}

QStringList builtInStyleNames()
{
    return {QStringLiteral("(normale)"), QStringLiteral("(titolo 1)"), QStringLiteral("(titolo 2)"),
            QStringLiteral("(titolo 3)")};
}

StyleStore::StyleStore(RichTextSurface& testo, SettingsStore& settings, MessagePort& messages,
                       DialogPort& dialogs, UndoStore* undo)
    : testo_(testo), settings_(settings), messages_(messages), dialogs_(dialogs), undo_(undo)
{
}

void StyleStore::changed()
{
    if (onChanged)
        onChanged();
}

QStringList StyleStore::comboNames() const
{
    QStringList names = builtInStyleNames();
    for (const QString& n : list1_) {
        // A nameless entry cannot be chosen from the combo anyway.
        if (!n.isEmpty())
            names.append(n);
    }
    return names;
}

void StyleStore::clearSlots()
{
    for (auto* a : {&styleName, &styleFont, &styleSize, &styleBold, &styleItalic, &styleUnderline})
        a->fill(QString());
    list1_.clear();
    selected_ = -1;
    newCount_ = -1;
    freshBlank_ = false;
}

void StyleStore::load()
{
    const QString path = settings_.leggiReg({}, kSection, QStringLiteral("1"));
    // A file that has gone since the last run leaves the table empty; it is
    // not worth a message at every start.
    if (!path.isEmpty() && QFileInfo(path).isFile())
        openFile(path);
    Novo();
}

bool StyleStore::Novo()
{
    if (newCount_ + 1 >= kStyleSlots) {
        messages_.mostraMsg(kTitle,
                            QStringLiteral("La tabella degli stili è piena: non si possono avere più di ") +
                                QString::number(kStyleSlots) + QStringLiteral(" stili."),
                            0, 2);
        return false;
    }
    list1_.append(QString());
    controls.name.clear();
    controls.bold = controls.italic = controls.underline = 0;
    ++newCount_;
    styleName[newCount_] = QString();
    styleFont[newCount_] = controls.font;
    styleSize[newCount_] = controls.size;
    styleBold[newCount_] = styleItalic[newCount_] = styleUnderline[newCount_] = QStringLiteral("0");
    // The new entry is the one the next "store" fills.
    selected_ = newCount_;
    freshBlank_ = true;
    changed();
    return true;
}

void StyleStore::select(int index)
{
    if (index < 0 || index >= list1_.size())
        return;
    selected_ = index;
    controls.name = styleName[index];
    controls.font = styleFont[index];
    controls.size = styleSize[index];
    // An empty flag leaves the check box as it was.
    if (!styleBold[index].isEmpty())
        controls.bold = flagState(styleBold[index]);
    if (!styleItalic[index].isEmpty())
        controls.italic = flagState(styleItalic[index]);
    if (!styleUnderline[index].isEmpty())
        controls.underline = flagState(styleUnderline[index]);
    changed();
}

void StyleStore::bU(int index)
{
    bool done = true;
    switch (index) {
    case 0:
        if (selected_ >= 0 && selected_ < list1_.size())
            appliC(list1_.at(selected_), false);
        return;
    case 1: done = newTable(); break;
    case 2: done = openWithDialog(); break;
    case 3: done = saveWithDialog(); break;
    case 4: done = storeEntry(); break;
    case 5:
        if (onHide)
            onHide();
        return;
    default: return;
    }
    // There is always an empty entry at the end for the next style; it is
    // not added twice.
    if (done && !freshBlank_)
        Novo();
    changed();
}

bool StyleStore::newTable()
{
    if (fileDirty_ &&
        messages_.mostraMsg(kTitle, QStringLiteral("Il file non è stato salvato! Cancellare comunque?"), 2, 4) ==
            QLatin1String("no"))
        return false;
    clearSlots();
    fileDirty_ = false;
    return true;
}

bool StyleStore::openWithDialog()
{
    if (fileDirty_ &&
        messages_.mostraMsg(kTitle, QStringLiteral("Il file non è stato salvato! Aprire comunque?"), 2, 4) ==
            QLatin1String("no"))
        return false;
    const std::optional<QString> path = dialogs_.openFile(QStringLiteral("Apri file stile"), {kFilter});
    if (!path || path->isEmpty())
        return false;
    return openFile(*path);
}

bool StyleStore::openFile(const QString& path)
{
    clearSlots();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        messages_.mostraMsg(kTitle, QStringLiteral("Impossibile aprire il file ") + path + QStringLiteral(": ") +
                                        file.errorString(),
                            0, 3);
        changed();
        return true;
    }
    const StiReadResult read = parseSti(file.readAll());
    for (const StyleRecord& r : read.records) {
        ++newCount_;
        list1_.append(r.name);
        styleName[newCount_] = r.name;
        styleFont[newCount_] = r.font;
        styleSize[newCount_] = r.size;
        styleBold[newCount_] = r.bold;
        styleItalic[newCount_] = r.italic;
        styleUnderline[newCount_] = r.underline;
    }
    settings_.scriviReg({}, kSection, QStringLiteral("1"), path);
    fileDirty_ = false;
    if (read.overflow)
        messages_.mostraMsg(kTitle,
                            QStringLiteral("Il file ha più di ") + QString::number(kStyleSlots) +
                                QStringLiteral(" stili: sono stati letti solo i primi ") +
                                QString::number(kStyleSlots) + u'.',
                            0, 2);
    changed();
    return true;
}

bool StyleStore::saveWithDialog()
{
    const QString stored = settings_.leggiReg({}, kSection, QStringLiteral("1"));
    const std::optional<QString> path = dialogs_.saveFile(QStringLiteral("Salva file stile"), {kFilter}, stored);
    if (!path || path->isEmpty())
        return false;
    return saveFile(*path);
}

bool StyleStore::saveFile(const QString& path)
{
    QList<StyleRecord> records;
    // The empty entry waiting at the end for a new style is not a style.
    const int count = int(list1_.size()) - (freshBlank_ ? 1 : 0);
    for (int i = 0; i < count; ++i)
        records.append({styleName[i], styleFont[i], styleSize[i], styleBold[i], styleItalic[i], styleUnderline[i]});
    QSaveFile file(path);
    const QByteArray bytes = writeSti(records);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        messages_.mostraMsg(kTitle, QStringLiteral("Impossibile salvare il file ") + path + QStringLiteral(": ") +
                                        file.errorString(),
                            0, 3);
        return false;
    }
    settings_.scriviReg({}, kSection, QStringLiteral("1"), path);
    fileDirty_ = false;
    return true;
}

bool StyleStore::storeEntry()
{
    if (selected_ < 0 || selected_ >= list1_.size()) {
        if (!Novo())
            return false;
    }
    const int i = selected_;
    auto flag = [](int state) { return state ? QStringLiteral("1") : QStringLiteral("0"); };
    styleName[i] = controls.name;
    styleFont[i] = controls.font;
    styleSize[i] = controls.size;
    styleBold[i] = flag(controls.bold);
    styleItalic[i] = flag(controls.italic);
    styleUnderline[i] = flag(controls.underline);
    list1_[i] = controls.name;
    if (i == newCount_)
        freshBlank_ = false;
    fileDirty_ = true;
    return true;
}

void StyleStore::applyBuiltIn(const QString& name)
{
    const QString font = settings_.leggiReg({}, QStringLiteral("Font"), QStringLiteral("1"), QStringLiteral("Tahoma"));
    bool ok = false;
    float size = settings_.leggiReg({}, QStringLiteral("Font"), QStringLiteral("2"), QStringLiteral("10")).toFloat(&ok);
    if (!ok || size <= 0)
        size = 10;
    const QStringList names = builtInStyleNames();
    const int which = int(names.indexOf(name));
    if (which < 0)
        return;
    if (undo_)
        undo_->unDO();
    static const float grow[] = {0, 4, 4, 2};
    testo_.setSelFontName(font);
    testo_.setSelFontSize(size + grow[which]);
    testo_.setSelBold(which != 0);
    testo_.setSelItalic(which == 2);
    if (which != 0)
        testo_.setSelUnderline(false);
}

void StyleStore::appliC(const QString& name, bool fromMain)
{
    if (fromMain && name.startsWith(u'(')) {
        applyBuiltIn(name);
        return;
    }
    if (!name.isEmpty() && !list1_.isEmpty()) {
        // The last entry of that name wins; picking it fills the controls,
        // as a click on the list does.
        int found = -1;
        for (int i = 0; i < list1_.size(); ++i) {
            if (list1_.at(i) == name)
                found = i;
        }
        if (found >= 0)
            select(found);
    }
    const int i = selected_;
    if (i < 0 || i >= kStyleSlots)
        return;
    if (undo_)
        undo_->unDO();
    if (!styleFont[i].isEmpty())
        testo_.setSelFontName(styleFont[i]);
    bool ok = false;
    const float size = styleSize[i].trimmed().toFloat(&ok);
    if (ok && size > 0)
        testo_.setSelFontSize(size);
    if (!styleBold[i].isEmpty())
        testo_.setSelBold(flagState(styleBold[i]));
    if (!styleItalic[i].isEmpty())
        testo_.setSelItalic(flagState(styleItalic[i]));
    if (!styleUnderline[i].isEmpty())
        testo_.setSelUnderline(flagState(styleUnderline[i]));
    changed();
}

bool StyleStore::queryClose()
{
    return !fileDirty_ ||
           messages_.mostraMsg(kTitle, QStringLiteral("Il file non è stato salvato! Uscire comunque?"), 2, 4) !=
               QLatin1String("no");
}

}  // namespace tornelia
