#pragma once

// The program's own open and save dialog and its resource bar. The windows
// bind their controls to CdLogic and to the bar's entries; the rules live there.

#include "filedialog/cd_logic.h"
#include "filedialog/tb_logic.h"

#include <QAbstractTableModel>
#include <QDialog>
#include <QIcon>
#include <QListWidget>

#include <memory>
#include <optional>

class QComboBox;
class QFileSystemModel;
class QLabel;
class QLineEdit;
class QPushButton;
class QTimer;
class QToolButton;
class QTreeView;

namespace tornelia {

class MessagePort;
class SettingsStore;

// The icon of a group: the desktop's theme first, Qt's own file icons after.
QIcon groupIcon(IcoGroup group);

// The file list's rows, added a slice at a time while the folder is read.
class CdListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void clear();
    void append(std::vector<CdEntry>& rows);
    void sortRows();
    const CdEntry& entry(int row) const { return rows_[size_t(row)]; }

private:
    std::vector<CdEntry> rows_;
};

// The bar of folder shortcuts on the dialog's left.
class Tb : public QListWidget {
    Q_OBJECT
public:
    explicit Tb(QWidget* parent = nullptr);
    void Add(const QString& name, const QString& path);
    void Clear();

signals:
    void folderChosen(const QString& folder);
};

class frmCD : public QDialog {
    Q_OBJECT
public:
    frmCD(CdRequest request, SettingsStore& settings, MessagePort& messages, QWidget* parent = nullptr);
    ~frmCD() override;

    CdLogic& logic() { return logic_; }
    // The path chosen, once the dialog has been accepted.
    std::optional<QString> result() const { return result_; }
    bool filling() const;

    // Reads the current folder into the list again.
    void agg();
    void CreABar();
    void cecca(const QPoint& where);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void done(int r) override;

private:
    void ReDimE();
    void goTo(const QString& folder);
    void fillStep();
    void activated(const QModelIndex& index);
    void selected();
    void action();
    void preview(const QString& path);
    void creaDir();
    void organizza();
    void fillDrives();
    void applyView();

    CdLogic logic_;
    SettingsStore& settings_;
    MessagePort& messages_;
    std::optional<QString> result_;
    std::unique_ptr<FolderReader> reader_;
    CdListModel* model_;
    QTimer* fillTimer_;
    Tb* bar_;
    QComboBox* drives_;
    QLineEdit* where_;
    QToolButton* upButton_;
    QToolButton* menuButton_;
    QTreeView* tree_;
    QFileSystemModel* treeModel_;
    QTreeView* list_;
    QLabel* status_;
    QLabel* pimm_;
    QLabel* Pinfo_;
    QLabel* previewTitle_;
    QLineEdit* name_;
    QComboBox* filter_;
    QPushButton* actionButton_;
    QPushButton* cancelButton_;
};

// "Crea cartella": asks the name of the new folder.
class frmCreaDir : public QDialog {
    Q_OBJECT
public:
    explicit frmCreaDir(QWidget* parent = nullptr);
    QString nome() const;
    QLineEdit* edit() const { return edit_; }

private:
    QLineEdit* edit_;
};

// "Organizza Barra delle Risorse": edits the personal entries of the bar.
class frmTb : public QDialog {
    Q_OBJECT
public:
    frmTb(SettingsStore& settings, MessagePort& messages, QWidget* parent = nullptr);

private:
    void load(int row);
    void store();
    void nuovo();
    void elimina();
    void salva();
    void refreshList();

    SettingsStore& settings_;
    MessagePort& messages_;
    std::vector<TbEntry> entries_;
    int current_ = -1;
    QListWidget* list_;
    QLineEdit* nome_;
    QLineEdit* percorso_;
    QPushButton* sfoglia_;
};

// Opens the dialog modal and answers the chosen path, or nothing on a cancel.
std::optional<QString> Apriii(CdRequest request, SettingsStore& settings, MessagePort& messages,
                              QWidget* parent = nullptr);

}  // namespace tornelia
