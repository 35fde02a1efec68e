#pragma once

// "Correzioni automatiche": the user picks which of the nine typing
// corrections apply. The rules themselves run in TypingAssist, which reads
// the choice again at every key.

#include "core/settings.h"

#include <QDialog>
#include <QStringList>

#include <array>

class QLabel;
class QListWidget;
class QPushButton;

namespace tornelia {

// The list's texts, in the order of the settings keys "1" to "9" of "Corr".
QStringList correctionTexts();

class FrmCor : public QDialog {
    Q_OBJECT
public:
    explicit FrmCor(SettingsStore& settings, QWidget* parent = nullptr);

    QListWidget* list() const { return l_; }
    QPushButton* confirmButton() const { return u1_; }
    QPushButton* cancelButton() const { return u2_; }

    // The checks as they stand in the list.
    std::array<bool, 9> checks() const;

private:
    void confirm();

    SettingsStore& settings_;
    QLabel* label_ = nullptr;
    QListWidget* l_ = nullptr;
    QPushButton* u1_ = nullptr;
    QPushButton* u2_ = nullptr;
};

}  // namespace tornelia
