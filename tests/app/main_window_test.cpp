// The main window with a person at the keys: what is typed reaches the
// document through the surface, the caret of the view and of the surface
// stay one, and the window asks before it drops unsaved work.
#include "app/gui_ports.h"
#include "app/main_window.h"
#include "controls/editor_view.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QGraphicsTextItem>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPushButton>

namespace tornelia {
namespace {

using testing::key;
using testing::typeKeys;

class MainWindowTest : public testing::ShownWindowTest {
protected:
    EditorView* view() { return window.editor(); }
    // The text with "^" at the surface's caret, and the view's caret when it
    // is elsewhere: the two must stay one.
    QString state()
    {
        const long caret = testo().fromDocPos(view()->textItem()->textCursor().position());
        const QString text = testo().Text().insert(testo().SelStart(), '^');
        return caret == testo().SelStart() ? text : text + " | view at " + QString::number(caret);
    }
    void select(int start, int length) { testo().setSelStart(start); testo().setSelLength(length); }
};

TEST_F(MainWindowTest, KeysEditTheDocumentThroughTheSurface)
{
    typeKeys(view(), "Ciao\rmondo");
    // Keys that edit or move without typing go to the view's text item and the
    // surface follows; when the logic moves the caret, the view follows.
    for (const int k : {Qt::Key_Backspace, Qt::Key_Backspace, Qt::Key_Left, Qt::Key_Left, Qt::Key_Left})
        key(view(), k);
    key(view(), Qt::Key_End, Qt::ShiftModifier);
    typeKeys(view(), "X");
    testo().setSelStart(0);
    typeKeys(view(), "Y\t");
    QStringList states{state()};

    // The clipboard keys copy RTF, and a paste brings its format.
    select(8, 1);
    testo().setSelItalic(true);
    key(view(), Qt::Key_C, Qt::ControlModifier);
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    EXPECT_TRUE(mime && (mime->hasFormat("text/rtf") || mime->hasFormat("application/rtf")));
    key(view(), Qt::Key_End);
    key(view(), Qt::Key_V, Qt::ControlModifier);
    key(view(), Qt::Key_Insert, Qt::ShiftModifier);
    states << state();
    select(9, 2);
    EXPECT_EQ(testo().SelItalic(), std::optional(true));
    key(view(), Qt::Key_X, Qt::ControlModifier);
    key(view(), Qt::Key_Delete, Qt::ShiftModifier);  // nothing selected: nothing cut

    // Handlers of the keys see them first and may swallow or change them:
    // "£" becomes the euro sign, 128 in the 8-bit code page.
    QList<int> downs;
    QObject::connect(&testo(), &RichTextSurface::KeyDown,
                     [&](int& code, int& shift) { downs << code * 10 + shift; code = code == 'Q' ? 0 : code; });
    QObject::connect(&testo(), &RichTextSurface::KeyPress, [](int& k) { k = k == 0xA3 ? 128 : k == '#' ? 0 : k; });
    typeKeys(view(), "aq#£");
    key(view(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    // A format set at a bare caret applies to what is typed next, only.
    testo().setSelBold(true);
    typeKeys(view(), "b");
    EXPECT_EQ(states << state(), (QStringList{"Y\t^Ciao\r\nX", "Y\tCiao\r\nXXX^", "Y\tCiao\r\nXa€b^"}));
    EXPECT_EQ(downs, (QList<int>{'A' * 10, 'Q' * 10, 'C' * 10 + 3, 'B' * 10}));
    select(11, 1);
    const std::optional<bool> typed = testo().SelBold();
    select(9, 3);
    EXPECT_EQ(std::pair(typed, testo().SelBold()), std::pair(std::optional(true), std::optional<bool>()));
    // The program keeps its own undo; the view must not switch Qt's on.
    EXPECT_FALSE(testo().document()->isUndoRedoEnabled());
}

TEST_F(MainWindowTest, TheViewFollowsTheZoomTheWindowAndTheMouse)
{
    auto wrapsAtTheWindow = [this](qreal zoom) {
        EXPECT_DOUBLE_EQ(view()->transform().m11(), zoom);
        EXPECT_NEAR(testo().textWidth() * zoom, view()->viewport()->width(), 2);
        EXPECT_DOUBLE_EQ(view()->textItem()->textWidth(), testo().textWidth());
    };
    wrapsAtTheWindow(1);
    testo().SetZoom(2, 1);
    wrapsAtTheWindow(2);
    const int width = view()->viewport()->width();
    window.resize(1000, 600);
    QApplication::processEvents();
    EXPECT_GT(view()->viewport()->width(), width);
    wrapsAtTheWindow(2);
    testo().SetZoom(0, 0);
    wrapsAtTheWindow(1);
    testo().setBackColor(0xFF0000);  // 0x00BBGGRR: blue
    EXPECT_EQ(view()->backgroundBrush().color(), QColor(0, 0, 255));

    // Every button is reported, but only the left one moves the caret; far
    // below the text it goes to the end of it.
    typeKeys(view(), "uno due");
    QList<int> carets, buttons, xs;
    QObject::connect(&testo(), &RichTextSurface::MouseDown, [&](int b, int, int x, int) { buttons << b; xs << x; });
    for (const auto& [b, at] : {std::pair{Qt::RightButton, QPoint(2, 5)}, {Qt::LeftButton, QPoint(2, 5)},
                                {Qt::LeftButton, QPoint(300, 500)}}) {
        const QPoint global = view()->viewport()->mapToGlobal(at);
        QMouseEvent press(QEvent::MouseButtonPress, at, global, b, b, Qt::NoModifier);
        QCoreApplication::sendEvent(view()->viewport(), &press);
        QMouseEvent release(QEvent::MouseButtonRelease, at, global, b, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view()->viewport(), &release);
        carets << testo().SelStart();
    }
    EXPECT_EQ(std::pair(carets, buttons), std::pair(QList<int>{7, 0, 7}, QList<int>{2, 1, 1}));
    // Twips from the text's corner: 15 to the pixel at 96 dots an inch.
    const qreal perPixel = 1440.0 / view()->logicalDpiX();
    EXPECT_NEAR(xs.last(), 300 * perPixel, perPixel);
}

TEST_F(MainWindowTest, OpenGoesThroughTheChooserAndTheWindowShowsIt)
{
    QFile f(t.folder.filePath("appunti.txt"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.write("prima\r\nseconda") == 14);
    f.close();
    t.dialogs->openPath = f.fileName();
    window.action("mnuApri")->trigger();
    EXPECT_EQ((QStringList{window.windowTitle(), window.statusPanel(1)->text(), testo().Text()}),
              (QStringList{"Tornelia - appunti.txt", "Documento aperto: " + f.fileName(), "prima\r\nseconda"}));
    EXPECT_FALSE(window.progressStrip()->isVisible());
    EXPECT_TRUE(t.messages->said.isEmpty());
}

// Closing asks only about a change. "si" on a document without a name goes
// through the save dialog; given up there, the window stays.
TEST_F(MainWindowTest, ClosingAsksAboutUnsavedWork)
{
    auto closeAnswering = [this](const char* answer) { t.messages->answers = {answer}; return window.close(); };
    QList<bool> closed{window.close()};
    window.show();
    typeKeys(view(), "ciao");
    closed << closeAnswering("an") << closeAnswering("si");
    t.dialogs->savePath = t.folder.filePath("chiusura.txt");
    closed << closeAnswering("si");
    window.show();
    typeKeys(view(), "!");
    closed << closeAnswering("no");
    EXPECT_EQ(closed, (QList<bool>{true, false, false, true, true}));
    QFile saved(*t.dialogs->savePath);
    EXPECT_EQ(saved.open(QIODevice::ReadOnly) ? saved.readAll() : "<missing>", "ciao");
    EXPECT_EQ(t.messages->said,
              QStringList(4, "Salva | Il file è stato modificato. Vuoi salvare le modifiche? | 3 | 0"));
}

TEST(MessageDialogTest, LettersPressTheButtonsThatAreThere)
{
    QStringList answers;
    for (const auto& [buttons, k, text] :
         {std::tuple{3, Qt::Key_S, "s"}, {3, Qt::Key_N, "N"}, {3, Qt::Key_A, "a"}, {3, Qt::Key_Escape, ""},
          {2, Qt::Key_A, "a"}, {2, Qt::Key_Escape, ""}, {0, Qt::Key_S, "s"}, {0, Qt::Key_O, "o"},
          {1, Qt::Key_O, "o"}, {1, Qt::Key_A, "a"}, {1, Qt::Key_Escape, ""}, {1, Qt::Key_S, "s"}}) {
        MessageDialog d("Titolo", "Testo", buttons, 4);
        d.show();
        key(&d, k, Qt::NoModifier, text);
        answers << (d.isVisible() ? "open" : d.answer());
    }
    EXPECT_EQ(answers,
              (QStringList{"si", "no", "an", "an", "open", "no", "open", "ok", "ok", "an", "an", "open"}));

    MessageDialog d("Titolo", "Testo", 3, 1);
    EXPECT_EQ((QStringList{d.windowTitle(), d.button("si")->text(), d.button("no")->text(), d.button("an")->text()}),
              (QStringList{"Titolo", "Sì", "No", "Annulla"}));
}

}  // namespace
}  // namespace tornelia
