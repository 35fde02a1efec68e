#pragma once

// frmMac, "Macro": where macros are written, kept and run against the
// document of the main window.

#include "macro/macro_editor.h"

#include <QWidget>

class QLabel;
class QListWidget;
class QMenu;
class QStatusBar;
class QTextEdit;
class QToolBar;

namespace tornelia {

class frmMac : public QWidget {
    Q_OBJECT
public:
    frmMac(MacroHost host, DialogPort& dialogs, QWidget* owner = nullptr);
    ~frmMac() override;

    MacroEditor& editor() { return editor_; }
    QTextEdit* textArea() const { return t_; }
    QListWidget* commandList() const { return List1_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refresh();
    void selectEntry(int row);
    // The logic moved t's caret: the text area follows.
    void showCaret();

    MacroEditor editor_;
    QToolBar* x_ = nullptr;
    QTextEdit* t_ = nullptr;
    QListWidget* List1_ = nullptr;
    QLabel* com_ = nullptr;
    QLabel* des_ = nullptr;
    QStatusBar* sb_ = nullptr;
    QMenu* mnu_ = nullptr;
};

}  // namespace tornelia
