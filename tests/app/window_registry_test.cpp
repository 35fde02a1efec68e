// The windows a command shows, as the main window opens them through the
// registry, and what the ones with a document to act on do to it.
#include "app/command_line_procedures.h"
#include "app/frm_recuper.h"
#include "app/window_registry.h"
#include "core/autosave.h"
#include "macro/frm_mac.h"
#include "print/frm_imp.h"
#include "print/frm_preview.h"
#include "rtf/frm_ce.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QFileInfo>
#include <QListWidget>
#include <QRadioButton>
#include <QTimer>
#include <QTreeWidget>

namespace tornelia::testing {
namespace {

class WindowRegistryTest : public ::testing::Test {
protected:
    WindowRegistryTest() { registerAllWindows(registry); }
    template <class T> T* open(Window w)
    {
        registry.open(w, host);
        return owner.findChild<T*>();
    }

    TestContext t;
    QWidget owner;
    CommandLineProcedures procedures{t.context->testo(), t.context->undo()};
    WindowRegistry registry;
    const WindowHost host{*t.context, &owner, procedures};
};

// The windows of features not built yet are not there to open; a modal one
// holds the opener until it is closed and is gone once it returns; any other
// opens under the main window, and asked for again comes back to the front
// instead of opening a second.
TEST_F(WindowRegistryTest, EachWindowOpensOnceUnderTheMainWindow)
{
    // The recovery window lists the folder the exit save writes to.
    AutoSave autosave(t.context->document(), t.context->settings(), t.context->messages(),
                      AppContext::ensureDataFolder());
    t.context->testo().setText("lasciato");
    t.context->settings().scriviReg(kApp, "Salva", "1", "1");
    const QString saved = autosave.salvaUscita(QDateTime(QDate(1999, 12, 31), QTime(23, 59)));
    ASSERT_FALSE(saved.isEmpty());

    QStringList seen;
    for (int i = 0; i <= int(Window::frmPreview); ++i) {
        const Window w = Window(i);
        if (!registry.has(w)) {
            seen << windowName(w) + " -";
            continue;
        }
        const QList<QWidget*> before = owner.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
        QString modal;
        QTimer closer;
        closer.setSingleShot(true);
        QObject::connect(&closer, &QTimer::timeout, [&] {
            auto* d = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (d && d->parent() == &owner) {
                modal = " '" + d->windowTitle() + "' modal";
                d->close();
            }
        });
        closer.start(0);
        ASSERT_TRUE(registry.open(w, host)) << windowName(w).toStdString();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (modal.isEmpty())
            registry.open(w, host);
        QString line = windowName(w) + modal;
        for (QWidget* d : owner.findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
            if (d->isWindow() && !before.contains(d))
                line += " " + d->objectName() + " '" + d->windowTitle() + "'" + (d->isVisible() ? " shown" : " hidden")
                        + (d->testAttribute(Qt::WA_DeleteOnClose) ? " deleted on close" : "");
        seen << line;
    }
    auto* recovery = owner.findChild<FrmRecuper*>();
    ASSERT_NE(recovery, nullptr);
    EXPECT_EQ(recovery->list()->findItems(QFileInfo(saved).fileName(), Qt::MatchExactly).size(), 1);
    QFile::remove(saved);
    // Each line: the window asked for, then each window that came up, by its
    // name, title and state; a modal one leaves nothing behind.
    const QStringList expected{
        "frmImp frmImp 'Imposta pagina' shown deleted on close",
        "frmIm 'Immagine' modal",
        "Form1 'Inserisci linea' modal",
        "form2 form2 'Testo speciale' shown deleted on close",
        "form3 form3 'Inserisci caratteri speciali - Visualizzatore caratteri' shown deleted on close",
        "frmMai frmMai 'Maiuscolo - minuscolo' shown deleted on close",
        "frmGoTo frmGoTo 'Vai a...' shown deleted on close",
        "frmTimeDate frmTimeDate 'Data e ora' shown deleted on close",
        "frmcic frmcic 'Testo ciclico' shown deleted on close",
        "Fontt Fontt 'Visualizzatore Fonts' shown deleted on close",
        "FrmSt  'Stili' shown",
        "frmHTM  'Converti in HTML' shown deleted on close",
        "frmOnd frmOnd 'Moto ondoso' shown deleted on close",
        "frmSott frmSott 'Sottolineatura speciale' shown deleted on close",
        "FrmApiPed FrmApiPed 'Impostazione apice-pedice' shown deleted on close",
        "frmCE frmCE 'Colori ed evidenziazioni speciali' shown deleted on close",
        "frmMac frmMac 'Macro' shown deleted on close",
        "frmCor 'Correzioni automatiche' modal",
        "FrmOpz 'Opzioni' modal",
        "frmRecuper frmRecuper 'Recupero documenti' shown deleted on close",
        "frmInc frmInc 'Incolla speciale' shown deleted on close",
        "frmApp frmApp 'Visualizzatore appunti' shown deleted on close",
        "frmZip frmZip 'Compressione documento' shown deleted on close",
        "frmPreview frmPreview 'Anteprima di stampa' shown deleted on close",
    };
    EXPECT_EQ(seen.join("\n").toStdString(), expected.join("\n").toStdString());
}

// The preview follows the page window's confirmation; printing asks first.
TEST_F(WindowRegistryTest, PreviewFollowsThePageWindowAndPrintingAsks)
{
    QString text;
    for (int i = 0; i < 120; ++i)
        text += QString("Riga numero %1 del documento\r\n").arg(i);
    t.context->testo().setText(text);
    ASSERT_TRUE(registry.open(Window::frmPreview, host));
    auto* preview = owner.findChild<FrmPreview*>();
    ASSERT_NE(preview, nullptr);
    EXPECT_EQ(preview->objectName(), "frmPreview");
    EXPECT_EQ(preview->windowTitle(), "Anteprima di stampa");
    EXPECT_TRUE(preview->isVisible());
    const int upright = preview->pageCount();
    EXPECT_GE(upright, 2);
    EXPECT_LT(preview->picChild()->width(), preview->picChild()->height());

    auto* page = open<FrmImp>(Window::frmImp);
    ASSERT_NE(page, nullptr);
    page->Option2()->click();
    page->confirm();
    EXPECT_GT(preview->pageCount(), upright);
    EXPECT_GT(preview->picChild()->width(), preview->picChild()->height());

    // Asked again, the open preview takes the stored page and comes forward.
    ASSERT_TRUE(registry.run(Feature::AntEP, host));
    EXPECT_EQ(owner.findChildren<FrmPreview*>().size(), 1);

    t.messages->answers.push_back("no");
    ASSERT_TRUE(registry.run(Feature::StaMpa, host));
    EXPECT_EQ(t.messages->said.last(), "Stampa | Continuare con la stampa? | 2 | 4");
}

TEST_F(WindowRegistryTest, MacrosRunAgainstTheDocument)
{
    auto* w = open<frmMac>(Window::frmMac);
    ASSERT_NE(w, nullptr);
    t.context->testo().setText(QStringLiteral("mondo"));
    w->editor().t().setSelText(QStringLiteral("sst(0)\rtype(\"Ciao \")"));
    w->editor().esegui();
    EXPECT_EQ(t.context->testo().Text(), "Ciao mondo");
}

// A rainbow from the colours window, then undone. The store keeps nothing
// to go back to before its second step: one is taken first, as typing
// would have.
TEST_F(WindowRegistryTest, ColoursWindowChangeIsUndone)
{
    t.context->document().Novo(0);
    auto* ce = open<FrmCE>(Window::frmCE);
    ASSERT_NE(ce, nullptr);
    RichTextSurface& testo = t.context->testo();
    testo.setText(QStringLiteral("Arcobaleno"));
    t.context->undo().unDO();
    const QString before = testo.TextRTF();
    testo.setSelStart(0);
    testo.setSelLength(10);
    emit ce->lstFil()->itemClicked(ce->lstFil()->item(2));
    ASSERT_EQ(ce->lstDet()->count(), 2);
    emit ce->lstDet()->itemClicked(ce->lstDet()->item(0));
    EXPECT_NE(testo.TextRTF().toStdString(), before.toStdString());
    EXPECT_EQ(testo.Text().toStdString(), "Arcobaleno");
    t.context->undo().UnDoo();
    EXPECT_EQ(testo.TextRTF().toStdString(), before.toStdString());
}

}  // namespace
}  // namespace tornelia::testing
