#include "core/clipboard_guard.h"
#include "core/picture.h"
#include "core/rich_text_surface.h"
#include "pictures/picture_size.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

using namespace tornelia;
using namespace tornelia::pictures;

namespace {

QImage checker(int w, int h)
{
    QImage img(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            img.setPixel(x, y, ((x / 4 + y / 4) % 2) ? qRgb(200, 30, 30) : qRgb(255, 255, 255));
    return img;
}

// The RTF of a selected picture as the document gives it.
QString selectedPictureRtf(RichTextSurface& t, const QImage& image, QSize goal)
{
    t.setText(QStringLiteral("ab"));
    t.setSelStart(1);
    t.setSelRTF(QString::fromLatin1("{\\rtf1\\ansi " + pngPictureGroup(image, goal) + "}"));
    t.setSelStart(1);
    t.setSelLength(1);
    return t.SelRTF();
}

}  // namespace

TEST(PictureSize, ReadsTheGoalSizeOfARealSelection)
{
    RichTextSurface t;
    const QString rtf = selectedPictureRtf(t, checker(40, 20), QSize(2835, 1418));
    ASSERT_TRUE(rtf.contains(QLatin1String("\\pict\\"))) << rtf.left(300).toStdString();
    const PictureSize s = readPictureSize(rtf);
    EXPECT_EQ(s.width, QStringLiteral("2835"));
    EXPECT_EQ(s.height, QStringLiteral("1418"));
}

TEST(PictureSize, ReadsOnlyTheFirst300Characters)
{
    // A header long enough to push the picture's tags past the window: the
    // sizes read as missing and the dialog falls back to one twip.
    const QString pad = QStringLiteral("{\\fonttbl{\\f0\\fswiss ") + QString(320, u'x') + QStringLiteral(";}}");
    const QString rtf = QStringLiteral("{\\rtf1\\ansi") + pad +
                        QStringLiteral("{\\pict\\pngblip\\picw10\\pich10\\picwgoal150\\pichgoal150\r\n89504e47}}");
    const PictureSize s = readPictureSize(rtf);
    EXPECT_EQ(s.width, QString());
    EXPECT_EQ(s.height, QString());
    EXPECT_EQ(validSide(s.width), QStringLiteral("1"));

    // The same picture with a short header reads whole.
    const QString near = QStringLiteral("{\\rtf1\\ansi{\\pict\\pngblip\\picw10\\pich10\\picwgoal150\\pichgoal150\r\n89504e47}}");
    EXPECT_EQ(readPictureSize(near).width, QStringLiteral("150"));
    EXPECT_EQ(readPictureSize(near).height, QStringLiteral("150"));
}

TEST(PictureSize, ObjectGroupsGiveObjwAndObjh)
{
    const QString rtf = QStringLiteral(
        "{\\rtf1\\ansi\\deff0{\\object\\objemb{\\*\\objclass Paint.Picture}\\objw2400\\objh1200"
        "{\\*\\objdata 01050000020000000e000000}{\\result{\\pict\\wmetafile8\\picw100\\pich50 0100}}}}");
    const PictureSize s = readPictureSize(rtf);
    EXPECT_EQ(s.width, QStringLiteral("2400"));
    EXPECT_EQ(s.height, QStringLiteral("1200"));
    // Shown but not changed: an object has no goal size to write.
    EXPECT_FALSE(applyPictureSize(rtf, QStringLiteral("100"), QStringLiteral("100")).has_value());
}

TEST(PictureSize, ValidSideTurnsEmptyAndZeroIntoOne)
{
    EXPECT_EQ(validSide(QString()), QStringLiteral("1"));
    EXPECT_EQ(validSide(QStringLiteral("0")), QStringLiteral("1"));
    EXPECT_EQ(validSide(QStringLiteral("-5")), QStringLiteral("1"));
    EXPECT_EQ(validSide(QStringLiteral("250")), QStringLiteral("250"));
}

TEST(PictureSize, SurgeryChangesOnlyTheTwoNumbers)
{
    const QString rtf = QStringLiteral(
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard\\plain{\\pict\\pngblip\\picw40\\pich20"
        "\\picwgoal600\\pichgoal300\r\n89504e470d0a1a0a\r\n}\\par}");
    const auto out = applyPictureSize(rtf, QStringLiteral("2835"), QStringLiteral("1701"));
    ASSERT_TRUE(out.has_value());
    EXPECT_EQ(*out, QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard\\plain{\\pict\\pngblip\\picw40\\pich20"
                                   "\\picwgoal2835\\pichgoal1701\r\n89504e470d0a1a0a\r\n}\\par}"));

    // A writer that puts a blank after the height, and an empty box: the
    // number is left empty, to be read back as one twip.
    const QString spaced = QStringLiteral("{\\pict\\jpegblip\\picwgoal100\\pichgoal50 ffd8ffe0}");
    EXPECT_EQ(applyPictureSize(spaced, QStringLiteral("200"), QString()).value(),
              QStringLiteral("{\\pict\\jpegblip\\picwgoal200\\pichgoal ffd8ffe0}"));
    EXPECT_FALSE(applyPictureSize(QStringLiteral("{\\rtf1 plain text}"), QStringLiteral("1"), QStringLiteral("1")));
}

TEST(PictureSize, SurgeryOnARealSelectionResizesThePicture)
{
    RichTextSurface t;
    const QString rtf = selectedPictureRtf(t, checker(30, 30), QSize(450, 450));
    const auto out = applyPictureSize(rtf, QStringLiteral("2835"), QStringLiteral("1701"));
    ASSERT_TRUE(out.has_value());
    t.setSelRTF(*out);
    t.setSelStart(t.SelStart() - 1);
    t.setSelLength(1);
    const PictureSize s = readPictureSize(t.SelRTF());
    EXPECT_EQ(s.width, QStringLiteral("2835"));
    EXPECT_EQ(s.height, QStringLiteral("1701"));
    EXPECT_EQ(t.Text(), QString(u'a') + QChar(QChar::ObjectReplacementCharacter) + u'b');
}

TEST(PictureSize, ProportionalUpdate)
{
    // 3000 x 1500: height is half the width.
    const double ratio = 0.5;
    auto other = [&](int edited, const char* w, const char* h) {
        return proportionalUpdate(edited, QString::fromLatin1(w), QString::fromLatin1(h), ratio);
    };
    EXPECT_EQ(other(0, "2835", "1500").other.value(), QStringLiteral("1418"));  // 1417.5 rounds up
    EXPECT_EQ(other(1, "3000", "1701").other.value(), QStringLiteral("3402"));
    EXPECT_EQ(other(0, "1", "1500").other.value(), QStringLiteral("1"));         // 0.5 rounds to one twip
    EXPECT_FALSE(other(0, "", "1500").other.has_value());                       // empty box: nothing
    EXPECT_EQ(other(0, "", "1500").error, ProportionError::None);
    EXPECT_EQ(other(0, "12", "").error, ProportionError::NotNumeric);           // the other box empty
    EXPECT_EQ(other(1, "12", "3x").error, ProportionError::NotNumeric);
    // A tall picture: width from height.
    EXPECT_EQ(proportionalUpdate(1, QStringLiteral("10"), QStringLiteral("900"), 3.0).other.value(),
              QStringLiteral("300"));
}

TEST(PictureSize, CentimetreLabels)
{
    EXPECT_EQ(centimetreLabel(QStringLiteral("2835")), QStringLiteral("5,00 cm"));
    EXPECT_EQ(centimetreLabel(QStringLiteral("1701")), QStringLiteral("3,00 cm"));
    EXPECT_EQ(centimetreLabel(QStringLiteral("100")), QStringLiteral("0,18 cm"));
    EXPECT_EQ(centimetreLabel(QStringLiteral("567000")), QStringLiteral("1000,00 cm"));
    EXPECT_EQ(centimetreLabel(QString()), QStringLiteral("0,00 cm"));
}

TEST(Gradiente, ColumnsStepLinearlyBetweenTheColours)
{
    struct Case {
        Colour a, b;
        int width;
    };
    for (const Case& c : {Case{0x0000FF, 0xFF0000, 5}, Case{0x123456, 0xFEDCBA, 101}, Case{0x00FF00, 0x00FF00, 3},
                          Case{0xFFFFFF, 0x000000, 2}, Case{0x0A0B0C, 0x0A0B0C, 1}}) {
        std::vector<Colour> expected;
        for (int x = 0; x < c.width; ++x) {
            const double f = c.width > 1 ? double(x) / (c.width - 1) : 0.0;
            auto mix = [&](int shift) {
                const double from = (c.a >> shift) & 0xFF, to = (c.b >> shift) & 0xFF;
                return static_cast<Colour>(std::lround(from + (to - from) * f)) << shift;
            };
            expected.push_back(mix(0) | mix(8) | mix(16));
        }
        EXPECT_EQ(gradientColumns(c.a, c.b, c.width), expected) << std::hex << c.a << " " << c.b;
    }
    EXPECT_TRUE(gradientColumns(0, 0xFFFFFF, 0).empty());
}

TEST(Gradiente, HexadecimalSplitIsBlueGreenRed)
{
    const Components k = splitColour(0x0A0B0C);
    EXPECT_EQ(k.blue, 0x0A);
    EXPECT_EQ(k.green, 0x0B);
    EXPECT_EQ(k.red, 0x0C);
    const Components small = splitColour(0x00000F);  // one digit, filled to six
    EXPECT_EQ(small.red, 15);
    EXPECT_EQ(small.blue, 0);
}

TEST(ClipboardGuard, EachKindComesBack)
{
    QClipboard* cb = QGuiApplication::clipboard();
    auto borrow = [&] {
        ClipboardGuard g;
        g.saveClipboard();
        const QChar kind = g.kind();
        cb->setImage(checker(8, 8));  // what the program puts there meanwhile
        g.restoreClipboard();
        return kind;
    };

    cb->setText(QStringLiteral("testo dell'utente"));
    EXPECT_EQ(borrow(), u't');
    EXPECT_EQ(cb->text(), QStringLiteral("testo dell'utente"));

    const QImage user = checker(12, 6);
    cb->setImage(user);
    EXPECT_EQ(borrow(), u'b');
    EXPECT_EQ(cb->image().convertToFormat(QImage::Format_RGB32), user);

    auto* mime = new QMimeData;
    mime->setData(QStringLiteral("text/rtf"), "{\\rtf1\\ansi {\\b grassetto}}");
    mime->setText(QStringLiteral("grassetto"));
    cb->setMimeData(mime);
    EXPECT_EQ(borrow(), u'r');
    ASSERT_NE(cb->mimeData(), nullptr);
    EXPECT_EQ(cb->mimeData()->data(QStringLiteral("text/rtf")), QByteArray("{\\rtf1\\ansi {\\b grassetto}}"));
    EXPECT_EQ(cb->text(), QStringLiteral("grassetto"));

    cb->clear();
    EXPECT_EQ(borrow(), u'e');
    EXPECT_TRUE(cb->image().isNull());
    EXPECT_TRUE(cb->text().isEmpty());
}
