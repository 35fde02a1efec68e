#pragma once

// "Correzione testo...": walks the document from the caret to its end and
// round from the top back to the caret, stopping at each word the dictionary
// does not know, and selecting it in the view.

#include "tools/spell_marks.h"

#include <QDialog>

#include <optional>
#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTextDocument;
class QTextEdit;

namespace tornelia {

// The walk itself, in document positions (a paragraph break counts one).
class SpellWalk {
public:
    SpellWalk(QTextDocument* doc, SpellChecker& checker, int start);

    // The next misspelled word at or after the walk's position; none once the
    // walk is back where it started.
    std::optional<WordSpan> next();
    // Go on after a word left as it is.
    void skip(const WordSpan& word) { pos_ = word.start + word.length; }
    // The word at `at` was replaced: go on after the replacement.
    void replaced(int at, int oldLength, int newLength);
    // Every occurrence at `positions` (before the change, ascending) was
    // replaced, `current` among them.
    void replacedAll(const std::vector<int>& positions, const WordSpan& current, int newLength);

    int position() const { return pos_; }
    int origin() const { return origin_; }
    bool wrapped() const { return wrapped_; }

private:
    QTextDocument* doc_;
    SpellChecker& checker_;
    int pos_;
    int origin_;
    bool wrapped_ = false;
};

// The sentence around a word of a paragraph, for the window to show: the
// text and where the word stands in it.
struct WordInSentence {
    QString sentence;
    int start = 0;
    int length = 0;
};
WordInSentence sentenceAround(const QString& paragraph, const WordSpan& word);

inline const QString kSpellDone = QStringLiteral("Controllo ortografico completato.");

class FrmSpell : public QDialog {
    Q_OBJECT
public:
    FrmSpell(SpellingSession& session, QWidget* parent = nullptr);

    // Moves to the first word; false when there is none (the message is shown).
    bool start();

    QString currentWord() const { return word_; }
    QLineEdit* changeTo() const { return changeTo_; }
    QListWidget* suggestions() const { return suggestions_; }
    QComboBox* language() const { return language_; }
    QPushButton* button(const QString& caption) const;

private:
    void advance();
    void showWord(const WordSpan& w);
    void cambia();
    void cambiaTutto();
    void ignora();
    void ignoraTutto();
    void aggiungi();
    void lingua(int index);
    void complete();

    SpellingSession& session_;
    SpellWalk walk_;
    WordSpan current_;
    QString word_;
    QTextEdit* context_ = nullptr;
    QLineEdit* changeTo_ = nullptr;
    QListWidget* suggestions_ = nullptr;
    QComboBox* language_ = nullptr;
    std::vector<QPushButton*> buttons_;
};

// Opens the window modally over owner; with nothing to correct only the
// closing message is shown.
void showFrmSpell(SpellingSession& session, QWidget* owner);

}  // namespace tornelia
