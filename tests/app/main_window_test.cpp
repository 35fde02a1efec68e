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

void key(QWidget* w, int k, Qt::KeyboardModifiers mods = Qt::NoModifier, const QString& text = {})
{
    QKeyEvent down(QEvent::KeyPress, k, mods, text);
    QCoreApplication::sendEvent(w, &down);
    QKeyEvent up(QEvent::KeyRelease, k, mods, text);
    QCoreApplication::sendEvent(w, &up);
}

void typeKeys(QWidget* w, const QString& text)
{
    for (const QChar c : text)
        key(w, c.toUpper().unicode(), c.isUpper() ? Qt::ShiftModifier : Qt::NoModifier, QString(c));
}

class MainWindowTest : public ::testing::Test {
protected:
    MainWindowTest() : window(*t.context)
    {
        t.context->document().Novo(0);
        window.resize(800, 600);
        window.show();
        window.activateWindow();
        window.editor()->setFocus();
        QApplication::processEvents();
    }

    RichTextSurface& testo() { return t.context->testo(); }
    EditorView* view() { return window.editor(); }
    // The surface's caret and the view's, which must stay one.
    std::pair<int, int> carets() { return {testo().SelStart(), view()->textItem()->textCursor().position()}; }
    void select(int start, int length)
    {
        testo().setSelStart(start);
        testo().setSelLength(length);
    }

    testing::TestContext t;
    MainWindow window;
};

TEST_F(MainWindowTest, TypedTextReachesTheDocumentAndTheCaretsStayOne)
{
    typeKeys(view(), "Ciao");
    key(view(), Qt::Key_Return, Qt::NoModifier, "\r");
    typeKeys(view(), "mondo");
    EXPECT_EQ(testo().Text(), "Ciao\r\nmondo");

    // Keys that edit or move without typing go to the view's text item; the
    // surface follows it.
    for (const int k : {Qt::Key_Backspace, Qt::Key_Backspace, Qt::Key_Left, Qt::Key_Left, Qt::Key_Left})
        key(view(), k);
    key(view(), Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(testo().SelText(), "mon");
    typeKeys(view(), "X");

    // And the view follows the surface when the logic moves the caret.
    testo().setSelStart(0);
    typeKeys(view(), "Y");
    key(view(), Qt::Key_Tab, Qt::NoModifier, "\t");
    EXPECT_EQ(testo().Text(), "Y\tCiao\r\nX");
    EXPECT_EQ(carets(), std::pair(2, 2));
    // The program keeps its own undo; the view must not switch Qt's on.
    EXPECT_FALSE(testo().document()->isUndoRedoEnabled());
}

TEST_F(MainWindowTest, KeyHandlersSwallowOrChangeWhatIsTyped)
{
    QList<int> downs;
    QObject::connect(&testo(), &RichTextSurface::KeyDown, [&downs](int& code, int& shift) {
        downs.append(code * 10 + shift);
        code = code == 'Q' ? 0 : code;
    });
    // "£" becomes the euro sign, 128 in the 8-bit code page; "#" is swallowed.
    QObject::connect(&testo(), &RichTextSurface::KeyPress, [](int& k) { k = k == 0xA3 ? 128 : k == '#' ? 0 : k; });
    typeKeys(view(), "aq#");
    key(view(), Qt::Key_sterling, Qt::NoModifier, "£");
    key(view(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(testo().Text(), "a€");
    EXPECT_EQ(downs, (QList<int>{'A' * 10, 'Q' * 10, 'C' * 10 + 3}));

    // A format set at a bare caret applies to what is typed next, only.
    testo().setSelBold(true);
    typeKeys(view(), "b");
    select(2, 1);
    EXPECT_EQ(testo().SelBold(), std::optional(true));
    select(0, 3);
    EXPECT_EQ(testo().SelBold(), std::nullopt);
}

TEST_F(MainWindowTest, ClipboardKeysGoThroughTheSurface)
{
    typeKeys(view(), "abc");
    select(0, 3);
    testo().setSelItalic(true);
    key(view(), Qt::Key_C, Qt::ControlModifier);
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    EXPECT_TRUE(mime && (mime->hasFormat("text/rtf") || mime->hasFormat("application/rtf")));

    key(view(), Qt::Key_End);
    key(view(), Qt::Key_V, Qt::ControlModifier);
    key(view(), Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_EQ(testo().Text(), "abcabcabc");
    EXPECT_EQ(carets(), std::pair(9, 9));
    select(3, 6);
    EXPECT_EQ(testo().SelItalic(), std::optional(true));  // the format the RTF carried

    key(view(), Qt::Key_X, Qt::ControlModifier);
    key(view(), Qt::Key_Delete, Qt::ShiftModifier);  // nothing selected: nothing cut
    EXPECT_EQ(testo().Text(), "abc");
}

TEST_F(MainWindowTest, ZoomScalesTheViewAndTheTextWrapsAtTheWindowsWidth)
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
}

TEST_F(MainWindowTest, MouseButtonsAreReportedAndOnlyTheLeftMovesTheCaret)
{
    typeKeys(view(), "uno due");
    QList<int> buttons, carets, xs;
    QObject::connect(&testo(), &RichTextSurface::MouseDown, [&](int b, int, int x, int) { buttons << b; xs << x; });
    // Far below the text the caret goes to the end of it.
    for (const auto& [b, at] : {std::pair{Qt::RightButton, QPoint(2, 5)}, {Qt::LeftButton, QPoint(2, 5)},
                                {Qt::LeftButton, QPoint(300, 500)}}) {
        const QPoint global = view()->viewport()->mapToGlobal(at);
        QMouseEvent press(QEvent::MouseButtonPress, at, global, b, b, Qt::NoModifier);
        QCoreApplication::sendEvent(view()->viewport(), &press);
        QMouseEvent release(QEvent::MouseButtonRelease, at, global, b, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view()->viewport(), &release);
        carets << testo().SelStart();
    }
    EXPECT_EQ(carets, (QList<int>{7, 0, 7}));
    EXPECT_EQ(buttons, (QList<int>{2, 1, 1}));
    // Twips from the text's corner: 15 to the pixel at 96 dots an inch.
    const qreal perPixel = 1440.0 / view()->logicalDpiX();
    EXPECT_NEAR(xs.last(), 300 * perPixel, perPixel);
}

TEST_F(MainWindowTest, FileMenuHasItsCommandsInOrderAndOpens)
{
    QStringList entries{window.fileMenu()->title()};
    for (QAction* a : window.fileMenu()->actions())
        entries << (a->isSeparator()          ? "-"
                    : a->shortcut().isEmpty() ? a->text()
                                              : a->text() + " " + a->shortcut().toString());
    EXPECT_EQ(entries, (QStringList{"&File", "&Nuovo... Ctrl+N", "Nuova sessione di Tornelia...          ", "-",
                                    "&Apri Ctrl+O", "&Salva Ctrl+S", "Salva con nome...", "-", "E&limina file corrente",
                                    "&Proprietà file corrente...", "-", "Esci"}));

    // "&Apri" goes through the chooser to the document, and the window shows
    // what the open did.
    const QString file = t.folder.filePath("appunti.txt");
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.write("prima\r\nseconda") == 14);
    f.close();
    t.dialogs->openPath = file;
    window.action("mnuApri")->trigger();
    EXPECT_EQ((QStringList{window.windowTitle(), window.statusPanel(1)->text(), testo().Text()}),
              (QStringList{"Tornelia - appunti.txt", "Documento aperto: " + file, "prima\r\nseconda"}));
    EXPECT_FALSE(window.progressStrip()->isVisible());
    EXPECT_TRUE(t.messages->said.isEmpty());
}

TEST_F(MainWindowTest, ClosingAsksAboutUnsavedWork)
{
    auto closeAnswering = [this](const char* answer) {
        t.messages->answers = {answer};
        return window.close();
    };
    QList<bool> closed{window.close()};  // nothing typed: no question
    window.show();
    typeKeys(view(), "ciao");
    // "si" on a document without a name goes through the save dialog; given
    // up there, the window stays.
    closed << closeAnswering("an") << closeAnswering("si");
    const QString file = t.folder.filePath("chiusura.txt");
    t.dialogs->savePath = file;
    closed << closeAnswering("si");
    window.show();
    typeKeys(view(), "!");
    closed << closeAnswering("no");
    EXPECT_EQ(closed, (QList<bool>{true, false, false, true, true}));

    QFile f(file);
    EXPECT_EQ(f.open(QIODevice::ReadOnly) ? f.readAll() : "<missing>", "ciao");
    QStringList said;
    for (const RecordedMessage& m : t.messages->said)
        said << QStringList{m.title, m.text, QString::number(m.buttons), QString::number(m.icon)}.join(" | ");
    EXPECT_EQ(said, QStringList(4, "Salva | Il file è stato modificato. Vuoi salvare le modifiche? | 3 | 0"));
}

TEST(MessageDialogTest, LettersPressTheButtonsThatAreThere)
{
    QStringList answers;
    for (const auto& [buttons, k, text] :
         {std::tuple{3, Qt::Key_S, "s"}, {3, Qt::Key_N, "N"}, {3, Qt::Key_A, "a"}, {3, Qt::Key_Escape, ""},
          {2, Qt::Key_A, "a"}, {2, Qt::Key_Escape, ""}, {0, Qt::Key_S, "s"}, {0, Qt::Key_O, "o"}}) {
        MessageDialog d("Titolo", "Testo", buttons, 4);
        d.show();
        key(&d, k, Qt::NoModifier, text);
        answers << (d.isVisible() ? "open" : d.answer());
    }
    EXPECT_EQ(answers, (QStringList{"si", "no", "an", "an", "open", "no", "open", "ok"}));

    MessageDialog d("Titolo", "Testo", 3, 1);
    EXPECT_EQ((QStringList{d.windowTitle(), d.button("si")->text(), d.button("no")->text(), d.button("an")->text()}),
              (QStringList{"Titolo", "Sì", "No", "Annulla"}));
}

}  // namespace
}  // namespace tornelia
