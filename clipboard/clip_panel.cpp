#include "clipboard/clip_panel.h"

#include "core/clipboard_guard.h"
#include "core/procedures.h"
#include "core/rich_text_surface.h"
#include "core/rtf_reader.h"
#include "core/settings.h"
#include "core/undo_store.h"

#include <QCheckBox>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>
#include <QSpinBox>
#include <QTextEdit>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tornelia {

namespace {

const QString kApp = QStringLiteral("Tornelia");
const QString kSection = QStringLiteral("Appunti");
constexpr int kRowHeight = 58;

}  // namespace

// ------------------------------------------------------------ the clipboard

QByteArray SystemClipSource::rtf() const
{
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    if (!mime)
        return {};
    for (const char* type : {"text/rtf", "application/rtf"})
        if (mime->hasFormat(QLatin1String(type)))
            return mime->data(QLatin1String(type));
    return {};
}

QImage SystemClipSource::image() const
{
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    if (!mime || !mime->hasImage())
        return {};
    return qvariant_cast<QImage>(mime->imageData());
}

QString SystemClipSource::text() const
{
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    return mime && mime->hasText() ? mime->text() : QString();
}

void SurfaceClipTarget::pasteText(const QString& text)
{
    undo_.unDO();
    testo_.setSelText(text);
}

void SurfaceClipTarget::pasteRtf(const QString& rtf)
{
    undo_.unDO();
    testo_.setSelRTF(rtf);
}

void SurfaceClipTarget::pasteImage(const QImage& image)
{
    // The picture borrows the clipboard for the window's own paste, which
    // knows how a picture enters the document; the user's clipboard is put
    // back at once.
    ClipboardGuard guard;
    guard.saveClipboard();
    QGuiApplication::clipboard()->setImage(image);
    procedures_.INco(QString());
    guard.restoreClipboard();
}

// ------------------------------------------------------------- the options

ClipOptions ClipOptions::read(const SettingsStore& settings)
{
    ClipOptions o;
    o.enabled = settings.leggiReg(kApp, kSection, QStringLiteral("Enabled"), QStringLiteral("1")) != QLatin1String("0");
    o.seconds = std::clamp(settings.leggiReg(kApp, kSection, QStringLiteral("2"), QStringLiteral("1")).toInt(), 1, 3600);
    o.noResize = settings.leggiReg(kApp, kSection, QStringLiteral("NoResize"), QStringLiteral("0")) == QLatin1String("1");
    const int width = settings.leggiReg(kApp, kSection, QStringLiteral("Larghezza"), QString()).toInt();
    if (width >= 120)
        o.width = width;
    return o;
}

void ClipOptions::write(SettingsStore& settings) const
{
    auto flag = [](bool b) { return b ? QStringLiteral("1") : QStringLiteral("0"); };
    settings.scriviReg(kApp, kSection, QStringLiteral("Enabled"), flag(enabled));
    settings.scriviReg(kApp, kSection, QStringLiteral("2"), QString::number(seconds));
    settings.scriviReg(kApp, kSection, QStringLiteral("NoResize"), flag(noResize));
    settings.scriviReg(kApp, kSection, QStringLiteral("Larghezza"), QString::number(width));
}

namespace {

class ClipOptionsDialog : public QDialog {
public:
    ClipOptionsDialog(const ClipOptions& o, QWidget* parent) : QDialog(parent), options_(o)
    {
        setObjectName(QStringLiteral("frmOpzAppunti"));
        setWindowTitle(QStringLiteral("Opzioni appunti"));
        auto* form = new QFormLayout(this);
        enabled_ = new QCheckBox(QStringLiteral("Registra ciò che passa negli appunti"), this);
        enabled_->setChecked(o.enabled);
        form->addRow(enabled_);
        seconds_ = new QSpinBox(this);
        seconds_->setRange(1, 3600);
        seconds_->setSuffix(QStringLiteral(" s"));
        seconds_->setValue(o.seconds);
        form->addRow(QStringLiteral("Aggiorna ogni"), seconds_);
        noResize_ = new QCheckBox(QStringLiteral("Larghezza fissa del riquadro"), this);
        noResize_->setChecked(o.noResize);
        form->addRow(noResize_);
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
        buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Annulla"));
        connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        form->addRow(buttons);
    }

    ClipOptions chosen() const
    {
        ClipOptions o = options_;
        o.enabled = enabled_->isChecked();
        o.seconds = seconds_->value();
        o.noResize = noResize_->isChecked();
        return o;
    }

private:
    ClipOptions options_;
    QCheckBox* enabled_ = nullptr;
    QSpinBox* seconds_ = nullptr;
    QCheckBox* noResize_ = nullptr;
};

}  // namespace

// --------------------------------------------------------------- the panel

Clip::Clip(ClipSource& source, ClipTarget& target, SettingsStore& settings, QWidget* parent)
    : QWidget(parent), history_(source), target_(target), settings_(settings)
{
    setObjectName(QStringLiteral("Clip"));
    setAutoFillBackground(true);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->setSpacing(4);

    auto* head = new QHBoxLayout;
    auto* title = new QLabel(QStringLiteral("<b>Appunti</b>"), this);
    head->addWidget(title, 1);
    mnuClip_ = new QMenu(this);
    mnuClip_->setObjectName(QStringLiteral("mnuClip"));
    QAction* opt = mnuClip_->addAction(QStringLiteral("&Opzioni appunti..."));
    opt->setObjectName(QStringLiteral("mnuClipOpzioniAppunti"));
    connect(opt, &QAction::triggered, this, &Clip::opzioni);
    QAction* hide = mnuClip_->addAction(QStringLiteral("&Nascondi"));
    hide->setObjectName(QStringLiteral("mnuClipNascondiPannello"));
    connect(hide, &QAction::triggered, this, &Clip::Nascondi);
    auto* menuButton = new QToolButton(this);
    menuButton->setObjectName(QStringLiteral("ClipMenu"));
    menuButton->setText(QStringLiteral("Opzioni"));
    menuButton->setToolTip(QStringLiteral("Opzioni appunti"));
    menuButton->setMenu(mnuClip_);
    menuButton->setPopupMode(QToolButton::InstantPopup);
    head->addWidget(menuButton);
    column->addLayout(head);

    lista_ = new QListWidget(this);
    lista_->setObjectName(QStringLiteral("lista"));
    lista_->setSelectionMode(QAbstractItemView::SingleSelection);
    lista_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    for (int k = 0; k < ClipHistory::kEntries; ++k) {
        auto* item = new QListWidgetItem(lista_);
        item->setSizeHint(QSize(10, kRowHeight));
        Row& row = rows_[k];
        row.frame = new QWidget;
        auto* line = new QHBoxLayout(row.frame);
        line->setContentsMargins(2, 2, 2, 2);
        row.kind = new QLabel(row.frame);
        row.kind->setFixedWidth(14);
        row.kind->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
        line->addWidget(row.kind);
        row.r = new QTextEdit(row.frame);
        row.r->setObjectName(QStringLiteral("r%1").arg(k));
        row.r->setReadOnly(true);
        row.r->setFrameShape(QFrame::NoFrame);
        row.r->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        row.r->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        row.r->viewport()->setAutoFillBackground(false);
        // A click picks the entry, not a place in its text.
        row.r->setAttribute(Qt::WA_TransparentForMouseEvents);
        row.r->setFocusPolicy(Qt::NoFocus);
        line->addWidget(row.r, 1);
        row.i = new QLabel(row.frame);
        row.i->setObjectName(QStringLiteral("i%1").arg(k));
        row.i->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        line->addWidget(row.i, 1);
        lista_->setItemWidget(item, row.frame);
    }
    // A double click pastes the entry, as "Incolla selezionato" does.
    connect(lista_, &QListWidget::itemDoubleClicked, this, [this] { ButCli(0); });
    column->addWidget(lista_, 1);

    const QString captions[] = {QStringLiteral("Incolla selezionato"), QStringLiteral("Incolla tutto"),
                                QStringLiteral("Cancella appunti")};
    for (int b = 0; b < 3; ++b) {
        auto* button = new QPushButton(captions[b], this);
        button->setObjectName(QStringLiteral("ButCli%1").arg(b));
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QPushButton::clicked, this, [this, b] { ButCli(b); });
        column->addWidget(button);
    }

    timer_ = new QTimer(this);
    connect(timer_, &QTimer::timeout, this, &Clip::Aggiorna);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &Clip::Aggiorna);

    applyOptions(ClipOptions::read(settings_));
    agg();
}

Clip::~Clip() = default;

QSize Clip::sizeHint() const
{
    return {options_.width, 300};
}

void Clip::setWantedWidth(int width)
{
    options_.width = std::max(120, width);
    updateGeometry();
}

int Clip::selected() const
{
    return lista_->currentRow();
}

void Clip::setSelected(int index)
{
    lista_->setCurrentRow(index);
}

void Clip::applyOptions(const ClipOptions& options)
{
    options_ = options;
    history_.enabled = options.enabled;
    if (options.enabled)
        timer_->start(options.seconds * 1000);
    else
        timer_->stop();
}

void Clip::agg()
{
    for (int k = 0; k < ClipHistory::kEntries; ++k) {
        const ClipEntry& e = history_.entry(k);
        Row& row = rows_[k];
        const bool words = e.kind == u'T' || e.kind == u'R';
        const bool picture = e.kind == u'I';
        // A fresh start each time: plain text must not take the format an
        // earlier rich text left at the end of the control.
        row.r->clear();
        row.r->setCurrentCharFormat(QTextCharFormat());
        if (e.kind == u'R') {
            QTextCursor cursor(row.r->document());
            RtfReadOptions o;
            o.wholeDocument = true;
            readRtf(e.rtf, cursor, o);
        } else if (e.kind == u'T') {
            row.r->setPlainText(e.text);
        }
        row.r->setVisible(words);
        row.i->setPixmap(picture ? QPixmap::fromImage(e.thumb) : QPixmap());
        row.i->setToolTip(picture ? QStringLiteral("Immagine %1 x %2").arg(e.image.width()).arg(e.image.height())
                                  : QString());
        row.i->setVisible(picture);
        row.kind->setText(e.kind == u'L' ? QString() : QString(e.kind));
        row.kind->setVisible(e.kind != u'L');
        lista_->item(k)->setFlags(e.kind == u'L' ? Qt::NoItemFlags : Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        // A free entry takes no room in the list.
        lista_->setRowHidden(k, e.kind == u'L');
    }
    lista_->viewport()->update();
}

void Clip::SpoSta()
{
    history_.SpoSta();
    agg();
}

void Clip::Aggiorna()
{
    if (ClipboardGuard::onLoan())
        return;
    if (history_.Aggiorna()) {
        agg();
        setSelected(0);
    }
}

void Clip::ButCli(int index)
{
    switch (index) {
    case 0:
    case 1:
        if (index == 0)
            history_.paste(std::max(0, selected()), target_);
        else
            history_.pasteAll(target_);
        break;
    case 2:
        history_.clear();
        agg();
        break;
    default:
        break;
    }
}

void Clip::Nascondi()
{
    if (onNascondi)
        onNascondi();
    else
        hide();
}

void Clip::opzioni()
{
    ClipOptionsDialog dialog(options_, window());
    if (dialog.exec() != QDialog::Accepted)
        return;
    ClipOptions chosen = dialog.chosen();
    chosen.write(settings_);
    applyOptions(chosen);
}

void Clip::rileggiOpzioni()
{
    applyOptions(ClipOptions::read(settings_));
    updateGeometry();
    if (onRilettura)
        onRilettura();
}

void Clip::contextMenuEvent(QContextMenuEvent* event)
{
    mnuClip_->popup(event->globalPos());
}

// ------------------------------------------------------------ the splitter

ClipSplitter::ClipSplitter(Clip& clip, QWidget* parent) : QWidget(parent), clip_(clip)
{
    setObjectName(QStringLiteral("PSep"));
    setCursor(Qt::SplitHCursor);
}

void ClipSplitter::mousePressEvent(QMouseEvent* event)
{
    if (clip_.options().noResize || event->button() != Qt::LeftButton)
        return;
    dragging_ = true;
    startX_ = int(event->globalPosition().x());
    startWidth_ = clip_.sizeHint().width();
}

void ClipSplitter::mouseMoveEvent(QMouseEvent* event)
{
    if (!dragging_)
        return;
    // The panel is on the right: dragging left widens it.
    const int wanted = std::max(120, startWidth_ - (int(event->globalPosition().x()) - startX_));
    if (wanted == clip_.sizeHint().width())
        return;
    clip_.setWantedWidth(wanted);
    if (relayout)
        relayout();
}

void ClipSplitter::mouseReleaseEvent(QMouseEvent*)
{
    if (!dragging_)
        return;
    dragging_ = false;
    if (widthChosen)
        widthChosen(clip_.sizeHint().width());
}

}  // namespace tornelia
