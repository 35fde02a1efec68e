#include "tools/spell_checker.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringDecoder>
#include <QStringEncoder>
#include <QTextBoundaryFinder>

#include <hunspell/hunspell.hxx>

#include <algorithm>

namespace tornelia {

namespace {
const QString kSection = QStringLiteral("Ortografia");
const QString kApp;
}  // namespace

QString spellLanguageSetting(const SettingsStore& settings)
{
    return settings.leggiReg(kApp, kSection, QStringLiteral("Lingua"), kDefaultLanguage);
}

void setSpellLanguageSetting(SettingsStore& settings, const QString& language)
{
    settings.scriviReg(kApp, kSection, QStringLiteral("Lingua"), language);
}

bool spellWhileTypingSetting(const SettingsStore& settings)
{
    return settings.leggiReg(kApp, kSection, QStringLiteral("Digitazione"), QStringLiteral("1")) != QLatin1String("0");
}

void setSpellWhileTypingSetting(SettingsStore& settings, bool on)
{
    settings.scriviReg(kApp, kSection, QStringLiteral("Digitazione"), on ? QStringLiteral("1") : QStringLiteral("0"));
}

namespace {

// Mail and web addresses, as runs of non-blanks: the word boundaries would
// cut them into pieces that look like words.
QList<WordSpan> addressesOf(const QString& text)
{
    QList<WordSpan> out;
    if (!text.contains(QLatin1Char('@')) && !text.contains(QLatin1String("://"))
        && !text.contains(QLatin1String("www."), Qt::CaseInsensitive))
        return out;
    for (qsizetype i = 0; i < text.size();) {
        if (text.at(i).isSpace()) {
            ++i;
            continue;
        }
        qsizetype end = i;
        while (end < text.size() && !text.at(end).isSpace())
            ++end;
        const QStringView token = QStringView(text).mid(i, end - i);
        if (token.contains(QLatin1Char('@')) || token.contains(QLatin1String("://"))
            || token.startsWith(QLatin1String("www."), Qt::CaseInsensitive)
            || token.mid(1).startsWith(QLatin1String("www."), Qt::CaseInsensitive))
            out.append({int(i), int(end - i)});
        i = end;
    }
    return out;
}

}  // namespace

QList<WordSpan> wordsOf(const QString& text)
{
    QList<WordSpan> words;
    const QList<WordSpan> addresses = addressesOf(text);
    auto inAddress = [&addresses](int at) {
        return std::any_of(addresses.begin(), addresses.end(),
                           [at](const WordSpan& a) { return at >= a.start && at < a.start + a.length; });
    };
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    int start = -1;
    for (qsizetype pos = finder.toNextBoundary(); pos >= 0 || start >= 0; pos = finder.toNextBoundary()) {
        if (pos < 0)
            break;
        const auto reasons = finder.boundaryReasons();
        if (reasons & QTextBoundaryFinder::StartOfItem)
            start = int(pos);
        if ((reasons & QTextBoundaryFinder::EndOfItem) && start >= 0) {
            // A run of letters, digits or marks; punctuation alone is no word.
            const QStringView w = QStringView(text).mid(start, pos - start);
            if (std::any_of(w.begin(), w.end(), [](QChar c) { return c.isLetterOrNumber(); }) && !inAddress(start))
                words.append({start, int(pos) - start});
            start = (reasons & QTextBoundaryFinder::StartOfItem) ? int(pos) : -1;
        }
    }
    return words;
}

bool skippedWord(const QString& word)
{
    bool letters = false;
    bool lower = false;
    for (QChar c : word) {
        if (c.isDigit())
            return true;
        if (c == QLatin1Char('@') || c == QLatin1Char('/') || c == QLatin1Char('_'))
            return true;
        if (c.isLetter()) {
            letters = true;
            lower = lower || c.isLower();
        }
    }
    if (!letters)
        return true;
    // "www.example" and "example.com" reach here as one word with dots.
    if (word.contains(QLatin1Char('.')))
        return true;
    return !lower && word.size() > 1;
}

SpellChecker::SpellChecker(QString personalFile, QString dictionaryFolder)
    : personalFile_(std::move(personalFile)), folder_(std::move(dictionaryFolder))
{
    QFile f(personalFile_);
    if (f.open(QIODevice::ReadOnly)) {
        const QString all = QString::fromUtf8(f.readAll());
        for (const QString& line : all.split(QLatin1Char('\n'))) {
            const QString w = line.trimmed();
            if (!w.isEmpty() && !personal_.contains(w))
                personal_.append(w);
        }
    }
}

SpellChecker::~SpellChecker() = default;

QStringList SpellChecker::installedLanguages(const QString& folder)
{
    QStringList out;
    const QDir dir(folder);
    for (const QFileInfo& aff : dir.entryInfoList({QStringLiteral("*.aff")}, QDir::Files, QDir::Name)) {
        const QString base = aff.completeBaseName();
        if (dir.exists(base + QStringLiteral(".dic")) && QFileInfo(dir.filePath(base + QStringLiteral(".dic"))).isReadable())
            out.append(base);
    }
    return out;
}

QString SpellChecker::languageName(const QString& language)
{
    const QLocale locale(language);
    if (locale.language() == QLocale::C)
        return language;
    QString name = QLocale(QLocale::Italian).languageToString(locale.language());
    // Qt names languages in English; the two common ones read better in Italian.
    if (locale.language() == QLocale::Italian)
        name = QStringLiteral("Italiano");
    else if (locale.language() == QLocale::English)
        name = QStringLiteral("Inglese");
    else if (locale.language() == QLocale::French)
        name = QStringLiteral("Francese");
    else if (locale.language() == QLocale::German)
        name = QStringLiteral("Tedesco");
    else if (locale.language() == QLocale::Spanish)
        name = QStringLiteral("Spagnolo");
    return QStringLiteral("%1 (%2)").arg(name, language);
}

bool SpellChecker::setLanguage(const QString& language)
{
    const QDir dir(folder_);
    const QString aff = dir.filePath(language + QStringLiteral(".aff"));
    const QString dic = dir.filePath(language + QStringLiteral(".dic"));
    if (language.isEmpty() || !QFileInfo(aff).isReadable() || !QFileInfo(dic).isReadable())
        return false;
    auto next = std::make_unique<Hunspell>(QFile::encodeName(aff).constData(), QFile::encodeName(dic).constData());
    const QString encoding = QString::fromStdString(next->get_dict_encoding()).toUpper();
    utf8_ = encoding.isEmpty() || encoding == QLatin1String("UTF-8") || encoding == QLatin1String("UTF8");
    dictionary_ = std::move(next);
    language_ = language;
    for (const QString& w : std::as_const(personal_))
        dictionary_->add(encode(w));
    known_.clear();
    ++generation_;
    return true;
}

std::string SpellChecker::encode(const QString& word) const
{
    if (utf8_)
        return word.toStdString();
    // The older dictionaries are in ISO 8859-1 (or close to it).
    return word.toLatin1().toStdString();
}

QString SpellChecker::decode(const std::string& bytes) const
{
    if (utf8_)
        return QString::fromStdString(bytes);
    return QString::fromLatin1(bytes.data(), qsizetype(bytes.size()));
}

bool SpellChecker::spell(const QString& word)
{
    if (!utf8_) {
        // A character the dictionary's encoding cannot hold is no word of it.
        for (QChar c : word)
            if (c.unicode() > 0xFF)
                return false;
    }
    return dictionary_->spell(encode(word));
}

bool SpellChecker::isCorrect(const QString& word)
{
    if (!dictionary_ || skippedWord(word) || ignored_.contains(word))
        return true;
    const auto cached = known_.constFind(word);
    if (cached != known_.constEnd())
        return *cached;
    QString w = word;
    // Typographic apostrophes are written straight in the dictionaries.
    w.replace(QChar(0x2019), QLatin1Char('\''));
    bool ok = spell(w);
    if (!ok) {
        // "dell'anima" is one word for the boundaries, two for the dictionary:
        // the elided article with its apostrophe, then the word.
        const int apostrophe = int(w.indexOf(QLatin1Char('\'')));
        if (apostrophe > 0 && apostrophe < w.size() - 1) {
            const QString head = w.left(apostrophe + 1);
            const QString tail = w.mid(apostrophe + 1);
            ok = (spell(head) || spell(w.left(apostrophe))) && (skippedWord(tail) || spell(tail));
        }
    }
    known_.insert(word, ok);
    return ok;
}

QStringList SpellChecker::suggestions(const QString& word, int max)
{
    QStringList out;
    if (!dictionary_)
        return out;
    for (const std::string& s : dictionary_->suggest(encode(word))) {
        if (max >= 0 && out.size() >= max)
            break;
        const QString q = decode(s);
        if (!out.contains(q))
            out.append(q);
    }
    return out;
}

QList<WordSpan> SpellChecker::misspelled(const QString& text)
{
    QList<WordSpan> out;
    if (!dictionary_)
        return out;
    for (const WordSpan& w : wordsOf(text))
        if (!isCorrect(text.mid(w.start, w.length)))
            out.append(w);
    return out;
}

void SpellChecker::ignoreAll(const QString& word)
{
    ignored_.insert(word);
    ++generation_;
}

bool SpellChecker::addToPersonal(const QString& word)
{
    if (word.isEmpty())
        return true;
    if (!personal_.contains(word))
        personal_.append(word);
    if (dictionary_)
        dictionary_->add(encode(word));
    known_.remove(word);
    ++generation_;
    QDir().mkpath(QFileInfo(personalFile_).absolutePath());
    QSaveFile f(personalFile_);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    f.write(personal_.join(QLatin1Char('\n')).toUtf8());
    f.write("\n");
    return f.commit();
}

}  // namespace tornelia
