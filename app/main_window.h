#pragma once

// The program's main window: the editor in the middle, the five menus and
// the two toolbars above, the status bar with the progress strip of a load
// below. Every menu entry, toolbar button and key ends in one of the
// procedures below, so a command means the same from wherever it comes; the
// rules themselves live in FrmMainLogic and in the document.

#include "app/app_context.h"
#include "app/frm_main_logic.h"
#include "app/window_registry.h"
#include "core/clipboard_guard.h"
#include "core/ports.h"
#include "core/procedures.h"

#include <QHash>
#include <QList>
#include <QMainWindow>

#include <functional>
#include <memory>

class QAction;
class QComboBox;
class QLabel;
class QMenu;
class QProgressBar;
class QToolBar;

namespace tornelia {

class AutoSave;
class ClsAPIHighlight;
class ClsExtendedRTF;
class ClsRTFFontLooks;
class ColourCmb;
class EditorView;
class FontCmb;
class FormTast;
class MainLayout;
class RecentFiles;
struct CommandRow;

class MainWindow : public QMainWindow, public FramePort, public MainProcedures {
    Q_OBJECT
public:
    explicit MainWindow(AppContext& context, QWidget* parent = nullptr);
    ~MainWindow() override;

    // The start: reads the settings, opens the document of the command line
    // and brings every control up to date. splash shows the progress texts.
    void Form_Load(const QString& commandLine, const std::function<void(const QString&)>& splash = {});

    AppContext& context() { return ctx_; }
    FrmMainLogic& logic() { return logic_; }
    EditorView* editor() const { return editor_; }
    QMenu* fileMenu() const { return fileMenu_; }
    QMenu* viewMenu() const { return viewMenu_; }
    // The five menus of the bar, in order.
    QList<QMenu*> menus() const { return menus_; }
    // The command of a menu entry by its object name ("mnuApri" ...).
    QAction* action(const QString& name) const { return actions_.value(name); }
    // Button `index` of toolbar t(bar); a separator at the missing indexes.
    QAction* toolButton(int bar, int index) const;
    int toolButtonCount(int bar) const { return int(buttons_[bar].size()); }
    QToolBar* toolbar(int bar) const { return t_[bar]; }
    QMenu* contextMenu(const QString& name) const { return popups_.value(name); }
    // The five entries that the recent files fill in (items 15 to 19 of File).
    QAction* recentEntry(int i) const { return recent_.value(i); }
    QLabel* statusPanel(int index) const;
    QWidget* progressStrip() const { return progress_; }
    FontCmb* CbFont() const { return cbFont_; }
    QComboBox* CbDim() const { return cbDim_; }
    QComboBox* CbSti() const { return cbSti_; }
    QComboBox* cbZoom() const { return cbZoom_; }
    ColourCmb* CmbC(int i) const { return cmbC_[i]; }
    // The features the window keeps for the whole run.
    RecentFiles& recentFiles() { return *recentFiles_; }
    AutoSave& autosave() { return *autosave_; }
    MainLayout& layout() { return *layout_; }
    FormTast* keyboard() const { return kb_; }

    // --- FramePort ---
    void setCaption(const QString& caption) override;
    void setStatusPanel(int index, const QString& text) override;
    void showProgress(const QString& text, int percent) override;
    void hideProgress() override;
    void processEvents() override;

    // --- the procedures: menus, toolbars and keys reach these ---
    // Document lifecycle.
    virtual void Novo(int mostraAvvio);
    virtual void nuovaSessione();
    virtual void Aprii(const QString& path);
    virtual void Salvare(const QString& path);
    virtual void SalvareN();
    virtual void DelFile();
    virtual void pROP();
    virtual void RecENt(const QString& caption);
    virtual void esci();
    // Undo and the clipboard.
    virtual void disabilitaAnnulla();
    virtual void UnDoo();
    virtual void RedOO();
    void CopYa() override;
    virtual void copiaSoloTesto();
    void INco(const QString& how) override;
    void refreshClipboardPanel();
    void TaGl() override;
    virtual void DeleteSelectedText();
    // Shows or hides the clipboard panel.
    virtual void appunti();
    virtual void opzioniAppunti();
    // Selection and editing commands.
    virtual void selezionaRiga();
    virtual void selezionaTutto();
    virtual void FindA();
    virtual void maiuscoleF2();
    virtual void inserisciData();
    virtual void eseguiSelezione();
    virtual void CorrEzionE();
    // Word count and file insertion have their own windows; the macros reach
    // them through these too.
    void CpAr() override;
    void InSFilE() override;
    // Formatting.
    virtual void chooseFont();
    virtual void coloreTesto();
    virtual void coloreSfondo();
    virtual void Clic(int code);
    // What the person picked in a combo of the formatting toolbar goes to
    // the selection (the zoom to the view).
    virtual void fontPicked();
    virtual void sizePicked();
    virtual void stylePicked();
    virtual void zoomPicked();
    // The two colour combos: a colour picked from the list, or asked for.
    void pickTextColour(int index);
    void pickHighlight(int index);
    virtual void setAlignment(int alignment);
    virtual void setCharOffset(int twips);
    virtual void paragrafoPuntato();
    virtual void nessunPuntato();
    virtual void SelVisible();
    virtual void HiddenTextShow();
    // Pictures in the text.
    virtual void salvaImmagine();
    virtual void proprietaImmagine();
    // The view.
    virtual void toggleToolbar(int bar);
    virtual void toggleRuler();
    virtual void setViewKind(bool page);
    virtual void zoom(const QString& level);
    virtual void TasTiER();
    // Document services and the outside world.
    virtual void CripT();
    virtual void DeCripT();
    virtual void cifraturaDocumento();
    virtual void cifraDocumentoCorrente();
    virtual void sarbena();
    virtual void guida();
    virtual void aggiornamento();
    virtual void DeBugG();
    virtual void sitoWeb();
    virtual void informazioni();
    virtual void autosaveToggled(bool on);

    // --- MainProcedures ---
    void showWindow(Window window) override;
    void AntEP() override;
    void StaMpa() override;
    void PaRImM() override;
    // Picture bullets: the picture kept for each new line, and the clipboard
    // borrowed while it is pasted.
    void setBulletPicture(const QImage& picture) override;
    bool bulletImmagine() const override { return !bulletPicture_.isNull(); }
    void saveClipboard() override { clipGuard_.saveClipboard(); }
    void restoreClipboard() override { clipGuard_.restoreClipboard(); }
    void copyBulletPicture() override;
    void MaIL(const QString& address) override;
    // Runs a procedure that a feature folder registered; false while none is.
    bool runFeature(Feature feature, const QString& argument = QString());
    const WindowRegistry& registry() const { return registry_; }
    void showForm1() override;
    void CmeN() override;
    // The toolbar's font controls, colours and buttons follow the caret.
    void aggText() override;
    void Conalinee() override;
    // After each change of the text: the undo entries.
    void ChMnu() override { CmeN(); }
    // The three alignment entries and buttons show the paragraph's alignment.
    void allineaBottoni();
    // The bullet button's menu, dropped from under the button.
    void dropBulletMenu();

protected:
    void closeEvent(QCloseEvent* event) override;
    // The text view claims the editing keys for itself; those the menus
    // carry go to the menus.
    bool eventFilter(QObject* watched, QEvent* event) override;
    // The close: the question, the toolbars written, the exit save, the undo
    // store emptied. False when the window stays.
    bool QueryUnload();

private:
    QImage bulletPicture_;
    ClipboardGuard clipGuard_;
    // The menus, the context menus and the buttons, from the command table.
    void buildMenus();
    void buildToolbars();
    void addTableButtons(int bar);
    QAction* addComboRow(QToolBar* bar, const CommandRow& row);
    void buildStatusBar();
    QAction* addRow(QWidget* place, const CommandRow& row, const QString& name);
    // Runs a command of the document; an error that rises out of it is told
    // to the user instead of ending the program. CmeN follows unless told not to.
    void runCommand(const std::function<void()>& command, bool thenCmeN = true);
    void onMouseDown(int button);
    void showUndoState(const UndoCommands& state);
    void readToolbars();
    void writeToolbars();
    void updateHelpEntries();
    void fillFontControls();

    // Hooks of the start and the close for features built elsewhere.
    void caricaRecenti();
    void showStartPanel();
    void startAutosave();
    void exitSave();
    void showKeyboard(bool shown) override;
    // The File menu's recent entries, after a change of the list.
    void showRecentFiles();

    AppContext& ctx_;
    FrmMainLogic logic_;
    WindowRegistry registry_;
    EditorView* editor_ = nullptr;
    QMenu* fileMenu_ = nullptr;
    QMenu* viewMenu_ = nullptr;
    QList<QMenu*> menus_;
    QHash<QString, QAction*> actions_;
    QHash<QString, QMenu*> popups_;
    QList<QAction*> recent_;
    QToolBar* t_[2] = {nullptr, nullptr};
    QList<QAction*> buttons_[2];
    FontCmb* cbFont_ = nullptr;
    QComboBox* cbDim_ = nullptr;
    QComboBox* cbSti_ = nullptr;
    QComboBox* cbZoom_ = nullptr;
    ColourCmb* cmbC_[2] = {nullptr, nullptr};
    QList<QLabel*> panels_;
    QWidget* progress_ = nullptr;
    QLabel* progressLabel_ = nullptr;
    QProgressBar* progressBar_ = nullptr;
    // The controls are being set from the document: their own signals wait.
    bool syncing_ = false;
    std::unique_ptr<RecentFiles> recentFiles_;
    AutoSave* autosave_ = nullptr;
    MainLayout* layout_ = nullptr;
    FormTast* kb_ = nullptr;
    // The format engines, bound to the document's surface.
    std::unique_ptr<ClsExtendedRTF> ext_;
    std::unique_ptr<ClsRTFFontLooks> looks_;
    std::unique_ptr<ClsAPIHighlight> hl_;
};

}  // namespace tornelia
