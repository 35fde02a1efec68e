// The macro window as the main window opens it: once, beside the document,
// with its macros acting on the context's one document.
#include "app/test_ports.h"
#include "app/window_registry.h"
#include "macro/frm_mac.h"

namespace tornelia::testing {

TEST(MacroWindowTest, OpensOnceAndRunsAgainstTheDocument)
{
    TestContext t;
    QWidget owner;
    MainProcedures procedures;
    WindowRegistry registry;
    registerMacroWindows(registry);
    const WindowHost host{*t.context, &owner, procedures};
    ASSERT_TRUE(registry.open(Window::frmMac, host));
    ASSERT_TRUE(registry.open(Window::frmMac, host));
    const QList<frmMac*> windows = owner.findChildren<frmMac*>();
    ASSERT_EQ(windows.size(), 1);
    EXPECT_TRUE(windows.first()->isVisible());

    t.context->testo().setText(QStringLiteral("mondo"));
    MacroEditor& editor = windows.first()->editor();
    editor.t().setSelText(QStringLiteral("sst(0)\rtype(\"Ciao \")"));
    editor.esegui();
    EXPECT_EQ(t.context->testo().Text(), "Ciao mondo");
}

}  // namespace tornelia::testing
