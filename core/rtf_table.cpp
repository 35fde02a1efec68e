#include "core/rtf_table.h"

#include "core/rtf_keywords.h"
#include "core/rtf_lexer.h"

#include <QTextDocument>
#include <QTextList>
#include <QTextTableCell>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>

namespace tornelia::rtftable {
namespace {

// Twips to the units the document lays out in (pixels at 96 dpi).
constexpr double kTwipsPerUnit = 15.0;
// Edges of different rows this close are one edge: programs round their
// widths differently from row to row.
constexpr int kEdgeSlack = 30;
constexpr int kMaxLevel = 16;
// Wider than the slack, so a cell made that narrow keeps an edge of its own
// and is not taken for the cell before it.
constexpr int kMinCellWidth = kEdgeSlack + 1;

constexpr const char* kBorderWords[] = {
    nullptr,     "brdrs",    "brdrth",     "brdrdb",   "brdrdot",  "brdrdash", "brdrhair",
    "brdrdashsm", "brdrdashd", "brdrdashdd", "brdrtriple", "brdrsh", "brdrwavy", "brdrinset",
    "brdroutset", "brdremboss", "brdrengrave", "brdrdashdotstr", "brdrframe",
};

int borderStyleOf(std::string_view name)
{
    for (int i = 1; i < int(std::size(kBorderWords)); ++i)
        if (name == kBorderWords[i])
            return i;
    return -1;
}

int rgbOf(const QColor& c) { return c.red() | c.green() << 8 | c.blue() << 16; }
QColor colourOfRgb(int rgb) { return QColor(rgb & 0xFF, (rgb >> 8) & 0xFF, (rgb >> 16) & 0xFF); }

QTextFrameFormat::BorderStyle qtBorderStyle(int style)
{
    switch (style) {
    case 3: case 10: return QTextFrameFormat::BorderStyle_Double;
    case 4: return QTextFrameFormat::BorderStyle_Dotted;
    case 5: case 7: case 8: case 9: case 17: return QTextFrameFormat::BorderStyle_Dashed;
    case 13: return QTextFrameFormat::BorderStyle_Inset;
    case 14: return QTextFrameFormat::BorderStyle_Outset;
    default: return QTextFrameFormat::BorderStyle_Solid;
    }
}

}  // namespace

const char* borderStyleWord(int style)
{
    return style > 0 && style < int(std::size(kBorderWords)) ? kBorderWords[style] : "brdrs";
}

bool rowDefWord(RowDef& def, std::string_view name, bool hasParam, int param)
{
    const int v = hasParam ? param : 0;
    auto border = [&def](Border* b) {
        def.border = b;
        *b = Border{};
        return true;
    };
    if (name == "trowd") {
        def = RowDef{};
        return true;
    }
    if (name == "cellx") {
        def.next.right = std::clamp(v, -31680, 31680 * 4);
        def.cells.push_back(def.next);
        def.next = CellDef{};
        def.border = nullptr;
        // A file with a row of thousands of cells is garbage, not a table.
        if (def.cells.size() > 512)
            def.cells.pop_back();
        return true;
    }
    if (name == "trgaph") { def.gap = std::clamp(v, 0, 31680); return true; }
    if (name == "trpaddl") { def.padLeft = std::clamp(v, 0, 31680); return true; }
    if (name == "trpaddr") { def.padRight = std::clamp(v, 0, 31680); return true; }
    if (name == "trpaddfl") { def.padLeftUnit = v; return true; }
    if (name == "trpaddfr") { def.padRightUnit = v; return true; }
    if (name == "trleft") { def.left = std::clamp(v, -31680, 31680); return true; }
    if (name == "trql") { def.align = 0; return true; }
    if (name == "trqc") { def.align = 1; return true; }
    if (name == "trqr") { def.align = 2; return true; }
    if (name == "trrh") { def.height = std::clamp(v, -31680, 31680); return true; }
    if (name == "clmgf") { def.next.hMergeFirst = true; return true; }
    if (name == "clmrg") { def.next.hMerge = true; return true; }
    if (name == "clvmgf") { def.next.vMergeFirst = true; return true; }
    if (name == "clvmrg") { def.next.vMerge = true; return true; }
    if (name == "clvertalt") { def.next.vAlign = 0; return true; }
    if (name == "clvertalc") { def.next.vAlign = 1; return true; }
    if (name == "clvertalb") { def.next.vAlign = 2; return true; }
    if (name == "clcbpat") { def.next.shadeColour = std::max(0, v); return true; }
    if (name == "clcfpat") { def.next.patternColour = std::max(0, v); return true; }
    if (name == "clshdng") { def.next.shading = std::clamp(v, 0, 10000); return true; }
    if (name == "clbrdrt") return border(&def.next.borders[0]);
    if (name == "clbrdrl") return border(&def.next.borders[1]);
    if (name == "clbrdrb") return border(&def.next.borders[2]);
    if (name == "clbrdrr") return border(&def.next.borders[3]);
    if (name.starts_with("trbrdr")) return border(&def.rowBorder);
    // Paragraph borders: not a cell's.
    if (name == "brdrt" || name == "brdrl" || name == "brdrb" || name == "brdrr" || name == "brdrbtw" ||
        name == "brdrbar" || name == "box") {
        def.border = nullptr;
        return false;
    }
    if (name.starts_with("brdr")) {
        if (!def.border)
            return false;
        if (name == "brdrw")
            def.border->width = std::clamp(v, 0, 255);
        else if (name == "brdrcf")
            def.border->colour = std::max(0, v);
        else if (name == "brdrnone" || name == "brdrnil" || name == "brdrtbl")
            def.border->style = 0;
        else if (const int s = borderStyleOf(name); s > 0)
            def.border->style = s;
        else
            def.border->style = 1;  // a style we do not draw: a plain line
        return true;
    }
    // The rest of the row's words (padding, widths, autofit, header rows)
    // change nothing the program shows or writes.
    return name.starts_with("tr") || (name.starts_with("cl") && name != "cell");
}

namespace {

// Whether the reader takes the rest of the group `word` stands in as a
// destination: a known destination (a picture or an object only as its
// group's first word), or an unknown word marked \*. The nested rows'
// properties and the groups that only pass their text on are read as the
// body.
bool opensDestination(std::string_view word, bool first, bool marked)
{
    using rtf::Id;
    if (word == "nesttableprops")
        return false;
    const rtf::Keyword* k = rtf::findKeyword(word);
    if (!k)
        return marked;
    if (k->kind != rtf::Kind::Destination)
        return false;
    switch (k->id) {
    case Id::Ud:
    case Id::Field:
    case Id::FieldResult:
    case Id::Shape:
    case Id::ShpPict:
    case Id::ShapeResult:
        return false;
    case Id::Pict:
    case Id::Object:
        return first;
    default:
        return true;
    }
}

}  // namespace

std::optional<RowDef> scanRowDef(QByteArrayView rtf, qsizetype from, int level, int itapAtFrom)
{
    if (from < 0 || from > rtf.size())
        return std::nullopt;
    RtfLexer lexer(rtf.sliced(from));
    std::vector<int> itap{std::clamp(itapAtFrom, 0, kMaxLevel)};
    RowDef cur;
    bool collecting = false;
    std::optional<RowDef> found;
    // The groups the reader takes as a destination (a picture, a font
    // table, an unknown \* group) hold no row words, whatever they contain.
    int skipping = 0;
    bool fresh = false;
    bool ignorable = false;
    for (RtfToken t = lexer.next(); t.type != RtfToken::End; t = lexer.next()) {
        if (t.type == RtfToken::GroupOpen) {
            if (skipping > 0) {
                ++skipping;
            } else if (itap.size() < 4096) {
                itap.push_back(itap.back());
                fresh = true;
            }
            continue;
        }
        if (t.type == RtfToken::GroupClose) {
            if (skipping > 0 && --skipping > 0)
                continue;
            if (itap.size() > 1)
                itap.pop_back();
            fresh = false;
            continue;
        }
        if (skipping > 0)
            continue;
        if (t.type == RtfToken::Symbol && t.byte == '*') {
            ignorable = true;
            continue;
        }
        if (t.type != RtfToken::Word)
            continue;
        const std::string_view w = t.word;
        const bool first = std::exchange(fresh, false);
        const bool marked = std::exchange(ignorable, false);
        // Not in the group the scan started in, which may be the document's
        // own, where the reader opens no destination.
        if (itap.size() > 1 && opensDestination(w, first, marked)) {
            skipping = 1;
            continue;
        }
        int& here = itap.back();
        if (w == "pard") {
            here = 0;
        } else if (w == "intbl") {
            here = std::max(here, 1);
        } else if (w == "itap") {
            here = std::clamp(t.param, 0, kMaxLevel);
        } else if (w == "row") {
            break;
        } else if (w == "nestrow") {
            if (level >= 2 && std::max(2, here) == level)
                break;
        } else if (w == "trowd") {
            collecting = std::max(1, here) == level;
            if (collecting)
                cur = RowDef{};
        } else if (collecting && rowDefWord(cur, w, t.hasParam, t.param) && w == "cellx") {
            found = cur;
        }
    }
    if (found)
        found->border = nullptr;
    return found;
}

// ---------------------------------------------------------------- builder

bool Builder::defWord(int level, std::string_view name, bool hasParam, int param)
{
    level = std::clamp(level, 1, kMaxLevel);
    if (int(defs_.size()) < level)
        defs_.resize(size_t(level));
    return rowDefWord(defs_[size_t(level - 1)], name, hasParam, param);
}

bool Builder::inMergedCell() const
{
    if (levels_.empty())
        return false;
    const Level& l = levels_.back();
    return l.rowOpen && l.cursorCell >= 0 && size_t(l.cursorCell) < l.cellMerged.size() && l.cellMerged[size_t(l.cursorCell)];
}

bool Builder::rowFilled() const
{
    if (depth() != 1)
        return false;
    const Level& l = levels_.front();
    return l.rowOpen && l.definedCells > 0 && l.cell >= l.definedCells;
}

bool Builder::needsMove(int level) const
{
    level = std::clamp(level, 0, kMaxLevel);
    if (depth() != level)
        return true;
    if (level == 0)
        return false;
    const Level& l = levels_.back();
    return !l.rowOpen || l.cursorCell != l.cell;
}

RowDef Builder::defAt(int level, const Scan& scan)
{
    if (std::optional<RowDef> d = scan(level))
        return *d;
    if (int(defs_.size()) >= level)
        return defs_[size_t(level - 1)];
    return RowDef{};
}

void Builder::reach(int level, const Scan& scan)
{
    level = std::clamp(level, 0, kMaxLevel);
    while (depth() > level)
        closeLevel();
    for (int i = 1; i <= level; ++i) {
        if (depth() < i)
            openLevel(scan);
        if (depth() > i)
            continue;  // the cursor is in a table inside this level's cell
        Level& l = levels_.back();
        if (!l.rowOpen)
            startRow(l, defAt(i, scan));
        if (l.cursorCell != l.cell)
            moveToCell(l);
    }
}

void Builder::endCell(int level, const Scan& scan)
{
    reach(level, scan);
    if (level >= 1 && depth() == level)
        ++levels_.back().cell;
}

void Builder::endRow(int level, const Scan&)
{
    level = std::clamp(level, 1, kMaxLevel);
    if (depth() < level)
        return;  // a row end with no row: nothing to end
    while (depth() > level)
        closeLevel();
    Level& l = levels_.back();
    if (!l.rowOpen)
        return;
    l.rowOpen = false;
    l.cursorCell = -1;
}

void Builder::openLevel(const Scan&)
{
    levels_.push_back(Level{});
}

void Builder::closeLevel()
{
    Level l = levels_.back();
    levels_.pop_back();
    if (!l.table)
        return;
    updateColumns(l);
    QTextTableFormat tf = l.table->format();
    if (!l.anyBorder) {
        // No borders in the file: a light grid, so the cells can be seen.
        tf.setProperty(prop::TableGridOnly, true);
        tf.setBorder(1);
        tf.setBorderBrush(QColor(192, 192, 192));
        tf.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        l.table->setFormat(tf);
    }
    cursor_.setPosition(l.table->lastPosition() + 1);
}

void Builder::updateColumns(Level& l)
{
    QTextTableFormat tf = l.table->format();
    QList<QTextLength> widths;
    QList<int> edges{l.gridLeft};
    int prev = l.gridLeft;
    for (int e : l.edges) {
        widths.append(QTextLength(QTextLength::FixedLength, std::max(1, e - prev) / kTwipsPerUnit));
        edges.append(e);
        prev = e;
    }
    tf.setColumnWidthConstraints(widths);
    tf.setProperty(prop::TableEdges, QVariant::fromValue(edges));
    l.table->setFormat(tf);
}

// The grid column whose right edge is `edge`; a new column when the grid
// has none there. Cells of the rows above that the new edge cuts keep their
// width by spanning both halves.
int Builder::columnOfEdge(Level& l, int edge)
{
    edge = std::max(edge, l.gridLeft + kMinCellWidth);
    for (size_t i = 0; i < l.edges.size(); ++i)
        if (std::abs(l.edges[i] - edge) <= kEdgeSlack)
            return int(i);
    QTextTable* t = l.table;
    const auto at = std::upper_bound(l.edges.begin(), l.edges.end(), edge);
    const int idx = int(at - l.edges.begin());
    l.edges.insert(at, edge);
    if (!t)
        return idx;
    const int rows = t->rows();
    if (idx == t->columns()) {
        t->insertColumns(idx, 1);
        for (int r = 0; r < rows; ++r) {
            QTextTableCell left = t->cellAt(r, idx - 1);
            if (left.row() == r && left.rowSpan() == 1 && left.format().boolProperty(prop::CellFiller)) {
                t->mergeCells(r, left.column(), 1, left.columnSpan() + 1);
            } else {
                QTextTableCell c = t->cellAt(r, idx);
                QTextTableCellFormat f = c.format().toTableCellFormat();
                f.setProperty(prop::CellFiller, true);
                c.setFormat(f);
            }
        }
        return idx;
    }
    // The new column goes behind the one it halves, so the cells there keep
    // their text first: a merge puts a cell's text behind the one before.
    // Cells that span across it grow by themselves; those that end in the
    // halved column take the new one in.
    std::vector<QTextTableCell> ending;
    for (int r = 0; r < rows; ++r) {
        const QTextTableCell c = t->cellAt(r, idx);
        if (c.row() == r && c.column() + c.columnSpan() - 1 == idx)
            ending.push_back(c);
    }
    std::vector<std::array<int, 4>> merges;
    for (const QTextTableCell& c : ending)
        merges.push_back({c.row(), c.column(), c.rowSpan(), c.columnSpan() + 1});
    t->insertColumns(idx + 1, 1);
    for (const auto& m : merges)
        t->mergeCells(m[0], m[1], m[2], m[3]);
    return idx;
}

void Builder::startRow(Level& l, const RowDef& def)
{
    std::vector<int> rights;
    int prev = l.table ? l.gridLeft : def.left;
    for (const CellDef& c : def.cells) {
        rights.push_back(std::max(c.right, prev + kMinCellWidth));
        prev = rights.back();
    }
    if (!l.table) {
        l.gridLeft = def.left;
        l.edges.clear();
        for (int r : rights)
            columnOfEdge(l, r);
        if (l.edges.empty())
            l.edges.push_back(l.gridLeft + 1440);
        QTextTableFormat tf;
        tf.setBorderCollapse(true);
        tf.setBorder(0);
        tf.setCellSpacing(0);
        tf.setCellPadding(0);
        tf.setMargin(0);
        // \trleft is where the first cell's border stands; the text inside
        // starts a gap further in. Left of the margin the view cannot go.
        tf.setLeftMargin(std::max(0, def.left) / kTwipsPerUnit);
        tf.setAlignment(def.align == 1 ? Qt::AlignHCenter : def.align == 2 ? Qt::AlignRight : Qt::AlignLeft);
        l.table = cursor_.insertTable(1, int(l.edges.size()), tf);
        made_.emplace_back(l.table);
        l.row = 0;
    } else {
        for (int r : rights)
            columnOfEdge(l, r);
        l.table->appendRows(1);
        l.row = l.table->rows() - 1;
    }
    QTextTable* t = l.table;
    const int row = l.row;
    l.definedCells = int(def.cells.size());
    l.cellColumn.assign(def.cells.size(), 0);
    l.cellMerged.assign(def.cells.size(), false);
    struct Span { int first, last; size_t def; };
    std::vector<Span> spans;
    int col = 0;
    for (size_t k = 0; k < def.cells.size(); ++k) {
        const int edge = columnOfEdge(l, rights[k]);
        if (col >= t->columns() && !spans.empty()) {
            // Edges too close to part: the cell's text joins the one before.
            l.cellColumn[k] = spans.back().first;
            l.cellMerged[k] = true;
            continue;
        }
        const int last = std::min(t->columns() - 1, std::max(col, edge));
        if (def.cells[k].hMerge && !spans.empty()) {
            spans.back().last = last;
            l.cellColumn[k] = spans.back().first;
            l.cellMerged[k] = true;
        } else {
            spans.push_back(Span{col, last, k});
            l.cellColumn[k] = col;
        }
        col = last + 1;
    }
    for (const Span& s : spans)
        if (s.last > s.first)
            t->mergeCells(row, s.first, 1, s.last - s.first + 1);
    if (col < t->columns()) {
        t->mergeCells(row, col, 1, t->columns() - col);
        QTextTableCell filler = t->cellAt(row, col);
        QTextTableCellFormat f = filler.format().toTableCellFormat();
        f.setProperty(prop::CellFiller, true);
        filler.setFormat(f);
    }
    for (const Span& s : spans) {
        const CellDef& c = def.cells[s.def];
        const int width = s.last - s.first + 1;
        if (c.vMerge && row > 0) {
            const QTextTableCell above = t->cellAt(row - 1, s.first);
            if (above.isValid() && above.column() == s.first && above.columnSpan() == width) {
                t->mergeCells(above.row(), s.first, above.rowSpan() + 1, width);
                for (size_t k = 0; k < def.cells.size(); ++k)
                    if (l.cellColumn[k] == s.first)
                        l.cellMerged[k] = true;
                continue;
            }
        }
        formatCell(t->cellAt(row, s.first), def, c, l);
    }
    l.rowOpen = true;
    l.cell = 0;
    l.cursorCell = -1;
}

void Builder::formatCell(QTextTableCell cell, const RowDef& def, const CellDef& c, Level& l)
{
    QTextTableCellFormat f = cell.format().toTableCellFormat();
    f.setLeftPadding(def.leftPad() / kTwipsPerUnit);
    f.setRightPadding(def.rightPad() / kTwipsPerUnit);
    f.setTopPadding(0);
    f.setBottomPadding(0);
    QList<int> borders;
    auto side = [&](int i, auto setWidth, auto setBrush, auto setStyle) {
        const Border& b = c.borders[i];
        int rgb = -1;
        if (b.colour > 0)
            if (std::optional<QColor> col = colourOf_(b.colour))
                rgb = rgbOf(*col);
        borders << b.style << b.width << rgb;
        if (b.style == 0) {
            (f.*setWidth)(0);
            return;
        }
        l.anyBorder = true;
        const qreal w = std::max(1.0, b.width / kTwipsPerUnit) * (b.style == 3 ? 3 : 1);
        (f.*setWidth)(w);
        (f.*setBrush)(rgb < 0 ? QBrush(Qt::black) : QBrush(colourOfRgb(rgb)));
        (f.*setStyle)(qtBorderStyle(b.style));
    };
    using F = QTextTableCellFormat;
    side(0, &F::setTopBorder, &F::setTopBorderBrush, &F::setTopBorderStyle);
    side(1, &F::setLeftBorder, &F::setLeftBorderBrush, &F::setLeftBorderStyle);
    side(2, &F::setBottomBorder, &F::setBottomBorderBrush, &F::setBottomBorderStyle);
    side(3, &F::setRightBorder, &F::setRightBorderBrush, &F::setRightBorderStyle);
    if (std::any_of(borders.begin(), borders.end(), [](int v) { return v != 0 && v != -1; }))
        f.setProperty(prop::CellBorders, QVariant::fromValue(borders));
    else
        f.clearProperty(prop::CellBorders);
    // Shading: the pattern colour (black when none) over the background.
    std::optional<QColor> back = c.shadeColour > 0 ? colourOf_(c.shadeColour) : std::nullopt;
    if (back)
        f.setProperty(prop::CellShadeColour, rgbOf(*back));
    if (c.shading > 0)
        f.setProperty(prop::CellShading, c.shading);
    if (back || c.shading > 0) {
        const QColor base = back.value_or(QColor(Qt::white));
        const QColor pattern = (c.patternColour > 0 ? colourOf_(c.patternColour) : std::nullopt).value_or(QColor(Qt::black));
        const double p = c.shading / 10000.0;
        f.setBackground(QColor(int(base.red() * (1 - p) + pattern.red() * p), int(base.green() * (1 - p) + pattern.green() * p),
                               int(base.blue() * (1 - p) + pattern.blue() * p)));
    }
    if (c.vAlign) {
        f.setProperty(prop::CellVAlign, c.vAlign);
        f.setVerticalAlignment(c.vAlign == 1 ? QTextCharFormat::AlignMiddle : QTextCharFormat::AlignBottom);
    }
    f.setProperty(prop::RowLeft, def.left);
    // The one inset the rich edit shape writes: the one the text shows.
    f.setProperty(prop::RowGap, def.leftPad());
    if (def.align)
        f.setProperty(prop::RowAlign, def.align);
    if (def.height)
        f.setProperty(prop::RowHeight, def.height);
    f.clearProperty(prop::CellFiller);
    cell.setFormat(f);
}

void Builder::moveToCell(Level& l)
{
    QTextTable* t = l.table;
    while (l.cellColumn.size() <= size_t(l.cell)) {
        // More cells than the row defines: each goes to a column of its own.
        int col = 0;
        if (!l.cellColumn.empty()) {
            const QTextTableCell last = t->cellAt(l.row, l.cellColumn.back());
            col = last.column() + last.columnSpan();
        }
        if (col < t->columns()) {
            QTextTableCell next = t->cellAt(l.row, col);
            if (next.columnSpan() > 1)
                t->splitCell(l.row, col, 1, 1);
            next = t->cellAt(l.row, col);
            QTextTableCellFormat f = next.format().toTableCellFormat();
            f.clearProperty(prop::CellFiller);
            next.setFormat(f);
            if (col + 1 < t->columns()) {
                QTextTableCell rest = t->cellAt(l.row, col + 1);
                if (rest.column() == col + 1) {
                    t->mergeCells(l.row, col + 1, 1, t->columns() - col - 1);
                    rest = t->cellAt(l.row, col + 1);
                    QTextTableCellFormat rf = rest.format().toTableCellFormat();
                    rf.setProperty(prop::CellFiller, true);
                    rest.setFormat(rf);
                }
            }
        } else {
            const int prevEdge = l.edges.size() > 1 ? l.edges[l.edges.size() - 2] : l.gridLeft;
            const int width = l.edges.empty() ? 1440 : std::max(kMinCellWidth, l.edges.back() - prevEdge);
            const int at = columnOfEdge(l, (l.edges.empty() ? l.gridLeft : l.edges.back()) + width);
            // The new column is a filler in every row but this one.
            QTextTableCell c = t->cellAt(l.row, at);
            if (c.column() != at) {
                t->splitCell(l.row, c.column(), 1, at - c.column());
                c = t->cellAt(l.row, at);
            }
            QTextTableCellFormat f = c.format().toTableCellFormat();
            f.clearProperty(prop::CellFiller);
            c.setFormat(f);
            col = at;
        }
        l.cellColumn.push_back(col);
        l.cellMerged.push_back(false);
    }
    const QTextTableCell cell = t->cellAt(l.row, l.cellColumn[size_t(l.cell)]);
    cursor_.setPosition(cell.lastCursorPosition().position());
    l.cursorCell = l.cell;
}

// ---------------------------------------------------------------- writing

namespace {

// An empty block of more flow right behind the end of a frame.
bool emptyBehindFrame(const QTextBlock& block)
{
    if (!block.isValid() || block.length() != 1 || block.position() == 0 || !block.next().isValid())
        return false;
    const QTextDocument* doc = block.document();
    return doc->characterAt(block.position() - 1) == QChar(0xFDD1) &&
           doc->characterAt(block.position()) == QChar::ParagraphSeparator;
}

}  // namespace

void leaveList(const QTextBlock& hidden)
{
    // Made from the paragraph it stands in front of, the block would count
    // as an item of that paragraph's list and move every number after it.
    if (QTextList* list = hidden.textList())
        list->remove(hidden);
}

bool isHiddenAfterTable(const QTextBlock& block)
{
    return emptyBehindFrame(block) && standsBehindTable(block);
}

bool standsBehindTable(const QTextBlock& block)
{
    if (!block.isValid() || block.position() == 0 || block.document()->characterAt(block.position() - 1) != QChar(0xFDD1))
        return false;
    // The frame ending there is one of the tables in the block's own frame.
    const QTextFrame* frame = QTextCursor(block).currentFrame();
    if (!frame)
        return false;
    const int at = block.position();
    const QList<QTextFrame*> children = frame->childFrames();
    return std::any_of(children.begin(), children.end(), [at](const QTextFrame* f) {
        return f->lastPosition() == at - 1 && qobject_cast<const QTextTable*>(f);
    });
}

// Reading runs inside an edit block, where the document's tree of frames
// is not brought up to date: each table built is asked directly.
void Builder::uncoverEmptyParagraphs()
{
    for (const QPointer<QTextTable>& table : made_) {
        if (!table)
            continue;
        QTextDocument* doc = table->document();
        const QTextBlock after = doc->findBlock(table->lastPosition() + 1);
        if (after.position() != table->lastPosition() + 1 || !emptyBehindFrame(after))
            continue;
        QTextCursor c(doc);
        c.setPosition(after.position());
        c.insertBlock(after.blockFormat(), after.charFormat());
        leaveList(doc->findBlock(table->lastPosition() + 1));
    }
    made_.clear();
}

bool isFillerCell(const QTextTableCell& cell)
{
    // The cheap test first: the positions, then the format.
    return cell.firstPosition() == cell.lastPosition() && cell.format().boolProperty(prop::CellFiller);
}

bool isOwnCell(const QTextTable& table, int row, int column)
{
    const QTextTableCell c = table.cellAt(row, column);
    return c.isValid() && c.column() == column && !isFillerCell(c);
}

namespace {

QList<int> edgesOf(const QTextTable& table)
{
    const QTextTableFormat tf = table.format();
    QList<int> edges = tf.property(prop::TableEdges).value<QList<int>>();
    if (edges.size() == table.columns() + 1)
        return edges;
    // A table the file did not describe (or whose columns changed): its
    // columns' widths as laid out, or an even split of a page line.
    edges = {0};
    const QList<QTextLength> widths = tf.columnWidthConstraints();
    int x = 0;
    for (int i = 0; i < table.columns(); ++i) {
        int w = 9000 / std::max(1, table.columns());
        if (i < widths.size() && widths[i].type() == QTextLength::FixedLength)
            w = int(std::lround(widths[i].rawValue() * kTwipsPerUnit));
        x += std::max(kMinCellWidth, w);
        edges.append(x);
    }
    return edges;
}

QTextTableCellFormat rowFormat(const QTextTable& table, int row)
{
    for (int c = 0; c < table.columns(); ++c) {
        const QTextTableCell cell = table.cellAt(row, c);
        if (cell.row() == row && cell.column() == c && !isFillerCell(cell))
            return cell.format().toTableCellFormat();
    }
    return table.cellAt(row, 0).format().toTableCellFormat();
}

}  // namespace

std::vector<qint64> rowColours(const QTextTable& table, int row)
{
    std::vector<qint64> out;
    for (int c = 0; c < table.columns(); ++c) {
        if (!isOwnCell(table, row, c))
            continue;
        const QTextTableCellFormat f = table.cellAt(row, c).format().toTableCellFormat();
        const QList<int> b = f.property(prop::CellBorders).value<QList<int>>();
        for (qsizetype i = 0; i + 2 < b.size(); i += 3)
            if (b[i] != 0 && b[i + 2] >= 0)
                out.push_back(b[i + 2]);
        if (f.hasProperty(prop::CellShadeColour))
            out.push_back(f.intProperty(prop::CellShadeColour));
    }
    return out;
}

QString rowDefinition(const QTextTable& table, int row, const std::function<int(qint64)>& colourIndex)
{
    const QList<int> edges = edgesOf(table);
    const QTextTableCellFormat rf = rowFormat(table, row);
    const int gap = rf.hasProperty(prop::RowGap) ? rf.intProperty(prop::RowGap) : 108;
    const int left = rf.hasProperty(prop::RowLeft) ? rf.intProperty(prop::RowLeft) : edges.value(0) - gap;
    QString out = QStringLiteral("\\trowd\\trgaph%1\\trleft%2").arg(gap).arg(left);
    if (const int align = rf.intProperty(prop::RowAlign); align == 1 || align == 2)
        out += align == 1 ? QLatin1String("\\trqc") : QLatin1String("\\trqr");
    if (const int h = rf.intProperty(prop::RowHeight))
        out += QStringLiteral("\\trrh%1").arg(h);
    static const char* const sides[] = {"\\clbrdrt", "\\clbrdrl", "\\clbrdrb", "\\clbrdrr"};
    for (int c = 0; c < table.columns(); ++c) {
        if (!isOwnCell(table, row, c))
            continue;
        const QTextTableCell cell = table.cellAt(row, c);
        const QTextTableCellFormat f = cell.format().toTableCellFormat();
        if (cell.row() != row)
            out += QLatin1String("\\clvmrg");
        else if (cell.rowSpan() > 1)
            out += QLatin1String("\\clvmgf");
        if (const int v = f.intProperty(prop::CellVAlign); v == 1 || v == 2)
            out += v == 1 ? QLatin1String("\\clvertalc") : QLatin1String("\\clvertalb");
        const QList<int> b = f.property(prop::CellBorders).value<QList<int>>();
        for (qsizetype i = 0; i + 2 < b.size() && i < 12; i += 3) {
            if (b[i] == 0)
                continue;
            out += QLatin1String(sides[i / 3]);
            out += QStringLiteral("\\brdrw%1\\%2").arg(b[i + 1]).arg(QLatin1String(borderStyleWord(b[i])));
            if (b[i + 2] >= 0)
                out += QStringLiteral("\\brdrcf%1").arg(colourIndex(b[i + 2]));
        }
        if (f.hasProperty(prop::CellShadeColour))
            out += QStringLiteral("\\clcbpat%1").arg(colourIndex(f.intProperty(prop::CellShadeColour)));
        if (const int s = f.intProperty(prop::CellShading))
            out += QStringLiteral("\\clshdng%1").arg(s);
        const int last = std::min<int>(c + cell.columnSpan(), int(edges.size()) - 1);
        out += QStringLiteral("\\cellx%1").arg(edges.value(last));
    }
    return out;
}

}  // namespace tornelia::rtftable
