// Picture bullets in the window: the bullet chosen in its window starts the
// line, Enter starts each new line with a copy of it, and the text goes on in
// the font the user was typing in.
#include "app/main_window.h"
#include "controls/editor_view.h"
#include "pictures/picture_windows.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QTimer>

namespace tornelia {
namespace {

class PictureBulletWindowTest : public testing::ShownWindowTest {
protected:
    // Font, size, bold, italic and colour of a stretch of the text.
    QString looks(long start, long length)
    {
        testo().setSelStart(start);
        testo().setSelLength(length);
        const auto name = testo().SelFontName();
        const auto size = testo().SelFontSize();
        const auto bold = testo().SelBold();
        const auto italic = testo().SelItalic();
        const auto colour = testo().SelColor();
        return QStringLiteral("%1 %2 %3 %4 %5")
            .arg(name.value_or(QStringLiteral("?")))
            .arg(size ? QString::number(*size) : QStringLiteral("?"))
            .arg(bold ? (*bold ? "b" : "-") : "?")
            .arg(italic ? (*italic ? "i" : "-") : "?")
            .arg(colour ? QString::number(*colour, 16) : QStringLiteral("?"));
    }
};

}  // namespace

TEST_F(PictureBulletWindowTest, TextAfterEachBulletKeepsTheFontTypedBefore)
{
    QGuiApplication::clipboard()->setText(QStringLiteral("appunti dell'utente"));
    testo().setSelFontName(QStringLiteral("Courier New"));
    testo().setSelFontSize(16);
    testo().setSelBold(true);
    testo().setSelColor(0x0000C0);
    testing::typeKeys(window.editor(), QStringLiteral("uno"));

    // The third bullet of the window, confirmed.
    QTimer::singleShot(0, [] {
        auto* dialog = qobject_cast<pictures::FrmPar*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        dialog->choose(2);
        dialog->accept();
    });
    window.action(QStringLiteral("mnuPuntatoImmagine"))->trigger();
    testo().setSelStart(testo().Text().size());
    testing::typeKeys(window.editor(), QStringLiteral("\rdue\rTre"));

    const QChar bullet(QChar::ObjectReplacementCharacter);
    ASSERT_EQ(testo().Text(), QString(bullet) + QStringLiteral("  uno\r\n") + bullet + QStringLiteral("  due\r\n") +
                                  bullet + QStringLiteral("  Tre"));
    const QString typed = QStringLiteral("Courier New 16 b - c0");
    // The blanks after each bullet and the words typed after them.
    EXPECT_EQ((QStringList{looks(1, 5), looks(9, 5), looks(17, 5)}), (QStringList{typed, typed, typed}));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("appunti dell'utente"));
}

}  // namespace tornelia
