// Every file of the real-world corpus loads, keeps its text in order, and
// round-trips by the invariants. The files are read where they lie.

#include "core/rich_text_surface.h"
#include "rtf_support.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>

using namespace tornelia;

namespace {

QStringList corpusFiles()
{
    const QDir dir(QStringLiteral(TORNELIA_CORPUS_DIR));
    QStringList files = dir.entryList({QStringLiteral("*.rtf"), QStringLiteral("*.RTF")}, QDir::Files, QDir::Name);
    return files;
}

// Words of plain letters from the file's own text runs, found without any
// RTF reader: a run of text between a control word's blank and the next
// backslash or brace, outside the head. A few of them must appear in Text,
// in the same order.
QStringList sampleWords(const QByteArray& bytes)
{
    const QString s = QString::fromLatin1(bytes);
    qsizetype body = s.indexOf(QLatin1String("\\pard"));
    if (body < 0)
        return {};
    static const QRegularExpression run(QStringLiteral("(?:\\\\par|\\\\pard|\\\\plain)[ \\r\\n]+([A-Za-z]{5,12}) [A-Za-z]"));
    QStringList words;
    for (auto it = run.globalMatch(s, body); it.hasNext() && words.size() < 6;) {
        const auto m = it.next();
        // Text inside a destination that is skipped (fields, styles) would not show.
        const QString before = s.mid(std::max<qsizetype>(0, m.capturedStart() - 200), 200);
        if (before.contains(QLatin1String("\\*")) || before.contains(QLatin1String("fldinst")))
            continue;
        words << m.captured(1);
    }
    return words;
}

class Corpus : public ::testing::TestWithParam<QString> {};

}  // namespace

TEST_P(Corpus, LoadsAndRoundTrips)
{
    const QString path = QStringLiteral(TORNELIA_CORPUS_DIR "/") + GetParam();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();

    RichTextSurface s;
    s.LoadFile(path, RichTextSurface::RtfKind);
    const QString text = s.Text();

    // Text in order: the sample words appear, each after the one before.
    qsizetype at = 0;
    for (const QString& w : sampleWords(bytes)) {
        const qsizetype found = text.indexOf(w, at);
        EXPECT_GE(found, 0) << GetParam().toStdString() << ": \"" << w.toStdString() << "\" missing or out of order";
        if (found >= 0)
            at = found + w.size();
    }

    EXPECT_TRUE(test::wholeRoundTripHolds(s)) << GetParam().toStdString();
    const long len = s.length();
    EXPECT_TRUE(test::selectionRoundTripHolds(s, len / 3, len / 3)) << GetParam().toStdString();
    EXPECT_TRUE(test::selectionRoundTripHolds(s, 0, len)) << GetParam().toStdString();
}

INSTANTIATE_TEST_SUITE_P(RealWorld, Corpus, ::testing::ValuesIn(corpusFiles()),
                         [](const ::testing::TestParamInfo<QString>& info) {
                             QString name = info.param;
                             name.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9]")), QStringLiteral("_"));
                             return name.toStdString();
                         });
