#pragma once

// The two small windows around the system clipboard: the viewer (frmApp)
// and paste special (frmInc).

#include <QDialog>

#include <functional>

class QLabel;
class QPushButton;
class QRadioButton;
class QScrollArea;
class QTextEdit;

namespace tornelia {

class MainProcedures;
class RichTextSurface;

// What the clipboard holds, by the viewer's order of tests: an image wins
// over rich text, rich text over plain text. Empty for "Non definito".
QString clipboardFormatName(bool hasText, bool hasRtf, bool hasImage);

class FrmApp : public QDialog {
    Q_OBJECT
public:
    explicit FrmApp(QWidget* parent = nullptr);

    // Looks at the clipboard again.
    void guarda();
    QString formato() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLabel* label_ = nullptr;
    QTextEdit* text1_ = nullptr;
    QScrollArea* pictureArea_ = nullptr;
    QLabel* picture_ = nullptr;
};

// Which paste options can apply to what the clipboard holds.
struct PasteChoices {
    bool keep = false;     // "Mantieni formattazione originale"
    bool apply = false;    // "Applica formattazione di destinazione"
    bool textOnly = false; // "Incolla solo il testo"
    static PasteChoices forClipboard(bool hasText, bool hasRtf, bool hasImage);
};

class FrmInc : public QDialog {
    Q_OBJECT
public:
    FrmInc(RichTextSurface& testo, MainProcedures& procedures, QWidget* parent = nullptr);

    // Runs after a copy, so the clipboard panel records it.
    std::function<void()> refreshPanel;

    // u1: paste with the chosen option, u3: copy with the chosen option.
    void u1();
    void u3();

private:
    RichTextSurface& testo_;
    MainProcedures& procedures_;
    QRadioButton* o_[2] = {};
    QRadioButton* op_[3] = {};
    QPushButton* paste_ = nullptr;
    QPushButton* copy_ = nullptr;
};

}  // namespace tornelia
