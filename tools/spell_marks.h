#pragma once

// The red wavy marks under misspelled words, and what the person can do with
// one. The marks are extra formats of the blocks' layouts, the way a
// highlighter colours text: they are drawn by the view but are not part of
// the document, so the text, its RTF and the undo steps never see them.
//
// A keystroke has its paragraph checked at once, in the same layout pass as
// the typed letter (a paragraph is a few hundred words looked up in a cache);
// a newly opened or pasted document is checked from the event loop in short
// slices, from the part on screen onwards.

#include "core/rich_text_surface.h"
#include "core/settings.h"
#include "core/undo_store.h"
#include "tools/spell_checker.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

class QMenu;

namespace tornelia {

class EditorView;
class MessagePort;

class SpellMarks : public QObject {
    Q_OBJECT
public:
    // view may be null (no screen to start from: the scan starts at the top).
    SpellMarks(RichTextSurface& testo, SpellChecker& checker, EditorView* view, QObject* parent = nullptr);
    ~SpellMarks() override;

    void setEnabled(bool on);
    bool enabled() const { return enabled_; }
    // What is accepted changed (a language, an ignored or added word): every
    // paragraph is checked again, the visible ones first.
    void recheckAll();

    // True while paragraphs wait to be checked.
    bool busy() const;
    // One slice of the work, for at most budgetMs milliseconds.
    void runSlice(int budgetMs);
    // Everything now, for tests and for the spelling window.
    void finish();

    // The marked words, in document positions (a paragraph break counts one).
    std::vector<WordSpan> marks() const;
    // The marked word at a document position, if any.
    std::optional<WordSpan> markAt(int docPos) const;

private:
    void contentsChange(int pos, int removed, int added);
    void caretMoved();
    void schedule();
    void checkBlock(const QTextBlock& block);
    void clearBlock(const QTextBlock& block);
    std::pair<int, int> visibleRange() const;

    RichTextSurface& testo_;
    SpellChecker& checker_;
    EditorView* view_;
    QTimer timer_;
    bool enabled_ = true;
    // Document ranges waiting to be checked, oldest first.
    std::vector<std::pair<int, int>> queue_;
    // A new document or a new dictionary: the paragraphs on screen go first.
    bool visibleFirst_ = false;
    // Where the person is typing a word: it is not checked until finished.
    int typingAt_ = -1;
    // Since the last key typed; invalid before the first.
    QElapsedTimer typing_;
};

// The spelling of one window: the dictionary, the marks over its view and
// the options that drive them.
class SpellingSession : public QObject {
    Q_OBJECT
public:
    SpellingSession(RichTextSurface& testo, UndoStore& undo, SettingsStore& settings, MessagePort& messages,
                    EditorView* view, const QString& personalFile, QObject* parent = nullptr);
    ~SpellingSession() override;

    SpellChecker& checker() { return checker_; }
    SpellMarks& marks() { return *marks_; }
    RichTextSurface& testo() { return testo_; }
    UndoStore& undo() { return undo_; }
    SettingsStore& settings() { return settings_; }
    MessagePort& messages() { return messages_; }
    EditorView* view() const { return view_; }

    // The options window saved: language and marks follow it.
    void reloadSettings();
    // Loads a language and remembers it; false when it is not installed.
    bool chooseLanguage(const QString& language);

    // The word at [docStart, docStart+docLength) becomes replacement, as one
    // undo step and in the word's own format.
    void replace(int docStart, int docLength, const QString& replacement);
    // Every whole-word, same-case occurrence of word, as one undo step. Gives
    // back the document positions of the replaced occurrences, before the change.
    std::vector<int> replaceAll(const QString& word, const QString& replacement);
    void ignoreAll(const QString& word);
    void addToDictionary(const QString& word);

    // Puts the suggestions, "Ignora tutto" and "Aggiungi al dizionario" at
    // the top of the menu when docPos stands on a marked word; takes away
    // what an earlier call put there. True when entries were added.
    bool prepareMenu(QMenu* menu, int docPos);
    // The document position under a point of the screen, -1 outside the text.
    int docPosAtGlobal(const QPoint& global) const;

private:
    RichTextSurface& testo_;
    UndoStore& undo_;
    SettingsStore& settings_;
    MessagePort& messages_;
    EditorView* view_;
    SpellChecker checker_;
    std::unique_ptr<SpellMarks> marks_;
};

// The name the personal list has in the data folder.
inline const QString kPersonalWordsFile = QStringLiteral("Dizionario personale.txt");

}  // namespace tornelia
