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
    int itemCaret() { return view()->textItem()->textCursor().position(); }

    testing::TestContext t;
    MainWindow window;
};

TEST_F(MainWindowTest, TypedTextReachesTheDocumentAndTheCaretsStayOne)
{
    typeKeys(view(), QStringLiteral("Ciao"));
    key(view(), Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
    typeKeys(view(), QStringLiteral("mondo"));
    EXPECT_EQ(testo().Text(), QStringLiteral("Ciao\r\nmondo"));
    EXPECT_EQ(testo().SelStart(), 11);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Tornelia - Documento 1"));
    EXPECT_TRUE(t.context->document().fileCambiato());

    // Keys that edit or move without typing go to the view's text item; the
    // surface follows it.
    key(view(), Qt::Key_Backspace);
    key(view(), Qt::Key_Backspace);
    EXPECT_EQ(testo().Text(), QStringLiteral("Ciao\r\nmon"));
    key(view(), Qt::Key_Left);
    key(view(), Qt::Key_Left);
    key(view(), Qt::Key_Left);
    key(view(), Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(testo().SelStart(), 6);
    EXPECT_EQ(testo().SelLength(), 3);
    EXPECT_EQ(testo().SelText(), QStringLiteral("mon"));
    typeKeys(view(), QStringLiteral("X"));
    EXPECT_EQ(testo().Text(), QStringLiteral("Ciao\r\nX"));

    // And the view follows the surface when the logic moves the caret.
    testo().setSelStart(0);
    EXPECT_EQ(itemCaret(), 0);
    typeKeys(view(), QStringLiteral("Y"));
    key(view(), Qt::Key_Tab, Qt::NoModifier, QStringLiteral("\t"));
    EXPECT_EQ(testo().Text(), QStringLiteral("Y\tCiao\r\nX"));
    EXPECT_EQ(itemCaret(), 2);
    // The program keeps its own undo; the view must not switch Qt's on.
    EXPECT_FALSE(testo().document()->isUndoRedoEnabled());
}

TEST_F(MainWindowTest, KeyHandlersSwallowOrChangeWhatIsTyped)
{
    QList<int> downs;
    QObject::connect(&testo(), &RichTextSurface::KeyDown, [&downs](int& code, int& shift) {
        downs.append(code * 10 + shift);
        if (code == 'Q')
            code = 0;
    });
    QObject::connect(&testo(), &RichTextSurface::KeyPress, [](int& k) {
        if (k == 0xA3)  // "£" becomes the euro sign, 128 in the 8-bit code page
            k = 128;
        if (k == '#')
            k = 0;
    });
    typeKeys(view(), QStringLiteral("aq#"));
    key(view(), Qt::Key_sterling, Qt::NoModifier, QStringLiteral("£"));
    key(view(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(testo().Text(), QStringLiteral("a€"));
    EXPECT_EQ(downs, (QList<int>{'A' * 10, 'Q' * 10, 'C' * 10 + 3}));

    // A format set at a bare caret applies to what is typed next.
    testo().setSelBold(true);
    typeKeys(view(), QStringLiteral("b"));
    testo().setSelStart(2);
    testo().setSelLength(1);
    EXPECT_EQ(testo().SelBold(), std::optional<bool>(true));
    testo().setSelStart(0);
    testo().setSelLength(3);
    EXPECT_EQ(testo().SelBold(), std::nullopt);
}

TEST_F(MainWindowTest, ClipboardKeysGoThroughTheSurface)
{
    typeKeys(view(), QStringLiteral("abc"));
    testo().setSelStart(0);
    testo().setSelLength(3);
    testo().setSelItalic(true);
    key(view(), Qt::Key_C, Qt::ControlModifier);
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    ASSERT_NE(mime, nullptr);
    EXPECT_TRUE(mime->hasFormat(QStringLiteral("text/rtf")) || mime->hasFormat(QStringLiteral("application/rtf")));

    key(view(), Qt::Key_End);
    key(view(), Qt::Key_V, Qt::ControlModifier);
    key(view(), Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_EQ(testo().Text(), QStringLiteral("abcabcabc"));
    EXPECT_EQ(itemCaret(), 9);
    // The pasted copies keep the format the RTF carried.
    testo().setSelStart(3);
    testo().setSelLength(6);
    EXPECT_EQ(testo().SelItalic(), std::optional<bool>(true));

    key(view(), Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(testo().Text(), QStringLiteral("abc"));
    key(view(), Qt::Key_Delete, Qt::ShiftModifier);  // nothing selected: nothing cut
    EXPECT_EQ(testo().Text(), QStringLiteral("abc"));
}

TEST_F(MainWindowTest, ZoomScalesTheViewAndTheTextWrapsAtTheWindowsWidth)
{
    const int width = view()->viewport()->width();
    EXPECT_NEAR(testo().textWidth(), width, 2);

    testo().SetZoom(2, 1);
    EXPECT_DOUBLE_EQ(view()->transform().m11(), 2.0);
    EXPECT_NEAR(testo().textWidth(), width / 2.0, 2);
    EXPECT_DOUBLE_EQ(view()->textItem()->textWidth(), testo().textWidth());

    window.resize(1000, 600);
    QApplication::processEvents();
    const int wider = view()->viewport()->width();
    EXPECT_GT(wider, width);
    EXPECT_NEAR(testo().textWidth(), wider / 2.0, 2);

    testo().SetZoom(0, 0);
    EXPECT_DOUBLE_EQ(view()->transform().m11(), 1.0);
    EXPECT_NEAR(testo().textWidth(), wider, 2);

    // 0x00BBGGRR: this is blue.
    testo().setBackColor(0xFF0000);
    EXPECT_EQ(view()->backgroundBrush().color(), QColor(0, 0, 255));
}

TEST_F(MainWindowTest, MouseButtonsAreReportedAndOnlyTheLeftMovesTheCaret)
{
    typeKeys(view(), QStringLiteral("uno due"));
    QList<QList<int>> downs;
    QObject::connect(&testo(), &RichTextSurface::MouseDown,
                     [&downs](int button, int shift, int x, int y) { downs.append({button, shift, x, y}); });
    auto click = [this](Qt::MouseButton b, QPoint at) {
        QMouseEvent press(QEvent::MouseButtonPress, at, view()->viewport()->mapToGlobal(at), b, b, Qt::NoModifier);
        QCoreApplication::sendEvent(view()->viewport(), &press);
        QMouseEvent release(QEvent::MouseButtonRelease, at, view()->viewport()->mapToGlobal(at), b, Qt::NoButton,
                            Qt::NoModifier);
        QCoreApplication::sendEvent(view()->viewport(), &release);
    };
    click(Qt::RightButton, QPoint(2, 5));
    EXPECT_EQ(testo().SelStart(), 7);
    click(Qt::LeftButton, QPoint(2, 5));
    EXPECT_EQ(testo().SelStart(), 0);
    EXPECT_EQ(itemCaret(), 0);
    // Far below the text the caret goes to the end of it.
    click(Qt::LeftButton, QPoint(300, 500));
    EXPECT_EQ(testo().SelStart(), 7);
    ASSERT_EQ(downs.size(), 3);
    EXPECT_EQ(downs[0][0], 2);
    EXPECT_EQ(downs[1][0], 1);
    EXPECT_EQ(downs[2][0], 1);
    // Twips from the text's corner: 15 to the pixel at 96 dots an inch.
    const qreal perPixel = 1440.0 / view()->logicalDpiX();
    EXPECT_NEAR(downs[2][2], 300 * perPixel, perPixel);
}

TEST_F(MainWindowTest, FileMenuHasItsCommandsInOrder)
{
    QStringList captions;
    for (QAction* a : window.fileMenu()->actions())
        captions.append(a->isSeparator() ? QStringLiteral("-") : a->text());
    EXPECT_EQ(window.fileMenu()->title(), QStringLiteral("&File"));
    EXPECT_EQ(captions, (QStringList{
                            QStringLiteral("&Nuovo..."),
                            QStringLiteral("Nuova sessione di Tornelia...          "),
                            QStringLiteral("-"),
                            QStringLiteral("&Apri"),
                            QStringLiteral("&Salva"),
                            QStringLiteral("Salva con nome..."),
                            QStringLiteral("-"),
                            QStringLiteral("E&limina file corrente"),
                            QStringLiteral("&Proprietà file corrente..."),
                            QStringLiteral("-"),
                            QStringLiteral("Esci"),
                        }));
    EXPECT_EQ(window.action(QStringLiteral("mnuNuovo"))->shortcut(), QKeySequence(QStringLiteral("Ctrl+N")));
    EXPECT_EQ(window.action(QStringLiteral("mnuApri"))->shortcut(), QKeySequence(QStringLiteral("Ctrl+O")));
    EXPECT_EQ(window.action(QStringLiteral("mnuSalva"))->shortcut(), QKeySequence(QStringLiteral("Ctrl+S")));
    EXPECT_EQ(window.statusPanel(1)->text(), QStringLiteral("Nessun documento salvato"));

    // "&Apri" goes through the chooser to the document, and the window shows
    // what the open did.
    const QString file = t.folder.filePath(QStringLiteral("appunti.txt"));
    {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("prima\r\nseconda");
    }
    t.dialogs->openPath = file;
    window.action(QStringLiteral("mnuApri"))->trigger();
    EXPECT_EQ(testo().Text(), QStringLiteral("prima\r\nseconda"));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Tornelia - appunti.txt"));
    EXPECT_EQ(window.statusPanel(1)->text(), QStringLiteral("Documento aperto: ") + file);
    EXPECT_FALSE(window.progressStrip()->isVisible());
    EXPECT_TRUE(t.messages->said.isEmpty());
}

TEST_F(MainWindowTest, ClosingAsksAboutUnsavedWork)
{
    const RecordedMessage question{QStringLiteral("Salva"),
                                   QStringLiteral("Il file è stato modificato. Vuoi salvare le modifiche?"), 3, 0};
    auto said = [this] {
        QList<QStringList> out;
        for (const RecordedMessage& m : t.messages->said)
            out.append({m.title, m.text, QString::number(m.buttons), QString::number(m.icon)});
        return out;
    };
    const QStringList asked{question.title, question.text, QStringLiteral("3"), QStringLiteral("0")};

    // Nothing typed: no question.
    EXPECT_TRUE(window.close());
    EXPECT_TRUE(said().isEmpty());
    window.show();

    typeKeys(view(), QStringLiteral("ciao"));
    t.messages->answers = {QStringLiteral("an")};
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(testo().Text(), QStringLiteral("ciao"));

    // "si" on a document without a name goes through the save dialog; given
    // up there, the window stays.
    t.messages->answers = {QStringLiteral("si")};
    EXPECT_FALSE(window.close());
    const QString file = t.folder.filePath(QStringLiteral("chiusura.txt"));
    t.dialogs->savePath = file;
    t.messages->answers = {QStringLiteral("si")};
    EXPECT_TRUE(window.close());
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray("ciao"));
    EXPECT_EQ(said(), (QList<QStringList>{asked, asked, asked}));

    window.show();
    typeKeys(view(), QStringLiteral("!"));
    t.messages->answers = {QStringLiteral("no")};
    EXPECT_TRUE(window.close());
}

TEST(MessageDialogTest, LettersPressTheButtonsThatAreThere)
{
    auto answerAfter = [](int buttons, int k, const QString& text) {
        MessageDialog d(QStringLiteral("Titolo"), QStringLiteral("Testo"), buttons, 4);
        d.show();
        key(&d, k, Qt::NoModifier, text);
        const bool closed = !d.isVisible();
        return closed ? d.answer() : QStringLiteral("open");
    };
    EXPECT_EQ(answerAfter(3, Qt::Key_S, QStringLiteral("s")), QStringLiteral("si"));
    EXPECT_EQ(answerAfter(3, Qt::Key_N, QStringLiteral("N")), QStringLiteral("no"));
    EXPECT_EQ(answerAfter(3, Qt::Key_A, QStringLiteral("a")), QStringLiteral("an"));
    EXPECT_EQ(answerAfter(3, Qt::Key_Escape, QString()), QStringLiteral("an"));
    EXPECT_EQ(answerAfter(2, Qt::Key_A, QStringLiteral("a")), QStringLiteral("open"));
    EXPECT_EQ(answerAfter(2, Qt::Key_Escape, QString()), QStringLiteral("no"));
    EXPECT_EQ(answerAfter(0, Qt::Key_S, QStringLiteral("s")), QStringLiteral("open"));
    EXPECT_EQ(answerAfter(0, Qt::Key_O, QStringLiteral("o")), QStringLiteral("ok"));

    MessageDialog d(QStringLiteral("Titolo"), QStringLiteral("Testo"), 3, 1);
    QStringList captions;
    for (const QString& a : {QStringLiteral("si"), QStringLiteral("no"), QStringLiteral("an")})
        captions.append(d.button(a)->text());
    EXPECT_EQ(captions, (QStringList{QStringLiteral("Sì"), QStringLiteral("No"), QStringLiteral("Annulla")}));
    EXPECT_EQ(d.windowTitle(), QStringLiteral("Titolo"));
}

}  // namespace
}  // namespace tornelia
