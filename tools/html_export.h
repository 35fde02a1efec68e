#pragma once

// The main text turned into a small HTML text by walking it one character at
// a time through the selection and writing a tag wherever the format
// changes. Tags other than bold, underline, italic and strike are never
// closed: the result is the one older browsers accepted, and the one the
// program has always written.

#include "core/rich_text_surface.h"

#include <QString>

namespace tornelia {

class DialogPort;
class MessagePort;

// The colour 0x00BBGGRR as six hex digits RRGGBB.
QString RGBtoHEX(Colour colour);

// The HTML of positions first to last, both included; last < 0 means
// Len(Text). The walk leaves the selection of rtb on the last position.
QString RichToHTML(RichTextSurface& rtb, long first = 0, long last = -1);

// The whole page the window shows and saves: title and body between the
// HTML tags, lines parted by a lone CR.
QString htmlPage(const QString& title, const QString& body);

// The state and the commands of the window "Converti in HTML".
class HtmlConversion {
public:
    HtmlConversion(RichTextSurface& testo, DialogPort& dialogs, MessagePort& messages)
        : testo_(testo), dialogs_(dialogs), messages_(messages)
    {
    }

    // Button u1: the page of the whole document under the given title.
    void u1(const QString& documentTitle);
    // Button u2: asks for a file and writes the page as plain text. False
    // when nothing was written (a cancel or a failure, which is told).
    bool u2();

    const QString& t() const { return t_; }
    // The text box was edited by hand: that is what a save writes.
    void setT(const QString& text) { t_ = text; }
    bool converted() const { return converted_; }

private:
    RichTextSurface& testo_;
    DialogPort& dialogs_;
    MessagePort& messages_;
    QString t_;
    bool converted_ = false;
};

// Writes text to path as the program's plain text files are written.
// Throws SurfaceError with the reason.
void saveHtmlFile(const QString& path, const QString& text);

}  // namespace tornelia
