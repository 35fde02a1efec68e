#pragma once

// The editing area: a graphics view over the surface's QTextDocument. The
// surface stays the owner of the text, the caret and the selection; the view
// shows them, routes keys and clicks through the surface's events, and keeps
// its own caret in step with the surface's.

#include "core/rich_text_surface.h"

#include <QGraphicsView>

class QGraphicsTextItem;

namespace tornelia {

class EditorTextItem;

class EditorView : public QGraphicsView {
    Q_OBJECT
public:
    explicit EditorView(RichTextSurface& surface, QWidget* parent = nullptr);
    ~EditorView() override;

    RichTextSurface& surface() const { return surface_; }
    QGraphicsTextItem* textItem() const;
    // The scale of the view, 1 at 100%.
    qreal zoomFactor() const { return zoom_; }

    // The Windows virtual key code of a Qt key, 0 when it has none.
    static int virtualKey(int qtKey, Qt::KeyboardModifiers modifiers = {});
    // The shift state of key and mouse events: 1 Shift, 2 Ctrl, 4 Alt.
    static int shiftState(Qt::KeyboardModifiers modifiers);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    friend class EditorTextItem;
    void applyZoom();
    void rewrap();
    void applyBackColor();
    void followSurfaceCursor();
    void updateSceneRect();
    void scheduleEnsureCaretVisible();
    void ensureCaretVisible();
    // The item changed its caret or selection: the surface takes it over.
    void itemMovedCursor();

    RichTextSurface& surface_;
    EditorTextItem* item_;
    qreal zoom_ = 1.0;
    bool caretCheckPending_ = false;
};

}  // namespace tornelia
