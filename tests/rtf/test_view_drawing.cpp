// What the editor view draws for what Qt's layout cannot show by itself:
// list labels with their own numbers and glyphs, tab leaders, and the
// Symbol font's characters. The view's text item paints on a device that
// writes down what reaches it, text and lines with their places, so a test
// compares the whole picture as words, not pixels.

#include "controls/editor_view.h"

#include <gtest/gtest.h>

#include <QGraphicsTextItem>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QRegularExpression>
#include <QStyleOptionGraphicsItem>
#include <QTextBlock>

#include <algorithm>
#include <map>

using namespace tornelia;

namespace {

struct Mark {
    QString text;  // what was drawn; "___" for a line
    QRectF box;    // where, in the item's pixels
    QFont font;
};

// Keeps what would be seen: ink that is not transparent and not clipped away.
class Recorder final : public QPaintEngine {
public:
    Recorder() : QPaintEngine(QPaintEngine::AllFeatures) {}
    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState&) override {}
    Type type() const override { return QPaintEngine::User; }
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
    void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
    void drawPath(const QPainterPath&) override {}
    void drawRects(const QRectF* rects, int count) override
    {
        // Qt's square list marker; a background would be wider.
        for (int i = 0; i < count; ++i)
            if (rects[i].width() < 12 && rects[i].height() < 12)
                keep(QStringLiteral("<square>"), rects[i], painter()->brush().color());
    }
    void drawEllipse(const QRectF& r) override { keep(QStringLiteral("<disc>"), r, painter()->pen().color()); }
    void drawLines(const QLineF* lines, int count) override
    {
        for (int i = 0; i < count; ++i)
            keep(QStringLiteral("___"), QRectF(lines[i].p1(), lines[i].p2()).normalized().adjusted(0, -1, 0, 1),
                 painter()->pen().color());
    }
    void drawTextItem(const QPointF& p, const QTextItem& item) override
    {
        const QRectF box(p.x(), p.y() - item.ascent(), item.width(), item.ascent() + item.descent());
        keep(item.text(), box, painter()->pen().color(), item.font());
    }

    std::vector<Mark> marks;

private:
    void keep(const QString& text, const QRectF& box, const QColor& ink, const QFont& font = {})
    {
        if (ink.alpha() == 0 || text.isEmpty())
            return;
        const QPointF inside = box.center();
        if (painter()->hasClipping() && !painter()->clipRegion().contains(inside.toPoint()))
            return;
        marks.push_back({text, painter()->transform().mapRect(box), font});
    }
};

class RecordingDevice final : public QPaintDevice {
public:
    QPaintEngine* paintEngine() const override { return &engine; }
    mutable Recorder engine;

protected:
    int metric(PaintDeviceMetric m) const override
    {
        switch (m) {
        case PdmWidth: return 2000;
        case PdmHeight: return 4000;
        case PdmWidthMM: return 529;
        case PdmHeightMM: return 1058;
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY: return 96;
        case PdmDepth: return 32;
        case PdmNumColors: return INT_MAX;
        case PdmDevicePixelRatio: return 1;
        case PdmDevicePixelRatioScaled: return int(devicePixelRatioFScale());
        }
        return 0;
    }
};

// The view's text item painted as the view paints it, all at once.
std::vector<Mark> drawn(RichTextSurface& s)
{
    EditorView view(s);
    view.resize(900, 700);
    QGraphicsTextItem* item = view.textItem();
    RecordingDevice device;
    {
        QPainter painter(&device);
        QStyleOptionGraphicsItem option;
        option.exposedRect = item->boundingRect();
        item->paint(&painter, &option, nullptr);
    }
    return device.engine.marks;
}

// The marks line by line, left to right, joined by "|"; runs of leader
// marks read as "…" so that the test does not count dots.
std::vector<std::string> lines(std::vector<Mark> marks)
{
    std::sort(marks.begin(), marks.end(), [](const Mark& a, const Mark& b) { return a.box.bottom() < b.box.bottom(); });
    std::vector<std::vector<Mark>> rows;
    for (const Mark& m : marks) {
        if (rows.empty() || m.box.bottom() - rows.back().front().box.bottom() > 5)
            rows.emplace_back();
        rows.back().push_back(m);
    }
    std::vector<std::string> out;
    static const QRegularExpression leader(QStringLiteral("^([.\\-=])\\1{2,}$"));
    for (auto& row : rows) {
        std::sort(row.begin(), row.end(), [](const Mark& a, const Mark& b) { return a.box.left() < b.box.left(); });
        QStringList parts;
        for (const Mark& m : row)
            parts << (leader.match(m.text).hasMatch() ? m.text.left(1) + QStringLiteral("…") : m.text);
        out.push_back(parts.join(u'|').toStdString());
    }
    return out;
}

const Mark* find(const std::vector<Mark>& marks, const QString& text)
{
    auto it = std::find_if(marks.begin(), marks.end(), [&](const Mark& m) { return m.text == text; });
    return it == marks.end() ? nullptr : &*it;
}

const Mark* findLeader(const std::vector<Mark>& marks, qreal y)
{
    auto it = std::find_if(marks.begin(), marks.end(), [&](const Mark& m) {
        static const QRegularExpression leader(QStringLiteral("^(\\.{3,}|-{3,}|___)$"));
        return leader.match(m.text).hasMatch() && std::abs(m.box.bottom() - y) < 6;
    });
    return it == marks.end() ? nullptr : &*it;
}

QString sample(const char* name) { return QStringLiteral(TORNELIA_RTF_SAMPLES "/") + QLatin1String(name); }

}  // namespace

TEST(ViewDrawing, ListsShowTheirOwnNumbersAndBulletsAtTheirLevelsIndent)
{
    RichTextSurface s;
    s.setFileName(sample("lists_on_screen.rtf"));
    const std::vector<Mark> marks = drawn(s);
    EXPECT_EQ(lines(marks), (std::vector<std::string>{"7.|Seven", "b)|Sub b", "i.|Deep i", "8.|Eight", "•|Dot", "o|Circle",
                                                      "▪|Square", "V.|Five", "VI.|Six"}));
    // Each label stands just before its text, and deeper levels further in.
    for (const char* pair : {"7.|Seven", "b)|Sub b", "i.|Deep i", "▪|Square", "VI.|Six"}) {
        const QStringList p = QString::fromUtf8(pair).split(u'|');
        const Mark* label = find(marks, p[0]);
        const Mark* text = find(marks, p[1]);
        ASSERT_TRUE(label && text) << pair;
        EXPECT_LT(label->box.right(), text->box.left()) << pair;
        EXPECT_GT(label->box.right(), text->box.left() - 12) << pair;
        // In the paragraph's own font, not the document's default.
        EXPECT_NEAR(label->box.height(), text->box.height(), 0.5) << pair;
    }
    EXPECT_LT(find(marks, "Seven")->box.left() + 40, find(marks, "Sub b")->box.left());
    EXPECT_LT(find(marks, "Sub b")->box.left() + 40, find(marks, "Deep i")->box.left());
    EXPECT_NEAR(find(marks, "Dot")->box.left(), find(marks, "Seven")->box.left(), 1);
}

TEST(ViewDrawing, TabLeadersFillTheRoomUpToTheirStop)
{
    RichTextSurface s;
    s.setFileName(sample("contents_leaders.rtf"));
    const std::vector<Mark> marks = drawn(s);
    EXPECT_EQ(lines(marks), (std::vector<std::string>{"Introduzione|.…|1", "Capitolo lungo|.…|12", "Trattini|-…|30",
                                                      "Linea|___|45", "a|b|.…|7"}));
    // Page numbers end at the right stop, one under the other; the leader
    // runs from the title to the number, and the dots of two lines align.
    const Mark* one = find(marks, "1");
    const Mark* twelve = find(marks, "12");
    ASSERT_TRUE(one && twelve);
    EXPECT_NEAR(one->box.right(), twelve->box.right(), 1);
    EXPECT_NEAR(one->box.right(), 6000 / 15.0 + find(marks, "Introduzione")->box.left(), 3);
    for (const char* title : {"Introduzione", "Capitolo lungo", "Trattini", "Linea", "b"}) {
        const Mark* t = find(marks, title);
        ASSERT_TRUE(t) << title;
        const Mark* dots = findLeader(marks, t->box.bottom());
        ASSERT_TRUE(dots) << title;
        EXPECT_GE(dots->box.left(), t->box.right() - 1) << title;
        EXPECT_LE(dots->box.right(), one->box.right() - 4) << title;
        EXPECT_GT(dots->box.width(), 40) << title;
    }
    const Mark* firstDots = findLeader(marks, one->box.bottom());
    const Mark* secondDots = findLeader(marks, twelve->box.bottom());
    const qreal dot = QFontMetricsF(find(marks, "1") ? QFont(QStringLiteral("Arial"), 12) : QFont()).horizontalAdvance(u'.');
    const qreal shift = std::fmod(secondDots->box.left() - firstDots->box.left(), dot);
    EXPECT_TRUE(shift < 0.5 || dot - shift < 0.5) << shift;
}

TEST(ViewDrawing, SymbolFontBytesShowAsTheirCharactersAndStayInTheDocument)
{
    RichTextSurface s;
    s.setFileName(sample("symbol_on_screen.rtf"));
    const std::vector<Mark> marks = drawn(s);
    // The Symbol runs' own bytes leave no ink; their characters stand in
    // their place, in the order of the text.
    std::vector<std::string> texts;
    for (const Mark& m : marks)
        texts.push_back(m.text.toStdString());
    std::vector<Mark> sorted = marks;
    std::sort(sorted.begin(), sorted.end(), [](const Mark& a, const Mark& b) { return a.box.left() < b.box.left(); });
    QString shown;
    for (const Mark& m : sorted)
        shown += m.text;
    EXPECT_EQ(shown.toStdString(), "r = 2πr, 90°, x ≥ 0 αβ");
    // Each stand-in has the room of its own width: no overlap with the
    // text after it.
    const Mark* pi = find(marks, QStringLiteral("π"));
    ASSERT_TRUE(pi);
    // Drawn in a font that has them: a symbol font gets no fallback.
    for (const char16_t c : {u'π', u'°', u'≥', u'α'})
        EXPECT_TRUE(QFontMetricsF(find(marks, QString(QChar(c)))->font).inFont(QChar(c))) << int(c);
    for (const Mark& m : sorted)
        if (m.box.left() > pi->box.left() + 0.5) {
            EXPECT_GE(m.box.left(), pi->box.right() - 0.5) << m.text.toStdString();
        }
    // The document keeps the bytes.
    EXPECT_EQ(s.Text(), QStringLiteral("r = 2\uF070r, 90\uF0B0, x \uF0B3 0 \uF061\uF062"));
    EXPECT_TRUE(s.TextRTF().contains(QLatin1String("\\f1 p\\f0 r, 90\\f1\\'b0"))) << s.TextRTF().toStdString();
}
