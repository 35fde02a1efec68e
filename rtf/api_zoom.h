#pragma once

// The display zoom of the document: ten levels, each a fraction that the
// surface applies to the view. Fonts and the document never change.

#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>

class QComboBox;

namespace tornelia {

class MessagePort;
class RichTextSurface;

class ClsAPIZoom {
public:
    explicit ClsAPIZoom(MessagePort* messages = nullptr) : messages_(messages) {}

    // The levels as the zoom combo lists them, "50%" to "250%".
    static const QStringList& levels();
    // The packed table: numerator in the high 16 bits, denominator in the
    // low ones. Fourteen places, ten of them used.
    static const std::array<std::uint32_t, 14>& table();

    // Binds the surface and fills the combo with the levels, "100%" shown.
    void AssignControls(RichTextSurface* rtb, QComboBox* combo);
    // Applies the level at index, clamped to the table.
    void ZoomDo(int index);
    // The zoom as a tagged piece "<...>" of a caption: "NN%" when percent,
    // else "numerator:denominator"; a reset zoom takes the tag away.
    QString ZoomSlug(const QString& text, bool percent) const;

private:
    void report() const;

    MessagePort* messages_;
    RichTextSurface* rtb_ = nullptr;
    QComboBox* combo_ = nullptr;
};

}  // namespace tornelia
