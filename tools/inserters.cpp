#include "tools/inserters.h"

#include "core/codepage.h"
#include "core/ports.h"
#include "core/undo_store.h"

#include <QFileInfo>
#include <QLocale>

namespace tornelia {

void inserisciTesto(RichTextSurface& testo, UndoStore* undo, const QString& text)
{
    if (text.isEmpty())
        return;
    if (undo)
        undo->unDO();
    testo.setSelText(text);
}

// ---------------------------------------------------------------- date and time

namespace {

const QLocale& italian()
{
    static const QLocale locale(QLocale::Italian, QLocale::Italy);
    return locale;
}

QString twoDigits(int n) { return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')); }

// How many times the letter at i repeats, in either case.
qsizetype runLength(const QString& f, qsizetype i)
{
    const QChar c = f.at(i).toLower();
    qsizetype n = 1;
    while (i + n < f.size() && f.at(i + n).toLower() == c)
        ++n;
    return n;
}

bool startsWithAt(const QString& f, qsizetype i, QLatin1StringView what, bool caseSensitive)
{
    return f.mid(i, what.size()).compare(what, caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0;
}

// The twelve-hour markers, longest first so "AMPM" is not read as "AM/PM".
struct Marker {
    QLatin1StringView pattern;
    bool upper;
    bool oneLetter;
};
constexpr Marker kMarkers[] = {
    {QLatin1StringView("AMPM"), true, false},
    {QLatin1StringView("AM/PM"), true, false},
    {QLatin1StringView("am/pm"), false, false},
    {QLatin1StringView("A/P"), true, true},
    {QLatin1StringView("a/p"), false, true},
};

const Marker* markerAt(const QString& f, qsizetype i)
{
    for (const Marker& m : kMarkers) {
        // "AMPM" is taken in any case; the others keep the case they show.
        if (startsWithAt(f, i, m.pattern, m.pattern != QLatin1StringView("AMPM")))
            return &m;
    }
    return nullptr;
}

bool hasTwelveHourMarker(const QString& f)
{
    bool quoted = false;
    for (qsizetype i = 0; i < f.size(); ++i) {
        const QChar c = f.at(i);
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        else if (quoted)
            continue;
        else if (c == QLatin1Char('\\'))
            ++i;
        else if (markerAt(f, i))
            return true;
    }
    return false;
}

int weekOfYear(const QDate& d)
{
    // Weeks start on Sunday and the week of 1 January is the first.
    const QDate first(d.year(), 1, 1);
    const int offset = first.dayOfWeek() % 7;  // Sunday 0
    return (d.dayOfYear() - 1 + offset) / 7 + 1;
}

}  // namespace

QString formatDateTime(const QDateTime& when, const QString& f)
{
    const QDate date = when.date();
    const QTime time = when.time();
    const bool twelve = hasTwelveHourMarker(f);
    const int hour12 = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
    const int hour = twelve ? hour12 : time.hour();
    QString out;
    bool afterHour = false;  // an "m" right after an hour means minutes
    qsizetype i = 0;
    while (i < f.size()) {
        const QChar c = f.at(i);
        const QChar lc = c.toLower();
        if (c == QLatin1Char('"')) {
            const qsizetype end = f.indexOf(QLatin1Char('"'), i + 1);
            out += f.mid(i + 1, end < 0 ? -1 : end - i - 1);
            i = end < 0 ? f.size() : end + 1;
            continue;
        }
        if (c == QLatin1Char('\\')) {
            if (i + 1 < f.size())
                out += f.at(i + 1);
            i += 2;
            continue;
        }
        if (const Marker* m = markerAt(f, i)) {
            const bool pm = time.hour() >= 12;
            QString mark = m->oneLetter ? QString(pm ? QLatin1Char('P') : QLatin1Char('A'))
                                        : QString(pm ? QStringLiteral("PM") : QStringLiteral("AM"));
            out += m->upper ? mark : mark.toLower();
            i += m->pattern.size();
            afterHour = false;
            continue;
        }
        const qsizetype n = runLength(f, i);
        bool hourToken = false;
        if (lc == QLatin1Char('d')) {
            if (n == 1)
                out += QString::number(date.day());
            else if (n == 2)
                out += twoDigits(date.day());
            else if (n == 3)
                out += italian().dayName(date.dayOfWeek(), QLocale::ShortFormat);
            else if (n == 4)
                out += italian().dayName(date.dayOfWeek(), QLocale::LongFormat);
            else if (n == 5)
                out += formatDateTime(when, QStringLiteral("dd/mm/yyyy"));
            else
                out += formatDateTime(when, QStringLiteral("dddd d mmmm yyyy"));
        } else if (lc == QLatin1Char('m')) {
            if (afterHour && n <= 2)
                out += n == 1 ? QString::number(time.minute()) : twoDigits(time.minute());
            else if (n == 1)
                out += QString::number(date.month());
            else if (n == 2)
                out += twoDigits(date.month());
            else if (n == 3)
                out += italian().monthName(date.month(), QLocale::ShortFormat);
            else
                out += italian().monthName(date.month(), QLocale::LongFormat);
        } else if (lc == QLatin1Char('y')) {
            if (n == 1)
                out += QString::number(date.dayOfYear());
            else if (n < 4)
                out += twoDigits(date.year() % 100);
            else
                out += QString::number(date.year());
        } else if (lc == QLatin1Char('h')) {
            out += n == 1 ? QString::number(hour) : twoDigits(hour);
            hourToken = true;
        } else if (lc == QLatin1Char('n')) {
            out += n == 1 ? QString::number(time.minute()) : twoDigits(time.minute());
        } else if (lc == QLatin1Char('s')) {
            out += n == 1 ? QString::number(time.second()) : twoDigits(time.second());
        } else if (lc == QLatin1Char('w')) {
            out += n == 1 ? QString::number(date.dayOfWeek() % 7 + 1) : QString::number(weekOfYear(date));
        } else if (lc == QLatin1Char('q')) {
            out += QString::number((date.month() - 1) / 3 + 1);
        } else if (lc == QLatin1Char('c')) {
            out += formatDateTime(when, QStringLiteral("dd/mm/yyyy hh:nn:ss"));
        } else {
            out += f.mid(i, n);
            // Separators between the hour and the minutes keep the hour in force.
            if (afterHour && !c.isLetterOrNumber() && !c.isSpace())
                hourToken = true;
        }
        afterHour = hourToken;
        i += n;
    }
    return out;
}

QStringList dateTimeFormats()
{
    return {
        QStringLiteral("dd/mm/yy"),   QStringLiteral("dd mmmm yyyy"), QStringLiteral("dd mmmm, yyyy"),
        QStringLiteral("mmmm dd, yyyy"), QStringLiteral("dd/mmm/yy"), QStringLiteral("mmmm, yy"),
        QStringLiteral("mmm/yy"),     QStringLiteral(" "),            QStringLiteral("hh:mm"),
        QStringLiteral("hh:mm:ss"),   QStringLiteral("hh:mm AMPM"),   QStringLiteral("hh:mm:ss AMPM"),
    };
}

QStringList dateTimeEntries(const QDateTime& when)
{
    QStringList entries;
    for (const QString& f : dateTimeFormats())
        entries << (f == QStringLiteral(" ") ? f : formatDateTime(when, f));
    return entries;
}

// ---------------------------------------------------------------- cyclic text

std::optional<long> parseRipetizioni(const QString& text)
{
    bool ok = false;
    const long n = text.trimmed().toLong(&ok);
    if (!ok || n < 1 || n > kMaxRipetizioni)
        return std::nullopt;
    return n;
}

bool testoCiclico(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, const CyclicRequest& req,
                  const std::function<void(long, long)>& progress)
{
    const std::optional<long> count = parseRipetizioni(req.ripetizioni);
    if (!count) {
        messages.mostraMsg(QStringLiteral("Testo ciclico"), QStringLiteral("Inserire un valore valido!"), 0, 2);
        return false;
    }
    // The repeats are gathered and written once: the document changes in one
    // step, so one undo takes the whole run back and the view redraws once.
    QString all;
    for (long i = 1; i <= *count; ++i) {
        if (req.mode == CyclicMode::TestoENumerazione)
            all += req.prefisso + QString::number(i) + req.suffisso;
        all += req.testo;
        if (req.vaiACapo)
            all += QStringLiteral("\r\n");
        if (progress)
            progress(i, *count);
    }
    if (undo)
        undo->unDO();
    testo.setSelText(all);
    return true;
}

// ---------------------------------------------------------------- file insertion

namespace {
const QString kFileTitle = QStringLiteral("Inserisci file");
}

QString fileSeparator()
{
    return QStringLiteral("\r\n") + QString(34, QChar(0x2014)) + QStringLiteral("\r\n");
}

FileInserter::FileInserter() : pio_(std::make_unique<RichTextSurface>()) {}
FileInserter::~FileInserter() = default;

bool FileInserter::load(const QString& path, MessagePort& messages)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists() || !info.isFile()) {
        messages.mostraMsg(kFileTitle, QStringLiteral("Il file \"%1\" non esiste!").arg(path), 0, 3);
        return false;
    }
    // A fresh surface, so a file that fails to load leaves the last one ready.
    auto loaded = std::make_unique<RichTextSurface>();
    try {
        loaded->setFileName(path);
    } catch (const SurfaceError&) {
        messages.mostraMsg(kFileTitle, QStringLiteral("Impossibile leggere il file \"%1\"!").arg(path), 0, 3);
        return false;
    }
    pio_ = std::move(loaded);
    path_ = path;
    return true;
}

bool FileInserter::choose(DialogPort& dialogs, MessagePort& messages)
{
    const std::optional<QString> path = dialogs.openFile(
        kFileTitle, {QStringLiteral("Tutti i documenti (*.tnl *.rtf *.txt)"), QStringLiteral("Documenti Tornelia (*.tnl)"),
                     QStringLiteral("Documenti RTF (*.rtf)"), QStringLiteral("File di testo (*.txt)"),
                     QStringLiteral("Tutti i file (*)")});
    if (!path)
        return false;
    return load(*path, messages);
}

QString FileInserter::label() const
{
    return QStringLiteral("File: ") + (path_.isEmpty() ? QStringLiteral("Nessuno") : path_);
}

bool FileInserter::insertInto(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, bool separatore)
{
    if (path_.isEmpty()) {
        messages.mostraMsg(kFileTitle, QStringLiteral("Selezionare prima un file da inserire!"), 0, 2);
        return false;
    }
    if (undo)
        undo->unDO();
    pio_->setSelStart(0);
    pio_->setSelLength(pio_->length());
    if (separatore)
        testo.setSelText(fileSeparator());
    testo.setSelRTF(pio_->SelRTF());
    if (separatore)
        testo.setSelText(fileSeparator());
    return true;
}

// ---------------------------------------------------------------- special characters

QString gridCharacter(int code, bool symbolFont)
{
    if (code < kFirstGridCode || code > kLastGridCode)
        return {};
    if (symbolFont)
        return QString(QChar(char16_t(0xF000 + code)));
    // DEL and the holes of the code page have nothing to show or insert.
    const char16_t c = cp1252Char(static_cast<unsigned char>(code));
    if (c == 0x7F || (c >= 0x80 && c <= 0x9F))
        return {};
    return QString(QChar(c));
}

QString asciiReadout(QChar c)
{
    int code = cp1252Byte(c.unicode());
    if (code < 0)
        code = c.unicode() >= 0xF000 && c.unicode() <= 0xF0FF ? c.unicode() - 0xF000 : c.unicode();
    return QStringLiteral("Ascii= ALT + 0") + QString::number(code);
}

void insertCharacters(RichTextSurface& testo, const QString& fontName, const QString& characters, bool symbolFont)
{
    if (characters.isEmpty())
        return;
    if (!symbolFont) {
        testo.setSelFontName(fontName);
        testo.setSelText(characters);
        return;
    }
    const float size = testo.SelFontSize().value_or(testo.defaultCharFormat().fontPointSize() > 0
                                                        ? float(testo.defaultCharFormat().fontPointSize())
                                                        : 10.0f);
    QString name = fontName;
    name.remove(QLatin1Char(';')).remove(QLatin1Char('{')).remove(QLatin1Char('}')).remove(QLatin1Char('\\'));
    QString body;
    for (const QChar c : characters) {
        const int byte = c.unicode() >= 0xF000 && c.unicode() <= 0xF0FF ? c.unicode() - 0xF000 : cp1252Byte(c.unicode());
        if (byte >= 0)
            body += QStringLiteral("\\'%1").arg(byte, 2, 16, QLatin1Char('0'));
    }
    testo.setSelRTF(QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0\\fnil\\fcharset2 %1;}}\\f0\\fs%2 %3}")
                        .arg(name)
                        .arg(int(size * 2 + 0.5f))
                        .arg(body));
}

// ---------------------------------------------------------------- font viewer

QStringList fontSizes()
{
    return {QStringLiteral("8"),  QStringLiteral("9"),  QStringLiteral("10"), QStringLiteral("11"),
            QStringLiteral("12"), QStringLiteral("14"), QStringLiteral("16"), QStringLiteral("18"),
            QStringLiteral("20"), QStringLiteral("22"), QStringLiteral("24"), QStringLiteral("26"),
            QStringLiteral("28"), QStringLiteral("36"), QStringLiteral("48"), QStringLiteral("72")};
}

void applyFontLook(RichTextSurface& testo, const FontLook& look)
{
    testo.setSelFontName(look.family);
    testo.setSelFontSize(look.size);
    testo.setSelBold(look.bold);
    testo.setSelItalic(look.italic);
    testo.setSelUnderline(look.underline);
    testo.setSelColor(look.colour);
}

}  // namespace tornelia
