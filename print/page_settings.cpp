#include "print/page_settings.h"

#include "core/settings.h"

#include <QLocale>

namespace tornelia {

namespace {

const QString kApp = QStringLiteral("Tornelia");
const QString kSection = QStringLiteral("Margini");

double readNumber(const SettingsStore& s, const QString& key, double fallback)
{
    double v = 0;
    const QString text = s.leggiReg(kApp, kSection, key, marginText(fallback));
    return parseMargin(text, v) ? v : fallback;
}

}  // namespace

bool parseMargin(const QString& text, double& value)
{
    QString t = text.trimmed();
    t.replace(QLatin1Char(','), QLatin1Char('.'));
    if (t.isEmpty())
        return false;
    bool ok = false;
    const double v = QLocale::c().toDouble(t, &ok);
    if (!ok)
        return false;
    value = v;
    return true;
}

QString marginText(double value)
{
    return QString::number(value, 'g', 15);
}

void CaricaMargini(const SettingsStore& settings, PageSettings& page)
{
    const PageSettings d;
    page.MargineSup = readNumber(settings, QStringLiteral("0"), d.MargineSup);
    page.MargineInf = readNumber(settings, QStringLiteral("1"), d.MargineInf);
    page.MargineSin = readNumber(settings, QStringLiteral("2"), d.MargineSin);
    page.MargineDes = readNumber(settings, QStringLiteral("3"), d.MargineDes);
    bool ok = false;
    const int o = settings.leggiReg(kApp, kSection, QStringLiteral("4"), QStringLiteral("1")).trimmed().toInt(&ok);
    page.Orientamento = ok ? o : d.Orientamento;
}

void SalvaMargini(SettingsStore& settings, const PageSettings& page)
{
    settings.scriviReg(kApp, kSection, QStringLiteral("0"), marginText(page.MargineSup));
    settings.scriviReg(kApp, kSection, QStringLiteral("1"), marginText(page.MargineInf));
    settings.scriviReg(kApp, kSection, QStringLiteral("2"), marginText(page.MargineSin));
    settings.scriviReg(kApp, kSection, QStringLiteral("3"), marginText(page.MargineDes));
    settings.scriviReg(kApp, kSection, QStringLiteral("4"), QString::number(page.Orientamento));
}

double sheetWidthTwips(int orientamento)
{
    return orientamento == 1 ? kSheetShortTwips : kSheetLongTwips;
}

double sheetHeightTwips(int orientamento)
{
    return orientamento == 1 ? kSheetLongTwips : kSheetShortTwips;
}

double larghezzaTesto(const PageSettings& page)
{
    return sheetWidthTwips(page.Orientamento) - page.MargineSin * kTwipsPerCm - page.MargineDes * kTwipsPerCm;
}

}  // namespace tornelia
