#pragma once

// Wingdings is not a font of this desktop. The document keeps the arrows the
// program writes in it, Wingdings 223 and 224 (U+F0DF and U+F0E0 as a
// symbol font's bytes stand in the document); a small font of our own with
// those two arrows stands in for Wingdings wherever text is drawn, so the
// document never changes to look right.

#include <QByteArray>
#include <QString>

namespace tornelia {

// The family of the stand-in font.
inline const QString kArrowFontFamily = QStringLiteral("Tornelia Frecce");

// A TrueType font with the two arrows at U+F0DF (left) and U+F0E0 (right).
QByteArray arrowFontData();

// Registers the font with the application and puts it in for "Wingdings"
// when the system has no Wingdings. Safe to call more than once; true when
// the arrows will be drawn.
bool installArrowFont();

}  // namespace tornelia
