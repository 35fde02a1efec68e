#pragma once

// The flat combos of the toolbars: one lists colours with a swatch beside
// each name, the other lists fonts, each name drawn in its own font. Both
// offer the small interface the procedures use: text, AddItem, Clear and a
// click when the person picks an item.

#include "core/rich_text_surface.h"

#include <QComboBox>

namespace tornelia {

class Cmb : public QComboBox {
    Q_OBJECT
public:
    explicit Cmb(QWidget* parent = nullptr);

    QString text() const { return currentText(); }
    // Shows the item with this text; an unknown text leaves the box empty.
    void setText(const QString& text);
    void AddItem(const QString& text);
    void Clear() { clear(); }

signals:
    // The person picked an item from the list.
    void click();
};

// Colours by name with their swatch; the value is 0x00BBGGRR.
class ColourCmb : public Cmb {
    Q_OBJECT
public:
    explicit ColourCmb(QWidget* parent = nullptr);

    using Cmb::AddItem;
    void AddItem(const QString& text, Colour colour);
    // The program's list: automatic black and the usual named colours.
    void addStandardColours();
    // The colour shown; -1 when none is (a selection of mixed colours).
    qint64 colour() const;
    // Shows the item of that colour; -1 or a colour not listed empties the box.
    void setColour(qint64 colour);
};

// Font names, each drawn in its font in the list.
class FontCmb : public Cmb {
    Q_OBJECT
public:
    explicit FontCmb(QWidget* parent = nullptr);
    // The fonts of the system, in alphabetical order.
    void addSystemFonts();
};

}  // namespace tornelia
