#pragma once

// Helpers for the tests of the colour effects, the ripple and their windows.

#include "rtf/colour_effects.h"
#include "tests/rtf/engine_support.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

namespace tornelia::test {

// "r,g,b r,g,b ...": a whole sequence in one comparable line.
inline QString rgbList(const std::vector<Colour>& colours)
{
    QStringList parts;
    for (Colour c : colours) {
        int r, g, b;
        rtfkit::SplitColour(c, r, g, b);
        parts << QStringLiteral("%1,%2,%3").arg(r).arg(g).arg(b);
    }
    return parts.join(u' ');
}

// Draws given in advance, then zeros.
class ScriptedDraws {
public:
    explicit ScriptedDraws(std::vector<double> draws) : draws_(std::move(draws)) {}
    double operator()() { return next_ < draws_.size() ? draws_[next_++] : 0.0; }
    size_t used() const { return next_; }

private:
    std::vector<double> draws_;
    size_t next_ = 0;
};

// The head every stream of a fresh surface starts with.
inline const QString kSurfaceHead = QStringLiteral(
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}}\r\n");

}  // namespace tornelia::test
