#pragma once

// Splits RTF bytes into tokens. It never fails: a truncated file ends the
// stream, an over-long keyword or parameter is cut to the limits below, and
// what stands after the document's closing brace is the caller's to ignore.

#include <QByteArrayView>

#include <string_view>

namespace tornelia {

struct RtfToken {
    enum Type : unsigned char { End, GroupOpen, GroupClose, Word, Symbol, HexByte, Text, Binary };
    Type type = End;
    std::string_view word;  // Word: the name; Text and Binary: the bytes
    bool hasParam = false;
    int param = 0;
    unsigned char byte = 0;  // Symbol: the character; HexByte: the value
    qsizetype offset = 0;    // where the token starts in the input
};

class RtfLexer {
public:
    static constexpr int kMaxKeywordLength = 32;
    static constexpr int kMaxParameterDigits = 10;

    explicit RtfLexer(QByteArrayView input);

    RtfToken next();
    qsizetype position() const { return pos_; }

private:
    const char* s_;
    qsizetype n_;
    qsizetype pos_ = 0;
};

}  // namespace tornelia
