#include "colour/colore.h"
#include "colour/frm_col.h"
#include "core/ports.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

using namespace tornelia;
using namespace tornelia::colour;

namespace {

class RecordingMessages final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int, int) override
    {
        shown.append(title + u'|' + text);
        return QStringLiteral("ok");
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    QStringList shown;
};

struct Outputs {
    int r = -7, g = -7, b = -7;
    QString hex = QStringLiteral("untouched");
    long colour = -7;
    bool operator==(const Outputs&) const = default;
};

Outputs safe(int index)
{
    Outputs o;
    ColourPicker::GetSafeColor(index, o.r, o.g, o.b, o.hex, o.colour);
    return o;
}

void mouse(QWidget* w, QEvent::Type type, QPoint at)
{
    QMouseEvent e(type, QPointF(at), w->mapToGlobal(QPointF(at)), Qt::LeftButton,
                  type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(w, &e);
}

QStringList boxes(const FrmCol& f)
{
    QStringList out;
    for (const char* name : {"txtH", "txtS", "txtB", "Text1", "Text2", "Text3"})
        out << f.findChild<QLineEdit*>(name)->text();
    for (int i = 1; i <= 4; ++i)
        out << f.findChild<QLabel*>(QStringLiteral("StatusBar1_%1").arg(i))->text();
    return out;
}

}  // namespace

TEST(PickerPalette, GetSafeColorCountsBlueInnermostAndLeavesOutputsOutsideTheRange)
{
    EXPECT_EQ(safe(1), (Outputs{0, 0, 0, "000000", 0}));
    EXPECT_EQ(safe(2), (Outputs{0, 0, 51, "000033", 0x330000}));
    EXPECT_EQ(safe(7), (Outputs{0, 51, 0, "003300", 0x003300}));
    EXPECT_EQ(safe(37), (Outputs{51, 0, 0, "330000", 0x000033}));
    EXPECT_EQ(safe(216), (Outputs{255, 255, 255, "FFFFFF", 0xFFFFFF}));
    EXPECT_EQ(safe(217), Outputs{});
    EXPECT_EQ(safe(0), Outputs{});
    EXPECT_EQ(safe(-3), Outputs{});

    QString hex;
    ColourPicker::GetHexVal(10, 255, 0, hex);
    EXPECT_EQ(hex, "0AFF00");
    ColourPicker::GetHexVal(0xAB, 0x0C, 0xD0, hex);
    EXPECT_EQ(hex, "AB0CD0");
}

TEST(PickerState, FieldAndSliderPositionsGiveTheColourTheFieldShows)
{
    ColourPicker p;
    p.setColour(rgb(255, 0, 0));
    // Hue mode: across is saturation, down is brightness.
    p.pickField({0, 0});
    EXPECT_EQ(p.colour(), rgb(255, 255, 255));
    p.pickField({255, 0});
    EXPECT_EQ(p.colour(), rgb(255, 0, 0));
    p.pickField({300, 400});  // held to the edge
    EXPECT_EQ(p.colour(), 0u);
    p.pickField({255, 0});
    p.pickSlider(85);  // a third down the hue scale: green
    EXPECT_EQ(p.colour(), rgb(0, 255, 0));
    EXPECT_EQ((std::vector<int>{p.hueBox(), p.saturationBox(), p.brightnessBox()}), (std::vector<int>{120, 100, 100}));

    // Every pixel of the field in each mode is the colour a click there picks,
    // and the pointer comes back to where it was clicked.
    for (const FieldMode mode : {FieldMode::Hue, FieldMode::Saturation, FieldMode::Brightness}) {
        p.setMode(mode);
        p.setColour(rgb(200, 80, 40));
        PixelBuffer field;
        p.drawField(field);
        int worst = 0;
        for (const QPoint at : {QPoint(0, 0), QPoint(255, 0), QPoint(0, 255), QPoint(255, 255), QPoint(128, 64),
                                QPoint(40, 200), QPoint(170, 30)}) {
            const std::size_t i = (std::size_t(255 - at.y()) * 256 + std::size_t(at.x())) * 3;
            ColourPicker q = p;
            q.pickField(at);
            worst = std::max({worst, std::abs(q.blue() - field[i]), std::abs(q.green() - field[i + 1]),
                              std::abs(q.red() - field[i + 2])});
            if (at.y() < 255 && (mode != FieldMode::Hue || at.y() > 0 || at.x() > 0)) {
                EXPECT_LE((q.fieldPosition() - at).manhattanLength(), 2) << int(mode) << ' ' << at.x() << ',' << at.y();
            }
        }
        EXPECT_LE(worst, 1) << int(mode);
    }

    // Brightness slider at the bottom is black; saturation slider at the
    // bottom is the grey of the brightness.
    p.setMode(FieldMode::Brightness);
    p.setColour(rgb(200, 80, 40));
    p.pickSlider(255);
    EXPECT_EQ(p.colour(), 0u);
    p.setColour(rgb(200, 80, 40));
    p.setMode(FieldMode::Saturation);
    p.pickSlider(255);
    EXPECT_EQ(p.colour(), rgb(200, 200, 200));
}

TEST(PickerState, BoxesTakeTheirRangesAndNameTheMessageOfEach)
{
    const QString to100 = "Inserisci un valore valido tra 1 e 100";
    const QString to360 = "Inserisci un valore valido tra 1 e 360";
    ColourPicker p;
    p.setColour(rgb(10, 20, 30));
    struct Case {
        Box box;
        QString text;
        std::optional<QString> message;
    };
    const Case cases[] = {
        {Box::B, "101", to100}, {Box::B, "x", to100},  {Box::S, "101", to360}, {Box::H, "361", to360},
        {Box::H, "-1", to360},  {Box::Red, "256", to360}, {Box::Blue, "1e2", to360},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(p.enterBox(c.box, c.text, false), c.message) << c.text.toStdString();
        EXPECT_EQ(p.colour(), rgb(10, 20, 30)) << "a bad value changed the colour";
    }
    // An empty box while typing is no error yet; when left it is.
    EXPECT_EQ(p.enterBox(Box::Green, "", false), std::nullopt);
    EXPECT_EQ(p.enterBox(Box::Green, "", true), to360);

    EXPECT_EQ(p.enterBox(Box::Red, "255", true), std::nullopt);
    EXPECT_EQ(p.colour(), rgb(255, 20, 30));
    EXPECT_EQ(p.enterBox(Box::B, "0", true), std::nullopt);
    EXPECT_EQ(p.colour(), 0u);
    EXPECT_EQ(p.enterBox(Box::B, "100", true), std::nullopt);
    EXPECT_EQ(p.colour(), rgb(255, 20, 30)) << "hue and saturation survive a trip through black";
    EXPECT_EQ(p.enterBox(Box::H, "240", true), std::nullopt);
    EXPECT_EQ(p.enterBox(Box::S, "100", true), std::nullopt);
    EXPECT_EQ(p.colour(), rgb(0, 0, 255));
}

TEST(PickerWindow, DraggingUpdatesEveryBoxAndTheStatusBar)
{
    QTemporaryDir dir;
    RecordingMessages messages;
    FrmCol f(rgb(255, 0, 0), FieldMode::Hue, dir.path(), &messages);
    EXPECT_EQ(f.objectName(), "frmcol");
    EXPECT_EQ(f.windowTitle(), "Colore");
    EXPECT_EQ(boxes(f), (QStringList{"0", "100", "100", "255", "0", "0", "R: 255", "G: 0", "B: 0", "Hex: #FF0000"}));

    mouse(f.field(), QEvent::MouseButtonPress, {255, 0});
    mouse(f.field(), QEvent::MouseMove, {0, 0});
    EXPECT_EQ(boxes(f), (QStringList{"0", "0", "100", "255", "255", "255", "R: 255", "G: 255", "B: 255",
                                     "Hex: #FFFFFF"}));
    mouse(f.field(), QEvent::MouseMove, {255, 128});
    mouse(f.field(), QEvent::MouseButtonRelease, {255, 128});
    EXPECT_EQ(boxes(f), (QStringList{"0", "100", "50", "127", "0", "0", "R: 127", "G: 0", "B: 0", "Hex: #7F0000"}));

    mouse(f.slider(), QEvent::MouseButtonPress, {10, 170});
    EXPECT_EQ(boxes(f), (QStringList{"240", "100", "50", "0", "0", "127", "R: 0", "G: 0", "B: 127", "Hex: #00007F"}));
    EXPECT_EQ(f.colour(), rgb(0, 0, 127));

    // Another mode: the slider now gives the brightness.
    f.findChild<QRadioButton*>("optB")->setChecked(true);
    mouse(f.slider(), QEvent::MouseButtonPress, {10, 0});
    EXPECT_EQ(f.colour(), rgb(0, 0, 255));

    // A bad value: the message, and the box back to what it was.
    auto* txtB = f.findChild<QLineEdit*>("txtB");
    txtB->setText("250");
    emit txtB->textEdited("250");
    EXPECT_EQ(messages.shown, QStringList{"Errore|Inserisci un valore valido tra 1 e 100"});
    EXPECT_EQ(txtB->text(), "100");
    EXPECT_EQ(f.colour(), rgb(0, 0, 255));

    // Return on an empty box: the message, and the dialog stays open until
    // the next Return.
    f.show();
    f.activateWindow();
    QApplication::setActiveWindow(&f);
    auto* green = f.findChild<QLineEdit*>("Text2");
    green->setFocus();
    green->clear();
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(green, &enter);
    EXPECT_EQ(messages.shown.size(), 2);
    EXPECT_EQ(messages.shown.value(1), "Errore|Inserisci un valore valido tra 1 e 360");
    EXPECT_EQ(green->text(), "0");
    EXPECT_TRUE(f.isVisible());
    f.hide();

    auto* red = f.findChild<QLineEdit*>("Text1");
    red->setText("128");
    emit red->textEdited("128");
    EXPECT_EQ(boxes(f).mid(3), (QStringList{"128", "0", "255", "R: 128", "G: 0", "B: 255", "Hex: #8000FF"}));
    EXPECT_EQ(f.findChild<QLineEdit*>("txtH")->text(), "270");
}

TEST(PickerWindow, ReadyMadeColoursAndTheCustomGrid)
{
    QTemporaryDir dir;
    FrmCol f(rgb(1, 2, 3), FieldMode::Saturation, dir.path(), nullptr);
    auto* toggle = f.findChild<QPushButton*>("command3");
    auto* preset = f.findChild<QComboBox*>("cmbPreset");
    EXPECT_EQ(preset->itemText(0), "Palette (216)");
    EXPECT_EQ(preset->itemText(1), "Personalizzati...");
    EXPECT_EQ(toggle->text(), "&Pronti");
    toggle->click();
    EXPECT_TRUE(f.showingPresets());
    EXPECT_EQ(toggle->text(), "&Selez.");

    // The cell at the bottom right of the palette is white, the one before
    // it the palest yellow.
    mouse(f.field(), QEvent::MouseButtonPress, {250, 250});
    EXPECT_EQ(f.colour(), rgb(255, 255, 255));
    const QRect cell = gridCell(QRect(0, 0, 256, 256), kPaletteColumns, kPaletteRows, 214);
    mouse(f.field(), QEvent::MouseButtonPress, cell.center());
    EXPECT_EQ(f.colour(), rgb(255, 255, 204));

    // Added twice: the first two cells, and the file says so.
    f.addCustom();
    f.picker().setColour(rgb(0x10, 0x20, 0x30));
    f.addCustom();
    EXPECT_EQ(preset->currentIndex(), 1);
    QFile file(customColoursPath(dir.path()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    ASSERT_EQ(lines.size(), 226);  // 225 lines and the empty rest after the last
    EXPECT_EQ(lines[0], " 13434879");
    EXPECT_EQ(lines[1], " 3153936");
    EXPECT_EQ(lines[2], "-1");

    // A second dialog reads them back; a click on the second cell picks it.
    FrmCol g(0, FieldMode::Hue, dir.path(), nullptr);
    g.findChild<QComboBox*>("cmbPreset")->setCurrentIndex(1);
    EXPECT_TRUE(g.showingPresets());
    mouse(g.field(), QEvent::MouseButtonPress,
          gridCell(QRect(0, 0, 256, 256), kCustomColumns, kCustomRows, 1).center());
    EXPECT_EQ(g.colour(), rgb(0x10, 0x20, 0x30));
    // An empty cell holds no colour to pick.
    mouse(g.field(), QEvent::MouseButtonPress,
          gridCell(QRect(0, 0, 256, 256), kCustomColumns, kCustomRows, 100).center());
    EXPECT_EQ(g.colour(), rgb(0x10, 0x20, 0x30));
    QImage shot = g.field()->grab().toImage();
    EXPECT_EQ(shot.pixel(gridCell(QRect(0, 0, 256, 256), kCustomColumns, kCustomRows, 0).center()),
              qRgb(255, 255, 204));
}

TEST(ColoreControl, ShowsThePickerAndKeepsTheChosenColour)
{
    QTemporaryDir dir;
    RecordingMessages messages;
    Colore c(dir.path(), &messages);
    c.setColor(rgb(0, 0, 255));
    c.setMode(FieldMode::Brightness);

    // Confirm after a click at the top right of the field.
    QTimer::singleShot(0, [] {
        auto* f = qobject_cast<FrmCol*>(QApplication::activeModalWidget());
        ASSERT_NE(f, nullptr);
        EXPECT_TRUE(f->findChild<QRadioButton*>("optB")->isChecked());
        mouse(f->field(), QEvent::MouseButtonPress, {0, 0});
        f->findChild<QPushButton*>("command1")->click();
    });
    EXPECT_TRUE(c.Show());
    EXPECT_EQ(c.Color(), rgb(255, 0, 0));

    // Cancel leaves the colour alone.
    QTimer::singleShot(0, [] {
        auto* f = qobject_cast<FrmCol*>(QApplication::activeModalWidget());
        ASSERT_NE(f, nullptr);
        mouse(f->field(), QEvent::MouseButtonPress, {100, 100});
        f->findChild<QPushButton*>("command2")->click();
    });
    EXPECT_FALSE(c.Show());
    EXPECT_EQ(c.Color(), rgb(255, 0, 0));

    // Icons: a text file and a wide picture are refused, a square one taken.
    QFile text(dir.filePath("nota.txt"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("niente");
    text.close();
    QImage(64, 16, QImage::Format_RGB32).save(dir.filePath("wide.png"));
    QImage square(32, 32, QImage::Format_ARGB32);
    square.fill(Qt::red);
    square.save(dir.filePath("icon.png"));
    EXPECT_FALSE(c.setIcon(dir.filePath("nota.txt")));
    EXPECT_FALSE(c.setIcon(dir.filePath("wide.png")));
    EXPECT_TRUE(c.Icon().isNull());
    EXPECT_TRUE(c.setIcon(dir.filePath("icon.png")));
    EXPECT_FALSE(c.Icon().isNull());
    EXPECT_FALSE(c.setIcon(dir.filePath("missing.ico")));
    EXPECT_FALSE(c.Icon().isNull());
    EXPECT_EQ(messages.shown, QStringList(3, "Errore|Non è un icona!"));

    // Manual place, held on the screen when asked.
    c.setDialogStartUpPosition(Colore::Manual);
    c.setDialogLeft(-500);
    c.setDialogTop(30);
    const QRect screen = QApplication::primaryScreen()->availableGeometry();
    EXPECT_EQ(c.placeFor(QSize(200, 100), nullptr), QPoint(screen.left(), std::max(30, screen.top())));
    c.setAdjustPosition(false);
    EXPECT_EQ(c.placeFor(QSize(200, 100), nullptr), QPoint(-500, 30));

    // The properties kept by a window come back whole in another control;
    // values out of range keep what was there.
    Colore d(dir.path(), &messages);
    d.setProperties(c.properties());
    EXPECT_EQ(d.properties(), c.properties());
    EXPECT_FALSE(d.Icon().isNull());
    d.setProperties({{"Mode", 7}, {"DialogStartUpPosition", "centro"}, {"Color", 0x01020304}});
    EXPECT_EQ(d.Mode(), FieldMode::Brightness);
    EXPECT_EQ(d.DialogStartUpPosition(), Colore::Manual);
    EXPECT_EQ(d.Color(), 0x020304u);
}
