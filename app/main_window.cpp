#include "app/main_window.h"

#include "app/frm_cor.h"
#include "controls/editor_view.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QStatusBar>

#include <algorithm>
#include <exception>

namespace tornelia {

namespace {
// The panels the status bar starts with: the caret's line and column, then
// the document's name.
constexpr int kFirstPanels = 2;
constexpr int kDocumentPanel = 1;
}  // namespace

MainWindow::MainWindow(AppContext& context, QWidget* parent) : QMainWindow(parent), ctx_(context)
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowIcon(QIcon::fromTheme(QStringLiteral("accessories-text-editor")));
    setCaption(Document::captionFor(kNoDocument));

    editor_ = new EditorView(ctx_.testo(), this);
    editor_->setObjectName(QStringLiteral("Testo"));
    setCentralWidget(editor_);

    buildFileMenu();
    buildViewMenu();
    buildStatusBar();
    setStatusPanel(kDocumentPanel, QStringLiteral("Nessun documento salvato"));
    resize(900, 650);

    ctx_.frame().attach(this);
    ctx_.typing().setProcedures(this);
    editor_->setFocus();
}

MainWindow::~MainWindow()
{
    ctx_.typing().setProcedures(nullptr);
    ctx_.frame().detach(this);
}

QAction* MainWindow::addCommand(QMenu* menu, const QString& name, const QString& caption, const QString& icon,
                                const QKeySequence& shortcut, std::function<void()> command)
{
    QAction* a = menu->addAction(caption);
    a->setObjectName(name);
    if (!icon.isEmpty())
        a->setIcon(QIcon::fromTheme(icon));
    if (!shortcut.isEmpty())
        a->setShortcut(shortcut);
    connect(a, &QAction::triggered, this, [this, command = std::move(command)] { runCommand(command); });
    actions_.insert(name, a);
    return a;
}

void MainWindow::buildFileMenu()
{
    fileMenu_ = menuBar()->addMenu(QStringLiteral("&File"));
    fileMenu_->setObjectName(QStringLiteral("mnuf"));
    Document& doc = ctx_.document();

    addCommand(fileMenu_, QStringLiteral("mnuNuovo"), QStringLiteral("&Nuovo..."), QStringLiteral("document-new"),
               QKeySequence(Qt::CTRL | Qt::Key_N), [&doc] { doc.Novo(1); });
    addCommand(fileMenu_, QStringLiteral("mnuNuovaSessione"), QStringLiteral("Nuova sessione di Tornelia...          "),
               QStringLiteral("window-new"), {}, [&doc] { doc.nuovaSessione(); });
    fileMenu_->addSeparator();
    addCommand(fileMenu_, QStringLiteral("mnuApri"), QStringLiteral("&Apri"), QStringLiteral("document-open"),
               QKeySequence(Qt::CTRL | Qt::Key_O), [&doc] { doc.Aprii(QString()); });
    addCommand(fileMenu_, QStringLiteral("mnuSalva"), QStringLiteral("&Salva"), QStringLiteral("document-save"),
               QKeySequence(Qt::CTRL | Qt::Key_S), [&doc] { doc.Salvare(QString()); });
    addCommand(fileMenu_, QStringLiteral("mnuSalvaConNome"), QStringLiteral("Salva con nome..."),
               QStringLiteral("document-save-as"), {}, [&doc] { doc.SalvareN(); });
    fileMenu_->addSeparator();
    addCommand(fileMenu_, QStringLiteral("mnuElimina"), QStringLiteral("E&limina file corrente"),
               QStringLiteral("edit-delete"), {}, [&doc] { doc.DelFile(); });
    addCommand(fileMenu_, QStringLiteral("mnuProprieta"), QStringLiteral("&Proprietà file corrente..."),
               QStringLiteral("document-properties"), {}, [&doc] { doc.pROP(); });
    fileMenu_->addSeparator();
    addCommand(fileMenu_, QStringLiteral("mnuEsci"), QStringLiteral("Esci"), QStringLiteral("application-exit"), {},
               [this] { close(); });
}

void MainWindow::buildViewMenu()
{
    viewMenu_ = menuBar()->addMenu(QStringLiteral("&Visualizza"));
    viewMenu_->setObjectName(QStringLiteral("mnuv"));
    addCommand(viewMenu_, QStringLiteral("mnuCorrezioneAutomatica"), QStringLiteral("Correzione automatica..."), {}, {},
               [this] { showCorrections(); });
}

void MainWindow::showCorrections()
{
    FrmCor dialog(ctx_.settings(), this);
    dialog.exec();
}

void MainWindow::buildStatusBar()
{
    QStatusBar* bar = statusBar();
    bar->setSizeGripEnabled(true);
    for (int i = 0; i < kFirstPanels; ++i)
        statusPanel(i);

    progress_ = new QWidget(bar);
    progress_->setObjectName(QStringLiteral("PiCPRoW"));
    auto* row = new QHBoxLayout(progress_);
    row->setContentsMargins(0, 0, 0, 0);
    progressLabel_ = new QLabel(progress_);
    progressLabel_->setObjectName(QStringLiteral("lblCar"));
    progressBar_ = new QProgressBar(progress_);
    progressBar_->setRange(0, 100);
    progressBar_->setTextVisible(false);
    progressBar_->setMaximumHeight(14);
    progressBar_->setMinimumWidth(160);
    row->addWidget(progressLabel_);
    row->addWidget(progressBar_, 1);
    bar->addPermanentWidget(progress_);
    progress_->hide();
}

QLabel* MainWindow::statusPanel(int index) const
{
    if (index < 0)
        return nullptr;
    // Panels come into being as the program names them, each right of the
    // one before; the document's panel takes the room that is left.
    auto* self = const_cast<MainWindow*>(this);
    while (panels_.size() <= index) {
        const int i = int(panels_.size());
        auto* label = new QLabel(self->statusBar());
        label->setObjectName(QStringLiteral("panel%1").arg(i));
        label->setMinimumWidth(i == kDocumentPanel ? 200 : 130);
        label->setTextInteractionFlags(Qt::NoTextInteraction);
        self->statusBar()->addWidget(label, i == kDocumentPanel ? 1 : 0);
        self->panels_.append(label);
    }
    return panels_.at(index);
}

void MainWindow::setCaption(const QString& caption)
{
    setWindowTitle(caption);
}

void MainWindow::setStatusPanel(int index, const QString& text)
{
    if (QLabel* panel = statusPanel(index))
        panel->setText(text);
}

void MainWindow::showProgress(const QString& text, int percent)
{
    progressLabel_->setText(text);
    progressBar_->setValue(std::clamp(percent, 0, 100));
    progress_->show();
}

void MainWindow::hideProgress()
{
    progress_->hide();
}

void MainWindow::processEvents()
{
    QCoreApplication::processEvents();
}

// The clipboard commands go through the surface, whose clipboard carries RTF.
void MainWindow::CopYa()
{
    ctx_.testo().Copy();
}

void MainWindow::INco(const QString& /*how*/)
{
    ctx_.testo().Paste();
}

void MainWindow::TaGl()
{
    ctx_.testo().Cut();
}

void MainWindow::runCommand(const std::function<void()>& command)
{
    try {
        command();
    } catch (const std::exception& e) {
        ctx_.document().mostraMsg(QStringLiteral("Errore"),
                                  QStringLiteral("Errore inaspettato!\n") + QString::fromUtf8(e.what()), 0, 3);
    }
    if (!isVisible())
        return;
    ctx_.testo().SetFocus();
}

bool MainWindow::confirmClose()
{
    Document& doc = ctx_.document();
    if (!doc.fileCambiato())
        return true;
    const QString answer = doc.mostraMsg(QStringLiteral("Salva"),
                                         QStringLiteral("Il file è stato modificato. Vuoi salvare le modifiche?"), 3, 0);
    if (answer == QLatin1String("an"))
        return false;
    if (answer != QLatin1String("si"))
        return true;
    try {
        doc.Salvare(QString());
    } catch (const std::exception& e) {
        doc.mostraMsg(QStringLiteral("Errore"), QStringLiteral("Errore inaspettato!\n") + QString::fromUtf8(e.what()), 0, 3);
        return false;
    }
    // A save dialog given up leaves the work unsaved: the window stays.
    return !doc.fileCambiato();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!confirmClose()) {
        event->ignore();
        return;
    }
    event->accept();
}

}  // namespace tornelia
