#pragma once

// The document as JSON, paragraph by paragraph and run by run: what
// `tornelia --dump-runs` prints, and how tests compare two documents' formats.

#include <QString>

namespace tornelia {

class RichTextSurface;

QString dumpRuns(const RichTextSurface& surface);

}  // namespace tornelia
