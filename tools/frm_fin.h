#pragma once

// The window "Trova": binds its controls to FindReplace and owns no rule.

#include "tools/find_replace.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QPushButton;

namespace tornelia {

class MessagePort;
class UndoStore;

class fin : public QDialog {
    Q_OBJECT
public:
    fin(RichTextSurface& testo, UndoStore& undo, MessagePort& messages, QWidget* owner);

    FindReplace& logic() { return logic_; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void refresh();
    static void fillList(QComboBox* combo, const QStringList& items);

    FindReplace logic_;
    QWidget* owner_;
    QComboBox* cboFind_;
    QComboBox* cboReplace_;
    QCheckBox* ChCase_;
    QCheckBox* ChWord_;
    QPushButton* cmdFindNext_;
    QPushButton* cmdReplace_;
    QPushButton* cmdReplaceAll_;
    QPushButton* cmdCancel_;
    bool refreshing_ = false;
};

// Shows the window "Trova" beside the main window, without waiting, and puts
// the first 20 characters of a selection into the search text. One window
// per main window: a second call brings the same one up.
fin* FindA(RichTextSurface& testo, UndoStore& undo, MessagePort& messages, QWidget* owner);

}  // namespace tornelia
