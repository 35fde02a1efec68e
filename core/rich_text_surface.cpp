#include "core/rich_text_surface.h"

#include "core/codepage.h"
#include "core/picture.h"
#include "core/rtf_reader.h"
#include "core/rtf_table.h"
#include "core/rtf_writer.h"
#include "core/text_format.h"

#include <QAbstractTextDocumentLayout>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextLayout>
#include <QTextList>
#include <QTextTable>

#include <algorithm>
#include <cmath>

namespace tornelia {
namespace {

bool startsWithRtf(QStringView s)
{
    qsizetype i = 0;
    while (i < s.size() && (s[i] == u' ' || s[i] == u'\r' || s[i] == u'\n' || s[i] == u'\t' || s[i] == QChar(0xFEFF)))
        ++i;
    return s.sliced(i).startsWith(u"{\\rtf");
}

bool isWordChar(QChar c) { return c.isLetterOrNumber() || c == u'_'; }

// Plain text as QTextDocument wants it: one '\n' per paragraph break, the
// vertical tab (a line break inside a paragraph) as a line separator.
QString toDocumentText(const QString& text)
{
    QString t = text;
    t.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    t.replace(u'\r', u'\n');
    t.replace(u'\v', QChar(QChar::LineSeparator));
    t.replace(QChar(QChar::ParagraphSeparator), u'\n');
    t.remove(QChar(QChar::ObjectReplacementCharacter));
    t.remove(QChar(0));  // RTF has no way to carry a NUL
    return t;
}

// In symbol fonts the document keeps byte values in the private use area,
// as a symbol font read from RTF has them.
QString toSymbolBytes(const QString& text)
{
    QString out = text;
    for (QChar& c : out)
        if (c.unicode() >= 0x20 && c.unicode() <= 0xFF)
            c = QChar(char16_t(0xF000 + c.unicode()));
    return out;
}

bool isBlockBoundary(QChar c)
{
    return c == QChar::ParagraphSeparator || c == QChar(0xFDD0) || c == QChar(0xFDD1);
}

// The document's raw characters as Text shows them: a paragraph break as
// CR LF, a line break inside a paragraph as a vertical tab. Table cells
// begin and end at boundaries of their own: the boundary of a cell that
// follows another in its row is a tab, every other one a paragraph break.
// A table at the start of the document or of a cell stands behind an empty
// paragraph that only the structure makes: that boundary shows as nothing.
// marks: document positions of the boundaries that do not show as CR LF,
// with what they show as ('\t' or 0); offset: where raw starts in the document.
QString toSurfaceText(QStringView raw, const std::vector<std::pair<int, char>>& marks = {}, int offset = 0)
{
    const qsizetype breaks = std::count_if(raw.begin(), raw.end(), isBlockBoundary);
    const auto byPos = [](const std::pair<int, char>& m, int p) { return m.first < p; };
    auto mark = std::lower_bound(marks.begin(), marks.end(), offset, byPos);
    const auto markEnd = std::lower_bound(mark, marks.end(), offset + int(raw.size()), byPos);
    qsizetype shorter = 0;
    for (auto m = mark; m != markEnd; ++m)
        shorter += m->second ? 1 : 2;
    QString t(raw.size() + breaks - shorter, Qt::Uninitialized);
    QChar* out = t.data();
    for (qsizetype i = 0; i < raw.size(); ++i) {
        const QChar c = raw[i];
        if (isBlockBoundary(c)) {
            if (mark != markEnd && mark->first == offset + int(i)) {
                if (mark->second)
                    *out++ = QChar(mark->second);
                ++mark;
                continue;
            }
            *out++ = u'\r';
            *out++ = u'\n';
        } else if (c == QChar::LineSeparator) {
            *out++ = u'\v';
        } else {
            *out++ = c;
        }
    }
    return t;
}

}  // namespace

RichTextSurface::RichTextSurface(QObject* parent) : QObject(parent), doc_(new QTextDocument(this))
{
    // The program keeps its own undo by snapshots.
    doc_->setUndoRedoEnabled(false);
    // Left to right, as the program writes: an automatic direction makes the
    // layout scan every paragraph below an edit for its first letter, on
    // every key.
    QTextOption option = doc_->defaultTextOption();
    option.setTextDirection(Qt::LeftToRight);
    doc_->setDefaultTextOption(option);
    cursor_ = QTextCursor(doc_);
    setDefaultFormat(QStringLiteral("Tahoma"), 10);
    QTextCursor c(doc_);
    c.setBlockCharFormat(defaultFormat_);
    // contentsChange needs a layout, which a surface without a view has not;
    // contentsChanged comes in every case.
    connect(doc_, &QTextDocument::contentsChanged, this, &RichTextSurface::onContentsChange);
    // Only a change above the counted paragraph moves the lines above it.
    connect(doc_, &QTextDocument::contentsChange, this, [this](int from, int, int) {
        if (lineAnchor_.block >= 0 && from < lineAnchor_.position)
            forgetLineAnchor();
    });
}

RichTextSurface::~RichTextSurface() = default;

void RichTextSurface::setDefaultFormat(const QString& fontName, float pointSize)
{
    QTextCharFormat f;
    f.setFontFamilies(QStringList{fontName});
    f.setFontPointSize(pointSize > 0 ? pointSize : 10);
    defaultFormat_ = f;
    QFont font(fontName);
    font.setPointSizeF(f.fontPointSize());
    forgetLineAnchor();
    doc_->setDefaultFont(font);
}

void RichTextSurface::onContentsChange()
{
    // An edit the surface made itself, with the cached text still good, is
    // spliced into the cache: rebuilding the whole text after every
    // insertion made each edit cost the length of the document, which is
    // what a replace-all of thousands of hits or typing in a long document
    // pays over and over. Any other change (formats, the RTF reader, a view
    // writing to the document) drops the cache.
    // Typing inside a paragraph only moves the table marks behind it.
    // Collecting them again walks every cell of every table, which made each
    // key in a long table cost the whole table.
    const bool marksMoved =
        pendingSplice_ && pendingSplice_->inOneBlock && moveCellMarks(pendingSplice_->docFrom, cursor_.position());
    if (pendingSplice_ && textCacheValid_) {
        const Splice sp = *pendingSplice_;
        const int docEnd = cursor_.position();
        QString raw(std::max(0, docEnd - sp.docFrom), Qt::Uninitialized);
        for (int i = 0; i < raw.size(); ++i)
            raw[i] = doc_->characterAt(sp.docFrom + i);
        textCache_.replace(sp.from, sp.removed, toSurfaceText(raw, cellTabs(), sp.docFrom));
        // A removal that crossed a table or a frame may have left more than
        // it was asked to; the length (cheap to know) catches it.
        if (textCache_.size() != length())
            textCacheValid_ = false;
    } else {
        textCacheValid_ = false;
    }
    if (!marksMoved)
        cellTabsValid_ = false;
    pendingSplice_.reset();
    ++changeCount_;
    emit Change();
}

// ---------------------------------------------------------------- positions

namespace {

// Cells that follow another cell of their row (a tab), and tables behind
// the empty paragraph that starts a document or a cell, the empty places of
// short rows and the hidden block behind a table (nothing), table by table,
// nested ones too.
void collectCellMarks(const QTextDocument& doc, const QTextFrame* frame, std::vector<std::pair<int, char>>& out)
{
    for (const QTextFrame* child : frame->childFrames()) {
        if (const auto* table = qobject_cast<const QTextTable*>(child)) {
            const int start = table->firstPosition() - 1;
            const QTextBlock before = doc.findBlock(start);
            if (before.length() == 1 && (start == 0 || doc.characterAt(start - 1) == QChar(0xFDD0)))
                out.emplace_back(start, 0);
            if (const QTextBlock after = doc.findBlock(table->lastPosition() + 1); rtftable::isHiddenAfterTable(after))
                out.emplace_back(after.position(), 0);
            for (int r = 0; r < table->rows(); ++r) {
                bool first = true;
                for (int c = 0; c < table->columns(); ++c) {
                    const QTextTableCell cell = table->cellAt(r, c);
                    if (cell.row() != r || cell.column() != c)
                        continue;
                    if (!first) {
                        // A place of the grid a short row has no cell for
                        // is no cell of the text's either while it is empty.
                        out.emplace_back(cell.firstPosition() - 1, rtftable::isFillerCell(cell) ? 0 : '\t');
                    }
                    first = false;
                }
            }
        }
        collectCellMarks(doc, child, out);
    }
}

}  // namespace

const std::vector<std::pair<int, char>>& RichTextSurface::cellTabs() const
{
    // Edits inside an edit block report the change only at its end: the
    // document's size tells a stale list as well.
    const std::pair<int, int> size{doc_->characterCount(), doc_->blockCount()};
    if (!cellTabsValid_ || size != cellTabsSize_) {
        cellTabs_.clear();
        collectCellMarks(*doc_, doc_->rootFrame(), cellTabs_);
        std::sort(cellTabs_.begin(), cellTabs_.end());
        cellShort_.assign(1, 0);
        for (const auto& m : cellTabs_)
            cellShort_.push_back(cellShort_.back() + (m.second ? 1 : 2));
        cellTabsValid_ = true;
        cellTabsSize_ = size;
    }
    return cellTabs_;
}

bool RichTextSurface::moveCellMarks(int from, int to)
{
    const std::pair<int, int> size{doc_->characterCount(), doc_->blockCount()};
    if (!cellTabsValid_ || size.second != cellTabsSize_.second)
        return false;
    const int delta = size.first - cellTabsSize_.first;
    const QTextBlock block = doc_->findBlock(from);
    // The marks of the empty places (the paragraph in front of a table, the
    // end of a short row, the block behind a table) come and go as their
    // paragraph fills or empties, and a new text of several paragraphs may
    // hold a table: those are collected again.
    if (!block.isValid() || to < from || to >= block.position() + block.length() || block.length() <= 1 ||
        block.length() - delta <= 1)
        return false;
    for (auto& m : cellTabs_)
        if (m.first >= from)
            m.first += delta;
    cellTabsSize_ = size;
    return true;
}

long RichTextSurface::tabsBefore(int docPos) const
{
    const auto& marks = cellTabs();
    const auto at = std::lower_bound(marks.begin(), marks.end(), docPos,
                                     [](const std::pair<int, char>& m, int p) { return m.first < p; });
    return cellShort_[size_t(at - marks.begin())];
}

long RichTextSurface::length() const
{
    cellTabs();
    return doc_->characterCount() - 1 + doc_->blockCount() - 1 - cellShort_.back();
}

int RichTextSurface::toDocPos(long pos) const
{
    pos = std::clamp(pos, 0L, length());
    // The block whose first position (counted with CR LF) is at or before pos.
    int lo = 0;
    int hi = doc_->blockCount() - 1;
    while (lo < hi) {
        const int mid = (lo + hi + 1) / 2;
        const int at = doc_->findBlockByNumber(mid).position();
        const long start = at + mid - tabsBefore(at);
        if (start <= pos)
            lo = mid;
        else
            hi = mid - 1;
    }
    const QTextBlock block = doc_->findBlockByNumber(lo);
    const long offset = std::min<long>(pos - (block.position() + lo - tabsBefore(block.position())), block.length() - 1);
    const int at = block.position() + int(offset);
    // The empty place a short row ends in shows as nothing, so its position
    // is the end of the row's last cell, where the text goes on.
    if (block.length() == 1 && at > 0 && doc_->characterAt(at - 1) == QChar(0xFDD0)) {
        QTextCursor c(doc_);
        c.setPosition(at);
        if (const QTextTable* table = c.currentTable()) {
            const QTextTableCell cell = table->cellAt(at);
            if (rtftable::isFillerCell(cell))
                return at - 1;
        }
    }
    return at;
}

long RichTextSurface::fromDocPos(int docPos) const
{
    const QTextBlock block = doc_->findBlock(docPos);
    return docPos + (block.isValid() ? block.blockNumber() : doc_->blockCount() - 1) - tabsBefore(docPos);
}

// ---------------------------------------------------------------- document

QString RichTextSurface::Text() const
{
    if (!textCacheValid_) {
        textCache_ = toSurfaceText(doc_->toRawText(), cellTabs());
        textCacheValid_ = true;
    }
    return textCache_;
}

namespace {

// Documents from this size up are built with the layout off and laid out
// afterwards from the top, a screen at once and the rest in slices while
// the window runs: laid out in the same edit, a document of millions of
// characters kept the window from showing for seconds.
constexpr qsizetype kLazyLayoutFrom = 200000;

}  // namespace

void RichTextSurface::replaceWhole(qsizetype size, const std::function<void()>& build)
{
    const bool lazy = size >= kLazyLayoutFrom && doc_->isLayoutEnabled();
    if (lazy)
        doc_->setLayoutEnabled(false);
    build();
    if (lazy) {
        // The caret goes to the top while the layout is still off: a view
        // that showed its caret at the end would otherwise have the whole
        // document laid out to find where the old caret stood.
        cursor_ = QTextCursor(doc_);
        pendingFormat_.reset();
        notifySelection();
        // Those who follow the document's changes (display formats, the
        // spelling, the line count) heard of it from the edit itself, layout
        // or none. Telling them again here would be worse than twice the
        // work: the display formats they set then stay a pending change of
        // the whole document, which the next key takes in, so that its
        // layout and spelling run over everything. The layout, switched
        // back on, starts again from the top.
        doc_->setLayoutEnabled(true);
    }
}

void RichTextSurface::replaceWithPlainText(const QString& text)
{
    replaceWhole(text.size(), [&] {
        QTextCursor c(doc_);
        c.beginEditBlock();
        c.select(QTextCursor::Document);
        c.removeSelectedText();
        c.setBlockFormat(QTextBlockFormat());
        c.setBlockCharFormat(defaultFormat_);
        c.insertText(toDocumentText(text), defaultFormat_);
        c.endEditBlock();
    });
}

void RichTextSurface::setText(const QString& text)
{
    replaceWithPlainText(text);
    pendingFormat_.reset();
    QTextCursor c(doc_);
    setCursor(c);
}

QString RichTextSurface::TextRTF() const
{
    return writeRtf(*doc_, 0, doc_->characterCount() - 1, true, defaultFormat_);
}

void RichTextSurface::readRtf(const QString& rtf, bool wholeDocument)
{
    RtfReadOptions options;
    options.wholeDocument = wholeDocument;
    options.baseFormat = defaultFormat_;
    tornelia::readRtf(QStringView(rtf), cursor_, options);
}

void RichTextSurface::setTextRTF(const QString& rtf)
{
    if (!startsWithRtf(rtf)) {
        setText(rtf);
        return;
    }
    replaceWithRtf(rtf.size(), [&] { readRtf(rtf, true); });
}

void RichTextSurface::setTextRtfBytes(const QByteArray& rtf)
{
    if (!startsWithRtf(QString::fromLatin1(rtf.left(64)))) {
        setText(QString::fromLatin1(rtf));
        return;
    }
    replaceWithRtf(rtf.size(), [&] {
        RtfReadOptions options;
        options.baseFormat = defaultFormat_;
        tornelia::readRtf(QByteArrayView(rtf), cursor_, options);
    });
}

void RichTextSurface::replaceWithRtf(qsizetype size, const std::function<void()>& read)
{
    replaceWhole(size, [&] {
        cursor_.beginEditBlock();
        cursor_.select(QTextCursor::Document);
        cursor_.removeSelectedText();
        cursor_.setBlockFormat(QTextBlockFormat());
        cursor_.setBlockCharFormat(defaultFormat_);
        read();
        cursor_.endEditBlock();
    });
    pendingFormat_.reset();
    QTextCursor c(doc_);
    setCursor(c);
}

void RichTextSurface::setFileName(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw SurfaceError(file.errorString().toStdString());
    const QByteArray bytes = file.readAll();
    fileName_ = path;
    setContents(bytes);
}

void RichTextSurface::setContents(const QByteArray& bytes)
{
    if (startsWithRtf(QString::fromLatin1(bytes.left(64))))
        setTextRtfBytes(bytes);
    else
        setText(decodePlainText(bytes));
}

void RichTextSurface::setBackColor(Colour c)
{
    backColor_ = c & 0xFFFFFF;
    emit backColorChanged();
}

// ---------------------------------------------------------------- selection

void RichTextSurface::setCursor(const QTextCursor& c)
{
    const bool moved = c.position() != cursor_.position() || c.anchor() != cursor_.anchor();
    cursor_ = c;
    if (moved)
        pendingFormat_.reset();
    notifySelection();
}

void RichTextSurface::adoptCursor(const QTextCursor& c)
{
    if (c.document() != doc_)
        return;
    setCursor(c);
}

void RichTextSurface::keepCaretBlockShaped()
{
    // Qt drops a paragraph's glyphs after each layout and shapes them anew
    // for every caret position asked and every paint. In the paragraph being
    // typed that is several shapings of the whole paragraph a key; kept, it
    // is one. Only this paragraph keeps them, so memory stays small.
    const QTextBlock block = cursor_.block();
    const int number = block.blockNumber();
    if (number == shapedBlock_)
        return;
    if (shapedBlock_ >= 0) {
        const QTextBlock old = doc_->findBlockByNumber(shapedBlock_);
        if (old.isValid() && old.layout())
            old.layout()->setCacheEnabled(false);
    }
    shapedBlock_ = number;
    if (block.isValid() && block.layout())
        block.layout()->setCacheEnabled(true);
}

void RichTextSurface::notifySelection()
{
    keepCaretBlockShaped();
    const long start = SelStart();
    const long len = SelLength();
    emit cursorMoved();
    if (start != lastSelStart_ || len != lastSelLength_) {
        lastSelStart_ = start;
        lastSelLength_ = len;
        emit SelChange();
    }
}

long RichTextSurface::SelStart() const { return fromDocPos(cursor_.selectionStart()); }

void RichTextSurface::setSelStart(long pos)
{
    if (pos < 0)
        throw SurfaceError("Valore di proprietà non valido");
    QTextCursor c(doc_);
    c.setPosition(toDocPos(pos));
    setCursor(c);
}

long RichTextSurface::SelLength() const
{
    return fromDocPos(cursor_.selectionEnd()) - fromDocPos(cursor_.selectionStart());
}

void RichTextSurface::setSelLength(long len)
{
    const long start = SelStart();
    const long end = std::clamp(start + len, 0L, length());
    QTextCursor c(doc_);
    c.setPosition(toDocPos(start));
    c.setPosition(toDocPos(end), QTextCursor::KeepAnchor);
    setCursor(c);
}

QString RichTextSurface::SelText() const
{
    if (!cursor_.hasSelection())
        return {};
    return Text().mid(SelStart(), SelLength());
}

QTextCharFormat RichTextSurface::insertionFormat() const
{
    if (cursor_.hasSelection()) {
        QTextCursor c(doc_);
        c.setPosition(cursor_.selectionStart() + 1);
        QTextCharFormat f = c.charFormat();
        f.clearProperty(QTextFormat::ObjectIndex);
        return f.isImageFormat() ? QTextCharFormat(defaultFormat_) : f;
    }
    if (pendingFormat_)
        return *pendingFormat_;
    const QTextBlock block = cursor_.block();
    QTextCursor c(doc_);
    const int pos = cursor_.position();
    // At the start of a paragraph the text goes on in the first character's format.
    c.setPosition(pos == block.position() && block.length() > 1 ? pos + 1 : pos);
    QTextCharFormat f = c.charFormat();
    if (f.isImageFormat()) {
        QTextCharFormat plain = f;
        plain.clearProperty(QTextFormat::ObjectType);
        plain.clearProperty(QTextFormat::ImageName);
        plain.clearProperty(QTextFormat::ImageWidth);
        plain.clearProperty(QTextFormat::ImageHeight);
        plain.clearProperty(prop::RawGroup);
        plain.clearProperty(prop::PictureGoal);
        return plain;
    }
    return f;
}

void RichTextSurface::setSelText(const QString& text)
{
    QTextCharFormat f = insertionFormat();
    QString docText = toDocumentText(text);
    // A paragraph break at the start of the paragraph behind a table would
    // leave an empty block right behind the table, which the layout keeps
    // out of sight: a block of the structure's own goes in front of it, so
    // the break typed is seen.
    const int hiddenAt = !cursor_.hasSelection() && docText.startsWith(u'\n') &&
                                 cursor_.position() == cursor_.block().position() &&
                                 rtftable::standsBehindTable(cursor_.block())
                             ? cursor_.position()
                             : -1;
    if (hiddenAt >= 0)
        docText.prepend(u'\n');
    if (textCacheValid_)
        pendingSplice_ = Splice{SelStart(), SelLength(), cursor_.selectionStart(),
                                doc_->findBlock(cursor_.selectionStart()) == doc_->findBlock(cursor_.selectionEnd())};
    cursor_.beginEditBlock();
    cursor_.removeSelectedText();
    cursor_.insertText(isSymbolCharset(f) ? toSymbolBytes(docText) : docText, f);
    if (hiddenAt >= 0)
        rtftable::leaveList(doc_->findBlock(hiddenAt));
    cursor_.endEditBlock();
    // Nothing changed (an empty text over an empty selection): no splice to make.
    pendingSplice_.reset();
    pendingFormat_.reset();
    notifySelection();
}

void RichTextSurface::typeText(const QString& text) { setSelText(text); }

bool RichTextSurface::tabInTable(bool backwards)
{
    QTextTable* table = cursor_.currentTable();
    if (!table)
        return false;
    const QTextTableCell cell = table->cellAt(cursor_.position());
    QTextTableCell target;
    if (backwards) {
        if (cell.firstPosition() - 1 <= table->firstPosition() - 1)
            return true;  // the first cell: nowhere to go
        target = table->cellAt(cell.firstPosition() - 1);
    } else if (cell.lastPosition() >= table->lastPosition()) {
        // The last cell: a new row, whose cells take the formats of the
        // ones above them.
        table->appendRows(1);
        target = table->cellAt(table->rows() - 1, 0);
    } else {
        target = table->cellAt(cell.lastPosition() + 1);
    }
    // A cell of the grid the file had no cell for is passed over.
    while (target.isValid() && rtftable::isFillerCell(target)) {
        if (backwards ? target.firstPosition() - 1 <= table->firstPosition() - 1 : target.lastPosition() >= table->lastPosition())
            return true;
        target = table->cellAt(backwards ? target.firstPosition() - 1 : target.lastPosition() + 1);
    }
    if (!target.isValid())
        return true;
    QTextCursor c(doc_);
    c.setPosition(target.firstCursorPosition().position());
    c.setPosition(target.lastCursorPosition().position(), QTextCursor::KeepAnchor);
    setCursor(c);
    return true;
}

QString RichTextSurface::SelRTF() const
{
    return writeRtf(*doc_, cursor_.selectionStart(), cursor_.selectionEnd(), false, defaultFormat_);
}

namespace {

// Pairs the characters of two texts that may differ only in blanks: the
// string engine moves, gains or loses a blank where a control word meets the
// text, and nothing else. Every other character must agree one to one; the
// blanks between two of them pair up from the left. The answer gives, for
// each character of `mine`, the index in `theirs` whose format it takes, or
// nothing when the texts differ in more than blanks. A blank the other text
// lost takes the format of its nearest neighbour there, so that it changes
// along with the words around it instead of keeping a format no longer meant.
std::optional<std::vector<qsizetype>> alignAcrossBlanks(QStringView mine, QStringView theirs)
{
    std::vector<qsizetype> pairedWith(size_t(mine.size()), -1);
    qsizetype i = 0;
    qsizetype j = 0;
    for (;;) {
        qsizetype endI = i;
        qsizetype endJ = j;
        while (endI < mine.size() && mine[endI] == u' ')
            ++endI;
        while (endJ < theirs.size() && theirs[endJ] == u' ')
            ++endJ;
        const qsizetype paired = std::min(endI - i, endJ - j);
        for (qsizetype k = 0; k < paired; ++k)
            pairedWith[size_t(i + k)] = j + k;
        const qsizetype neighbour = j + paired > 0 ? j + paired - 1 : (endJ < theirs.size() ? endJ : -1);
        for (qsizetype k = i + paired; k < endI; ++k)
            pairedWith[size_t(k)] = neighbour;
        if (endI == mine.size() || endJ == theirs.size()) {
            if (endI != mine.size() || endJ != theirs.size())
                return std::nullopt;
            return pairedWith;
        }
        if (mine[endI] != theirs[endJ])
            return std::nullopt;
        pairedWith[size_t(endI)] = endJ;
        i = endI + 1;
        j = endJ + 1;
    }
}

}  // namespace

// RTF over a selection that crosses table cells: when it holds the same
// characters (the colour effects, the toggles and the highlight change only
// formats), its formats go onto the selection character by character and
// the rows stay as they are; a paste of other text replaces the cells' text.
bool RichTextSurface::restyleAcrossCells(const QString& rtf)
{
    const int from = cursor_.selectionStart();
    const int to = cursor_.selectionEnd();
    std::vector<int> mine;
    QString mineText;
    bool crossesCells = false;
    for (int p = from; p < to; ++p) {
        const QChar c = doc_->characterAt(p);
        if (c == QChar(0xFDD0) || c == QChar(0xFDD1)) {
            crossesCells = true;
        } else if (c != QChar::ParagraphSeparator) {
            mine.push_back(p);
            mineText.append(c);
        }
    }
    if (!crossesCells && !cursor_.hasComplexSelection())
        return false;
    QTextDocument scratch;
    scratch.setUndoRedoEnabled(false);
    QTextCursor sc(&scratch);
    RtfReadOptions options;
    options.wholeDocument = false;
    options.baseFormat = defaultFormat_;
    tornelia::readRtf(QStringView(rtf), sc, options);
    std::vector<int> theirs;
    QString theirText;
    for (int p = 0; p < scratch.characterCount() - 1; ++p) {
        const QChar c = scratch.characterAt(p);
        if (c != QChar(0xFDD0) && c != QChar(0xFDD1) && c != QChar::ParagraphSeparator) {
            theirs.push_back(p);
            theirText.append(c);
        }
    }
    const auto pairing = alignAcrossBlanks(mineText, theirText);
    if (!pairing)
        return false;
    auto theirsOf = [&](size_t i) {
        const qsizetype k = (*pairing)[i];
        return k < 0 ? -1 : theirs[size_t(k)];
    };
    QTextCursor c(doc_);
    c.beginEditBlock();
    QTextCursor probe(&scratch);
    for (size_t i = 0; i < mine.size();) {
        const int first = theirsOf(i);
        if (first < 0) {  // nothing in the new text to take a format from
            ++i;
            continue;
        }
        // One run: consecutive in both documents, one format.
        probe.setPosition(first + 1);
        const QTextCharFormat f = probe.charFormat();
        size_t j = i + 1;
        while (j < mine.size() && mine[j] == mine[j - 1] + 1 && theirsOf(j) == theirsOf(j - 1) + 1) {
            probe.setPosition(theirsOf(j) + 1);
            if (probe.charFormat() != f)
                break;
            ++j;
        }
        if (!f.isImageFormat()) {
            c.setPosition(mine[i]);
            c.setPosition(mine[j - 1] + 1, QTextCursor::KeepAnchor);
            c.setCharFormat(f);
        }
        i = j;
    }
    c.endEditBlock();
    pendingFormat_.reset();
    notifySelection();
    return true;
}

void RichTextSurface::setSelRTF(const QString& rtf)
{
    if (cursor_.hasSelection() && startsWithRtf(rtf) && restyleAcrossCells(rtf))
        return;
    cursor_.beginEditBlock();
    cursor_.removeSelectedText();
    if (startsWithRtf(rtf))
        readRtf(rtf, false);
    else
        cursor_.insertText(toDocumentText(rtf), insertionFormat());
    cursor_.endEditBlock();
    pendingFormat_.reset();
    notifySelection();
}

// ------------------------------------------------------- character formats

template <typename T, typename Get>
std::optional<T> RichTextSurface::charProperty(Get get) const
{
    if (!cursor_.hasSelection())
        return get(insertionFormat());
    const int from = cursor_.selectionStart();
    const int to = cursor_.selectionEnd();
    // One character that is not a paragraph mark: its own format, looked up
    // directly. Walks through the text read every character so, and going
    // through the paragraph's runs from its start each time would make them
    // quadratic in a paragraph of many runs.
    if (to - from == 1) {
        const QTextBlock b = doc_->findBlock(from);
        if (from < b.position() + b.length() - 1) {
            QTextCursor c(doc_);
            c.setPosition(to);
            return get(c.charFormat());
        }
    }
    std::optional<T> value;
    for (QTextBlock b = doc_->findBlock(from); b.isValid() && b.position() < to; b = b.next()) {
        for (auto it = b.begin(); !it.atEnd(); ++it) {
            const QTextFragment frag = it.fragment();
            if (frag.position() + frag.length() <= from || frag.position() >= to)
                continue;
            const T v = get(frag.charFormat());
            if (!value)
                value = v;
            else if (!(*value == v))
                return std::nullopt;
        }
    }
    if (!value)  // only paragraph marks selected
        return get(insertionFormat());
    return value;
}

void RichTextSurface::mergeSel(const QTextCharFormat& f)
{
    if (!cursor_.hasSelection()) {
        QTextCharFormat next = insertionFormat();
        next.merge(f);
        pendingFormat_ = next;
        return;
    }
    cursor_.beginEditBlock();
    cursor_.mergeCharFormat(f);
    cursor_.endEditBlock();
}

std::optional<QString> RichTextSurface::SelFontName() const
{
    return charProperty<QString>([](const QTextCharFormat& f) { return fontNameOf(f); });
}

void RichTextSurface::setSelFontName(const QString& name)
{
    QTextCharFormat f;
    f.setFontFamilies(QStringList{name});
    // The font table facts of the old font do not describe the new one.
    f.setProperty(prop::FontKind, QString());
    f.setProperty(prop::FontCharset, -1);
    f.setProperty(prop::FontPitch, -1);
    mergeSel(f);
}

std::optional<float> RichTextSurface::SelFontSize() const
{
    const QTextCharFormat def = defaultFormat_;
    return charProperty<float>([&def](const QTextCharFormat& f) { return halfPointsOf(f, def) / 2.0f; });
}

void RichTextSurface::setSelFontSize(float points)
{
    QTextCharFormat f;
    f.setFontPointSize(std::clamp(points, 1.0f, 1638.0f));
    mergeSel(f);
}

std::optional<bool> RichTextSurface::SelBold() const
{
    return charProperty<bool>([](const QTextCharFormat& f) { return f.fontWeight() >= QFont::DemiBold; });
}

void RichTextSurface::setSelBold(bool on)
{
    QTextCharFormat f;
    f.setFontWeight(on ? QFont::Bold : QFont::Normal);
    mergeSel(f);
}

std::optional<bool> RichTextSurface::SelItalic() const
{
    return charProperty<bool>([](const QTextCharFormat& f) { return f.fontItalic(); });
}

void RichTextSurface::setSelItalic(bool on)
{
    QTextCharFormat f;
    f.setFontItalic(on);
    mergeSel(f);
}

std::optional<bool> RichTextSurface::SelUnderline() const
{
    return charProperty<bool>([](const QTextCharFormat& f) { return underlineKindOf(f) != UnderlineKind::None; });
}

void RichTextSurface::setSelUnderline(bool on)
{
    setSelUnderlineKind(on ? UnderlineKind::Single : UnderlineKind::None);
}

std::optional<UnderlineKind> RichTextSurface::SelUnderlineKind() const
{
    return charProperty<UnderlineKind>([](const QTextCharFormat& f) { return underlineKindOf(f); });
}

void RichTextSurface::setSelUnderlineKind(UnderlineKind kind)
{
    QTextCharFormat f;
    setUnderlineFormat(f, kind);
    mergeSel(f);
}

std::optional<bool> RichTextSurface::SelStrikeThru() const
{
    return charProperty<bool>([](const QTextCharFormat& f) { return f.fontStrikeOut(); });
}

void RichTextSurface::setSelStrikeThru(bool on)
{
    QTextCharFormat f;
    f.setFontStrikeOut(on);
    mergeSel(f);
}

std::optional<Colour> RichTextSurface::SelColor() const
{
    return charProperty<Colour>([](const QTextCharFormat& f) {
        const qint64 c = foregroundOf(f);
        return c < 0 ? Colour(0) : Colour(c);
    });
}

void RichTextSurface::setSelColor(Colour c)
{
    QTextCharFormat f;
    f.setForeground(toQColor(c));
    mergeSel(f);
}

std::optional<int> RichTextSurface::SelCharOffset() const
{
    // RTF keeps the offset in half-points; a half-point is ten twips.
    return charProperty<int>([](const QTextCharFormat& f) { return offsetHalfPointsOf(f) * 10; });
}

void RichTextSurface::setSelCharOffset(int twips)
{
    const int half = int(std::lround(twips / 10.0));
    QTextCharFormat f;
    f.setProperty(prop::OffsetHalfPoints, half);
    f.setVerticalAlignment(half > 0 ? QTextCharFormat::AlignSuperScript
                                    : half < 0 ? QTextCharFormat::AlignSubScript : QTextCharFormat::AlignNormal);
    mergeSel(f);
}

std::optional<bool> RichTextSurface::SelHidden() const
{
    return charProperty<bool>([](const QTextCharFormat& f) { return isHidden(f); });
}

void RichTextSurface::setSelHidden(bool on)
{
    QTextCharFormat f;
    f.setProperty(prop::Hidden, on);
    mergeSel(f);
}

std::optional<bool> RichTextSurface::SelCaps() const
{
    return charProperty<bool>([](const QTextCharFormat& f) { return isCaps(f); });
}

void RichTextSurface::setSelCaps(bool on)
{
    QTextCharFormat f;
    f.setFontCapitalization(on ? QFont::AllUppercase : QFont::MixedCase);
    mergeSel(f);
}

std::optional<Colour> RichTextSurface::SelHighlight() const
{
    return charProperty<Colour>([](const QTextCharFormat& f) {
        const qint64 c = highlightOf(f);
        return c < 0 ? kNoHighlight : Colour(c);
    });
}

void RichTextSurface::setSelHighlight(Colour c)
{
    QTextCharFormat f;
    if (c == kNoHighlight)
        f.setBackground(QBrush(Qt::NoBrush));
    else
        f.setBackground(toQColor(c));
    mergeSel(f);
}

// ------------------------------------------------------- paragraph formats

template <typename T, typename Get>
std::optional<T> RichTextSurface::blockProperty(Get get) const
{
    const int from = cursor_.selectionStart();
    const int to = cursor_.selectionEnd();
    std::optional<T> value;
    for (QTextBlock b = doc_->findBlock(from); b.isValid() && (b.position() <= to || !value); b = b.next()) {
        const T v = get(b);
        if (!value)
            value = v;
        else if (!(*value == v))
            return std::nullopt;
        if (b.position() + b.length() > to)
            break;
    }
    return value;
}

void RichTextSurface::mergeBlocks(const std::function<void(QTextBlockFormat&)>& change)
{
    const int from = cursor_.selectionStart();
    const int to = cursor_.selectionEnd();
    QTextCursor c(doc_);
    c.beginEditBlock();
    for (QTextBlock b = doc_->findBlock(from); b.isValid(); b = b.next()) {
        QTextBlockFormat f = b.blockFormat();
        change(f);
        c.setPosition(b.position());
        c.setBlockFormat(f);
        if (b.position() + b.length() > to)
            break;
    }
    c.endEditBlock();
}

std::optional<int> RichTextSurface::SelAlignment() const
{
    return blockProperty<int>([](const QTextBlock& b) { return alignmentOf(b.blockFormat()); });
}

void RichTextSurface::setSelAlignment(int alignment)
{
    mergeBlocks([alignment](QTextBlockFormat& f) { tornelia::setAlignment(f, alignment); });
}

std::optional<bool> RichTextSurface::SelBullet() const
{
    return blockProperty<bool>([](const QTextBlock& b) { return b.textList() != nullptr; });
}

void RichTextSurface::setSelBullet(bool on)
{
    const int from = cursor_.selectionStart();
    const int to = cursor_.selectionEnd();
    QTextCursor c(doc_);
    c.beginEditBlock();
    QTextList* list = nullptr;
    for (QTextBlock b = doc_->findBlock(from); b.isValid(); b = b.next()) {
        if (QTextList* old = b.textList(); old && !on)
            old->remove(b);
        if (on && !b.textList()) {
            const QTextBlock prev = b.previous();
            if (!list && prev.isValid() && prev.textList())
                list = prev.textList();
            if (list) {
                list->add(b);
            } else {
                c.setPosition(b.position());
                QTextListFormat lf;
                lf.setStyle(QTextListFormat::ListDisc);
                lf.setIndent(1);
                list = c.createList(lf);
            }
        } else if (on) {
            list = b.textList();
        }
        if (!on) {
            QTextBlockFormat f = b.blockFormat();
            f.setIndent(0);
            c.setPosition(b.position());
            c.setBlockFormat(f);
        }
        if (b.position() + b.length() > to)
            break;
    }
    c.endEditBlock();
}

std::optional<float> RichTextSurface::SelIndent() const
{
    return blockProperty<float>([](const QTextBlock& b) { return float(twipsOf(b.blockFormat(), prop::LeftIndent)); });
}

void RichTextSurface::setSelIndent(float twips)
{
    const int t = int(std::lround(twips));
    mergeBlocks([t](QTextBlockFormat& f) { setTwips(f, prop::LeftIndent, t); });
}

std::optional<float> RichTextSurface::SelRightIndent() const
{
    return blockProperty<float>([](const QTextBlock& b) { return float(twipsOf(b.blockFormat(), prop::RightIndent)); });
}

void RichTextSurface::setSelRightIndent(float twips)
{
    const int t = int(std::lround(twips));
    mergeBlocks([t](QTextBlockFormat& f) { setTwips(f, prop::RightIndent, t); });
}

// ---------------------------------------------------------------- methods

void RichTextSurface::LoadFile(const QString& path, int kind)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw SurfaceError(file.errorString().toStdString());
    const QByteArray bytes = file.readAll();
    if (kind == RtfKind)
        setTextRtfBytes(bytes);
    else
        setText(decodePlainText(bytes));
}

void RichTextSurface::SaveFile(const QString& path, int kind) const
{
    // Plain text carries what the view shows: list labels, symbol characters.
    const QByteArray bytes = kind == RtfKind ? TextRTF().toLatin1() : encodePlainText(plainTextExport(*doc_));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw SurfaceError(file.errorString().toStdString());
    if (file.write(bytes) != bytes.size()) {
        const std::string reason = file.errorString().toStdString();
        file.cancelWriting();
        throw SurfaceError(reason);
    }
    if (!file.commit())
        throw SurfaceError(file.errorString().toStdString());
}

long RichTextSurface::Find(const QString& text, long start, long end, int options)
{
    if (text.isEmpty())
        return -1;
    const QString t = Text();
    const long len = t.size();
    start = std::clamp(start, 0L, len);
    end = (end < 0 || end > len) ? len : end;
    const Qt::CaseSensitivity cs = (options & MatchCase) ? Qt::CaseSensitive : Qt::CaseInsensitive;
    long pos = start;
    while (pos <= end - text.size()) {
        const long found = t.indexOf(text, pos, cs);
        if (found < 0 || found + text.size() > end)
            return -1;
        const bool whole = !(options & WholeWord) ||
                           ((found == 0 || !isWordChar(t[found - 1])) &&
                            (found + text.size() >= len || !isWordChar(t[found + text.size()])));
        if (whole) {
            if (!(options & NoHighlight)) {
                setSelStart(found);
                setSelLength(text.size());
            }
            return found;
        }
        pos = found + 1;
    }
    return -1;
}

void RichTextSurface::Span(const QString& charSet, bool forward, bool negate)
{
    const QString t = Text();
    long start = SelStart();
    long end = start + SelLength();
    auto inSet = [&](QChar c) { return charSet.contains(c) != negate; };
    if (forward) {
        while (end < t.size() && inSet(t[end]))
            ++end;
    } else {
        while (start > 0 && inSet(t[start - 1]))
            --start;
    }
    QTextCursor c(doc_);
    c.setPosition(toDocPos(start));
    c.setPosition(toDocPos(end), QTextCursor::KeepAnchor);
    setCursor(c);
}

// ------------------------------------------------------------ line metrics

void RichTextSurface::setTextWidth(qreal width)
{
    textWidth_ = width;
    forgetLineAnchor();
    // The layout must exist for the document to report where it changed.
    doc_->documentLayout();
    doc_->setTextWidth(width);
}

namespace {

// Lines of a block as laid out at the document's text width. A block not yet
// laid out (the layout runs lazily down a long document) is laid out first.
int linesOf(const QTextBlock& b)
{
    const QTextLayout* layout = b.layout();
    if (layout && layout->lineCount() == 0 && b.isVisible())
        b.document()->documentLayout()->blockBoundingRect(b);
    return layout ? std::max(1, layout->lineCount()) : 1;
}

}  // namespace

long RichTextSurface::linesBefore(const QTextBlock& block) const
{
    const int target = block.blockNumber();
    LineAnchor a = lineAnchor_;
    // Walking back from the anchor or down from the top, whichever is shorter.
    if (a.block < 0 || (a.block > target && a.block - target > target))
        a = LineAnchor{0, 0, 0};
    QTextBlock b = doc_->findBlockByNumber(a.block);
    long n = a.linesBefore;
    while (b.isValid() && b.blockNumber() < target) {
        n += linesOf(b);
        b = b.next();
    }
    while (b.isValid() && b.blockNumber() > target) {
        b = b.previous();
        n -= linesOf(b);
    }
    lineAnchor_ = LineAnchor{target, block.position(), n};
    return n;
}

long RichTextSurface::GetLineCount() const
{
    if (textWidth_ < 0)
        return doc_->blockCount();
    const QTextBlock last = doc_->lastBlock();
    return linesBefore(last) + linesOf(last);
}

long RichTextSurface::LineIndex(long line) const
{
    if (line < 0)
        return -1;
    if (textWidth_ < 0) {
        const QTextBlock b = doc_->findBlockByNumber(int(line));
        return b.isValid() ? fromDocPos(b.position()) : -1;
    }
    // From the anchor's paragraph, up or down to the one holding the line.
    QTextBlock b = doc_->findBlockByNumber(std::max(0, lineAnchor_.block));
    long n = linesBefore(b);
    while (b.isValid() && line < n) {
        b = b.previous();
        if (b.isValid())
            n -= linesOf(b);
    }
    while (b.isValid()) {
        const int lines = linesOf(b);
        if (line < n + lines) {
            lineAnchor_ = LineAnchor{b.blockNumber(), b.position(), n};
            const QTextLayout* layout = b.layout();
            const int k = int(line - n);
            const int textStart = layout && layout->lineCount() > k ? layout->lineAt(k).textStart() : 0;
            return fromDocPos(b.position()) + textStart;
        }
        n += lines;
        b = b.next();
    }
    return -1;
}

long RichTextSurface::LineFromChar(long pos) const
{
    const int d = toDocPos(pos);
    const QTextBlock block = doc_->findBlock(d);
    if (textWidth_ < 0)
        return block.blockNumber();
    long n = linesBefore(block);
    linesOf(block);
    const QTextLayout* layout = block.layout();
    if (layout && layout->lineCount() > 0) {
        const QTextLine line = layout->lineForTextPosition(d - block.position());
        if (line.isValid())
            n += line.lineNumber();
        else
            n += layout->lineCount() - 1;
    }
    return n;
}

long RichTextSurface::LineLength(long pos) const
{
    const int d = toDocPos(pos);
    const QTextBlock block = doc_->findBlock(d);
    if (textWidth_ < 0)
        return block.length() - 1;
    linesOf(block);
    const QTextLayout* layout = block.layout();
    if (!layout || layout->lineCount() == 0)
        return block.length() - 1;
    QTextLine line = layout->lineForTextPosition(d - block.position());
    if (!line.isValid())
        line = layout->lineAt(layout->lineCount() - 1);
    return std::min(line.textLength(), block.length() - 1 - line.textStart());
}

// -------------------------------------------------------------- clipboard

void RichTextSurface::Copy() const
{
    if (!cursor_.hasSelection())
        return;
    auto* mime = new QMimeData;
    const QByteArray rtf = SelRTF().toLatin1();
    mime->setData(QStringLiteral("text/rtf"), rtf);
    mime->setData(QStringLiteral("application/rtf"), rtf);
    QString text = SelText();
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    mime->setText(text);
    QGuiApplication::clipboard()->setMimeData(mime);
}

void RichTextSurface::Cut()
{
    if (!cursor_.hasSelection())
        return;
    Copy();
    setSelText(QString());
}

void RichTextSurface::Paste()
{
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    if (!mime)
        return;
    for (const char* type : {"text/rtf", "application/rtf", "text/richtext"}) {
        if (mime->hasFormat(QLatin1String(type))) {
            setSelRTF(QString::fromLatin1(mime->data(QLatin1String(type))));
            return;
        }
    }
    // A picture copied in another program comes in as a picture of the
    // document, so that it is saved with it.
    if (mime->hasImage()) {
        const QImage image = qvariant_cast<QImage>(mime->imageData());
        if (!image.isNull()) {
            setSelRTF(pictureRtf(image));
            return;
        }
    }
    if (mime->hasText())
        setSelText(mime->text());
}

void RichTextSurface::GetZoom(int& numerator, int& denominator) const
{
    numerator = zoomNum_;
    denominator = zoomDen_;
}

void RichTextSurface::SetZoom(int numerator, int denominator)
{
    // 0/0 turns zoom off; otherwise the ratio must lie between 1/64 and 64.
    if (numerator == 0 && denominator == 0) {
        zoomNum_ = zoomDen_ = 0;
    } else if (numerator > 0 && denominator > 0 && numerator <= denominator * 64 && denominator <= numerator * 64) {
        zoomNum_ = numerator;
        zoomDen_ = denominator;
    } else {
        return;
    }
    emit zoomChanged();
}

}  // namespace tornelia
