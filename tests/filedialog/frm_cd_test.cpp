// The dialog's window on the offscreen platform: a big folder fills from the
// event loop, the picture mode previews, the bar's organiser saves entries.

#include "core/settings.h"
#include "filedialog/frm_cd.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeView>

using namespace tornelia;

namespace {

class SilentMessages final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int, int) override
    {
        shown << title + " | " + text;
        return "ok";
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    QStringList shown;
};

struct Folder {
    QTemporaryDir dir;
    QTemporaryDir config;
    SettingsStore settings{config.path()};
    SilentMessages messages;

    CdRequest request(FileChoice choice)
    {
        settings.scriviReg("", "DirOp", "5", dir.path());
        return requestFor(choice, settings);
    }
};

TEST(FrmCD, ABigFolderFillsASliceAtATimeWithTheNoteShown)
{
    Folder f;
    for (int i = 0; i < 3000; ++i)
        QFile(f.dir.path() + QString("/f%1.rtf").arg(2999 - i, 5, 10, QChar('0'))).open(QIODevice::WriteOnly);
    frmCD dialog(f.request(FileChoice::OpenDocument), f.settings, f.messages);
    auto* list = dialog.findChild<QTreeView*>("lista");
    auto* status = dialog.findChild<QLabel*>("stato");
    ASSERT_TRUE(list && status);
    EXPECT_EQ(dialog.objectName(), "frmCD");
    EXPECT_EQ(dialog.windowTitle(), "Seleziona il file da aprire");
    EXPECT_EQ(dialog.findChild<QPushButton*>("azione")->text(), "Apri");

    // Part of the folder is in and the note is up, but the window is free.
    EXPECT_TRUE(dialog.filling());
    EXPECT_FALSE(status->isHidden());
    EXPECT_EQ(status->text(), "Creazione lista file in corso...");
    const int first = list->model()->rowCount();
    EXPECT_GT(first, 0);
    EXPECT_LT(first, 3001);

    for (int turns = 0; dialog.filling() && turns < 1000; ++turns)
        QApplication::processEvents();
    EXPECT_FALSE(dialog.filling());
    EXPECT_TRUE(status->isHidden());
    ASSERT_EQ(list->model()->rowCount(), 3001);
    EXPECT_EQ(list->model()->index(0, 0).data().toString(), "<..>");
    EXPECT_EQ(list->model()->index(1, 0).data().toString(), "f00000.rtf");
    EXPECT_EQ(list->model()->index(3000, 0).data().toString(), "f02999.rtf");
    EXPECT_EQ(list->model()->headerData(1, Qt::Horizontal).toString(), "Dimensioni");
}

TEST(FrmCD, PictureModePreviewsTheChosenPicture)
{
    Folder f;
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(f.dir.path() + "/foto.png"));
    QFile(f.dir.path() + "/nota.txt").open(QIODevice::WriteOnly);

    frmCD dialog(f.request(FileChoice::OpenPicture), f.settings, f.messages);
    EXPECT_EQ(dialog.windowTitle(), "Seleziona il file immagine");
    auto* list = dialog.findChild<QTreeView*>("lista");
    ASSERT_EQ(list->model()->rowCount(), 2);  // the parent and the picture
    list->setCurrentIndex(list->model()->index(1, 0));
    EXPECT_EQ(dialog.findChild<QLineEdit*>("nome")->text(), "foto.png");
    const QString info = dialog.findChild<QLabel*>("Pinfo")->text();
    EXPECT_TRUE(info.startsWith("Dimensioni: 40 x 30 pixel")) << info.toStdString();
    EXPECT_FALSE(dialog.findChild<QLabel*>("pimm")->pixmap().isNull());

    dialog.findChild<QPushButton*>("azione")->click();
    EXPECT_EQ(dialog.result(), f.dir.path() + "/foto.png");
    EXPECT_EQ(f.settings.leggiReg("", "DirOp", "5"), f.dir.path());
}

TEST(FrmCD, SaveModeSuggestsTheNameAndTheBarTakesNewEntries)
{
    Folder f;
    CdRequest r = f.request(FileChoice::SaveDocument);
    r.suggestedName = f.dir.path() + "/Documento 1.tnl";
    frmCD dialog(r, f.settings, f.messages);
    EXPECT_EQ(dialog.windowTitle(), "Seleziona il file da salvare");
    EXPECT_EQ(dialog.findChild<QPushButton*>("azione")->text(), "Salva");
    EXPECT_EQ(dialog.findChild<QLineEdit*>("nome")->text(), "Documento 1.tnl");
    // Picking "Rich Text File (*.rtf)" carries the typed name along.
    auto* filter = dialog.findChild<QComboBox*>("filtro");
    ASSERT_EQ(filter->itemText(2), "Rich Text File (*.rtf)");
    filter->activated(2);
    EXPECT_EQ(dialog.findChild<QLineEdit*>("nome")->text(), "Documento 1.rtf");
    dialog.findChild<QPushButton*>("azione")->click();
    EXPECT_EQ(dialog.result(), f.dir.path() + "/Documento 1.rtf");

    frmTb tb(f.settings, f.messages);
    EXPECT_EQ(tb.windowTitle(), "Organizza Barra delle Risorse");
    tb.findChild<QPushButton*>("nuovo")->click();
    EXPECT_EQ(tb.findChild<QLineEdit*>("nomeVisualizzato")->text(), "Nuovo");
    tb.findChild<QLineEdit*>("nomeVisualizzato")->setText("Lettere");
    tb.findChild<QLineEdit*>("percorso")->setText(f.dir.path());
    tb.findChild<QPushButton*>("salva")->click();
    EXPECT_TRUE(f.messages.shown.isEmpty()) << f.messages.shown.join("\n").toStdString();

    dialog.CreABar();
    auto* bar = dialog.findChild<QListWidget*>("Tb");
    QStringList names;
    for (int i = 0; i < bar->count(); ++i)
        names << bar->item(i)->text();
    EXPECT_EQ(names.join(", "), "Documenti, Desktop, Lettere");
}

}  // namespace
