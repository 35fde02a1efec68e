// Typing assistance in the window: the dialog that picks the corrections,
// the undo store and the handlers the context wires to the document, and the
// arrows shown where Wingdings is missing.
#include "app/frm_cor.h"
#include "app/main_window.h"
#include "controls/editor_view.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QGraphicsTextItem>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QPainter>
#include <QPushButton>
#include <QStyleOptionGraphicsItem>
#include <QTextBlock>
#include <QTextLayout>
#include <QTimer>

#include <optional>

namespace tornelia {
namespace {

QStringList listed(const FrmCor& dialog)
{
    QStringList items;
    for (int i = 0; i < dialog.list()->count(); ++i) {
        const QListWidgetItem* item = dialog.list()->item(i);
        items << (item->checkState() == Qt::Checked ? "[x] " : "[ ] ") + item->text();
    }
    return items;
}

QStringList corrKeys(const SettingsStore& settings)
{
    QStringList values;
    for (int i = 1; i <= 9; ++i)
        values << settings.leggiReg({}, QStringLiteral("Corr"), QString::number(i), QStringLiteral("-"));
    return values;
}

void typeKeys(QWidget* w, const QString& text)
{
    for (const QChar c : text) {
        const int k = c == u',' ? Qt::Key_Comma : c == u'-' ? Qt::Key_Minus : c.toUpper().unicode();
        QKeyEvent down(QEvent::KeyPress, k, c.isUpper() ? Qt::ShiftModifier : Qt::NoModifier, QString(c));
        QCoreApplication::sendEvent(w, &down);
        QKeyEvent up(QEvent::KeyRelease, k, c.isUpper() ? Qt::ShiftModifier : Qt::NoModifier, QString(c));
        QCoreApplication::sendEvent(w, &up);
    }
}

}  // namespace

TEST(FrmCorTest, ShowsTheNineCorrectionsAndWritesThemOnlyOnConfirm)
{
    testing::TestContext t;
    SettingsStore& settings = t.context->settings();
    settings.scriviReg({}, QStringLiteral("Corr"), QStringLiteral("2"), QStringLiteral("True"));
    settings.scriviReg({}, QStringLiteral("Corr"), QStringLiteral("9"), QStringLiteral("True"));

    {
        FrmCor dialog(settings);
        EXPECT_EQ(dialog.objectName(), QStringLiteral("frmCor"));
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Correzioni automatiche"));
        const QLabel* label = dialog.findChild<QLabel*>();
        ASSERT_NE(label, nullptr);
        EXPECT_EQ(label->text(), QStringLiteral("Seleziona le correzioni da applicare:"));
        EXPECT_EQ(listed(dialog), (QStringList{
                                      "[ ] Maiuscola automatica dopo il punto",
                                      "[x] Spazio automatico dopo la virgola",
                                      "[ ] Spazio automatico dopo il punto e virgola",
                                      "[ ] Spazio automatico dopo i due punti",
                                      "[ ] Sostituisci (c) con ©",
                                      "[ ] Sostituisci (r) con ®",
                                      "[ ] Sostituisci  (tm) con ™",
                                      "[ ] Sostituisci £ con €",
                                      "[x] Sostituisci -> <- con frecce",
                                  }));

        // u2 leaves the settings as they were.
        dialog.list()->item(0)->setCheckState(Qt::Checked);
        dialog.cancelButton()->click();
        EXPECT_EQ(dialog.result(), QDialog::Rejected);
        EXPECT_EQ(corrKeys(settings).join(u' '), QStringLiteral("- True - - - - - - True"));
    }
    {
        // u1 writes all nine keys.
        FrmCor dialog(settings);
        dialog.list()->item(0)->setCheckState(Qt::Checked);
        dialog.list()->item(8)->setCheckState(Qt::Unchecked);
        dialog.confirmButton()->click();
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
        EXPECT_EQ(corrKeys(settings).join(u' '), QStringLiteral("True True False False False False False False False"));
    }
}

class TypingWindowTest : public ::testing::Test {
protected:
    TypingWindowTest() : window(*t.context)
    {
        t.context->document().Novo(0);
        window.resize(800, 600);
        window.show();
        window.activateWindow();
        window.editor()->setFocus();
        QApplication::processEvents();
    }

    RichTextSurface& testo() { return t.context->testo(); }

    testing::TestContext t;
    MainWindow window;
};

TEST_F(TypingWindowTest, CorrectionsEntryOfTheViewMenuOpensTheDialog)
{
    QAction* entry = window.action(QStringLiteral("mnuCorrezioneAutomatica"));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->text(), QStringLiteral("Correzione automatica..."));
    ASSERT_NE(window.viewMenu(), nullptr);
    EXPECT_EQ(window.viewMenu()->title(), QStringLiteral("&Visualizza"));
    EXPECT_TRUE(window.viewMenu()->actions().contains(entry));
    const QList<QAction*> bar = window.menuBar()->actions();
    EXPECT_EQ(bar.indexOf(window.viewMenu()->menuAction()), bar.indexOf(window.fileMenu()->menuAction()) + 1);

    // The dialog, confirmed, turns the rule on for the next key.
    QString shown;
    QTimer::singleShot(0, [&shown] {
        auto* dialog = qobject_cast<FrmCor*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        shown = dialog->windowTitle();
        dialog->list()->item(1)->setCheckState(Qt::Checked);
        dialog->confirmButton()->click();
    });
    entry->trigger();
    EXPECT_EQ(shown, QStringLiteral("Correzioni automatiche"));
    typeKeys(window.editor(), QStringLiteral("a,b"));
    EXPECT_EQ(testo().Text(), QStringLiteral("a, b"));
}

TEST_F(TypingWindowTest, UndoStoreFollowsTheDocumentAndTheSettings)
{
    UndoStore& undo = t.context->undo();
    EXPECT_FALSE(undo.annullaOff());
    typeKeys(window.editor(), QStringLiteral("uno due tre"));
    EXPECT_EQ(undo.passoTot(), 2);
    // A new document empties the store.
    t.messages->answers = {QStringLiteral("no")};
    t.context->document().Novo(0);
    EXPECT_EQ(undo.passoTot(), 0);
    EXPECT_EQ(undo.passoCorr(), 0);

    // Undo switched off by the settings stays off from the start.
    testing::TestContext off;
    off.context.reset();
    SettingsStore(off.folder.filePath(QStringLiteral("settings")))
        .scriviReg({}, QStringLiteral("Ann"), QStringLiteral("1"), QStringLiteral("True"));
    off.context = std::make_unique<AppContext>(
        Ports{std::make_unique<testing::AnsweringMessagePort>(), std::make_unique<testing::SaveAsDialogPort>(),
              std::make_unique<ScriptedShellPort>()},
        off.folder.filePath(QStringLiteral("settings")));
    EXPECT_TRUE(off.context->undo().annullaOff());
}

// The corrections select what they replace and put the caret back; the
// view must follow each move, down to a selection that collapses on its end.
TEST_F(TypingWindowTest, CorrectionsTypedInTheViewLeaveTheCaretsOne)
{
    writeCorrections(t.context->settings(), {false, true, false, false, true, false, false, false, true});
    const auto keyOf = [](QChar c) {
        switch (c.unicode()) {
        case u'(': return int(Qt::Key_ParenLeft);
        case u')': return int(Qt::Key_ParenRight);
        case u'>': return int(Qt::Key_Greater);
        case u'-': return int(Qt::Key_Minus);
        case u',': return int(Qt::Key_Comma);
        default: return int(c.toUpper().unicode());
        }
    };
    QStringList seen;
    for (const QChar c : QStringLiteral("x(c)y,z->")) {
        QKeyEvent down(QEvent::KeyPress, keyOf(c), Qt::NoModifier, QString(c));
        QCoreApplication::sendEvent(window.editor(), &down);
        const QTextCursor item = window.editor()->textItem()->textCursor();
        seen << QStringLiteral("%1 %2/%3").arg(testo().SelStart()).arg(item.anchor()).arg(item.position());
    }
    EXPECT_EQ(testo().Text(), QStringLiteral("x©y, z\uF0E0"));
    EXPECT_EQ(seen.join(u' ').toStdString(), "1 1/1 2 2/2 3 3/3 2 2/2 3 3/3 5 5/5 6 6/6 7 7/7 7 7/7");
}

// Where Wingdings is missing the arrows it holds are still drawn as arrows,
// and the document keeps its characters.
TEST_F(TypingWindowTest, WingdingsArrowsShowAsArrows)
{
    testo().setTextRTF(QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Tahoma;}"
                                      "{\\f1\\fnil\\fcharset2 Wingdings;}}\\f0\\fs40 a \\f1\\'df\\f0  b \\f1\\'e0\\f0  c\\par}"));
    const QString text = testo().Text();
    const QString rtf = testo().TextRTF();
    ASSERT_EQ(text, QStringLiteral("a \uF0DF b \uF0E0 c"));

    QGraphicsTextItem* item = window.editor()->textItem();
    const QRectF bounds = item->boundingRect();
    QImage image(bounds.size().toSize(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    {
        QPainter p(&image);
        QStyleOptionGraphicsItem option;
        option.exposedRect = bounds;
        item->paint(&p, &option, nullptr);
    }
    EXPECT_EQ(testo().Text(), text);
    EXPECT_EQ(testo().TextRTF(), rtf);

    // The ink of an arrow leans towards its head; a box, a lozenge or any
    // other stand-in is balanced.
    const QTextBlock block = testo().document()->begin();
    const QTextLayout* layout = block.layout();
    const auto leaning = [&](int at) -> std::optional<double> {
        const QTextLine line = layout->lineForTextPosition(at);
        const QPointF origin = layout->position();
        const double x1 = origin.x() + line.cursorToX(at);
        const double x2 = origin.x() + line.cursorToX(at + 1);
        const double top = origin.y() + line.y();
        double mass = 0;
        double moment = 0;
        for (int x = int(x1); x < int(x2); ++x) {
            for (int y = int(top); y < int(top + line.height()); ++y) {
                const double ink = 1.0 - qGray(image.pixel(x, y)) / 255.0;
                mass += ink;
                moment += ink * (x + 0.5 - (x1 + x2) / 2) / (x2 - x1);
            }
        }
        if (mass < 3)
            return std::nullopt;
        return moment / mass;
    };
    const std::optional<double> left = leaning(2);
    const std::optional<double> right = leaning(6);
    ASSERT_TRUE(left && right);
    EXPECT_LT(*left, -0.03);
    EXPECT_GT(*right, 0.03);
}

}  // namespace tornelia
