#pragma once

// Generated documents for the benchmarks: large enough to show where the time
// goes, shaped like what the program and other producers really write.

#include "core/rich_text_surface.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace tornelia::bench {

// A document of about `bytes` bytes of RTF: a font table of four fonts, a
// colour table of eight colours, paragraphs of Italian-like prose with bold,
// italic, underline, colour and size changes, accented letters as \'hh and
// characters outside code page 1252 as \uN?.
QByteArray realisticRtf(qsizetype bytes);

// `chars` characters, each with a colour-table entry of its own, written the
// way the colour effects write them: one \redN\greenN\blueN; per character and
// "\cfN X" before each.
QByteArray colourPerCharacterRtf(int chars);

// Plain prose of `chars` characters in paragraphs of a few hundred.
QString prose(int chars);

// That prose in a surface, with a format change every 40 characters made
// through the Sel... properties, as the program makes them.
std::unique_ptr<RichTextSurface> formattedDocument(int chars);

// Runs the registered benchmarks with no display and no user settings.
int runBenchmarks(int argc, char** argv);

}  // namespace tornelia::bench
