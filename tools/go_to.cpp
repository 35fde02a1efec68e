#include "tools/go_to.h"

#include "core/ports.h"
#include "core/rich_text_surface.h"

#include <cmath>

namespace tornelia {

namespace {
const QString kTitle = QStringLiteral("Vai a...");
}

QStringList GoTo::percentuali()
{
    QStringList list;
    for (int p = 10; p <= 100; p += 10)
        list << QString::number(p) + QLatin1Char('%');
    return list;
}

void GoTo::DocPercent(RichTextSurface& testo, double percent)
{
    const double target = std::nearbyint(double(testo.length()) * percent / 100.0);
    testo.setSelStart(target < 0 ? 0 : long(target));
}

GoTo::Outcome GoTo::cmdGo(Option option, const QString& txtGo, const QString& percent)
{
    Outcome out;
    switch (option) {
    case GotoLine: {
        bool ok = false;
        const long number = txtGo.trimmed().toLong(&ok);
        if (!ok) {
            messages_.mostraMsg(kTitle, QStringLiteral("Inserire un numero valido!"), 0, 2);
            out.clearField = true;
            return out;
        }
        // Line 0 and below would reach the control as "the caret's line";
        // nobody means that by typing 0, so it is refused like a line past the end.
        const long pos = number >= 1 ? testo_.LineIndex(number - 1) : -1;
        if (pos == -1) {
            messages_.mostraMsg(kTitle, QStringLiteral("Numero di linea non valido!"), 0, 2);
            return out;
        }
        testo_.setSelStart(pos);
        break;
    }
    case GotoStart:
        testo_.setSelStart(0);
        break;
    case GoToEnd:
        testo_.setSelStart(testo_.length());
        break;
    case GotoPer: {
        QString p = percent.trimmed();
        if (p.endsWith(QLatin1Char('%')))
            p.chop(1);
        bool ok = false;
        const double value = p.trimmed().toDouble(&ok);
        if (!ok || value < 0 || value > 100) {
            messages_.mostraMsg(kTitle, QStringLiteral("Selezionare una percentuale valida!"), 0, 2);
            return out;
        }
        DocPercent(testo_, value);
        break;
    }
    }
    out.moved = true;
    testo_.SetFocus();
    return out;
}

}  // namespace tornelia
