#pragma once

// "Sottolineatura speciale": the underline styles the toolbar has no button
// for. A click on a style shows it on a sample; "&Applica" toggles it on the
// document's selection.

#include "rtf/cls_extended_rtf.h"

#include <QDialog>

#include <functional>

class QLabel;
class QPushButton;
class QRadioButton;

namespace tornelia {

class EditorView;

class SpecialUnderline {
public:
    static constexpr int kNone = 8;

    SpecialUnderline(RichTextSurface& testo, RichTextSurface& preview, MessagePort& messages,
                     std::function<void()> beforeChange);

    // The captions of the nine options, the last one "Nessuna".
    static QStringList captions();
    static QString sample() { return QStringLiteral("Testo di prova"); }

    // Shows the style on the sample, alone: the sample starts plain each time.
    void choose(int index);
    // Toggles the chosen style on the document; "Nessuna" does nothing.
    void apply();
    int chosen() const { return chosen_; }

private:
    // The setter of option index on an engine.
    static void runSetter(ClsExtendedRTF& engine, int index);
    void resetPreview();

    RichTextSurface& preview_;
    ClsExtendedRTF main_;
    ClsExtendedRTF previewEngine_;
    std::function<void()> beforeChange_;
    int chosen_ = kNone;
};

class FrmSott : public QDialog {
    Q_OBJECT
public:
    FrmSott(RichTextSurface& testo, MessagePort& messages, std::function<void()> beforeChange,
            QWidget* parent = nullptr);
    ~FrmSott() override;

    SpecialUnderline& logic() { return *logic_; }
    RichTextSurface& preview() { return *preview_; }
    QRadioButton* o(int i) const { return o_[i]; }
    QPushButton* command1() const { return command1_; }

private:
    std::unique_ptr<RichTextSurface> preview_;
    std::unique_ptr<SpecialUnderline> logic_;
    QRadioButton* o_[9] = {};
    QPushButton* command1_ = nullptr;
    EditorView* t_ = nullptr;
};

}  // namespace tornelia
