#include "core/codepage.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <array>

namespace tornelia {
namespace {

// 0x80..0x9F of Windows-1252; the five holes keep their own value.
constexpr std::array<char16_t, 32> kHigh1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

const char* codecName(int codePage)
{
    switch (codePage) {
    case 437: return "IBM437";
    case 850: return "IBM850";
    case 874: return "windows-874";
    case 932: return "Shift_JIS";
    case 936: return "GBK";
    case 949: return "windows-949";
    case 950: return "Big5";
    case 1250: return "windows-1250";
    case 1251: return "windows-1251";
    case 1253: return "windows-1253";
    case 1254: return "windows-1254";
    case 1255: return "windows-1255";
    case 1256: return "windows-1256";
    case 1257: return "windows-1257";
    case 1258: return "windows-1258";
    case 10000: return "macintosh";
    // The Far East Mac code pages are their Windows cousins with a few single
    // bytes of their own, which MacByteFixups puts right.
    case 10001: return "Shift_JIS";
    case 10002: return "Big5";
    case 10003: return "windows-949";
    case 10008: return "GBK";
    case 10006: return "x-mac-greek";
    case 10007: return "x-mac-cyrillic";
    case 10017: return "x-mac-cyrillic";
    case 10029: return "x-mac-centraleurope";
    case 10081: return "x-mac-turkish";
    // Mac Icelandic, Romanian and Croatian differ from Mac Roman in a handful
    // of letters only; Mac Roman is far better than reading them as Windows.
    case 10010:
    case 10079:
    case 10082: return "macintosh";
    case 65001: return "UTF-8";
    default: return nullptr;
    }
}

}  // namespace

int cp1252Byte(char16_t c)
{
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return c;
    for (int i = 0; i < 32; ++i)
        if (kHigh1252[i] == c)
            return 0x80 + i;
    return -1;
}

char16_t cp1252Char(unsigned char b)
{
    return (b >= 0x80 && b < 0xA0) ? kHigh1252[b - 0x80] : char16_t(b);
}

int codePageOfCharset(int charset)
{
    switch (charset) {
    case 0: return 1252;
    case 77: return 10000;
    case 78: return 10001;
    case 79: return 10003;
    case 80: return 10008;
    case 81: return 10002;
    case 85: return 10006;
    case 86: return 10081;
    case 88: return 10029;
    case 89: return 10007;
    case 128: return 932;
    case 129: return 949;
    case 134: return 936;
    case 136: return 950;
    case 161: return 1253;
    case 162: return 1254;
    case 163: return 1258;
    case 177: return 1255;
    case 178: return 1256;
    case 186: return 1257;
    case 204: return 1251;
    case 222: return 874;
    case 238: return 1250;
    case 254: return 437;
    case 255: return 850;
    default: return 0;
    }
}

// Single bytes where a Far East Mac code page parts from its Windows cousin.
char16_t macFarEastByte(int codePage, unsigned char b)
{
    switch (b) {
    case 0x80: return codePage == 10001 ? u'\\' : 0;
    case 0xA0: return codePage == 10001 ? 0x00A0 : 0;
    case 0xFD: return 0x00A9;
    case 0xFE: return 0x2122;
    case 0xFF: return 0x2026;
    default: return 0;
    }
}

struct ByteDecoder::Impl {
    QStringDecoder decoder;
};

ByteDecoder::ByteDecoder(int codePage) : codePage_(codePage)
{
    if (codePage_ != 1252 && codePage_ != 0) {
        if (const char* name = codecName(codePage_)) {
            auto impl = std::make_unique<Impl>();
            impl->decoder = QStringDecoder(name);
            if (impl->decoder.isValid())
                impl_ = std::move(impl);
        }
    }
    if (!impl_)
        codePage_ = 1252;  // an unknown code page reads as the Western one
}

ByteDecoder::~ByteDecoder() = default;

void ByteDecoder::decode(const char* bytes, qsizetype n, QString& out)
{
    if (!impl_) {
        const auto size = out.size();
        out.resize(size + n);
        char16_t* dst = reinterpret_cast<char16_t*>(out.data()) + size;
        for (qsizetype i = 0; i < n; ++i)
            dst[i] = cp1252Char(static_cast<unsigned char>(bytes[i]));
        return;
    }
    // Control bytes are never part of a multi-byte character, and some of
    // the system's converters swap them about: they stand for themselves.
    const bool macFarEast = codePage_ == 10001 || codePage_ == 10002 || codePage_ == 10003 || codePage_ == 10008;
    qsizetype from = 0;
    for (qsizetype i = 0; i <= n; ++i) {
        const auto b = i < n ? static_cast<unsigned char>(bytes[i]) : 0;
        char16_t own = 0;
        if (i < n && b >= 0x20 && b != 0x7F) {
            // A lead byte's partner may be one of the special values, so only a
            // byte that starts a character can be one of the Mac's own.
            if (!macFarEast || b < 0x80 || (own = macFarEastByte(codePage_, b)) == 0 || leadPending_) {
                leadPending_ = macFarEast && !leadPending_ && b >= 0x81 && b != 0xA0 && !(b >= 0xA1 && b <= 0xDF && codePage_ == 10001);
                continue;
            }
        }
        if (i > from)
            out += impl_->decoder.decode(QByteArrayView(bytes + from, i - from));
        if (i < n) {
            out += QChar(own ? own : char16_t(b));
            leadPending_ = false;
        }
        from = i + 1;
    }
}

QString decodePlainText(const QByteArray& bytes)
{
    QByteArrayView view(bytes);
    if (view.startsWith("\xEF\xBB\xBF"))
        view = view.sliced(3);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(view);
    if (!utf8.hasError())
        return text;
    QString western;
    ByteDecoder(1252).decode(view.data(), view.size(), western);
    return western;
}

QByteArray encodePlainText(const QString& text)
{
    return text.toUtf8();
}

}  // namespace tornelia
