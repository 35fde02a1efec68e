#pragma once

// The ruler above the page: a centimetre scale over the sheet, two grips
// for the page margins and one for the indent of the current paragraph.
// RulerModel holds the measures and the rules of the grips in twips; Rul
// draws it and turns the mouse into grip moves.

#include <QWidget>

#include <optional>

class QLabel;

namespace tornelia {

class RulerModel {
public:
    enum Grip { NoGrip, IndentGrip, LeftGrip, RightGrip };

    int OrPag = 1;
    std::optional<int> Selected;  // twips from the ruler's zero; none for mixed indents
    int MargineS = 1134;
    int MargineD = 1134;
    double ZoM = 1.0;
    int PageWidth = 11907;
    bool Enabled = true;

    // Half the width of a grip, in twips: a press this near a grip takes it.
    static constexpr int kHalfGrip = 80;
    // The margins never come closer than this, so a line always has room.
    static constexpr int kMinLine = 567;

    int leftMarginPos() const { return MargineS; }
    int rightMarginPos() const { return PageWidth - MargineD; }
    // Where a grip stands, in twips; the indent grip with no Selected stands nowhere.
    std::optional<int> gripPos(Grip g) const;
    // The grip under a point of the ruler, the indent grip first.
    Grip gripAt(double twips, double tolerance = kHalfGrip) const;

    // A drag: the press takes the grip, each move gives its new place within
    // its bounds, the release keeps it. A disabled ruler takes no grip.
    bool press(Grip g, double twips);
    int move(double twips);
    // What the release changed.
    struct Release {
        Grip grip = NoGrip;
        bool marginsChanged = false;
    };
    Release release();
    Grip dragging() const { return drag_; }
    int dragPos() const { return dragPos_; }

private:
    int boundLow(Grip g) const;
    int boundHigh(Grip g) const;

    Grip drag_ = NoGrip;
    int dragStart_ = 0;
    double pressAt_ = 0;
    int dragPos_ = 0;
};

class Rul : public QWidget {
    Q_OBJECT
public:
    explicit Rul(QWidget* parent = nullptr);

    RulerModel& model() { return model_; }
    const RulerModel& model() const { return model_; }

    int OrPag() const { return model_.OrPag; }
    void setOrPag(int v) { model_.OrPag = v; }
    std::optional<int> Selected() const { return model_.Selected; }
    void setSelected(std::optional<int> v) { model_.Selected = v; }
    int MargineS() const { return model_.MargineS; }
    void setMargineS(int v) { model_.MargineS = v; }
    int MargineD() const { return model_.MargineD; }
    void setMargineD(int v) { model_.MargineD = v; }
    double ZoM() const { return model_.ZoM; }
    void setZoM(double v) { model_.ZoM = v; }
    int PageWidth() const { return model_.PageWidth; }
    void setPageWidth(int v) { model_.PageWidth = v; }
    bool Enabled() const { return model_.Enabled; }
    void setEnabledRuler(bool on);

    // Where, in the ruler's pixels, the sheet's left edge stands: the view
    // tells it as the page scrolls and centres.
    void setOrigin(int x);
    int origin() const { return origin_; }

    // Twips of the ruler and its pixels.
    double xOfTwips(double twips) const;
    double twipsOfX(double x) const;

    // Redraw after the measures were set.
    void Disegna() { update(); }
    void li() { update(); }

    QSize sizeHint() const override;

signals:
    // While a grip moves, with its place in twips from the ruler's zero;
    // once more with visible false when it stops.
    void Dragging(bool visible, int position);
    void MarginChanged();
    // A press and a release on the scale away from the grips, at a place in
    // twips from the ruler's zero.
    void ScaleMouseDown(int button, int position);
    void ScaleMouseUp(int button, int position);
    void DragEnd();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    double pixelsPerTwip() const;
    void showLabel(int twips);

    RulerModel model_;
    int origin_ = 0;
    QLabel* lbl_;
};

}  // namespace tornelia
