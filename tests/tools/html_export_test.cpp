#include "text_tools_ports.h"
#include "tools/html_export.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace tornelia;

namespace {

QString rtfDoc(const char* colours, const char* body)
{
    return QStringLiteral("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}"
                          "{\\f1\\froman\\fcharset0 Times New Roman;}}\r\n") +
           QString::fromLatin1(colours) + QStringLiteral("\\viewkind4\\uc1\\pard\\f0\\fs20 ") +
           QString::fromLatin1(body) + QStringLiteral("}\r\n");
}

TEST(Html, RGBtoHEXTurnsTheBytesRound)
{
    QStringList got;
    for (Colour c : {0x0000FFu, 0x00FF00u, 0xFF0000u, 0u, 0xABCDEFu, 0x010203u})
        got << RGBtoHEX(c);
    EXPECT_EQ(got, (QStringList{"FF0000", "00FF00", "0000FF", "000000", "EFCDAB", "030201"}));
}

TEST(Html, TagsStandWhereTheFormatChangesAndOnlyToggleTagsClose)
{
    struct Case {
        const char* name;
        QString rtf;
        QString html;
    };
    const QString start = "<font face=\"Tahoma\"><font color=#000000>";
    const Case cases[] = {
        {"empty", "", "<br>" + start},
        {"plain", rtfDoc("", "ciao\\par\r\n"), start + "ciao<br>"},
        {"bold to the end", rtfDoc("", "a\\b bc\\par\r\n"), start + "a<b>bc<br>"},
        {"every toggle", rtfDoc("", "\\b a\\ul b\\i c\\strike d\\b0\\ul0\\i0\\strike0 e\\par\r\n"),
         "<b>" + start + "a<u>b<i>c<s>d</b></u></i></s>e<br>"},
        {"colours",
         rtfDoc("{\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}\r\n",
                "a\\cf1 b\\cf2 c\\cf0 d\\par\r\n"),
         start + "a<font color=#FF0000>b<font color=#0000FF>c<font color=#000000>d<br>"},
        {"font", rtfDoc("", "a\\f1 b\\par\r\n"), start + "a<font face=\"Times New Roman\">b<br>"},
        {"alignment",
         rtfDoc("", "sx\\par\r\n\\pard\\qc cen\\par\r\n\\pard\\qr dx\\par\r\n\\pard\\qj giu\\par\r\n"),
         start + "sx\r\n<p align=center>cen\r\n<p align=right>dx\r\ngiu<br>"},
        {"unescaped", rtfDoc("", "a<b & c\\par\r\n"), start + "a<b & c<br>"},
    };
    for (const Case& c : cases) {
        RichTextSurface s;
        s.setDefaultFormat("Tahoma", 10);
        if (c.rtf.isEmpty())
            s.setText("");
        else
            s.setTextRTF(c.rtf);
        EXPECT_EQ(RichToHTML(s), c.html) << c.name;
        // The walk leaves the selection on the last position.
        EXPECT_EQ(s.SelStart(), s.length()) << c.name;
    }
}

TEST(Html, APartOfTheTextConvertsFromItsFirstPosition)
{
    RichTextSurface s;
    s.setDefaultFormat("Tahoma", 10);
    s.setTextRTF(rtfDoc("", "uno \\b due\\b0  tre\\par\r\n"));
    EXPECT_EQ(RichToHTML(s, 4, 7), "<b><font face=\"Tahoma\"><font color=#000000>due</b> ");
}

TEST(Html, ThePageIsConvertedAndSavedAsPlainText)
{
    QTemporaryDir dir;
    RichTextSurface s;
    s.setDefaultFormat("Tahoma", 10);
    s.setTextRTF(rtfDoc("", "S\\'ec \\b no\\par\r\n"));
    tooltest::Dialogs dialogs;
    tooltest::Messages messages;
    HtmlConversion h(s, dialogs, messages);
    EXPECT_FALSE(h.converted());
    h.u1("Documento 1");
    EXPECT_TRUE(h.converted());
    const QString page = "<HTML>\r<TITLE>Documento 1</TITLE>\r<font face=\"Tahoma\"><font color=#000000>Sì "
                         "<b>no<br>\r</HTML>";
    EXPECT_EQ(h.t(), page);

    EXPECT_FALSE(h.u2());  // cancelled: nothing written
    EXPECT_EQ(dialogs.filters, QStringList{"File HTML (*.html)"});
    dialogs.savePath = dir.filePath("p.html");
    EXPECT_TRUE(h.u2());
    QFile f(dir.filePath("p.html"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), page.toUtf8());

    dialogs.savePath = dir.filePath("nessuna/cartella/p.html");
    EXPECT_FALSE(h.u2());
    ASSERT_EQ(messages.said.size(), 1);
    EXPECT_TRUE(messages.said[0].startsWith("Converti in HTML | Impossibile salvare il file ")) << messages.said[0].toStdString();
}

TEST(Html, TheCommandLineWritesTheSamePage)
{
    QTemporaryDir dir;
    const QString in = dir.filePath("lettera.rtf");
    {
        QFile f(in);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(rtfDoc("{\\colortbl ;\\red255\\green0\\blue0;}\r\n", "Caro \\cf1 Mario\\cf0\\par\r\n").toLatin1());
    }
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("XDG_CONFIG_HOME", dir.filePath("config"));
    env.insert("XDG_DATA_HOME", dir.filePath("data"));
    QProcess p;
    p.setProcessEnvironment(env);
    p.setWorkingDirectory(dir.path());
    p.start(TORNELIA_BINARY, {"--convert-to", "html", in, "-o", "out.html"});
    ASSERT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    QFile out(dir.filePath("out.html"));
    ASSERT_TRUE(out.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(out.readAll()),
              "<HTML>\r<TITLE>" + in + "</TITLE>\r<font face=\"Tahoma\"><font color=#000000>Caro "
                                       "<font color=#FF0000>Mario<br>\r</HTML>");
}

}  // namespace

// A table becomes a table: rows, cells with their spans, the text of each
// cell without the tab or the break that ends it in Text.
TEST(Html, TablesBecomeTableRowsAndCells)
{
    RichTextSurface s;
    s.setTextRTF(rtfDoc("", "Sopra\\par"
                            "\\trowd\\cellx1000\\cellx2000\\cellx3000\\pard\\intbl a\\cell b\\cell c\\cell\\row"
                            "\\trowd\\clvmgf\\cellx1000\\cellx3000\\pard\\intbl d\\cell e\\cell\\row"
                            "\\trowd\\clvmrg\\cellx1000\\cellx2000\\cellx3000\\pard\\intbl\\cell f\\cell g\\cell\\row"
                            "\\pard Sotto\\par"));
    EXPECT_EQ(RichToHTML(s).toStdString(),
              "<font face=\"Tahoma\"><font color=#000000>Sopra\r\n<table border=1><tr><td>a</td><td>b</td><td>c</td></tr>"
              "<tr><td rowspan=2>d</td><td colspan=2>e</td></tr><tr><td>f</td><td>g</td></tr></table>Sotto<br>");
}
