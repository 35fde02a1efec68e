#include "app/app_context.h"
#include "app/window_registry.h"
#include "tools/frm_htm.h"
#include "tools/frm_st.h"

namespace tornelia {

void registerToolsWindows(WindowRegistry& registry)
{
    registry.add(Window::FrmSt, [](const WindowHost& h) {
        AppContext& c = h.context;
        StyleService::instance(c.testo(), c.settings(), c.messages(), c.dialogs(), c.undo()).show(h.owner);
    });
    registry.add(Window::frmHTM, [](const WindowHost& h) {
        showFrmHTM(h.context.testo(), h.context.document(), h.context.dialogs(), h.context.messages(), h.owner);
    });
}

}  // namespace tornelia
