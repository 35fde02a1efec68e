// The document named on the command line at start: how the path is put
// together from the arguments and what the window then holds.
#include "app/command_line.h"
#include "app/main_window.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QLabel>

namespace tornelia {
namespace {

using Mode = CommandLine::Mode;

TEST(StartTest, ArgumentsMakeOnePath)
{
    struct Case {
        QStringList args;
        QString path;
    };
    const QList<Case> cases = {
        {{}, QString()},
        {{QStringLiteral("/tmp/a.rtf")}, QStringLiteral("/tmp/a.rtf")},
        // A path with blanks may come whole, quoted, or in pieces.
        {{QStringLiteral("\"/tmp/Lettera a Mario.rtf\"")}, QStringLiteral("/tmp/Lettera a Mario.rtf")},
        {{QStringLiteral("\"/tmp/Lettera"), QStringLiteral("a"), QStringLiteral("Mario.rtf\"")},
         QStringLiteral("/tmp/Lettera a Mario.rtf")},
        {{QStringLiteral("/tmp/Lettera"), QStringLiteral("-"), QStringLiteral("copia.rtf")},
         QStringLiteral("/tmp/Lettera - copia.rtf")},
        // After "--" nothing is an option.
        {{QStringLiteral("--"), QStringLiteral("--strano.rtf")}, QStringLiteral("--strano.rtf")},
    };
    for (const Case& c : cases) {
        const CommandLine cl = parseCommandLine(c.args);
        EXPECT_EQ(cl.mode, Mode::Gui) << c.args.join(u'|').toStdString();
        EXPECT_EQ(cl.path, c.path) << c.args.join(u'|').toStdString();
    }

    const CommandLine convert = parseCommandLine(
        {QStringLiteral("-o"), QStringLiteral("x.tnl"), QStringLiteral("--convert-to=TNL"), QStringLiteral("a b.rtf")});
    EXPECT_EQ(convert.mode, Mode::Convert);
    EXPECT_EQ(convert.format, QStringLiteral("tnl"));
    EXPECT_EQ(convert.path, QStringLiteral("a b.rtf"));
    EXPECT_EQ(convert.output, QStringLiteral("x.tnl"));
    EXPECT_EQ(defaultOutputPath(QStringLiteral("/home/u/doc/lettera.v2.rtf"), QStringLiteral("txt")),
              QStringLiteral("lettera.v2.txt"));
}

TEST(StartTest, OpensTheDocumentOfTheCommandLine)
{
    testing::TestContext t;
    AppContext& ctx = *t.context;
    MainWindow window(ctx);
    const QString file = t.folder.filePath(QStringLiteral("Lettera a Mario.rtf"));
    {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("{\\rtf1\\ansi{\\fonttbl{\\f0\\fswiss Tahoma;}}\\pard\\f0\\fs20 Caro \\b Mario\\b0\\par\r\nciao\\par\r\n}");
    }

    ctx.document().Novo(0);
    ctx.openAtStart(u'"' + file + u'"');
    EXPECT_EQ(ctx.testo().Text(), QStringLiteral("Caro Mario\r\nciao"));
    EXPECT_EQ(ctx.document().nomeFile, file);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Tornelia - Lettera a Mario.rtf"));
    EXPECT_FALSE(ctx.document().fileCambiato());
}

TEST(StartTest, AMissingDocumentGivesANewOneWithoutAWord)
{
    testing::TestContext t;
    AppContext& ctx = *t.context;
    MainWindow window(ctx);
    ctx.document().Novo(0);
    ctx.openAtStart(t.folder.filePath(QStringLiteral("sparito.rtf")));
    EXPECT_EQ(ctx.testo().Text(), QString());
    EXPECT_EQ(ctx.document().nomeFile, kNoDocument);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Tornelia - Documento 1"));
    EXPECT_EQ(window.statusPanel(1)->text(), QStringLiteral("Nessun documento salvato"));
    EXPECT_TRUE(t.messages->said.isEmpty());
}

}  // namespace
}  // namespace tornelia
