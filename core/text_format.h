#pragma once

// How the program's character and paragraph formats sit in Qt's formats, in
// one place for the reader, the writer, the surface and the view.

#include "core/rich_text_surface.h"

#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextBlock>
#include <QTextListFormat>

#include <vector>

namespace tornelia {

namespace prop {
inline constexpr int SuperSub = QTextFormat::UserProperty + 10;      // int, \super (+1) or \sub (-1): shrunk
inline constexpr int DoubleStrike = QTextFormat::UserProperty + 11;  // bool, \striked1
// Paragraph: the tab stops as the file gave them, one "kind leader twips"
// triple each (kind l r c d, leader 0 none, 1 dots, 2 hyphens, 3 underline,
// 4 thick line, 5 equals).
inline constexpr int TabStops = QTextFormat::UserProperty + 23;      // QList<int>
// Paragraph in a list: the label as the writer meant it ("1.", "a)", "•").
inline constexpr int ListLabel = QTextFormat::UserProperty + 24;     // QString
// List: the number of its first item when it is not 1.
inline constexpr int ListStart = QTextFormat::UserProperty + 25;     // int
}  // namespace prop

struct TabStop {
    int twips = 0;
    char kind = 'l';  // l left, r right, c centre, d decimal
    int leader = 0;
    bool operator==(const TabStop&) const = default;
};
std::vector<TabStop> tabStopsOf(const QTextBlockFormat& f);
// Keeps the stops and gives Qt the positions it can lay out.
void setTabStops(QTextBlockFormat& f, const std::vector<TabStop>& stops);

// The family a font with a script suffix ("Arial CE", "Times New Roman Cyr")
// stands for; the name itself when it has none.
QString baseFontName(const QString& name);
// A character of the Symbol font, kept as U+F000 + byte, as Unicode
// (Adobe's table); 0 when the byte has no character.
char16_t symbolFontChar(char16_t c);
// The run is in the Symbol font itself (not Wingdings or another symbol
// font), whose bytes have Unicode characters.
bool isSymbolFont(const QTextCharFormat& f);
// The label of a paragraph in a list ("3.", "b)", "•"), empty for others.
QString listLabel(const QTextBlock& block);
// The number of a list's first item.
int listStart(const QTextListFormat& f);
// The document as plain text with CR LF breaks, as a reader sees it on
// screen: list labels in front of their paragraphs, symbol characters as
// their Unicode ones.
QString plainTextExport(const QTextDocument& doc);
// The text as a reader without the document's fonts sees it: Symbol font
// characters become their Unicode ones.
QString readableText(const QTextBlock& block);

// Sets the underline kind, with the control word it was read as when that
// differs from the standard one, and the nearest line Qt can draw.
void setUnderlineFormat(QTextCharFormat& f, UnderlineKind kind, const QString& spelling = {});
UnderlineKind underlineKindOf(const QTextCharFormat& f);
// The RTF control word of an underline kind, without backslash ("ul", "uldb").
QString underlineWord(const QTextCharFormat& f);
// The name used by the run dump ("single", "double", ...).
const char* underlineName(UnderlineKind kind);

QString fontNameOf(const QTextCharFormat& f);
// Font table facts for a font the document does not describe itself.
QString defaultFontKind(const QString& name);
int defaultFontCharset(const QString& name);
bool isSymbolCharset(const QTextCharFormat& f);

int offsetHalfPointsOf(const QTextCharFormat& f);
// +1 for \super, -1 for \sub text (shrunk), 0 otherwise; an offset set
// since in twips (\up, \dn) wins over it.
int superSubOf(const QTextCharFormat& f);
bool isHidden(const QTextCharFormat& f);
bool isCaps(const QTextCharFormat& f);
int halfPointsOf(const QTextCharFormat& f, const QTextCharFormat& fallback);
// 0x00BBGGRR, or -1 for the automatic colour / no highlight.
qint64 foregroundOf(const QTextCharFormat& f);
qint64 highlightOf(const QTextCharFormat& f);

// 0 left, 1 right, 2 centred, 3 justified.
int alignmentOf(const QTextBlockFormat& f);
void setAlignment(QTextBlockFormat& f, int alignment);
int twipsOf(const QTextBlockFormat& f, int property);
void setTwips(QTextBlockFormat& f, int property, int twips);

inline Colour toColour(const QColor& c) { return Colour(c.red() | c.green() << 8 | c.blue() << 16); }
inline QColor toQColor(Colour c) { return QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF)); }

}  // namespace tornelia
