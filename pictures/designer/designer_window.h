#pragma once

// form2, "Testo speciale": the window around the designer's engine. Every
// control feeds one settings record; every change renders the picture anew,
// so what is shown always matches the controls. The effects of the last tab
// work on the finished picture and are lost at the next render.

#include "pictures/designer/designer_engine.h"

#include <QImage>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <cstdint>
#include <memory>

class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLayout;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QScrollArea;
class QScrollBar;
class QSpinBox;
class QTabWidget;

namespace tornelia {

class DialogPort;
class MessagePort;
class RichTextSurface;
class UndoStore;

namespace designer {

// The shipped folder of textures and backgrounds ("sfondi"): the source
// tree's while developing, the installed one otherwise. Empty when none is
// found.
QString shippedSfondiFolder();
// The picture files of the shipped folder and of the user's own folder
// (userFolder), sorted by name; a user's file hides a shipped one of the
// same name.
QStringList sfondiFiles(const QString& shippedFolder, const QString& userFolder);

// What form2 needs from the program.
struct DesignerHost {
    RichTextSurface& testo;
    UndoStore& undo;
    MessagePort& messages;
    DialogPort& dialogs;
    // Where "temp1.bmp" is written on its way into the document.
    QString tempFolder;
    // The per-user folder where textures copied by the user go.
    QString userSfondiFolder;
    // The shipped textures; empty means none were found.
    QString shippedSfondiFolder;
};

// The picture with its 17-pixel margin, taking the mouse for the text
// drag, the light and the drawing tools.
class PicView : public QWidget {
    Q_OBJECT
public:
    explicit PicView(QWidget* parent);
    void setImage(const QImage& image);
    const QImage& image() const { return image_; }

signals:
    void pressed(QPoint at, Qt::MouseButton button);
    void moved(QPoint at, Qt::MouseButtons buttons);

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    QImage image_;
};

// The 200-pixel pad of the shadow and the hover: the marker follows the
// pointer, a press fixes it.
class MagnifyPad : public QWidget {
    Q_OBJECT
public:
    explicit MagnifyPad(QWidget* parent);
    void setPreview(const QImage& image);
    void clear();
    QWidget* sun() const { return sun_; }

signals:
    void hovered(QPoint centre);
    void fixed(QPoint centre);

protected:
    void paintEvent(QPaintEvent*) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QImage preview_;
    QWidget* sun_;
};

class Form2 : public QWidget {
    Q_OBJECT
public:
    Form2(DesignerHost host, QWidget* owner = nullptr);
    ~Form2() override;

    DesignerEngine& engine() { return *engine_; }
    // The settings as the controls give them now.
    DesignerSettings settings() const;
    // Pic(1): the picture as it stands, effects included.
    QImage picture() const;

    void renderPicture();
    // The picture's size through the size boxes, as the bars move it.
    void resizeCanvas(int width, int height);

    // Textures of the text (0) and the border (1).
    void loadTexture(int index, const QString& path);
    void refreshFileLists();

    // The last tab.
    void runFilter(int index);
    void lightAt(QPoint at);
    void cmdRedraw();
    void cmdBend();
    void startSunEffect(bool hover);
    void previewSun(QPoint centre);
    void fixSun(QPoint centre);
    void pictureMouse(QPoint at, bool press);
    // 0 none, 1 point, 2 line, 3 box, 4 eyedropper.
    void setDrawTool(int tool);
    int drawTool() const { return drawTool_; }
    // The answer of the last warning.
    QString lastAnswer() const { return lastAnswer_; }

    // Output.
    bool saveBitmap(const QString& path);
    void cmdsave();
    void cmdclipboard();
    void CmdToTex();
    void cmdBackground();
    void cmdload(int index);

    // While a filter runs.
    bool busy() const { return busy_; }

signals:
    // A filter finished one column: tests and the bar follow it.
    void filterColumn(int column);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QLayout* buildOutputRow();
    QWidget* buildTextTab();
    QWidget* buildFillTab();
    QWidget* buildBorderTab();
    QWidget* buildBackgroundTab();
    QWidget* buildEffectsTab();
    QWidget* buildFillGroup(int index);
    QPushButton* colourButton(QWidget* parent, const QString& name, std::uint32_t colour, const QString& tip);
    void pickColour(QPushButton* button);
    static std::uint32_t buttonColour(const QPushButton* button);
    static void setButtonColour(QPushButton* button, std::uint32_t colour);
    bool warn(QPushButton* clicked);
    void showPicture();
    void updateBackScroll();
    void previewTransparency(int index, bool confirm);
    void changed();

    DesignerHost host_;
    std::unique_ptr<DesignerEngine> engine_;
    bool loading_ = true;
    bool busy_ = false;
    // The drawing tool: 0 none, 1 point, 2 line, 3 box, 4 eyedropper; the
    // line and the box wait for their start point.
    int drawTool_ = 0;
    bool waitingStart_ = false;
    QPoint start_;
    bool sunHover_ = false;
    // The text's corner when placed by hand, and the last size that read
    // as a number while the size box is being typed into.
    int manualX_ = 0;
    int manualY_ = 0;
    double lastSize_ = 36;
    QString lastAnswer_;

public:
    // The controls, by the names the program gives them.
    QTabWidget* tabs = nullptr;
    QScrollArea* scroll = nullptr;
    QFrame* frame = nullptr;
    PicView* Pic = nullptr;
    QLineEdit* Text1 = nullptr;
    QComboBox* CboName = nullptr;
    QComboBox* CboStyle = nullptr;
    QComboBox* CboSize = nullptr;
    QComboBox* CboAlign = nullptr;
    QCheckBox* ChkAlias = nullptr;
    QCheckBox* ChkAlpha = nullptr;
    QSpinBox* TxtAlpha = nullptr;
    QScrollBar* VScrAlpha = nullptr;
    QCheckBox* ChkBorder = nullptr;
    QSpinBox* TxtBordersize = nullptr;
    QScrollBar* VScroll1 = nullptr;
    QCheckBox* ChkMirror = nullptr;
    QCheckBox* ChkInvert = nullptr;
    QSpinBox* TxtSizeX = nullptr;
    QSpinBox* TxtSizeY = nullptr;
    QScrollBar* VscrX = nullptr;
    QScrollBar* VscrY = nullptr;

    QCheckBox* ChkCol[2] = {};
    QPushButton* CmdSolCol[2] = {};
    QCheckBox* ChkGrad[3] = {};
    QPushButton* CmdGrCol[6] = {};
    QPushButton* CmdSwapColors[3] = {};
    QComboBox* CboGrStyle[3] = {};
    QListWidget* File[2] = {};
    QPushButton* cmdloadButton[2] = {};
    QPushButton* CmdToTexButton[2] = {};
    QLabel* ImgPrev[2] = {};
    QScrollBar* HScrDL[2] = {};
    QPushButton* CmdDLOK[2] = {};
    QCheckBox* ChkTransparent = nullptr;
    QCheckBox* ChkGlow = nullptr;
    QCheckBox* ChkFade = nullptr;
    QCheckBox* ChkLeft = nullptr;
    QCheckBox* ChkRight = nullptr;
    QCheckBox* ChkTop = nullptr;
    QCheckBox* ChkBottom = nullptr;
    QPushButton* CmdBackcolor = nullptr;
    QPushButton* CmdClearBack = nullptr;
    QPushButton* cmdBackgroundButton = nullptr;
    QCheckBox* ChkTile = nullptr;
    QCheckBox* ChkShrink = nullptr;
    QCheckBox* ChkStretch = nullptr;
    QScrollBar* HScrMoveBack = nullptr;
    QScrollBar* VScrMoveBack = nullptr;

    QComboBox* CboFX = nullptr;
    QProgressBar* PBar = nullptr;
    QWidget* FrmBlock = nullptr;
    QCheckBox* ChkLight = nullptr;
    QCheckBox* ChkReal = nullptr;
    QPushButton* CmdLightCol = nullptr;
    QScrollBar* HScrStrnght = nullptr;
    QScrollBar* HScrDist = nullptr;
    MagnifyPad* PicMagnify = nullptr;
    QPushButton* cmdShadow = nullptr;
    QPushButton* cmdHover = nullptr;
    QPushButton* cmdPoint = nullptr;
    QPushButton* cmdLine = nullptr;
    QPushButton* cmdBox = nullptr;
    QPushButton* cmdpip = nullptr;
    QPushButton* CmdDrawColor = nullptr;
    QPushButton* cmdRedrawButton = nullptr;
    QPushButton* cmdBendButton = nullptr;
    QLabel* LblWarning = nullptr;
    QPushButton* cmdsaveButton = nullptr;
    QPushButton* cmdclipboardButton = nullptr;
};

}  // namespace designer
}  // namespace tornelia
