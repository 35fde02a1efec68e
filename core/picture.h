#pragma once

// Pictures and objects inside the document: one object character each, with
// the RTF group it came from kept whole so that it is written back unchanged.

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextImageFormat>

namespace tornelia {

namespace prop {
// QString: the instruction of the INCLUDEPICTURE field that a linked picture
// stands in, as read. The picture is written back inside that field, so the
// link survives a save.
inline constexpr int PictureLink = QTextFormat::UserProperty + 48;
}  // namespace prop

// Decodes what Qt can show: PNG, JPEG and device-independent bitmaps. A null
// image for anything else (metafiles, device-dependent bitmaps).
QImage decodePicture(const QByteArray& type, const QByteArray& data);

// Fills an image format for the document: the image (or a grey placeholder
// when it cannot be shown) as a document resource, its size on screen from
// the goal size in twips, and the raw group to write back.
void setPictureFormat(QTextDocument& doc, QTextImageFormat& f, const QByteArray& rawGroup,
                      const QImage& image, QSize goalTwips);

// The RTF group of a picture: the one it was read from, or a PNG group made
// from its image.
QByteArray pictureGroup(const QTextDocument& doc, const QTextImageFormat& f);

// The local file that an INCLUDEPICTURE instruction names ("file:" addresses
// and absolute paths), or an empty string (a web address, a relative name).
QString linkedPictureFile(const QString& instruction);
// The field of a linked picture: the instruction, and the picture group as
// its result for the readers that do not follow links.
QByteArray linkedPictureField(const QString& instruction, const QByteArray& resultGroup);

// The format that text typed at c takes: the character's before it, or at
// the start of a paragraph the first one's; a picture there gives its
// character format without the picture. A bullet picture pasted at the
// start of a line must not change the font of what the user types next.
QTextCharFormat textFormatAt(const QTextCursor& c);

// A PNG picture group for an image, shown at goalTwips (the image's own size
// at 96 dpi when empty). Empty for a null image.
QByteArray pngPictureGroup(const QImage& image, QSize goalTwips = QSize());
// A whole RTF document holding only that picture, ready for SelRTF.
QString pictureRtf(const QImage& image);

}  // namespace tornelia
