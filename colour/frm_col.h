#pragma once

// The colour dialog "Colore": a field with its slider in one of three modes,
// the colour as hue, saturation and brightness and as red, green and blue,
// the 216 palette colours and a grid of the user's own colours.

#include "colour/colour_picker.h"

#include <QDialog>

#include <cstdint>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTimer;

namespace tornelia {

class MessagePort;

namespace colour {

class FieldView;
class SliderView;

class FrmCol : public QDialog {
    Q_OBJECT
public:
    // folder holds "colori.col"; messages shows the checks' messages (a
    // plain message box when none is given).
    FrmCol(std::uint32_t initial, FieldMode mode, const QString& folder, MessagePort* messages,
           QWidget* parent = nullptr);

    std::uint32_t colour() const { return picker_.colour(); }
    ColourPicker& picker() { return picker_; }

    // Between the free field and the ready-made colours.
    void Command3_Click();
    bool showingPresets() const { return presets_; }
    static long GetSafeColor(int index, int& r, int& g, int& b, QString& hex, long& colour)
    {
        return ColourPicker::GetSafeColor(index, r, g, b, hex, colour);
    }
    static void GetHexVal(int r, int g, int b, QString& text) { ColourPicker::GetHexVal(r, g, b, text); }
    // Redraw the field for the mode (DrawPicker) or the grid chosen in the
    // preset list (DrawSafePicker).
    void DrawPicker();
    void DrawSafePicker();
    // The frame around the chosen cell and the pointer on the field.
    void DrawSelFrame(QPainter& p);
    void DrawMainFrame(QPainter& p);

    // The field and the custom grid, for those who click on them.
    QWidget* field() const;
    QWidget* slider() const;
    // Adds the current colour to the custom colours and writes the file.
    void addCustom();

    // Refuses once when Return has just met a bad value in a box, so the
    // user sees the value put back before the dialog closes.
    void accept() override;

private:
    friend class FieldView;
    friend class SliderView;

    void clickField(QPoint p);
    void clickSlider(int row);
    void refresh(QLineEdit* skip = nullptr);
    void boxEdited(colour::Box box, QLineEdit* edit, bool final);
    void showMessage(const QString& text);

    ColourPicker picker_;
    PixelBuffer fieldBuffer_;
    PixelBuffer sliderBuffer_;
    QString folder_;
    MessagePort* messages_;
    bool presets_ = false;
    int selectedCell_ = -1;  // in the grid on show
    bool frameDark_ = true;
    bool checking_ = false;
    QLineEdit* refused_ = nullptr;

    FieldView* field_ = nullptr;
    SliderView* slider_ = nullptr;
    QRadioButton* optH_ = nullptr;
    QRadioButton* optS_ = nullptr;
    QRadioButton* optB_ = nullptr;
    QLineEdit* txtH_ = nullptr;
    QLineEdit* txtS_ = nullptr;
    QLineEdit* txtB_ = nullptr;
    QLineEdit* text1_ = nullptr;
    QLineEdit* text2_ = nullptr;
    QLineEdit* text3_ = nullptr;
    QComboBox* cmbPreset_ = nullptr;
    QLabel* lblSelColor_ = nullptr;
    QLabel* lblADDColor_ = nullptr;
    QPushButton* cmdADD_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* command2_ = nullptr;
    QPushButton* command3_ = nullptr;
    QLabel* status_[4] = {};
    QTimer* timer1_ = nullptr;
};

}  // namespace colour
}  // namespace tornelia
