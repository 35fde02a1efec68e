#pragma once

// The rich text control of the program: the text, the formats, the caret and
// the selection of one document, over a QTextDocument and one QTextCursor.
//
// Positions are those of Text(): a paragraph break counts two (CR LF), and
// so does the end of a table row; the end of any other table cell counts one
// (a tab). The QTextDocument counts one for each, so every position crossing
// this interface is mapped. A position that falls between CR and LF means
// the end of that paragraph.

#include <QObject>
#include <QString>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace tornelia {

// 0x00BBGGRR, as every colour of the program.
using Colour = std::uint32_t;
// "No highlight" for SelHighlight: outside the range of real colours.
inline constexpr Colour kNoHighlight = 0xFFFFFFFFu;

// Raised by a write the control refuses (a negative SelStart, a file that
// cannot be read or written). Callers show it or skip it, each by its rule.
class SurfaceError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class UnderlineKind : int {
    None = 0,
    Single,
    Dotted,
    Dash,
    DashDot,
    DashDotDot,
    Wave,
    Double,
    Thick,
    Word,
    Hair,
};

// Format properties that Qt has no attribute for. They live in the document's
// formats, so copies, pastes and snapshots carry them.
namespace prop {
inline constexpr int UnderlineKind = QTextFormat::UserProperty + 1;   // int, tornelia::UnderlineKind
inline constexpr int UnderlineWord = QTextFormat::UserProperty + 2;   // QString, the word as read ("uldbl")
inline constexpr int Hidden = QTextFormat::UserProperty + 3;          // bool, \v
inline constexpr int OffsetHalfPoints = QTextFormat::UserProperty + 4; // int, \up (+) and \dn (-)
inline constexpr int FontKind = QTextFormat::UserProperty + 5;        // QString, "fswiss", "froman", ...
inline constexpr int FontCharset = QTextFormat::UserProperty + 6;     // int, \fcharset
inline constexpr int FontPitch = QTextFormat::UserProperty + 7;       // int, \fprq
inline constexpr int RawGroup = QTextFormat::UserProperty + 8;        // QByteArray, a \pict or \object group kept whole
inline constexpr int PictureGoal = QTextFormat::UserProperty + 9;     // QSize in twips (\picwgoal, \pichgoal)
// Paragraph properties, kept in twips so that they round-trip exactly.
inline constexpr int LeftIndent = QTextFormat::UserProperty + 20;
inline constexpr int RightIndent = QTextFormat::UserProperty + 21;
inline constexpr int FirstIndent = QTextFormat::UserProperty + 22;
}  // namespace prop

class RichTextSurface : public QObject {
    Q_OBJECT
public:
    explicit RichTextSurface(QObject* parent = nullptr);
    ~RichTextSurface() override;

    QTextDocument* document() const { return doc_; }

    // The format that Text writes and a new document starts with.
    void setDefaultFormat(const QString& fontName, float pointSize);
    QTextCharFormat defaultCharFormat() const { return defaultFormat_; }

    // --- properties of the document ---
    QString Text() const;
    void setText(const QString& text);
    QString TextRTF() const;
    void setTextRTF(const QString& rtf);
    // The same from the bytes of a file, read as bytes.
    void setTextRtfBytes(const QByteArray& rtf);
    QString FileName() const { return fileName_; }
    // Records the path and loads the file by its contents: RTF when it starts
    // with "{\rtf", plain text otherwise. Throws SurfaceError when unreadable.
    void setFileName(const QString& path);
    // Records the path without touching the document.
    void recordFileName(const QString& path) { fileName_ = path; }
    // The document a file's bytes give by their contents, as writing
    // FileName loads them, without reading the file again.
    void setContents(const QByteArray& bytes);
    Colour BackColor() const { return backColor_; }
    void setBackColor(Colour c);
    long length() const;  // Len(Text), without building the string
    // Grows at every change of the text or its formats: equal counts mean
    // the document has not changed in between.
    quint64 changeCount() const { return changeCount_; }

    // --- properties of the selection ---
    long SelStart() const;
    void setSelStart(long pos);  // beyond the end: the end; negative: SurfaceError
    long SelLength() const;
    void setSelLength(long len);
    QString SelText() const;
    void setSelText(const QString& text);
    QString SelRTF() const;
    void setSelRTF(const QString& rtf);

    std::optional<QString> SelFontName() const;
    void setSelFontName(const QString& name);
    std::optional<float> SelFontSize() const;
    void setSelFontSize(float points);
    std::optional<bool> SelBold() const;
    void setSelBold(bool on);
    std::optional<bool> SelItalic() const;
    void setSelItalic(bool on);
    std::optional<bool> SelUnderline() const;
    void setSelUnderline(bool on);
    std::optional<bool> SelStrikeThru() const;
    void setSelStrikeThru(bool on);
    std::optional<Colour> SelColor() const;  // automatic reads as 0
    void setSelColor(Colour c);
    std::optional<int> SelCharOffset() const;  // twips, positive above the base line
    void setSelCharOffset(int twips);
    // Formats beyond the control's classic set, for the RTF engine and the view.
    std::optional<UnderlineKind> SelUnderlineKind() const;
    void setSelUnderlineKind(UnderlineKind kind);
    std::optional<bool> SelHidden() const;
    void setSelHidden(bool on);
    std::optional<bool> SelCaps() const;
    void setSelCaps(bool on);
    std::optional<Colour> SelHighlight() const;  // kNoHighlight for none
    void setSelHighlight(Colour c);

    std::optional<int> SelAlignment() const;  // 0 left, 1 right, 2 centred, 3 justified
    void setSelAlignment(int alignment);
    std::optional<bool> SelBullet() const;
    void setSelBullet(bool on);
    std::optional<float> SelIndent() const;  // twips
    void setSelIndent(float twips);
    std::optional<float> SelRightIndent() const;  // twips
    void setSelRightIndent(float twips);

    // --- methods ---
    enum FileKind { RtfKind = 0, TextKind = 1 };
    void LoadFile(const QString& path, int kind);
    // Writes through a temporary file renamed over the target, so a failure
    // leaves the old file whole. Throws SurfaceError with the reason.
    void SaveFile(const QString& path, int kind) const;
    enum FindOption { WholeWord = 2, MatchCase = 4, NoHighlight = 8 };
    long Find(const QString& text, long start = 0, long end = -1, int options = 0);
    void Span(const QString& charSet, bool forward, bool negate);
    void SetFocus() { emit focusRequested(); }

    // --- message equivalents ---
    long GetLineCount() const;            // EM_GETLINECOUNT
    long LineIndex(long line) const;      // EM_LINEINDEX; -1 past the last line
    long LineLength(long pos) const;      // EM_LINELENGTH
    long LineFromChar(long pos) const;    // EM_LINEFROMCHAR
    void Copy() const;                    // WM_COPY, RTF and plain text
    void Cut();
    void Paste();                         // WM_PASTE, RTF first
    void GetZoom(int& numerator, int& denominator) const;  // EM_GETZOOM
    void SetZoom(int numerator, int denominator);          // EM_SETZOOM; 0,0 resets

    // The width the text wraps at, in the document's units; the view sets it.
    // Below 0 the text does not wrap and line metrics count paragraphs.
    void setTextWidth(qreal width);
    qreal textWidth() const { return textWidth_; }

    // --- for the view ---
    const QTextCursor& cursor() const { return cursor_; }
    // The view moved the caret or selected with the mouse or the keys.
    void adoptCursor(const QTextCursor& c);
    // Typing at the caret, with the format a bare-caret Sel... write left.
    void typeText(const QString& text);
    // Tab in a table: the next cell (the one before, backwards) with its
    // text selected, as in every table editor; Tab in the last cell adds a
    // row like the last one. False when the caret is not in a table.
    bool tabInTable(bool backwards);
    // Raised by the view; handlers may swallow (0) or change the key.
    void raiseKeyDown(int& keyCode, int& shift) { emit KeyDown(keyCode, shift); }
    void raiseKeyPress(int& keyAscii) { emit KeyPress(keyAscii); }
    void raiseKeyUp(int& keyCode, int& shift) { emit KeyUp(keyCode, shift); }
    void raiseMouseDown(int button, int shift, int x, int y) { emit MouseDown(button, shift, x, y); }

    // Position mapping, public for the view and the tests.
    int toDocPos(long pos) const;
    long fromDocPos(int docPos) const;

signals:
    void Change();
    void SelChange();
    void KeyDown(int& keyCode, int& shift);
    void KeyPress(int& keyAscii);
    void KeyUp(int& keyCode, int& shift);
    void MouseDown(int button, int shift, int x, int y);
    // Not events of the control, but what a view needs to follow it.
    void cursorMoved();
    void zoomChanged();
    void backColorChanged();
    void focusRequested();

private:
    void onContentsChange();
    bool moveCellMarks(int from, int to);
    void notifySelection();
    void setCursor(const QTextCursor& c);
    QTextCharFormat insertionFormat() const;
    template <typename T, typename Get>
    std::optional<T> charProperty(Get get) const;
    void mergeSel(const QTextCharFormat& f);
    template <typename T, typename Get>
    std::optional<T> blockProperty(Get get) const;
    void mergeBlocks(const std::function<void(QTextBlockFormat&)>& change);
    void replaceWithPlainText(const QString& text);
    void readRtf(const QString& rtf, bool wholeDocument);
    void replaceWithRtf(qsizetype size, const std::function<void()>& read);
    // Replaces the whole document by what build makes; size tells how big
    // the new document will be.
    void replaceWhole(qsizetype size, const std::function<void()>& build);
    bool restyleAcrossCells(const QString& rtf);

    QTextDocument* doc_;
    QTextCursor cursor_;
    QTextCharFormat defaultFormat_;
    std::optional<QTextCharFormat> pendingFormat_;
    QString fileName_;
    Colour backColor_ = 0xFFFFFF;
    qreal textWidth_ = -1;
    int zoomNum_ = 0;
    int zoomDen_ = 0;
    // Document positions of the block boundaries of tables that Text does
    // not show as CR LF: a tab, or nothing (0). tabsBefore: how many Text
    // positions those before docPos save against CR LF.
    const std::vector<std::pair<int, char>>& cellTabs() const;
    long tabsBefore(int docPos) const;
    mutable std::vector<std::pair<int, char>> cellTabs_;
    mutable std::vector<long> cellShort_{0};
    mutable bool cellTabsValid_ = false;
    mutable std::pair<int, int> cellTabsSize_{-1, -1};
    mutable QString textCache_;
    mutable bool textCacheValid_ = false;
    // The edit setSelText is making, in Text positions, for the cache: the
    // text from `from` for `removed` characters gives way to what the
    // document holds from `docFrom` to the caret once the edit is done.
    struct Splice {
        long from;
        long removed;
        int docFrom;
        // The text replaced lay inside one paragraph.
        bool inOneBlock;
    };
    std::optional<Splice> pendingSplice_;
    int selectionNotifyBlock_ = 0;
    quint64 changeCount_ = 0;
    // The paragraph at the caret keeps its shaped glyphs between layouts,
    // by number, since a block handle dies with its paragraph.
    void keepCaretBlockShaped();
    int shapedBlock_ = -1;
    long lastSelStart_ = 0;
    long lastSelLength_ = 0;

    // Wrapped-line counting starts from the last paragraph counted, not from
    // the top: the status bar asks after every key, and the caret seldom
    // leaves its paragraph. The lines above that paragraph stay as counted
    // until a change reaches above it or the wrapping width or font change.
    struct LineAnchor {
        int block = -1;       // block number, -1 when nothing is known
        int position = 0;     // the block's first document position
        long linesBefore = 0;
    };
    // The number of wrapped lines above `block`, walking from the anchor;
    // the anchor moves to `block`.
    long linesBefore(const QTextBlock& block) const;
    void forgetLineAnchor() const { lineAnchor_ = LineAnchor{}; }
    mutable LineAnchor lineAnchor_;
};

}  // namespace tornelia
