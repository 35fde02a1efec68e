// The panel widget, the paste target and the two clipboard windows, on the
// real (offscreen) clipboard.

#include "clipboard/clip_panel.h"
#include "clipboard/clip_windows.h"

#include "core/clipboard_guard.h"
#include "core/procedures.h"
#include "core/rich_text_surface.h"
#include "core/settings.h"
#include "core/undo_store.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>

using namespace tornelia;

namespace {

class FakeClipboard final : public ClipSource {
public:
    QByteArray rtfData;
    QImage picture;
    QString plain;
    QByteArray rtf() const override { return rtfData; }
    QImage image() const override { return picture; }
    QString text() const override { return plain; }
};

class Recorder final : public ClipTarget {
public:
    QStringList calls;
    void pasteText(const QString& t) override { calls << "T:" + t; }
    void pasteRtf(const QString& r) override { calls << "R:" + r; }
    void pasteImage(const QImage&) override { calls << "I"; }
};

// The window's paste, as far as a picture on the clipboard needs it.
class PastingProcedures final : public MainProcedures {
public:
    explicit PastingProcedures(RichTextSurface& t) : t_(t) {}
    void INco(const QString& how) override
    {
        modes << how;
        t_.Paste();
    }
    void CopYa() override { t_.Copy(); }
    QStringList modes;

private:
    RichTextSurface& t_;
};

QImage filled(int w, int h, Qt::GlobalColor c)
{
    QImage i(w, h, QImage::Format_RGB32);
    i.fill(c);
    return i;
}

void putRtf(const QByteArray& rtf, const QString& text)
{
    auto* mime = new QMimeData;
    mime->setData("text/rtf", rtf);
    mime->setText(text);
    QGuiApplication::clipboard()->setMimeData(mime);
}

}  // namespace

TEST(ClipPanel, ShowsEachEntryByItsKindAndClears)
{
    QTemporaryDir dir;
    SettingsStore settings(dir.path());
    FakeClipboard clip;
    Recorder target;
    Clip panel(clip, target, settings);
    panel.show();
    EXPECT_EQ(panel.objectName(), "Clip");

    clip.plain = "semplice";
    panel.Aggiorna();
    clip.rtfData = "{\\rtf1\\ansi {\\b grassetto}}";
    clip.plain = "grassetto";
    panel.Aggiorna();
    clip = {};
    clip.picture = filled(40, 20, Qt::red);
    panel.Aggiorna();

    auto r = [&](int k) { return panel.findChild<QTextEdit*>(QStringLiteral("r%1").arg(k)); };
    auto i = [&](int k) { return panel.findChild<QLabel*>(QStringLiteral("i%1").arg(k)); };
    // Newest first: the picture, the rich text, the plain text, then free.
    EXPECT_TRUE(r(0)->isHidden());
    EXPECT_FALSE(i(0)->isHidden());
    EXPECT_EQ(i(0)->pixmap().size(), QSize(64, 32));
    EXPECT_FALSE(r(1)->isHidden());
    EXPECT_EQ(r(1)->toPlainText(), "grassetto");
    EXPECT_TRUE(r(1)->document()->firstBlock().begin().fragment().charFormat().fontWeight() >= QFont::Bold);
    EXPECT_EQ(r(2)->toPlainText(), "semplice");
    EXPECT_TRUE(r(3)->isHidden());
    EXPECT_TRUE(i(3)->isHidden());
    EXPECT_EQ(panel.selected(), 0);

    panel.setSelected(2);
    panel.ButCli(0);
    panel.ButCli(1);
    EXPECT_EQ(target.calls, (QStringList{"T:semplice", "I", "R:{\\rtf1\\ansi {\\b grassetto}}", "T:semplice"}));

    panel.ButCli(2);
    for (int k = 0; k < ClipHistory::kEntries; ++k) {
        EXPECT_TRUE(r(k)->isHidden()) << k;
        EXPECT_TRUE(i(k)->isHidden()) << k;
    }
    // Plain text shown where rich text was shows plain.
    clip = {};
    clip.rtfData = "{\\rtf1\\ansi {\\b tutto grassetto}}";
    panel.Aggiorna();
    clip = {};
    clip.plain = "piano";
    panel.Aggiorna();
    EXPECT_EQ(r(0)->toPlainText(), "piano");
    EXPECT_LT(r(0)->document()->firstBlock().begin().fragment().charFormat().fontWeight(), int(QFont::Bold));
    EXPECT_FALSE(r(1)->isHidden());
    EXPECT_TRUE(r(2)->isHidden());
}

// Another part of the program borrowing the clipboard (a picture bullet
// pasted through it) leaves no entry behind.
TEST(ClipPanel, ABorrowedClipboardIsNotRecorded)
{
    QTemporaryDir dir;
    SettingsStore settings(dir.path());
    SystemClipSource source;
    Recorder target;
    Clip panel(source, target, settings);
    QGuiApplication::clipboard()->setText("mio");
    panel.Aggiorna();
    ClipboardGuard guard;
    guard.saveClipboard();
    QGuiApplication::clipboard()->setImage(filled(6, 6, Qt::red));
    panel.Aggiorna();
    guard.restoreClipboard();
    panel.Aggiorna();
    EXPECT_EQ(panel.history().used(), 1);
    EXPECT_EQ(panel.history().entry(0).text, "mio");
    // A copy of the user's own after the loan is recorded as ever.
    QGuiApplication::clipboard()->setText("nuovo");
    EXPECT_EQ(panel.history().entry(0).text, "nuovo");
}

TEST(ClipPanel, OptionsAreKeptInTheSettings)
{
    QTemporaryDir dir;
    SettingsStore settings(dir.path());
    ClipOptions o;
    o.enabled = false;
    o.seconds = 7;
    o.noResize = true;
    o.width = 300;
    o.write(settings);
    const ClipOptions back = ClipOptions::read(settings);
    EXPECT_EQ(std::tie(back.enabled, back.seconds, back.noResize, back.width), std::tie(o.enabled, o.seconds, o.noResize, o.width));

    // A panel made with those options records nothing.
    FakeClipboard clip;
    clip.plain = "x";
    Recorder target;
    Clip panel(clip, target, settings);
    panel.Aggiorna();
    EXPECT_EQ(panel.history().used(), 0);
}

// A picture goes in through the clipboard and the window's paste; the
// user's own clipboard is back afterwards and the picture is in the RTF.
TEST(ClipPaste, PicturePastesIntoTheDocumentAndKeepsTheUserClipboard)
{
    RichTextSurface testo;
    UndoStore undo(testo);
    PastingProcedures procs(testo);
    SurfaceClipTarget target(testo, undo, procs);
    testo.setSelText("prima ");
    putRtf("{\\rtf1\\ansi mio}", "mio");

    target.pasteImage(filled(8, 6, Qt::blue));
    EXPECT_EQ(procs.modes, QStringList{QString()});
    EXPECT_EQ(testo.Text(), QStringLiteral("prima \uFFFC"));
    const QString rtf = testo.TextRTF();
    EXPECT_TRUE(rtf.contains("\\pict\\pngblip\\picw8\\pich6")) << rtf.toStdString();
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(mime->data("text/rtf"), QByteArray("{\\rtf1\\ansi mio}"));
    EXPECT_FALSE(mime->hasImage());

    // Saved and read again, the picture is still a picture of that size.
    RichTextSurface again;
    again.setTextRTF(rtf);
    const QTextFragment f = (++again.document()->firstBlock().begin()).fragment();
    ASSERT_TRUE(f.charFormat().isImageFormat());
    const QImage shown = again.document()
                             ->resource(QTextDocument::ImageResource, QUrl(f.charFormat().toImageFormat().name()))
                             .value<QImage>();
    EXPECT_EQ(shown.size(), QSize(8, 6));
    EXPECT_EQ(shown.pixelColor(3, 3), QColor(Qt::blue));

    // Text and rich text go straight into the selection, formats kept.
    target.pasteText(" testo");
    target.pasteRtf("{\\rtf1\\ansi {\\b forte}}");
    EXPECT_EQ(testo.Text(), QStringLiteral("prima \uFFFC testoforte"));
    testo.setSelStart(testo.length() - 2);
    testo.setSelLength(1);
    EXPECT_EQ(testo.SelBold(), std::optional<bool>(true));
}

TEST(ClipViewer, FormatNamesFollowTheOrderOfTests)
{
    struct Case {
        bool text, rtf, image;
        const char* name;
    };
    const Case cases[] = {
        {false, false, false, ""},          {true, false, false, "Testo normale"},
        {true, true, false, "Testo RTF"},   {false, true, false, "Testo RTF"},
        {true, true, true, "Immagine"},     {false, false, true, "Immagine"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(clipboardFormatName(c.text, c.rtf, c.image), QString::fromLatin1(c.name))
            << c.text << c.rtf << c.image;

    QGuiApplication::clipboard()->clear();
    FrmApp viewer;
    EXPECT_EQ(viewer.formato(), "Formato appunti: Non definito");
    putRtf("{\\rtf1\\ansi {\\b ricco}}", "ricco");
    viewer.guarda();
    EXPECT_EQ(viewer.formato(), "Formato appunti: Testo RTF");
    EXPECT_EQ(viewer.findChild<QTextEdit*>("Text1")->toPlainText(), "ricco");
    QGuiApplication::clipboard()->setImage(filled(4, 4, Qt::red));
    viewer.guarda();
    EXPECT_EQ(viewer.formato(), "Formato appunti: Immagine");
    EXPECT_FALSE(viewer.findChild<QLabel*>("Picture1")->pixmap().isNull());
}

TEST(PasteSpecial, OptionsThatCannotApplyAreDisabledAndButtonsRunTheModes)
{
    RichTextSurface testo;
    PastingProcedures procs(testo);

    QGuiApplication::clipboard()->clear();
    {
        FrmInc empty(testo, procs);
        EXPECT_EQ(empty.objectName(), "frmInc");
        EXPECT_FALSE(empty.findChild<QPushButton*>("u1")->isEnabled());
        EXPECT_FALSE(empty.findChild<QPushButton*>("u3")->isEnabled());  // nothing selected
    }
    QGuiApplication::clipboard()->setImage(filled(4, 4, Qt::red));
    {
        FrmInc picture(testo, procs);
        EXPECT_TRUE(picture.findChild<QRadioButton*>("op0")->isEnabled());
        EXPECT_FALSE(picture.findChild<QRadioButton*>("op1")->isEnabled());
        EXPECT_FALSE(picture.findChild<QRadioButton*>("op2")->isEnabled());
    }
    QGuiApplication::clipboard()->setText("parole");
    testo.setSelText("abc");
    testo.setSelStart(0);
    testo.setSelLength(3);
    FrmInc text(testo, procs);
    EXPECT_FALSE(text.findChild<QRadioButton*>("op0")->isEnabled());
    EXPECT_TRUE(text.findChild<QRadioButton*>("op1")->isChecked());
    text.findChild<QRadioButton*>("op2")->setChecked(true);
    text.u1();
    EXPECT_EQ(procs.modes, QStringList{"2"});

    // "Copia solo testo" leaves only the words on the clipboard.
    FrmInc copy(testo, procs);
    int refreshed = 0;
    copy.refreshPanel = [&] { ++refreshed; };
    copy.findChild<QRadioButton*>("o1")->setChecked(true);
    copy.u3();
    EXPECT_EQ(refreshed, 1);
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    EXPECT_FALSE(mime->hasFormat("text/rtf"));
}
