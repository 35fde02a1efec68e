#pragma once

// The state and the commands of the window "Trova": forward search from a
// kept position, replace, and replace all. No wrap-around: a miss reports
// and puts the position back to the top, so the next press starts there.

#include "core/rich_text_surface.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace tornelia {

class MessagePort;
class UndoStore;

// The exact-text look-up of a combo's list: the index of the first item equal
// to text, letters compared without case, or -1.
int findStringExact(const QStringList& list, const QString& text);

class FindReplace {
public:
    FindReplace(RichTextSurface& testo, UndoStore& undo, MessagePort& messages);

    // The texts and the check boxes, as the window's controls hold them.
    QString findText;
    QString replaceText;
    bool matchCase = false;  // "Maiuscole/minuscole"
    bool wholeWord = false;  // "Parola esatta"

    // The two histories, for the lifetime of the window.
    const QStringList& findList() const { return findList_; }
    const QStringList& replaceList() const { return replaceList_; }

    // With no search text nothing can be searched or replaced.
    bool findEnabled() const { return !findText.isEmpty(); }
    // "Sostituisci": on after a hit, off after a miss.
    bool replaceEnabled() const { return replaceEnabled_ && findEnabled(); }

    // "Usa testo selezionato": index 0 fills the search text, 1 the replacement.
    void useSelection(int index);
    // At opening: the first 20 characters of a selection become the search text.
    void takeSelection();

    void findNext();
    void replace();
    // Returns the number of replacements.
    int replaceAll();
    // "Annulla": true when the window should close, false when it stopped a
    // replace all instead.
    bool cancel();

    long searchPos() const { return searchPos_; }
    long foundAt() const { return foundAt_; }
    bool replacing() const { return replacing_; }

    // Lets the events through during replace all, so "Annulla" can stop it.
    std::function<void()> processEvents;
    // The hourglass on the main window during replace all.
    std::function<void(bool busy)> setBusy;
    // Called whenever the histories or the enabled state may have changed.
    std::function<void()> onStateChanged;

private:
    int optionBits() const;
    bool selectionIsHit() const;
    void addIfMissing(QStringList& list, const QString& text);
    void notify();

    RichTextSurface& testo_;
    UndoStore& undo_;
    MessagePort& messages_;
    QStringList findList_;
    QStringList replaceList_;
    long searchPos_ = 0;
    long foundAt_ = -1;
    bool replaceEnabled_ = false;
    bool cancelled_ = false;
    bool replacing_ = false;
};

}  // namespace tornelia
