#pragma once

// How a window asks the user for a colour: set Color (and, if wanted, Mode
// and the position), call Show, read Color back.
//
//     colour::Colore c(dataFolder, &messages);
//     c.setColor(current);
//     if (c.Show(this)) use(c.Color());

#include "colour/colour_picker.h"

#include <QIcon>
#include <QString>
#include <QVariantMap>

#include <cstdint>

class QWidget;

namespace tornelia {

class MessagePort;

namespace colour {

class Colore {
public:
    // Where the dialog comes up.
    enum StartUpPosition { Manual = 0, CenterOwner = 1, CenterScreen = 2, WindowsDefault = 3 };

    // folder holds "colori.col": the per-user data folder, which the
    // application context gives (dataFolder()); messages shows the dialog's
    // messages, a plain message box when none is given.
    explicit Colore(QString folder = {}, MessagePort* messages = nullptr);

    // Opens the dialog modally on the current Color; true when the user
    // confirmed, and Color is then the chosen colour.
    bool Show(QWidget* owner = nullptr);

    std::uint32_t Color() const { return color_; }
    void setColor(std::uint32_t c) { color_ = c & 0x00FFFFFF; }
    FieldMode Mode() const { return mode_; }
    void setMode(FieldMode m) { mode_ = m; }
    // In pixels of the screen, used with Manual.
    int DialogLeft() const { return left_; }
    void setDialogLeft(int x) { left_ = x; }
    int DialogTop() const { return top_; }
    void setDialogTop(int y) { top_ = y; }
    // Keeps the whole dialog on the screen it opens on.
    bool AdjustPosition() const { return adjust_; }
    void setAdjustPosition(bool on) { adjust_ = on; }
    StartUpPosition DialogStartUpPosition() const { return start_; }
    void setDialogStartUpPosition(StartUpPosition p) { start_ = p; }

    QIcon Icon() const { return icon_; }
    // Only an icon file is taken; anything else is refused with a message
    // and the icon stays as it was.
    bool setIcon(const QString& path);

    // The properties a window keeps of its control, by the keys "Color",
    // "Icon" (the icon file), "DialogLeft", "DialogTop", "AdjustPosition",
    // "DialogStartUpPosition" and "Mode". Keys missing keep their values.
    QVariantMap properties() const;
    void setProperties(const QVariantMap& bag);

    // Where the dialog of this size goes for this owner.
    QPoint placeFor(QSize size, QWidget* owner) const;

private:
    QString folder_;
    MessagePort* messages_;
    std::uint32_t color_ = 0;
    FieldMode mode_ = FieldMode::Hue;
    int left_ = 0;
    int top_ = 0;
    bool adjust_ = true;
    StartUpPosition start_ = CenterOwner;
    QIcon icon_;
    QString iconPath_;
};

}  // namespace colour
}  // namespace tornelia
