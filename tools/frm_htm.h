#pragma once

// The window "Converti in HTML": the page of the document in a text box,
// converted on request and saved as plain text.

#include "tools/html_export.h"

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

namespace tornelia {

class Document;

class frmHTM : public QDialog {
    Q_OBJECT
public:
    frmHTM(RichTextSurface& testo, Document& document, DialogPort& dialogs, MessagePort& messages,
           QWidget* owner);

    HtmlConversion& logic() { return logic_; }

private:
    HtmlConversion logic_;
    Document& document_;
    QPlainTextEdit* t_;
    QPushButton* u1_;
    QPushButton* u2_;
    QPushButton* u3_;
    bool loading_ = false;
};

// Shows the window over owner, without waiting.
frmHTM* showFrmHTM(RichTextSurface& testo, Document& document, DialogPort& dialogs, MessagePort& messages,
                   QWidget* owner);

}  // namespace tornelia
