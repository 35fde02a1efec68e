#pragma once

// Tables in RTF: the row definitions (\trowd ... \cellx), the builder that
// turns the rows of a file into QTextTables, and the words the writer gives
// back for a table row.
//
// A table keeps what the file said about it in user properties, so that the
// writer gives back the same words: the column edges in twips on the table,
// the row's words on each cell of the row, the cell's borders and shading on
// the cell.

#include <QByteArrayView>
#include <QColor>
#include <QList>
#include <QPointer>
#include <QString>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextFormat>
#include <QTextTable>

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace tornelia {

namespace prop {
// Table: right edges of the grid's columns, and its left edge first (twips).
inline constexpr int TableEdges = QTextFormat::UserProperty + 60;  // QList<int>
// Table: drawn with a light grid only because the file gave no borders.
inline constexpr int TableGridOnly = QTextFormat::UserProperty + 61;  // bool
// Cell: the words of its row (\trleft, \trgaph, alignment, \trrh).
inline constexpr int RowLeft = QTextFormat::UserProperty + 62;    // int twips
inline constexpr int RowGap = QTextFormat::UserProperty + 63;     // int twips
inline constexpr int RowAlign = QTextFormat::UserProperty + 64;   // int 0 left, 1 centre, 2 right
inline constexpr int RowHeight = QTextFormat::UserProperty + 65;  // int twips, negative: exact
// Cell: top, left, bottom, right borders as style, width in twips, colour
// (0x00BBGGRR or -1 for automatic), four triples.
inline constexpr int CellBorders = QTextFormat::UserProperty + 66;  // QList<int>
inline constexpr int CellShadeColour = QTextFormat::UserProperty + 67;  // int 0x00BBGGRR, \clcbpat
inline constexpr int CellShading = QTextFormat::UserProperty + 68;      // int, \clshdng in hundredths of a percent
inline constexpr int CellVAlign = QTextFormat::UserProperty + 69;       // int 0 top, 1 centre, 2 bottom
// Cell: a place of the grid the row has no cell for (a row shorter than
// the others); the writer leaves it out.
inline constexpr int CellFiller = QTextFormat::UserProperty + 70;  // bool
}  // namespace prop

namespace rtftable {

// Border styles as RTF names them; 0 is no border.
const char* borderStyleWord(int style);

struct Border {
    int style = 0;
    int width = 0;     // twips
    int colour = 0;    // index in the colour table while reading
    bool operator==(const Border&) const = default;
};

struct CellDef {
    int right = 0;  // \cellx, twips from the page's left margin
    bool hMergeFirst = false, hMerge = false, vMergeFirst = false, vMerge = false;
    Border borders[4];  // top, left, bottom, right
    int shadeColour = -1;   // \clcbpat
    int patternColour = -1; // \clcfpat
    int shading = 0;        // \clshdng
    int vAlign = 0;
};

struct RowDef {
    int left = 0;
    int gap = 0;  // \trgaph; a row that names none has no gap
    // \trpaddl, \trpaddr with their units (\trpaddfl3: twips; anything
    // else leaves the gap in force): the cells' text insets newer writers
    // give, which win over the gap.
    int padLeft = 0, padRight = 0;
    int padLeftUnit = 0, padRightUnit = 0;
    int leftPad() const { return padLeftUnit == 3 ? padLeft : gap; }
    int rightPad() const { return padRightUnit == 3 ? padRight : gap; }
    int align = 0;
    int height = 0;
    std::vector<CellDef> cells;
    CellDef next;            // words of the cell whose \cellx has not come yet
    Border* border = nullptr; // the side \brdr... words go to
    Border rowBorder;         // \trbrdr... words: the row's own, kept apart
};

// Applies a row-definition word; false when the word is not one.
bool rowDefWord(RowDef& def, std::string_view name, bool hasParam, int param);

// The definition of the row that starts at `from`: the last one the file
// gives for that nesting level before the row ends (Word writes it again
// behind the row's cells, and a nested row only there). `itapAtFrom` is the
// nesting level of the paragraph being read at `from`, which the words that
// follow inherit: a nested row's definition right behind a nested cell is
// not the outer row's.
std::optional<RowDef> scanRowDef(QByteArrayView rtf, qsizetype from, int level, int itapAtFrom);

// Builds QTextTables at a cursor as the reader meets cells and rows.
class Builder {
public:
    using ColourOf = std::function<std::optional<QColor>(int)>;
    using Scan = std::function<std::optional<RowDef>(int level)>;
    Builder(QTextCursor& cursor, ColourOf colours) : cursor_(cursor), colourOf_(std::move(colours)) {}

    // Words that define rows, read in the body at a paragraph's level.
    bool defWord(int level, std::string_view name, bool hasParam, int param);
    int depth() const { return int(levels_.size()); }
    // The cursor stands in a cell the file merged into another one.
    bool inMergedCell() const;
    // The outermost table's open row has had every cell its definition
    // names ended, and waits only for its \row.
    bool rowFilled() const;
    // Whether content at this level needs reach() first.
    bool needsMove(int level) const;
    // Puts the cursor where content of a paragraph at `level` goes: opens
    // tables and rows, moves to the next cell, or leaves tables behind.
    void reach(int level, const Scan& scan);
    // The cell at `level` is done; the next content goes to the next cell.
    void endCell(int level, const Scan& scan);
    void endRow(int level, const Scan& scan);
    // End of input: leaves every table, the cursor behind the outermost.
    void closeAll() { while (!levels_.empty()) closeLevel(); }
    // Once all is read: an empty paragraph right behind a table gets a
    // block of the structure's own in front of it (see isHiddenAfterTable).
    void uncoverEmptyParagraphs();

private:
    struct Level {
        QPointer<QTextTable> table;
        std::vector<int> edges;   // right edges of the grid's columns
        int gridLeft = 0;
        int row = -1;
        bool rowOpen = false;
        int cell = 0;        // RTF cell the next content goes to
        int cursorCell = -1; // RTF cell the cursor stands in
        std::vector<int> cellColumn;  // grid column of each RTF cell of the row
        std::vector<bool> cellMerged;  // \\clmrg or \\clvmrg: its text goes to another cell
        int definedCells = 0;          // cells the row's definition names
        bool anyBorder = false;
    };
    void openLevel(const Scan& scan);
    void closeLevel();
    void startRow(Level& l, const RowDef& def);
    void moveToCell(Level& l);
    int columnOfEdge(Level& l, int edge);
    void formatCell(QTextTableCell cell, const RowDef& def, const CellDef& c, Level& l);
    void updateColumns(Level& l);
    RowDef defAt(int level, const Scan& scan);

    QTextCursor& cursor_;
    ColourOf colourOf_;
    std::vector<Level> levels_;
    std::vector<RowDef> defs_;  // the last definition read, per level (0 is level 1)
    std::vector<QPointer<QTextTable>> made_;  // every table built, in order
};

// The row-definition words of one row of a table, in the rich edit shape,
// for the writer: "\trowd\trgaph108\trleft0...\cellx1440...". colourIndex
// gives a colour's index in the colour table being written.
QString rowDefinition(const QTextTable& table, int row, const std::function<int(qint64)>& colourIndex);
// The colours a row's words use, in the order rowDefinition names them.
std::vector<qint64> rowColours(const QTextTable& table, int row);
// The empty block right behind a table, with more of its flow after it. The
// layout keeps it out of sight (a table is always followed by a block), so
// it is the structure's, not the text's: Text and the writer pass over it,
// and an empty paragraph of a file stands in the block after it.
bool isHiddenAfterTable(const QTextBlock& block);
// Takes the block the layout hides behind a table out of any list.
void leaveList(const QTextBlock& hidden);
// The block starts right where a table ends.
bool standsBehindTable(const QTextBlock& block);
// An empty place of the grid a short row has no cell for. Once something is
// written in it, it is a cell like the others, and is saved as one.
bool isFillerCell(const QTextTableCell& cell);
// True for a cell the writer writes: not a filler, and the cell's own place.
bool isOwnCell(const QTextTable& table, int row, int column);

}  // namespace rtftable
}  // namespace tornelia
