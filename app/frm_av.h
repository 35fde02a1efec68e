#pragma once

// The start panel: a new empty document, a letter or fax from a model, or
// one of the recent files, in one window.

#include "core/document.h"
#include "core/ports.h"
#include "core/recent_files.h"
#include "core/settings.h"

#include <QDialog>

#include <functional>

class QButtonGroup;
class QCheckBox;
class QPushButton;
class QStackedWidget;
class QToolButton;
class QTreeWidget;

namespace tornelia {

// What the panel does, apart from the window.
class Avvio {
public:
    Avvio(Document& document, SettingsStore& settings, MessagePort& messages);

    enum Page { PageNuovo = 0, PageModelli = 1, PageRecenti = 2 };

    // Caric: the recent files, from the settings.
    QList<RecentRow> Caric() const { return recentRows(settings_); }
    static QStringList modelli() { return {QStringLiteral("lettera"), QStringLiteral("fax")}; }

    // cav: opens a recent file; true when it was opened and the panel closes.
    bool cav(const QString& path);
    // co on the page shown, with the row chosen there (-1 for none). True when
    // the panel closes.
    bool co(int page, int row);
    // The panel's check box, kept for the next start.
    bool mostraAdOgniAvvio() const;
    void setMostraAdOgniAvvio(bool on);

    // Shows the letter or fax composer, modal.
    std::function<void(const QString& modello)> onModello;

private:
    Document& document_;
    SettingsStore& settings_;
    MessagePort& messages_;
};

class FrmAv : public QDialog {
    Q_OBJECT
public:
    FrmAv(Document& document, SettingsStore& settings, MessagePort& messages, QWidget* parent = nullptr);

    Avvio& logic() { return logic_; }
    void showPage(int page);
    int page() const;
    // Fills the recent list.
    void Caric();
    void cav(const QString& path);

    QTreeWidget* list(int page) const;
    QPushButton* confirmButton() const { return co_; }

protected:
    void done(int result) override;

private:
    void confirm();

    Avvio logic_;
    QButtonGroup* t_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    QTreeWidget* l_ = nullptr;
    QTreeWidget* l2_ = nullptr;
    QTreeWidget* l1_ = nullptr;
    QCheckBox* mostra_ = nullptr;
    QPushButton* co_ = nullptr;
    QPushButton* CA_ = nullptr;
    QPushButton* can_ = nullptr;
};

// Whether the person asked for the start panel at every start ("Load" "1").
bool startPanelAtStart(const SettingsStore& settings);

// Novo(1) shows the start panel, modal, over the owner, from then on.
void attachStartPanel(Document& document, SettingsStore& settings, MessagePort& messages, QWidget* owner);


}  // namespace tornelia
