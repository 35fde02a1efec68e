#pragma once

// "Data e ora": the date and time of now in the list's formats, or in a
// format of the person's own, inserted at the caret.

#include "tools/inserters.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace tornelia {

class FrmTimeDate : public QDialog {
    Q_OBJECT
public:
    // now gives the moment; the window asks again for each insertion.
    FrmTimeDate(RichTextSurface& testo, UndoStore* undo, std::function<QDateTime()> now, QWidget* parent = nullptr);

    QListWidget* lstDates() const { return lstDates_; }
    QLabel* lblSample() const { return lblSample_; }
    QLineEdit* txtCustom() const { return txtCustom_; }
    QPushButton* cmdInsert() const { return cmdInsert_; }
    QPushButton* cmdinsCusFor() const { return cmdinsCusFor_; }

private:
    void insertEntry();
    void insertCustom();

    RichTextSurface& testo_;
    UndoStore* undo_;
    std::function<QDateTime()> now_;
    QListWidget* lstDates_ = nullptr;
    QLabel* lblSample_ = nullptr;
    QLineEdit* txtCustom_ = nullptr;
    QPushButton* cmdInsert_ = nullptr;
    QPushButton* cmdinsCusFor_ = nullptr;
};

void showFrmTimeDate(RichTextSurface& testo, UndoStore* undo, QWidget* owner);

}  // namespace tornelia
