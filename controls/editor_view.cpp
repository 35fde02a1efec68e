#include "controls/editor_view.h"

#include "controls/arrow_font.h"
#include "controls/edit_layout.h"
#include "controls/format_painter.h"
#include "core/codepage.h"

#include <QAbstractTextDocumentLayout>
#include <QFocusEvent>
#include <QGraphicsScene>
#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsRectItem>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsTextItem>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QScrollBar>
#include <QStyleOptionGraphicsItem>
#include <QTextBlock>
#include <QPainter>
#include <QTextFrame>
#include <QTextLayout>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tornelia {

namespace {

// The grey border of the field around the page, in document pixels.
constexpr qreal kFieldBorder = 24;
const QColor kFieldColour(128, 128, 128);

int mouseButtonCode(Qt::MouseButton b)
{
    switch (b) {
    case Qt::LeftButton: return 1;
    case Qt::RightButton: return 2;
    case Qt::MiddleButton: return 4;
    default: return 0;
    }
}

// Handlers see characters as the program always has: Windows-1252 codes
// where the code page has the character, so that a handler that turns "£"
// into 128 types the euro sign.
int keyAsciiOf(char32_t c)
{
    if (c <= 0xFFFF) {
        const int b = cp1252Byte(char16_t(c));
        if (b >= 0)
            return b;
    }
    return int(c);
}

QString textOfKeyAscii(int k)
{
    if (k >= 0x80 && k <= 0xFF)
        return QString(QChar(cp1252Char(static_cast<unsigned char>(k))));
    if (k <= 0 || k > 0x10FFFF || (k >= 0xD800 && k <= 0xDFFF))
        return {};
    const char32_t c = char32_t(k);
    return QString::fromUcs4(&c, 1);
}

bool isTypedText(const QString& text)
{
    if (text.isEmpty())
        return false;
    for (const QChar c : text) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7F || c.category() == QChar::Other_Control)
            return false;
    }
    return true;
}

// The gap between two sheets of the page view, in document pixels.
constexpr qreal kSheetGap = 16;

}  // namespace

// The sheets of the page view, one below the other: only those in the
// exposed part are painted, so a long document costs what is on screen.
class SheetsItem : public QGraphicsRectItem {
public:
    void setSheets(qreal sheetHeight, qreal pitch)
    {
        sheetHeight_ = sheetHeight;
        pitch_ = pitch;
        update();
    }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*) override
    {
        const QRectF all = rect();
        if (pitch_ <= 0 || all.isEmpty())
            return;
        const QRectF exposed = option->exposedRect.isNull() ? all : option->exposedRect;
        const int first = std::max(0, int(std::floor((exposed.top() - all.top()) / pitch_)));
        const int last = int(std::floor((exposed.bottom() - all.top()) / pitch_));
        painter->setBrush(brush());
        painter->setPen(pen());
        for (int i = first; i <= last; ++i) {
            const QRectF sheet(all.left(), all.top() + i * pitch_, all.width(), sheetHeight_);
            if (sheet.top() >= all.bottom())
                break;
            painter->drawRect(sheet);
        }
    }

private:
    qreal sheetHeight_ = 0;
    qreal pitch_ = 0;
};

// The item the view shows. It lets the surface see every key and click
// first, and leaves to Qt's text control only what moves the caret, selects
// or deletes.
class EditorTextItem : public QGraphicsTextItem {
public:
    explicit EditorTextItem(EditorView& view) : view_(view) {}

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override
    {
        // The item is the whole page: no dashed focus frame around it.
        QStyleOptionGraphicsItem plain(*option);
        plain.state &= ~(QStyle::State_HasFocus | QStyle::State_Selected);
        painter->save();
        FormatPainter::keepOutListMarkers(painter, document(), option->exposedRect);
        QGraphicsTextItem::paint(painter, &plain, widget);
        painter->restore();
        FormatPainter::paintOverlay(painter, document(), option->exposedRect);
        paintPictureSelection(painter);
    }

    // A picture does not show the selection colour through its pixels, so a
    // selected picture gets a tinted frame of its own.
    void paintPictureSelection(QPainter* painter) const
    {
        const QTextCursor c = textCursor();
        if (c.selectionEnd() - c.selectionStart() != 1)
            return;
        QTextCursor at(document());
        at.setPosition(c.selectionEnd());
        if (!at.charFormat().isImageFormat())
            return;
        const QTextBlock block = document()->findBlock(c.selectionStart());
        const QTextLayout* layout = block.layout();
        if (!layout)
            return;
        const int rel = c.selectionStart() - block.position();
        const QTextLine line = layout->lineForTextPosition(rel);
        if (!line.isValid())
            return;
        const qreal x1 = line.cursorToX(rel);
        const qreal x2 = line.cursorToX(rel + 1);
        const QRectF r(layout->position().x() + std::min(x1, x2), layout->position().y() + line.y(),
                       std::abs(x2 - x1), line.height());
        painter->save();
        painter->fillRect(r, QColor(51, 153, 255, 80));
        painter->setPen(QPen(QColor(0, 90, 200), 1, Qt::DashLine));
        painter->drawRect(r.adjusted(0.5, 0.5, -0.5, -0.5));
        painter->restore();
    }

protected:
    bool sceneEvent(QEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;
    void inputMethodEvent(QInputMethodEvent* e) override;
    void mousePressEvent(QGraphicsSceneMouseEvent* e) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* e) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* e) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* e) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent* e) override;

private:
    // Raises KeyPress for each character and types what the handlers leave.
    void typeCharacters(const QString& text);
    void typeKeyAscii(int k, const QString& asTyped);
    void raiseMouseDown(QGraphicsSceneMouseEvent* e);
    // The document position of the picture drawn at pos, or -1.
    int pictureAt(QPointF pos) const;

    EditorView& view_;
    // A click that selected a picture: its move and release must not put a
    // caret in place of the selection.
    bool pictureClick_ = false;
};

int EditorTextItem::pictureAt(QPointF pos) const
{
    QTextDocument* doc = document();
    const int hit = doc->documentLayout()->hitTest(pos, Qt::FuzzyHit);
    for (const int at : {hit - 1, hit}) {
        if (at < 0)
            continue;
        QTextCursor c(doc);
        c.setPosition(at);
        if (!c.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor) || !c.charFormat().isImageFormat())
            continue;
        const QTextBlock block = doc->findBlock(at);
        const QTextLayout* layout = block.layout();
        if (!layout)
            continue;
        const int rel = at - block.position();
        const QTextLine line = layout->lineForTextPosition(rel);
        if (!line.isValid())
            continue;
        const qreal x1 = line.cursorToX(rel), x2 = line.cursorToX(rel + 1);
        const QRectF r(layout->position().x() + std::min(x1, x2), layout->position().y() + line.y(), std::abs(x2 - x1),
                       line.height());
        if (r.contains(pos))
            return at;
    }
    return -1;
}

void EditorTextItem::typeKeyAscii(int k, const QString& asTyped)
{
    RichTextSurface& s = view_.surface();
    int code = k;
    s.raiseKeyPress(code);
    if (code == 0)
        return;
    const QString text = code == k ? asTyped : textOfKeyAscii(code);
    if (!text.isEmpty())
        s.typeText(text);
    view_.followSurfaceCursor();
}

void EditorTextItem::typeCharacters(const QString& text)
{
    const QList<uint> codes = text.toUcs4();
    for (const uint c : codes) {
        const char32_t ch = char32_t(c);
        typeKeyAscii(keyAsciiOf(ch), QString::fromUcs4(&ch, 1));
    }
}

void EditorTextItem::keyPressEvent(QKeyEvent* e)
{
    RichTextSurface& s = view_.surface();
    const Qt::KeyboardModifiers mods = e->modifiers();
    const int vk = EditorView::virtualKey(e->key(), mods);
    if (vk != 0) {
        int code = vk;
        int shift = EditorView::shiftState(mods);
        s.raiseKeyDown(code, shift);
        if (code == 0) {
            e->accept();
            return;
        }
    }
    // A KeyDown handler may have moved the caret.
    view_.followSurfaceCursor();

    // The surface's clipboard carries RTF; the text control's own does not.
    if (e->matches(QKeySequence::Copy)) {
        s.Copy();
        e->accept();
        return;
    }
    if (e->matches(QKeySequence::Cut)) {
        s.Cut();
        view_.followSurfaceCursor();
        e->accept();
        return;
    }
    if (e->matches(QKeySequence::Paste)) {
        s.Paste();
        view_.followSurfaceCursor();
        e->accept();
        return;
    }

    const bool ctrl = mods & Qt::ControlModifier;
    const bool alt = mods & Qt::AltModifier;
    switch (e->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (ctrl || alt)
            break;
        typeKeyAscii(13, QString((mods & Qt::ShiftModifier) ? QChar::LineSeparator
                                                            : QChar::ParagraphSeparator));
        e->accept();
        return;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        if (ctrl || alt)
            break;
        // In a table Tab goes from cell to cell.
        if (s.tabInTable(e->key() == Qt::Key_Backtab || (mods & Qt::ShiftModifier))) {
            view_.followSurfaceCursor();
            e->accept();
            return;
        }
        typeKeyAscii(9, QStringLiteral("\t"));
        e->accept();
        return;
    case Qt::Key_Backspace: {
        int code = 8;
        s.raiseKeyPress(code);
        if (code == 0) {
            e->accept();
            return;
        }
        break;
    }
    case Qt::Key_Escape: {
        int code = 27;
        s.raiseKeyPress(code);
        e->ignore();
        return;
    }
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        // The item alone has no screen to page by; the view has.
        if (ctrl || alt)
            break;
        view_.movePage(e->key() == Qt::Key_PageDown, mods & Qt::ShiftModifier);
        e->accept();
        return;
    default:
        break;
    }

    const QString text = e->text();
    if (isTypedText(text)) {
        if (!ctrl || alt) {
            if (alt && !ctrl) {
                // Alt with a letter belongs to the menus, never to the text.
                e->ignore();
                return;
            }
            typeCharacters(text);
            e->accept();
            return;
        }
    }

    // Caret movement, selection, Backspace and Delete.
    QGraphicsTextItem::keyPressEvent(e);
    view_.itemMovedCursor();
}

// The text item gives Tab and Shift+Tab straight to its own text control,
// past keyPressEvent: the KeyDown handlers and the move between table cells
// would never see them.
bool EditorTextItem::sceneEvent(QEvent* e)
{
    if (e->type() == QEvent::KeyPress || e->type() == QEvent::KeyRelease) {
        auto* k = static_cast<QKeyEvent*>(e);
        if (k->key() == Qt::Key_Tab || k->key() == Qt::Key_Backtab) {
            if (e->type() == QEvent::KeyPress)
                keyPressEvent(k);
            else
                keyReleaseEvent(k);
            return true;
        }
    }
    return QGraphicsTextItem::sceneEvent(e);
}

void EditorTextItem::keyReleaseEvent(QKeyEvent* e)
{
    const int vk = EditorView::virtualKey(e->key(), e->modifiers());
    if (vk != 0 && !e->isAutoRepeat()) {
        int code = vk;
        int shift = EditorView::shiftState(e->modifiers());
        view_.surface().raiseKeyUp(code, shift);
    }
    QGraphicsTextItem::keyReleaseEvent(e);
}

void EditorTextItem::inputMethodEvent(QInputMethodEvent* e)
{
    // A composed character (dead keys, compose sequences) arrives here and is
    // typed like any other key; a composition still in progress is left to Qt.
    if (e->preeditString().isEmpty() && e->replacementLength() == 0 && !e->commitString().isEmpty()) {
        typeCharacters(e->commitString());
        e->accept();
        return;
    }
    QGraphicsTextItem::inputMethodEvent(e);
    view_.itemMovedCursor();
}

void EditorTextItem::raiseMouseDown(QGraphicsSceneMouseEvent* e)
{
    const int button = mouseButtonCode(e->button());
    if (button == 0)
        return;
    const qreal twipsPerPixelX = 1440.0 / std::max(1, view_.logicalDpiX());
    const qreal twipsPerPixelY = 1440.0 / std::max(1, view_.logicalDpiY());
    view_.surface().raiseMouseDown(button, EditorView::shiftState(e->modifiers()),
                                   qRound(e->pos().x() * twipsPerPixelX),
                                   qRound(e->pos().y() * twipsPerPixelY));
}

void EditorTextItem::mousePressEvent(QGraphicsSceneMouseEvent* e)
{
    pictureClick_ = false;
    const int picture = e->button() == Qt::LeftButton && !(e->modifiers() & Qt::ShiftModifier) ? pictureAt(e->pos()) : -1;
    if (picture >= 0) {
        // A click on a picture selects it, as the picture's menu and
        // properties want it.
        QTextCursor c(document());
        c.setPosition(picture);
        c.setPosition(picture + 1, QTextCursor::KeepAnchor);
        setTextCursor(c);
        view_.itemMovedCursor();
        pictureClick_ = true;
        e->accept();
    } else if (e->button() == Qt::LeftButton) {
        QGraphicsTextItem::mousePressEvent(e);
        view_.itemMovedCursor();
    } else {
        // The right button is the program's context menu, and the middle
        // one must not paste the X selection behind the surface's back.
        e->accept();
    }
    raiseMouseDown(e);
}

void EditorTextItem::mouseMoveEvent(QGraphicsSceneMouseEvent* e)
{
    if (!(e->buttons() & Qt::LeftButton) || pictureClick_) {
        e->accept();
        return;
    }
    QGraphicsTextItem::mouseMoveEvent(e);
    view_.itemMovedCursor();
}

void EditorTextItem::mouseReleaseEvent(QGraphicsSceneMouseEvent* e)
{
    if (e->button() != Qt::LeftButton || std::exchange(pictureClick_, false)) {
        e->accept();
        return;
    }
    QGraphicsTextItem::mouseReleaseEvent(e);
    view_.itemMovedCursor();
}

void EditorTextItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* e)
{
    if (e->button() != Qt::LeftButton) {
        e->accept();
        return;
    }
    QGraphicsTextItem::mouseDoubleClickEvent(e);
    view_.itemMovedCursor();
}

void EditorTextItem::contextMenuEvent(QGraphicsSceneContextMenuEvent* e)
{
    // The program pops up its own menus on MouseDown.
    e->accept();
}

// ---------------------------------------------------------------------------

EditorView::EditorView(RichTextSurface& surface, QWidget* parent)
    : QGraphicsView(parent), surface_(surface), item_(new EditorTextItem(*this))
{
    auto* scene = new QGraphicsScene(this);
    // A click on the field around the text keeps the caret in the text.
    scene->setStickyFocus(true);
    setScene(scene);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setViewportUpdateMode(QGraphicsView::MinimalViewportUpdate);

    // Wingdings arrows show as arrows on a desktop without Wingdings.
    installArrowFont();

    QTextDocument* doc = surface_.document();
    // Setting the document may switch Qt's undo on; the program keeps its
    // own undo, so it is put back as the surface had it.
    const bool undo = doc->isUndoRedoEnabled();
    // Before the item connects to the layout, which this replaces.
    edit_layout::install(doc);
    item_->setTextInteractionFlags(Qt::TextEditorInteraction);
    item_->setDocument(doc);
    doc->setUndoRedoEnabled(undo);
    // Drops would insert Qt's HTML behind the surface's RTF reader.
    item_->setAcceptDrops(false);
    item_->setPos(0, 0);
    // The sheet of the page view, under the text; hidden in normal view.
    sheet_ = new SheetsItem;
    sheet_->setFlag(QGraphicsItem::ItemUsesExtendedStyleOption);
    sheet_->setPen(QPen(QColor(64, 64, 64), 0));
    sheet_->setZValue(-1);
    sheet_->setVisible(false);
    scene->addItem(sheet_);
    scene->addItem(item_);
    item_->setFocus();
    item_->setTextCursor(surface_.cursor());
    new FormatPainter(doc, this);
    clipEditRepaints();

    connect(doc->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
            [this](const QSizeF&) { updateSceneRect(); });
    connect(&surface_, &RichTextSurface::cursorMoved, this, &EditorView::followSurfaceCursor);
    connect(&surface_, &RichTextSurface::zoomChanged, this, &EditorView::applyZoom);
    connect(&surface_, &RichTextSurface::backColorChanged, this, &EditorView::applyBackColor);
    connect(&surface_, &RichTextSurface::focusRequested, this, [this] {
        setFocus(Qt::OtherFocusReason);
        item_->setFocus(Qt::OtherFocusReason);
    });
    // Edits by the logic move the caret without a view event.
    connect(&surface_, &RichTextSurface::Change, this, &EditorView::scheduleEnsureCaretVisible);

    applyBackColor();
    applyZoom();
}

void EditorView::clipEditRepaints()
{
    // Qt's layout tells what to repaint after an edit from the paragraph it
    // starts laying out at. When the edited paragraph is the first after
    // one of the points the layout restarts from, nothing above it has set
    // the top of that area, and it reaches up to the top of the document:
    // in such a paragraph every key repainted the whole window above it.
    // Nothing above the first paragraph an edit touches can change, so the
    // area is cut there before it reaches the item.
    QTextDocument* doc = surface_.document();
    QAbstractTextDocumentLayout* layout = doc->documentLayout();
    QObject* control = nullptr;
    for (QObject* child : item_->children())
        if (child->inherits("QWidgetTextControl"))
            control = child;
    // The control passes the layout's area on as its own updateRequest,
    // which the item repaints; the cut area goes the same way.
    if (!control || !QObject::disconnect(layout, SIGNAL(update(QRectF)), control, nullptr))
        return;
    connect(doc, &QTextDocument::contentsChange, this, [this](int from, int, int) { editedFrom_ = from; });
    // The edit is over, its layout and repaint with it.
    connect(doc, &QTextDocument::contentsChanged, this, [this] { editedFrom_ = -1; });
    connect(layout, &QAbstractTextDocumentLayout::update, control, [this, doc, layout, control](const QRectF& area) {
        QRectF clipped = area;
        // In a table the cells beside the edited one may move; only the
        // document's own paragraphs are cut.
        if (editedFrom_ >= 0 && doc->frameAt(editedFrom_) == doc->rootFrame()) {
            const QTextBlock block = doc->findBlock(editedFrom_);
            const qreal top = block.isValid() ? layout->blockBoundingRect(block).top() : 0;
            if (clipped.top() < top && clipped.bottom() > top)
                clipped.setTop(top);
        }
        // One area per edit: what follows (a new width, a lazy layout step)
        // is the layout's own.
        editedFrom_ = -1;
        QMetaObject::invokeMethod(control, "updateRequest", Qt::DirectConnection, Q_ARG(QRectF, clipped));
    });
}

EditorView::~EditorView()
{
    // The painter gives the blocks back their own formats, and the layout
    // then reports a new size to this view: it goes while the view is whole,
    // not later among the QWidget's children.
    delete findChild<FormatPainter*>(QString(), Qt::FindDirectChildrenOnly);
}

QGraphicsTextItem* EditorView::textItem() const
{
    return item_;
}

int EditorView::shiftState(Qt::KeyboardModifiers modifiers)
{
    int s = 0;
    if (modifiers & Qt::ShiftModifier)
        s |= 1;
    if (modifiers & Qt::ControlModifier)
        s |= 2;
    if (modifiers & Qt::AltModifier)
        s |= 4;
    return s;
}

int EditorView::virtualKey(int qtKey, Qt::KeyboardModifiers modifiers)
{
    const bool keypad = modifiers & Qt::KeypadModifier;
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z)
        return qtKey;  // Qt's codes are the upper-case letters, as the VK codes
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
        return keypad ? 96 + (qtKey - Qt::Key_0) : qtKey;
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24)
        return 112 + (qtKey - Qt::Key_F1);
    switch (qtKey) {
    case Qt::Key_Backspace: return 8;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return 9;
    case Qt::Key_Clear: return 12;
    case Qt::Key_Return:
    case Qt::Key_Enter: return 13;
    case Qt::Key_Shift: return 16;
    case Qt::Key_Control: return 17;
    case Qt::Key_Alt:
    case Qt::Key_AltGr: return 18;
    case Qt::Key_Pause: return 19;
    case Qt::Key_CapsLock: return 20;
    case Qt::Key_Escape: return 27;
    case Qt::Key_Space: return 32;
    case Qt::Key_PageUp: return 33;
    case Qt::Key_PageDown: return 34;
    case Qt::Key_End: return 35;
    case Qt::Key_Home: return 36;
    case Qt::Key_Left: return 37;
    case Qt::Key_Up: return 38;
    case Qt::Key_Right: return 39;
    case Qt::Key_Down: return 40;
    case Qt::Key_Print: return 44;
    case Qt::Key_Insert: return 45;
    case Qt::Key_Delete: return 46;
    case Qt::Key_Meta: return 91;
    case Qt::Key_Menu: return 93;
    case Qt::Key_Asterisk: return keypad ? 106 : 0;
    case Qt::Key_NumLock: return 144;
    case Qt::Key_ScrollLock: return 145;
    // The punctuation keys as they stand on the Italian keyboard.
    case Qt::Key_Plus: return keypad ? 107 : 187;
    case Qt::Key_Comma: return 188;
    case Qt::Key_Minus: return keypad ? 109 : 189;
    case Qt::Key_Period: return keypad ? 110 : 190;
    case Qt::Key_Slash: return keypad ? 111 : 0;
    case Qt::Key_Egrave: return 186;
    case Qt::Key_Ugrave: return 191;
    case Qt::Key_Ograve: return 192;
    case Qt::Key_Apostrophe: return 219;
    case Qt::Key_Backslash: return 220;
    case Qt::Key_Igrave: return 221;
    case Qt::Key_Agrave: return 222;
    case Qt::Key_Less: return 226;
    default: return 0;
    }
}

void EditorView::applyZoom()
{
    int num = 0;
    int den = 0;
    surface_.GetZoom(num, den);
    qreal z = (num > 0 && den > 0) ? qreal(num) / den : 1.0;
    z = std::clamp(z, 1.0 / 64, 64.0);
    zoom_ = z;
    setTransform(QTransform::fromScale(z, z));
    rewrap();
    reportPageOrigin();
}

qreal EditorView::pixelsOfTwips(double twips) const
{
    return twips * logicalDpiX() / 1440.0;
}

void EditorView::setPageLayout(const std::optional<PageLayout>& page)
{
    if (page == page_)
        return;
    QTextDocument* doc = surface_.document();
    if (page && !page_)
        plainFrame_ = doc->rootFrame()->frameFormat();
    page_ = page;
    // The page view breaks the text into pages as the printed copy does: the
    // layout itself paginates, each page holding the sheet's text height
    // with the margins and the gap to the next sheet around it. The frame's
    // format is the layout's, not the text's: no Change is raised for it.
    applyFrame();
    sheet_->setVisible(page_.has_value());
    setAlignment(page_ ? Qt::AlignHCenter | Qt::AlignTop : Qt::AlignLeft | Qt::AlignTop);
    applyBackColor();
    rewrap();
}

QRectF EditorView::pageRect() const
{
    return page_ ? sheet_->rect() : QRectF();
}

int EditorView::pageLeftInView() const
{
    if (!page_)
        return viewport()->x() + mapFromScene(QPointF(0, 0)).x();
    return viewport()->x() + mapFromScene(sheet_->rect().topLeft()).x();
}

void EditorView::reportPageOrigin()
{
    const int x = pageLeftInView();
    if (x == lastPageOrigin_)
        return;
    lastPageOrigin_ = x;
    emit pageOriginChanged(x);
}

void EditorView::scrollContentsBy(int dx, int dy)
{
    QGraphicsView::scrollContentsBy(dx, dy);
    if (dx != 0)
        reportPageOrigin();
}

void EditorView::rewrap()
{
    // Zoom is the view's scale: the text wraps at the window's width whatever
    // the zoom, and the line breaks do not move as the zoom changes. On the
    // page the width is the paper's, so lines break as they will print.
    // Before the window first shows, the viewport has a placeholder size a
    // few pixels wide: a document opened at the start would be laid out a
    // word or a letter to a line, which for a long document takes minutes.
    // Until then the text does not wrap; the first resize wraps it.
    const bool placeholder = !page_ && !testAttribute(Qt::WA_WState_Visible) && !isVisible();
    const qreal width = page_ ? std::max<qreal>(1.0, std::floor(pixelsOfTwips(page_->textWidth)))
                        : placeholder ? -1
                                      : std::max<qreal>(1.0, std::floor(viewport()->width() / zoom_) - 1);
    if (surface_.textWidth() != width)
        surface_.setTextWidth(width);
    if (item_->textWidth() != width)
        item_->setTextWidth(width);
    // Setting the width drops the page height; the page view puts it back.
    const QSizeF pageSize(width, page_ ? sheetPitch() : -1);
    if (surface_.document()->pageSize() != pageSize)
        surface_.document()->setPageSize(pageSize);
    updateSceneRect();
    scheduleEnsureCaretVisible();
}

void EditorView::updateSceneRect()
{
    if (!scene())
        return;
    if (page_)
        placePage();
    else {
        if (item_->pos() != QPointF(0, 0))
            item_->setPos(0, 0);
        scene()->setSceneRect(item_->boundingRect());
    }
    reportPageOrigin();
    // Qt centres the scene when it lays the scroll bars out, after this.
    QTimer::singleShot(0, this, [this] { reportPageOrigin(); });
}

void EditorView::applyFrame()
{
    QTextDocument* doc = surface_.document();
    QTextFrameFormat frame = plainFrame_;
    if (page_) {
        frame.setLeftMargin(0);
        frame.setRightMargin(0);
        frame.setTopMargin(pixelsOfTwips(page_->top));
        frame.setBottomMargin(pixelsOfTwips(page_->bottom) + kSheetGap);
        frame.setPadding(0);
        frame.setBorder(0);
    } else if (!frame.isValid()) {
        return;
    }
    // A document read anew comes with a fresh frame: the page view sets it
    // again when it sees one.
    if (doc->rootFrame()->frameFormat() != frame) {
        const QSignalBlocker quiet(doc);
        doc->rootFrame()->setFrameFormat(frame);
    }
}

qreal EditorView::sheetPitch() const
{
    return page_ ? std::max<qreal>(1.0, pixelsOfTwips(page_->sheetHeight)) + kSheetGap : 0;
}

int EditorView::sheetCount() const
{
    if (!page_)
        return 0;
    // The layout's own size: the item learns it only when the layout says so.
    const qreal height = surface_.document()->documentLayout()->documentSize().height();
    return std::max(1, int(std::ceil((height - 0.5) / sheetPitch())));
}

void EditorView::placePage()
{
    applyFrame();
    const PageLayout& p = *page_;
    const qreal left = pixelsOfTwips(p.left);
    const QSizeF text = item_->boundingRect().size();
    const qreal width = left + std::max(text.width(), pixelsOfTwips(p.textWidth)) + pixelsOfTwips(p.right);
    const qreal pitch = sheetPitch();
    const qreal sheetHeight = pitch - kSheetGap;
    const QRectF sheet(kFieldBorder, kFieldBorder, std::ceil(width), sheetCount() * pitch - kSheetGap);
    static_cast<SheetsItem*>(sheet_)->setSheets(sheetHeight, pitch);
    if (sheet_->rect() != sheet)
        sheet_->setRect(sheet);
    // The layout's frame holds the top margin of every page, the first's too.
    const QPointF at(kFieldBorder + left, kFieldBorder);
    if (item_->pos() != at)
        item_->setPos(at);
    const QRectF field = sheet.adjusted(-kFieldBorder, -kFieldBorder, kFieldBorder, kFieldBorder);
    if (scene()->sceneRect() != field)
        scene()->setSceneRect(field);
}

void EditorView::applyBackColor()
{
    const Colour c = surface_.BackColor();
    const QColor back(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF));
    // On the page the document's colour is the sheet's; the field stays grey.
    sheet_->setBrush(back);
    setBackgroundBrush(page_ ? kFieldColour : back);
}

void EditorView::followSurfaceCursor()
{
    // QTextCursor's == looks at the position alone; a selection that
    // collapses onto its own end must reach the item as well.
    const QTextCursor& wanted = surface_.cursor();
    const QTextCursor shown = item_->textCursor();
    if (shown.position() != wanted.position() || shown.anchor() != wanted.anchor())
        item_->setTextCursor(wanted);
    scheduleEnsureCaretVisible();
}

void EditorView::itemMovedCursor()
{
    surface_.adoptCursor(item_->textCursor());
    scheduleEnsureCaretVisible();
}

void EditorView::scheduleEnsureCaretVisible()
{
    // Layout runs after the edit that moved the caret; look once it is done.
    if (caretCheckPending_)
        return;
    caretCheckPending_ = true;
    QTimer::singleShot(0, this, [this] {
        caretCheckPending_ = false;
        ensureCaretVisible();
    });
}

QRectF EditorView::caretRect(const QTextCursor& c) const
{
    const QTextBlock block = c.block();
    QTextLayout* layout = block.isValid() ? block.layout() : nullptr;
    if (!layout)
        return {};
    const int inBlock = c.position() - block.position();
    const QTextLine line = layout->lineForTextPosition(inBlock);
    if (!line.isValid())
        return {};
    const QPointF origin = layout->position();
    return QRectF(origin.x() + line.cursorToX(inBlock), origin.y() + line.y(), 1, line.height());
}

void EditorView::ensureCaretVisible()
{
    const QRectF caret = caretRect(surface_.cursor());
    if (caret.isValid())
        ensureVisible(item_->mapRectToScene(caret), 8, 8);
}

void EditorView::movePage(bool down, bool extend)
{
    // A screen at a time: the text scrolls by the window's height and the
    // caret goes the same way, keeping its place on the screen. Past the
    // first or last screen it lands on the first or last line.
    QTextCursor c = item_->textCursor();
    const QRectF caret = caretRect(c);
    if (!caret.isValid())
        return;
    const int screen = std::max(1, viewport()->height());
    const qreal step = screen / zoom_;
    const QRectF bounds = item_->boundingRect();
    const QPointF target(caret.center().x(),
                         std::clamp(caret.center().y() + (down ? step : -step), bounds.top(),
                                    std::max(bounds.top(), bounds.bottom() - 1)));
    const int pos = surface_.document()->documentLayout()->hitTest(target, Qt::FuzzyHit);
    if (pos < 0)
        return;
    c.setPosition(pos, extend ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
    item_->setTextCursor(c);
    QScrollBar* bar = verticalScrollBar();
    bar->setValue(bar->value() + (down ? screen : -screen));
    itemMovedCursor();
}

void EditorView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    rewrap();
    reportPageOrigin();
}

void EditorView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || itemAt(event->position().toPoint()) == item_) {
        QGraphicsView::mousePressEvent(event);
        return;
    }
    // Below the last line: the caret goes to the nearest place in the text,
    // as a click in the empty part of a page does.
    const QPointF inItem = item_->mapFromScene(mapToScene(event->position().toPoint()));
    const QRectF bounds = item_->boundingRect();
    const QPointF clamped(std::clamp(inItem.x(), bounds.left(), std::max(bounds.left(), bounds.right() - 1)),
                          std::clamp(inItem.y(), bounds.top(), std::max(bounds.top(), bounds.bottom() - 1)));
    const int pos = surface_.document()->documentLayout()->hitTest(clamped, Qt::FuzzyHit);
    if (pos >= 0) {
        QTextCursor c = item_->textCursor();
        c.setPosition(pos, (event->modifiers() & Qt::ShiftModifier) ? QTextCursor::KeepAnchor
                                                                     : QTextCursor::MoveAnchor);
        item_->setTextCursor(c);
        itemMovedCursor();
    }
    item_->setFocus(Qt::MouseFocusReason);
    const qreal tx = 1440.0 / std::max(1, logicalDpiX());
    const qreal ty = 1440.0 / std::max(1, logicalDpiY());
    surface_.raiseMouseDown(1, shiftState(event->modifiers()), qRound(inItem.x() * tx), qRound(inItem.y() * ty));
    event->accept();
}

void EditorView::focusInEvent(QFocusEvent* event)
{
    QGraphicsView::focusInEvent(event);
    if (!item_->hasFocus())
        item_->setFocus(event->reason());
}

}  // namespace tornelia
