// The command set of the macro language: every command ends in the same
// procedure that its menu entry or toolbar button calls.

#include "macro/interpreter.h"

#include "core/codepage.h"
#include "core/document.h"
#include "core/go_on.h"
#include "core/ports.h"
#include "core/procedures.h"
#include "core/rich_text_surface.h"
#include "core/undo_store.h"

#include <QFileInfo>

#include <exception>
#include <stdexcept>

namespace tornelia {

namespace {

const QString kProgramTitle = QStringLiteral("Tornelia");

}  // namespace

MacroValue c::RunFun(const QString& name, const QString& argument, const QString& argumentText)
{
    RichTextSurface& testo = host_.testo;
    MainProcedures& proc = host_.procedures;

    // One handler for the whole command: a failed step is skipped and the
    // command goes on with its next one. An index out of range, which is
    // what a missing argument comes to, is also told to the person.
    auto attempt = [&](auto&& f) {
        try {
            f();
            return true;
        } catch (const MacroError& e) {
            if (e.code() == MacroError::SubscriptOutOfRange)
                host_.messages.mostraMsg(QStringLiteral("Macro"),
                                         QStringLiteral("Argomento non opzionale nella procedura: ") + name, 0, 3);
        } catch (const std::out_of_range&) {
            host_.messages.mostraMsg(QStringLiteral("Macro"),
                                     QStringLiteral("Argomento non opzionale nella procedura: ") + name, 0, 3);
        } catch (const std::runtime_error& e) {
            qCWarning(lcSkipped, "Macro %s: passo saltato: %s", qPrintable(name), e.what());
        }
        return false;
    };
    auto need = [](auto* p) {
        if (!p)
            throw std::runtime_error("no document here");
        return p;
    };
    auto setFlag = [&](void (RichTextSurface::*set)(bool)) {
        if (argument.isEmpty())
            return;
        attempt([&] { (testo.*set)(strictBool(argument)); });
    };
    auto repeat = [&](void (UndoStore::*go)()) {
        if (argument.isEmpty()) {
            attempt([&] { (need(host_.undo)->*go)(); });
            return;
        }
        std::int16_t count = 0;
        if (!attempt([&] { count = strictInt16(argument); }))
            return;
        // The store's own limits end the effect, not the loop.
        for (std::int16_t i = 1; i <= count; ++i)
            attempt([&] { (need(host_.undo)->*go)(); });
    };

    const QString cmd = name.toLower();
    MacroValue result;

    if (cmd == QLatin1String("msgbox")) {
        attempt([&] { host_.messages.mostraMsg(kProgramTitle, argument, 0, 0); });
        // OK is the only button.
        result = std::int32_t(1);
    } else if (cmd == QLatin1String("inputbox")) {
        QString answer;
        attempt([&] { answer = host_.messages.inputBox(kProgramTitle, argument); });
        SetVar(argumentText, answer);
    } else if (cmd == QLatin1String("type")) {
        testo.SetFocus();
        // What a macro types is one change, as a typed word is: undo takes it back.
        if (host_.undo)
            attempt([&] { host_.undo->unDO(); });
        attempt([&] { testo.setSelText(argument); });
    } else if (cmd == QLatin1String("sst")) {
        testo.SetFocus();
        attempt([&] { testo.setSelStart(strictInt32(argument)); });
        testo.SetFocus();
    } else if (cmd == QLatin1String("sel")) {
        testo.SetFocus();
        attempt([&] { testo.setSelLength(strictInt32(argument)); });
        testo.SetFocus();
    } else if (cmd == QLatin1String("new")) {
        attempt([&] { need(host_.document)->Novo(0); });
    } else if (cmd == QLatin1String("open")) {
        attempt([&] { need(host_.document)->Aprii(argument); });
    } else if (cmd == QLatin1String("save")) {
        attempt([&] { need(host_.document)->Salvare(argument); });
    } else if (cmd == QLatin1String("delete")) {
        attempt([&] { need(host_.document)->DelFile(); });
    } else if (cmd == QLatin1String("prop")) {
        attempt([&] { need(host_.document)->pROP(); });
    } else if (cmd == QLatin1String("pag")) {
        attempt([&] { proc.showWindow(Window::frmImp); });
    } else if (cmd == QLatin1String("ant")) {
        attempt([&] { proc.AntEP(); });
    } else if (cmd == QLatin1String("stampa")) {
        attempt([&] { proc.StaMpa(); });
    } else if (cmd == QLatin1String("undo")) {
        repeat(&UndoStore::UnDoo);
    } else if (cmd == QLatin1String("redo")) {
        repeat(&UndoStore::RedOO);
    } else if (cmd == QLatin1String("cut")) {
        attempt([&] { proc.TaGl(); });
    } else if (cmd == QLatin1String("copy")) {
        attempt([&] { proc.CopYa(); });
    } else if (cmd == QLatin1String("paste")) {
        if (argument.isEmpty())
            attempt([&] { proc.INco(QString()); });
        else
            // Through a 16-bit integer and back, so "01" is "1".
            attempt([&] { proc.INco(QString::number(strictInt16(argument))); });
    } else if (cmd == QLatin1String("font")) {
        attempt([&] { testo.setSelFontName(argument); });
    } else if (cmd == QLatin1String("dime")) {
        attempt([&] { testo.setSelFontSize(strictInt16(argument)); });
    } else if (cmd == QLatin1String("gras")) {
        setFlag(&RichTextSurface::setSelBold);
    } else if (cmd == QLatin1String("cors")) {
        setFlag(&RichTextSurface::setSelItalic);
    } else if (cmd == QLatin1String("sott")) {
        setFlag(&RichTextSurface::setSelUnderline);
    } else if (cmd == QLatin1String("barr")) {
        setFlag(&RichTextSurface::setSelStrikeThru);
    } else if (cmd == QLatin1String("par")) {
        if (argument == QLatin1String("0")) {
            attempt([&] {
                const std::optional<bool> bullet = testo.SelBullet();
                // A selection over bulleted and plain paragraphs has no
                // single state to turn over.
                if (!bullet)
                    throw MacroError(MacroError::InvalidCall);
                testo.setSelBullet(!*bullet);
            });
        } else {
            attempt([&] { proc.PaRImM(); });
        }
    } else if (cmd == QLatin1String("imm")) {
        attempt([&] { proc.showWindow(Window::frmIm); });
    } else if (cmd == QLatin1String("txt")) {
        attempt([&] { proc.showWindow(Window::form2); });
    } else if (cmd == QLatin1String("lin")) {
        attempt([&] { proc.showWindow(Window::Form1); });
    } else if (cmd == QLatin1String("mai")) {
        attempt([&] { proc.showWindow(Window::frmMai); });
    } else if (cmd == QLatin1String("conta")) {
        attempt([&] { proc.CpAr(); });
    } else if (cmd == QLatin1String("vai")) {
        attempt([&] { proc.showWindow(Window::frmGoTo); });
    } else if (cmd == QLatin1String("mail")) {
        attempt([&] { proc.MaIL(argument); });
    } else if (cmd == QLatin1String("ins")) {
        if (argument.isEmpty())
            attempt([&] { proc.InSFilE(); });
        else
            insertFile(argument);
    } else if (cmd == QLatin1String("tast")) {
        // "0" shows the keyboard and "1" hides it, whatever the help says.
        if (argument == QLatin1String("0"))
            attempt([&] { proc.showKeyboard(true); });
        else if (argument == QLatin1String("1"))
            attempt([&] { proc.showKeyboard(false); });
    } else if (cmd == QLatin1String("seltxt")) {
        attempt([&] { SetVar(argumentText, testo.SelText()); });
    } else if (cmd == QLatin1String("clear")) {
        bool all = true;
        bool read = attempt([&] { all = strictDouble(argument) == 1; });
        // A failed test falls into the branch after it, so clear() with no
        // number wipes the whole document.
        if (!read || all)
            attempt([&] { testo.setText(QString()); });
        else
            attempt([&] { testo.setSelText(QString()); });
    } else if (cmd == QLatin1String("acapo")) {
        attempt([&] { testo.setSelText(QStringLiteral("\r")); });
    } else if (cmd == QLatin1String("asc")) {
        attempt([&] {
            if (argument.isEmpty())
                throw MacroError(MacroError::InvalidCall);
            const int b = cp1252Byte(argument.at(0).unicode());
            // A character the code page has no byte for comes out as "?".
            SetVar(argumentText, std::int16_t(b < 0 ? '?' : b));
        });
    } else if (cmd == QLatin1String("chr")) {
        attempt([&] {
            const std::int32_t code = strictInt32(argument);
            if (code < 0 || code > 255)
                throw MacroError(MacroError::InvalidCall);
            SetVar(argumentText, QString(QChar(cp1252Char(static_cast<unsigned char>(code)))));
        });
    }
    return result;
}

void c::insertFile(const QString& path)
{
    const QFileInfo info(path);
    if (!info.isFile())
        return;
    RichTextSurface& r = hiddenSurface();
    const QString kind = path.right(3).toLower();
    const bool rich = kind == QLatin1String("rtf") || kind == QLatin1String("tnl");
    goOnAt<SurfaceError>("Macro ins", [&] {
        r.LoadFile(path, rich ? RichTextSurface::RtfKind : RichTextSurface::TextKind);
    });
    // Only the plain text reaches the document, whatever the file held.
    goOnAt<SurfaceError>("Macro ins", [&] { host_.testo.setSelText(r.Text()); });
}

}  // namespace tornelia
