#include "print/frm_preview.h"

#include "core/ports.h"
#include "print/print_job.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace tornelia {

const std::array<int, 8> FrmPreview::kPercents = {30, 50, 75, 100, 125, 150, 175, 200};

namespace {

QString percentText(int p)
{
    return QString::number(p) + u'%';
}

}  // namespace

PreviewPage::PreviewPage(FrmPreview& owner, QWidget* parent) : QWidget(parent), owner_(owner)
{
    setObjectName(QStringLiteral("picChild"));
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PreviewPage::invalidate()
{
    image_ = QImage();
    update();
}

void PreviewPage::paintEvent(QPaintEvent* event)
{
    QPainter p(this);
    const PrintLayout* layout = owner_.layout();
    if (image_.isNull() && layout && size().width() > 0 && size().height() > 0) {
        // Only the page in view is ever drawn, at the zoom it is seen at.
        image_ = QImage(size() * devicePixelRatioF(), QImage::Format_RGB32);
        if (image_.isNull()) {
            owner_.outOfMemory();
        } else {
            image_.setDevicePixelRatio(devicePixelRatioF());
            image_.fill(Qt::white);
            QPainter onPage(&image_);
            onPage.setRenderHint(QPainter::Antialiasing);
            onPage.setRenderHint(QPainter::TextAntialiasing);
            onPage.setRenderHint(QPainter::SmoothPixmapTransform);
            const double scale = width() / layout->sheetSize().width();
            onPage.scale(scale, scale);
            layout->renderPage(onPage, owner_.currentPage());
        }
    }
    if (image_.isNull())
        p.fillRect(event->rect(), Qt::white);
    else
        p.drawImage(event->rect(), image_, QRectF(QPointF(event->rect().topLeft()) * image_.devicePixelRatio(),
                                                  QSizeF(event->rect().size()) * image_.devicePixelRatio()));
    p.setPen(QColor(64, 64, 64));
    p.drawRect(rect().adjusted(0, 0, -1, -1));
}

void PreviewPage::wheelEvent(QWheelEvent* event)
{
    // The wheel zooms by the steps of the list.
    const int dy = event->angleDelta().y();
    if (dy != 0)
        owner_.stepZoom(dy > 0 ? 1 : -1);
    event->accept();
}

FrmPreview::FrmPreview(const QTextDocument& testo, const PageSettings& page, MessagePort& messages,
                       QWidget* parent)
    : QDialog(parent), testo_(testo), page_(page), messages_(messages)
{
    setObjectName(QStringLiteral("frmPreview"));
    setWindowTitle(QStringLiteral("Anteprima di stampa"));
    setAttribute(Qt::WA_DeleteOnClose);
    setSizeGripEnabled(true);

    auto* bar = new QHBoxLayout;
    const char* names[4] = {"BtnPreview0", "BtnPreview1", "BtnPreview2", "BtnPreview3"};
    const char* tips[4] = {"Riduci", "Ingrandisci", "Pagina precedente", "Pagina successiva"};
    const char* texts[4] = {"-", "+", "<", ">"};
    for (int i = 0; i < 4; ++i) {
        auto* b = new QToolButton(this);
        b->setObjectName(QLatin1String(names[i]));
        b->setText(QLatin1String(texts[i]));
        b->setToolTip(QString::fromUtf8(tips[i]));
        b->setMinimumWidth(28);
        btn_[i] = b;
    }
    cboPercent_ = new QComboBox(this);
    cboPercent_->setObjectName(QStringLiteral("cboPercent"));
    for (int p : kPercents)
        cboPercent_->addItem(percentText(p), p);
    cboPercent_->setCurrentIndex(cboPercent_->findData(100));
    command1_ = new QPushButton(QStringLiteral("Stampa..."), this);
    command1_->setObjectName(QStringLiteral("Command1"));
    cmdClose_ = new QPushButton(QStringLiteral("Chiudi"), this);
    cmdClose_->setObjectName(QStringLiteral("cmdClose"));
    bar->addWidget(command1_);
    bar->addSpacing(12);
    bar->addWidget(btn_[0]);
    bar->addWidget(cboPercent_);
    bar->addWidget(btn_[1]);
    bar->addSpacing(12);
    bar->addWidget(btn_[2]);
    bar->addWidget(btn_[3]);
    bar->addStretch(1);
    bar->addWidget(cmdClose_);

    tabs_ = new QTabBar(this);
    tabs_->setObjectName(QStringLiteral("TabPreview"));
    tabs_->setUsesScrollButtons(true);
    tabs_->setExpanding(false);
    tabs_->setDrawBase(true);

    picParent_ = new QScrollArea(this);
    picParent_->setObjectName(QStringLiteral("picParent"));
    picParent_->setAlignment(Qt::AlignCenter);
    picParent_->setBackgroundRole(QPalette::Dark);
    picParent_->verticalScrollBar()->setObjectName(QStringLiteral("vscPreview"));
    picParent_->horizontalScrollBar()->setObjectName(QStringLiteral("hscPreview"));
    picChild_ = new PreviewPage(*this, picParent_);
    picParent_->setWidget(picChild_);
    picParent_->setWidgetResizable(false);

    auto* root = new QVBoxLayout(this);
    root->addLayout(bar);
    root->addWidget(tabs_);
    root->addWidget(picParent_, 1);

    connect(btn_[0], &QToolButton::clicked, this, [this] { stepZoom(-1); });
    connect(btn_[1], &QToolButton::clicked, this, [this] { stepZoom(1); });
    connect(btn_[2], &QToolButton::clicked, this, [this] { PictureShow(currentPage() - 1); });
    connect(btn_[3], &QToolButton::clicked, this, [this] { PictureShow(currentPage() + 1); });
    connect(cboPercent_, &QComboBox::currentIndexChanged, this, [this] {
        SizePreview();
        updateButtons();
    });
    connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
        if (index >= 0)
            PictureShow(index);
    });
    connect(command1_, &QPushButton::clicked, this, &FrmPreview::PreviewPrints);
    connect(cmdClose_, &QPushButton::clicked, this, &QDialog::close);

    resize(900, 760);
    layOut(marginsForPrint(page_), page_.Orientamento);
}

FrmPreview::~FrmPreview() = default;

void FrmPreview::layOut(const PrintMargins& margins, int orientamento)
{
    const int shown = currentPage();
    {
        const QSignalBlocker quiet(tabs_);
        while (tabs_->count() > 0)
            tabs_->removeTab(tabs_->count() - 1);
    }
    memoryReported_ = false;
    layout_ = PrintRichText(margins, orientamento, testo_, *this);
    PictureShow(std::clamp(shown, 0, std::max(0, tabs_->count() - 1)));
}

void FrmPreview::relayFromPageWindow(const PageSettings& page)
{
    page_ = page;
    layOut(marginsFromPageWindow(page), page.Orientamento);
}

void FrmPreview::SizePreview(const PrintLayout& layout)
{
    sheet_ = layout.sheetSize();
    SizePreview();
}

bool FrmPreview::AddPage(int pageNumber)
{
    const QSignalBlocker quiet(tabs_);
    const int index = tabs_->addTab(QStringLiteral("Pagina ") + QString::number(pageNumber));
    return index == pageNumber - 1;
}

void FrmPreview::SizePreview()
{
    // The sheet at the zoom, in the screen's pixels.
    const double k = percent() / 100.0 * logicalDpiX() / (layout_ ? layout_->dpi() : logicalDpiX());
    const QSize size(std::max(1, int(std::lround(sheet_.width() * k))), std::max(1, int(std::lround(sheet_.height() * k))));
    if (picChild_->size() != size)
        picChild_->resize(size);
    picChild_->invalidate();
}

void FrmPreview::PictureShow(int pageIndex)
{
    if (tabs_->count() == 0)
        return;
    pageIndex = std::clamp(pageIndex, 0, tabs_->count() - 1);
    if (tabs_->currentIndex() != pageIndex) {
        const QSignalBlocker quiet(tabs_);
        tabs_->setCurrentIndex(pageIndex);
    }
    picChild_->invalidate();
    picParent_->verticalScrollBar()->setValue(0);
    updateButtons();
}

void FrmPreview::PreviewPrints()
{
    if (!confermaStampa(messages_))
        return;
    QPrinter printer(QPrinter::HighResolution);
    preparePrinter(printer, layout_ ? layout_->orientamento() : page_.Orientamento);
    QPrintDialog dialog(&printer, this);
    dialog.setWindowTitle(QStringLiteral("Stampa"));
    dialog.setObjectName(QStringLiteral("dlgStampa"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    stampaSuStampante(printer, testo_, page_, messages_);
}

int FrmPreview::pageCount() const
{
    return tabs_->count();
}

int FrmPreview::currentPage() const
{
    return std::max(0, tabs_->currentIndex());
}

int FrmPreview::percent() const
{
    return cboPercent_->currentData().toInt();
}

void FrmPreview::setPercent(int percent)
{
    const int i = cboPercent_->findData(percent);
    if (i >= 0)
        cboPercent_->setCurrentIndex(i);
}

void FrmPreview::stepZoom(int direction)
{
    const int i = std::clamp(cboPercent_->currentIndex() + (direction > 0 ? 1 : -1), 0, cboPercent_->count() - 1);
    cboPercent_->setCurrentIndex(i);
}

void FrmPreview::updateButtons()
{
    const int i = cboPercent_->currentIndex();
    btn_[0]->setEnabled(i > 0);
    btn_[1]->setEnabled(i < cboPercent_->count() - 1);
    btn_[2]->setEnabled(currentPage() > 0);
    btn_[3]->setEnabled(currentPage() < pageCount() - 1);
}

void FrmPreview::outOfMemory()
{
    // Said once per layout: the pages made so far stay in the tabs.
    if (memoryReported_)
        return;
    memoryReported_ = true;
    messages_.mostraMsg(QStringLiteral("Anteprima di stampa"),
                        QStringLiteral("Memoria insufficiente per visualizzare l'anteprima"), 0, 3);
}

}  // namespace tornelia
