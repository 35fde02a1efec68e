#pragma once

// "Testo ciclico": a text repeated, alone or numbered between a prefix and
// a suffix, with a progress bar for long runs.

#include "tools/inserters.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTabBar;

namespace tornelia {

class FrmCic : public QDialog {
    Q_OBJECT
public:
    FrmCic(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, QWidget* parent = nullptr);

    QTabBar* tabs() const { return tabs_; }
    QLineEdit* testo() const { return t1_; }
    QLineEdit* t3() const { return t3_; }
    QLineEdit* prefisso() const { return prefisso_; }
    QLineEdit* suffisso() const { return suffisso_; }
    QCheckBox* ch() const { return ch_; }
    QPushButton* c1() const { return c1_; }
    QPushButton* c2() const { return c2_; }
    QProgressBar* pb() const { return pb_; }
    QLabel* lblP() const { return lblP_; }

private:
    void showTab(int index);
    void run(CyclicMode mode);

    RichTextSurface& document_;
    UndoStore* undo_;
    MessagePort& messages_;
    QTabBar* tabs_ = nullptr;
    QLineEdit* t1_ = nullptr;
    QLineEdit* t3_ = nullptr;
    QLabel* prefissoLabel_ = nullptr;
    QLineEdit* prefisso_ = nullptr;
    QLabel* suffissoLabel_ = nullptr;
    QLineEdit* suffisso_ = nullptr;
    QCheckBox* ch_ = nullptr;
    QLabel* lblP_ = nullptr;
    QProgressBar* pb_ = nullptr;
    QPushButton* c1_ = nullptr;
    QPushButton* c2_ = nullptr;
};

void showFrmCic(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, QWidget* owner);

}  // namespace tornelia
