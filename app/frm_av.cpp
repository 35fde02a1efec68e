#include "app/frm_av.h"

#include "core/procedures.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tornelia {

namespace {

const QString kApp = QStringLiteral("Tornelia");

// A sheet with a folded corner, the picture of every document here.
QPixmap sheet(int size)
{
    QPixmap p(size, size);
    p.fill(Qt::transparent);
    QPainter g(&p);
    g.setRenderHint(QPainter::Antialiasing);
    const qreal w = size * 0.66, h = size * 0.86, x = (size - w) / 2, y = (size - h) / 2, fold = size * 0.2;
    QPainterPath page;
    page.moveTo(x, y);
    page.lineTo(x + w - fold, y);
    page.lineTo(x + w, y + fold);
    page.lineTo(x + w, y + h);
    page.lineTo(x, y + h);
    page.closeSubpath();
    g.setPen(QPen(QColor(110, 120, 135), 1));
    g.setBrush(Qt::white);
    g.drawPath(page);
    g.setBrush(QColor(215, 222, 232));
    g.drawPolygon(QPolygonF({QPointF(x + w - fold, y), QPointF(x + w - fold, y + fold), QPointF(x + w, y + fold)}));
    return p;
}

QIcon pagePicture(int kind)
{
    constexpr int size = 40;
    QPixmap p = sheet(size);
    QPainter g(&p);
    g.setRenderHint(QPainter::Antialiasing);
    if (kind == 0) {  // new: a plus
        g.setPen(Qt::NoPen);
        g.setBrush(QColor(46, 140, 70));
        g.drawEllipse(QRectF(20, 20, 17, 17));
        g.setPen(QPen(Qt::white, 2.5));
        g.drawLine(QPointF(28.5, 23.5), QPointF(28.5, 33.5));
        g.drawLine(QPointF(23.5, 28.5), QPointF(33.5, 28.5));
    } else if (kind == 1) {  // models: the lines of a letter
        g.setPen(QPen(QColor(60, 100, 170), 1.5));
        for (int i = 0; i < 5; ++i)
            g.drawLine(QPointF(12, 14 + i * 4.5), QPointF(i == 4 ? 21 : 28, 14 + i * 4.5));
    } else {  // recent: a clock
        g.setPen(QPen(QColor(150, 90, 30), 1.5));
        g.setBrush(QColor(255, 236, 190));
        g.drawEllipse(QRectF(19, 19, 18, 18));
        g.drawLine(QPointF(28, 28), QPointF(28, 22));
        g.drawLine(QPointF(28, 28), QPointF(32, 30));
    }
    return QIcon(p);
}

// The sheet with a band that names the kind of file.
QIcon filePicture(FileIcon icon)
{
    QString label;
    QColor colour;
    switch (icon) {
    case FileIcon::Tornelia:
        label = QStringLiteral("TNL"), colour = QColor(40, 110, 190);
        break;
    case FileIcon::Rtf:
        label = QStringLiteral("RTF"), colour = QColor(190, 70, 50);
        break;
    case FileIcon::Text:
        label = QStringLiteral("TXT"), colour = QColor(100, 100, 100);
        break;
    case FileIcon::Html:
        label = QStringLiteral("HTM"), colour = QColor(220, 120, 20);
        break;
    case FileIcon::Data:
        label = QStringLiteral("DAT"), colour = QColor(120, 80, 160);
        break;
    case FileIcon::Other:
        label = QStringLiteral("?"), colour = QColor(150, 150, 150);
        break;
    }
    constexpr int size = 32;
    QPixmap p = sheet(size);
    QPainter g(&p);
    g.setPen(Qt::NoPen);
    g.setBrush(colour);
    const QRectF band(3, 16, 26, 10);
    g.drawRect(band);
    QFont f = g.font();
    f.setPixelSize(8);
    f.setBold(true);
    g.setFont(f);
    g.setPen(Qt::white);
    g.drawText(band, Qt::AlignCenter, label);
    return QIcon(p);
}

}  // namespace

// --- logic -------------------------------------------------------------------

Avvio::Avvio(Document& document, SettingsStore& settings, MessagePort& messages)
    : document_(document), settings_(settings), messages_(messages)
{
}

bool Avvio::cav(const QString& path)
{
    if (!QFileInfo(path).isFile()) {
        messages_.mostraMsg(QStringLiteral("Apri file"), QStringLiteral("Percorso non trovato"), 0, 3);
        return false;
    }
    QFile probe(path);
    if (!probe.open(QIODevice::ReadOnly)) {
        messages_.mostraMsg(QStringLiteral("Apri file"), QStringLiteral("Impossibile aprire il file"), 0, 3);
        return false;
    }
    probe.close();
    document_.Aprii(path);
    return true;
}

bool Avvio::co(int page, int row)
{
    switch (page) {
    case PageNuovo:
        // Novo has cleared the document before the panel came up.
        return true;
    case PageModelli:
        if (row < 0 || row >= modelli().size())
            return false;
        if (onModello)
            onModello(modelli().at(row));
        return true;
    case PageRecenti: {
        const QList<RecentRow> rows = Caric();
        if (row < 0 || row >= rows.size())
            return false;
        return cav(rows.at(row).path);
    }
    default:
        return false;
    }
}

bool Avvio::mostraAdOgniAvvio() const { return startPanelAtStart(settings_); }

bool startPanelAtStart(const SettingsStore& settings)
{
    return settings.leggiReg(kApp, QStringLiteral("Load"), QStringLiteral("1")) == QLatin1String("1");
}

void Avvio::setMostraAdOgniAvvio(bool on)
{
    settings_.scriviReg(kApp, QStringLiteral("Load"), QStringLiteral("1"), on ? QStringLiteral("1") : QStringLiteral("0"));
}

// --- window ------------------------------------------------------------------

FrmAv::FrmAv(Document& document, SettingsStore& settings, MessagePort& messages, QWidget* parent)
    : QDialog(parent), logic_(document, settings, messages)
{
    setObjectName(QStringLiteral("frmAv"));
    setWindowTitle(QStringLiteral("Tornelia - Avvio"));
    // The composers belong to the main window, which opens them by name.
    logic_.onModello = [parent](const QString& modello) {
        if (auto* procedures = dynamic_cast<MainProcedures*>(parent))
            procedures->showWindow(modello == QLatin1String("fax") ? Window::frmFax : Window::frmLett);
    };

    // The three pictures that choose a page.
    t_ = new QButtonGroup(this);
    t_->setExclusive(true);
    auto* side = new QVBoxLayout;
    side->setSpacing(4);
    const char* const captions[] = {"Nuovo", "Modelli", "Recenti"};
    for (int i = 0; i < 3; ++i) {
        auto* b = new QToolButton(this);
        b->setText(QString::fromLatin1(captions[i]));
        b->setIcon(pagePicture(i));
        b->setIconSize(QSize(40, 40));
        b->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        b->setCheckable(true);
        b->setAutoRaise(true);
        b->setMinimumSize(84, 68);
        t_->addButton(b, i);
        side->addWidget(b);
    }
    side->addStretch(1);

    auto makeList = [this](const QStringList& columns) {
        auto* list = new QTreeWidget(this);
        list->setRootIsDecorated(false);
        list->setHeaderLabels(columns);
        list->setIconSize(QSize(28, 28));
        connect(list, &QTreeWidget::itemDoubleClicked, this, &FrmAv::confirm);
        return list;
    };
    l_ = makeList({QStringLiteral("Nuovo")});
    new QTreeWidgetItem(l_, {QStringLiteral("Documento vuoto")});
    l_->topLevelItem(0)->setIcon(0, pagePicture(0));
    l2_ = makeList({QStringLiteral("Modello")});
    for (const QString& m : Avvio::modelli()) {
        auto* item = new QTreeWidgetItem(l2_, {m});
        item->setIcon(0, pagePicture(1));
    }
    l1_ = makeList({QStringLiteral("Nome file"), QStringLiteral("Percorso")});
    l1_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);

    pages_ = new QStackedWidget(this);
    pages_->addWidget(l_);
    pages_->addWidget(l2_);
    pages_->addWidget(l1_);

    mostra_ = new QCheckBox(QStringLiteral("&Mostra ad ogni avvio"), this);
    mostra_->setChecked(logic_.mostraAdOgniAvvio());
    auto* note = new QLabel(QStringLiteral("Riattivabile da Opzioni - varie"), this);
    note->setEnabled(false);

    co_ = new QPushButton(QStringLiteral("OK"), this);
    co_->setDefault(true);
    CA_ = new QPushButton(QStringLiteral("Altri file..."), this);
    can_ = new QPushButton(QStringLiteral("Annulla"), this);

    auto* top = new QHBoxLayout;
    top->addLayout(side);
    top->addWidget(pages_, 1);
    auto* foot = new QHBoxLayout;
    foot->addWidget(mostra_);
    foot->addWidget(note);
    foot->addStretch(1);
    foot->addWidget(CA_);
    foot->addWidget(co_);
    foot->addWidget(can_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(foot);

    connect(t_, &QButtonGroup::idClicked, this, &FrmAv::showPage);
    connect(co_, &QPushButton::clicked, this, &FrmAv::confirm);
    connect(CA_, &QPushButton::clicked, this, [this, &document] {
        accept();
        document.Aprii({});
    });
    connect(can_, &QPushButton::clicked, this, &QDialog::reject);

    Caric();
    showPage(0);
    resize(620, 360);
}

void FrmAv::showPage(int page)
{
    if (page < 0 || page > 2)
        return;
    t_->button(page)->setChecked(true);
    pages_->setCurrentIndex(page);
    QTreeWidget* shown = list(page);
    if (!shown->currentItem() && shown->topLevelItemCount() > 0)
        shown->setCurrentItem(shown->topLevelItem(0));
    co_->setEnabled(shown->topLevelItemCount() > 0);
}

int FrmAv::page() const { return pages_->currentIndex(); }

QTreeWidget* FrmAv::list(int page) const
{
    switch (page) {
    case Avvio::PageNuovo:
        return l_;
    case Avvio::PageModelli:
        return l2_;
    default:
        return l1_;
    }
}

void FrmAv::Caric()
{
    l1_->clear();
    for (const RecentRow& row : logic_.Caric()) {
        auto* item = new QTreeWidgetItem(l1_, {row.name, row.path});
        item->setIcon(0, filePicture(row.icon));
        item->setToolTip(1, row.path);
    }
}

void FrmAv::cav(const QString& path)
{
    if (logic_.cav(path))
        accept();
}

void FrmAv::confirm()
{
    QTreeWidget* shown = list(page());
    const int row = shown->currentItem() ? shown->indexOfTopLevelItem(shown->currentItem()) : -1;
    if (logic_.co(page(), row))
        accept();
}

void FrmAv::done(int result)
{
    logic_.setMostraAdOgniAvvio(mostra_->isChecked());
    QDialog::done(result);
}

void attachStartPanel(Document& document, SettingsStore& settings, MessagePort& messages, QWidget* owner)
{
    document.onShowStartPanel = [&document, &settings, &messages, owner] {
        FrmAv panel(document, settings, messages, owner);
        panel.exec();
    };
}

}  // namespace tornelia
