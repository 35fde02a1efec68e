#include "core/rtf_writer.h"

#include "core/codepage.h"
#include "core/picture.h"
#include "core/rich_text_surface.h"
#include "core/rtf_table.h"
#include "core/text_format.h"

#include <QHash>
#include <QTextBlock>
#include <QTextList>
#include <QTextTable>

#include <optional>
#include <unordered_map>
#include <vector>

namespace tornelia {
namespace {

struct FontEntry {
    QString name;
    QString kind;
    int charset = 0;
    int pitch = -1;
    bool operator==(const FontEntry&) const = default;
};

struct CharWords {
    int font = 0;
    int halfPoints = 20;
    int cf = 0;
    int highlight = 0;
    QString underline = QStringLiteral("ulnone");
    bool bold = false;
    bool italic = false;
    bool strike = false;
    bool hidden = false;
    bool caps = false;
    bool smallCaps = false;
    bool doubleStrike = false;
    int offset = 0;
    int superSub = 0;  // \super (+1) or \sub (-1): the offset is theirs
    bool symbol = false;   // the font is a symbol font: bytes, not characters
    bool western = true;   // the font's code page is Windows-1252
};

// A list as \pn words say it: other programs read these, and the reader
// gives back the same list.
struct ListWords {
    int type = 0;  // 0 none, 1 bullet, 2 numbered
    int style = 0; // \pndec, \pnucrm, \pnlcrm, \pnucltr, \pnlcltr
    QString before, after;
    const QTextList* list = nullptr;  // a new list starts with its own words
    bool operator==(const ListWords&) const = default;
};

struct ParaWords {
    int align = 0;
    int li = 0;
    int ri = 0;
    int fi = 0;
    bool bullet = false;
    ListWords list;
    std::vector<TabStop> tabs;
    int itap = 0;  // table nesting of the paragraph
    bool operator==(const ParaWords&) const = default;
};

ParaWords paraWordsOf(const QTextBlock& block)
{
    const QTextBlockFormat f = block.blockFormat();
    ParaWords p{alignmentOf(f), twipsOf(f, prop::LeftIndent), twipsOf(f, prop::RightIndent),
                twipsOf(f, prop::FirstIndent), block.textList() != nullptr, {}, tabStopsOf(f)};
    if (const QTextList* list = block.textList()) {
        const QTextListFormat lf = list->format();
        // Bullets look the same in one list or two; numbers tell them apart.
        p.list.list = list;
        switch (lf.style()) {
        case QTextListFormat::ListDecimal: p.list.type = 2; p.list.style = 0; break;
        case QTextListFormat::ListUpperRoman: p.list.type = 2; p.list.style = 1; break;
        case QTextListFormat::ListLowerRoman: p.list.type = 2; p.list.style = 2; break;
        case QTextListFormat::ListUpperAlpha: p.list.type = 2; p.list.style = 3; break;
        case QTextListFormat::ListLowerAlpha: p.list.type = 2; p.list.style = 4; break;
        default: p.list.type = 1; break;
        }
        if (p.list.type != 2)
            p.list.list = nullptr;
        if (p.list.type == 2) {
            p.list.before = lf.numberPrefix();
            p.list.after = lf.numberSuffix();
        } else {
            p.list.before = listLabel(block);
        }
    }
    return p;
}

class Writer {
public:
    Writer(const QTextDocument& doc, int from, int to, bool whole, const QTextCharFormat& def)
        : doc_(doc), from_(from), to_(to), whole_(whole), default_(def)
    {
    }

    QString run();

private:
    int fontIndex(const QTextCharFormat& f);
    int colourIndex(qint64 colour);
    const CharWords& wordsOf(const QTextCharFormat& f, int formatIndex);
    void writeCharWords(const CharWords& w);
    void writeParaWords(const ParaWords& p, bool first, const QString& label, int number);
    void writeListText(const ParaWords& p, const QString& label);
    void writeText(QStringView text, const CharWords& w);
    // Text of a list word, which leaves the body's first run as it is.
    void writeLabel(const QString& text)
    {
        const bool firstText = firstText_;
        firstText_ = false;
        needBlank_ = false;
        // A \tab ends a label for a reader, so a tab inside one cannot be
        // written; without it the label reads back as it was written.
        writeText(QString(text).remove(u'\t'), CharWords{});
        firstText_ = firstText;
    }
    void word(const char* w) { out_ += QLatin1String(w); needBlank_ = true; }
    void word(const char* w, int n)
    {
        out_ += QLatin1String(w);
        out_ += QString::number(n);
        needBlank_ = true;
    }

    const QTextDocument& doc_;
    int from_;
    int to_;
    bool whole_;
    QTextCharFormat default_;
    std::vector<FontEntry> fonts_;
    std::vector<Colour> colours_;
    QHash<quint32, int> colourIndex_;
    int symbolFont_ = -1;
    // The font list labels are written in: a symbol font would turn their
    // bytes into symbols when they are read back.
    int labelFont_ = 0;
    std::unordered_map<int, CharWords> wordCache_;
    std::optional<CharWords> last_;
    QString out_;
    bool needBlank_ = false;
    bool firstText_ = false;  // no character of the body written yet
};

int Writer::fontIndex(const QTextCharFormat& f)
{
    FontEntry e;
    e.name = fontNameOf(f);
    e.name.removeIf([](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7F; });
    if (e.name.isEmpty())
        e.name = fontNameOf(default_);
    const QString kind = f.stringProperty(prop::FontKind);
    e.kind = kind.isEmpty() ? defaultFontKind(e.name) : kind;
    e.charset = f.hasProperty(prop::FontCharset) && f.intProperty(prop::FontCharset) >= 0
                    ? f.intProperty(prop::FontCharset)
                    : defaultFontCharset(e.name);
    e.pitch = f.hasProperty(prop::FontPitch) ? f.intProperty(prop::FontPitch) : -1;
    for (size_t i = 0; i < fonts_.size(); ++i)
        if (fonts_[i] == e)
            return int(i);
    fonts_.push_back(e);
    return int(fonts_.size() - 1);
}

int Writer::colourIndex(qint64 colour)
{
    if (colour < 0)
        return 0;
    auto it = colourIndex_.find(quint32(colour));
    if (it != colourIndex_.end())
        return it.value();
    colours_.push_back(Colour(colour));
    const int index = int(colours_.size());
    colourIndex_.insert(quint32(colour), index);
    return index;
}

const CharWords& Writer::wordsOf(const QTextCharFormat& f, int formatIndex)
{
    auto it = wordCache_.find(formatIndex);
    if (it != wordCache_.end())
        return it->second;
    CharWords w;
    w.font = fontIndex(f);
    w.halfPoints = halfPointsOf(f, default_);
    w.cf = colourIndex(foregroundOf(f));
    w.highlight = colourIndex(highlightOf(f));
    w.underline = underlineKindOf(f) == UnderlineKind::None ? QStringLiteral("ulnone") : underlineWord(f);
    w.bold = f.fontWeight() >= QFont::DemiBold;
    w.italic = f.fontItalic();
    w.strike = f.fontStrikeOut();
    w.hidden = isHidden(f);
    w.caps = isCaps(f);
    w.smallCaps = !w.caps && f.fontCapitalization() == QFont::SmallCaps;
    if (w.strike && f.boolProperty(prop::DoubleStrike)) {
        w.strike = false;
        w.doubleStrike = true;
    }
    w.offset = offsetHalfPointsOf(f);
    // \super and \sub go back as themselves: as \up6 they would come back
    // at full size.
    w.superSub = superSubOf(f);
    const int charset = fonts_[size_t(w.font)].charset;
    w.symbol = charset == 2;
    w.western = charset == 0 || charset == 1;
    return wordCache_.emplace(formatIndex, w).first->second;
}

void Writer::writeCharWords(const CharWords& w)
{
    const bool all = !last_.has_value();
    const CharWords& l = all ? w : *last_;
    if (all) {
        // The first run names everything that is not the default, with the
        // font and the two-digit size last: the size's blank ends the head.
        if (w.cf) word("\\cf", w.cf);
        if (w.highlight) word("\\highlight", w.highlight);
        if (w.underline != QLatin1String("ulnone")) { out_ += u'\\' + w.underline; needBlank_ = true; }
        if (w.bold) word("\\b");
        if (w.italic) word("\\i");
        if (w.strike) word("\\strike");
        if (w.doubleStrike) word("\\striked1");
        if (w.hidden) word("\\v");
        if (w.superSub) word(w.superSub > 0 ? "\\super" : "\\sub");
        else if (w.offset > 0) word("\\up", w.offset);
        else if (w.offset < 0) word("\\dn", -w.offset);
        if (w.caps) word("\\caps");
        if (w.smallCaps) word("\\scaps");
        word("\\f", w.font);
        word("\\fs", w.halfPoints);
    } else {
        if (w.cf != l.cf) word("\\cf", w.cf);
        if (w.highlight != l.highlight) word("\\highlight", w.highlight);
        if (w.underline != l.underline) { out_ += u'\\' + w.underline; needBlank_ = true; }
        if (w.bold != l.bold) word(w.bold ? "\\b" : "\\b0");
        if (w.italic != l.italic) word(w.italic ? "\\i" : "\\i0");
        // To a reader a double strike is also a strike, and \striked0 ends
        // both: it goes before a single strike that starts, and \striked1
        // after one that ends.
        if (l.doubleStrike && !w.doubleStrike) word("\\striked0");
        if (w.strike != l.strike) word(w.strike ? "\\strike" : "\\strike0");
        if (w.doubleStrike && !l.doubleStrike) word("\\striked1");
        if (w.hidden != l.hidden) word(w.hidden ? "\\v" : "\\v0");
        if (w.superSub) {
            if (w.superSub != l.superSub) word(w.superSub > 0 ? "\\super" : "\\sub");
        } else if (l.superSub) {
            // \nosupersub ends the shrink too, which \up0 would not.
            word("\\nosupersub");
            if (w.offset > 0) word("\\up", w.offset);
            else if (w.offset < 0) word("\\dn", -w.offset);
        } else if (w.offset != l.offset) {
            if (w.offset > 0) word("\\up", w.offset);
            else if (w.offset < 0) word("\\dn", -w.offset);
            else word("\\up0");
        }
        if (w.caps != l.caps) word(w.caps ? "\\caps" : "\\caps0");
        if (w.smallCaps != l.smallCaps) word(w.smallCaps ? "\\scaps" : "\\scaps0");
        if (w.font != l.font) word("\\f", w.font);
        if (w.halfPoints != l.halfPoints) word("\\fs", w.halfPoints);
    }
    last_ = w;
}

bool isPlainBullet(const ParaWords& p) { return p.list.type == 1 && p.list.before == QStringLiteral("\u2022"); }

// The label as text for readers that do not number, before the list words.
void Writer::writeListText(const ParaWords& p, const QString& label)
{
    if (isPlainBullet(p)) {
        out_ += QStringLiteral("{\\pntext\\f%1\\'B7\\tab}").arg(symbolFont_);
    } else {
        out_ += QStringLiteral("{\\pntext\\f%1 ").arg(labelFont_);
        writeLabel(label);
        out_ += QLatin1String("\\tab}");
    }
    needBlank_ = false;
}

void Writer::writeParaWords(const ParaWords& p, bool first, const QString& label, int number)
{
    if (!first)
        word("\\pard");
    if (p.itap >= 1)
        word("\\intbl");
    if (p.itap >= 2)
        word("\\itap", p.itap);
    if (p.bullet) {
        writeListText(p, label);
        if (isPlainBullet(p)) {
            out_ += QStringLiteral("{\\*\\pn\\pnlvlblt\\pnf%1\\pnindent0{\\pntxtb\\'B7}}").arg(symbolFont_);
        } else if (p.list.type == 1) {
            out_ += QStringLiteral("{\\*\\pn\\pnlvlblt\\pnf%1\\pnindent0{\\pntxtb ").arg(labelFont_);
            writeLabel(p.list.before);
            out_ += QLatin1String("}}");
        } else {
            static const char* const styles[] = {"pndec", "pnucrm", "pnlcrm", "pnucltr", "pnlcltr"};
            out_ += QStringLiteral("{\\*\\pn\\pnlvlbody\\pnf%1\\pnindent0\\pnstart%2\\%3")
                        .arg(labelFont_)
                        .arg(number)
                        .arg(QLatin1String(styles[std::clamp(p.list.style, 0, 4)]));
            if (!p.list.before.isEmpty()) {
                out_ += QLatin1String("{\\pntxtb ");
                writeLabel(p.list.before);
                out_ += u'}';
            }
            if (!p.list.after.isEmpty()) {
                out_ += QLatin1String("{\\pntxta ");
                writeLabel(p.list.after);
                out_ += u'}';
            }
            out_ += u'}';
        }
        needBlank_ = false;
    }
    if (p.fi) word("\\fi", p.fi);
    if (p.li) word("\\li", p.li);
    if (p.ri) word("\\ri", p.ri);
    if (p.align == 1) word("\\qr");
    if (p.align == 2) word("\\qc");
    if (p.align == 3) word("\\qj");
    for (const TabStop& t : p.tabs) {
        if (t.kind == 'r') word("\\tqr");
        if (t.kind == 'c') word("\\tqc");
        if (t.kind == 'd') word("\\tqdec");
        static const char* const leaders[] = {nullptr, "\\tldot", "\\tlhyph", "\\tlul", "\\tlth", "\\tleq"};
        if (t.leader > 0 && t.leader <= 5) word(leaders[t.leader]);
        word("\\tx", t.twips);
    }
}

void Writer::writeText(QStringView text, const CharWords& w)
{
    auto blank = [this] {
        if (needBlank_) {
            out_ += u' ';
            needBlank_ = false;
        }
    };
    auto hex = [this](int b) {
        static const char digits[] = "0123456789abcdef";
        out_ += QLatin1String("\\'");
        out_ += QLatin1Char(digits[(b >> 4) & 0xF]);
        out_ += QLatin1Char(digits[b & 0xF]);
        needBlank_ = false;
    };
    auto unicode = [this](char16_t c) {
        out_ += QLatin1String("\\u");
        out_ += QString::number(c > 32767 ? int(c) - 65536 : int(c));
        out_ += u'?';
        needBlank_ = false;
    };
    for (const QChar qc : text) {
        const char16_t c = qc.unicode();
        if (firstText_) {
            // The head ends at the blank behind the first run's size; an
            // escape written straight behind it would leave no such blank.
            firstText_ = false;
            if (needBlank_ && c != '\t' && c != QChar::LineSeparator)
                blank();
        }
        if (c == '\t') {
            word("\\tab");
        } else if (c == QChar::LineSeparator) {
            word("\\line");
        } else if (c == 0x2011) {
            out_ += QLatin1String("\\_");
            needBlank_ = false;
        } else if (w.symbol) {
            // Symbol fonts carry bytes, read back into the private use area;
            // any other character, an escaped brace included, goes as \u.
            if (c >= 0xF020 && c <= 0xF0FF) {
                const int b = c - 0xF000;
                if (b < 0x7F && b != '\\' && b != '{' && b != '}') {
                    blank();
                    out_ += QChar(char16_t(b));
                } else {
                    hex(b);
                }
            } else if (c < 0x20) {
                hex(c);
            } else {
                unicode(c);
            }
        } else if (c == '\\' || c == '{' || c == '}') {
            blank();
            out_ += u'\\';
            out_ += qc;
        } else if (c < 0x20 || c == 0x7F) {
            hex(c);
        } else if (c < 0x80) {
            blank();
            out_ += qc;
        } else if (const int b = w.western ? cp1252Byte(c) : -1; b >= 0) {
            hex(b);
        } else {
            unicode(c);
        }
    }
}

QString Writer::run()
{
    // What the body holds, decided once so that the tables and the body agree.
    struct Item {
        enum Kind { Para, Run, Picture, MarkFormat, Break, RowStart, CellEnd, RowEnd } kind;
        ParaWords para;
        int formatKey = 0;
        QString label{};
        int number = 1;
        QTextCharFormat format{};
        QString text{};
        const QTextTable* table = nullptr;  // RowStart, RowEnd
        int row = 0;
        int level = 0;  // RowStart, CellEnd, RowEnd: table nesting
    };
    std::vector<Item> items;

    // Tables: the rows open at each nesting level, with the next grid
    // column to write and the one being written.
    struct OpenRow {
        const QTextTable* table;
        int row;
        int next;
        int current;
    };
    std::vector<OpenRow> open;
    const bool anyTables = [this] {
        for (const QTextFrame* f : doc_.rootFrame()->childFrames())
            if (qobject_cast<const QTextTable*>(f))
                return true;
        return false;
    }();
    using Chain = std::vector<std::pair<const QTextTable*, QTextTableCell>>;
    auto chainAt = [this](int pos) {
        Chain chain;
        for (QTextFrame* f = doc_.frameAt(pos); f; f = f->parentFrame())
            if (const auto* t = qobject_cast<const QTextTable*>(f))
                chain.insert(chain.begin(), {t, t->cellAt(pos)});
        return chain;
    };
    // A selection inside one cell is plain paragraphs; the tables around it
    // are not written.
    size_t baseDepth = 0;
    if (anyTables && !whole_) {
        const Chain a = chainAt(from_), b = chainAt(to_);
        while (baseDepth < a.size() && baseDepth < b.size() && a[baseDepth].first == b[baseDepth].first &&
               a[baseDepth].second == b[baseDepth].second)
            ++baseDepth;
    }
    auto cellsUntil = [&items, &open](size_t level, int column) {
        OpenRow& o = open[level - 1];
        for (int c = o.next; c < column && c < o.table->columns(); ++c)
            if (rtftable::isOwnCell(*o.table, o.row, c))
                items.push_back(Item{Item::CellEnd, {}, 0, {}, 1, {}, {}, nullptr, 0, int(level)});
        o.next = std::max(o.next, column);
    };
    auto closeRow = [&items, &open, &cellsUntil] {
        const size_t level = open.size();
        OpenRow& o = open.back();
        if (o.current >= 0) {
            items.push_back(Item{Item::CellEnd, {}, 0, {}, 1, {}, {}, nullptr, 0, int(level)});
            const QTextTableCell cell = o.table->cellAt(o.row, o.current);
            o.next = o.current + cell.columnSpan();
            o.current = -1;
        }
        cellsUntil(level, o.table->columns());
        items.push_back(Item{Item::RowEnd, {}, 0, {}, 1, {}, {}, o.table, o.row, int(level)});
        open.pop_back();
    };
    bool anyFormat = false;
    bool anyBullet = false;  // a plain bullet, written in the Symbol font
    bool anyLabel = false;   // a list label of its own, written in a text font
    QTextBlock block = doc_.findBlock(from_);
    for (bool first = true; block.isValid() && (first || whole_ || block.position() < to_); first = false, block = block.next()) {
        const int start = block.position();
        const int sep = start + block.length() - 1;
        const int a = std::max(from_, start);
        const int b = std::max(a, std::min(to_, sep));
        const bool writesBreak = whole_ || (sep < to_ && block.next().isValid());
        Chain chain;
        size_t depth = 0;
        bool filler = false;  // a place of the grid with no cell in the file
        if (anyTables) {
            chain = chainAt(start);
            depth = chain.size() > baseDepth ? chain.size() - baseDepth : 0;
            while (open.size() > depth)
                closeRow();
            for (size_t level = 1; level <= depth; ++level) {
                const auto& [table, cell] = chain[baseDepth + level - 1];
                if (open.size() >= level && (open[level - 1].table != table || open[level - 1].row != cell.row()))
                    while (open.size() >= level)
                        closeRow();
                if (open.size() < level) {
                    open.push_back(OpenRow{table, cell.row(), 0, -1});
                    items.push_back(Item{Item::RowStart, {}, 0, {}, 1, {}, {}, table, cell.row(), int(level)});
                }
                OpenRow& o = open[level - 1];
                filler = filler || rtftable::isFillerCell(cell);
                if (filler) {
                    o.current = -1;
                    break;
                }
                if (o.current != cell.column()) {
                    cellsUntil(level, cell.column());
                    o.current = cell.column();
                }
            }
        }
        if (filler) {
            // Nothing of it is written; only the row may end here.
            const auto& [table, cell] = chain.back();
            const QTextTableCell next = table->cellAt(sep + 1);
            if (writesBreak && !open.empty() && open.back().table == table &&
                (table->lastPosition() == sep || (next.firstPosition() == sep + 1 && next.row() != cell.row())))
                closeRow();
            continue;
        }
        // The block the layout hides behind a table is the structure's.
        if (rtftable::isHiddenAfterTable(block))
            continue;
        Item para{Item::Para, paraWordsOf(block)};
        para.para.itap = int(depth);
        if (const QTextList* list = block.textList()) {
            para.label = listLabel(block);
            para.number = listStart(list->format()) + list->itemNumber(block);
        }
        anyBullet = anyBullet || isPlainBullet(para.para);
        anyLabel = anyLabel || (para.para.bullet && !isPlainBullet(para.para));
        items.push_back(para);
        bool any = false;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment frag = it.fragment();
            const int fs = frag.position();
            const int fe = fs + frag.length();
            if (fe <= a || fs >= b)
                continue;
            const int lo = std::max(fs, a);
            const int hi = std::min(fe, b);
            Item item{frag.charFormat().isImageFormat() ? Item::Picture : Item::Run, {}};
            item.formatKey = frag.charFormatIndex();
            item.format = frag.charFormat();
            item.text = frag.text().mid(lo - fs, hi - lo);
            items.push_back(std::move(item));
            any = true;
            anyFormat = anyFormat || items.back().kind == Item::Run;
        }
        if (!any && writesBreak && block.length() == 1) {
            // An empty paragraph keeps the format its mark has.
            Item mark{Item::MarkFormat, {}};
            mark.formatKey = -1 - block.blockNumber();
            mark.format = block.charFormat();
            items.push_back(mark);
            anyFormat = true;
        }
        if (!writesBreak)
            continue;
        const QChar sepChar = doc_.characterAt(sep);
        if (depth > 0 && (sepChar == QChar(0xFDD0) || sepChar == QChar(0xFDD1))) {
            // The end of a cell, and of its row when the next cell is in
            // another row or the table ends here.
            const auto& [table, cell] = chain.back();
            const QTextTableCell next = table->cellAt(sep + 1);
            const bool tableEnd = sepChar == QChar(0xFDD1) && table->lastPosition() == sep;
            if (tableEnd || (next.isValid() && next.firstPosition() == sep + 1 && !(next == cell))) {
                OpenRow& o = open.back();
                items.push_back(Item{Item::CellEnd, {}, 0, {}, 1, {}, {}, nullptr, 0, int(depth)});
                o.next = cell.column() + cell.columnSpan();
                o.current = -1;
                if (tableEnd || next.row() != cell.row())
                    closeRow();
                continue;
            }
        }
        // A table at the start of the document or of a cell has an empty
        // paragraph before it that only Qt's structure makes: no break.
        if (sepChar == QChar(0xFDD0) && block.length() == 1 &&
            (start == 0 || doc_.characterAt(start - 1) == QChar(0xFDD0))) {
            if (items.back().kind == Item::MarkFormat && items.back().formatKey == -1 - block.blockNumber())
                items.pop_back();
            continue;
        }
        items.push_back(Item{Item::Break, {}});
    }
    while (!open.empty())
        closeRow();
    if (!anyFormat) {
        // Nothing but a caret or pictures: name the caret's format all the same.
        QTextCursor c(const_cast<QTextDocument*>(&doc_));
        c.setPosition(from_);
        Item mark{Item::MarkFormat, {}};
        mark.formatKey = -1000000;
        mark.format = c.charFormat();
        items.insert(items.begin() + 1, mark);
    }

    // First pass: fonts and colours in order of first use.
    for (const Item& item : items) {
        if (item.kind == Item::Run || item.kind == Item::MarkFormat)
            wordsOf(item.format, item.formatKey);
        if (item.kind == Item::RowStart)
            for (qint64 c : rtftable::rowColours(*item.table, item.row))
                colourIndex(c);
    }
    if (anyLabel) {
        const auto text = std::find_if(fonts_.begin(), fonts_.end(), [](const FontEntry& f) { return f.charset != 2; });
        if (text == fonts_.end()) {
            fonts_.push_back(FontEntry{QStringLiteral("Arial"), QStringLiteral("fswiss"), 0, -1});
            labelFont_ = int(fonts_.size() - 1);
        } else {
            labelFont_ = int(text - fonts_.begin());
        }
    }
    if (anyBullet) {
        fonts_.push_back(FontEntry{QStringLiteral("Symbol"), QStringLiteral("fnil"), 2, -1});
        symbolFont_ = int(fonts_.size() - 1);
    }

    out_.reserve(256 + (to_ - from_) * 2);
    out_ += QLatin1String("{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl");
    for (size_t i = 0; i < fonts_.size(); ++i) {
        const FontEntry& f = fonts_[i];
        out_ += QStringLiteral("{\\f%1\\%2").arg(i).arg(f.kind.isEmpty() ? QStringLiteral("fnil") : f.kind);
        if (f.pitch >= 0)
            out_ += QStringLiteral("\\fprq%1").arg(f.pitch);
        out_ += QStringLiteral("\\fcharset%1 ").arg(f.charset);
        needBlank_ = false;
        // A name is read in its font's code page (Western for symbol fonts).
        CharWords nameWords;
        nameWords.western = f.charset == 0 || f.charset == 1 || f.charset == 2;
        writeText(f.name, nameWords);
        out_ += QLatin1String(";}");
    }
    out_ += QLatin1String("}\r\n");
    if (!colours_.empty()) {
        out_ += QLatin1String("{\\colortbl ;");
        for (Colour c : colours_)
            out_ += QStringLiteral("\\red%1\\green%2\\blue%3;").arg(c & 0xFF).arg((c >> 8) & 0xFF).arg((c >> 16) & 0xFF);
        out_ += QLatin1String("}\r\n");
    }
    out_ += QLatin1String("\\viewkind4\\uc1\\pard");
    needBlank_ = true;
    firstText_ = true;

    // Second pass: the body.
    std::optional<ParaWords> prevPara;
    bool rowStarted = false;  // the words of a row's first paragraph are written whole
    const auto rowWords = [this](const Item& item) {
        return rtftable::rowDefinition(*item.table, item.row, [this](qint64 c) { return colourIndex(c); });
    };
    for (const Item& item : items) {
        switch (item.kind) {
        case Item::RowStart:
            // A nested row's words follow its cells, as Word writes them.
            if (item.level == 1) {
                out_ += rowWords(item);
                needBlank_ = true;
            }
            rowStarted = true;
            break;
        case Item::CellEnd:
            word(item.level > 1 ? "\\nestcell" : "\\cell");
            break;
        case Item::RowEnd:
            if (item.level > 1) {
                out_ += QLatin1String("{\\*\\nesttableprops") + rowWords(item) + QLatin1String("\\nestrow}{\\nonesttables\\par}\r\n");
            } else {
                out_ += QLatin1String("\\row\r\n");
            }
            needBlank_ = false;
            break;
        case Item::Para:
            if (rowStarted || !prevPara || !(item.para == *prevPara))
                writeParaWords(item.para, !prevPara.has_value() && !rowStarted, item.label, item.number);
            else if (item.para.bullet)
                writeListText(item.para, item.label);
            prevPara = item.para;
            rowStarted = false;
            break;
        case Item::Run: {
            const CharWords& w = wordsOf(item.format, item.formatKey);
            writeCharWords(w);
            writeText(item.text, w);
            break;
        }
        case Item::Picture: {
            const QString group = QString::fromLatin1(pictureGroup(doc_, item.format.toImageFormat()));
            for (qsizetype k = 0; k < item.text.size(); ++k)
                out_ += group;
            needBlank_ = false;
            break;
        }
        case Item::MarkFormat:
            writeCharWords(wordsOf(item.format, item.formatKey));
            break;
        case Item::Break:
            out_ += QLatin1String("\\par\r\n");
            needBlank_ = false;
            break;
        }
    }
    out_ += QLatin1String("}\r\n");
    return out_;
}

}  // namespace

QString writeRtf(const QTextDocument& doc, int from, int to, bool wholeDocument, const QTextCharFormat& defaultFormat)
{
    Writer writer(doc, from, to, wholeDocument, defaultFormat);
    return writer.run();
}

}  // namespace tornelia
