#pragma once

// Byte encodings the program meets: Windows code pages in RTF, and plain
// text files that are UTF-8 or, failing that, Windows-1252.

#include <QByteArray>
#include <QString>

#include <memory>

namespace tornelia {

// The Windows-1252 byte for a character, or -1 when the code page has none.
int cp1252Byte(char16_t c);
// The character of a Windows-1252 byte (undefined bytes map to themselves).
char16_t cp1252Char(unsigned char b);

// The code page that an RTF \fcharset stands for; 0 for "the default one".
int codePageOfCharset(int charset);

// A decoder for one code page that keeps its state between calls, so a
// double-byte pair split over two calls decodes right.
class ByteDecoder {
public:
    explicit ByteDecoder(int codePage);
    ~ByteDecoder();
    ByteDecoder(const ByteDecoder&) = delete;
    ByteDecoder& operator=(const ByteDecoder&) = delete;
    int codePage() const { return codePage_; }
    void decode(const char* bytes, qsizetype n, QString& out);

private:
    struct Impl;
    int codePage_;
    bool leadPending_ = false;  // the last byte given opened a double-byte pair
    std::unique_ptr<Impl> impl_;
};

// Plain text files: UTF-8 when the bytes are valid UTF-8 (a BOM is dropped),
// Windows-1252 otherwise.
QString decodePlainText(const QByteArray& bytes);
QByteArray encodePlainText(const QString& text);

}  // namespace tornelia
