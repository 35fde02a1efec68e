#pragma once

// The window "Stili" and the program's one style table behind it. The table
// outlives the window's visits: closing only hides the window, and the main
// window's style combo reads the same table.

#include "tools/styles.h"

#include <QDialog>
#include <QHash>
#include <QObject>
#include <QPointer>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QGroupBox;

namespace tornelia {

class FrmSt : public QDialog {
    Q_OBJECT
public:
    FrmSt(StyleStore& store, QWidget* owner);

    // Hides the window; it stays loaded, with its table.
    void NascO();
    void Novo() { store_.Novo(); }
    void appliC(const QString& name, bool fromMain) { store_.appliC(name, fromMain); }
    // The controls follow the table.
    void refresh();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void readControls();

    StyleStore& store_;
    QListWidget* List1_;
    QLineEdit* n_;
    QComboBox* list_;
    QComboBox* dime_;
    QCheckBox* Check1_;
    QCheckBox* Check2_;
    QCheckBox* Check3_;
    QCheckBox* chh_;
    QGroupBox* properties_;
    bool refreshing_ = false;
};

// The style table of one document surface, made on first use and gone with
// the surface; it opens the last style file at once, so the main window's
// combo has its names before the window is ever shown.
class StyleService : public QObject {
    Q_OBJECT
public:
    static StyleService& instance(RichTextSurface& testo, SettingsStore& settings, MessagePort& messages,
                                  DialogPort& dialogs, UndoStore& undo);
    ~StyleService() override;

    StyleStore& store() { return store_; }
    // Shows "Stili" over owner, making it on first use.
    FrmSt* show(QWidget* owner);
    // Fills the main window's combo with the style names, keeps it filled as
    // the table changes, and, with followPicks, applies the style picked from
    // it; otherwise its owner calls comboPicked.
    void bindCombo(QComboBox* cbSti, bool followPicks = true);
    // Applies the style at index of the combo; the combo goes on offering
    // the styles, showing what it showed before.
    void comboPicked(QComboBox* cbSti, int index);

private:
    StyleService(RichTextSurface& testo, SettingsStore& settings, MessagePort& messages, DialogPort& dialogs,
                 UndoStore& undo);
    void tableChanged();

    RichTextSurface& testo_;
    StyleStore store_;
    QPointer<FrmSt> window_;
    QList<QPointer<QComboBox>> combos_;
    // What each combo showed when it was bound, which it shows again after a pick.
    QHash<const QComboBox*, QString> shown_;
};

}  // namespace tornelia
