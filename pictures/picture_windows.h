#pragma once

// The picture windows: insert a picture, its properties with the progress
// window and the real-size view, picture bullets and the line inserter.

#include "core/clipboard_guard.h"
#include "pictures/picture_size.h"

#include <QDialog>
#include <QImage>

#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QRadioButton;

namespace tornelia {

class DialogPort;
class MessagePort;
class RichTextSurface;
class UndoStore;

namespace pictures {

// Where the shipped pictures are: "bullets" or "lines" under the pictures
// folder of the build tree or of the installation. Empty when none is found.
QString shippedFolder(const QString& kind);
// The PNG files of one kind, sorted by name.
QStringList shippedPictures(const QString& kind);

// The picture's RTF group for a file: PNG and JPEG keep their own data,
// anything else Qt reads is turned into PNG. Empty when the file is not a
// picture.
QByteArray pictureGroupForFile(const QString& path, QSize goalTwips = QSize());

// Puts a picture into the document the way a user's paste would: the
// clipboard is borrowed and given back, and the insertion is one undo step.
void pastePicture(RichTextSurface& testo, UndoStore& undo, const QByteArray& rtfGroup, const QImage& image);

// The image of the picture that is selected (one position), or a null image.
QImage selectedPicture(const RichTextSurface& testo);
// Whether the selection is one picture: what the right button's picture
// menu needs.
bool isPictureSelected(const RichTextSurface& testo);

// frmAIm: the small progress window of a change of picture size.
class FrmAIm : public QDialog {
    Q_OBJECT
public:
    explicit FrmAIm(QWidget* owner);
    void setStep(int step);
    // Lets the window paint while the work goes on.
    void Aggion();

private:
    QProgressBar* bar_;
};

// frmFull: the picture at the size typed in the properties.
class FrmFull : public QDialog {
    Q_OBJECT
public:
    FrmFull(const QImage& picture, int widthTwips, int heightTwips, QWidget* owner);
};

// frmIm: "Immagine".
class FrmIm : public QDialog {
    Q_OBJECT
public:
    FrmIm(RichTextSurface& testo, UndoStore& undo, DialogPort& dialogs, QWidget* owner);

    // Shows the file chosen in the file dialog.
    void immm(const QString& path);
    void command2();   // preview
    void command3();   // insert
    QString path() const;
    void setAsLink(bool on);

private:
    RichTextSurface& testo_;
    UndoStore& undo_;
    DialogPort& dialogs_;
    QLineEdit* text1_;
    QRadioButton* asPicture_;
    QRadioButton* asLink_;
    QLabel* image1_;
    QImage picture_;
};

// frmImProp: "Proprietà immagine".
class FrmImProp : public QDialog {
    Q_OBJECT
public:
    // picture: the selected picture's image, got while the clipboard was
    // borrowed by the caller.
    FrmImProp(RichTextSurface& testo, MessagePort& messages, DialogPort& dialogs, const QImage& picture,
              QWidget* owner);

    QLineEdit* side(int i) const { return t_[i]; }
    QString centimetres(int i) const;
    bool keepsProportion() const;
    void setKeepsProportion(bool on);
    // u(0): writes the typed size into the picture.
    void apply();
    // u3: saves the picture to a file.
    void savePicture();
    void showFull();

private:
    void sideChanged(int i);
    void writeLabels();
    void layoutPreview();

    RichTextSurface& testo_;
    MessagePort& messages_;
    DialogPort& dialogs_;
    QImage picture_;
    QLineEdit* t_[2] = {};
    QLabel* lc_[2] = {};
    QCheckBox* c_;
    QLabel* preview_;
    QLabel* la_;
    QLabel* lblDim_;
    QWidget* pi_;
    double ratio_ = 1;
    PictureSize starting_;
    bool busy_ = false;
};

// frmPar: "Elenco puntato con immagini".
class FrmPar : public QDialog {
    Q_OBJECT
public:
    explicit FrmPar(QWidget* owner);
    QImage chosen() const { return chosen_; }
    void choose(int row);
    int count() const;

private:
    QListWidget* l_;
    QLabel* p_;
    QImage chosen_;
};

// Form1: "Inserisci linea".
class Form1 : public QDialog {
    Q_OBJECT
public:
    // tempFolder: where "temp1.bmp" is written; chooseColour asks for a
    // colour starting from the one given, nothing when the user cancels.
    Form1(RichTextSurface& testo, UndoStore& undo, MessagePort& messages, QString tempFolder,
          std::function<std::optional<Colour>(Colour)> chooseColour, QWidget* owner);

    void setColour(int i, Colour c);
    Colour colour(int i) const { return clr_[i]; }
    void setShape(int index);
    // The line as it will go into the document.
    QImage Gradiente() const;
    void insert();

private:
    void refresh();

    RichTextSurface& testo_;
    UndoStore& undo_;
    MessagePort& messages_;
    QString tempFolder_;
    std::function<std::optional<Colour>(Colour)> chooseColour_;
    QComboBox* l_;
    QLabel* swatch_[2] = {};
    QLabel* image1_;
    Colour clr_[2] = {0x000000, 0xFF0000};
};

}  // namespace pictures
}  // namespace tornelia
