#include "app/main_window.h"

#include "app/command_table.h"
#include "app/frm_av.h"
#include "app/main_layout.h"
#include "app/wiring_tools.h"
#include "controls/cmb.h"
#include "controls/editor_view.h"
#include "controls/form_tast.h"
#include "core/autosave.h"
#include "core/go_on.h"
#include "core/recent_files.h"
#include "rtf/cls_api_highlight.h"
#include "rtf/cls_extended_rtf.h"
#include "rtf/cls_rtf_font_looks.h"
#include "tools/frm_ffile.h"
#include "tools/frm_fin.h"
#include "tools/frm_st.h"
#include "tools/frm_word_count.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QCursor>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPixmap>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolBar>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <exception>

namespace tornelia {

namespace {

// Status bar: 0 free for messages, 1 the document, 2 line and column.
constexpr int kPanels = 3;
constexpr int kDocumentPanel = 1;
constexpr int kLinePanel = 2;

// Twips to the pixel at 96 dots an inch, for the toolbars' places.
constexpr int kTwipsPerPixel = 15;

// Index of the autosave button on t(1), after the bullet button and a gap.
constexpr int kAutosaveButton = 18;

QIcon themeIcon(const QString& name)
{
    if (name.isEmpty())
        return {};
    // Some themes carry only the symbolic drawing of a name.
    QIcon icon = QIcon::fromTheme(name);
    if (icon.isNull())
        icon = QIcon::fromTheme(name + QStringLiteral("-symbolic"));
    return icon;
}

// The last item of the colour combos asks for any other colour.
const QString kOtherColour = QStringLiteral("Altro colore...");

// Shows colour c, -1 for none. A colour the list lacks, chosen elsewhere,
// joins the list above the last item, so the combo can show it.
void showColour(ColourCmb* combo, qint64 c)
{
    combo->setColour(c);
    if (c < 0 || combo->currentIndex() >= 0)
        return;
    const QColor q(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF));
    const int last = combo->count() - 1;
    const QString other = combo->itemText(last);
    const QIcon blank = combo->itemIcon(last);
    combo->removeItem(last);
    combo->AddItem(q.name().toUpper(), Colour(c));
    combo->AddItem(other);
    combo->setItemIcon(combo->count() - 1, blank);
    combo->setColour(c);
}

}  // namespace

MainWindow::MainWindow(AppContext& context, QWidget* parent)
    : QMainWindow(parent),
      ctx_(context),
      logic_(context, QCoreApplication::applicationDirPath(), context.dataFolder())
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowIcon(QIcon::fromTheme(QStringLiteral("accessories-text-editor")));
    setCaption(Document::captionFor(kNoDocument));
    registerAllWindows(registry_);

    // The area below the toolbars holds the text view, placed there by the
    // layout with the ruler; the keyboard stands under it, across the window.
    auto* central = new QWidget(this);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    auto* area = new QWidget(central);
    area->setObjectName(QStringLiteral("area"));
    column->addWidget(area, 1);
    editor_ = new EditorView(ctx_.testo(), area);
    editor_->setObjectName(QStringLiteral("Testo"));
    spellingSession(ctx_, this);  // the marks of misspelled words start with the view
    kb_ = new FormTast(ctx_.testo(), central);
    kb_->setObjectName(QStringLiteral("FormTast"));
    kb_->hide();
    column->addWidget(kb_);
    setCentralWidget(central);

    buildMenus();
    buildToolbars();
    buildStatusBar();

    // The format engines work on the document's own surface.
    ext_ = std::make_unique<ClsExtendedRTF>(ctx_.messages());
    ext_->AssignControls(&ctx_.testo(), &ctx_.dialogs());
    looks_ = std::make_unique<ClsRTFFontLooks>(ctx_.messages());
    looks_->AssignControls(&ctx_.testo(), &ctx_.dialogs());
    hl_ = std::make_unique<ClsAPIHighlight>(ctx_.messages());
    hl_->AssignControls(&ctx_.testo(), &ctx_.dialogs());

    layout_ = new MainLayout(ctx_.settings(), ctx_.testo(), ctx_.messages(), this);
    layout_->setZoomCombo(cbZoom_, false);
    // Once the layout has zoomed, the keys go back to the text.
    connect(cbZoom_, &QComboBox::textActivated, this, [this] {
        if (isVisible())
            ctx_.testo().SetFocus();
    });
    // The toolbars stay the main window's own: the area starts under them.
    layout_->setWidgets({area, {nullptr, nullptr}, nullptr, nullptr, editor_});
    layout_->setViewActions(action(QStringLiteral("mnuVisNormale")), action(QStringLiteral("mnuVisPagina")),
                            action(QStringLiteral("mnuRighello")));
    layout_->setBeforeChange([this] { ctx_.undo().unDO(); });

    recentFiles_ = std::make_unique<RecentFiles>(ctx_.settings());
    recentFiles_->onChanged = [this] { showRecentFiles(); };
    recentFiles_->attach(ctx_.document());
    showRecentFiles();
    attachStartPanel(ctx_.document(), ctx_.settings(), ctx_.messages(), this);
    autosave_ = new AutoSave(ctx_.document(), ctx_.settings(), ctx_.messages(), ctx_.dataFolder(), this);
    toolButton(1, kAutosaveButton)->setChecked(autosave_->attivo());
    StyleService::instance(ctx_.testo(), ctx_.settings(), ctx_.messages(), ctx_.dialogs(), ctx_.undo())
        .bindCombo(cbSti_, false);
    setStatusPanel(kDocumentPanel, QStringLiteral("Nessun documento salvato"));
    resize(1120, 720);

    ctx_.frame().attach(this);
    ctx_.typing().setProcedures(this);
    ctx_.undo().onCommands = [this](const UndoCommands& state) { showUndoState(state); };
    ctx_.document().onConalinee = [this] { Conalinee(); };
    connect(&ctx_.testo(), &RichTextSurface::MouseDown, this,
            [this](int button, int, int, int) { onMouseDown(button); });
    // The line and column follow the caret wherever it was moved from: the
    // go-to window and a file insertion move it without a change of text.
    connect(&ctx_.testo(), &RichTextSurface::SelChange, this, [this] { Conalinee(); });
    editor_->installEventFilter(this);
    Conalinee();
    aggText();
    CmeN();
    editor_->setFocus();
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == editor_ && event->type() == QEvent::ShortcutOverride) {
        const QKeySequence pressed(static_cast<QKeyEvent*>(event)->keyCombination());
        for (const QAction* a : std::as_const(actions_)) {
            if (!a->shortcut().isEmpty() && a->shortcut() == pressed) {
                event->ignore();
                return true;
            }
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

MainWindow::~MainWindow()
{
    ctx_.document().onRecentAdd = nullptr;
    ctx_.document().onShowStartPanel = nullptr;
    ctx_.undo().onCommands = nullptr;
    ctx_.document().onConalinee = nullptr;
    ctx_.typing().setProcedures(nullptr);
    ctx_.frame().detach(this);
}

// ---------------------------------------------------------------- building

QAction* MainWindow::addRow(QWidget* place, const CommandRow& row, const QString& name)
{
    const QString caption = QString::fromUtf8(row.kind == RowKind::Command && row.button >= 0 ? row.tip : row.caption);
    auto* a = new QAction(themeIcon(QString::fromLatin1(row.icon)), caption, this);
    a->setObjectName(name);
    if (row.button >= 0)
        a->setToolTip(caption);
    if (row.shortcut != QKeyCombination())
        a->setShortcut(QKeySequence(row.shortcut));
    a->setCheckable(row.flags & Checkable);
    a->setVisible(!(row.flags & Hidden));
    place->addAction(a);
    if (row.flags & OnToggle) {
        connect(a, &QAction::toggled, this, [this, run = row.run] { runCommand([this, run] { run(*this); }, false); });
    } else {
        connect(a, &QAction::triggered, this, [this, run = row.run] { runCommand([this, run] { run(*this); }); });
    }
    applyNeed(a, row, registry_);
    return a;
}

void MainWindow::buildMenus()
{
    QHash<QString, QMenu*> menus;
    QActionGroup* group = nullptr;
    for (const CommandRow& row : commandTable()) {
        const QString parent = QString::fromLatin1(row.parent);
        if (row.button >= 0)
            continue;
        QMenu* in = menus.value(parent);
        if (!(row.flags & Exclusive))
            group = nullptr;
        switch (row.kind) {
        case RowKind::Menu: {
            const QString title = QString::fromUtf8(row.caption);
            QMenu* m = nullptr;
            if (row.flags & Popup) {
                m = new QMenu(title, this);
                popups_.insert(QString::fromLatin1(row.id), m);
            } else if (in) {
                m = in->addMenu(title);
            } else {
                m = menuBar()->addMenu(title);
                menus_ << m;
            }
            m->setObjectName(QString::fromLatin1(row.id));
            menus.insert(m->objectName(), m);
            break;
        }
        case RowKind::Separator:
            in->addSeparator();
            break;
        case RowKind::Recent: {
            QAction* a = in->addAction(QString());
            a->setObjectName(QString::fromLatin1(row.id));
            a->setVisible(false);
            connect(a, &QAction::triggered, this, [this, a] { runCommand([this, a] { RecENt(a->text()); }); });
            recent_ << a;
            break;
        }
        case RowKind::Command: {
            QAction* a = addRow(in, row, QString::fromLatin1(row.id));
            actions_.insert(a->objectName(), a);
            if (row.flags & Exclusive) {
                if (!group)
                    group = new QActionGroup(this);
                group->addAction(a);
            }
            break;
        }
        case RowKind::Combo:
        case RowKind::Key:
            // The toolbar has the combos; the keys are the text's own.
            break;
        }
    }
    fileMenu_ = menus.value(QStringLiteral("mnuf"));
    viewMenu_ = menus.value(QStringLiteral("mnuv"));
    action(QStringLiteral("mnuVisNormale"))->setChecked(true);
    updateHelpEntries();
}

void MainWindow::addTableButtons(int bar)
{
    const char* const name = bar == 0 ? "t0" : "t1";
    QList<QAction*>& list = buttons_[bar];
    for (const CommandRow& row : commandTable()) {
        if (row.button < 0 || qstrcmp(row.parent, name) != 0)
            continue;
        while (list.size() < row.button)
            list << t_[bar]->addSeparator();
        if (row.kind == RowKind::Combo)
            list << addComboRow(t_[bar], row);
        else
            list << addRow(t_[bar], row, toolButtonName(bar, row.button));
    }
}

QAction* MainWindow::addComboRow(QToolBar* bar, const CommandRow& row)
{
    auto* box = bar->findChild<QComboBox*>(QString::fromLatin1(row.id));
    Q_ASSERT(box);
    box->setToolTip(QString::fromUtf8(row.tip));
    QAction* a = bar->addWidget(box);
    a->setObjectName(rowName(row));
    const auto pick = [this, run = row.run] { runCommand([this, run] { run(*this); }); };
    // The font combo says "picked" once its list or its typed name is done.
    if (auto* font = qobject_cast<FontCmb*>(box))
        connect(font, &FontCmb::click, this, pick);
    else
        connect(box, &QComboBox::activated, this, pick);
    applyNeed(a, row, registry_);
    if (!a->isEnabled())
        box->setEnabled(false);
    return a;
}

void MainWindow::dropBulletMenu()
{
    // The bullet menu drops from under the button.
    QWidget* button = t_[1]->widgetForAction(buttons_[1][16]);
    QMenu* menu = popups_.value(QStringLiteral("mnuP"));
    if (button && menu)
        menu->popup(button->mapToGlobal(QPoint(0, button->height())));
}

QAction* MainWindow::toolButton(int bar, int index) const
{
    if (bar < 0 || bar > 1 || index < 0 || index >= buttons_[bar].size())
        return nullptr;
    return buttons_[bar].at(index);
}

void MainWindow::buildToolbars()
{
    const QString names[2] = {QStringLiteral("Standard"), QStringLiteral("Formattazione")};
    for (int i = 0; i < 2; ++i) {
        t_[i] = new QToolBar(names[i], this);
        t_[i]->setObjectName(QStringLiteral("t%1").arg(i));
        t_[i]->setIconSize(QSize(20, 20));
        addToolBar(Qt::TopToolBarArea, t_[i]);
        // A toolbar closed from its own context menu follows the View entry.
        connect(t_[i]->toggleViewAction(), &QAction::toggled, this, [this, i](bool on) {
            if (QAction* a = action(i == 0 ? QStringLiteral("mnuBarraStandard") : QStringLiteral("mnuBarraFormattazione")))
                a->setChecked(on);
        });
    }
    addToolBarBreak(Qt::TopToolBarArea);
    insertToolBarBreak(t_[1]);

    addTableButtons(0);

    // t(1): six combos, then the buttons; the table places them and says
    // what a pick in each does.
    cbFont_ = new FontCmb(t_[1]);
    cbFont_->setObjectName(QStringLiteral("CbFont"));
    cbFont_->addSystemFonts();
    // A font the system lacks still shows by name, and a name can be typed.
    cbFont_->setEditable(true);
    cbFont_->setInsertPolicy(QComboBox::NoInsert);
    cbFont_->setMinimumWidth(160);
    cbFont_->setMaximumWidth(200);
    cbDim_ = new QComboBox(t_[1]);
    cbDim_->setObjectName(QStringLiteral("CbDim"));
    cbDim_->setEditable(true);
    for (int s : {8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 36, 48, 72})
        cbDim_->addItem(QString::number(s));
    cbDim_->setMinimumContentsLength(3);
    cbSti_ = new QComboBox(t_[1]);
    cbSti_->setObjectName(QStringLiteral("CbSti"));
    cbSti_->setMinimumContentsLength(10);
    cbZoom_ = new QComboBox(t_[1]);
    cbZoom_->setObjectName(QStringLiteral("cbZoom"));
    cbZoom_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cbZoom_->setMinimumContentsLength(5);
    for (int i = 0; i < 2; ++i) {
        cmbC_[i] = new ColourCmb(t_[1]);
        cmbC_[i]->setObjectName(QStringLiteral("CmbC%1").arg(i));
        cmbC_[i]->addStandardColours();
        cmbC_[i]->AddItem(kOtherColour);
        // A blank swatch keeps the caption in line with the colour names.
        QPixmap blank(cmbC_[i]->iconSize());
        blank.fill(Qt::transparent);
        cmbC_[i]->setItemIcon(cmbC_[i]->count() - 1, QIcon(blank));
        cmbC_[i]->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        cmbC_[i]->setMinimumContentsLength(6);
    }
    addTableButtons(1);
}

void MainWindow::fontPicked()
{
    ctx_.undo().unDO();
    ctx_.testo().setSelFontName(cbFont_->currentText());
}

void MainWindow::sizePicked()
{
    bool ok = false;
    const float size = cbDim_->currentText().replace(u',', u'.').toFloat(&ok);
    if (!ok || size < 1 || size > 1638) {
        ctx_.document().mostraMsg(QStringLiteral("Dimensione carattere"),
                                  QStringLiteral("Inserire un numero tra 1 e 1638."), 0, 2);
        aggText();
        return;
    }
    ctx_.undo().unDO();
    ctx_.testo().setSelFontSize(size);
}

void MainWindow::stylePicked()
{
    StyleService::instance(ctx_.testo(), ctx_.settings(), ctx_.messages(), ctx_.dialogs(), ctx_.undo())
        .comboPicked(cbSti_, cbSti_->currentIndex());
}

void MainWindow::zoomPicked()
{
    layout_->zoomToLevel(cbZoom_->currentText());
}

void MainWindow::buildStatusBar()
{
    QStatusBar* bar = statusBar();
    bar->setObjectName(QStringLiteral("sbStatusBar"));
    bar->setSizeGripEnabled(true);
    for (int i = 0; i < kPanels; ++i) {
        auto* label = new QLabel(bar);
        label->setObjectName(QStringLiteral("panel%1").arg(i));
        label->setTextInteractionFlags(Qt::NoTextInteraction);
        label->setContentsMargins(4, 0, 4, 0);
        if (i == kLinePanel) {
            label->setMinimumWidth(150);
            bar->addPermanentWidget(label);
        } else {
            bar->addWidget(label, i == kDocumentPanel ? 1 : 0);
        }
        panels_.append(label);
    }
    // The free panel shows only when something is said there.
    panels_[0]->hide();

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
    return index >= 0 && index < panels_.size() ? panels_.at(index) : nullptr;
}

// ---------------------------------------------------------------- start

void MainWindow::Form_Load(const QString& commandLine, const std::function<void(const QString&)>& splash)
{
    auto say = [&](const char* text) {
        if (splash)
            splash(QString::fromUtf8(text));
    };
    // Each step that fails is passed over; the window opens all the same.
    auto step = [](auto&& f) { goOnAt("Avvio", f); };
    SettingsStore& s = ctx_.settings();

    say("Impostazione casella di testo...");
    // The page margins are read by the page setup when it comes.
    step([&] { startAutosave(); });
    // Menu style: "Office 2000" draws its menus without pictures.
    step([&] {
        const bool plain = s.leggiReg(kApp, QStringLiteral("Menu"), QStringLiteral("Stile"), QStringLiteral("Office XP"))
                           == QLatin1String("Office 2000");
        for (QAction* a : std::as_const(actions_))
            a->setIconVisibleInMenu(!plain);
    });
    step([&] { readToolbars(); });
    // The view, the ruler and the page as the settings leave them.
    step([&] { layout_->ImpostaVis(); });
    step([&] {
        logic_.seedGuideKey();
        updateHelpEntries();
    });
    say("Caricamento controlli...");
    step([&] { fillFontControls(); });
    say("Caricamento opzioni...");
    say("Caricamento completato");
    step([&] {
        logic_.readUndoFlag();
        action(QStringLiteral("mnuDisabilitaAnnulla"))->setChecked(ctx_.undo().annullaOff());
    });
    step([&] {
        logic_.writeProgramFolder();
        ctx_.undo().clear();
    });
    step([&] { caricaRecenti(); });
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    step([&] { action(QStringLiteral("mnuParNessuno"))->setChecked(true); });
    step([&] { ctx_.document().Novo(0); });
    step([&] { ctx_.openAtStart(commandLine); });
    step([&] {
        // The clipboard panel comes back as it was left.
        if (!runFeature(Feature::appunti, QStringLiteral("avvio")))
            action(QStringLiteral("mnuAppunti"))->setChecked(logic_.clipboardPanelShown());
    });
    step([&] {
        aggText();
        Conalinee();
    });
    step([&] { logic_.writeVersionFile(QCoreApplication::applicationVersion()); });
    step([&] { CmeN(); });
    ctx_.document().segnaSalvato();
    if (unquotePath(commandLine).isEmpty())
        showStartPanel();
    step([&] {
        if (s.leggiReg(kApp, QStringLiteral("Tast"), QStringLiteral("1")) == QLatin1String("True"))
            showKeyboard(true);
    });
}

void MainWindow::fillFontControls()
{
    const SettingsStore& s = ctx_.settings();
    syncing_ = true;
    cbFont_->setText(s.leggiReg(kApp, QStringLiteral("Font"), QStringLiteral("1"), QStringLiteral("Tahoma")));
    cbDim_->setCurrentText(s.leggiReg(kApp, QStringLiteral("Font"), QStringLiteral("2"), QStringLiteral("10")));
    syncing_ = false;
}

void MainWindow::updateHelpEntries()
{
    action(QStringLiteral("mnuGuida"))->setEnabled(!logic_.guidePath().isEmpty());
    action(QStringLiteral("mnuAggiornamento"))->setEnabled(!logic_.updaterPath().isEmpty());
}

void MainWindow::readToolbars()
{
    ToolbarPlace places[2];
    for (int i = 0; i < 2; ++i) {
        places[i] = logic_.readToolbar(i);
        t_[i]->setVisible(places[i].visible);
        action(i == 0 ? QStringLiteral("mnuBarraStandard") : QStringLiteral("mnuBarraFormattazione"))
            ->setChecked(places[i].visible);
    }
    // The toolbars stand in rows at the top: two left on the same row share
    // one, in the order of their left edges; otherwise each has its own.
    const bool known = !ctx_.settings().leggiReg(kApp, FrmMainLogic::toolbarSection(1), QStringLiteral("2")).isEmpty();
    if (known && places[0].top == places[1].top) {
        removeToolBarBreak(t_[1]);
        if (places[1].left < places[0].left) {
            removeToolBar(t_[1]);
            insertToolBar(t_[0], t_[1]);
            t_[1]->show();
            t_[1]->setVisible(places[1].visible);
        }
    }
}

void MainWindow::writeToolbars()
{
    for (int i = 0; i < 2; ++i) {
        ToolbarPlace p;
        p.visible = !t_[i]->isHidden();
        p.top = t_[i]->y() * kTwipsPerPixel;
        p.left = t_[i]->x() * kTwipsPerPixel;
        logic_.writeToolbar(i, p);
    }
}

// The features built beside the window, reached from the start and the close.
void MainWindow::caricaRecenti()
{
    recentFiles_->caricaRecenti();
}

void MainWindow::showRecentFiles()
{
    const auto& captions = recentFiles_->captions();
    for (int i = 0; i < RecentFiles::kSlots; ++i) {
        recent_[i]->setText(captions[i]);
        recent_[i]->setVisible(recentFiles_->itemVisible(i));
    }
    // Item 14, the separator over the list.
    fileMenu_->actions().at(14)->setVisible(recentFiles_->separatorVisible());
}

void MainWindow::showStartPanel()
{
    if (!startPanelAtStart(ctx_.settings()))
        return;
    // Over the window once it is on the screen and the splash has gone.
    QTimer::singleShot(0, this, [this] {
        runCommand([this] { ctx_.document().Novo(1); });
        // The keys go back to the window the panel stood over.
        activateWindow();
    });
}

void MainWindow::startAutosave()
{
    autosave_->caricaIntervallo();
}

void MainWindow::exitSave()
{
    autosave_->salvaUscita();
}

void MainWindow::showKeyboard(bool shown)
{
    kb_->setVisible(shown);
    action(QStringLiteral("mnuTastiera"))->setChecked(shown);
    toolButton(0, 26)->setChecked(shown);
}

// ---------------------------------------------------------------- close

bool MainWindow::QueryUnload()
{
    const CloseAnswer answer = logic_.QueryUnload();
    if (answer == CloseAnswer::Cancel)
        return false;
    if (answer == CloseAnswer::Close) {
        writeToolbars();
        exitSave();
    }
    logic_.clearForClose();
    CmeN();
    // The other windows go with the main one.
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w != this && w->isVisible() && w->objectName() != QLatin1String("frmMain") && !qobject_cast<QMenu*>(w))
            w->close();
    }
    return true;
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!QueryUnload()) {
        event->ignore();
        return;
    }
    event->accept();
}

// ---------------------------------------------------------------- frame

void MainWindow::setCaption(const QString& caption)
{
    setWindowTitle(caption);
}

void MainWindow::setStatusPanel(int index, const QString& text)
{
    if (QLabel* panel = statusPanel(index)) {
        panel->setText(text);
        if (index == 0)
            panel->setVisible(!text.isEmpty());
    }
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

void MainWindow::runCommand(const std::function<void()>& command, bool thenCmeN)
{
    try {
        command();
    } catch (const std::exception& e) {
        ctx_.document().mostraMsg(QStringLiteral("Errore"),
                                  QStringLiteral("Errore inaspettato!\n") + QString::fromUtf8(e.what()), 0, 3);
    }
    if (thenCmeN)
        CmeN();
    if (!isVisible())
        return;
    ctx_.testo().SetFocus();
}

// ---------------------------------------------------------------- controls follow the document

void MainWindow::CmeN()
{
    ctx_.undo().CmeN();
}

void MainWindow::showUndoState(const UndoCommands& state)
{
    const std::pair<const CommandState*, QString> entries[] = {{&state.annulla, QStringLiteral("mnuAnnulla")},
                                                               {&state.ripristina, QStringLiteral("mnuRipristina")}};
    for (int i = 0; i < 2; ++i) {
        const auto& [cmd, name] = entries[i];
        QAction* a = action(name);
        if (!cmd->caption.isEmpty())
            a->setText(cmd->caption);
        a->setEnabled(cmd->enabled);
        toolButton(0, 13 + i)->setEnabled(cmd->enabled);
    }
}

void MainWindow::Conalinee()
{
    setStatusPanel(kLinePanel, logic_.Conalinee());
    allineaBottoni();
}

void MainWindow::aggText()
{
    const FormatControls c = logic_.aggText();
    syncing_ = true;
    if (c.font && cbFont_->currentText() != *c.font)
        cbFont_->setText(*c.font);
    if (cbDim_->currentText() != c.size)
        cbDim_->setCurrentText(c.size);
    showColour(cmbC_[0], c.textColour);
    // No highlight shows as white, a mixed selection as nothing.
    switch (hl_->IsHighlight()) {
    case 0:
        showColour(cmbC_[1], 0xFFFFFF);
        break;
    case 1:
        showColour(cmbC_[1], hl_->GetHighLightColorLong());
        break;
    default:
        showColour(cmbC_[1], -1);
        break;
    }
    const RichTextSurface& t = ctx_.testo();
    const std::pair<int, std::optional<bool>> toggles[] = {
        {6, t.SelBold()}, {7, t.SelItalic()}, {8, t.SelUnderline()}, {9, t.SelStrikeThru()}};
    for (const auto& [i, on] : toggles)
        buttons_[1][i]->setChecked(on.value_or(false));
    const bool bullet = t.SelBullet().value_or(false);
    action(QStringLiteral("mnuParStandard"))->setChecked(bullet);
    action(QStringLiteral("mnuParNessuno"))->setChecked(!bullet);
    syncing_ = false;
    allineaBottoni();
}

void MainWindow::allineaBottoni()
{
    const std::optional<int> a = logic_.alignment();
    const std::pair<int, int> entries[] = {{0, 13}, {2, 14}, {1, 15}};
    const QString names[] = {QStringLiteral("mnuSinistra"), QStringLiteral("mnuCentrato"), QStringLiteral("mnuDestra")};
    for (int i = 0; i < 3; ++i) {
        const bool on = a == entries[i].first;
        buttons_[1][entries[i].second]->setChecked(on);
        QAction* entry = action(names[i]);
        // An exclusive group keeps one checked; a mixed selection has none.
        if (entry->actionGroup())
            entry->actionGroup()->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
        entry->setChecked(on);
    }
}

void MainWindow::onMouseDown(int button)
{
    if (button != 2)
        return;
    const ContextMenuState s = logic_.contextMenu();
    if (s.menu == ContextMenuState::Menu::None)
        return;
    if (s.menu == ContextMenuState::Menu::Picture) {
        popups_.value(QStringLiteral("mnuImma"))->popup(QCursor::pos());
        return;
    }
    for (const char* name : {"mnumnEsegui", "mnumnTaglia", "mnumnCopia", "mnuSpcFormattazione"})
        action(QString::fromLatin1(name))->setEnabled(s.selectionCommands);
    prepareSpellingMenu(ctx_, this, popups_.value(QStringLiteral("mnu")), QCursor::pos());
    popups_.value(QStringLiteral("mnu"))->popup(QCursor::pos());
}

// ---------------------------------------------------------------- procedures

void MainWindow::Novo(int mostraAvvio)
{
    ctx_.document().Novo(mostraAvvio);
}

void MainWindow::nuovaSessione()
{
    ctx_.document().nuovaSessione();
}

void MainWindow::Aprii(const QString& path)
{
    ctx_.document().Aprii(path);
}

void MainWindow::Salvare(const QString& path)
{
    ctx_.document().Salvare(path);
}

void MainWindow::SalvareN()
{
    ctx_.document().SalvareN();
}

void MainWindow::DelFile()
{
    ctx_.document().DelFile();
}

void MainWindow::pROP()
{
    ctx_.document().pROP();
}

void MainWindow::RecENt(const QString& caption)
{
    ctx_.document().RecENt(caption);
}

void MainWindow::esci()
{
    close();
}

void MainWindow::disabilitaAnnulla()
{
    ctx_.undo().disabilitaAnnulla(ctx_.settings());
    action(QStringLiteral("mnuDisabilitaAnnulla"))->setChecked(ctx_.undo().annullaOff());
}

void MainWindow::UnDoo()
{
    ctx_.undo().UnDoo();
}

void MainWindow::RedOO()
{
    ctx_.undo().RedOO();
}

// The clipboard panel, when there is one, records each copy and paste at once.
void MainWindow::refreshClipboardPanel()
{
    if (QWidget* clip = findChild<QWidget*>(QStringLiteral("Clip")))
        QMetaObject::invokeMethod(clip, "Aggiorna");
}

// The clipboard commands go through the surface, whose clipboard carries RTF.
void MainWindow::CopYa()
{
    ctx_.testo().Copy();
    refreshClipboardPanel();
}

void MainWindow::copiaSoloTesto()
{
    logic_.copiaSoloTesto();
    refreshClipboardPanel();
}

void MainWindow::INco(const QString& how)
{
    logic_.INco(how);
    aggText();
    refreshClipboardPanel();
}

void MainWindow::TaGl()
{
    ctx_.undo().unDO();
    ctx_.testo().Cut();
}

void MainWindow::DeleteSelectedText()
{
    if (ctx_.testo().SelLength() == 0)
        return;
    ctx_.undo().unDO();
    ctx_.testo().setSelText(QString());
}

void MainWindow::appunti()
{
    runFeature(Feature::appunti);
}

void MainWindow::opzioniAppunti()
{
    runFeature(Feature::opzioniAppunti);
}

void MainWindow::selezionaRiga()
{
    logic_.selectLine();
}

void MainWindow::selezionaTutto()
{
    logic_.selectAll();
}

void MainWindow::FindA()
{
    tornelia::FindA(ctx_.testo(), ctx_.undo(), ctx_.messages(), this);
}

// The free functions of the tools share these names: hence the namespace.
void MainWindow::CpAr()
{
    tornelia::CpAr(ctx_.testo(), this);
}

void MainWindow::InSFilE()
{
    tornelia::InSFilE(ctx_.testo(), &ctx_.undo(), ctx_.messages(), ctx_.dialogs(), this);
}

void MainWindow::maiuscoleF2()
{
    ctx_.document().mostraMsg(QString(), QString(), 0, 0);
}

void MainWindow::inserisciData()
{
    logic_.insertDate();
}

void MainWindow::eseguiSelezione()
{
    logic_.eseguiSelezione();
}

void MainWindow::CorrEzionE()
{
    runFeature(Feature::CorrEzionE);
}

void MainWindow::chooseFont()
{
    logic_.chooseFont();
    aggText();
}

void MainWindow::coloreTesto()
{
    logic_.chooseTextColour();
    aggText();
}

void MainWindow::coloreSfondo()
{
    logic_.chooseBackColour();
}

void MainWindow::Clic(int code)
{
    logic_.Clic(code);
    aggText();
}

void MainWindow::setAlignment(int alignment)
{
    logic_.setAlignment(alignment);
    allineaBottoni();
}

void MainWindow::setCharOffset(int twips)
{
    logic_.setCharOffset(twips);
}

void MainWindow::paragrafoPuntato()
{
    logic_.toggleBullet();
    aggText();
}

void MainWindow::nessunPuntato()
{
    bulletPicture_ = QImage();
    if (ctx_.testo().SelBullet().value_or(true))
        logic_.toggleBullet();
    aggText();
}

void MainWindow::SelVisible()
{
    ctx_.undo().unDO();
    // Each call flips the hidden mark of the selection.
    looks_->setSelVisible(true);
}

void MainWindow::HiddenTextShow()
{
    ctx_.undo().unDO();
    ext_->HiddenTextShow();
}

void MainWindow::pickTextColour(int index)
{
    std::optional<Colour> c;
    if (cmbC_[0]->itemText(index) == kOtherColour)
        c = ctx_.dialogs().chooseColour(ctx_.testo().SelColor().value_or(0));
    else
        c = Colour(cmbC_[0]->colour());
    if (c) {
        ctx_.undo().unDO();
        ctx_.testo().setSelColor(*c);
    }
    aggText();
}

void MainWindow::pickHighlight(int index)
{
    // A colour of the list is set as the text's format; one asked for goes
    // in through the RTF, as the engine writes any colour.
    if (cmbC_[1]->itemText(index) == kOtherColour) {
        if (const auto c = ctx_.dialogs().chooseColour(hl_->GetHighLightColorLong())) {
            ctx_.undo().unDO();
            looks_->RTFHighlightHard(*c);
        }
    } else {
        ctx_.undo().unDO();
        hl_->APIHighlightHard(Colour(cmbC_[1]->colour()));
    }
    aggText();
}

void MainWindow::salvaImmagine()
{
    runFeature(Feature::salvaImmagine);
}

void MainWindow::proprietaImmagine()
{
    runFeature(Feature::proprietaImmagine);
}

void MainWindow::toggleToolbar(int bar)
{
    const bool on = t_[bar]->isHidden();
    t_[bar]->setVisible(on);
    action(bar == 0 ? QStringLiteral("mnuBarraStandard") : QStringLiteral("mnuBarraFormattazione"))->setChecked(on);
    ToolbarPlace p = logic_.readToolbar(bar);
    p.visible = on;
    logic_.writeToolbar(bar, p);
}

void MainWindow::toggleRuler()
{
    layout_->mnuRighello();
}

void MainWindow::setViewKind(bool page)
{
    layout_->mnuTipovis(page ? 1 : 0);
}

void MainWindow::zoom(const QString& level)
{
    layout_->mnuZoom(level);
}

void MainWindow::TasTiER()
{
    // The keyboard keeps its state in "Tast" for the next start.
    showKeyboard(kb_->TasTiER(ctx_.settings()));
}

void MainWindow::CripT()
{
    runFeature(Feature::CripT);
}

void MainWindow::DeCripT()
{
    runFeature(Feature::DeCripT);
}

void MainWindow::cifraturaDocumento()
{
    runFeature(Feature::cifraturaDocumento);
}

void MainWindow::cifraDocumentoCorrente()
{
    runFeature(Feature::cifraDocumentoCorrente);
}

void MainWindow::sarbena()
{
    logic_.startProgram(QStringLiteral("sarbena.exe"));
}

void MainWindow::guida()
{
    logic_.openGuide();
}

void MainWindow::aggiornamento()
{
    logic_.startUpdater();
}

void MainWindow::DeBugG()
{
    runFeature(Feature::DeBugG);
}

void MainWindow::sitoWeb()
{
    logic_.openSite();
}

void MainWindow::informazioni()
{
    runFeature(Feature::informazioni);
}

void MainWindow::autosaveToggled(bool on)
{
    autosave_->setAttivo(on);
}

void MainWindow::showWindow(Window window)
{
    registry_.open(window, WindowHost{ctx_, this, *this});
}

void MainWindow::AntEP()
{
    runFeature(Feature::AntEP);
}

void MainWindow::StaMpa()
{
    runFeature(Feature::StaMpa);
}

void MainWindow::PaRImM()
{
    runFeature(Feature::PaRImM);
}

void MainWindow::setBulletPicture(const QImage& picture)
{
    bulletPicture_ = picture;
}

void MainWindow::copyBulletPicture()
{
    QGuiApplication::clipboard()->setImage(bulletPicture_);
}

void MainWindow::MaIL(const QString& address)
{
    runFeature(Feature::MaIL, address);
}

bool MainWindow::runFeature(Feature feature, const QString& argument)
{
    return registry_.run(feature, WindowHost{ctx_, this, *this}, argument);
}

void MainWindow::showForm1()
{
    showWindow(Window::Form1);
}

}  // namespace tornelia
