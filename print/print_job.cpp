#include "print/print_job.h"

#include "core/ports.h"
#include "print/page_settings.h"
#include "print/print_layout.h"

#include <QPageLayout>
#include <QPageSize>
#include <QPrintDialog>
#include <QPrinter>

namespace tornelia {

bool confermaStampa(MessagePort& messages)
{
    return messages.mostraMsg(QStringLiteral("Stampa"), QStringLiteral("Continuare con la stampa?"), 2, 4) ==
           QLatin1String("si");
}

void preparePrinter(QPrinter& printer, int orientamento)
{
    printer.setFullPage(true);
    printer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4),
                                      orientamento == 2 ? QPageLayout::Landscape : QPageLayout::Portrait,
                                      QMarginsF(0, 0, 0, 0)));
}

bool stampaSuStampante(QPrinter& printer, const QTextDocument& testo, const PageSettings& page,
                       MessagePort& messages)
{
    const int orientamento = printer.pageLayout().orientation() == QPageLayout::Landscape ? 2 : 1;
    const PrintLayout layout(testo, marginsForPrint(page), orientamento);
    // A printer that makes its own copies gets the pages once.
    const int copies = printer.supportsMultipleCopies() ? 1 : std::max(1, printer.copyCount());
    if (!printPages(layout, printer, copies)) {
        const QString where = printer.outputFileName().isEmpty() ? printer.printerName() : printer.outputFileName();
        messages.mostraMsg(QStringLiteral("Stampa"),
                           QStringLiteral("Impossibile stampare su %1: controllare la stampante e riprovare.")
                               .arg(where),
                           0, 3);
        return false;
    }
    return true;
}

bool StaMpa(QWidget* parent, MessagePort& messages, const QTextDocument& testo, const PageSettings& page)
{
    if (!confermaStampa(messages))
        return false;
    QPrinter printer(QPrinter::HighResolution);
    preparePrinter(printer, page.Orientamento);
    // Without any printer installed the dialog still offers the PDF file.
    QPrintDialog dialog(&printer, parent);
    dialog.setWindowTitle(QStringLiteral("Stampa"));
    dialog.setObjectName(QStringLiteral("dlgStampa"));
    if (dialog.exec() != QDialog::Accepted)
        return false;
    return stampaSuStampante(printer, testo, page, messages);
}

}  // namespace tornelia
