#include "tools/statistics.h"

#include "core/rich_text_surface.h"

namespace tornelia {

DocStats contaStatistiche(const RichTextSurface& testo)
{
    DocStats stats;
    const QString s = testo.Text();
    if (s.isEmpty())
        return stats;
    stats.parole = long(s.count(QLatin1Char(' '))) + 1;
    stats.caratteri = long(s.size()) - stats.parole;
    stats.linee = testo.GetLineCount();
    return stats;
}

QString formatFigure(long n)
{
    const bool negative = n < 0;
    QString digits = QString::number(negative ? -n : n);
    for (qsizetype i = digits.size() - 3; i > 0; i -= 3)
        digits.insert(i, QLatin1Char('.'));
    return negative ? QLatin1Char('-') + digits : digits;
}

}  // namespace tornelia
