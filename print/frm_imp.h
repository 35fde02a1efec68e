#pragma once

// "Imposta pagina": the window over PageSetupModel.

#include "print/page_setup.h"

#include <QDialog>

#include <array>

class QLineEdit;
class QRadioButton;

namespace tornelia {

class SheetPreview;

class FrmImp : public QDialog {
    Q_OBJECT
public:
    FrmImp(SettingsStore& settings, MessagePort& messages, QWidget* parent = nullptr);
    ~FrmImp() override;

    PageSetupModel& model() { return model_; }
    QLineEdit* marginField(int k) const { return fields_.at(k); }
    QRadioButton* Option1() const { return option1_; }
    QRadioButton* Option2() const { return option2_; }
    // u1 and u2.
    void confirm();
    void cancel() { reject(); }

signals:
    // The page was stored; the views that show it lay themselves out again.
    void confirmed(const tornelia::PageSettings& page);

private:
    void showModel();
    void fieldEdited(int k);

    PageSetupModel model_;
    std::array<QLineEdit*, 4> fields_{};
    QRadioButton* option1_ = nullptr;
    QRadioButton* option2_ = nullptr;
    SheetPreview* pS_ = nullptr;
    bool showing_ = false;
};

}  // namespace tornelia
