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

TEST(StartTest, ArgumentsMakeOnePath)
{
    const std::pair<QStringList, QString> cases[] = {
        {{}, "gui |  |  | "},
        {{"/tmp/a.rtf"}, "gui | /tmp/a.rtf |  | "},
        // A path with blanks may come whole, quoted, or in pieces.
        {{"\"/tmp/Lettera a Mario.rtf\""}, "gui | /tmp/Lettera a Mario.rtf |  | "},
        {{"\"/tmp/Lettera", "a", "Mario.rtf\""}, "gui | /tmp/Lettera a Mario.rtf |  | "},
        {{"/tmp/Lettera", "-", "copia.rtf"}, "gui | /tmp/Lettera - copia.rtf |  | "},
        // After "--" nothing is an option.
        {{"--", "--strano.rtf"}, "gui | --strano.rtf |  | "},
        {{"-o", "x.tnl", "--convert-to=TNL", "a b.rtf"}, "convert | a b.rtf | tnl | x.tnl"},
    };
    const char* const modes[] = {"gui", "convert", "dump", "help", "bad"};
    for (const auto& [args, expected] : cases) {
        const CommandLine cl = parseCommandLine(args);
        EXPECT_EQ(QStringList({modes[int(cl.mode)], cl.path, cl.format, cl.output}).join(" | "), expected)
            << args.join('|').toStdString();
    }
    EXPECT_EQ(defaultOutputPath("/home/u/doc/lettera.v2.rtf", "txt"), "lettera.v2.txt");
}

// A missing document gives a new one without a word.
TEST(StartTest, OpensTheDocumentOfTheCommandLine)
{
    testing::TestContext t;
    AppContext& ctx = *t.context;
    MainWindow window(ctx);
    auto shown = [&] {
        return QStringList{ctx.testo().Text(), ctx.document().nomeFile, window.windowTitle(),
                           window.statusPanel(1)->text(), ctx.document().fileCambiato() ? "changed" : "saved"}
            .join(" | ").replace(t.folder.path(), "@");
    };
    QFile f(t.folder.filePath("Lettera a Mario.rtf"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("{\\rtf1\\ansi{\\fonttbl{\\f0\\fswiss Tahoma;}}\\pard\\f0\\fs20 Caro \\b Mario\\b0\\par\r\nciao\\par\r\n}");
    f.close();

    ctx.document().Novo(0);
    ctx.openAtStart(t.folder.filePath("sparito.rtf"));
    QStringList states{shown()};
    ctx.openAtStart(u'"' + f.fileName() + u'"');
    EXPECT_EQ(states << shown(),
              (QStringList{" | Documento 1 | Tornelia - Documento 1 | Nessun documento salvato | saved",
                           "Caro Mario\r\nciao | @/Lettera a Mario.rtf | Tornelia - Lettera a Mario.rtf | "
                           "Nessun documento salvato | saved"}));
    EXPECT_TRUE(t.messages->said.isEmpty());
}

}  // namespace
}  // namespace tornelia
