// A Word table with merged cells and borders, saved by the program, reads
// in LibreOffice as the original does: the same rows, cells, spans and
// texts. Needs soffice, which the build machines of CI do not have.

#include "core/rich_text_surface.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextDocumentFragment>

using namespace tornelia;

namespace {

// The file as LibreOffice converts it to HTML; empty on failure.
QString libreOfficeHtml(const QString& soffice, const QString& rtf, const QTemporaryDir& dir)
{
    QProcess p;
    // A profile of its own, so that a LibreOffice already running elsewhere
    // does not take the conversion over.
    p.start(soffice, {QStringLiteral("-env:UserInstallation=file://") + dir.filePath(QStringLiteral("profile")),
                      QStringLiteral("--headless"), QStringLiteral("--convert-to"), QStringLiteral("html"),
                      QStringLiteral("--outdir"), dir.path(), rtf});
    if (!p.waitForFinished(180000))
        return {};
    QFile f(dir.filePath(QFileInfo(rtf).completeBaseName() + QStringLiteral(".html")));
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

// "rowspan colspan text" of each cell, a line per row.
QStringList tableRows(const QString& html)
{
    static const QRegularExpression row(QStringLiteral("<tr[^>]*>(.*?)</tr>"),
                                        QRegularExpression::DotMatchesEverythingOption | QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression cell(QStringLiteral("<t[dh]([^>]*)>(.*?)</t[dh]>"),
                                         QRegularExpression::DotMatchesEverythingOption | QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression span(QStringLiteral("(rowspan|colspan)=\"?(\\d+)"), QRegularExpression::CaseInsensitiveOption);
    QStringList rows;
    for (auto r = row.globalMatch(html); r.hasNext();) {
        QStringList cells;
        const QString inner = r.next().captured(1);
        for (auto c = cell.globalMatch(inner); c.hasNext();) {
            const auto m = c.next();
            QString spans;
            for (auto s = span.globalMatch(m.captured(1)); s.hasNext();) {
                const auto sm = s.next();
                spans += sm.captured(1).toLower() + sm.captured(2) + u' ';
            }
            const QString text = QTextDocumentFragment::fromHtml(m.captured(2)).toPlainText().simplified();
            cells << spans + u'"' + text + u'"';
        }
        rows << cells.join(QStringLiteral(" | "));
    }
    return rows;
}

}  // namespace

TEST(TablesInLibreOffice, SavedWordTableReadsAsTheOriginal)
{
    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (soffice.isEmpty())
        GTEST_SKIP() << "soffice is not installed";
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString original = dir.filePath(QStringLiteral("original.rtf"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(TORNELIA_RTF_SAMPLES "/table_word_merges.rtf"), original));

    RichTextSurface s;
    s.LoadFile(original, RichTextSurface::RtfKind);
    const QString saved = dir.filePath(QStringLiteral("saved.rtf"));
    s.SaveFile(saved, RichTextSurface::RtfKind);

    const QStringList expected = tableRows(libreOfficeHtml(soffice, original, dir));
    ASSERT_EQ(expected.size(), 3) << expected.join(u'\n').toStdString();
    EXPECT_EQ(tableRows(libreOfficeHtml(soffice, saved, dir)).join(u'\n').toStdString(), expected.join(u'\n').toStdString());
}
