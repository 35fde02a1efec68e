#include "app/main_layout.h"

#include "controls/editor_view.h"
#include "core/rich_text_surface.h"
#include "core/settings.h"
#include "print/ruler.h"
#include "print/ruler_controller.h"
#include "rtf/api_zoom.h"

#include <QAction>
#include <QComboBox>
#include <QEvent>
#include <QFrame>
#include <QRegularExpression>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace tornelia {

namespace {

const QString kApp = QStringLiteral("Tornelia");
// Splitter and gap beside the clipboard panel, in pixels.
constexpr int kSeparator = 4;
constexpr int kClipGap = 3;

// The number a level starts with, 0 when none: "100% - dimensioni reali" is 100.
double leadingNumber(const QString& text)
{
    static const QRegularExpression re(QStringLiteral("^\\s*(\\d+(?:[.,]\\d+)?)"));
    const QRegularExpressionMatch m = re.match(text);
    if (!m.hasMatch())
        return 0;
    QString n = m.captured(1);
    n.replace(QLatin1Char(','), QLatin1Char('.'));
    return n.toDouble();
}

}  // namespace

int TrovaIndZoom(const QString& livelloZoom)
{
    const QStringList& levels = ClsAPIZoom::levels();
    const QString t = livelloZoom.trimmed();
    const int exact = levels.indexOf(t);
    if (exact >= 0)
        return exact;
    // The menu's captions carry words after the level.
    for (int i = 0; i < levels.size(); ++i) {
        if (t.startsWith(levels[i]) && t.size() > levels[i].size() && !t.at(levels[i].size()).isDigit())
            return i;
    }
    return -1;
}

QString percentoZoom(const QString& livelloZoom)
{
    return livelloZoom.left(std::max<qsizetype>(0, livelloZoom.size() - 1));
}

PageLayout pageLayoutFor(const PageSettings& page, const QString& livelloZoom, double scale)
{
    // Margins wider than the sheet leave the text a narrow column, never none.
    double width = std::max(larghezzaTesto(page), kTwipsPerCm);
    if (!livelloZoom.isEmpty()) {
        const double percent = leadingNumber(percentoZoom(livelloZoom));
        if (percent > 0)
            width = width / 100 * percent;
    }
    PageLayout l;
    l.textWidth = width / (scale > 0 ? scale : 1.0);
    l.left = std::max(0.0, page.MargineSin * kTwipsPerCm);
    l.right = std::max(0.0, page.MargineDes * kTwipsPerCm);
    l.top = std::max(0.0, page.MargineSup * kTwipsPerCm);
    l.bottom = std::max(0.0, page.MargineInf * kTwipsPerCm);
    l.sheetHeight = sheetHeightTwips(page.Orientamento);
    return l;
}

LayoutPlan planLayout(const LayoutInput& in)
{
    LayoutPlan p;
    const int w = std::max(0, in.area.width());
    const int h = std::max(0, in.area.height());
    int y = 0;
    for (int i = 0; i < 2; ++i) {
        if (in.toolbarHeight[i] > 0) {
            p.toolbar[i] = QRect(0, y, w, in.toolbarHeight[i]);
            y += in.toolbarHeight[i];
        }
    }
    int right = w;
    if (in.clipWidth > 0) {
        const int cw = std::min(in.clipWidth, std::max(0, w / 2));
        p.clip = QRect(w - cw, y + kClipGap, cw, std::max(0, h - y - kClipGap));
        p.separator = QRect(w - cw - kSeparator, y, kSeparator, std::max(0, h - y));
        right = w - cw - kSeparator;
    }
    if (in.rulerHeight > 0) {
        p.ruler = QRect(0, y, right, in.rulerHeight);
        y += in.rulerHeight;
    }
    p.editor = QRect(0, y, std::max(0, right), std::max(0, h - y));
    return p;
}

// -----------------------------------------------------------------------------

MainLayout::MainLayout(SettingsStore& settings, RichTextSurface& testo, MessagePort& messages, QObject* parent)
    : QObject(parent), settings_(settings), testo_(testo), zoom_(std::make_unique<ClsAPIZoom>(&messages))
{
    setObjectName(QStringLiteral("mainLayout"));
    CaricaMargini(settings_, page_);
    zoom_->AssignControls(&testo_, nullptr);
}

MainLayout::~MainLayout() = default;

void MainLayout::setWidgets(const Widgets& widgets)
{
    w_ = widgets;
    if (!w_.area)
        return;
    if (!rul_) {
        rul_ = new Rul(w_.area);
        rul_->hide();
        auto* line = new QFrame(w_.area);
        line->setObjectName(QStringLiteral("picLin"));
        line->setFrameShape(QFrame::VLine);
        line->setStyleSheet(QStringLiteral("color: #303030; border: 1px dotted #303030;"));
        line->setFixedWidth(1);
        line->hide();
        picLin_ = line;
        // The ruler's margins are kept for the session; the page window stores them.
        rulerController_ = std::make_unique<RulerController>(*rul_, testo_, page_, picLin_, [this] {
            if (!w_.editor || !vistaPagina_)
                return;
            w_.editor->setPageLayout(pageLayoutFor(page_, livelloZoom_, viewScale()));
            rul_->setPageWidth(int(std::lround(page_.MargineSin * kTwipsPerCm + page_.MargineDes * kTwipsPerCm +
                                               w_.editor->pageLayout()->textWidth)));
            rul_->Disegna();
            layoutPass();
        });
        rulerController_->beforeChange = beforeChange_;
    }
    w_.area->installEventFilter(this);
    for (QWidget* t : w_.toolbar)
        if (t)
            t->installEventFilter(this);
    if (w_.clip)
        w_.clip->installEventFilter(this);
    if (w_.editor) {
        // The ruler's zero follows the sheet's edge as the page scrolls.
        connect(w_.editor, &EditorView::pageOriginChanged, this, &MainLayout::followPageOrigin,
                Qt::UniqueConnection);
    }
    ImpostaVis();
    layoutPass();
}

void MainLayout::setBeforeChange(std::function<void()> unDO)
{
    beforeChange_ = std::move(unDO);
    if (rulerController_)
        rulerController_->beforeChange = beforeChange_;
}

void MainLayout::setViewActions(QAction* normale, QAction* pagina, QAction* righello)
{
    normale_ = normale;
    pagina_ = pagina;
    righello_ = righello;
    for (QAction* a : {normale, pagina, righello})
        if (a)
            a->setCheckable(true);
    syncActions();
}

void MainLayout::setZoomCombo(QComboBox* cbZoom, bool followPicks)
{
    cbZoom_ = cbZoom;
    zoom_->AssignControls(&testo_, cbZoom);
    if (cbZoom && followPicks)
        connect(cbZoom, &QComboBox::textActivated, this, &MainLayout::zoomToLevel);
}

bool MainLayout::rulerWanted() const
{
    // Only "False" hides the ruler: a person who never chose sees it.
    return settings_.leggiReg(kApp, QStringLiteral("Righello"), QStringLiteral("1")) != QStringLiteral("False");
}

double MainLayout::viewScale() const
{
    int num = 0;
    int den = 0;
    testo_.GetZoom(num, den);
    return num > 0 && den > 0 ? double(num) / den : 1.0;
}

void MainLayout::syncActions()
{
    if (normale_)
        normale_->setChecked(!vistaPagina_);
    if (pagina_)
        pagina_->setChecked(vistaPagina_);
    if (righello_) {
        righello_->setEnabled(vistaPagina_);
        righello_->setChecked(vistaPagina_ && rulerWanted());
    }
}

void MainLayout::ImpostaVis()
{
    // "False" stands for the page view, anything else for the normal one.
    vistaPagina_ = settings_.leggiReg(kApp, QStringLiteral("TipoVis"), QStringLiteral("1")) == QStringLiteral("False");
    syncActions();
    if (rul_)
        rul_->setVisible(vistaPagina_ && rulerWanted());
    if (!vistaPagina_) {
        if (picLin_)
            picLin_->hide();
        if (w_.editor)
            w_.editor->setPageLayout(std::nullopt);
        layoutPass();
    } else {
        RiDime();
    }
    emit viewChanged();
}

void MainLayout::RiDime()
{
    const PageLayout l = pageLayoutFor(page_, livelloZoom_, viewScale());
    if (vistaPagina_ && w_.editor)
        w_.editor->setPageLayout(l);
    if (rul_) {
        rul_->setOrPag(page_.Orientamento);
        rul_->setMargineD(int(page_.MargineDes * kTwipsPerCm));
        rul_->setMargineS(int(page_.MargineSin * kTwipsPerCm));
        rul_->setZoM(viewScale());
        rul_->setPageWidth(int(std::lround(l.left + l.textWidth + l.right)));
        rulerController_->followSelection();
        rul_->Disegna();
    }
    SalvaMargini(settings_, page_);
    layoutPass();
}

void MainLayout::zoomToLevel(const QString& level)
{
    const int index = TrovaIndZoom(level);
    if (index < 0)
        return;  // not a level: the zoom stays as it was
    livelloZoom_ = ClsAPIZoom::levels().at(index);
    if (cbZoom_ && cbZoom_->currentIndex() != index)
        cbZoom_->setCurrentIndex(index);
    zoom_->ZoomDo(index);
    RiDime();
}

void MainLayout::mnuTipovis(int index)
{
    settings_.scriviReg(kApp, QStringLiteral("TipoVis"), QStringLiteral("1"),
                        index == 1 ? QStringLiteral("False") : QStringLiteral("True"));
    ImpostaVis();
    RiDime();
}

void MainLayout::mnuRighello()
{
    if (!vistaPagina_)
        return;
    const bool show = !rulerWanted();
    settings_.scriviReg(kApp, QStringLiteral("Righello"), QStringLiteral("1"),
                        show ? QStringLiteral("True") : QStringLiteral("False"));
    if (rul_)
        rul_->setVisible(show);
    syncActions();
    layoutPass();
}

void MainLayout::mnuZoom(const QString& caption)
{
    zoomToLevel(caption);
}

void MainLayout::applyPage(const PageSettings& page)
{
    page_ = page;
    ImpostaVis();
    RiDime();
}

bool MainLayout::place(QWidget* w, const QRect& r, bool visible)
{
    if (!w || !visible || w->geometry() == r)
        return false;
    w->setGeometry(r);
    return true;
}

int MainLayout::layoutPass()
{
    if (!w_.area || inPass_)
        return 0;
    inPass_ = true;
    LayoutInput in;
    in.area = w_.area->size();
    for (int i = 0; i < 2; ++i)
        if (w_.toolbar[i] && !w_.toolbar[i]->isHidden())
            in.toolbarHeight[i] = w_.toolbar[i]->sizeHint().height();
    const bool rulerShown = rul_ && vistaPagina_ && !rul_->isHidden();
    if (rulerShown)
        in.rulerHeight = rul_->sizeHint().height();
    if (w_.clip && !w_.clip->isHidden())
        // The panel's wanted width when it tells one, not its present one: a
        // pass in a small window narrows it, and it widens again as the
        // window grows.
        in.clipWidth = w_.clip->sizeHint().width() >= 20 ? w_.clip->sizeHint().width() : w_.clip->width();
    const LayoutPlan plan = planLayout(in);

    int set = 0;
    for (int i = 0; i < 2; ++i)
        set += place(w_.toolbar[i], plan.toolbar[i], in.toolbarHeight[i] > 0);
    set += place(rul_, plan.ruler, rulerShown);
    set += place(w_.editor, plan.editor, w_.editor != nullptr);
    if (picLin_) {
        const QRect line(picLin_->x(), plan.editor.top(), 1, plan.editor.height());
        set += place(picLin_, line, true);
    }
    followPageOrigin();
    if (w_.clip && in.clipWidth > 0) {
        set += place(w_.clip, plan.clip, true);
        set += place(w_.separator, plan.separator, w_.separator && !w_.separator->isHidden());
    }
    inPass_ = false;
    return set;
}

void MainLayout::followPageOrigin()
{
    if (rul_ && w_.editor)
        rul_->setOrigin(w_.editor->x() + w_.editor->pageLeftInView() - rul_->x());
}

void MainLayout::moVCliP()
{
    layoutPass();
}

void MainLayout::setClipPanel(QWidget* clip, QWidget* separator)
{
    w_.clip = clip;
    w_.separator = separator;
    if (clip)
        clip->installEventFilter(this);
    layoutPass();
}

bool MainLayout::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type t = event->type();
    if (watched == w_.area && t == QEvent::Resize)
        layoutPass();
    else if (watched != w_.area && (t == QEvent::Show || t == QEvent::Hide))
        moVCliP();
    return QObject::eventFilter(watched, event);
}

}  // namespace tornelia
