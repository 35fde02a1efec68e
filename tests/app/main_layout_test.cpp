// The two views, the zoom and the layout of the main window's area, with
// the real editor view: the page is as wide as the paper at every zoom, a
// click on a zoomed page lands on the character under it, and the ruler's
// grip sets the indent of the paragraph.
#include "app/main_layout.h"
#include "controls/editor_view.h"
#include "core/rich_text_surface.h"
#include "core/settings.h"
#include "print/frm_imp.h"
#include "print/ruler.h"
#include "rtf/api_zoom.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QGraphicsTextItem>
#include <QMouseEvent>
#include <QTextBlock>
#include <QTextLayout>
#include <QToolBar>

namespace tornelia {
namespace {

using testing::AnsweringMessagePort;

TEST(Zoom, LevelsIndexesAndPercent)
{
    const std::pair<QString, int> cases[] = {{"50%", 0},  {"100%", 4}, {"110%", 5}, {"250%", 9},
                                             {"100% - dimensioni reali      .", 4},
                                             {"130%", -1}, {"", -1},   {"1000%", -1}};
    for (const auto& [text, index] : cases)
        EXPECT_EQ(TrovaIndZoom(text), index) << text.toStdString();
    EXPECT_EQ(percentoZoom("120%"), "120");
    EXPECT_EQ(percentoZoom(""), "");
}

TEST(Zoom, EachLevelSetsItsFractionAndTheSlugShowsIt)
{
    RichTextSurface testo;
    AnsweringMessagePort messages;
    ClsAPIZoom zoom(&messages);
    QComboBox combo;
    zoom.AssignControls(&testo, &combo);
    EXPECT_EQ(combo.count(), 10);
    EXPECT_EQ(combo.currentText(), "100%");

    QStringList got;
    for (int i = -2; i < 16; ++i) {
        zoom.ZoomDo(i);
        int n = 0, d = 0;
        testo.GetZoom(n, d);
        got << QStringLiteral("%1/%2").arg(n).arg(d);
    }
    // Out of the table's range is clamped to it; its unused places are 1/1.
    EXPECT_EQ(got.join(' '), "1/2 1/2 1/2 3/4 4/5 9/10 1/1 1/1 1/1 3/2 2/1 5/2 1/1 1/1 1/1 1/1 1/1 1/1");

    zoom.ZoomDo(7);
    EXPECT_EQ(zoom.ZoomSlug("Documento 1", true), "Documento 1<150%>");
    EXPECT_EQ(zoom.ZoomSlug("Documento 1<150%> - x", false), "Documento 1<3:2> - x");
    testo.SetZoom(0, 0);
    EXPECT_EQ(zoom.ZoomSlug("Documento 1<3:2> - x", false), "Documento 1 - x");
    EXPECT_EQ(zoom.ZoomSlug("Documento 1", false), "Documento 1");
    EXPECT_TRUE(messages.said.isEmpty());

    ClsAPIZoom unbound(&messages);
    unbound.ZoomDo(3);
    EXPECT_EQ(messages.said, QStringList{"Errore | Errore inaspettato! | 0 | 3"});
}

TEST(Layout, PageWidthFollowsOrientationMarginsAndZoom)
{
    const PageSettings upright;
    const PageSettings wide{1, 1, 1.5, 2.5, 2};
    struct Case {
        const PageSettings& page;
        QString level;
        double scale;
        double textWidth;
    };
    const Case cases[] = {
        {upright, "50%", 0.5, 9639},
        // Shown at 100% but wider: the lines break later, as the level says.
        {upright, "110%", 1, 9639 * 1.1},
        {upright, "", 1, 9639},
        {wide, "100%", 1, 16839.9 - 4 * 567},
        {wide, "250%", 2.5, 16839.9 - 4 * 567},
    };
    for (const Case& c : cases) {
        const PageLayout l = pageLayoutFor(c.page, c.level, c.scale);
        EXPECT_NEAR(l.textWidth, c.textWidth, 1e-6) << c.level.toStdString();
    }
    const PageLayout l = pageLayoutFor(wide, "100%", 1);
    EXPECT_EQ(l, (PageLayout{l.textWidth, 1.5 * 567, 2.5 * 567, 567, 567, 11907}));
    // Margins past the sheet still leave a centimetre of line.
    EXPECT_EQ(pageLayoutFor(PageSettings{1, 1, 15, 15, 1}, "100%", 1).textWidth, 567);
}

TEST(Layout, PlanPlacesToolbarsRulerViewAndPanel)
{
    LayoutInput in;
    in.area = QSize(800, 600);
    in.toolbarHeight[0] = 30;
    in.toolbarHeight[1] = 28;
    in.rulerHeight = 24;
    in.clipWidth = 150;
    const LayoutPlan p = planLayout(in);
    EXPECT_EQ((std::vector<QRect>{p.toolbar[0], p.toolbar[1], p.ruler, p.editor, p.separator, p.clip}),
              (std::vector<QRect>{QRect(0, 0, 800, 30), QRect(0, 30, 800, 28), QRect(0, 58, 646, 24),
                                  QRect(0, 82, 646, 518), QRect(646, 58, 4, 542), QRect(650, 61, 150, 539)}));

    // The first toolbar and the panel hidden: the rest moves up and widens.
    in.toolbarHeight[0] = 0;
    in.clipWidth = 0;
    in.rulerHeight = 0;
    const LayoutPlan q = planLayout(in);
    EXPECT_EQ((std::vector<QRect>{q.toolbar[0], q.toolbar[1], q.ruler, q.editor, q.clip}),
              (std::vector<QRect>{QRect(), QRect(0, 0, 800, 28), QRect(), QRect(0, 28, 800, 572), QRect()}));
}

// The main window's area as the window builds it.
struct Area : ::testing::Test {
    Area()
    {
        for (QToolBar*& t : bars) {
            t = new QToolBar(&area);
            t->addAction("Nuovo");
            t->addAction("Apri");
        }
        clip = new QFrame(&area);
        clip->resize(160, 100);
        clip->setFrameShape(QFrame::Box);
        separator = new QFrame(&area);
        view = new EditorView(testo, &area);
        layout = new MainLayout(settings, testo, messages, &area);
        layout->setViewActions(&normale, &pagina, &righello);
        layout->setZoomCombo(&cbZoom);
        area.resize(900, 650);
    }
    void build()
    {
        layout->setWidgets({&area, {bars[0], bars[1]}, clip, separator, view});
        area.show();
        settle();
    }
    static void settle()
    {
        for (int i = 0; i < 5; ++i)
            QApplication::processEvents();
    }
    void fill(int paragraphs)
    {
        QString rtf = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard\\f0\\fs24 ";
        for (int i = 0; i < paragraphs; ++i)
            rtf += "Paragrafo " + QString::number(i + 1) +
                   ": la pagina mostra il testo come sara stampato, con le righe che vanno a capo "
                   "dove andranno sulla carta.\\par ";
        testo.setTextRTF(rtf + "}");
    }

    QTemporaryDir folder;
    SettingsStore settings{folder.path()};
    AnsweringMessagePort messages;
    RichTextSurface testo;
    QWidget area;
    QToolBar* bars[2] = {};
    QFrame* clip = nullptr;
    QFrame* separator = nullptr;
    EditorView* view = nullptr;
    MainLayout* layout = nullptr;
    QAction normale{"Visualizzazione Normale"};
    QAction pagina{"Visualizzazione pagina  (WYSIWYG)"};
    QAction righello{"&Righello"};
    QComboBox cbZoom;
};

TEST_F(Area, ViewKindFromItsKeyWithFalseForThePage)
{
    build();
    auto state = [&] {
        return QStringList{layout->vistaPagina() ? "pagina" : "normale",
                           normale.isChecked() ? "N" : "-", pagina.isChecked() ? "P" : "-",
                           righello.isEnabled() ? "R" : "-", layout->ruler()->isHidden() ? "-" : "rul",
                           view->pageView() ? "page" : "-"}
            .join(' ');
    };
    // No key at all: the normal view, the ruler hidden and its entry off.
    EXPECT_EQ(state(), "normale N - - - -");
    layout->mnuTipovis(1);
    EXPECT_EQ(settings.leggiReg("Tornelia", "TipoVis", "1"), "False");
    EXPECT_EQ(state(), "pagina - P R rul page");
    layout->mnuRighello();
    EXPECT_EQ(settings.leggiReg("Tornelia", "Righello", "1"), "False");
    EXPECT_EQ(state(), "pagina - P R - page");
    layout->mnuTipovis(0);
    EXPECT_EQ(settings.leggiReg("Tornelia", "TipoVis", "1"), "True");
    EXPECT_EQ(state(), "normale N - - - -");
    settings.scriviReg("Tornelia", "Righello", "1", "True");
    settings.scriviReg("Tornelia", "TipoVis", "1", "qualcosa");
    layout->ImpostaVis();
    EXPECT_EQ(state(), "normale N - - - -");
}

TEST_F(Area, LayoutPassThatFindsAllInPlaceSetsNothing)
{
    settings.scriviReg("Tornelia", "TipoVis", "1", "False");
    build();
    EXPECT_EQ(layout->layoutPass(), 0);
    EXPECT_EQ(view->geometry().top(), layout->ruler()->geometry().bottom() + 1);
    EXPECT_EQ(clip->geometry().right(), area.width() - 1);

    area.resize(1000, 700);
    settle();
    EXPECT_EQ(layout->layoutPass(), 0);
    EXPECT_EQ(view->geometry().right(), separator->geometry().left() - 1);

    // Hiding a toolbar moves everything under it up at once.
    const int top = view->y();
    bars[0]->hide();
    settle();
    EXPECT_EQ(view->y(), top - bars[0]->sizeHint().height());
    EXPECT_EQ(layout->layoutPass(), 0);
}

TEST_F(Area, ZoomScalesTheViewAndThePageKeepsThePaperWidth)
{
    settings.scriviReg("Tornelia", "TipoVis", "1", "False");
    build();
    fill(3);
    const QString rtf = testo.TextRTF();
    const qreal paper = view->pixelsOfTwips(9639);
    const QStringList levels{"50%", "100%", "110%", "200%"};
    QStringList got;
    for (const QString& level : levels) {
        layout->mnuZoom(level);
        settle();
        got << QStringLiteral("%1 %2 %3 %4")
                   .arg(cbZoom.currentText())
                   .arg(view->zoomFactor())
                   .arg(std::lround(view->textItem()->textWidth() * view->zoomFactor()))
                   .arg(layout->ruler()->ZoM());
    }
    const long p = std::floor(paper);
    EXPECT_EQ(got, (QStringList{QStringLiteral("50% 0.5 %1 0.5").arg(std::lround(p * 0.5)),
                                QStringLiteral("100% 1 %1 1").arg(p),
                                QStringLiteral("110% 1 %1 1").arg(std::lround(std::floor(paper * 1.1))),
                                QStringLiteral("200% 2 %1 2").arg(p * 2)}));
    // Nothing of the document changed.
    EXPECT_EQ(testo.TextRTF(), rtf);
    // The ruler's page ends where the text's line does.
    layout->mnuZoom("100%");
    EXPECT_EQ(layout->ruler()->PageWidth(), 11907);
}

TEST_F(Area, ClickOnAZoomedPagePutsTheCaretUnderThePointer)
{
    settings.scriviReg("Tornelia", "TipoVis", "1", "False");
    build();
    fill(2);
    layout->mnuZoom("200%");
    settle();
    // The 30th character of the second line of the second paragraph.
    const QTextBlock block = testo.document()->findBlockByNumber(1);
    QTextLayout* tl = block.layout();
    ASSERT_GE(tl->lineCount(), 2);
    const QTextLine line = tl->lineAt(1);
    const int inBlock = line.textStart() + 5;
    const QPointF inDoc(tl->position().x() + (line.cursorToX(inBlock) + line.cursorToX(inBlock + 1)) / 2,
                        tl->position().y() + line.y() + line.height() / 2);
    view->ensureVisible(view->textItem()->mapRectToScene(QRectF(inDoc, QSizeF(1, 1))), 50, 50);
    settle();
    const QPoint at = view->mapFromScene(view->textItem()->mapToScene(inDoc));
    QMouseEvent press(QEvent::MouseButtonPress, at, view->viewport()->mapToGlobal(at), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &press);
    QMouseEvent release(QEvent::MouseButtonRelease, at, view->viewport()->mapToGlobal(at), Qt::LeftButton,
                        Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &release);
    // One paragraph before, counted with its CR LF.
    const long expected = testo.fromDocPos(block.position() + inBlock);
    EXPECT_EQ(testo.SelStart(), expected);
    EXPECT_EQ(testo.SelLength(), 0);
    EXPECT_GT(expected, testo.fromDocPos(block.position()) + 10);
}

TEST_F(Area, DraggingTheIndentGripIndentsTheCurrentParagraph)
{
    settings.scriviReg("Tornelia", "TipoVis", "1", "False");
    build();
    fill(3);
    testo.setSelStart(testo.fromDocPos(testo.document()->findBlockByNumber(1).position() + 3));
    settle();
    Rul* rul = layout->ruler();
    ASSERT_EQ(rul->Selected(), 1134);
    const QPointF from(rul->xOfTwips(1134), 6);
    const QPointF to(rul->xOfTwips(1134 + 1134), 6);
    QMouseEvent press(QEvent::MouseButtonPress, from, rul->mapToGlobal(from), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(rul, &press);
    QMouseEvent move(QEvent::MouseMove, to, rul->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(rul, &move);
    settle();
    // While the grip moves the guide line stands over the page at its place.
    QWidget* line = layout->guideLine();
    EXPECT_TRUE(line->isVisible());
    EXPECT_NEAR(line->x(), rul->x() + to.x(), 1);
    QMouseEvent release(QEvent::MouseButtonRelease, to, rul->mapToGlobal(to), Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(rul, &release);
    settle();

    EXPECT_FALSE(line->isVisible());
    const std::optional<float> indent = testo.SelIndent();
    ASSERT_TRUE(indent);
    EXPECT_NEAR(*indent, 1134, 20);
    testo.setSelStart(0);
    EXPECT_EQ(testo.SelIndent(), 0.0f);
    EXPECT_EQ(rul->Selected(), 1134);
}

TEST_F(Area, ConfirmedPageReachesTheViewAndTheRuler)
{
    settings.scriviReg("Tornelia", "TipoVis", "1", "False");
    build();
    fill(2);
    layout->applyPage(PageSettings{1, 1, 3, 1, 2});
    settle();
    EXPECT_EQ(*view->pageLayout(), pageLayoutFor(PageSettings{1, 1, 3, 1, 2}, "100%", 1));
    EXPECT_EQ((std::vector<int>{layout->ruler()->OrPag(), layout->ruler()->MargineS(),
                                layout->ruler()->MargineD(), layout->ruler()->PageWidth()}),
              (std::vector<int>{2, 1701, 567, 16840}));
    PageSettings stored;
    CaricaMargini(settings, stored);
    EXPECT_EQ(stored, (PageSettings{1, 1, 3, 1, 2}));
}

}  // namespace
}  // namespace tornelia
