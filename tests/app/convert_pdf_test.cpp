// The document printed to a PDF file from the command line: every paragraph
// once and in order, on the page the settings hold, and about as many pages
// as another word processor makes of the same document.
#include "program_run.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

namespace tornelia::testing {
namespace {

QByteArray document(int paragraphs)
{
    static const QStringList words = QStringLiteral(
                                         "lorem ipsum dolor sit amet consectetur adipiscing elit sed do eiusmod "
                                         "tempor incididunt ut labore et dolore magna aliqua")
                                         .split(u' ');
    // The page and its margins are written in the file as well, so that a
    // program that reads them lays out the same page: 2 cm at the sides and
    // 1 cm top and bottom at 576 twips the centimetre, the default page.
    QByteArray rtf = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 DejaVu Sans;}}"
                     "\\paperw11907\\paperh16840\\margl1152\\margr1152\\margt576\\margb576\r\n"
                     "\\viewkind4\\uc1\\pard\\sa0\\sb0\\f0\\fs24 ";
    for (int i = 0; i < paragraphs; ++i) {
        QStringList text;
        for (int j = 0; j < 10 + (i * 37) % 60; ++j)
            text << words[(i + j) % words.size()];
        rtf += QStringLiteral("Paragrafo%1 %2\\par\r\n").arg(i, 3, 10, QChar(u'0')).arg(text.join(u' ')).toLatin1();
    }
    return rtf + "}";
}

QString tool(const QString& program, const QStringList& args, const QProcessEnvironment& env = {})
{
    QProcess p;
    if (!env.isEmpty())
        p.setProcessEnvironment(env);
    p.start(program, args);
    if (!p.waitForFinished(180000))
        return {};
    return QString::fromUtf8(p.readAllStandardOutput());
}

int pagesOf(const QString& pdf)
{
    static const QRegularExpression pages(QStringLiteral("Pages:\\s+(\\d+)"));
    const auto m = pages.match(tool(QStringLiteral("pdfinfo"), {pdf}));
    return m.hasMatch() ? m.captured(1).toInt() : -1;
}

QString pageSizeOf(const QString& pdf)
{
    static const QRegularExpression size(QStringLiteral("Page size:\\s+(\\d+)(?:\\.\\d+)? x (\\d+)"));
    const auto m = size.match(tool(QStringLiteral("pdfinfo"), {pdf}));
    return m.hasMatch() ? m.captured(1) + u'x' + m.captured(2) : QString();
}

class ConvertPdfTest : public ProgramRunTest {};

TEST_F(ConvertPdfTest, EveryParagraphOnceInOrderOnTheStoredPage)
{
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
        GTEST_SKIP() << "pdftotext is not installed";
    write("doc.rtf", document(250));
    ASSERT_EQ(run({"--convert-to", "pdf", "doc.rtf", "-o", "doc.pdf"}), (Result{0, "", ""}));

    QStringList expected;
    for (int i = 0; i < 250; ++i)
        expected << QStringLiteral("Paragrafo%1").arg(i, 3, 10, QChar(u'0'));
    static const QRegularExpression mark(QStringLiteral("Paragrafo\\d{3}"));
    auto marks = [&](const QString& pdf) {
        QStringList found;
        for (const auto& m : mark.globalMatch(tool(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")})))
            found << m.captured();
        return found;
    };
    EXPECT_EQ(marks(path("doc.pdf")), expected);
    EXPECT_EQ(pageSizeOf(path("doc.pdf")), "595x842");
    const int pages = pagesOf(path("doc.pdf"));
    EXPECT_GT(pages, 10);

    // Landscape with wide margins, as the page window stores them.
    QDir().mkpath(path("config/Tornelia"));
    write("config/Tornelia/Tornelia.conf", "[Margini]\n0=3\n1=3\n2=4\n3=4\n4=2\n");
    ASSERT_EQ(run({"--convert-to", "pdf", "doc.rtf", "-o", "wide.pdf"}), (Result{0, "", ""}));
    EXPECT_EQ(marks(path("wide.pdf")), expected);
    EXPECT_EQ(pageSizeOf(path("wide.pdf")), "842x595");
    EXPECT_GT(pagesOf(path("wide.pdf")), pages);

    // A folder that cannot be written to loses nothing and says so.
    EXPECT_EQ(run({"--convert-to", "pdf", "doc.rtf", "-o", "manca/doc.pdf"}),
              (Result{1, "", "tornelia: impossibile scrivere manca/doc.pdf\n"}));
}

TEST_F(ConvertPdfTest, PageCountIsCloseToAnotherWordProcessors)
{
    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (soffice.isEmpty() || QStandardPaths::findExecutable(QStringLiteral("pdfinfo")).isEmpty())
        GTEST_SKIP() << "soffice or pdfinfo is not installed";
    write("doc.rtf", document(250));
    ASSERT_EQ(run({"--convert-to", "pdf", "doc.rtf", "-o", "doc.pdf"}), (Result{0, "", ""}));
    QDir().mkpath(path("other"));
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("HOME", path("office-home"));
    tool(soffice, {"--headless", "--convert-to", "pdf", "--outdir", path("other"), path("doc.rtf")}, env);
    const int theirs = pagesOf(path("other/doc.pdf"));
    if (theirs <= 0)
        GTEST_SKIP() << "soffice made no PDF";
    const int ours = pagesOf(path("doc.pdf"));
    EXPECT_LE(std::abs(ours - theirs) * 10, theirs) << "ours " << ours << ", theirs " << theirs;
}

}  // namespace
}  // namespace tornelia::testing
