#pragma once

// Reads RTF from any producer into a QTextDocument at a cursor.

#include <QByteArrayView>
#include <QStringList>
#include <QStringView>
#include <QTextCharFormat>
#include <QTextCursor>

namespace tornelia {

struct RtfReadOptions {
    // A whole document: a last \par before the closing brace ends the last
    // paragraph and opens no new one, and the last paragraph takes the
    // paragraph words in force at the end. An insertion makes every \par a
    // break and leaves the format of the paragraph it ends in alone.
    bool wholeDocument = true;
    // Font and size when the RTF names none.
    QTextCharFormat baseFormat;
    // When set, one line is added here for each entry the file's tables and
    // destinations declare (fonts, colours, styles, list levels and
    // overrides, \pn lists, shape properties, pictures shown), in the order
    // read: what the reader made of a file's head, to look into or compare.
    QStringList* declarations = nullptr;
};

// Inserts the RTF at the cursor (replacing nothing: remove the selection
// first). The cursor ends behind what was inserted. Never throws; malformed
// input gives whatever could be read.
void readRtf(QByteArrayView rtf, QTextCursor& cursor, const RtfReadOptions& options);
// RTF held as text: characters up to U+00FF are its bytes; any other
// character stands for itself.
void readRtf(QStringView rtf, QTextCursor& cursor, const RtfReadOptions& options);

}  // namespace tornelia
