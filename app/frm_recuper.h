#pragma once

// "Recupero documenti": what lies in the "temp" folder, the exit saves and
// the autosaves of documents without a file, with the means to reopen a
// copy, open the folder, or empty it.

#include "core/autosave.h"
#include "core/document.h"
#include "core/ports.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTreeWidget;

namespace tornelia {

class FrmRecuper : public QDialog {
    Q_OBJECT
public:
    FrmRecuper(Document& document, MessagePort& messages, ShellPort& shell, QString tempFolder,
               QWidget* parent = nullptr);

    // Lists the folder anew.
    void aggiorna();

    QTreeWidget* list() const { return list_; }
    QLabel* foot() const { return foot_; }
    QLabel* note() const { return note_; }
    QPushButton* refreshButton() const { return refresh_; }
    QPushButton* folderButton() const { return folder_; }
    QPushButton* deleteButton() const { return delete_; }
    QPushButton* openButton() const { return open_; }

private:
    void openSelected();
    void deleteAll();

    Document& document_;
    MessagePort& messages_;
    ShellPort& shell_;
    QString tempFolder_;
    RecoveryListing listing_;
    QLabel* explanation_ = nullptr;
    QLabel* note_ = nullptr;
    QTreeWidget* list_ = nullptr;
    QLabel* foot_ = nullptr;
    QPushButton* refresh_ = nullptr;
    QPushButton* folder_ = nullptr;
    QPushButton* delete_ = nullptr;
    QPushButton* open_ = nullptr;
};

}  // namespace tornelia
