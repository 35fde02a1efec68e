#pragma once

// The procedures of a macro run from the command line, with no window: the
// clipboard commands work on the process's own clipboard and undo store, so
// copy() then paste() in a macro does what it does in the window. The
// commands that only show a window have nothing to show and do nothing.

#include "core/procedures.h"

#include <QMimeData>

#include <memory>

namespace tornelia {

class RichTextSurface;
class UndoStore;

// Paste in one of its three modes: "" or "0" keeps the clipboard's own
// formats, "1" gives what comes in the formats of the place it lands in,
// "2" pastes the plain text. The selection is replaced; undo can take it back.
void pasteClipboard(RichTextSurface& testo, UndoStore& undo, const QString& how);

class CommandLineProcedures final : public MainProcedures {
public:
    CommandLineProcedures(RichTextSurface& testo, UndoStore& undo) : testo_(testo), undo_(undo) {}

    void CopYa() override;
    void TaGl() override;
    void INco(const QString& how) override;
    void saveClipboard() override;
    void restoreClipboard() override;

    // Windows: none to show here.
    void AntEP() override {}
    void showForm1() override {}
    void showWindow(Window) override {}
    void StaMpa() override {}
    void PaRImM() override {}
    void CpAr() override {}
    void MaIL(const QString&) override {}
    void InSFilE() override {}
    void showKeyboard(bool) override {}

private:
    RichTextSurface& testo_;
    UndoStore& undo_;
    std::unique_ptr<QMimeData> saved_;
};

}  // namespace tornelia
