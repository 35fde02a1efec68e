#include "core/picture.h"
#include "core/ports.h"
#include "core/rich_text_surface.h"
#include "core/undo_store.h"
#include "pictures/picture_size.h"
#include "pictures/picture_windows.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QTextImageFormat>
#include <QUrl>

using namespace tornelia;
using namespace tornelia::pictures;

namespace {

class RecordingMessages final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int, int) override
    {
        shown << title + QStringLiteral(": ") + text;
        return {};
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    QStringList shown;
};

class ScriptedDialogs final : public DialogPort {
public:
    std::optional<QString> openFile(const QString&, const QStringList&) override { return openAnswer; }
    std::optional<QString> saveFile(const QString&, const QStringList&, const QString&) override { return saveAnswer; }
    std::optional<QString> chooseFolder(const QString&) override { return std::nullopt; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return std::nullopt; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return std::nullopt; }
    std::optional<QString> openAnswer;
    std::optional<QString> saveAnswer;
};

QImage stripes(int w, int h)
{
    QImage img(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            img.setPixel(x, y, (x / 10) % 2 ? qRgb(20, 90, 200) : qRgb(250, 220, 40));
    return img;
}

struct Doc {
    RichTextSurface testo;
    UndoStore undo{testo};
    RecordingMessages messages;
    ScriptedDialogs dialogs;
};

// Selects the first picture of the document.
void selectPicture(RichTextSurface& t)
{
    const long at = t.Text().indexOf(QChar(QChar::ObjectReplacementCharacter));
    ASSERT_GE(at, 0);
    t.setSelStart(at);
    t.setSelLength(1);
}

// The sizes of the frames in an ODT's content, in centimetres.
QList<QSizeF> odtFrames(const QString& odt)
{
    QProcess unzip;
    unzip.start(QStringLiteral("unzip"), {QStringLiteral("-p"), odt, QStringLiteral("content.xml")});
    unzip.waitForFinished(30000);
    const QString xml = QString::fromUtf8(unzip.readAllStandardOutput());
    QList<QSizeF> out;
    static const QRegularExpression frame(
        QStringLiteral("<draw:frame[^>]*svg:width=\"([0-9.]+)(cm|in)\"[^>]*svg:height=\"([0-9.]+)(cm|in)\""));
    for (auto it = frame.globalMatch(xml); it.hasNext();) {
        const auto m = it.next();
        const double k = m.captured(2) == QLatin1String("in") ? 2.54 : 1.0;
        out << QSizeF(m.captured(1).toDouble() * k, m.captured(3).toDouble() * (m.captured(4) == QLatin1String("in") ? 2.54 : 1.0));
    }
    return out;
}

}  // namespace

TEST(FrmIm, InsertsThePictureAndKeepsTheUsersClipboard)
{
    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("foto.png"));
    const QString jpg = dir.filePath(QStringLiteral("foto.jpg"));
    const QString bmp = dir.filePath(QStringLiteral("foto.bmp"));
    ASSERT_TRUE(stripes(120, 80).save(png));
    ASSERT_TRUE(stripes(60, 40).save(jpg));
    ASSERT_TRUE(stripes(30, 20).save(bmp));

    Doc d;
    d.testo.setText(QStringLiteral("prima  dopo"));
    QGuiApplication::clipboard()->setText(QStringLiteral("appunti dell'utente"));

    FrmIm im(d.testo, d.undo, d.dialogs, nullptr);
    d.dialogs.openAnswer = png;
    im.findChild<QPushButton*>(QStringLiteral("u1"))->click();  // browse: the chosen file is previewed
    EXPECT_EQ(im.path(), png);
    d.testo.setSelStart(6);
    im.command3();

    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("appunti dell'utente"));
    EXPECT_EQ(d.testo.Text(), QStringLiteral("prima ") + QChar(QChar::ObjectReplacementCharacter) + QStringLiteral(" dopo"));
    const QString rtf = d.testo.TextRTF();
    EXPECT_TRUE(rtf.contains(QLatin1String("\\pngblip\\picw120\\pich80\\picwgoal1800\\pichgoal1200")))
        << rtf.left(600).toStdString();

    // JPEG keeps its own data; other formats come in as PNG.
    im.immm(jpg);
    im.command3();
    im.immm(bmp);
    im.command3();
    const QString all = d.testo.TextRTF();
    EXPECT_TRUE(all.contains(QLatin1String("\\jpegblip\\picw60\\pich40\\picwgoal900\\pichgoal600")));
    EXPECT_TRUE(all.contains(QLatin1String("\\pngblip\\picw30\\pich20\\picwgoal450\\pichgoal300")));
    EXPECT_EQ(d.testo.Text().count(QChar(QChar::ObjectReplacementCharacter)), 3);

    // A path that is empty or gone changes nothing and says nothing.
    const QString before = d.testo.TextRTF();
    im.immm(dir.filePath(QStringLiteral("sparita.png")));
    im.command3();
    im.immm(QString());
    im.command3();
    EXPECT_EQ(d.testo.TextRTF(), before);

    // The insertion is one step of undo.
    d.undo.UnDoo();
    EXPECT_EQ(d.testo.Text().count(QChar(QChar::ObjectReplacementCharacter)), 2);
}

TEST(FrmImProp, ResizesToFiveByThreeCentimetresAndSurvivesSaving)
{
    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("foto.png"));
    ASSERT_TRUE(stripes(120, 80).save(png));
    Doc d;
    d.testo.setText(QStringLiteral("Una foto: "));
    d.testo.setSelStart(10);
    FrmIm im(d.testo, d.undo, d.dialogs, nullptr);
    im.immm(png);
    im.command3();
    selectPicture(d.testo);

    {
        FrmImProp prop(d.testo, d.messages, d.dialogs, selectedPicture(d.testo), nullptr);
        EXPECT_EQ(prop.side(0)->text(), QStringLiteral("1800"));
        EXPECT_EQ(prop.side(1)->text(), QStringLiteral("1200"));
        EXPECT_EQ(prop.centimetres(0), QStringLiteral("3,17 cm"));

        // In proportion, the height follows the width.
        prop.side(0)->setText(QStringLiteral("2835"));
        EXPECT_EQ(prop.side(1)->text(), QStringLiteral("1890"));
        EXPECT_EQ(prop.centimetres(1), QStringLiteral("3,33 cm"));

        // A letter in a box is refused with the message, and nothing moves.
        prop.side(1)->setText(QStringLiteral("12x"));
        EXPECT_EQ(prop.side(0)->text(), QStringLiteral("2835"));
        EXPECT_EQ(d.messages.shown, QStringList{QStringLiteral("Errore dati: Contenuti non numerici!")});

        prop.setKeepsProportion(false);
        prop.side(1)->setText(QStringLiteral("1701"));
        EXPECT_EQ(prop.side(0)->text(), QStringLiteral("2835"));
        EXPECT_EQ(prop.centimetres(0), QStringLiteral("5,00 cm"));
        EXPECT_EQ(prop.centimetres(1), QStringLiteral("3,00 cm"));
        prop.apply();
        EXPECT_EQ(d.testo.SelLength(), 1);  // the picture is selected again
        const PictureSize now = readPictureSize(d.testo.SelRTF());
        EXPECT_EQ(now.width, QStringLiteral("2835"));
        EXPECT_EQ(now.height, QStringLiteral("1701"));

        // Saving the picture from the dialog writes its image.
        d.dialogs.saveAnswer = dir.filePath(QStringLiteral("salvata.png"));
        prop.savePicture();
        EXPECT_EQ(QImage(*d.dialogs.saveAnswer).size(), QSize(120, 80));
    }

    const QString saved = dir.filePath(QStringLiteral("con foto.rtf"));
    d.testo.SaveFile(saved, RichTextSurface::RtfKind);

    // Reopened in the program: one picture, at 5 x 3 cm.
    RichTextSurface again;
    again.LoadFile(saved, RichTextSurface::RtfKind);
    EXPECT_EQ(again.Text().count(QChar(QChar::ObjectReplacementCharacter)), 1);
    selectPicture(again);
    const PictureSize reread = readPictureSize(again.SelRTF());
    EXPECT_EQ(reread.width, QStringLiteral("2835"));
    EXPECT_EQ(reread.height, QStringLiteral("1701"));
    EXPECT_EQ(selectedPicture(again).size(), QSize(120, 80));
    QTextCursor shown(again.document());
    shown.setPosition(again.cursor().selectionEnd());
    const QTextImageFormat f = shown.charFormat().toImageFormat();
    EXPECT_EQ(QSizeF(f.width(), f.height()), QSizeF(189, 113));  // 2835 x 1701 twips on the screen

    // Another word processor sees the same picture at the same size.
    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (soffice.isEmpty())
        GTEST_SKIP() << "soffice is not installed";
    QProcess lo;
    lo.start(soffice, {QStringLiteral("-env:UserInstallation=file://") + dir.filePath(QStringLiteral("profile")),
                       QStringLiteral("--headless"), QStringLiteral("--convert-to"), QStringLiteral("odt"),
                       QStringLiteral("--outdir"), dir.path(), saved});
    ASSERT_TRUE(lo.waitForFinished(180000));
    const QList<QSizeF> frames = odtFrames(dir.filePath(QStringLiteral("con foto.odt")));
    ASSERT_EQ(frames.size(), 1);
    EXPECT_NEAR(frames[0].width(), 5.0, 0.02);
    EXPECT_NEAR(frames[0].height(), 3.0, 0.02);
}

TEST(Form1, DrawsTheGradientAndInsertsTheLine)
{
    Doc d;
    QTemporaryDir dir;
    const QString temp = dir.filePath(QStringLiteral("temp"));
    Form1 f(d.testo, d.undo, d.messages, temp, [](Colour) { return std::optional<Colour>(0x00FF00); }, nullptr);
    f.setShape(2);  // the thick line: every pixel drawn
    f.setColour(0, 0x0000FF);
    f.setColour(1, 0xFF0000);
    const QImage line = f.Gradiente();
    ASSERT_FALSE(line.isNull());
    const std::vector<Colour> columns = gradientColumns(0x0000FF, 0xFF0000, line.width());
    for (int x = 0; x < line.width(); x += 37) {
        const QRgb p = line.pixel(x, line.height() / 2);
        EXPECT_EQ(Colour(qRed(p)) | Colour(qGreen(p)) << 8 | Colour(qBlue(p)) << 16, columns[size_t(x)]) << x;
    }
    d.testo.setText(QStringLiteral("sopra\r\nsotto"));
    d.testo.setSelStart(7);
    f.insert();
    EXPECT_TRUE(QFile::exists(temp + QStringLiteral("/temp1.bmp")));
    EXPECT_EQ(d.testo.Text().count(QChar(QChar::ObjectReplacementCharacter)), 1);
    selectPicture(d.testo);
    EXPECT_EQ(selectedPicture(d.testo).size(), line.size());
}

TEST(FrmPar, OffersTheShippedBullets)
{
    FrmPar p(nullptr);
    EXPECT_GE(p.count(), 12);
    p.choose(3);
    EXPECT_FALSE(p.chosen().isNull());
    EXPECT_LE(p.chosen().width(), 32);
    EXPECT_GE(shippedPictures(QStringLiteral("lines")).size(), 5);
}

TEST(FrmIm, ALinkedPictureKeepsItsLinkThroughSavingAndReopening)
{
    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("collegata.png"));
    ASSERT_TRUE(stripes(90, 30).save(png));
    Doc d;
    d.testo.setText(QStringLiteral("Vedi: "));
    d.testo.setSelStart(6);
    FrmIm im(d.testo, d.undo, d.dialogs, nullptr);
    im.immm(png);
    im.setAsLink(true);
    im.command3();

    // The document names the file in a field whose result is a copy of the
    // picture, for the readers that do not follow links.
    const QByteArray url = QUrl::fromLocalFile(png).toEncoded();
    const QByteArray field = "{\\field{\\*\\fldinst INCLUDEPICTURE \"" + url +
                             "\" \\\\d}{\\fldrslt {\\nonshppict{\\pict\\pngblip\\picw90\\pich30\\picwgoal1350\\pichgoal450\r\n";
    const QString saved = dir.filePath(QStringLiteral("link.rtf"));
    d.testo.SaveFile(saved, RichTextSurface::RtfKind);
    const auto bytes = [](const QString& path) {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    };
    const QByteArray first = bytes(saved);
    EXPECT_TRUE(first.contains("\\viewkind4\\uc1\\pard\\f0\\fs20 Vedi: " + field)) << first.toStdString();
    EXPECT_EQ(first.count("\\pict"), 1);

    // Reopened and saved again, the link is still there, byte for byte; the
    // view shows the file as it is now, at the size the document gives it.
    ASSERT_TRUE(stripes(40, 40).save(png));
    RichTextSurface again;
    again.LoadFile(saved, RichTextSurface::RtfKind);
    EXPECT_EQ(again.Text(), QStringLiteral("Vedi: ") + QChar(QChar::ObjectReplacementCharacter));
    selectPicture(again);
    EXPECT_EQ(selectedPicture(again).size(), QSize(40, 40));
    EXPECT_TRUE(isPictureSelected(again));
    const QString resaved = dir.filePath(QStringLiteral("link2.rtf"));
    again.SaveFile(resaved, RichTextSurface::RtfKind);
    EXPECT_EQ(bytes(resaved), first);

    // With the file gone, the copy stands in for it and the link stays.
    QFile::remove(png);
    RichTextSurface gone;
    gone.LoadFile(resaved, RichTextSurface::RtfKind);
    selectPicture(gone);
    EXPECT_EQ(selectedPicture(gone).size(), QSize(90, 30));
    EXPECT_TRUE(gone.SelRTF().contains(QString::fromLatin1(field)));

    // Another word processor follows the link: one picture, the file's.
    ASSERT_TRUE(stripes(40, 40).save(png));
    const QString soffice = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (soffice.isEmpty())
        GTEST_SKIP() << "soffice is not installed";
    QProcess lo;
    lo.start(soffice, {QStringLiteral("-env:UserInstallation=file://") + dir.filePath(QStringLiteral("profile")),
                       QStringLiteral("--headless"), QStringLiteral("--convert-to"), QStringLiteral("odt"),
                       QStringLiteral("--outdir"), dir.path(), resaved});
    ASSERT_TRUE(lo.waitForFinished(180000));
    const QList<QSizeF> frames = odtFrames(dir.filePath(QStringLiteral("link2.odt")));
    ASSERT_EQ(frames.size(), 1);
    EXPECT_NEAR(frames[0].width(), 40 * 2.54 / 96, 0.02);
    EXPECT_NEAR(frames[0].height(), 40 * 2.54 / 96, 0.02);
}

TEST(PictureLinks, FieldsOfOtherProgramsAreFollowedAndKept)
{
    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("logo.png"));
    ASSERT_TRUE(stripes(20, 10).save(png));
    const QString small = QString::fromLatin1(pngPictureGroup(stripes(4, 2), QSize(600, 300)));
    const QString path = png;
    // A word processor's own shape: nested instruction group, switches, the
    // picture twice; a path with doubled backslashes is no local file here;
    // a switch may come before the name.
    const QString word = QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard A{\\field\\flddirty{\\*\\fldinst { INCLUDEPICTURE  \"%1\" \\\\* MERGEFORMATINET }}"
                                        "{\\fldrslt {{\\*\\shppict%2}{\\nonshppict%2}}}}B"
                                        "{\\field{\\*\\fldinst HYPERLINK \"http://x\"}{\\fldrslt C}}"
                                        "{\\field{\\*\\fldinst INCLUDEPICTURE \"C:\\\\\\\\img\\\\\\\\a.png\"}{\\fldrslt %2}}"
                                        "{\\field{\\*\\fldinst INCLUDEPICTURE \\\\d \"%1\"}{\\fldrslt }}\\par}")
                             .arg(path, small);
    RichTextSurface t;
    t.setTextRTF(word);
    const QChar obj(QChar::ObjectReplacementCharacter);
    EXPECT_EQ(t.Text(), QStringLiteral("A") + obj + QStringLiteral("BC") + obj + obj);
    QStringList sizes;
    for (long at = 0; (at = t.Text().indexOf(obj, at)) >= 0; ++at) {
        t.setSelStart(at);
        t.setSelLength(1);
        const QImage shown = selectedPicture(t);
        sizes << QStringLiteral("%1x%2").arg(shown.width()).arg(shown.height());
    }
    // The file where it is there; the result where the path is not local;
    // the file itself when the field has no result.
    EXPECT_EQ(sizes, (QStringList{QStringLiteral("20x10"), QStringLiteral("4x2"), QStringLiteral("20x10")}));

    const QString written = t.TextRTF();
    EXPECT_EQ(written.count(QLatin1String("\\fldinst INCLUDEPICTURE")), 3) << written.toStdString();
    EXPECT_TRUE(written.contains(QLatin1String("\\fldinst INCLUDEPICTURE  \"") + path +
                                 QLatin1String("\" \\\\* MERGEFORMATINET}")));
    EXPECT_TRUE(written.contains(QLatin1String("\\fldinst INCLUDEPICTURE \"C:\\\\\\\\img\\\\\\\\a.png\"}")));
    EXPECT_FALSE(written.contains(QLatin1String("HYPERLINK")));
    RichTextSurface back;
    back.setTextRTF(written);
    EXPECT_EQ(back.TextRTF(), written);
}

TEST(FrmIm, TextAfterAnInsertedPictureGoesOnInTheFontAround)
{
    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("foto.png"));
    ASSERT_TRUE(stripes(30, 20).save(png));
    Doc d;
    d.testo.setText(QStringLiteral("ab"));
    d.testo.setSelStart(0);
    d.testo.setSelLength(2);
    d.testo.setSelFontName(QStringLiteral("Courier New"));
    d.testo.setSelFontSize(16);
    d.testo.setSelBold(true);
    d.testo.setSelStart(1);
    FrmIm im(d.testo, d.undo, d.dialogs, nullptr);
    im.immm(png);
    im.command3();
    d.testo.setSelText(QStringLiteral("x"));

    // The picture, the letter typed after it and the text around: one font.
    d.testo.setSelStart(0);
    d.testo.setSelLength(4);
    EXPECT_EQ(d.testo.Text(), QStringLiteral("a") + QChar(QChar::ObjectReplacementCharacter) + QStringLiteral("xb"));
    EXPECT_EQ(d.testo.SelFontName(), std::optional(QStringLiteral("Courier New")));
    EXPECT_EQ(d.testo.SelFontSize(), std::optional(16.0f));
    EXPECT_EQ(d.testo.SelBold(), std::optional(true));
}
