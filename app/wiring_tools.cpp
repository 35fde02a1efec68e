#include "app/app_context.h"
#include "app/window_registry.h"
#include "tools/frm_htm.h"
#include "tools/frm_st.h"
#include "tools/frm_cic.h"
#include "tools/frm_fontt.h"
#include "tools/frm_form3.h"
#include "tools/frm_go_to.h"
#include "tools/frm_mai.h"
#include "tools/frm_time_date.h"

namespace tornelia {

void registerToolsWindows(WindowRegistry& registry)
{
    registry.add(Window::frmMai, [](const WindowHost& h) { showFrmMai(h.context.testo(), &h.context.undo(), h.owner); });
    registry.add(Window::frmGoTo, [](const WindowHost& h) { showFrmGoTo(h.context.testo(), h.context.messages(), h.owner); });
    registry.add(Window::frmTimeDate, [](const WindowHost& h) { showFrmTimeDate(h.context.testo(), &h.context.undo(), h.owner); });
    registry.add(Window::frmcic, [](const WindowHost& h) { showFrmCic(h.context.testo(), &h.context.undo(), h.context.messages(), h.owner); });
    registry.add(Window::form3, [](const WindowHost& h) { showForm3(h.context.testo(), h.owner); });
    registry.add(Window::Fontt, [](const WindowHost& h) { showFontt(h.context.testo(), h.owner); });
    registry.add(Window::FrmSt, [](const WindowHost& h) {
        AppContext& c = h.context;
        StyleService::instance(c.testo(), c.settings(), c.messages(), c.dialogs(), c.undo()).show(h.owner);
    });
    registry.add(Window::frmHTM, [](const WindowHost& h) {
        showFrmHTM(h.context.testo(), h.context.document(), h.context.dialogs(), h.context.messages(), h.owner);
    });
}

}  // namespace tornelia
