#pragma once

// "Vai a...": the window over GoTo.

#include "tools/go_to.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace tornelia {

class FrmGoTo : public QDialog {
    Q_OBJECT
public:
    FrmGoTo(RichTextSurface& testo, MessagePort& messages, QWidget* parent = nullptr);

    QRadioButton* option(GoTo::Option o) const { return options_[o]; }
    QLineEdit* txtGo() const { return txtGo_; }
    QComboBox* cmbP() const { return cmbP_; }
    QPushButton* cmdGo() const { return cmdGo_; }
    QLabel* prompt() const { return prompt_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    GoTo::Option current() const;
    void showInputs();
    void go();

    GoTo goTo_;
    QRadioButton* options_[4] = {};
    QLabel* prompt_ = nullptr;
    QLineEdit* txtGo_ = nullptr;
    QComboBox* cmbP_ = nullptr;
    QPushButton* cmdGo_ = nullptr;
};

void showFrmGoTo(RichTextSurface& testo, MessagePort& messages, QWidget* owner);

}  // namespace tornelia
