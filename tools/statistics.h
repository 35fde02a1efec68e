#pragma once

// The word count of the document: words, characters and lines, counted the
// way the "Conteggio parole" window has always counted them.

#include <QString>

namespace tornelia {

class RichTextSurface;

struct DocStats {
    long parole = 0;
    long caratteri = 0;
    long linee = 0;
    bool operator==(const DocStats&) const = default;
};

// Words are the pieces of the text split at each single blank, so two
// blanks in a row make an empty word and a line end joins the words on
// either side. Characters are the length less the words (the blanks, in
// effect). An empty document is not counted at all: every figure is 0.
DocStats contaStatistiche(const RichTextSurface& testo);

// A figure as the window shows it: thousands grouped with a dot, 0 as "0".
QString formatFigure(long n);

}  // namespace tornelia
