#include "filedialog/frm_cd.h"

#include "core/ports.h"
#include "core/settings.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSplitter>
#include <QStorageInfo>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace tornelia {

namespace {

// Rows read per turn of the event loop: small enough that a key or a click
// waits no more than a few milliseconds while a big folder fills.
constexpr int kSlice = 400;

enum Column { ColName, ColSize, ColType, ColCount };

const char* themeName(IcoGroup g)
{
    switch (g) {
    case IcoGroup::Cartella: return "folder";
    case IcoGroup::Documento: return "x-office-document";
    case IcoGroup::Immagine: return "image-x-generic";
    case IcoGroup::Programma: return "application-x-executable";
    case IcoGroup::PaginaWeb: return "text-html";
    case IcoGroup::FileSistema: return "application-x-sharedlib";
    case IcoGroup::Impostazioni: return "preferences-system";
    case IcoGroup::Suono: return "audio-x-generic";
    case IcoGroup::FoglioCalcolo: return "x-office-spreadsheet";
    case IcoGroup::Archivio: return "package-x-generic";
    case IcoGroup::Altro: break;
    }
    return "text-x-generic";
}

}  // namespace

QIcon groupIcon(IcoGroup group)
{
    static std::map<IcoGroup, QIcon> cache;
    auto it = cache.find(group);
    if (it != cache.end())
        return it->second;
    QIcon icon = QIcon::fromTheme(QString::fromLatin1(themeName(group)));
    if (icon.isNull()) {
        static const QFileIconProvider provider;
        icon = provider.icon(group == IcoGroup::Cartella ? QFileIconProvider::Folder : QFileIconProvider::File);
    }
    cache.emplace(group, icon);
    return icon;
}

// --- the list's model -----------------------------------------------------------

int CdListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(rows_.size());
}

int CdListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColCount;
}

QVariant CdListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= int(rows_.size()))
        return {};
    const CdEntry& e = rows_[size_t(index.row())];
    if (role == Qt::DisplayRole) {
        switch (index.column()) {
        case ColName: return e.nameText;
        case ColSize: return e.sizeText;
        case ColType: return e.typeText;
        default: return {};
        }
    }
    if (role == Qt::DecorationRole && index.column() == ColName)
        return groupIcon(e.group);
    if (role == Qt::TextAlignmentRole && index.column() == ColSize)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant CdListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case ColName: return QStringLiteral("Nome");
    case ColSize: return QStringLiteral("Dimensioni");
    case ColType: return QStringLiteral("Tipo");
    default: return {};
    }
}

void CdListModel::clear()
{
    beginResetModel();
    rows_.clear();
    endResetModel();
}

void CdListModel::append(std::vector<CdEntry>& rows)
{
    if (rows.empty())
        return;
    beginInsertRows({}, int(rows_.size()), int(rows_.size() + rows.size()) - 1);
    std::move(rows.begin(), rows.end(), std::back_inserter(rows_));
    endInsertRows();
    rows.clear();
}

void CdListModel::sortRows()
{
    emit layoutAboutToBeChanged();
    std::stable_sort(rows_.begin(), rows_.end(), entryBefore);
    emit layoutChanged();
}

// --- the resource bar -------------------------------------------------------------

Tb::Tb(QWidget* parent) : QListWidget(parent)
{
    setObjectName(QStringLiteral("Tb"));
    setViewMode(QListView::IconMode);
    setFlow(QListView::TopToBottom);
    setMovement(QListView::Static);
    setIconSize(QSize(32, 32));
    setGridSize(QSize(86, 64));
    setWrapping(false);
    setFixedWidth(98);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(this, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { emit folderChosen(resolveEntry(item->data(Qt::UserRole).toString())); });
}

void Tb::Add(const QString& name, const QString& path)
{
    QIcon icon;
    if (path == QLatin1String("(Cartella documenti)"))
        icon = QIcon::fromTheme(QStringLiteral("folder-documents"));
    else if (path == QLatin1String("(Cartella desktop)"))
        icon = QIcon::fromTheme(QStringLiteral("user-desktop"));
    if (icon.isNull())
        icon = groupIcon(IcoGroup::Cartella);
    auto* item = new QListWidgetItem(icon, name, this);
    item->setData(Qt::UserRole, path);
    item->setToolTip(resolveEntry(path));
    item->setTextAlignment(Qt::AlignHCenter);
}

void Tb::Clear()
{
    clear();
}

// --- the dialog -------------------------------------------------------------------

frmCD::frmCD(CdRequest request, SettingsStore& settings, MessagePort& messages, QWidget* parent)
    : QDialog(parent), logic_(std::move(request), settings, messages), settings_(settings), messages_(messages)
{
    setObjectName(QStringLiteral("frmCD"));
    setWindowTitle(logic_.title());
    setModal(true);
    setSizeGripEnabled(true);

    model_ = new CdListModel(this);
    fillTimer_ = new QTimer(this);
    fillTimer_->setInterval(0);
    connect(fillTimer_, &QTimer::timeout, this, &frmCD::fillStep);

    // Top: where we are.
    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("Cerca in:"), this));
    drives_ = new QComboBox(this);
    drives_->setObjectName(QStringLiteral("drives"));
    drives_->setMinimumWidth(170);
    top->addWidget(drives_);
    where_ = new QLineEdit(this);
    where_->setObjectName(QStringLiteral("percorso"));
    top->addWidget(where_, 1);
    upButton_ = new QToolButton(this);
    upButton_->setIcon(QIcon::fromTheme(QStringLiteral("go-up"), style()->standardIcon(QStyle::SP_FileDialogToParent)));
    upButton_->setToolTip(QStringLiteral("Livello superiore"));
    top->addWidget(upButton_);
    menuButton_ = new QToolButton(this);
    menuButton_->setObjectName(QStringLiteral("cecca"));
    menuButton_->setText(QStringLiteral("Strumenti"));
    menuButton_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    menuButton_->setIcon(QIcon::fromTheme(QStringLiteral("preferences-other"),
                                          style()->standardIcon(QStyle::SP_FileDialogDetailedView)));
    top->addWidget(menuButton_);

    // Middle: the bar, the folder tree, the list and the preview.
    bar_ = new Tb(this);
    auto* organizza = new QPushButton(QStringLiteral("Organizza..."), this);
    organizza->setObjectName(QStringLiteral("organizza"));
    organizza->setFixedWidth(98);
    auto* barColumn = new QVBoxLayout;
    barColumn->addWidget(bar_, 1);
    barColumn->addWidget(organizza);

    treeModel_ = new QFileSystemModel(this);
    treeModel_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    treeModel_->setRootPath(QStringLiteral("/"));
    tree_ = new QTreeView(this);
    tree_->setObjectName(QStringLiteral("cartelle"));
    tree_->setModel(treeModel_);
    for (int c = 1; c < treeModel_->columnCount(); ++c)
        tree_->hideColumn(c);
    tree_->setHeaderHidden(true);

    list_ = new QTreeView(this);
    list_->setObjectName(QStringLiteral("lista"));
    list_->setModel(model_);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->header()->setStretchLastSection(false);
    list_->header()->setSectionResizeMode(ColName, QHeaderView::Stretch);
    list_->setColumnWidth(ColSize, 90);
    list_->setColumnWidth(ColType, 130);
    status_ = new QLabel(QStringLiteral("Creazione lista file in corso..."), this);
    status_->setObjectName(QStringLiteral("stato"));
    status_->hide();
    auto* listBox = new QWidget(this);
    auto* listLayout = new QVBoxLayout(listBox);
    listLayout->setContentsMargins(0, 0, 0, 0);
    listLayout->addWidget(list_, 1);
    listLayout->addWidget(status_);

    auto* previewBox = new QWidget(this);
    auto* previewLayout = new QVBoxLayout(previewBox);
    previewLayout->setContentsMargins(0, 0, 0, 0);
    previewTitle_ = new QLabel(QStringLiteral("Anteprima immagine"), previewBox);
    pimm_ = new QLabel(previewBox);
    pimm_->setObjectName(QStringLiteral("pimm"));
    pimm_->setFixedSize(180, 180);
    pimm_->setAlignment(Qt::AlignCenter);
    pimm_->setFrameShape(QFrame::StyledPanel);
    Pinfo_ = new QLabel(QStringLiteral("Dimensioni:"), previewBox);
    Pinfo_->setObjectName(QStringLiteral("Pinfo"));
    Pinfo_->setWordWrap(true);
    previewLayout->addWidget(previewTitle_);
    previewLayout->addWidget(pimm_);
    previewLayout->addWidget(Pinfo_);
    previewLayout->addStretch(1);
    // The preview is for the picture modes and for pictures met elsewhere.
    previewBox->setVisible(logic_.request().mode == CdMode::Immagine
                           || logic_.filterLabels().first() == QLatin1String("Tutti i file immagine"));

    auto* split = new QSplitter(this);
    split->addWidget(tree_);
    split->addWidget(listBox);
    split->addWidget(previewBox);
    split->setStretchFactor(0, 1);
    split->setStretchFactor(1, 3);
    split->setStretchFactor(2, 0);
    split->setSizes({200, 520, 190});

    auto* middle = new QHBoxLayout;
    middle->addLayout(barColumn);
    middle->addWidget(split, 1);

    // Bottom: the name, the filter, the buttons.
    auto* bottom = new QGridLayout;
    name_ = new QLineEdit(this);
    name_->setObjectName(QStringLiteral("nome"));
    filter_ = new QComboBox(this);
    filter_->setObjectName(QStringLiteral("filtro"));
    filter_->addItems(logic_.filterLabels());
    filter_->setCurrentIndex(logic_.filterIndex());
    actionButton_ = new QPushButton(logic_.actionText(), this);
    actionButton_->setObjectName(QStringLiteral("azione"));
    actionButton_->setDefault(true);
    cancelButton_ = new QPushButton(QStringLiteral("Annulla"), this);
    cancelButton_->setObjectName(QStringLiteral("annulla"));
    bottom->addWidget(new QLabel(QStringLiteral("Nome file:"), this), 0, 0);
    bottom->addWidget(name_, 0, 1);
    bottom->addWidget(actionButton_, 0, 2);
    bottom->addWidget(new QLabel(QStringLiteral("Tipo file:"), this), 1, 0);
    bottom->addWidget(filter_, 1, 1);
    bottom->addWidget(cancelButton_, 1, 2);
    bottom->setColumnStretch(1, 1);

    auto* outer = new QVBoxLayout(this);
    outer->addLayout(top);
    outer->addLayout(middle, 1);
    outer->addLayout(bottom);

    connect(upButton_, &QToolButton::clicked, this, [this] {
        if (logic_.up())
            agg();
    });
    connect(menuButton_, &QToolButton::clicked, this,
            [this] { cecca(menuButton_->mapToGlobal(QPoint(0, menuButton_->height()))); });
    list_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(list_, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& p) { cecca(list_->viewport()->mapToGlobal(p)); });
    connect(where_, &QLineEdit::returnPressed, this, [this] { goTo(where_->text()); });
    connect(drives_, &QComboBox::activated, this, [this](int i) { goTo(drives_->itemData(i).toString()); });
    // The tree reads its folders in the background: follow the current
    // folder down as each level arrives.
    connect(treeModel_, &QFileSystemModel::directoryLoaded, this, [this](const QString& loaded) {
        if (!logic_.folder().startsWith(loaded))
            return;
        const QModelIndex i = treeModel_->index(logic_.folder());
        if (i.isValid()) {
            tree_->setCurrentIndex(i);
            tree_->scrollTo(i, QAbstractItemView::PositionAtCenter);
        }
    });
    connect(tree_, &QTreeView::clicked, this, [this](const QModelIndex& i) { goTo(treeModel_->filePath(i)); });
    connect(bar_, &Tb::folderChosen, this, &frmCD::goTo);
    connect(organizza, &QPushButton::clicked, this, &frmCD::organizza);
    connect(list_, &QTreeView::activated, this, &frmCD::activated);
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this, &frmCD::selected);
    connect(filter_, &QComboBox::activated, this, [this](int i) {
        // A name typed for saving follows the new filter's extension.
        const QString before = logic_.defaultExt();
        logic_.setFilterIndex(i);
        const QString after = logic_.defaultExt();
        const QString typed = name_->text();
        if (logic_.request().mode == CdMode::Salva && !before.isEmpty() && !after.isEmpty()
            && typed.endsWith(before, Qt::CaseInsensitive))
            name_->setText(typed.left(typed.size() - before.size()) + after);
        agg();
    });
    connect(actionButton_, &QPushButton::clicked, this, &frmCD::action);
    connect(cancelButton_, &QPushButton::clicked, this, &QDialog::reject);

    const QString suggested = QFileInfo(logic_.request().suggestedName).fileName();
    name_->setText(suggested);
    fillDrives();
    CreABar();
    applyView();
    resize(980, 560);
    agg();
    name_->setFocus();
    name_->selectAll();
}

frmCD::~frmCD() = default;

bool frmCD::filling() const
{
    return reader_ && !reader_->done();
}

void frmCD::fillDrives()
{
    drives_->clear();
    drives_->addItem(groupIcon(IcoGroup::Cartella), QStringLiteral("/ (radice)"), QStringLiteral("/"));
    drives_->addItem(QIcon::fromTheme(QStringLiteral("user-home"), groupIcon(IcoGroup::Cartella)),
                     QStringLiteral("Cartella personale"), QDir::homePath());
    const QIcon disk = QIcon::fromTheme(QStringLiteral("drive-harddisk"),
                                        QFileIconProvider().icon(QFileIconProvider::Drive));
    for (const QStorageInfo& v : QStorageInfo::mountedVolumes()) {
        // A file mounted over another (a container's /etc/hosts) is no drive.
        if (!v.isValid() || !v.isReady() || v.rootPath() == QLatin1String("/") || !QFileInfo(v.rootPath()).isDir())
            continue;
        // Only volumes a person keeps files on: removable media, other disks.
        const QByteArray fs = v.fileSystemType();
        static const QList<QByteArray> skip{"tmpfs", "devtmpfs", "proc", "sysfs", "overlay", "squashfs",
                                            "cgroup", "cgroup2", "devpts", "mqueue", "debugfs", "tracefs",
                                            "securityfs", "pstore", "fusectl", "configfs", "autofs",
                                            "binfmt_misc", "hugetlbfs", "ramfs", "efivarfs", "nsfs"};
        if (skip.contains(fs) || v.rootPath().startsWith(QLatin1String("/proc"))
            || v.rootPath().startsWith(QLatin1String("/sys")) || v.rootPath().startsWith(QLatin1String("/dev"))
            || v.rootPath().startsWith(QLatin1String("/run")) || v.rootPath().startsWith(QLatin1String("/snap")))
            continue;
        const QString label = v.displayName() == v.rootPath() ? v.rootPath()
                                                              : v.displayName() + QStringLiteral(" (") + v.rootPath() + u')';
        drives_->addItem(disk, label, v.rootPath());
    }
}

void frmCD::CreABar()
{
    bar_->Clear();
    for (const TbEntry& e : barEntries(settings_))
        bar_->Add(e.name, e.path);
}

void frmCD::goTo(const QString& folder)
{
    if (!logic_.setFolder(folder)) {
        messages_.mostraMsg(QStringLiteral("Cartella"),
                            QStringLiteral("La cartella ") + folder + QStringLiteral(" non esiste o non è leggibile."), 0,
                            2);
        where_->setText(logic_.folder());
        return;
    }
    agg();
}

void frmCD::agg()
{
    fillTimer_->stop();
    model_->clear();
    where_->setText(QDir::toNativeSeparators(logic_.folder()));
    upButton_->setEnabled(!QDir(logic_.folder()).isRoot());
    const QModelIndex inTree = treeModel_->index(logic_.folder());
    if (inTree.isValid()) {
        tree_->setCurrentIndex(inTree);
        tree_->scrollTo(inTree);
    }
    // The drive that holds the folder: the longest root that leads to it.
    int best = 0;
    for (int i = 1; i < drives_->count(); ++i) {
        const QString root = drives_->itemData(i).toString();
        if ((logic_.folder() == root || logic_.folder().startsWith(root + u'/'))
            && root.size() > drives_->itemData(best).toString().size())
            best = i;
    }
    drives_->setCurrentIndex(best);
    reader_ = logic_.reader();
    // A small folder fills at once; a big one goes on from the event loop,
    // with the note shown until the last slice is in.
    fillStep();
    if (filling()) {
        status_->show();
        fillTimer_->start();
    }
}

void frmCD::fillStep()
{
    if (!reader_)
        return;
    std::vector<CdEntry> rows;
    rows.reserve(kSlice);
    const bool more = reader_->next(rows, kSlice);
    model_->append(rows);
    if (!more) {
        fillTimer_->stop();
        model_->sortRows();
        status_->hide();
    }
}

void frmCD::activated(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    const CdEntry& e = model_->entry(index.row());
    if (e.parent) {
        if (logic_.up())
            agg();
        return;
    }
    if (e.folder) {
        goTo(logic_.folder() + u'/' + e.name);
        return;
    }
    name_->setText(e.name);
    action();
}

void frmCD::selected()
{
    const QModelIndex index = list_->currentIndex();
    if (!index.isValid())
        return;
    const CdEntry& e = model_->entry(index.row());
    if (e.folder)
        return;
    name_->setText(e.name);
    preview(logic_.folder() + u'/' + e.name);
}

void frmCD::preview(const QString& path)
{
    pimm_->clear();
    Pinfo_->setText(QStringLiteral("Dimensioni:"));
    if (!canPreview(path))
        return;
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    QSize scaled = size;
    if (size.isValid() && (size.width() > pimm_->width() || size.height() > pimm_->height()))
        scaled = size.scaled(pimm_->size() - QSize(4, 4), Qt::KeepAspectRatio);
    if (scaled.isValid())
        reader.setScaledSize(scaled);
    const QImage image = reader.read();
    if (image.isNull()) {
        Pinfo_->setText(QStringLiteral("Dimensioni: immagine non leggibile"));
        return;
    }
    pimm_->setPixmap(QPixmap::fromImage(image));
    const QSize real = size.isValid() ? size : image.size();
    Pinfo_->setText(QStringLiteral("Dimensioni: %1 x %2 pixel\n%3")
                        .arg(real.width())
                        .arg(real.height())
                        .arg(fsyze(QFileInfo(path).size())));
}

void frmCD::action()
{
    if (const auto path = logic_.conferma(name_->text())) {
        result_ = path;
        logic_.salvaCartella();
        accept();
        return;
    }
    // A folder typed in the name box becomes the current one.
    if (where_->text() != QDir::toNativeSeparators(logic_.folder())) {
        name_->clear();
        agg();
    }
}

void frmCD::cecca(const QPoint& where)
{
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("cecca"));
    QAction* crea = menu.addAction(QIcon::fromTheme(QStringLiteral("folder-new")), QStringLiteral("Crea cartella"));
    menu.addSeparator();
    QAction* nascosti = menu.addAction(QStringLiteral("File nascosti"));
    nascosti->setCheckable(true);
    nascosti->setChecked(logic_.fileNascosti());
    QAction* sistema = menu.addAction(QStringLiteral("File sistema"));
    sistema->setCheckable(true);
    sistema->setChecked(logic_.fileSistema());
    QMenu* vista = menu.addMenu(QStringLiteral("Visualizza"));
    QAction* dettagli = vista->addAction(QStringLiteral("Dettagli"));
    dettagli->setCheckable(true);
    dettagli->setChecked(logic_.dettagli());
    QAction* elenco = vista->addAction(QStringLiteral("Elenco"));
    elenco->setCheckable(true);
    elenco->setChecked(!logic_.dettagli());
    QAction* chosen = menu.exec(where);
    if (chosen == crea) {
        creaDir();
    } else if (chosen == nascosti) {
        logic_.setFileNascosti(!logic_.fileNascosti());
        agg();
    } else if (chosen == sistema) {
        logic_.setFileSistema(!logic_.fileSistema());
        agg();
    } else if (chosen == dettagli || chosen == elenco) {
        logic_.setDettagli(chosen == dettagli);
        applyView();
    }
}

void frmCD::applyView()
{
    // The plain list shows the names alone.
    list_->setColumnHidden(ColSize, !logic_.dettagli());
    list_->setColumnHidden(ColType, !logic_.dettagli());
    list_->setHeaderHidden(!logic_.dettagli());
}

void frmCD::creaDir()
{
    frmCreaDir ask(this);
    while (ask.exec() == QDialog::Accepted) {
        if (logic_.creaCartella(ask.nome())) {
            agg();
            return;
        }
    }
}

void frmCD::organizza()
{
    frmTb tb(settings_, messages_, this);
    tb.exec();
    CreABar();
}

void frmCD::ReDimE()
{
    // The preview keeps its size; the list takes what is left.
    list_->setColumnWidth(ColSize, std::max(80, list_->width() / 7));
}

void frmCD::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    ReDimE();
}

void frmCD::done(int r)
{
    fillTimer_->stop();
    QDialog::done(r);
}

// --- "Crea cartella" --------------------------------------------------------------

frmCreaDir::frmCreaDir(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmCreaDir"));
    setWindowTitle(QStringLiteral("Crea cartella"));
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Specifica il nome da dare alla nuova cartella:"), this));
    edit_ = new QLineEdit(QStringLiteral("Nuova Cartella"), this);
    edit_->selectAll();
    layout->addWidget(edit_);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("Annulla"), this);
    row->addWidget(ok);
    row->addWidget(cancel);
    layout->addLayout(row);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    setMinimumWidth(340);
}

QString frmCreaDir::nome() const
{
    return edit_->text();
}

// --- "Organizza Barra delle Risorse" ----------------------------------------------

frmTb::frmTb(SettingsStore& settings, MessagePort& messages, QWidget* parent)
    : QDialog(parent), settings_(settings), messages_(messages), entries_(barEntries(settings))
{
    setObjectName(QStringLiteral("frmTb"));
    setWindowTitle(QStringLiteral("Organizza Barra delle Risorse"));
    setModal(true);
    auto* layout = new QHBoxLayout(this);
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("elementi"));
    list_->setFixedWidth(170);
    layout->addWidget(list_);

    auto* right = new QVBoxLayout;
    auto* note = new QLabel(QStringLiteral("Per personalizzare un elemento fare clic su questo col mouse"), this);
    note->setWordWrap(true);
    right->addWidget(note);
    auto* form = new QFormLayout;
    nome_ = new QLineEdit(this);
    nome_->setObjectName(QStringLiteral("nomeVisualizzato"));
    percorso_ = new QLineEdit(this);
    percorso_->setObjectName(QStringLiteral("percorso"));
    sfoglia_ = new QPushButton(QStringLiteral("..."), this);
    sfoglia_->setFixedWidth(32);
    auto* pathRow = new QHBoxLayout;
    pathRow->addWidget(percorso_, 1);
    pathRow->addWidget(sfoglia_);
    form->addRow(QStringLiteral("Nome visualizzato:"), nome_);
    form->addRow(QStringLiteral("Perscorso:"), pathRow);
    right->addLayout(form);
    right->addStretch(1);
    auto* buttons = new QHBoxLayout;
    auto* nuovo = new QPushButton(QStringLiteral("Nuovo"), this);
    auto* elimina = new QPushButton(QStringLiteral("Elimina"), this);
    auto* salva = new QPushButton(QStringLiteral("Salva"), this);
    auto* chiudi = new QPushButton(QStringLiteral("Chiudi"), this);
    nuovo->setObjectName(QStringLiteral("nuovo"));
    salva->setObjectName(QStringLiteral("salva"));
    for (QPushButton* b : {nuovo, elimina, salva, chiudi})
        buttons->addWidget(b);
    right->addLayout(buttons);
    layout->addLayout(right, 1);

    connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
        store();
        load(row);
    });
    connect(nuovo, &QPushButton::clicked, this, &frmTb::nuovo);
    connect(elimina, &QPushButton::clicked, this, &frmTb::elimina);
    connect(salva, &QPushButton::clicked, this, &frmTb::salva);
    connect(chiudi, &QPushButton::clicked, this, &QDialog::reject);
    connect(sfoglia_, &QPushButton::clicked, this, [this] {
        CdRequest r;
        r.mode = CdMode::Apri;
        r.folderMode = true;
        r.title = QStringLiteral("Scegli la cartella");
        r.filters = {};
        r.filters.push_back({QStringLiteral("Tutti i file (*.*)"), {"*.*"}, {}});
        if (const auto folder = Apriii(r, settings_, messages_, this))
            percorso_->setText(*folder);
    });
    refreshList();
    load(-1);
    resize(560, 300);
}

void frmTb::refreshList()
{
    const QSignalBlocker block(list_);
    list_->clear();
    for (const TbEntry& e : entries_)
        list_->addItem(e.name);
    list_->setCurrentRow(current_);
}

void frmTb::load(int row)
{
    current_ = row;
    const bool valid = row >= 0 && row < int(entries_.size());
    const bool editable = valid && !entries_[size_t(row)].fixed;
    nome_->setText(valid ? entries_[size_t(row)].name : QString());
    percorso_->setText(valid ? entries_[size_t(row)].path : QString());
    // The two fixed entries follow the user's folders and are not edited.
    nome_->setEnabled(editable);
    percorso_->setEnabled(editable);
    sfoglia_->setEnabled(editable);
}

void frmTb::store()
{
    if (current_ < 0 || current_ >= int(entries_.size()) || entries_[size_t(current_)].fixed)
        return;
    entries_[size_t(current_)].name = nome_->text().trimmed();
    entries_[size_t(current_)].path = percorso_->text().trimmed();
    if (QListWidgetItem* item = list_->item(current_))
        item->setText(entries_[size_t(current_)].name);
}

void frmTb::nuovo()
{
    store();
    entries_.push_back({QStringLiteral("Nuovo"), QDir::homePath(), false});
    current_ = int(entries_.size()) - 1;
    refreshList();
    load(current_);
    nome_->setFocus();
    nome_->selectAll();
}

void frmTb::elimina()
{
    if (current_ < 0 || current_ >= int(entries_.size()) || entries_[size_t(current_)].fixed)
        return;
    entries_.erase(entries_.begin() + current_);
    current_ = -1;
    refreshList();
    load(-1);
}

void frmTb::salva()
{
    store();
    for (const TbEntry& e : entries_) {
        if (e.fixed)
            continue;
        if (e.name.isEmpty() || !QFileInfo(resolveEntry(e.path)).isDir()) {
            messages_.mostraMsg(QStringLiteral("Organizza Barra delle Risorse"),
                                QStringLiteral("L'elemento \"") + e.name
                                    + QStringLiteral("\" deve avere un nome e il percorso di una cartella esistente."),
                                0, 2);
            return;
        }
    }
    savePersonalEntries(settings_, entries_);
    accept();
}

std::optional<QString> Apriii(CdRequest request, SettingsStore& settings, MessagePort& messages, QWidget* parent)
{
    frmCD dialog(std::move(request), settings, messages, parent);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.result();
}

}  // namespace tornelia
