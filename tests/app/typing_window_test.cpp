// Typing assistance in the window: keys from the view reach the handlers and
// the view honours what they swallow or change, the dialog that picks the
// corrections, the undo store the context wires to the document, and the
// arrows shown where Wingdings is missing. The rules one by one are the core
// tests' business.
#include "app/frm_cor.h"
#include "app/main_window.h"
#include "controls/editor_view.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QGraphicsTextItem>
#include <QImage>
#include <QKeyEvent>
#include <QListWidget>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QStyleOptionGraphicsItem>
#include <QTextBlock>
#include <QTextLayout>
#include <QTimer>

namespace tornelia {
namespace {

class TypingWindowTest : public testing::ShownWindowTest {
protected:
    // Each character as a key pressed on the view; after each, the surface's
    // caret and the view's anchor/position.
    QString typeKeys(const QString& text)
    {
        QStringList carets;
        for (const QChar c : text) {
            testing::key(window.editor(), c.toUpper().unicode(), Qt::NoModifier, QString(c));
            const QTextCursor item = window.editor()->textItem()->textCursor();
            carets << QStringLiteral("%1 %2/%3").arg(testo().SelStart()).arg(item.anchor()).arg(item.position());
        }
        return carets.join(u' ');
    }

    // Opens the dialog from the View menu, flips the given rows and confirms
    // or cancels; gives the rows' checks as the dialog showed them.
    QString corrections(std::initializer_list<int> flip, bool confirm)
    {
        QAction* entry = window.action(QStringLiteral("mnuCorrezioneAutomatica"));
        if (!entry || !window.viewMenu()->actions().contains(entry))
            return QStringLiteral("no entry in the View menu");
        QStringList rows;
        QTimer::singleShot(0, [&] {
            auto* dialog = qobject_cast<FrmCor*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            for (int i = 0; i < dialog->list()->count(); ++i)
                rows << (dialog->list()->item(i)->checkState() == Qt::Checked ? "x" : "-");
            for (const int i : flip) {
                QListWidgetItem* item = dialog->list()->item(i);
                item->setCheckState(item->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
            }
            (confirm ? dialog->confirmButton() : dialog->cancelButton())->click();
        });
        entry->trigger();
        return rows.join(u' ');
    }
};

}  // namespace

// The dialog, opened from the View menu, picks the corrections; they swallow
// or change keys typed in the view, select what they replace and put the
// caret back, and the view must follow each move.
TEST_F(TypingWindowTest, CorrectionsPickedInTheDialogActOnKeysTypedInTheView)
{
    SettingsStore& settings = t.context->settings();
    writeCorrections(settings, {false, true, false, false, false, false, false, false, true});
    // Cancelled, the dialog leaves the settings as they were; confirmed, it writes them.
    EXPECT_EQ(corrections({0}, false), QStringLiteral("- x - - - - - - x"));
    EXPECT_EQ(readCorrections(settings), (std::array{false, true, false, false, false, false, false, false, true}));
    corrections({4, 7}, true);
    EXPECT_EQ(readCorrections(settings), (std::array{false, true, false, false, true, false, false, true, true}));

    const QString carets = typeKeys(QStringLiteral("x(c)y,z->£"));
    EXPECT_EQ(testo().Text(), QStringLiteral("x©y, z\uF0E0€"));
    EXPECT_EQ(carets.toStdString(), "1 1/1 2 2/2 3 3/3 2 2/2 3 3/3 5 5/5 6 6/6 7 7/7 7 7/7 8 8/8");
}

TEST_F(TypingWindowTest, UndoStoreFollowsTheDocument)
{
    UndoStore& undo = t.context->undo();
    typeKeys(QStringLiteral("uno due tre"));
    EXPECT_EQ(undo.passoTot(), 2);
    // A new document empties the store.
    t.messages->answers = {QStringLiteral("no")};
    t.context->document().Novo(0);
    EXPECT_EQ(std::pair(undo.passoTot(), undo.passoCorr()), std::pair(0, 0));
}

// Where Wingdings is missing the arrows it holds are still drawn as arrows,
// and the document keeps its characters.
TEST_F(TypingWindowTest, WingdingsArrowsShowAsArrows)
{
    testo().setTextRTF(QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0\\fswiss Tahoma;}{\\f1\\fnil\\fcharset2 Wingdings;}}"
                                      "\\f0\\fs40 a \\f1\\'df\\f0  b \\f1\\'e0\\f0  c\\par}"));
    const QString rtf = testo().TextRTF();
    QGraphicsTextItem* item = window.editor()->textItem();
    QImage image(item->boundingRect().size().toSize(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    {
        QPainter p(&image);
        QStyleOptionGraphicsItem option;
        option.exposedRect = item->boundingRect();
        item->paint(&p, &option, nullptr);
    }
    EXPECT_EQ(testo().TextRTF(), rtf);

    // The ink of an arrow leans towards its head; a box, a lozenge or any
    // other stand-in is balanced, and nothing drawn leans nowhere.
    const QTextLayout* layout = testo().document()->begin().layout();
    const auto leaning = [&](int at) {
        const QTextLine line = layout->lineForTextPosition(at);
        const int x1 = int(layout->position().x() + line.cursorToX(at));
        const int x2 = int(layout->position().x() + line.cursorToX(at + 1));
        const int top = int(layout->position().y() + line.y());
        double left = 0;
        double right = 0;
        for (int x = x1; x < x2; ++x)
            for (int y = top; y < top + int(line.height()); ++y)
                (2 * x + 1 < x1 + x2 ? left : right) += 1.0 - qGray(image.pixel(x, y)) / 255.0;
        return left > 1.2 * right + 1 ? "left" : right > 1.2 * left + 1 ? "right" : "none";
    };
    EXPECT_EQ(std::string(leaning(2)) + " " + leaning(6), "left right");
}

}  // namespace tornelia
