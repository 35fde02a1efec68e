#include "tools/spell_marks.h"

#include "controls/edit_layout.h"
#include "controls/editor_view.h"
#include "core/ports.h"

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QElapsedTimer>
#include <QGraphicsTextItem>
#include <QMenu>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>

namespace tornelia {

namespace {

// Marks our own ranges among a layout's extra formats, so that others' stay.
constexpr int kSpellMark = QTextFormat::UserProperty + 60;
// Above this many characters a change is a new document rather than typing:
// the screen is checked before the rest.
constexpr int kLargeChange = 2000;
// A slice yields to the event loop after this long.
constexpr int kSliceMs = 8;
// The rest of a document waits while the person types: checked between two
// keys, every key of a long document would wait a slice for it. It goes on
// after a pause this long; the paragraph being typed is checked at each key.
constexpr int kTypingPauseMs = 500;
const QString kMenuTag = QStringLiteral("spelling");

QTextCharFormat markFormat()
{
    QTextCharFormat f;
    f.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    f.setUnderlineColor(QColor(Qt::red));
    f.setProperty(kSpellMark, true);
    return f;
}

bool isMark(const QTextLayout::FormatRange& r) { return r.format.hasProperty(kSpellMark); }

}  // namespace

SpellMarks::SpellMarks(RichTextSurface& testo, SpellChecker& checker, EditorView* view, QObject* parent)
    : QObject(parent), testo_(testo), checker_(checker), view_(view)
{
    QTextDocument* doc = testo_.document();
    // contentsChange comes only from a document that has a layout.
    doc->documentLayout();
    connect(doc, &QTextDocument::contentsChange, this, &SpellMarks::contentsChange);
    connect(&testo_, &RichTextSurface::cursorMoved, this, &SpellMarks::caretMoved);
    timer_.setSingleShot(true);
    timer_.setInterval(0);
    connect(&timer_, &QTimer::timeout, this, [this] {
        // A word finished by moving the caret is one paragraph: at once.
        const bool large = visibleFirst_ || std::any_of(queue_.begin(), queue_.end(),
                                                        [](const auto& r) { return r.second > r.first; });
        if (large && typing_.isValid() && !typing_.hasExpired(kTypingPauseMs)) {
            timer_.start(int(kTypingPauseMs - typing_.elapsed()));
            return;
        }
        runSlice(kSliceMs);
    });
    recheckAll();
}

SpellMarks::~SpellMarks() = default;

void SpellMarks::setEnabled(bool on)
{
    if (on == enabled_)
        return;
    enabled_ = on;
    if (on) {
        recheckAll();
        return;
    }
    queue_.clear();
    timer_.stop();
    for (QTextBlock b = testo_.document()->begin(); b.isValid(); b = b.next())
        clearBlock(b);
}

void SpellMarks::recheckAll()
{
    if (!enabled_)
        return;
    queue_.clear();
    queue_.push_back({0, testo_.document()->characterCount()});
    visibleFirst_ = true;
    schedule();
}

bool SpellMarks::busy() const { return enabled_ && (!queue_.empty() || visibleFirst_); }

void SpellMarks::schedule()
{
    if (enabled_ && !timer_.isActive())
        timer_.start(0);
}

void SpellMarks::contentsChange(int pos, int removed, int added)
{
    if (!enabled_)
        return;
    // Queued work past the change moves with the text after it.
    const int delta = added - removed;
    for (auto& [from, to] : queue_) {
        if (from > pos)
            from = std::max(pos, from + delta);
        if (to > pos)
            to = std::max(pos, to + delta);
    }
    if (added > kLargeChange || removed > kLargeChange) {
        queue_.push_back({pos, pos + added});
        visibleFirst_ = true;
        typingAt_ = -1;
        schedule();
        return;
    }
    // Typing: the word that ends at the caret is not finished yet.
    typingAt_ = pos + added;
    typing_.start();
    // The paragraph is checked now, before the layout takes in the change:
    // its marks then move with the text in the same layout pass, where a
    // later check would lay the paragraph out a second time.
    QTextDocument* doc = testo_.document();
    for (QTextBlock b = doc->findBlock(pos); b.isValid() && b.position() <= pos + added; b = b.next())
        checkBlock(b);
}

void SpellMarks::caretMoved()
{
    if (typingAt_ < 0 || testo_.cursor().position() == typingAt_)
        return;
    // The caret left the word being typed: it is finished now.
    const int at = std::min(typingAt_, testo_.document()->characterCount() - 1);
    typingAt_ = -1;
    if (!enabled_)
        return;
    queue_.push_back({at, at});
    schedule();
}

std::pair<int, int> SpellMarks::visibleRange() const
{
    if (!view_ || !view_->textItem())
        return {0, -1};
    const QRectF scene = view_->mapToScene(view_->viewport()->rect()).boundingRect();
    const QRectF local = view_->textItem()->mapFromScene(scene).boundingRect();
    QAbstractTextDocumentLayout* layout = testo_.document()->documentLayout();
    const int from = layout->hitTest(local.topLeft(), Qt::FuzzyHit);
    const int to = layout->hitTest(local.bottomRight(), Qt::FuzzyHit);
    return {std::max(0, from), to < 0 ? testo_.document()->characterCount() : to};
}

void SpellMarks::runSlice(int budgetMs)
{
    if (!enabled_)
        return;
    QElapsedTimer clock;
    clock.start();
    QTextDocument* doc = testo_.document();
    if (visibleFirst_) {
        visibleFirst_ = false;
        const auto [from, to] = visibleRange();
        for (QTextBlock b = doc->findBlock(from); b.isValid() && b.position() <= to; b = b.next())
            checkBlock(b);
    }
    while (!queue_.empty()) {
        auto& [from, to] = queue_.front();
        QTextBlock b = doc->findBlock(from);
        bool out = false;
        for (; b.isValid() && b.position() <= to; b = b.next()) {
            checkBlock(b);
            if (clock.elapsed() >= budgetMs) {
                out = true;
                b = b.next();
                break;
            }
        }
        if (out && b.isValid() && b.position() <= to) {
            from = b.position();
            break;
        }
        queue_.erase(queue_.begin());
        if (out)
            break;
    }
    if (busy())
        timer_.start(0);
}

void SpellMarks::finish()
{
    while (busy())
        runSlice(1000);
    timer_.stop();
}

void SpellMarks::checkBlock(const QTextBlock& block)
{
    QTextLayout* layout = block.layout();
    if (!layout)
        return;
    const QString text = block.text();
    const int caret = testo_.cursor().position();
    const bool typingHere = typingAt_ >= 0 && typingAt_ == caret && block.contains(caret);
    QList<QTextLayout::FormatRange> ranges;
    const QList<QTextLayout::FormatRange> old = layout->formats();
    for (const auto& r : old)
        if (!isMark(r))
            ranges.append(r);
    const int kept = int(ranges.size());
    // The word the caret stands in or at the end of is being typed, also
    // when it is typed in front of another word and runs into it.
    const int at = caret - block.position();
    for (const WordSpan& w : checker_.misspelled(text)) {
        if (typingHere && w.start < at && at <= w.start + w.length)
            continue;
        ranges.append({w.start, w.length, markFormat()});
    }
    if (ranges.size() == kept && old.size() == kept)
        return;  // nothing marked before or now
    bool same = ranges.size() == old.size();
    for (qsizetype i = 0; same && i < ranges.size(); ++i)
        same = ranges[i].start == old[i].start && ranges[i].length == old[i].length && isMark(ranges[i]) == isMark(old[i]);
    if (same)
        return;
    layout->setFormats(ranges);
    edit_layout::restyle(testo_.document(), block);
}

void SpellMarks::clearBlock(const QTextBlock& block)
{
    QTextLayout* layout = block.layout();
    if (!layout)
        return;
    QList<QTextLayout::FormatRange> ranges = layout->formats();
    const auto n = ranges.size();
    ranges.removeIf(isMark);
    if (ranges.size() == n)
        return;
    layout->setFormats(ranges);
    edit_layout::restyle(testo_.document(), block);
}

std::vector<WordSpan> SpellMarks::marks() const
{
    std::vector<WordSpan> out;
    for (QTextBlock b = testo_.document()->begin(); b.isValid(); b = b.next()) {
        if (!b.layout())
            continue;
        for (const auto& r : b.layout()->formats())
            if (isMark(r))
                out.push_back({b.position() + r.start, r.length});
    }
    return out;
}

std::optional<WordSpan> SpellMarks::markAt(int docPos) const
{
    const QTextBlock b = testo_.document()->findBlock(docPos);
    if (!b.isValid() || !b.layout())
        return std::nullopt;
    for (const auto& r : b.layout()->formats()) {
        const int start = b.position() + r.start;
        // The caret just after a word still stands on it.
        if (isMark(r) && docPos >= start && docPos <= start + r.length)
            return WordSpan{start, r.length};
    }
    return std::nullopt;
}

// ------------------------------------------------------------------ session

SpellingSession::SpellingSession(RichTextSurface& testo, UndoStore& undo, SettingsStore& settings,
                                 MessagePort& messages, EditorView* view, const QString& personalFile,
                                 QObject* parent)
    : QObject(parent),
      testo_(testo),
      undo_(undo),
      settings_(settings),
      messages_(messages),
      view_(view),
      checker_(personalFile)
{
    setObjectName(QStringLiteral("spellingSession"));
    if (!checker_.setLanguage(spellLanguageSetting(settings_)))
        checker_.setLanguage(kDefaultLanguage);
    marks_ = std::make_unique<SpellMarks>(testo_, checker_, view_);
    marks_->setEnabled(spellWhileTypingSetting(settings_));
}

SpellingSession::~SpellingSession() = default;

void SpellingSession::reloadSettings()
{
    const QString language = spellLanguageSetting(settings_);
    if (language != checker_.language() && checker_.setLanguage(language))
        marks_->recheckAll();
    marks_->setEnabled(spellWhileTypingSetting(settings_));
}

bool SpellingSession::chooseLanguage(const QString& language)
{
    if (!checker_.setLanguage(language))
        return false;
    setSpellLanguageSetting(settings_, language);
    marks_->recheckAll();
    return true;
}

void SpellingSession::replace(int docStart, int docLength, const QString& replacement)
{
    undo_.unDO();
    const long from = testo_.fromDocPos(docStart);
    testo_.setSelStart(from);
    testo_.setSelLength(testo_.fromDocPos(docStart + docLength) - from);
    testo_.setSelText(replacement);
}

std::vector<int> SpellingSession::replaceAll(const QString& word, const QString& replacement)
{
    std::vector<int> found;
    QTextDocument* doc = testo_.document();
    const QTextDocument::FindFlags flags = QTextDocument::FindCaseSensitively | QTextDocument::FindWholeWords;
    for (QTextCursor c = doc->find(word, 0, flags); !c.isNull(); c = doc->find(word, c, flags))
        found.push_back(c.selectionStart());
    if (found.empty())
        return found;
    undo_.unDO();
    // From the last one back, so that the earlier positions still hold.
    for (auto it = found.rbegin(); it != found.rend(); ++it) {
        const long from = testo_.fromDocPos(*it);
        testo_.setSelStart(from);
        testo_.setSelLength(testo_.fromDocPos(*it + int(word.size())) - from);
        testo_.setSelText(replacement);
    }
    return found;
}

void SpellingSession::ignoreAll(const QString& word)
{
    checker_.ignoreAll(word);
    marks_->recheckAll();
}

void SpellingSession::addToDictionary(const QString& word)
{
    if (!checker_.addToPersonal(word))
        messages_.mostraMsg(QStringLiteral("Correzione testo"),
                            QStringLiteral("Impossibile salvare il dizionario personale in \"%1\". La parola "
                                           "sarà accettata fino alla chiusura del programma.")
                                .arg(checker_.personalFile()),
                            0, 3);
    marks_->recheckAll();
}

int SpellingSession::docPosAtGlobal(const QPoint& global) const
{
    if (!view_ || !view_->textItem())
        return -1;
    const QPoint inView = view_->viewport()->mapFromGlobal(global);
    if (!view_->viewport()->rect().contains(inView))
        return -1;
    const QPointF local = view_->textItem()->mapFromScene(view_->mapToScene(inView));
    return testo_.document()->documentLayout()->hitTest(local, Qt::FuzzyHit);
}

bool SpellingSession::prepareMenu(QMenu* menu, int docPos)
{
    for (QAction* a : menu->actions())
        if (a->property("spelling").toBool()) {
            menu->removeAction(a);
            a->deleteLater();
        }
    if (docPos < 0 || !marks_->enabled())
        return false;
    const std::optional<WordSpan> mark = marks_->markAt(docPos);
    if (!mark)
        return false;
    QTextCursor c(testo_.document());
    c.setPosition(mark->start);
    c.setPosition(mark->start + mark->length, QTextCursor::KeepAnchor);
    const QString word = c.selectedText();
    QAction* first = menu->actions().isEmpty() ? nullptr : menu->actions().first();
    auto add = [&](QAction* a) {
        a->setParent(menu);
        a->setProperty("spelling", true);
        menu->insertAction(first, a);
    };
    const QStringList suggestions = checker_.suggestions(word, 5);
    for (const QString& s : suggestions) {
        auto* a = new QAction(s);
        a->setObjectName(QStringLiteral("mnuOrtSuggerimento"));
        QFont bold = a->font();
        bold.setBold(true);
        a->setFont(bold);
        const WordSpan at = *mark;
        QObject::connect(a, &QAction::triggered, this, [this, at, s] { replace(at.start, at.length, s); });
        add(a);
    }
    if (suggestions.isEmpty()) {
        auto* none = new QAction(QStringLiteral("(nessun suggerimento)"));
        none->setEnabled(false);
        add(none);
    }
    auto* ignore = new QAction(QStringLiteral("Ignora tutto"));
    ignore->setObjectName(QStringLiteral("mnuOrtIgnora"));
    QObject::connect(ignore, &QAction::triggered, this, [this, word] { ignoreAll(word); });
    add(ignore);
    auto* addWord = new QAction(QStringLiteral("Aggiungi al dizionario"));
    addWord->setObjectName(QStringLiteral("mnuOrtAggiungi"));
    QObject::connect(addWord, &QAction::triggered, this, [this, word] { addToDictionary(word); });
    add(addWord);
    auto* line = new QAction;
    line->setSeparator(true);
    add(line);
    return true;
}

}  // namespace tornelia
