#pragma once

// "Colori ed evidenziazioni speciali": the colour effects for the person.
// A method is picked in one list, a variant in the other, and the variant
// is applied at once to the selection of the document, as text colour or
// as background.

#include "rtf/cls_rtf_font_looks.h"

#include <QDialog>

#include <functional>

class QLabel;
class QListWidget;
class QRadioButton;

namespace tornelia {

class SpecialColours {
public:
    // beforeChange runs just before the document is changed (the undo step).
    SpecialColours(RichTextSurface& testo, MessagePort& messages, DialogPort* dialog,
                   std::function<void()> beforeChange);

    // The methods of lstFil, in their order.
    static QStringList methods();
    // The variants of a method, by its name; none for an unknown one.
    static QStringList details(const QString& method);

    // A click in the method list: the variants it offers.
    QStringList chooseMethod(const QString& method);
    // A click on variant k of the chosen method: the effect runs at once.
    void chooseDetail(int k);

    bool toTextFlag() const { return toTextFlag_; }
    void setToTextFlag(bool toText) { toTextFlag_ = toText; }
    const QString& method() const { return method_; }
    ClsRTFFontLooks& looks() { return looks_; }

private:
    ClsRTFFontLooks looks_;
    std::function<void()> beforeChange_;
    QString method_;
    bool toTextFlag_ = true;
};

class FrmCE : public QDialog {
    Q_OBJECT
public:
    FrmCE(RichTextSurface& testo, MessagePort& messages, DialogPort* dialog, std::function<void()> beforeChange,
          QWidget* parent = nullptr);

    SpecialColours& logic() { return logic_; }
    QListWidget* lstFil() const { return lstFil_; }
    QListWidget* lstDet() const { return lstDet_; }
    QRadioButton* op(int i) const { return op_[i]; }

private:
    SpecialColours logic_;
    QListWidget* lstFil_ = nullptr;
    QListWidget* lstDet_ = nullptr;
    QRadioButton* op_[2] = {};
    QLabel* label_ = nullptr;
};

}  // namespace tornelia
