#include "controls/arrow_font.h"

#include <QFont>
#include <QFontDatabase>
#include <QStringList>

#include <algorithm>
#include <vector>

namespace tornelia {

namespace {

// TrueType is big-endian throughout.
class Writer {
public:
    void u8(int v) { bytes.append(char(v & 0xFF)); }
    void u16(int v)
    {
        u8(v >> 8);
        u8(v);
    }
    void u32(quint32 v)
    {
        u16(int(v >> 16));
        u16(int(v & 0xFFFF));
    }
    void tag(const char* t) { bytes.append(t, 4); }
    void pad4()
    {
        while (bytes.size() % 4)
            bytes.append('\0');
    }
    QByteArray bytes;
};

quint32 checksum(const QByteArray& data)
{
    quint32 sum = 0;
    for (qsizetype i = 0; i < data.size(); i += 4) {
        quint32 word = 0;
        for (int j = 0; j < 4; ++j)
            word = (word << 8) | quint8(i + j < data.size() ? data[i + j] : 0);
        sum += word;
    }
    return sum;
}

struct Point {
    int x;
    int y;
};
using Contour = std::vector<Point>;

constexpr int kEm = 1000;
constexpr int kAdvance = 1000;
constexpr int kAscent = 900;
constexpr int kDescent = 210;

// A solid arrow pointing right, clockwise, on the height of the small
// letters' middle.
const Contour kRightArrow = {{80, 300}, {80, 400}, {620, 400}, {620, 560}, {920, 350}, {620, 140}, {620, 300}};

Contour mirrored(const Contour& c)
{
    // Mirrored and walked backwards, so that it stays clockwise.
    Contour m;
    for (auto it = c.rbegin(); it != c.rend(); ++it)
        m.push_back({kAdvance - it->x, it->y});
    return m;
}

struct Box {
    int xMin, yMin, xMax, yMax;
};

Box boxOf(const Contour& c)
{
    Box b{c[0].x, c[0].y, c[0].x, c[0].y};
    for (const Point& p : c) {
        b.xMin = std::min(b.xMin, p.x);
        b.yMin = std::min(b.yMin, p.y);
        b.xMax = std::max(b.xMax, p.x);
        b.yMax = std::max(b.yMax, p.y);
    }
    return b;
}

QByteArray simpleGlyph(const Contour& c)
{
    Writer w;
    const Box b = boxOf(c);
    w.u16(1);  // one contour
    w.u16(b.xMin);
    w.u16(b.yMin);
    w.u16(b.xMax);
    w.u16(b.yMax);
    w.u16(int(c.size()) - 1);
    w.u16(0);  // no instructions
    for (std::size_t i = 0; i < c.size(); ++i)
        w.u8(0x01);  // on the curve, coordinates as 16-bit deltas
    int last = 0;
    for (const Point& p : c) {
        w.u16(p.x - last);
        last = p.x;
    }
    last = 0;
    for (const Point& p : c) {
        w.u16(p.y - last);
        last = p.y;
    }
    w.pad4();
    return w.bytes;
}

QByteArray nameTable()
{
    const std::vector<std::pair<int, QString>> names = {
        {1, kArrowFontFamily},
        {2, QStringLiteral("Regular")},
        {4, kArrowFontFamily},
        {6, QStringLiteral("TorneliaFrecce")},
    };
    Writer w;
    w.u16(0);
    w.u16(int(names.size()));
    w.u16(6 + 12 * int(names.size()));
    QByteArray strings;
    for (const auto& [id, text] : names) {
        QByteArray utf16be;
        for (const QChar c : text) {
            utf16be.append(char(c.unicode() >> 8));
            utf16be.append(char(c.unicode() & 0xFF));
        }
        w.u16(3);      // Windows
        w.u16(1);      // Unicode BMP
        w.u16(0x409);  // English
        w.u16(id);
        w.u16(int(utf16be.size()));
        w.u16(int(strings.size()));
        strings.append(utf16be);
    }
    w.bytes.append(strings);
    return w.bytes;
}

}  // namespace

QByteArray arrowFontData()
{
    const Contour left = mirrored(kRightArrow);
    const Box box = boxOf(kRightArrow);
    // Glyph 0 is the empty .notdef, 1 the left arrow, 2 the right one.
    const QByteArray glyphs[] = {QByteArray(), simpleGlyph(left), simpleGlyph(kRightArrow)};

    Writer glyf;
    Writer loca;
    for (const QByteArray& g : glyphs) {
        loca.u32(quint32(glyf.bytes.size()));
        glyf.bytes.append(g);
    }
    loca.u32(quint32(glyf.bytes.size()));

    Writer head;
    head.u32(0x00010000);
    head.u32(0x00010000);
    head.u32(0);  // checkSumAdjustment, set at the end
    head.u32(0x5F0F3CF5);
    head.u16(0x000B);
    head.u16(kEm);
    head.u32(0);
    head.u32(0);  // created
    head.u32(0);
    head.u32(0);  // modified
    head.u16(box.xMin);
    head.u16(box.yMin);
    head.u16(box.xMax);
    head.u16(box.yMax);
    head.u16(0);  // macStyle
    head.u16(8);  // lowestRecPPEM
    head.u16(2);
    head.u16(1);  // long offsets in loca
    head.u16(0);

    Writer hhea;
    hhea.u32(0x00010000);
    hhea.u16(kAscent);
    hhea.u16(-kDescent);
    hhea.u16(0);
    hhea.u16(kAdvance);
    hhea.u16(box.xMin);
    hhea.u16(kAdvance - box.xMax);
    hhea.u16(box.xMax);
    hhea.u16(1);  // caret upright
    hhea.u16(0);
    hhea.u16(0);
    for (int i = 0; i < 4; ++i)
        hhea.u16(0);
    hhea.u16(0);
    hhea.u16(3);

    Writer hmtx;
    hmtx.u16(kAdvance / 2);
    hmtx.u16(0);
    hmtx.u16(kAdvance);
    hmtx.u16(kAdvance - box.xMax);
    hmtx.u16(kAdvance);
    hmtx.u16(box.xMin);

    Writer maxp;
    maxp.u32(0x00010000);
    maxp.u16(3);
    maxp.u16(int(kRightArrow.size()));
    maxp.u16(1);
    maxp.u16(0);
    maxp.u16(0);
    maxp.u16(2);
    for (int i = 0; i < 8; ++i)
        maxp.u16(0);

    // One segment for the two arrows, and the closing one.
    Writer cmap;
    cmap.u16(0);
    cmap.u16(1);
    cmap.u16(3);
    cmap.u16(1);
    cmap.u32(12);
    cmap.u16(4);
    cmap.u16(16 + 4 * 2 * 2);
    cmap.u16(0);
    cmap.u16(4);  // segCountX2
    cmap.u16(4);  // searchRange
    cmap.u16(1);  // entrySelector
    cmap.u16(0);  // rangeShift
    cmap.u16(0xF0E0);
    cmap.u16(0xFFFF);
    cmap.u16(0);
    cmap.u16(0xF0DF);
    cmap.u16(0xFFFF);
    cmap.u16((1 - 0xF0DF) & 0xFFFF);
    cmap.u16(1);
    cmap.u16(0);
    cmap.u16(0);

    Writer os2;
    os2.u16(4);
    os2.u16(kAdvance);
    os2.u16(400);
    os2.u16(5);
    os2.u16(0);
    for (const int v : {650, 600, 0, 75, 650, 600, 0, 350, 50, 300})
        os2.u16(v);
    os2.u16(0);
    for (int i = 0; i < 10; ++i)
        os2.u8(0);
    os2.u32(0);
    os2.u32(1u << 28);  // private use area
    os2.u32(0);
    os2.u32(0);
    os2.tag("TRNL");
    os2.u16(0x0040);
    os2.u16(0xF0DF);
    os2.u16(0xF0E0);
    os2.u16(kAscent);
    os2.u16(-kDescent);
    os2.u16(0);
    os2.u16(kAscent);
    os2.u16(kDescent);
    os2.u32(0x80000000u);  // a symbol character set
    os2.u32(0);
    os2.u16(500);
    os2.u16(700);
    os2.u16(0);
    os2.u16(32);
    os2.u16(0);

    Writer post;
    post.u32(0x00030000);
    post.u32(0);
    post.u16(-100);
    post.u16(50);
    for (int i = 0; i < 5; ++i)
        post.u32(0);

    // In the order of their tags, as the directory wants them.
    const std::vector<std::pair<const char*, QByteArray>> tables = {
        {"OS/2", os2.bytes}, {"cmap", cmap.bytes}, {"glyf", glyf.bytes}, {"head", head.bytes},
        {"hhea", hhea.bytes}, {"hmtx", hmtx.bytes}, {"loca", loca.bytes}, {"maxp", maxp.bytes},
        {"name", nameTable()}, {"post", post.bytes},
    };
    const int count = int(tables.size());
    Writer font;
    font.u32(0x00010000);
    font.u16(count);
    font.u16(128);  // the largest power of two not above the count, times 16
    font.u16(3);
    font.u16(count * 16 - 128);
    quint32 offset = quint32(12 + 16 * count);
    qsizetype headOffset = 0;
    QByteArray body;
    for (const auto& [tag, data] : tables) {
        font.tag(tag);
        font.u32(checksum(data));
        font.u32(offset);
        font.u32(quint32(data.size()));
        if (QByteArrayView(tag, 4) == QByteArrayView("head", 4))
            headOffset = offset;
        QByteArray padded = data;
        while (padded.size() % 4)
            padded.append('\0');
        body.append(padded);
        offset += quint32(padded.size());
    }
    font.bytes.append(body);

    const quint32 adjustment = 0xB1B0AFBA - checksum(font.bytes);
    for (int i = 0; i < 4; ++i)
        font.bytes[headOffset + 8 + i] = char((adjustment >> (24 - 8 * i)) & 0xFF);
    return font.bytes;
}

bool installArrowFont()
{
    static const bool installed = [] {
        if (QFontDatabase::families().contains(QStringLiteral("Wingdings"), Qt::CaseInsensitive))
            return true;
        // The substitution first: adding the font clears the font caches, so
        // nothing drawn before keeps the old stand-in.
        QFont::insertSubstitution(QStringLiteral("Wingdings"), kArrowFontFamily);
        return QFontDatabase::addApplicationFontFromData(arrowFontData()) >= 0;
    }();
    return installed;
}

}  // namespace tornelia
