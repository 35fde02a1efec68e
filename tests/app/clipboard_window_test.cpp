// The clipboard panel in the real main window: shown and hidden with its
// menu entry and remembered, laid out beside the text, and pasting a
// picture through the window's own paste without losing the user's
// clipboard.
#include "app/main_window.h"
#include "clipboard/clip_panel.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMimeData>

namespace tornelia {
namespace {

const QString kApp = QStringLiteral("Tornelia");

// Shown or hidden, the menu check, the stored value, and whether the text
// ends where the panel's strip begins.
QString panelState(MainWindow& w, testing::TestContext& t)
{
    Clip* clip = w.findChild<Clip*>("Clip");
    if (!clip)
        return "no panel";
    const bool shown = clip->isVisible();
    QString besides = "-";
    if (shown)
        besides = w.editor()->geometry().right() < clip->geometry().left() ? "text left of panel" : "overlap";
    return QStringList{shown ? "shown" : "hidden", w.action("mnuAppunti")->isChecked() ? "checked" : "unchecked",
                       t.context->settings().leggiReg(kApp, "Appunti", "1", "?"), besides}
        .join(' ');
}

QStringList kinds(Clip& clip)
{
    QStringList out;
    for (int k = 0; k < ClipHistory::kEntries; ++k)
        out << QString(clip.history().entry(k).kind);
    return out;
}

TEST(ClipboardWindow, PanelFollowsItsMenuAndComesBackAsLeft)
{
    testing::TestContext t;
    QStringList seen;
    {
        MainWindow w(*t.context);
        w.Form_Load({});
        w.resize(900, 600);
        w.show();
        QApplication::processEvents();
        seen << panelState(w, t);  // first start: shown
        w.action("mnuAppunti")->trigger();
        seen << panelState(w, t);
        w.action("mnuAppunti")->trigger();
        seen << panelState(w, t);
        // "&Nascondi" of the panel's own menu goes the same way.
        w.findChild<Clip*>("Clip")->Nascondi();
        seen << panelState(w, t);
    }
    {
        MainWindow w(*t.context);
        w.Form_Load({});
        w.show();
        QApplication::processEvents();
        seen << "restart: " + panelState(w, t);
    }
    EXPECT_EQ(seen, (QStringList{"shown checked 1 text left of panel", "hidden unchecked 0 -",
                                 "shown checked 1 text left of panel", "hidden unchecked 0 -",
                                 "restart: hidden unchecked 0 -"}));
}

TEST(ClipboardWindow, CopiesAreRecordedAndAPicturePastesFromThePanel)
{
    testing::TestContext t;
    MainWindow w(*t.context);
    w.Form_Load({});
    w.show();
    QApplication::processEvents();
    Clip* clip = w.findChild<Clip*>("Clip");
    ASSERT_NE(clip, nullptr);
    clip->ButCli(2);

    RichTextSurface& testo = t.context->testo();
    testo.setText("parola");
    testo.setSelStart(0);
    testo.setSelLength(6);
    testo.setSelBold(true);
    w.CopYa();
    QImage picture(12, 8, QImage::Format_RGB32);
    picture.fill(Qt::green);
    QGuiApplication::clipboard()->setImage(picture);
    QGuiApplication::clipboard()->setText("ultima");
    clip->Aggiorna();  // whatever the clipboard's signal already did
    EXPECT_EQ(kinds(*clip), (QStringList{"T", "I", "R", "L", "L", "L", "L", "L", "L", "L"}));

    testo.setSelStart(testo.length());
    clip->setSelected(1);
    clip->ButCli(0);
    EXPECT_EQ(testo.Text(), QStringLiteral("parola\uFFFC"));
    EXPECT_TRUE(testo.TextRTF().contains("\\pict\\pngblip\\picw12\\pich8"));
    // The borrowed clipboard went back and left no entry of its own.
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "ultima");
    EXPECT_EQ(kinds(*clip), (QStringList{"T", "I", "R", "L", "L", "L", "L", "L", "L", "L"}));

    // "Incolla tutto": the text, the picture, the bold word, in that order.
    testo.setText("");
    clip->ButCli(1);
    EXPECT_EQ(testo.Text(), QStringLiteral("ultima\uFFFCparola"));
    testo.setSelStart(testo.length() - 1);
    testo.setSelLength(1);
    EXPECT_EQ(testo.SelBold(), std::optional<bool>(true));
    testo.setSelStart(0);
    testo.setSelLength(1);
    EXPECT_EQ(testo.SelBold(), std::optional<bool>(false));
}

}  // namespace
}  // namespace tornelia
