#include "app/command_line_procedures.h"

#include "core/rich_text_surface.h"
#include "core/undo_store.h"

#include <QClipboard>
#include <QGuiApplication>

namespace tornelia {

void pasteClipboard(RichTextSurface& t, UndoStore& undo, const QString& how)
{
    if (how == QLatin1String("2")) {
        undo.unDO();
        t.setSelText(QGuiApplication::clipboard()->text());
        return;
    }
    if (how != QLatin1String("1")) {
        undo.unDO();
        if (t.SelLength() > 0)
            t.setSelText(QString());
        t.Paste();
        return;
    }
    // What comes in takes the format of the place it lands in.
    const auto name = t.SelFontName();
    const auto size = t.SelFontSize();
    const auto bold = t.SelBold();
    const auto italic = t.SelItalic();
    const auto underline = t.SelUnderline();
    const auto strike = t.SelStrikeThru();
    const auto colour = t.SelColor();
    undo.unDO();
    const long before = t.length() - t.SelLength();
    t.Paste();
    const long end = t.SelStart();
    const long pasted = t.length() - before;
    if (pasted <= 0)
        return;
    t.setSelStart(end - pasted);
    t.setSelLength(pasted);
    if (name)
        t.setSelFontName(*name);
    if (size)
        t.setSelFontSize(*size);
    if (bold)
        t.setSelBold(*bold);
    if (italic)
        t.setSelItalic(*italic);
    if (underline)
        t.setSelUnderline(*underline);
    if (strike)
        t.setSelStrikeThru(*strike);
    if (colour)
        t.setSelColor(*colour);
    t.setSelStart(end);
}

void CommandLineProcedures::CopYa()
{
    testo_.Copy();
}

void CommandLineProcedures::TaGl()
{
    if (testo_.SelLength() == 0)
        return;
    undo_.unDO();
    testo_.Cut();
}

void CommandLineProcedures::INco(const QString& how)
{
    pasteClipboard(testo_, undo_, how);
}

void CommandLineProcedures::saveClipboard()
{
    saved_.reset();
    const QMimeData* now = QGuiApplication::clipboard()->mimeData();
    if (!now)
        return;
    saved_ = std::make_unique<QMimeData>();
    for (const QString& format : now->formats())
        saved_->setData(format, now->data(format));
}

void CommandLineProcedures::restoreClipboard()
{
    if (saved_)
        QGuiApplication::clipboard()->setMimeData(saved_.release());
}

}  // namespace tornelia
