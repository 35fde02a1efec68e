#include "core/ports.h"
#include "core/rich_text_surface.h"
#include "core/undo_store.h"
#include "pictures/designer/designer_window.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFocusEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QTemporaryDir>

#include <deque>

using namespace tornelia;
using namespace tornelia::designer;

namespace {

// Keeps every message as "title | text | buttons" and answers from a queue
// ("ok" to a lone OK, "an" otherwise when the queue is empty).
class Messages final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int buttons, int) override
    {
        said << title + QStringLiteral(" | ") + text + QStringLiteral(" | ") + QString::number(buttons);
        if (answers.empty())
            return buttons == 0 ? QStringLiteral("ok") : QStringLiteral("an");
        const QString a = answers.front();
        answers.pop_front();
        return a;
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    QStringList said;
    std::deque<QString> answers;
};

class Dialogs final : public DialogPort {
public:
    std::optional<QString> openFile(const QString&, const QStringList& filters) override
    {
        lastFilters = filters;
        return openPath;
    }
    std::optional<QString> saveFile(const QString&, const QStringList& filters, const QString&) override
    {
        lastFilters = filters;
        return savePath;
    }
    std::optional<QString> chooseFolder(const QString&) override { return std::nullopt; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return std::nullopt; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return colour; }
    std::optional<QString> openPath;
    std::optional<QString> savePath;
    std::optional<std::uint32_t> colour;
    QStringList lastFilters;
};

QImage rgb(const QImage& image)
{
    return image.convertToFormat(QImage::Format_RGB32);
}

struct Designer {
    explicit Designer(bool withTextures = true)
    {
        const QString shipped = withTextures ? shippedSfondiFolder() : QString();
        form = std::make_unique<Form2>(DesignerHost{testo, undo, messages, dialogs, dir.filePath("temp"),
                                                    dir.filePath("sfondi"), shipped});
    }
    QTemporaryDir dir;
    RichTextSurface testo;
    UndoStore undo{testo};
    Messages messages;
    Dialogs dialogs;
    std::unique_ptr<Form2> form;

    template <typename T>
    T* find(const QString& name) const
    {
        return form->findChild<T*>(name);
    }
};

// name | caption | tip of each control, as the user sees them.
QString describe(const Form2& f, const QString& name)
{
    const QWidget* w = f.findChild<QWidget*>(name);
    if (!w)
        return name + QStringLiteral(" missing");
    QString caption;
    if (auto* b = qobject_cast<const QAbstractButton*>(w))
        caption = b->text();
    return name + QStringLiteral(" | ") + caption + QStringLiteral(" | ") + w->toolTip();
}

QStringList items(const QComboBox* c)
{
    QStringList out;
    for (int i = 0; i < c->count(); ++i)
        out << c->itemText(i);
    return out;
}

}  // namespace

TEST(DesignerWindow, OpensWithEveryControlAndItsStartingValues)
{
    Designer d;
    Form2& f = *d.form;
    EXPECT_EQ(f.objectName(), "form2");
    EXPECT_EQ(f.windowTitle(), "Testo speciale");
    EXPECT_TRUE(d.messages.said.isEmpty()) << d.messages.said.join("\n").toStdString();

    const QStringList names{"Text1", "CboName", "CboStyle", "CboSize", "CboAlign", "ChkAlias", "ChkAlpha",
                            "TxtAlpha", "ChkBorder", "TxtBordersize", "ChkMirror", "ChkInvert", "TxtSizeX",
                            "TxtSizeY", "ChkCol(0)", "ChkCol(1)", "ChkGrad(0)", "ChkGrad(2)", "CmdSwapColors(0)",
                            "CmdSwapColors(2)", "CboGrStyle(1)", "ImgPrev(0)", "CmdDLOK(1)", "ChkTransparent",
                            "ChkGlow", "ChkFade", "ChkTile", "ChkShrink", "ChkStretch", "ChkLight", "ChkReal"};
    QStringList seen;
    for (const QString& n : names)
        seen << describe(f, n);
    const QStringList expected{
        "Text1 |  | Scrivi qui il testo",
        "CboName |  | Nome Font",
        "CboStyle |  | Stile font",
        "CboSize |  | Dimensioni font",
        "CboAlign |  | Allineamento font",
        "ChkAlias | Anti Alias | ",
        "ChkAlpha | Canale alpha | ",
        "TxtAlpha |  | Transparenza in % (0 = trasparente / 100 = opaco)",
        "ChkBorder | Bordo | Bordo intorno al testo",
        "TxtBordersize |  | Spessore bordo",
        "ChkMirror | Specchio | Effetto specchio",
        "ChkInvert | Inverti | ",
        "TxtSizeX |  | Dimensione orizzontale",
        "TxtSizeY |  | Dimensione verticale",
        "ChkCol(0) | Colore | Colore Font",
        "ChkCol(1) | Colore | Colore Font",
        "ChkGrad(0) | Gradiente | ",
        "ChkGrad(2) | Gradiente | ",
        "CmdSwapColors(0) | Inverti colori | ",
        "CmdSwapColors(2) | Inverti Colori | ",
        "CboGrStyle(1) |  | Stile gradiente",
        "ImgPrev(0) |  | Anteprima - muovi la barra per applicare + o - trasparenza all'immagine e conferma con OK",
        "CmdDLOK(1) | OK | Conferma la trasparenza dell'immagine",
        "ChkTransparent | Transparente | Imposta il colore del testo a trasparente",
        "ChkGlow | Trasparente | Sfoca il bordo col colore specificato",
        "ChkFade | Sfoca sfondo | Sfoca il bordo e lo sfondo mescolandoli",
        "ChkTile | Ripeti | Ripeti l'immagine fino a coprire l'intera superficie",
        "ChkShrink | Adatta restringendo | Adatta immagine alle dimensioni restringendola",
        "ChkStretch | Adatta ingrandendo | Adatta immagine alle dimensioni ingrandendola",
        "ChkLight | Luce | Fai clic sull'immagine per accendere la luce in quel punto",
        "ChkReal | Reale | Impostando reale verrà illuminato anche il testo, che può diventare meno leggibile",
    };
    EXPECT_EQ(seen, expected);

    // Every other named control exists.
    for (const char* n : {"VScrAlpha", "VScroll1", "VscrX", "VscrY", "CmdSolCol(0)", "CmdGrCol(5)", "File(0)",
                          "File(1)", "HScrDL(0)", "cmdload(0)", "CmdToTex(1)", "ChkLeft", "ChkRight", "ChkTop",
                          "ChkBottom", "CmdBackcolor", "CmdClearBack", "cmdBackground", "HScrMoveBack",
                          "VScrMoveBack", "PBar", "FrmBlock", "CmdLightCol", "HScrStrnght", "HScrDist",
                          "PicMagnify", "ShpSun", "cmdShadow", "cmdHover", "cmdPoint", "cmdLine", "cmdBox", "cmdpip",
                          "CmdDrawColor", "cmdRedraw", "cmdBend", "cmdsave", "cmdclipboard", "Pic", "LblWarning"})
        EXPECT_NE(f.findChild<QWidget*>(n), nullptr) << n;

    EXPECT_EQ(items(f.CboName), QFontDatabase::families());
    EXPECT_EQ(f.CboName->currentIndex(), 0);
    EXPECT_EQ(items(f.CboStyle), (QStringList{"Normale", "Grassetto", "Corsivo", "Sottolineato"}));
    EXPECT_EQ(items(f.CboSize), (QStringList{"12", "16", "20", "24", "28", "32", "36", "40", "44", "48", "52", "56",
                                             "60", "64", "68", "72"}));
    EXPECT_EQ(f.CboSize->currentText(), "36");
    EXPECT_EQ(items(f.CboAlign), (QStringList{"Centro", "Sinistra", "Destra", "Manuale"}));
    EXPECT_EQ(items(f.CboGrStyle[0]), (QStringList{"Circolare", "Orizziontale", "Verticale"}));
    EXPECT_EQ(items(f.CboFX), (QStringList{"Monocromatico", "Blur", "DePixel", "Negativo"}));
    EXPECT_EQ(f.LblWarning->text(), "Attenzione! Tutte le modifiche apportate verranno perse. Continuare?");

    // The picture has the size of the boxes, and the bars stand at their negatives.
    EXPECT_EQ(f.picture().size(), QSize(f.TxtSizeX->value(), f.TxtSizeY->value()));
    EXPECT_EQ(f.VscrX->value(), -f.TxtSizeX->value());
    EXPECT_EQ(f.VscrY->value(), -f.TxtSizeY->value());
    // The shown picture keeps 17 pixels of margin in its frame.
    EXPECT_EQ(f.Pic->pos(), QPoint(17, 17));
    EXPECT_EQ(f.frame->size(), f.picture().size() + QSize(34, 34));
    // Each texture list holds the shipped files, the first one chosen.
    const int shipped = QDir(shippedSfondiFolder()).entryList({"*.png"}, QDir::Files).size();
    EXPECT_GE(shipped, 10);
    EXPECT_EQ(f.File[0]->count(), shipped);
    EXPECT_EQ(f.File[1]->currentRow(), 0);
}

TEST(DesignerWindow, EveryChangeRendersThePictureAnew)
{
    Designer d;
    Form2& f = *d.form;
    QImage last = f.picture();
    ASSERT_FALSE(last.isNull());
    QStringList unchanged;
    auto expectChange = [&](const char* what) {
        const QImage now = f.picture();
        if (now == last)
            unchanged << what;
        last = now;
    };
    f.Text1->setText("Ciao");
    expectChange("text");
    f.ChkBorder->setChecked(true);
    expectChange("border");
    f.TxtBordersize->setValue(4);
    expectChange("border size");
    f.VScroll1->setValue(-6);
    expectChange("border bar");
    EXPECT_EQ(f.TxtBordersize->value(), 6);
    f.CboStyle->setCurrentIndex(1);
    expectChange("style");
    f.CboSize->setCurrentText("50");  // typed, not in the list
    expectChange("typed size");
    f.CboAlign->setCurrentIndex(1);
    expectChange("alignment");
    f.ChkMirror->setChecked(true);
    expectChange("mirror");
    f.ChkInvert->setChecked(true);
    expectChange("invert");
    f.ChkInvert->setChecked(false);
    f.ChkMirror->setChecked(false);
    last = f.picture();
    f.ChkCol[0]->setChecked(false);
    f.ChkGrad[0]->setChecked(true);
    expectChange("text gradient");
    f.CmdSwapColors[0]->click();
    expectChange("swapped colours");
    f.ChkGrad[2]->setChecked(true);
    expectChange("background gradient");
    d.dialogs.colour = 0x00FF00;
    f.CmdSolCol[1]->click();
    expectChange("border colour");
    EXPECT_EQ(unchanged, QStringList{});

    // A size typed that is not a number keeps the picture as it was.
    f.CboSize->setCurrentText("abc");
    EXPECT_EQ(f.picture(), last);

    // The size boxes and their bars move the canvas together.
    f.VscrX->setValue(-250);
    EXPECT_EQ(f.TxtSizeX->value(), 250);
    f.TxtSizeY->setValue(90);
    EXPECT_EQ(f.VscrY->value(), -90);
    EXPECT_EQ(f.picture().size(), QSize(250, 90));
    EXPECT_EQ(f.frame->size(), QSize(250 + 34, 90 + 34));

    // Left empty, the text becomes "No Text" when the box loses the focus.
    f.Text1->setText(QString());
    QFocusEvent out(QEvent::FocusOut);
    QCoreApplication::sendEvent(f.Text1, &out);
    EXPECT_EQ(f.Text1->text(), "No Text");
}

TEST(DesignerWindow, TexturesAndBackgroundsFromTheFolderTheUserOrAFile)
{
    {
        Designer d(false);
        EXPECT_EQ(d.messages.said,
                  QStringList{"Sfondi non trovati | La cartella contenente gli sfondi non è stata trovata | 0"});
        EXPECT_EQ(d.form->File[0]->count(), 0);
    }
    Designer d;
    const int before = d.form->File[0]->count();
    const QString mine = d.dir.filePath("mia trama.png");
    QImage red(8, 8, QImage::Format_RGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(mine));
    d.dialogs.openPath = mine;
    d.form->CmdToTexButton[0]->click();
    EXPECT_TRUE(QFileInfo::exists(d.dir.filePath("sfondi/mia trama.png")));
    ASSERT_EQ(d.form->File[0]->count(), before + 1);
    ASSERT_EQ(d.form->File[1]->count(), before + 1);
    EXPECT_EQ(d.dialogs.lastFilters.value(0), "GFX Files (*.bmp;*.jpg;*.gif;*.wmf;.emf)");

    // Chosen from the list, it becomes the texture of the text.
    d.form->ChkCol[0]->setChecked(false);
    const auto found = d.form->File[0]->findItems("mia trama", Qt::MatchExactly);
    ASSERT_EQ(found.size(), 1);
    d.form->File[0]->setCurrentItem(found.first());
    EXPECT_EQ(rgb(d.form->engine().texture(0)), rgb(red));

    // The lightening bar previews; a render drops what was not confirmed,
    // OK keeps it (255 makes any texture white).
    QImage white(8, 8, QImage::Format_RGB32);
    white.fill(Qt::white);
    d.form->HScrDL[0]->setValue(255);
    EXPECT_FALSE(d.form->CmdDLOK[0]->isHidden());
    EXPECT_EQ(rgb(d.form->ImgPrev[0]->pixmap().toImage()), rgb(white));
    d.form->ChkAlias->setChecked(true);
    EXPECT_EQ(d.form->HScrDL[0]->value(), 0);
    EXPECT_TRUE(d.form->CmdDLOK[0]->isHidden());
    EXPECT_EQ(rgb(d.form->ImgPrev[0]->pixmap().toImage()), rgb(red));
    EXPECT_EQ(rgb(d.form->engine().texture(0)), rgb(red));
    d.form->HScrDL[0]->setValue(255);
    d.form->CmdDLOK[0]->click();
    EXPECT_TRUE(d.form->CmdDLOK[0]->isHidden());
    EXPECT_EQ(rgb(d.form->engine().texture(0)), rgb(white));
    d.form->File[0]->setCurrentRow(0);
    d.form->File[0]->setCurrentItem(found.first());
    EXPECT_EQ(rgb(d.form->engine().texture(0)), rgb(red));

    // A background larger than the canvas can be moved by the bars, as far
    // as it reaches; shrunk to fit, or taken away, it cannot.
    QImage big(600, 300, QImage::Format_RGB32);
    for (int y = 0; y < big.height(); ++y)
        for (int x = 0; x < big.width(); ++x)
            big.setPixel(x, y, qRgb(x % 256, y % 256, 128));
    const QString bigPath = d.dir.filePath("grande.png");
    ASSERT_TRUE(big.save(bigPath));
    Form2& f = *d.form;
    const QSize canvas = f.picture().size();
    d.dialogs.openPath = bigPath;
    f.cmdBackgroundButton->click();
    auto bars = [&] {
        return QList<int>{f.HScrMoveBack->isEnabled(), f.HScrMoveBack->maximum(), f.VScrMoveBack->isEnabled(),
                          f.VScrMoveBack->maximum()};
    };
    EXPECT_EQ(bars(), (QList<int>{1, 600 - canvas.width(), 1, 300 - canvas.height()}));
    const QImage atOrigin = f.picture();
    f.HScrMoveBack->setValue(50);
    EXPECT_NE(f.picture(), atOrigin);
    f.ChkShrink->setChecked(true);
    EXPECT_EQ(bars(), (QList<int>{0, 0, 0, 0}));
    f.ChkShrink->setChecked(false);
    f.CmdClearBack->click();
    EXPECT_EQ(bars(), (QList<int>{0, 0, 0, 0}));
    EXPECT_FALSE(f.engine().hasBackground());

    // A file that is not a picture is refused and the texture stays.
    const QString junk = d.dir.filePath("nota.bmp");
    QFile j(junk);
    ASSERT_TRUE(j.open(QIODevice::WriteOnly));
    j.write("non un'immagine");
    j.close();
    d.dialogs.openPath = junk;
    d.messages.said.clear();
    d.form->cmdloadButton[0]->click();
    EXPECT_EQ(d.messages.said.size(), 1);
    EXPECT_EQ(rgb(d.form->engine().texture(0)), rgb(red));
}

TEST(DesignerWindow, SavesTheBitmapAndInsertsThePictureIntoTheDocument)
{
    Designer d;
    Form2& f = *d.form;
    f.Text1->setText("Prova");
    f.ChkBorder->setChecked(true);
    const QString bmp = d.dir.filePath("uscita.bmp");
    d.dialogs.savePath = bmp;
    f.cmdsaveButton->click();
    EXPECT_EQ(d.dialogs.lastFilters, QStringList{"Bitmap (*.bmp)"});
    const QImage saved(bmp, "BMP");
    ASSERT_FALSE(saved.isNull());
    EXPECT_EQ(rgb(saved), rgb(f.picture()));

    // A save that cannot be written says so and leaves nothing behind.
    d.dialogs.savePath = d.dir.filePath("manca/uscita.bmp");
    f.cmdsaveButton->click();
    EXPECT_EQ(d.messages.said.size(), 1);
    EXPECT_FALSE(QFileInfo::exists(d.dir.filePath("manca/uscita.bmp")));

    // The clipboard and the document both get the picture; an old temp1.bmp
    // is replaced.
    d.testo.setText("prima  dopo");
    d.testo.setSelStart(6);
    QDir().mkpath(d.dir.filePath("temp"));
    QFile old(d.dir.filePath("temp/temp1.bmp"));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("vecchio");
    old.close();
    f.cmdclipboardButton->click();
    EXPECT_EQ(rgb(QImage(d.dir.filePath("temp/temp1.bmp"))), rgb(f.picture()));
    EXPECT_EQ(rgb(QGuiApplication::clipboard()->image()), rgb(f.picture()));
    const QString rtf = d.testo.TextRTF();
    EXPECT_TRUE(rtf.contains("{\\pict\\pngblip")) << rtf.left(400).toStdString();
    EXPECT_TRUE(rtf.contains(QString("\\picw%1\\pich%2").arg(f.picture().width()).arg(f.picture().height())));
    EXPECT_EQ(d.testo.Text(), QString("prima ") + QChar(QChar::ObjectReplacementCharacter) + " dopo");

    // One undo step takes it out again.
    d.undo.UnDoo();
    EXPECT_EQ(d.testo.Text(), "prima  dopo");
    d.undo.RedOO();

    // Saved and read back, the picture is still there, pixel for pixel.
    const QString doc = d.dir.filePath("documento.rtf");
    d.testo.SaveFile(doc, RichTextSurface::RtfKind);
    RichTextSurface again;
    again.LoadFile(doc, RichTextSurface::RtfKind);
    EXPECT_EQ(again.Text(), d.testo.Text());
    const long at = again.Text().indexOf(QChar(QChar::ObjectReplacementCharacter));
    again.setSelStart(at);
    again.setSelLength(1);
    const QString selected = again.SelRTF();
    EXPECT_TRUE(selected.contains("\\pngblip"));
}

TEST(DesignerWindow, EffectsWarnFirstAndTheAnswersWorkAsTheyAlwaysHave)
{
    Designer d;
    Form2& f = *d.form;
    f.Text1->setText("Ombra");
    const QImage rendered = f.picture();

    // A filter runs column by column behind the cover, then lets go.
    QList<int> columns;
    bool coveredAll = true;
    QObject::connect(&f, &Form2::filterColumn, [&](int x) {
        columns << x;
        coveredAll = coveredAll && f.busy() && !f.FrmBlock->isHidden() && !f.PBar->isHidden();
    });
    f.runFilter(3);  // "Negativo"
    EXPECT_EQ(columns.size(), rendered.width());
    EXPECT_EQ(columns.value(0), 0);
    EXPECT_EQ(columns.value(columns.size() - 1), rendered.width() - 1);
    EXPECT_TRUE(coveredAll);
    EXPECT_FALSE(f.busy());
    EXPECT_TRUE(f.FrmBlock->isHidden());
    EXPECT_TRUE(f.PBar->isHidden());
    EXPECT_EQ(f.CboFX->currentIndex(), -1);
    QImage negative = rgb(rendered);
    negative.invertPixels();
    EXPECT_EQ(rgb(f.picture()), negative);

    // "Ridisegna" redraws on the answer that is not "ok" ...
    d.messages.answers = {"ok"};
    f.cmdRedrawButton->click();
    EXPECT_EQ(rgb(f.picture()), negative);
    d.messages.answers = {"an"};
    f.cmdRedrawButton->click();
    EXPECT_EQ(f.picture(), rendered);
    // ... "Solo sfondo" and the shadow go on with "ok" only.
    d.messages.answers = {"an"};
    f.cmdBendButton->click();
    EXPECT_EQ(f.picture(), rendered);
    d.messages.answers = {"ok"};
    f.cmdBendButton->click();
    QImage white(rendered.size(), QImage::Format_RGB32);
    white.fill(Qt::white);
    EXPECT_EQ(rgb(f.picture()), white);

    QWidget* sun = f.findChild<QWidget*>("ShpSun");
    d.messages.answers = {"an"};
    f.cmdShadow->click();
    EXPECT_TRUE(sun->isHidden());
    d.messages.answers = {"ok"};
    f.cmdHover->click();
    EXPECT_FALSE(sun->isHidden());
    EXPECT_EQ(sun->property("tag").toString(), "Hover");
    const QString w = "Attenzione! Tutte le modifiche apportate verranno perse. Continuare? | 1";
    EXPECT_EQ(d.messages.said, (QStringList{"Ridisegna | " + w, "Ridisegna | " + w, "Solo sfondo | " + w,
                                            "Solo sfondo | " + w, "Ombra | " + w, "Sospeso | " + w}));
    f.previewSun(QPoint(60, 150));
    EXPECT_FALSE(f.engine().magnify().isNull());
    f.fixSun(QPoint(60, 150));
    EXPECT_TRUE(sun->isHidden());
}

TEST(DesignerWindow, DrawingToolsAndDraggingTheText)
{
    Designer d;
    Form2& f = *d.form;
    f.Text1->setText("X");
    d.dialogs.colour = 0x0000FF;  // red
    f.CmdDrawColor->click();

    f.cmdPoint->click();
    f.pictureMouse(QPoint(3, 4), true);
    EXPECT_EQ(f.picture().pixel(3, 4) & 0xFFFFFF, 0xFF0000u);

    // The line takes its start at the first press and draws at the second.
    f.cmdLine->click();
    const QImage before = f.picture();
    f.pictureMouse(QPoint(10, 20), true);
    EXPECT_EQ(f.picture(), before);
    f.pictureMouse(QPoint(40, 20), true);
    for (int x = 10; x <= 40; ++x)
        EXPECT_EQ(f.picture().pixel(x, 20) & 0xFFFFFF, 0xFF0000u) << x;

    // The eyedropper takes the colour under the pointer and puts itself away.
    f.cmdpip->click();
    f.pictureMouse(QPoint(f.picture().width() - 1, 0), true);
    EXPECT_EQ(f.drawTool(), 0);
    EXPECT_FALSE(f.cmdpip->isChecked());
    d.dialogs.colour.reset();
    f.CmdDrawColor->click();  // cancelled: the colour stays the one taken
    f.cmdPoint->click();
    f.pictureMouse(QPoint(5, 5), true);
    EXPECT_EQ(f.picture().pixel(5, 5) & 0xFFFFFF, 0xFFFFFFu);
    f.cmdPoint->click();  // off again
    EXPECT_EQ(f.drawTool(), 0);

    // With no tool the text follows the pointer and the alignment turns to
    // "Manuale"; a later render keeps it there.
    f.CboAlign->setCurrentIndex(0);
    const QImage centred = f.picture();
    f.pictureMouse(QPoint(40, 30), true);
    EXPECT_EQ(f.CboAlign->currentIndex(), 3);
    const QImage moved = f.picture();
    EXPECT_NE(moved, centred);
    f.ChkAlias->setChecked(true);
    f.ChkAlias->setChecked(false);
    EXPECT_EQ(f.picture(), moved);

    // With the light on, a press on the picture lights it from there: the
    // coloured light only adds, so no pixel gets darker and some get
    // lighter; a render takes it away again.
    f.ChkLight->setChecked(true);
    d.dialogs.colour = 0x808080;  // a grey ground, which light can brighten
    f.CmdBackcolor->click();
    const QImage plain = rgb(f.picture());
    d.dialogs.colour = 0xFFFFFF;
    f.CmdLightCol->click();
    const QPointF at(30, 30);
    QMouseEvent press(QEvent::MouseButtonPress, at, f.Pic->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(f.Pic, &press);
    const QImage lit = rgb(f.picture());
    int lighter = 0, darker = 0;
    for (int y = 0; y < lit.height(); ++y)
        for (int x = 0; x < lit.width(); ++x) {
            const int before = qGray(plain.pixel(x, y)), after = qGray(lit.pixel(x, y));
            lighter += after > before;
            darker += after < before;
        }
    EXPECT_GT(lighter, 0);
    EXPECT_EQ(darker, 0);
    EXPECT_EQ(f.CboAlign->currentIndex(), 3);  // the press lit, it did not move the text
    f.ChkMirror->toggle();
    f.ChkMirror->toggle();
    EXPECT_EQ(rgb(f.picture()), plain);
}
