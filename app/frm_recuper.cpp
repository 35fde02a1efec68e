#include "app/frm_recuper.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace tornelia {

namespace {

// Numbers and dates sort by value, not by their text.
class RecoveryItem : public QTreeWidgetItem {
public:
    using QTreeWidgetItem::QTreeWidgetItem;
    bool operator<(const QTreeWidgetItem& other) const override
    {
        const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
        const QVariant a = data(column, Qt::UserRole);
        const QVariant b = other.data(column, Qt::UserRole);
        if (a.isValid() && b.isValid())
            return QVariant::compare(a, b) == QPartialOrdering::Less;
        return text(column).localeAwareCompare(other.text(column)) < 0;
    }
};

}  // namespace

FrmRecuper::FrmRecuper(Document& document, MessagePort& messages, ShellPort& shell, QString tempFolder,
                       QWidget* parent)
    : QDialog(parent), document_(document), messages_(messages), shell_(shell), tempFolder_(std::move(tempFolder))
{
    setObjectName(QStringLiteral("frmRecuper"));
    setWindowTitle(QStringLiteral("Recupero documenti"));

    explanation_ = new QLabel(this);
    explanation_->setWordWrap(true);
    note_ = new QLabel(this);
    note_->setStyleSheet(QStringLiteral("font-weight: bold;"));

    list_ = new QTreeWidget(this);
    list_->setRootIsDecorated(false);
    list_->setAlternatingRowColors(true);
    list_->setSortingEnabled(true);
    list_->setHeaderLabels({QStringLiteral("Nome file"), QStringLiteral("Bytes"), QStringLiteral("Ultima modifica"),
                            QStringLiteral("Data creazione")});
    list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list_->header()->setStretchLastSection(false);
    for (int c = 1; c < 4; ++c)
        list_->header()->setSectionResizeMode(c, QHeaderView::ResizeToContents);
    list_->sortByColumn(0, Qt::AscendingOrder);

    foot_ = new QLabel(QStringLiteral("Totale 0 files. Spazio occupato 0 bytes"), this);

    auto button = [this](const QString& text, QStyle::StandardPixmap icon, const QString& tip) {
        auto* b = new QPushButton(style()->standardIcon(icon), text, this);
        b->setToolTip(tip);
        b->setAutoDefault(false);
        return b;
    };
    refresh_ = button(QStringLiteral("Aggiorna"), QStyle::SP_BrowserReload,
                      QStringLiteral("Aggiorna l'elenco dei file temporanei"));
    folder_ = button(QStringLiteral("Apri cartella"), QStyle::SP_DirOpenIcon,
                     QStringLiteral("Apre la cartella dei file temporanei in una finestra"));
    delete_ = button(QStringLiteral("Elimina"), QStyle::SP_TrashIcon, QStringLiteral("Elimina i files temporanei"));
    open_ = button(QStringLiteral("Apri"), QStyle::SP_DialogOpenButton,
                   QStringLiteral("Apre il file selezionato nella sessione corrente di Tornelia"));
    auto* close = new QPushButton(QStringLiteral("Chiudi"), this);
    close->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(refresh_);
    buttons->addWidget(folder_);
    buttons->addWidget(delete_);
    buttons->addStretch(1);
    buttons->addWidget(open_);
    buttons->addWidget(close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(explanation_);
    layout->addWidget(note_);
    layout->addWidget(list_, 1);
    layout->addWidget(foot_);
    layout->addLayout(buttons);

    connect(refresh_, &QPushButton::clicked, this, &FrmRecuper::aggiorna);
    connect(folder_, &QPushButton::clicked, this, [this] {
        if (!listRecovery(tempFolder_).exists) {
            messages_.mostraMsg(windowTitle(), QStringLiteral("La cartella Temp non esiste"), 0, 2);
            return;
        }
        shell_.openDocument(QUrl::fromLocalFile(tempFolder_).toString());
    });
    connect(delete_, &QPushButton::clicked, this, &FrmRecuper::deleteAll);
    connect(open_, &QPushButton::clicked, this, &FrmRecuper::openSelected);
    connect(list_, &QTreeWidget::itemDoubleClicked, this, &FrmRecuper::openSelected);
    connect(list_, &QTreeWidget::itemSelectionChanged, this,
            [this] { open_->setEnabled(!list_->selectedItems().isEmpty()); });
    connect(close, &QPushButton::clicked, this, &QDialog::reject);

    resize(640, 400);
    aggiorna();
}

void FrmRecuper::aggiorna()
{
    explanation_->setText(QStringLiteral(
        "Se specificato nelle opzioni se si esce senza salvare un documento, questo viene automaticamente salvato "
        "nella cartella Temp del programma, insieme ai salvataggi automatici dei documenti mai salvati; da qui "
        "lo si può riaprire. Questi sono i file attualmente presenti nella cartella:"));
    explanation_->setToolTip(tempFolder_);
    listing_ = listRecovery(tempFolder_);
    note_->setText(listing_.message());
    note_->setVisible(!listing_.message().isEmpty());

    list_->setSortingEnabled(false);
    list_->clear();
    const QLocale it(QLocale::Italian, QLocale::Italy);
    for (const RecoveryFile& f : listing_.files) {
        auto* item = new RecoveryItem(list_);
        item->setText(0, f.name);
        item->setIcon(0, style()->standardIcon(QStyle::SP_FileIcon));
        item->setText(1, it.toString(f.bytes));
        item->setData(1, Qt::UserRole, f.bytes);
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        item->setText(2, recoveryDate(f.modified));
        item->setData(2, Qt::UserRole, f.modified);
        item->setText(3, recoveryDate(f.created));
        item->setData(3, Qt::UserRole, f.created);
        item->setData(0, Qt::UserRole + 1, f.path);
    }
    list_->setSortingEnabled(true);
    foot_->setText(listing_.foot());
    delete_->setEnabled(!listing_.files.isEmpty());
    open_->setEnabled(false);
}

void FrmRecuper::openSelected()
{
    const QList<QTreeWidgetItem*> chosen = list_->selectedItems();
    if (chosen.isEmpty())
        return;
    const QString path = chosen.first()->data(0, Qt::UserRole + 1).toString();
    document_.Aprii(path);
    accept();
}

void FrmRecuper::deleteAll()
{
    // What the person was shown is what goes, not what came since.
    eliminaRecupero(listing_, messages_);
    aggiorna();
}

}  // namespace tornelia
