#pragma once

// Shared checks of the RTF tests: the round-trip invariants on a surface.

#include "core/rich_text_surface.h"
#include "core/run_dump.h"

#include <gtest/gtest.h>

#include <QString>

namespace tornelia::test {

// TextRTF = TextRTF changes neither Text nor any format, and writing,
// reading and writing again gives the same bytes.
inline ::testing::AssertionResult wholeRoundTripHolds(RichTextSurface& s)
{
    const QString text = s.Text();
    const QString runs = dumpRuns(s);
    const QString first = s.TextRTF();
    s.setTextRTF(first);
    if (s.Text() != text)
        return ::testing::AssertionFailure() << "Text changed:\n" << text.left(300).toStdString() << "\n---\n"
                                             << s.Text().left(300).toStdString();
    if (dumpRuns(s) != runs)
        return ::testing::AssertionFailure() << "formats changed:\n" << runs.left(2000).toStdString() << "\n---\n"
                                             << dumpRuns(s).left(2000).toStdString();
    const QString second = s.TextRTF();
    if (second != first)
        return ::testing::AssertionFailure() << "bytes changed:\n" << first.left(2000).toStdString() << "\n---\n"
                                             << second.left(2000).toStdString();
    return ::testing::AssertionSuccess();
}

// SelRTF = SelRTF changes neither Text nor the selection's length.
inline ::testing::AssertionResult selectionRoundTripHolds(RichTextSurface& s, long start, long length)
{
    s.setSelStart(start);
    s.setSelLength(length);
    const long selLength = s.SelLength();
    const QString text = s.Text();
    const QString rtf = s.SelRTF();
    s.setSelRTF(rtf);
    if (s.Text() != text)
        return ::testing::AssertionFailure() << "Text changed at " << start << "+" << length << ":\n"
                                             << text.left(300).toStdString() << "\n---\n"
                                             << s.Text().left(300).toStdString() << "\nRTF: " << rtf.toStdString();
    s.setSelStart(start);
    s.setSelLength(length);
    if (s.SelLength() != selLength)
        return ::testing::AssertionFailure() << "selection length " << selLength << " became " << s.SelLength();
    return ::testing::AssertionSuccess();
}

}  // namespace tornelia::test
