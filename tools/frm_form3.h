#pragma once

// "Inserisci caratteri speciali - Visualizzatore caratteri": the characters
// of a font in a grid, a zoomed view of the one under the mouse, and its
// code to type with ALT; clicked characters gather and go into the text.

#include <QDialog>
#include <QFont>

class QFontComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tornelia {

class RichTextSurface;

// The grid of codes 32 to 255 in one font, 16 to a row.
class CharGrid : public QWidget {
    Q_OBJECT
public:
    explicit CharGrid(QWidget* parent = nullptr);
    void setGridFont(const QFont& font, bool symbol);
    QString characterAt(int code) const;
    bool isSymbolFont() const { return symbol_; }
    // The code of the cell under a point of the widget, or -1.
    int codeAt(const QPoint& p) const;
    QRect cellRect(int code) const;
    QSize sizeHint() const override;

signals:
    void hovered(const QString& character);
    void clicked(const QString& character);

protected:
    void paintEvent(QPaintEvent*) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QFont font_;
    bool symbol_ = false;
    int hot_ = -1;
};

class Form3 : public QDialog {
    Q_OBJECT
public:
    Form3(RichTextSurface& testo, QWidget* parent = nullptr);

    QFontComboBox* combo1() const { return combo1_; }
    CharGrid* grid() const { return grid_; }
    QLabel* lbl() const { return lbl_; }
    QLabel* zoom() const { return zoom_; }
    QLineEdit* t() const { return t_; }
    QPushButton* u1() const { return u1_; }

    void chooseFont(const QString& family);
    QString family() const { return family_; }

private:
    void showCharacter(const QString& character);

    RichTextSurface& testo_;
    QFontComboBox* combo1_ = nullptr;
    CharGrid* grid_ = nullptr;
    QLabel* zoom_ = nullptr;
    QLabel* lbl_ = nullptr;
    QLineEdit* t_ = nullptr;
    QPushButton* u1_ = nullptr;
    QString family_;
};

void showForm3(RichTextSurface& testo, QWidget* owner);

}  // namespace tornelia
