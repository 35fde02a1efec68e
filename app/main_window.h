#pragma once

// The program's main window: the editor in the middle, the menus above, the
// status bar with the progress strip of a load below. It is the frame the
// document talks to.

#include "app/app_context.h"
#include "core/ports.h"
#include "core/procedures.h"

#include <QHash>
#include <QList>
#include <QMainWindow>

#include <functional>

class QLabel;
class QMenu;
class QProgressBar;

namespace tornelia {

class EditorView;

class MainWindow : public QMainWindow, public FramePort, public MainProcedures {
    Q_OBJECT
public:
    explicit MainWindow(AppContext& context, QWidget* parent = nullptr);
    ~MainWindow() override;

    AppContext& context() { return ctx_; }
    EditorView* editor() const { return editor_; }
    QMenu* fileMenu() const { return fileMenu_; }
    QMenu* viewMenu() const { return viewMenu_; }
    // The command of a menu entry by its object name ("mnuApri" ...).
    QAction* action(const QString& name) const { return actions_.value(name); }
    QLabel* statusPanel(int index) const;
    QWidget* progressStrip() const { return progress_; }

    // --- FramePort ---
    void setCaption(const QString& caption) override;
    void setStatusPanel(int index, const QString& text) override;
    void showProgress(const QString& text, int percent) override;
    void hideProgress() override;
    void processEvents() override;

    // --- TypingProcedures: what the Control keys reach ---
    void CopYa() override;
    void INco(const QString& how) override;
    void TaGl() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildFileMenu();
    void buildViewMenu();
    void showCorrections();
    void buildStatusBar();
    QAction* addCommand(QMenu* menu, const QString& name, const QString& caption, const QString& icon,
                        const QKeySequence& shortcut, std::function<void()> command);
    // Runs a command of the document; an error that rises out of it is told
    // to the user instead of ending the program.
    void runCommand(const std::function<void()>& command);
    // True when the window may close: unsaved work has been saved or given up.
    bool confirmClose();

    AppContext& ctx_;
    EditorView* editor_ = nullptr;
    QMenu* fileMenu_ = nullptr;
    QMenu* viewMenu_ = nullptr;
    QHash<QString, QAction*> actions_;
    QList<QLabel*> panels_;
    QWidget* progress_ = nullptr;
    QLabel* progressLabel_ = nullptr;
    QProgressBar* progressBar_ = nullptr;
};

}  // namespace tornelia
