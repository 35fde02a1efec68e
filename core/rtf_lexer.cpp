#include "core/rtf_lexer.h"

#include <algorithm>

namespace tornelia {
namespace {

inline bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
inline bool isDigit(char c) { return c >= '0' && c <= '9'; }
inline int hexValue(char h)
{
    if (h >= '0' && h <= '9') return h - '0';
    if (h >= 'a' && h <= 'f') return h - 'a' + 10;
    if (h >= 'A' && h <= 'F') return h - 'A' + 10;
    return -1;
}

}  // namespace

RtfLexer::RtfLexer(QByteArrayView input) : s_(input.data()), n_(input.size())
{
    // Leading blanks and a byte-order mark are not part of the stream.
    while (pos_ < n_) {
        if (s_[pos_] == ' ' || s_[pos_] == '\t' || s_[pos_] == '\r' || s_[pos_] == '\n')
            ++pos_;
        else if (n_ - pos_ >= 3 && QByteArrayView(s_ + pos_, 3) == "\xEF\xBB\xBF")
            pos_ += 3;
        else
            break;
    }
}

RtfToken RtfLexer::next()
{
    RtfToken t;
    for (;;) {
        if (pos_ >= n_)
            return t;
        t.offset = pos_;
        const char c = s_[pos_];
        if (c == '{') {
            ++pos_;
            t.type = RtfToken::GroupOpen;
            return t;
        }
        if (c == '}') {
            ++pos_;
            t.type = RtfToken::GroupClose;
            return t;
        }
        if (c == '\r' || c == '\n') {
            ++pos_;  // line ends between tokens are not text
            continue;
        }
        if (c != '\\') {
            // A run of plain bytes up to the next special one.
            qsizetype end = pos_ + 1;
            while (end < n_) {
                const char d = s_[end];
                if (d == '\\' || d == '{' || d == '}' || d == '\r' || d == '\n')
                    break;
                ++end;
            }
            t.type = RtfToken::Text;
            t.word = std::string_view(s_ + pos_, size_t(end - pos_));
            pos_ = end;
            return t;
        }
        ++pos_;
        if (pos_ >= n_)
            return t;  // a lone backslash at the very end
        const char d = s_[pos_];
        if (isLetter(d)) {
            const qsizetype start = pos_;
            while (pos_ < n_ && isLetter(s_[pos_]))
                ++pos_;
            t.word = std::string_view(s_ + start, size_t(std::min<qsizetype>(pos_ - start, kMaxKeywordLength)));
            bool negative = false;
            if (pos_ + 1 < n_ && s_[pos_] == '-' && isDigit(s_[pos_ + 1])) {
                negative = true;
                ++pos_;
            }
            long long value = 0;
            int digits = 0;
            while (pos_ < n_ && isDigit(s_[pos_])) {
                if (digits < kMaxParameterDigits)
                    value = value * 10 + (s_[pos_] - '0');
                ++digits;
                ++pos_;
            }
            t.hasParam = digits > 0;
            t.param = int(std::clamp(negative ? -value : value, -2147483647LL, 2147483647LL));
            if (pos_ < n_ && s_[pos_] == ' ')
                ++pos_;  // the delimiter belongs to the word
            if (t.word == "bin" && t.hasParam) {
                const qsizetype count = std::clamp<qsizetype>(t.param, 0, n_ - pos_);
                t.type = RtfToken::Binary;
                t.word = std::string_view(s_ + pos_, size_t(count));
                pos_ += count;
                return t;
            }
            t.type = RtfToken::Word;
            return t;
        }
        if (d == '\'') {
            ++pos_;
            const int hi = pos_ < n_ ? hexValue(s_[pos_]) : -1;
            const int lo = pos_ + 1 < n_ ? hexValue(s_[pos_ + 1]) : -1;
            if (hi < 0 || lo < 0)
                continue;  // a broken escape stands for nothing
            pos_ += 2;
            t.type = RtfToken::HexByte;
            t.byte = static_cast<unsigned char>(hi * 16 + lo);
            return t;
        }
        ++pos_;
        t.type = RtfToken::Symbol;
        t.byte = static_cast<unsigned char>(d);
        return t;
    }
}

}  // namespace tornelia
