#include "print/ruler.h"

#include "print/page_settings.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tornelia {

// --- RulerModel --------------------------------------------------------------

std::optional<int> RulerModel::gripPos(Grip g) const
{
    if (drag_ == g && g != NoGrip)
        return dragPos_;
    switch (g) {
    case IndentGrip: return Selected;
    case LeftGrip: return leftMarginPos();
    case RightGrip: return rightMarginPos();
    default: return std::nullopt;
    }
}

RulerModel::Grip RulerModel::gripAt(double twips, double tolerance) const
{
    for (Grip g : {IndentGrip, LeftGrip, RightGrip}) {
        const std::optional<int> p = gripPos(g);
        if (p && std::abs(twips - *p) <= tolerance)
            return g;
    }
    return NoGrip;
}

int RulerModel::boundLow(Grip g) const
{
    switch (g) {
    case IndentGrip: return leftMarginPos();
    case LeftGrip: return 0;
    case RightGrip: return leftMarginPos() + kMinLine;
    default: return 0;
    }
}

int RulerModel::boundHigh(Grip g) const
{
    switch (g) {
    case IndentGrip: return rightMarginPos();
    case LeftGrip: return rightMarginPos() - kMinLine;
    case RightGrip: return PageWidth;
    default: return 0;
    }
}

bool RulerModel::press(Grip g, double twips)
{
    drag_ = NoGrip;
    if (!Enabled || g == NoGrip)
        return false;
    const std::optional<int> p = gripPos(g);
    if (!p)
        return false;
    drag_ = g;
    dragStart_ = *p;
    dragPos_ = *p;
    pressAt_ = twips;
    return true;
}

int RulerModel::move(double twips)
{
    if (drag_ == NoGrip)
        return 0;
    const int wanted = dragStart_ + int(std::lround(twips - pressAt_));
    const int lo = boundLow(drag_);
    const int hi = boundHigh(drag_);
    // A grip that already stands outside its bounds (margins typed in the
    // page window) may still be dragged back in.
    dragPos_ = hi < lo ? dragStart_ : std::clamp(wanted, lo, hi);
    return dragPos_;
}

RulerModel::Release RulerModel::release()
{
    Release r;
    r.grip = drag_;
    const Grip g = drag_;
    drag_ = NoGrip;
    switch (g) {
    case IndentGrip:
        Selected = dragPos_;
        break;
    case LeftGrip:
        r.marginsChanged = dragPos_ != MargineS;
        MargineS = dragPos_;
        break;
    case RightGrip:
        r.marginsChanged = PageWidth - dragPos_ != MargineD;
        MargineD = PageWidth - dragPos_;
        break;
    default:
        break;
    }
    return r;
}

// --- Rul -----------------------------------------------------------------------

Rul::Rul(QWidget* parent) : QWidget(parent), lbl_(new QLabel(this))
{
    setObjectName(QStringLiteral("Rul"));
    lbl_->setObjectName(QStringLiteral("lbl"));
    lbl_->setAutoFillBackground(true);
    lbl_->setFrameShape(QFrame::Box);
    lbl_->setMargin(1);
    QPalette pal = lbl_->palette();
    pal.setColor(QPalette::Window, QColor(255, 255, 225));
    pal.setColor(QPalette::WindowText, Qt::black);
    lbl_->setPalette(pal);
    lbl_->hide();
    setMouseTracking(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize Rul::sizeHint() const
{
    return {400, fontMetrics().height() + 16};
}

void Rul::setEnabledRuler(bool on)
{
    model_.Enabled = on;
    setEnabled(on);
    update();
}

void Rul::setOrigin(int x)
{
    if (origin_ == x)
        return;
    origin_ = x;
    update();
}

double Rul::pixelsPerTwip() const
{
    return logicalDpiX() / 1440.0 * model_.ZoM;
}

double Rul::xOfTwips(double twips) const
{
    return origin_ + twips * pixelsPerTwip();
}

double Rul::twipsOfX(double x) const
{
    const double k = pixelsPerTwip();
    return k > 0 ? (x - origin_) / k : 0;
}

void Rul::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const RulerModel& m = model_;
    p.fillRect(rect(), palette().window());

    const int top = 3;
    const int bottom = height() - 3;
    const QRectF band(xOfTwips(0), top, m.PageWidth * pixelsPerTwip(), bottom - top);
    // The margins grey, the line white, as on the sheet.
    p.fillRect(band, QColor(190, 190, 190));
    const QRectF line(xOfTwips(m.leftMarginPos()), top,
                      (m.rightMarginPos() - m.leftMarginPos()) * pixelsPerTwip(), bottom - top);
    p.fillRect(line.intersected(band), isEnabled() ? Qt::white : QColor(235, 235, 235));
    p.setPen(palette().color(QPalette::Mid));
    p.drawRect(band.adjusted(0, 0, -1, -1));

    // A number at each centimetre, a tick at each half.
    QFont f = font();
    f.setPointSizeF(std::max(6.0, f.pointSizeF() * 0.8));
    p.setFont(f);
    const QFontMetricsF fm(f);
    p.setPen(isEnabled() ? Qt::black : palette().color(QPalette::Disabled, QPalette::WindowText));
    const double mid = (top + bottom) / 2.0;
    // At small zooms the numbers would touch: every second or fifth one is
    // written, the others are marks, and the half-centimetre ticks go.
    const double perCm = kTwipsPerCm * pixelsPerTwip();
    const double widest = fm.horizontalAdvance(QString::number(int(m.PageWidth / kTwipsPerCm))) + 10;
    int every = 1;
    for (int step : {1, 2, 5, 10}) {
        every = step;
        if (widest <= step * perCm)
            break;
    }
    const bool halves = perCm >= 24;
    const int halfCm = 283;
    for (int i = 1; i * halfCm < m.PageWidth; ++i) {
        const bool whole = i % 2 == 0;
        if (!whole && !halves)
            continue;
        const double twips = whole ? (i / 2) * kTwipsPerCm : i * halfCm;
        const double x = std::round(xOfTwips(twips)) + 0.5;
        if (x < -20 || x > width() + 20)
            continue;
        if (whole && (i / 2) % every == 0) {
            const QString n = QString::number(i / 2);
            const double w = fm.horizontalAdvance(n);
            p.drawText(QPointF(x - w / 2, mid + fm.ascent() / 2 - 1), n);
        } else if (whole) {
            p.drawLine(QPointF(x, mid - 3), QPointF(x, mid + 3));
        } else {
            p.drawLine(QPointF(x, mid - 2), QPointF(x, mid + 2));
        }
    }

    // The grips: the indent at the top, the margins at the bottom.
    p.setRenderHint(QPainter::Antialiasing);
    const double gw = RulerModel::kHalfGrip * 2 * logicalDpiX() / 1440.0;  // not zoomed: always grabbable
    const double hw = std::max(4.0, gw / 2);
    const QColor gripFill = isEnabled() ? QColor(70, 110, 180) : QColor(160, 160, 160);
    p.setPen(QPen(QColor(40, 40, 40), 1));
    p.setBrush(gripFill);
    for (RulerModel::Grip g : {RulerModel::LeftGrip, RulerModel::RightGrip}) {
        const double x = xOfTwips(*m.gripPos(g));
        QPainterPath path;
        path.moveTo(x, bottom - 7);
        path.lineTo(x + hw, bottom);
        path.lineTo(x - hw, bottom);
        path.closeSubpath();
        p.drawPath(path);
    }
    if (const std::optional<int> s = m.gripPos(RulerModel::IndentGrip)) {
        const double x = xOfTwips(*s);
        QPainterPath path;
        path.moveTo(x - hw, top);
        path.lineTo(x + hw, top);
        path.lineTo(x + hw, top + 3);
        path.lineTo(x, top + 8);
        path.lineTo(x - hw, top + 3);
        path.closeSubpath();
        p.setBrush(isEnabled() ? QColor(220, 120, 40) : QColor(160, 160, 160));
        p.drawPath(path);
    }
}

void Rul::showLabel(int twips)
{
    lbl_->setText(QString::number(twips / kTwipsPerCm, 'f', 1).replace(QLatin1Char('.'), QLatin1Char(',')));
    lbl_->adjustSize();
    const int x = int(std::lround(xOfTwips(twips))) - lbl_->width() / 2;
    lbl_->move(std::clamp(x, 0, std::max(0, width() - lbl_->width())), (height() - lbl_->height()) / 2);
    lbl_->show();
    lbl_->raise();
}

void Rul::mousePressEvent(QMouseEvent* e)
{
    if (!isEnabled()) {
        QWidget::mousePressEvent(e);
        return;
    }
    const double t = twipsOfX(e->position().x());
    // The grips keep their size on screen at every zoom.
    const double tolerance = RulerModel::kHalfGrip / std::max(0.01, model_.ZoM);
    if (e->button() == Qt::LeftButton && model_.press(model_.gripAt(t, tolerance), t)) {
        showLabel(model_.dragPos());
        emit Dragging(true, model_.dragPos());
        update();
    } else {
        emit ScaleMouseDown(int(e->button()), int(std::lround(t)));
    }
    e->accept();
}

void Rul::mouseMoveEvent(QMouseEvent* e)
{
    if (model_.dragging() == RulerModel::NoGrip)
        return;
    const int pos = model_.move(twipsOfX(e->position().x()));
    showLabel(pos);
    emit Dragging(true, pos);
    update();
}

void Rul::mouseReleaseEvent(QMouseEvent* e)
{
    if (e->button() != Qt::LeftButton || model_.dragging() == RulerModel::NoGrip) {
        if (isEnabled())
            emit ScaleMouseUp(int(e->button()), int(std::lround(twipsOfX(e->position().x()))));
        return;
    }
    const int pos = model_.move(twipsOfX(e->position().x()));
    const RulerModel::Release r = model_.release();
    lbl_->hide();
    update();
    emit Dragging(false, pos);
    if (r.marginsChanged)
        emit MarginChanged();
    emit DragEnd();
}

}  // namespace tornelia
