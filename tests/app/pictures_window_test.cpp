// Pictures in the window: other programs' pictures at the size their files
// give, a selected picture marked in the view, and picture bullets, where the
// text goes on in the font the user was typing in.
#include "app/main_window.h"
#include "controls/editor_view.h"
#include "pictures/picture_windows.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGraphicsTextItem>
#include <QMouseEvent>
#include <QTextBlock>
#include <QTextLayout>
#include <QTextDocument>
#include <QTimer>

#include "core/picture.h"

namespace tornelia {
namespace {

class PicturesWindowTest : public testing::ShownWindowTest {
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

    // The size each picture of the document is shown at, in pixels.
    QStringList shownSizes()
    {
        QStringList out;
        for (QTextBlock b = testo().document()->begin(); b.isValid(); b = b.next())
            for (auto it = b.begin(); !it.atEnd(); ++it)
                if (it.fragment().charFormat().isImageFormat()) {
                    const QTextImageFormat f = it.fragment().charFormat().toImageFormat();
                    out << QStringLiteral("%1x%2").arg(f.width()).arg(f.height());
                }
        return out;
    }

    // How many pixels of the editor show this colour exactly.
    int pixelsOf(QRgb colour)
    {
        QApplication::processEvents();
        const QImage shot = window.editor()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        int n = 0;
        for (int y = 0; y < shot.height(); ++y)
            for (int x = 0; x < shot.width(); ++x)
                n += (shot.pixel(x, y) & 0xFFFFFF) == (colour & 0xFFFFFF);
        return n;
    }
};

}  // namespace

// Pictures come at the size the file gives them, goal size times scale, at
// 15 twips a pixel; a selected picture is tinted, since the selection colour
// does not show through its pixels.
TEST_F(PicturesWindowTest, PicturesShowAtTheirFilesSizeAndASelectedOneIsMarked)
{
    QImage red(40, 20, QImage::Format_RGB32);
    red.fill(qRgb(255, 0, 0));
    const QString group = QString::fromLatin1(pngPictureGroup(red));  // 600 x 300 twips
    const QString scaled = QString(group).replace(QLatin1String("{\\pict"), QLatin1String("{\\pict\\picscalex50\\picscaley200"));
    const QString goal = QString(group).replace(QLatin1String("\\picwgoal600\\pichgoal300"),
                                                QLatin1String("\\picwgoal1500\\pichgoal750\\picscalex200"));
    const QString rtf = QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard ") + scaled + u'x' + goal +
                        QStringLiteral("\\par}");
    testo().setTextRTF(rtf);
    // The first keeps its own goal (600 x 300 twips) scaled to 50% and 200%;
    // the second's goal, 1500 x 750 twips, is doubled in width.
    EXPECT_EQ(shownSizes(), (QStringList{QStringLiteral("20x40"), QStringLiteral("200x50")}));

    const QString corpus = QStringLiteral(TORNELIA_CORPUS_DIR "/pandoc__image.rtf");
    if (QFile::exists(corpus)) {
        testo().LoadFile(corpus, RichTextSurface::RtfKind);
        EXPECT_EQ(shownSizes(), QStringList{QStringLiteral("192x192")});  // 2880 twips a side
    }

    testo().setTextRTF(QStringLiteral("{\\rtf1\\ansi ") + QString::fromLatin1(pngPictureGroup(red)) +
                       QStringLiteral("}"));
    testo().setSelStart(0);
    const int unselected = pixelsOf(qRgb(255, 0, 0));
    EXPECT_GE(unselected, 40 * 19);  // the whole picture, but where the caret crosses it
    testo().setSelLength(1);
    EXPECT_LT(pixelsOf(qRgb(255, 0, 0)), unselected / 10);

    // A click on the picture selects it; a click on the text beside it puts
    // the caret there.
    testo().setTextRTF(QStringLiteral("{\\rtf1\\ansi ") + QString::fromLatin1(pngPictureGroup(red)) +
                       QStringLiteral(" dopo la foto}"));
    QApplication::processEvents();
    const QTextBlock block = testo().document()->begin();
    const QTextLine line = block.layout()->lineAt(0);
    const QPointF origin = block.layout()->position();
    const auto click = [&](qreal x) {
        QGraphicsTextItem* item = window.editor()->textItem();
        const QPoint at = window.editor()->mapFromScene(item->mapToScene(origin + QPointF(x, line.height() / 2)));
        QWidget* viewport = window.editor()->viewport();
        QMouseEvent press(QEvent::MouseButtonPress, at, viewport->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &press);
        QMouseEvent release(QEvent::MouseButtonRelease, at, viewport->mapToGlobal(at), Qt::LeftButton, Qt::NoButton,
                            Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &release);
        return QStringLiteral("%1+%2").arg(testo().SelStart()).arg(testo().SelLength());
    };
    const qreal pictureEnd = line.cursorToX(1);
    EXPECT_EQ((QStringList{click(pictureEnd * 0.3), click(pictureEnd * 0.9), click(line.cursorToX(20) + 1)}),
              (QStringList{QStringLiteral("0+1"), QStringLiteral("0+1"), QStringLiteral("14+0")}));
}

TEST_F(PicturesWindowTest, TextAfterEachBulletKeepsTheFontTypedBefore)
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
