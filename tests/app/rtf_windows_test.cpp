// The special formatting windows as the main window opens them: each comes
// up with its title, and what it does to the document can be undone.

#include "app/window_registry.h"
#include "rtf/frm_ce.h"
#include "tests/app/test_ports.h"

#include <QDialog>
#include <QListWidget>
#include <QWidget>

using namespace tornelia;
using namespace tornelia::testing;

namespace {

QWidget* shown(const QString& objectName)
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == objectName && w->isVisible())
            return w;
    return nullptr;
}

}  // namespace

TEST(RtfWindows, OpenAndUndo)
{
    TestContext t;
    t.context->document().Novo(0);
    QWidget owner;
    MainProcedures procedures;
    WindowRegistry registry;
    registerRtfWindows(registry);
    const WindowHost host{*t.context, &owner, procedures};

    const std::vector<std::tuple<Window, QString, QString>> windows = {
        {Window::frmOnd, "frmOnd", "Moto ondoso"},
        {Window::frmCE, "frmCE", "Colori ed evidenziazioni speciali"},
        {Window::frmSott, "frmSott", "Sottolineatura speciale"},
        {Window::FrmApiPed, "FrmApiPed", "Impostazione apice-pedice"},
    };
    for (const auto& [window, name, title] : windows) {
        ASSERT_TRUE(registry.open(window, host)) << name.toStdString();
        QWidget* w = shown(name);
        ASSERT_NE(w, nullptr) << name.toStdString();
        EXPECT_EQ(w->windowTitle(), title);
        EXPECT_EQ(w->parentWidget(), &owner);
        // Asked for again, the same window comes to the front.
        registry.open(window, host);
        EXPECT_EQ(owner.findChildren<QDialog*>(name).size(), 1);
    }

    // A rainbow from the colours window, then undone. The store keeps
    // nothing to go back to before its second step: one is taken first, as
    // typing would have.
    RichTextSurface& testo = t.context->testo();
    testo.setText(QStringLiteral("Arcobaleno"));
    t.context->undo().unDO();
    const QString before = testo.TextRTF();
    testo.setSelStart(0);
    testo.setSelLength(10);
    auto* ce = qobject_cast<FrmCE*>(shown("frmCE"));
    ASSERT_NE(ce, nullptr);
    emit ce->lstFil()->itemClicked(ce->lstFil()->item(2));
    ASSERT_EQ(ce->lstDet()->count(), 2);
    emit ce->lstDet()->itemClicked(ce->lstDet()->item(0));
    EXPECT_NE(testo.TextRTF().toStdString(), before.toStdString());
    EXPECT_EQ(testo.Text().toStdString(), "Arcobaleno");
    t.context->undo().UnDoo();
    EXPECT_EQ(testo.TextRTF().toStdString(), before.toStdString());
    for (const auto& [window, name, title] : windows)
        shown(name)->close();
}
