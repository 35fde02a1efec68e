// The ruler: the bounds of its grips, what a release changes, and what the
// main window does with its events on the document and the page.
#include "core/rich_text_surface.h"
#include "print/ruler.h"
#include "print/ruler_controller.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFrame>
#include <QMouseEvent>

namespace tornelia {
namespace {

RulerModel a4()
{
    RulerModel m;
    m.PageWidth = 11907;
    m.MargineS = 1134;
    m.MargineD = 1134;
    m.Selected = 1134 + 567;
    return m;
}

// The grip pressed at its own place and dragged by dx, then released.
RulerModel::Release drag(RulerModel& m, RulerModel::Grip g, int dx, int* during = nullptr)
{
    const int at = *m.gripPos(g);
    EXPECT_TRUE(m.press(g, at + 10));
    const int pos = m.move(at + 10 + dx);
    if (during)
        *during = pos;
    return m.release();
}

TEST(Ruler, GripsStayWithinTheirBounds)
{
    RulerModel m = a4();
    const int right = 11907 - 1134;
    int pos = 0;

    // The indent grip between the two margins.
    drag(m, RulerModel::IndentGrip, -5000, &pos);
    EXPECT_EQ(pos, 1134);
    EXPECT_EQ(m.Selected, 1134);
    drag(m, RulerModel::IndentGrip, 20000);
    EXPECT_EQ(m.Selected, right);
    drag(m, RulerModel::IndentGrip, -300);
    EXPECT_EQ(m.Selected, right - 300);

    // The left margin from the ruler's start to a centimetre short of the right one.
    RulerModel::Release r = drag(m, RulerModel::LeftGrip, -5000);
    EXPECT_EQ(m.MargineS, 0);
    EXPECT_TRUE(r.marginsChanged);
    drag(m, RulerModel::LeftGrip, 50000);
    EXPECT_EQ(m.MargineS, right - RulerModel::kMinLine);

    // The right margin up to the ruler's end and no closer than a centimetre.
    drag(m, RulerModel::RightGrip, 5000);
    EXPECT_EQ(m.MargineD, 0);
    drag(m, RulerModel::RightGrip, -50000);
    EXPECT_EQ(m.MargineD, 11907 - (m.MargineS + RulerModel::kMinLine));

    // A release where the press was changes no margin.
    EXPECT_FALSE(drag(m, RulerModel::LeftGrip, 0).marginsChanged);
}

TEST(Ruler, DisabledOrMixedIndentTakesNoGrip)
{
    RulerModel m = a4();
    EXPECT_EQ(m.gripAt(1134 + 567 + 40), RulerModel::IndentGrip);
    EXPECT_EQ(m.gripAt(1134 - 60), RulerModel::LeftGrip);
    EXPECT_EQ(m.gripAt(5000), RulerModel::NoGrip);

    m.Selected.reset();
    EXPECT_EQ(m.gripAt(1134 + 567), RulerModel::NoGrip);
    EXPECT_FALSE(m.press(RulerModel::IndentGrip, 1134 + 567));

    m = a4();
    m.Enabled = false;
    EXPECT_FALSE(m.press(RulerModel::LeftGrip, 1134));
    EXPECT_EQ(m.move(3000), 0);
    EXPECT_EQ(m.release().grip, RulerModel::NoGrip);
    EXPECT_EQ(m.MargineS, 1134);
}

TEST(Ruler, MarginsInCentimetresToFourDecimals)
{
    PageSettings page;
    marginsFromRuler(page, 1000, 567);
    EXPECT_EQ(page, (PageSettings{1, 1, 1.7637, 1, 1}));
    marginsFromRuler(page, 0, 2835);
    EXPECT_EQ(page, (PageSettings{1, 1, 0, 5, 1}));
}

struct RulerOverText : ::testing::Test {
    RulerOverText()
    {
        testo.setTextRTF("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard\\li567 uno\\par\\pard\\li1134 due\\par}");
        rul.setMargineS(1134);
        rul.setMargineD(1134);
        rul.setPageWidth(11907);
        rul.resize(800, 30);
    }
    RichTextSurface testo;
    Rul rul;
    PageSettings page;
    QFrame line;
    int relaid = 0;
    RulerController c{rul, testo, page, &line, [this] { ++relaid; }};

    // The left button pressed, held or let go at x on the ruler.
    void mouse(QEvent::Type type, double x)
    {
        const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent e(type, QPointF(x, 25), QPointF(x, 25), button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(&rul, &e);
    }
};

TEST_F(RulerOverText, IndentGripFollowsTheCaretAndWritesTheIndentBack)
{
    testo.setSelStart(1);
    EXPECT_EQ(rul.Selected(), 1134 + 567);
    testo.setSelStart(6);
    EXPECT_EQ(rul.Selected(), 1134 + 1134);

    // Over both paragraphs the indents differ: no grip, and a release
    // changes nothing.
    testo.setSelStart(0);
    testo.setSelLength(8);
    EXPECT_EQ(rul.Selected(), std::nullopt);
    const QString before = testo.TextRTF();
    emit rul.DragEnd();
    EXPECT_EQ(testo.TextRTF(), before);

    // The grip moved 850 twips past the margin: that indent, for the
    // paragraph of the caret only.
    testo.setSelStart(1);
    rul.setSelected(1134 + 850);
    int undoTaken = 0;
    c.beforeChange = [&] { ++undoTaken; };
    emit rul.DragEnd();
    EXPECT_EQ(testo.SelIndent(), 850.0f);
    // A release where the grip stood writes nothing.
    emit rul.DragEnd();
    testo.setSelStart(6);
    EXPECT_EQ(testo.SelIndent(), 1134.0f);
    EXPECT_EQ(undoTaken, 1);
    EXPECT_EQ(relaid, 0);
}

TEST_F(RulerOverText, MarginGripChangesThePageAndTheGuideLineFollows)
{
    rul.setOrigin(10);
    line.setParent(&rul);
    // Drag the left margin grip 1 cm to the right with the mouse.
    const double from = rul.xOfTwips(1134);
    const double to = rul.xOfTwips(1134 + 567);
    std::vector<std::pair<bool, int>> dragging;
    QObject::connect(&rul, &Rul::Dragging, [&](bool v, int p) { dragging.emplace_back(v, p); });
    int ends = 0;
    QObject::connect(&rul, &Rul::DragEnd, [&] { ++ends; });
    mouse(QEvent::MouseButtonPress, from);
    mouse(QEvent::MouseMove, to);
    EXPECT_FALSE(line.isHidden());
    EXPECT_NEAR(line.x(), to, 1);
    mouse(QEvent::MouseButtonRelease, to);

    EXPECT_TRUE(line.isHidden());
    ASSERT_GE(dragging.size(), 2u);
    EXPECT_FALSE(dragging.back().first);
    EXPECT_NEAR(rul.MargineS(), 1701, 15);
    EXPECT_NEAR(page.MargineSin, 3.0, 0.03);
    EXPECT_EQ(page.MargineDes, 2.0);
    EXPECT_EQ(relaid, 1);
    EXPECT_EQ(ends, 1);
    // The paragraph keeps its indent: the grip moved with the margin.
    EXPECT_EQ(testo.SelIndent(), 567.0f);
    EXPECT_EQ(rul.Selected(), rul.MargineS() + 567);

    // A disabled ruler answers no press.
    rul.setEnabledRuler(false);
    mouse(QEvent::MouseButtonPress, from);
    mouse(QEvent::MouseButtonRelease, to);
    EXPECT_EQ(ends, 1);
}

}  // namespace
}  // namespace tornelia
