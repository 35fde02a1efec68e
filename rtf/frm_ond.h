#pragma once

// "Moto ondoso": the characters of the selection ride a wave, up and down
// or growing and shrinking, or each gets a format of its own ("Caos"). A
// sample shows the choice before it goes into the document.

#include "rtf/cls_rtf_font_looks.h"

#include <QDialog>

#include <array>
#include <functional>
#include <memory>

class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QScrollBar;

namespace tornelia {

class EditorView;

class RippleWaves {
public:
    enum Option { Caos = 0, OndePosizione = 1, OndeDimensioni = 2 };
    enum Field { Ampiezza = 0, LunghOnde = 1, ValPartenza = 2 };

    RippleWaves(RichTextSurface& testo, RichTextSurface& preview, MessagePort& messages,
                std::function<void()> beforeChange);

    // What the sample holds when the window opens.
    static QString sampleRtf();
    // What the sample shows an effect on; its middle line is the one waved.
    static QString previewText();

    QString field(int i) const { return tx_.at(size_t(i)); }
    void setField(int i, const QString& text) { tx_.at(size_t(i)) = text; }
    // The scroll bars' ranges and starting values.
    static int minimum(int field);
    static int maximum(int field);
    static int start(int field);

    // Reads the fields and shows the option on the sample. A field that is
    // not a number is refused with a message, and the sample stays.
    bool chooseOption(int option);
    // A scroll bar moved: its field takes the value and the sample follows.
    void scroll(int field, int value);
    // The chosen option on the document's selection, with the numbers the
    // sample was last made with.
    void apply();

    int option() const { return option_; }
    int amplitude() const { return amplitude_; }
    int value() const { return value_; }
    int step() const { return step_; }

private:
    bool readFields();
    void run(ClsRTFFontLooks& looks, int option);

    RichTextSurface& preview_;
    MessagePort& messages_;
    ClsRTFFontLooks main_;
    ClsRTFFontLooks sample_;
    std::function<void()> beforeChange_;
    std::array<QString, 3> tx_;
    int option_ = -1;
    int amplitude_ = 0;
    int value_ = 0;
    int step_ = 0;
};

class FrmOnd : public QDialog {
    Q_OBJECT
public:
    FrmOnd(RichTextSurface& testo, MessagePort& messages, std::function<void()> beforeChange,
           QWidget* parent = nullptr);
    ~FrmOnd() override;

    RippleWaves& logic() { return *logic_; }
    RichTextSurface& preview() { return *preview_; }
    QRadioButton* op(int i) const { return op_[i]; }
    QLineEdit* tx(int i) const { return tx_[i]; }
    QScrollBar* vs(int i) const { return vs_[i]; }
    QPushButton* u(int i) const { return u_[i]; }

private:
    void chooseOption(int option);

    std::unique_ptr<RichTextSurface> preview_;
    std::unique_ptr<RippleWaves> logic_;
    QRadioButton* op_[3] = {};
    QLineEdit* tx_[3] = {};
    QScrollBar* vs_[3] = {};
    QPushButton* u_[2] = {};
    EditorView* t_ = nullptr;
};

}  // namespace tornelia
