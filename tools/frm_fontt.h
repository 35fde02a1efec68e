#pragma once

// "Visualizzatore Fonts": the fonts of the system, each shown on a sample
// text with the chosen size, style and colour; the look can be given to the
// selection of the document.

#include "tools/inserters.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace tornelia {

class Fontt : public QDialog {
    Q_OBJECT
public:
    Fontt(RichTextSurface& testo, QWidget* parent = nullptr);

    QListWidget* fonts() const { return list_; }
    QLineEdit* text1() const { return text1_; }
    QCheckBox* check(int i) const { return checks_[i]; }
    QComboBox* dime() const { return dime_; }
    QPushButton* u1() const { return u1_; }
    // The look chosen in the window.
    FontLook look() const;
    void setColour(Colour c);

private:
    void updateSample();

    RichTextSurface& testo_;
    QListWidget* list_ = nullptr;
    QLineEdit* text1_ = nullptr;
    QCheckBox* checks_[3] = {};
    QComboBox* dime_ = nullptr;
    QWidget* picColors_ = nullptr;
    QPushButton* u1_ = nullptr;
    Colour colour_ = 0;
};

void showFontt(RichTextSurface& testo, QWidget* owner);

}  // namespace tornelia
