#include "app/app_context.h"
#include "app/window_registry.h"
#include "app/wiring_tools.h"
#include "controls/editor_view.h"
#include "tools/frm_spell.h"
#include "tools/spell_marks.h"
#include "tools/frm_htm.h"
#include "tools/frm_st.h"
#include "tools/frm_cic.h"
#include "tools/frm_fontt.h"
#include "tools/frm_form3.h"
#include "tools/frm_go_to.h"
#include "tools/frm_mai.h"
#include "tools/frm_time_date.h"

#include <QDir>
#include <QMenu>

namespace tornelia {

SpellingSession& spellingSession(AppContext& context, QWidget* owner)
{
    if (auto* found = owner->findChild<SpellingSession*>(QString(), Qt::FindDirectChildrenOnly))
        return *found;
    const QString personal = QDir(context.dataFolder()).filePath(kPersonalWordsFile);
    return *new SpellingSession(context.testo(), context.undo(), context.settings(), context.messages(),
                                owner->findChild<EditorView*>(), personal, owner);
}

void prepareSpellingMenu(AppContext& context, QWidget* owner, QMenu* menu, const QPoint& global)
{
    SpellingSession& s = spellingSession(context, owner);
    int pos = s.docPosAtGlobal(global);
    // From the keyboard's menu key the mouse may be anywhere: the caret decides.
    if (pos < 0)
        pos = context.testo().cursor().position();
    s.prepareMenu(menu, pos);
}

void registerToolsWindows(WindowRegistry& registry)
{
    auto spelling = [](const WindowHost& h) { showFrmSpell(spellingSession(h.context, h.owner), h.owner); };
    registry.add(Window::frmSpell, spelling);
    registry.addFeature(Feature::CorrEzionE, [spelling](const WindowHost& h, const QString&) { spelling(h); });
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
