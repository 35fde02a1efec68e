#include "print/ruler_controller.h"

#include "core/rich_text_surface.h"
#include "print/ruler.h"

#include <cmath>

namespace tornelia {

void marginsFromRuler(PageSettings& page, int margineS, int margineD)
{
    auto cm = [](int twips) { return std::round(twips / kTwipsPerCm * 10000.0) / 10000.0; };
    page.MargineSin = cm(margineS);
    page.MargineDes = cm(margineD);
}

RulerController::RulerController(Rul& rul, RichTextSurface& testo, PageSettings& page, QWidget* picLin,
                                 std::function<void()> riDime, QObject* parent)
    : QObject(parent), rul_(rul), testo_(testo), page_(page), picLin_(picLin), riDime_(std::move(riDime))
{
    connect(&rul_, &Rul::Dragging, this, &RulerController::onDragging);
    connect(&rul_, &Rul::MarginChanged, this, &RulerController::onMarginChanged);
    connect(&rul_, &Rul::DragEnd, this, &RulerController::onDragEnd);
    connect(&testo_, &RichTextSurface::SelChange, this, &RulerController::followSelection);
    connect(&testo_, &RichTextSurface::Change, this, &RulerController::followSelection);
}

void RulerController::followSelection()
{
    const std::optional<float> indent = testo_.SelIndent();
    std::optional<int> selected;
    if (indent)
        selected = rul_.MargineS() + int(std::lround(*indent));
    if (selected == rul_.Selected())
        return;
    rul_.setSelected(selected);
    rul_.Disegna();
}

void RulerController::onDragging(bool visible, int position)
{
    if (!picLin_)
        return;
    if (!visible) {
        picLin_->hide();
        return;
    }
    QWidget* host = picLin_->parentWidget();
    const QPoint at = host ? rul_.mapTo(host->window(), QPoint(int(std::lround(rul_.xOfTwips(position))), 0))
                           : QPoint();
    const QPoint inHost = host ? host->mapFrom(host->window(), at) : at;
    picLin_->move(inHost.x(), picLin_->y());
    if (!picLin_->isVisible())
        picLin_->show();
    picLin_->raise();
}

void RulerController::onMarginChanged()
{
    marginsFromRuler(page_, rul_.MargineS(), rul_.MargineD());
    if (riDime_)
        riDime_();
    followSelection();
}

void RulerController::onDragEnd()
{
    const std::optional<int> selected = rul_.Selected();
    if (!selected)
        return;
    const float indent = float(*selected - rul_.MargineS());
    const std::optional<float> now = testo_.SelIndent();
    if (now && std::lround(*now) == std::lround(indent))
        return;
    if (beforeChange)
        beforeChange();
    testo_.setSelIndent(indent);
}

}  // namespace tornelia
