#include "test_ports.h"

#include "app/window_registry.h"

#include <QDialog>
#include <QWidget>

using namespace tornelia;

namespace {

// Each text-tool window opens once under its owner, by the name the
// program gives it, and a second open brings the same window back.
TEST(ToolsWiring, EachWindowOpensOnceByItsName)
{
    tornelia::testing::TestContext t;
    QWidget owner;
    MainProcedures procedures;
    WindowRegistry registry;
    registerToolsWindows(registry);
    const WindowHost host{*t.context, &owner, procedures};

    const std::pair<Window, const char*> windows[] = {
        {Window::frmMai, "frmMai"}, {Window::frmGoTo, "frmGoTo"}, {Window::frmTimeDate, "frmTimeDate"},
        {Window::frmcic, "frmcic"}, {Window::form3, "form3"},     {Window::Fontt, "Fontt"},
    };
    for (const auto& [window, name] : windows) {
        ASSERT_TRUE(registry.open(window, host)) << name;
        ASSERT_TRUE(registry.open(window, host)) << name;
        const auto found = owner.findChildren<QDialog*>(QString::fromLatin1(name), Qt::FindDirectChildrenOnly);
        ASSERT_EQ(found.size(), 1) << name;
        EXPECT_TRUE(found.first()->isVisible()) << name;
    }
}

}  // namespace
