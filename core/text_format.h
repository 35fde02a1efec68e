#pragma once

// How the program's character and paragraph formats sit in Qt's formats, in
// one place for the reader, the writer, the surface and the view.

#include "core/rich_text_surface.h"

#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>

namespace tornelia {

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
