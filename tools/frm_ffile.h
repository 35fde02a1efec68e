#pragma once

// "Inserisci file": a file chosen by the person, inserted whole at the
// caret, formats and all, optionally framed by separator lines.

#include "tools/inserters.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QPushButton;

namespace tornelia {

class FFile : public QDialog {
    Q_OBJECT
public:
    FFile(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, DialogPort& dialogs,
          QWidget* parent = nullptr);

    FileInserter& inserter() { return inserter_; }
    QLabel* fileLabel() const { return label_; }
    QCheckBox* c() const { return c_; }
    QPushButton* u1() const { return u1_; }
    QPushButton* u2() const { return u2_; }

    // u2, then u1 is offered once a file is ready.
    void scegli();
    void inserisci();

private:
    void refresh();

    RichTextSurface& testo_;
    UndoStore* undo_;
    MessagePort& messages_;
    DialogPort& dialogs_;
    FileInserter inserter_;
    QLabel* label_ = nullptr;
    QCheckBox* c_ = nullptr;
    QPushButton* u1_ = nullptr;
    QPushButton* u2_ = nullptr;
};

// "&File...": shows the insert-file window.
void InSFilE(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, DialogPort& dialogs, QWidget* owner);

}  // namespace tornelia
