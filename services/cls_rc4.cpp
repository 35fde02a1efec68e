#include "services/cls_rc4.h"

#include "core/codepage.h"

#include <cmath>
#include <utility>

namespace tornelia {

QByteArray toAnsi(const QString& text)
{
    QByteArray out;
    out.reserve(text.size());
    for (const QChar c : text) {
        const int b = cp1252Byte(c.unicode());
        out.append(char(b < 0 ? '?' : b));
    }
    return out;
}

QString fromAnsi(const QByteArray& bytes)
{
    QString out;
    out.reserve(bytes.size());
    for (const char b : bytes)
        out.append(QChar(cp1252Char(static_cast<unsigned char>(b))));
    return out;
}

void clsRC4::Key(const QString& key)
{
    if (key == key_ && !key_.isNull())
        return;
    key_ = key;
    const QByteArray k = toAnsi(key);
    for (int i = 0; i < 256; ++i)
        sbox_[i] = std::uint16_t(i);
    if (k.isEmpty())
        return;
    int j = 0;
    for (int i = 0; i < 256; ++i) {
        j = (j + sbox_[i] + static_cast<unsigned char>(k[i % k.size()])) % 256;
        std::swap(sbox_[i], sbox_[j]);
    }
}

void clsRC4::EncryptByte(QByteArray& bytes, const QString& key)
{
    if (!key.isEmpty())
        Key(key);
    std::array<std::uint16_t, 256> s = sbox_;
    const qsizetype upper = bytes.size() - 1;
    qsizetype nextReport = 0;
    int lastReport = -1;
    int i = 0;
    int j = 0;
    for (qsizetype pos = 0; pos <= upper; ++pos) {
        i = (i + 1) % 256;
        j = (j + s[i]) % 256;
        std::swap(s[i], s[j]);
        bytes[pos] = char(static_cast<unsigned char>(bytes[pos]) ^ s[(s[i] + s[j]) % 256]);
        if (pos >= nextReport) {
            // A one-byte buffer is all done at its only position.
            int percent = upper > 0 ? int(double(pos) / double(upper) * 100.0) : 100;
            // Rounded half to even, as the reports have always been placed.
            nextReport = qsizetype(std::nearbyint(double(percent + 1) / 100.0 * double(upper) + 1.0));
            if (Progress)
                Progress(percent);
            lastReport = percent;
        }
    }
    if (lastReport != 100) {
        int percent = 100;
        if (Progress)
            Progress(percent);
    }
}

void clsRC4::DecryptByte(QByteArray& bytes, const QString& key)
{
    EncryptByte(bytes, key);
}

QString clsRC4::EncryptString(const QString& text, const QString& key)
{
    QByteArray bytes = toAnsi(text);
    EncryptByte(bytes, key);
    return fromAnsi(bytes);
}

QString clsRC4::DecryptString(const QString& text, const QString& key)
{
    return EncryptString(text, key);
}

}  // namespace tornelia
