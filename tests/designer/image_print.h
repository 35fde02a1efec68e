#pragma once

// Readable failures: the size and the first pixels that differ, instead of
// the bytes of a QImage object.

#include <QImage>

#include <ostream>

inline void PrintTo(const QImage& image, std::ostream* os)
{
    *os << image.width() << 'x' << image.height();
    int shown = 0;
    for (int y = 0; y < image.height() && shown < 6; ++y)
        for (int x = 0; x < image.width() && shown < 6; ++x)
            if (image.pixel(x, y) != image.pixel(0, 0)) {
                *os << " (" << x << ',' << y << ")=" << std::hex << (image.pixel(x, y) & 0xFFFFFF) << std::dec;
                ++shown;
            }
}
