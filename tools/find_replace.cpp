#include "tools/find_replace.h"

#include "core/ports.h"
#include "core/undo_store.h"

#include <algorithm>

namespace tornelia {

namespace {

const QString kNotFound = QStringLiteral("Testo non trovato");
const QString kEndTitle = QStringLiteral("Fine ricerca");

}  // namespace

int findStringExact(const QStringList& list, const QString& text)
{
    for (int i = 0; i < list.size(); ++i) {
        if (list.at(i).compare(text, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

FindReplace::FindReplace(RichTextSurface& testo, UndoStore& undo, MessagePort& messages)
    : testo_(testo), undo_(undo), messages_(messages)
{
}

int FindReplace::optionBits() const
{
    return (wholeWord ? RichTextSurface::WholeWord : 0) | (matchCase ? RichTextSurface::MatchCase : 0);
}

void FindReplace::notify()
{
    if (onStateChanged)
        onStateChanged();
}

void FindReplace::addIfMissing(QStringList& list, const QString& text)
{
    if (findStringExact(list, text) == -1)
        list.append(text);
}

void FindReplace::useSelection(int index)
{
    (index == 0 ? findText : replaceText) = testo_.SelText();
    notify();
}

void FindReplace::takeSelection()
{
    if (testo_.SelLength() > 0) {
        findText = testo_.SelText().left(20);
        notify();
    }
}

void FindReplace::findNext()
{
    const int bits = optionBits();
    // The history check looks for index 1, not for a miss: a text that
    // stands first in the list is added again, and one that stands second is
    // not. The list has always behaved so and people are used to it.
    if (findStringExact(findList_, findText) != 1)
        findList_.append(findText);
    foundAt_ = testo_.Find(findText, searchPos_, -1, bits);
    if (foundAt_ == -1) {
        searchPos_ = 0;
        replaceEnabled_ = false;
        notify();
        messages_.mostraMsg(kEndTitle, kNotFound, 0, 2);
        return;
    }
    searchPos_ = foundAt_ + findText.size();
    replaceEnabled_ = true;
    testo_.SetFocus();
    notify();
}

// Whether the selection is the text searched for, by the same letter case
// rule as the search: a hit found without regard to case counts as one.
bool FindReplace::selectionIsHit() const
{
    const QString sel = testo_.SelText();
    return sel.compare(findText, matchCase ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0 &&
           sel.size() == findText.size();
}

void FindReplace::replace()
{
    undo_.unDO();
    if (!selectionIsHit())
        findNext();
    if (selectionIsHit())
        testo_.setSelText(replaceText);
    addIfMissing(findList_, findText);
    addIfMissing(replaceList_, replaceText);
    notify();
}

int FindReplace::replaceAll()
{
    undo_.unDO();
    replacing_ = true;
    cancelled_ = false;
    if (setBusy)
        setBusy(true);
    const int bits = optionBits();
    addIfMissing(findList_, findText);
    addIfMissing(replaceList_, replaceText);

    searchPos_ = 0;
    testo_.setSelStart(0);
    const long start0 = testo_.SelStart();
    int count = 0;
    // Where the text the last replacement wrote ends. The next search starts
    // at the hit plus the length of the search text, so a shorter
    // replacement skips what follows it; but a hit inside the replacement
    // itself is passed over, or a replacement that holds the search text
    // ("a" by "aa") would grow the document without end.
    long writtenEnd = 0;
    for (;;) {
        if (processEvents)
            processEvents();
        if (cancelled_)
            break;
        foundAt_ = testo_.Find(findText, std::max(searchPos_, writtenEnd), -1, bits);
        if (foundAt_ == -1) {
            replaceEnabled_ = false;
            if (count == 0)
                messages_.mostraMsg(kEndTitle, kNotFound, 0, 2);
            break;
        }
        // On by the length of the search text, not of the replacement: a
        // longer replacement is searched again from inside itself.
        searchPos_ = foundAt_ + findText.size();
        ++count;
        testo_.setSelText(replaceText);
        writtenEnd = foundAt_ + replaceText.size();
    }
    testo_.setSelStart(start0);
    testo_.setSelLength(0);
    if (setBusy)
        setBusy(false);
    replacing_ = false;
    notify();
    messages_.mostraMsg(QStringLiteral("Sostituisci"),
                        QString::number(count) +
                            (count == 1 ? QStringLiteral(" elemento cambiato") : QStringLiteral(" elementi cambiati")),
                        0, 1);
    return count;
}

bool FindReplace::cancel()
{
    if (replacing_) {
        cancelled_ = true;
        return false;
    }
    return true;
}

}  // namespace tornelia
