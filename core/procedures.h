#pragma once

// The procedures of the main window that reach beyond the document: the
// menus, the toolbars, the keys and the macro commands all call these, so a
// command means the same thing wherever it comes from. The window implements
// them, and so does the command line for those that make sense without one.

#include "core/typing_assist.h"

#include <QImage>

#include <QString>

namespace tornelia {

// The windows a command shows, by the names the program gives them.
enum class Window {
    frmImp,       // page setup
    frmIm,        // picture
    Form1,        // line
    form2,        // special text
    form3,        // special character
    frmMai,       // upper and lower case
    frmGoTo,      // go to
    frmTimeDate,  // date and time
    frmcic,       // cyclic text
    Fontt,        // font viewer
    FrmSt,        // styles
    frmHTM,       // HTML conversion
    frmOnd,       // ripple
    frmSott,      // special underline
    FrmApiPed,    // raised and lowered levels
    frmCE,        // special colours and highlights
    frmMac,       // macros
    frmCor,       // automatic correction
    FrmOpz,       // options
    frmRecuper,   // document recovery
    frmInc,       // special copy and paste
    frmApp,       // clipboard viewer
    frmZip,       // compression
    frmPreview,   // print preview
    frmPar,       // picture bullets
    cR,           // document encryption
    FrmDebuG,     // error report
    FrmAsso,      // file association
    frmLett,      // letter composer
    frmFax,       // fax composer
    frmSpell,     // spelling
};

class MainProcedures : public TypingProcedures {
public:
    // Shows a window owned by the main window, without waiting for it.
    virtual void showWindow(Window) = 0;
    virtual void StaMpa() = 0;
    // The picture bullet of the current paragraph.
    virtual void PaRImM() = 0;
    // The bullet picture chosen for the paragraphs (null turns the picture
    // bullets off): each new line then starts with a copy of it. Only a
    // window types new lines, so elsewhere there is nothing to keep.
    virtual void setBulletPicture(const QImage& /*picture*/) {}
    // The word count window.
    virtual void CpAr() = 0;
    virtual void MaIL(const QString& address) = 0;
    // Insert a file chosen by the person.
    virtual void InSFilE() = 0;
    // The on-screen keyboard shown or hidden.
    virtual void showKeyboard(bool shown) = 0;
    // Brings the undo entries of the menus up to date after a command; only
    // a window has entries to bring up to date.
    virtual void CmeN() {}
};

}  // namespace tornelia
