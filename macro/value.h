#pragma once

// The values of the macro language and the three conversions that every
// operator and command goes through.

#include <QString>

#include <cstdint>
#include <stdexcept>
#include <variant>

namespace tornelia {

// Empty, text, double, 32-bit integer, 16-bit integer. A variable holds any
// of them; nothing is typed by its declaration.
using MacroValue = std::variant<std::monostate, QString, double, std::int32_t, std::int16_t>;

// A step of the language that fails. The interpreter skips the step and
// goes on; the code says which kind of failure it was.
class MacroError : public std::runtime_error {
public:
    enum Code : int {
        InvalidCall = 5,
        Overflow = 6,
        SubscriptOutOfRange = 9,
        DivisionByZero = 11,
        TypeMismatch = 13,
    };
    explicit MacroError(Code code) : std::runtime_error("macro step failed"), code_(code) {}
    Code code() const { return code_; }

private:
    Code code_;
};

bool isEmpty(const MacroValue& v);

// Number of a text: blanks, tabs and line feeds are skipped wherever they
// stand, then a sign, digits, a "." and digits, an exponent; "&H" and "&O"
// read hexadecimal and octal. Whatever has no number at its head is 0. The
// mark is always ".", so that a macro reads the same on every system.
double numberOfText(const QString& text);

// Text of a value: "" for empty, the shortest decimal text of a number with
// the decimal mark of the current locale.
QString textOf(const MacroValue& v);

// Number of a value: its text read back by numberOfText.
double numberOf(const MacroValue& v);

// Whether the text is a number as the current locale writes numbers.
bool isNumericText(const QString& text);

// Strict conversions of the commands: the text must be numeric, else
// TypeMismatch; fractions go to the nearest integer, ties to the even one;
// out of range is Overflow.
double strictDouble(const QString& text);
std::int32_t strictInt32(const QString& text);
std::int16_t strictInt16(const QString& text);
// Rounds a double to a 32-bit integer, ties to even; Overflow when out of range.
std::int32_t roundToInt32(double d);
// A truth value: numbers, 0 false and any other true; other text fails.
bool strictBool(const QString& text);

}  // namespace tornelia
