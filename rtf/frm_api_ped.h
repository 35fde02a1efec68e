#pragma once

// "Impostazione apice-pedice": the selection raised above or lowered below
// the base line by a height in twips.

#include "core/ports.h"
#include "core/rich_text_surface.h"

#include <QDialog>

#include <functional>

class QComboBox;
class QLabel;
class QRadioButton;

namespace tornelia {

class RaiseLower {
public:
    RaiseLower(RichTextSurface& testo, MessagePort& messages, std::function<void()> beforeChange);

    // The heights the combo offers, in twips.
    static QStringList heights();
    // "Altezza attuale: " and the selection's offset, or that it is mixed.
    QString currentText() const;
    // Raises (apice) or lowers the selection by text; a text that is not a
    // number is refused with a message and changes nothing.
    bool apply(bool apice, const QString& text);

private:
    RichTextSurface& testo_;
    MessagePort& messages_;
    std::function<void()> beforeChange_;
};

class FrmApiPed : public QDialog {
    Q_OBJECT
public:
    FrmApiPed(RichTextSurface& testo, MessagePort& messages, std::function<void()> beforeChange,
              QWidget* parent = nullptr);

    RaiseLower& logic() { return logic_; }
    QComboBox* c() const { return c_; }
    QRadioButton* op(int i) const { return op_[i]; }
    QLabel* current() const { return current_; }
    void refresh();

private:
    RaiseLower logic_;
    QComboBox* c_ = nullptr;
    QRadioButton* op_[2] = {};
    QLabel* current_ = nullptr;
};

}  // namespace tornelia
