#pragma once

// The editing area: a graphics view over the surface's QTextDocument. The
// surface stays the owner of the text, the caret and the selection; the view
// shows them, routes keys and clicks through the surface's events, and keeps
// its own caret in step with the surface's. In the page view the text
// stands on a white sheet in a grey field and wraps at the paper's line;
// the zoom is the view's scale in both views.

#include "core/rich_text_surface.h"

#include <QGraphicsView>
#include <QTextFrameFormat>

#include <optional>

class QGraphicsRectItem;
class QGraphicsTextItem;

namespace tornelia {

class EditorTextItem;

// The sheet as the page view shows it, in twips of the document: the text
// wraps at textWidth, the margins stand around it on a white page.
struct PageLayout {
    double textWidth = 0;
    double left = 0;
    double right = 0;
    double top = 0;
    double bottom = 0;
    double sheetHeight = 0;  // the page is at least this tall

    bool operator==(const PageLayout&) const = default;
};

class EditorView : public QGraphicsView {
    Q_OBJECT
public:
    explicit EditorView(RichTextSurface& surface, QWidget* parent = nullptr);
    ~EditorView() override;

    RichTextSurface& surface() const { return surface_; }
    QGraphicsTextItem* textItem() const;
    // The scale of the view, 1 at 100%.
    qreal zoomFactor() const { return zoom_; }

    // Normal view with no layout: the text fills the window. Page view with
    // one: a white page on a grey field, the text wrapping as on paper.
    void setPageLayout(const std::optional<PageLayout>& page);
    bool pageView() const { return page_.has_value(); }
    const std::optional<PageLayout>& pageLayout() const { return page_; }
    // Document pixels for a length in twips, at the screen's resolution.
    qreal pixelsOfTwips(double twips) const;
    // The sheets in the scene, the first's top to the last's bottom; empty
    // in normal view.
    QRectF pageRect() const;
    // How many sheets the page view shows, and the distance from the top of
    // one to the top of the next, in document pixels.
    int sheetCount() const;
    qreal sheetPitch() const;
    // Where the sheet's left edge stands, in this widget's pixels.
    int pageLeftInView() const;

signals:
    // The sheet's left edge moved on screen (scroll, zoom, resize).
    void pageOriginChanged(int x);

public:
    // The Windows virtual key code of a Qt key, 0 when it has none.
    static int virtualKey(int qtKey, Qt::KeyboardModifiers modifiers = {});
    // The shift state of key and mouse events: 1 Shift, 2 Ctrl, 4 Alt.
    static int shiftState(Qt::KeyboardModifiers modifiers);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    friend class EditorTextItem;
    void applyZoom();
    void rewrap();
    void applyBackColor();
    void followSurfaceCursor();
    void updateSceneRect();
    void placePage();
    void applyFrame();
    void clipEditRepaints();
    void reportPageOrigin();
    void scheduleEnsureCaretVisible();
    void ensureCaretVisible();
    // The caret's line at the cursor, in the document's coordinates; empty
    // before the text is laid out.
    QRectF caretRect(const QTextCursor& c) const;
    // Page Up and Page Down: a screen up or down, the selection extended
    // with Shift.
    void movePage(bool down, bool extend);
    // The item changed its caret or selection: the surface takes it over.
    void itemMovedCursor();

    RichTextSurface& surface_;
    EditorTextItem* item_;
    QGraphicsRectItem* sheet_ = nullptr;
    std::optional<PageLayout> page_;
    // The root frame's format outside the page view.
    QTextFrameFormat plainFrame_;
    int lastPageOrigin_ = -1;
    qreal zoom_ = 1.0;
    bool caretCheckPending_ = false;
    // Where the edit being laid out starts, -1 outside an edit.
    int editedFrom_ = -1;
};

}  // namespace tornelia
