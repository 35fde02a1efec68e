#pragma once

// Spelling on the system's Hunspell dictionaries, with the person's own word
// list beside them. Words are found by Unicode's word boundaries and handed to
// the dictionary in its own encoding.

#include "core/settings.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

class Hunspell;

namespace tornelia {

// Where the dictionaries of the system live.
inline const QString kDictionaryFolder = QStringLiteral("/usr/share/hunspell");
inline const QString kDefaultLanguage = QStringLiteral("it_IT");

// The two spelling options, in section "Ortografia" of the settings.
QString spellLanguageSetting(const SettingsStore& settings);
void setSpellLanguageSetting(SettingsStore& settings, const QString& language);
bool spellWhileTypingSetting(const SettingsStore& settings);
void setSpellWhileTypingSetting(SettingsStore& settings, bool on);

// A word of a text: where it starts and how long it is, in QString units.
struct WordSpan {
    int start = 0;
    int length = 0;
    bool operator==(const WordSpan&) const = default;
};

// The words of a text, as QTextBoundaryFinder cuts them, leaving out the
// pieces of mail and web addresses.
QList<WordSpan> wordsOf(const QString& text);
// Numbers, words with digits, mail and web addresses and words in capitals
// are left alone: they are codes and names more often than misspellings.
bool skippedWord(const QString& word);

class SpellChecker {
public:
    // personalFile: the person's word list, one word a line in UTF-8; it is
    // read now and written at each addition.
    explicit SpellChecker(QString personalFile, QString dictionaryFolder = kDictionaryFolder);
    ~SpellChecker();
    SpellChecker(const SpellChecker&) = delete;
    SpellChecker& operator=(const SpellChecker&) = delete;

    // The languages with both an .aff and a .dic file, as "it_IT", sorted.
    QStringList languages() const { return installedLanguages(folder_); }
    static QStringList installedLanguages(const QString& folder = kDictionaryFolder);
    // Loads a language; false (and the old one kept) when it is missing.
    bool setLanguage(const QString& language);
    QString language() const { return language_; }
    bool ready() const { return dictionary_ != nullptr; }
    // How the interface names a language code.
    static QString languageName(const QString& language);

    // True for a word the dictionary knows, the person added or ignored, and
    // for words that are skipped.
    bool isCorrect(const QString& word);
    QStringList suggestions(const QString& word, int max = -1);
    // The misspelled words of a text.
    QList<WordSpan> misspelled(const QString& text);

    // "Ignora tutto": accepted until the program closes.
    void ignoreAll(const QString& word);
    // "Aggiungi al dizionario": accepted now and in every later session.
    // False when the list could not be written (the word is accepted anyway).
    bool addToPersonal(const QString& word);
    QStringList personalWords() const { return personal_; }
    QString personalFile() const { return personalFile_; }

    // Counts changes of what is accepted, so that marks can be redone.
    int generation() const { return generation_; }

private:
    bool spell(const QString& word);
    std::string encode(const QString& word) const;
    QString decode(const std::string& bytes) const;

    QString personalFile_;
    QString folder_;
    QString language_;
    bool utf8_ = true;
    std::unique_ptr<Hunspell> dictionary_;
    QStringList personal_;
    QSet<QString> ignored_;
    QHash<QString, bool> known_;
    int generation_ = 0;
};

}  // namespace tornelia
