#pragma once

// Writes a stretch of a QTextDocument as RTF in the shape of the classic rich
// edit control, the shape the RTF string engine cuts and splices.

#include <QString>
#include <QTextCharFormat>
#include <QTextDocument>

namespace tornelia {

// [from, to) in QTextDocument positions. A whole document ends every
// paragraph with \par; a selection writes \par only for the breaks inside it.
// defaultFormat stands in for a format that names no font or size.
QString writeRtf(const QTextDocument& doc, int from, int to, bool wholeDocument,
                 const QTextCharFormat& defaultFormat);

}  // namespace tornelia
