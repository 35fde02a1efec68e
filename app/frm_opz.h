#pragma once

// "Opzioni": the person's way to most of the settings. The values are read
// once when the window opens and written all together by "Salva modifiche";
// "Annulla" leaves the settings as they were.

#include "core/ports.h"
#include "core/recent_files.h"
#include "core/settings.h"

#include <QDialog>
#include <QStringList>

#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QTabWidget;

namespace tornelia {

// The options as the window shows them.
struct Opzioni {
    QString fontNome = QStringLiteral("Tahoma");
    float fontDim = 10;
    bool salvaAuto = false;
    int minuti = 10;  // shown even when the autosave is off
    bool salvaUscita = false;
    QString filtroApri = QStringLiteral("Tutti i file (*.*)");
    QString filtroSalva = QStringLiteral("File Tornelia (*.tnl)");
    bool appunti = false;
    int appuntiSecondi = 1;
    QString stileMenu = QStringLiteral("Office XP");
    bool toolbarStandard = true;
    bool toolbarFormattazione = true;
    bool tastiera = false;
    bool finestraAvvio = false;
    QString linguaCorrettore = QStringLiteral("it_IT");
    bool ortografiaDigitazione = true;

    bool operator==(const Opzioni&) const = default;

    static Opzioni leggi(const SettingsStore& settings);
    // Every option, in one go.
    void scrivi(SettingsStore& settings) const;
};

// The filters the open and save dialogs can offer first.
QStringList filtriApri();
QStringList filtriSalva();

class FrmOpz : public QDialog {
    Q_OBJECT
public:
    FrmOpz(SettingsStore& settings, DialogPort& dialogs, MessagePort& messages, QWidget* parent = nullptr);

    // The menu's recent list, so that clearing it shows at once; without it
    // the settings alone are cleared.
    void setRecentFiles(RecentFiles* recent) { recent_ = recent; }
    // "Associazioni...": the file association window.
    void setAssociazioni(std::function<void()> open);

    Opzioni valori() const;
    void mostra(const Opzioni& o);

    QTabWidget* tabs() const { return tabs_; }
    QPushButton* saveButton() const { return salva_; }
    QPushButton* cancelButton() const { return annulla_; }
    QPushButton* clearRecentButton() const { return clearRecent_; }

private:
    QWidget* buildCarattere();
    QWidget* buildApriSalva();
    QWidget* buildAppunti();
    QWidget* buildVarie();
    QWidget* buildRecenti();
    QWidget* buildOrtografia();
    void showFont();
    void salvaModifiche();

    SettingsStore& settings_;
    DialogPort& dialogs_;
    MessagePort& messages_;
    RecentFiles* recent_ = nullptr;
    std::function<void()> associazioni_;

    QString fontNome_;
    float fontDim_ = 10;

    QTabWidget* tabs_ = nullptr;
    QLabel* fontSample_ = nullptr;
    QPushButton* defC_ = nullptr;
    QPushButton* defD_ = nullptr;
    QCheckBox* salvaAuto_ = nullptr;
    QSpinBox* minuti_ = nullptr;
    QCheckBox* salvaUscita_ = nullptr;
    QComboBox* filtroApri_ = nullptr;
    QComboBox* filtroSalva_ = nullptr;
    QCheckBox* appunti_ = nullptr;
    QSpinBox* secondi_ = nullptr;
    QComboBox* CmbMnu_ = nullptr;
    QCheckBox* toolbar1_ = nullptr;
    QCheckBox* toolbar2_ = nullptr;
    QCheckBox* tastiera_ = nullptr;
    QCheckBox* avvio_ = nullptr;
    QPushButton* clearRecent_ = nullptr;
    QComboBox* lingua_ = nullptr;
    QCheckBox* ortografia_ = nullptr;
    QPushButton* associa_ = nullptr;
    QPushButton* salva_ = nullptr;
    QPushButton* annulla_ = nullptr;
};

}  // namespace tornelia
