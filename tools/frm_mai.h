#pragma once

// "Maiuscolo - minuscolo": the window over CaseConvert.

#include "tools/case_convert.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QRadioButton;

namespace tornelia {

class FrmMai : public QDialog {
    Q_OBJECT
public:
    FrmMai(RichTextSurface& testo, UndoStore* undo, QWidget* parent = nullptr);

    // op: 0 "&Normale", 1 upper case, 2 lower case.
    QRadioButton* op(int index) const { return op_[index]; }
    // o: 0 "Tutto il documento", 1 "Testo selezionato".
    QRadioButton* o(int index) const { return o_[index]; }
    QPushButton* u1() const { return u1_; }
    QLabel* warning() const { return warning_; }

private:
    void apply();

    CaseConvert convert_;
    QRadioButton* op_[3] = {};
    QRadioButton* o_[2] = {};
    QLabel* warning_ = nullptr;
    QPushButton* u1_ = nullptr;
};

void showFrmMai(RichTextSurface& testo, UndoStore* undo, QWidget* owner);

}  // namespace tornelia
