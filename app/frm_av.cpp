#include "app/frm_av.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tornelia {

namespace {

const QString kApp = QStringLiteral("Tornelia");

QStyle::StandardPixmap pixmapFor(FileIcon icon)
{
    switch (icon) {
    case FileIcon::Text:
    case FileIcon::Rtf:
    case FileIcon::Tornelia:
        return QStyle::SP_FileIcon;
    case FileIcon::Html:
        return QStyle::SP_FileLinkIcon;
    case FileIcon::Data:
        return QStyle::SP_DriveHDIcon;
    case FileIcon::Other:
        break;
    }
    return QStyle::SP_FileDialogDetailedView;
}

QIcon themed(const char* name, QStyle::StandardPixmap fallback, QStyle* style)
{
    return QIcon::fromTheme(QString::fromLatin1(name), style->standardIcon(fallback));
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

bool Avvio::mostraAdOgniAvvio() const
{
    return settings_.leggiReg(kApp, QStringLiteral("Load"), QStringLiteral("1")) == QLatin1String("1");
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
    logic_.onModello = [this](const QString& modello) { showModelPlaceholder(modello, this); };

    // The three pictures that choose a page.
    t_ = new QButtonGroup(this);
    t_->setExclusive(true);
    auto* side = new QVBoxLayout;
    side->setSpacing(4);
    const struct {
        const char* caption;
        const char* theme;
        QStyle::StandardPixmap fallback;
    } pictures[] = {{"Nuovo", "document-new", QStyle::SP_FileIcon},
                    {"Modelli", "x-office-document-template", QStyle::SP_FileDialogContentsView},
                    {"Recenti", "document-open-recent", QStyle::SP_DirOpenIcon}};
    for (int i = 0; i < 3; ++i) {
        auto* b = new QToolButton(this);
        b->setText(QString::fromLatin1(pictures[i].caption));
        b->setIcon(themed(pictures[i].theme, pictures[i].fallback, style()));
        b->setIconSize(QSize(32, 32));
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
        list->setIconSize(QSize(24, 24));
        connect(list, &QTreeWidget::itemDoubleClicked, this, &FrmAv::confirm);
        return list;
    };
    l_ = makeList({QStringLiteral("Nuovo")});
    new QTreeWidgetItem(l_, {QStringLiteral("Documento vuoto")});
    l_->topLevelItem(0)->setIcon(0, themed("document-new", QStyle::SP_FileIcon, style()));
    l2_ = makeList({QStringLiteral("Modello")});
    for (const QString& m : Avvio::modelli()) {
        auto* item = new QTreeWidgetItem(l2_, {m});
        item->setIcon(0, themed("x-office-document", QStyle::SP_FileDialogContentsView, style()));
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
        item->setIcon(0, style()->standardIcon(pixmapFor(row.icon)));
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

void showModelPlaceholder(const QString& modello, QWidget* parent)
{
    QDialog window(parent);
    window.setWindowTitle(modello == QLatin1String("fax") ? QStringLiteral("Fax") : QStringLiteral("Lettera"));
    auto* layout = new QVBoxLayout(&window);
    layout->addStretch(1);
    auto* close = new QPushButton(QStringLiteral("Chiudi"), &window);
    QObject::connect(close, &QPushButton::clicked, &window, &QDialog::accept);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(close);
    layout->addLayout(row);
    window.resize(480, 360);
    window.exec();
}

}  // namespace tornelia
