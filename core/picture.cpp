#include "core/picture.h"

#include "core/rich_text_surface.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QPainter>
#include <QUrl>
#include <QVariant>

#include <algorithm>
#include <cstring>

namespace tornelia {
namespace {

quint32 le32(const QByteArray& d, int at)
{
    if (at + 4 > d.size())
        return 0;
    const auto* p = reinterpret_cast<const unsigned char*>(d.constData() + at);
    return p[0] | p[1] << 8 | p[2] << 16 | quint32(p[3]) << 24;
}

quint16 le16(const QByteArray& d, int at)
{
    if (at + 2 > d.size())
        return 0;
    const auto* p = reinterpret_cast<const unsigned char*>(d.constData() + at);
    return quint16(p[0] | p[1] << 8);
}

// A DIB is a BMP file without its 14-byte file header; put one in front.
QImage decodeDib(const QByteArray& dib)
{
    const quint32 headerSize = le32(dib, 0);
    if (headerSize < 12 || headerSize > quint32(dib.size()))
        return {};
    const quint16 bits = headerSize == 12 ? le16(dib, 10) : le16(dib, 14);
    const quint32 compression = headerSize >= 20 ? le32(dib, 16) : 0;
    quint32 colours = headerSize >= 36 ? le32(dib, 32) : 0;
    if (colours == 0 && bits <= 8)
        colours = 1u << bits;
    quint32 palette = std::min<quint32>(colours, 256) * (headerSize == 12 ? 3 : 4);
    if (compression == 3 && headerSize == 40)
        palette += 12;
    const quint32 offset = 14 + headerSize + palette;
    QByteArray file;
    file.reserve(dib.size() + 14);
    file.append("BM");
    const quint32 total = quint32(dib.size()) + 14;
    const unsigned char head[12] = {
        static_cast<unsigned char>(total), static_cast<unsigned char>(total >> 8),
        static_cast<unsigned char>(total >> 16), static_cast<unsigned char>(total >> 24),
        0, 0, 0, 0,
        static_cast<unsigned char>(offset), static_cast<unsigned char>(offset >> 8),
        static_cast<unsigned char>(offset >> 16), static_cast<unsigned char>(offset >> 24)};
    file.append(reinterpret_cast<const char*>(head), 12);
    file.append(dib);
    return QImage::fromData(file, "BMP");
}

QImage placeholder(QSize px)
{
    QImage img(px.expandedTo(QSize(8, 8)), QImage::Format_RGB32);
    img.fill(QColor(0xE0, 0xE0, 0xE0));
    QPainter p(&img);
    p.setPen(QColor(0x90, 0x90, 0x90));
    p.drawRect(img.rect().adjusted(0, 0, -1, -1));
    p.drawLine(0, 0, img.width() - 1, img.height() - 1);
    p.drawLine(0, img.height() - 1, img.width() - 1, 0);
    return img;
}

}  // namespace

QImage decodePicture(const QByteArray& type, const QByteArray& data)
{
    if (data.isEmpty())
        return {};
    if (type == "png")
        return QImage::fromData(data, "PNG");
    if (type == "jpeg")
        return QImage::fromData(data, "JPEG");
    if (type == "dib")
        return decodeDib(data);
    return {};
}

void setPictureFormat(QTextDocument& doc, QTextImageFormat& f, const QByteArray& rawGroup,
                      const QImage& image, QSize goalTwips)
{
    // Twips to pixels at 96 dpi; a picture larger than a few sheets is shown smaller.
    QSize px = goalTwips.isValid() && !goalTwips.isEmpty()
                   ? QSize(goalTwips.width() / 15, goalTwips.height() / 15)
                   : (image.isNull() ? QSize(32, 32) : image.size());
    px = px.boundedTo(QSize(4000, 4000)).expandedTo(QSize(1, 1));
    const QImage shown = image.isNull() ? placeholder(px.boundedTo(QSize(2000, 2000))) : image;
    // The name comes from the content, so reading the same picture again
    // (every undo step does) replaces the resource instead of adding one.
    // A linked picture may show its file instead of the group: the link
    // counts too, so that it never takes the place of a plain copy.
    const QByteArray key = QCryptographicHash::hash((rawGroup.isEmpty() ? QByteArray::number(shown.cacheKey()) : rawGroup) +
                                                        f.property(prop::PictureLink).toString().toUtf8(),
                                                    QCryptographicHash::Sha1).toHex();
    const QString name = QStringLiteral("tornelia-picture:") + QString::fromLatin1(key);
    doc.addResource(QTextDocument::ImageResource, QUrl(name), QVariant(shown));
    f.setName(name);
    f.setWidth(px.width());
    f.setHeight(px.height());
    if (!rawGroup.isEmpty())
        f.setProperty(prop::RawGroup, rawGroup);
    if (goalTwips.isValid() && !goalTwips.isEmpty())
        f.setProperty(prop::PictureGoal, goalTwips);
}

QByteArray pictureGroup(const QTextDocument& doc, const QTextImageFormat& f)
{
    QByteArray group = f.property(prop::RawGroup).toByteArray();
    if (group.isEmpty()) {
        const QImage image = doc.resource(QTextDocument::ImageResource, QUrl(f.name())).value<QImage>();
        if (image.isNull())
            return {};
        const int wTwips = f.width() > 0 ? int(f.width() * 15) : image.width() * 15;
        const int hTwips = f.height() > 0 ? int(f.height() * 15) : image.height() * 15;
        group = pngPictureGroup(image, QSize(wTwips, hTwips));
    }
    const QString link = f.property(prop::PictureLink).toString();
    return link.isEmpty() ? group : linkedPictureField(link, group);
}

QTextCharFormat textFormatAt(const QTextCursor& c)
{
    QTextCursor at(c);
    at.clearSelection();
    QTextCharFormat f = at.charFormat();
    if (f.isImageFormat()) {
        for (const int id : {int(QTextFormat::ObjectType), int(QTextFormat::ImageName), int(QTextFormat::ImageWidth),
                             int(QTextFormat::ImageHeight), prop::RawGroup, prop::PictureGoal, prop::PictureLink})
            f.clearProperty(id);
    }
    f.clearProperty(QTextFormat::ObjectIndex);
    return f;
}

QString linkedPictureFile(const QString& instruction)
{
    QString rest = instruction.trimmed();
    if (!rest.startsWith(QLatin1String("INCLUDEPICTURE"), Qt::CaseInsensitive))
        return {};
    rest = rest.mid(14).trimmed();
    // The name is the quoted argument, or the first word that is no switch;
    // switches may stand before it.
    QString name;
    const qsizetype quote = rest.indexOf(u'"');
    if (quote >= 0) {
        const qsizetype end = rest.indexOf(u'"', quote + 1);
        name = rest.mid(quote + 1, end < 0 ? -1 : end - quote - 1);
    } else {
        for (const QString& word : rest.split(u' ', Qt::SkipEmptyParts)) {
            if (!word.startsWith(u'\\')) {
                name = word;
                break;
            }
        }
    }
    // Field arguments double their backslashes.
    name.replace(QLatin1String("\\\\"), QLatin1String("\\"));
    if (name.startsWith(QLatin1String("file:"), Qt::CaseInsensitive))
        return QUrl(name).toLocalFile();
    return name.startsWith(u'/') ? name : QString();
}

QByteArray linkedPictureField(const QString& instruction, const QByteArray& resultGroup)
{
    QByteArray inst;
    for (const QChar c : instruction) {
        if (c == u'\\' || c == u'{' || c == u'}')
            inst += '\\' + QByteArray(1, char(c.unicode()));
        else if (c.unicode() < 128)
            inst += char(c.unicode());
        else
            inst += "\\u" + QByteArray::number(qint16(c.unicode())) + '?';
    }
    // The result stands in a \nonshppict group: readers that follow the
    // link show the file alone, the others show the copy.
    return "{\\field{\\*\\fldinst " + inst + "}{\\fldrslt {\\nonshppict" + resultGroup + "}}}";
}

QByteArray pngPictureGroup(const QImage& image, QSize goalTwips)
{
    if (image.isNull())
        return {};
    if (goalTwips.isEmpty())
        goalTwips = image.size() * 15;
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    QByteArray out = "{\\pict\\pngblip\\picw" + QByteArray::number(image.width()) + "\\pich" +
                     QByteArray::number(image.height()) + "\\picwgoal" + QByteArray::number(goalTwips.width()) +
                     "\\pichgoal" + QByteArray::number(goalTwips.height()) + "\r\n";
    const QByteArray hex = png.toHex();
    for (qsizetype i = 0; i < hex.size(); i += 128)
        out += hex.mid(i, 128) + "\r\n";
    out += "}";
    return out;
}

QString pictureRtf(const QImage& image)
{
    const QByteArray group = pngPictureGroup(image);
    if (group.isEmpty())
        return {};
    return QString::fromLatin1("{\\rtf1\\ansi " + group + "}");
}

}  // namespace tornelia
