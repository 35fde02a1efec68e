#pragma once

// Sending the document to a printer: the question, the print dialog (the
// system's printers, or a PDF file), then the pages.

#include <QString>

class QPrinter;
class QTextDocument;
class QWidget;

namespace tornelia {

class MessagePort;
class PrintLayout;
struct PageSettings;

// "Continuare con la stampa?": true only on "si".
bool confermaStampa(MessagePort& messages);

// The A4 sheet in the orientation, with no margins of the printer's own:
// the layout places the text itself.
void preparePrinter(QPrinter& printer, int orientamento);

// What the person chose in the print dialog goes to the pages: the
// orientation lays the document out again, the copies are made here when
// the printer cannot make them. False, with a message, when nothing printed.
bool stampaSuStampante(QPrinter& printer, const QTextDocument& testo, const PageSettings& page,
                       MessagePort& messages);

// The whole of printing: the question, the dialog, the pages.
bool StaMpa(QWidget* parent, MessagePort& messages, const QTextDocument& testo, const PageSettings& page);

}  // namespace tornelia
