// The engine on documents from many producers, as the surface writes them
// back: a toggle and a highlight never change the text, and a toggle turned
// on and off again gives back the document.

#include "engine_support.h"

#include "rtf/cls_extended_rtf.h"
#include "rtf/cls_rtf_font_looks.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QRegularExpression>

using namespace tornelia;
using namespace tornelia::test;

namespace {

QStringList corpusFiles()
{
    const QDir dir(QStringLiteral(TORNELIA_CORPUS_DIR));
    return dir.entryList({QStringLiteral("*.rtf"), QStringLiteral("*.RTF")}, QDir::Files, QDir::Name);
}

class CorpusEngine : public ::testing::TestWithParam<QString> {};

}  // namespace

TEST_P(CorpusEngine, TogglesAndHighlightKeepTheText)
{
    RichTextSurface s;
    s.LoadFile(QStringLiteral(TORNELIA_CORPUS_DIR "/") + GetParam(), RichTextSurface::RtfKind);
    const QString text = s.Text();
    if (text.size() < 2)
        GTEST_SKIP() << "no text to select";
    const long from = long(text.size()) / 5;
    const long length = std::clamp<long>(long(text.size()) / 2, 2, std::min<long>(4000, long(text.size()) - from));
    RecordingMessages messages;
    ClsExtendedRTF extended(messages);
    ClsRTFFontLooks looks(messages);
    extended.AssignControls(&s, nullptr);
    looks.AssignControls(&s, nullptr);

    // Storing a selection back is the surface's own affair; the engine is
    // judged against what a plain store of the same selection leaves.
    select(s, from, length);
    s.setSelRTF(s.SelRTF());
    select(s, from, length);
    // Underline kinds exclude each other: a wave over a single underline
    // replaces it, so only a selection with none must come back whole.
    const bool hadUnderline = s.SelUnderlineKind() != std::optional<UnderlineKind>(UnderlineKind::None);
    const QString original = s.TextRTF();
    extended.setSelWave(true);
    EXPECT_EQ(s.Text(), text);
    extended.setSelWave(true);
    EXPECT_EQ(s.Text(), text);
    if (!hadUnderline) {
        EXPECT_EQ(s.TextRTF(), original);
    }

    select(s, from, length);
    looks.RTFHighlightHard(0x00FFFF);
    EXPECT_EQ(s.Text(), text);
    EXPECT_TRUE(messages.shown.isEmpty()) << messages.shown.join('\n').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Files, CorpusEngine, ::testing::ValuesIn(corpusFiles()),
                         [](const ::testing::TestParamInfo<QString>& info) {
                             QString name = info.param;
                             name.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9]")), QStringLiteral("_"));
                             return name.toStdString();
                         });
