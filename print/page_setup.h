#pragma once

// The logic of the page setup window: four margin fields as the person
// sees them, the orientation, the scale drawing of the sheet, and the
// confirmation that stores it all. The window only binds controls to this.

#include "print/page_settings.h"

#include <QRectF>
#include <QString>

#include <array>

namespace tornelia {

class MessagePort;
class SettingsStore;

// The fields by their index, as the plus and minus buttons count them.
enum MarginField { Sup = 0, Inf = 1, Sin = 2, Des = 3 };

// A number written as "#.0": one decimal, no leading zero under one.
QString formatHashDot0(double value);

class PageSetupModel {
public:
    PageSetupModel(SettingsStore& settings, MessagePort& messages);

    // Opening: the stored page goes into the fields.
    void Carica();

    const QString& field(int k) const { return fields_.at(k); }
    // What the person types; taken as it stands until it is normalised.
    void setField(int k, const QString& text) { fields_.at(k) = text; }
    // Rewrites every field that holds a number as "#.0".
    void FormattaMargini();

    // The plus and minus buttons: a tenth up while under 10, a tenth down
    // while at 1 or more. A field that holds no number is left alone.
    void plus(int k);
    void minus(int k);

    int Orie() const { return orie_; }
    void setOrie(int orientation) { orie_ = orientation == 2 ? 2 : 1; }

    // The preview, in its own units (57 to the centimetre): the sheet and
    // the text frame inside it. Fields that hold no number count as 0.
    struct Preview {
        QRectF sheet;
        QRectF frame;
    };
    Preview preview() const;

    // Confirmation: the fields become the page and are stored. False, with
    // a message and nothing stored, when a field holds no number.
    bool confirm(PageSettings& page);

private:
    double numberOr(int k, double fallback) const;

    SettingsStore& settings_;
    MessagePort& messages_;
    std::array<QString, 4> fields_;
    int orie_ = 1;
};

}  // namespace tornelia
