#pragma once

// What the main window does with the ruler: the guide line follows a grip,
// a margin grip changes the page margins (kept for the session; the page
// window stores them), and the indent grip sets the indent of the selected
// paragraphs. The ruler's indent grip follows the caret.

#include "print/page_settings.h"

#include <QObject>

#include <functional>

namespace tornelia {

class RichTextSurface;
class Rul;

// The margins in centimetres as the ruler's twips give them, to four decimals.
void marginsFromRuler(PageSettings& page, int margineS, int margineD);

class RulerController : public QObject {
    Q_OBJECT
public:
    // picLin: the guide line, a thin widget over the page, may be null.
    // riDime: lays the page out again after the margins changed.
    RulerController(Rul& rul, RichTextSurface& testo, PageSettings& page, QWidget* picLin,
                    std::function<void()> riDime, QObject* parent = nullptr);

    // Taken before the indent changes, so the change can be undone.
    std::function<void()> beforeChange;

    // The ruler's indent grip from the selection: MargineS plus the indent,
    // none when the paragraphs differ.
    void followSelection();

private:
    void onDragging(bool visible, int position);
    void onMarginChanged();
    void onDragEnd();

    Rul& rul_;
    RichTextSurface& testo_;
    PageSettings& page_;
    QWidget* picLin_;
    std::function<void()> riDime_;
};

}  // namespace tornelia
