#include "print/page_setup.h"

#include "core/ports.h"
#include "core/settings.h"

#include <cmath>

namespace tornelia {

namespace {

constexpr double kPreviewPerCm = 57.0;
// The frame stands a little inside the margins so that its border shows.
constexpr double kFrameInset = 30.0;

double tenths(double v)
{
    return std::round(v * 10.0) / 10.0;
}

const char* const kFieldNames[] = {"superiore", "inferiore", "sinistro", "destro"};

}  // namespace

QString formatHashDot0(double value)
{
    const double r = tenths(std::fabs(value));
    const long long whole = static_cast<long long>(std::floor(r + 1e-9));
    const int tenth = static_cast<int>(std::lround((r - whole) * 10)) % 10;
    QString s = whole > 0 ? QString::number(whole) : QString();
    s += QLatin1Char('.') + QString::number(tenth);
    if (value < 0 && r > 0)
        s.prepend(QLatin1Char('-'));
    return s;
}

PageSetupModel::PageSetupModel(SettingsStore& settings, MessagePort& messages)
    : settings_(settings), messages_(messages)
{
}

void PageSetupModel::Carica()
{
    PageSettings page;
    CaricaMargini(settings_, page);
    fields_ = {marginText(page.MargineSup), marginText(page.MargineInf), marginText(page.MargineSin),
               marginText(page.MargineDes)};
    setOrie(page.Orientamento);
    FormattaMargini();
}

void PageSetupModel::FormattaMargini()
{
    for (QString& f : fields_) {
        double v = 0;
        if (parseMargin(f, v))
            f = formatHashDot0(v);
    }
}

void PageSetupModel::plus(int k)
{
    double v = 0;
    if (!parseMargin(fields_.at(k), v) || !(v < 10))
        return;
    fields_.at(k) = marginText(tenths(v + 0.1));
    FormattaMargini();
}

void PageSetupModel::minus(int k)
{
    double v = 0;
    if (!parseMargin(fields_.at(k), v) || !(v >= 1))
        return;
    fields_.at(k) = marginText(tenths(v - 0.1));
    FormattaMargini();
}

double PageSetupModel::numberOr(int k, double fallback) const
{
    double v = 0;
    return parseMargin(fields_.at(k), v) ? v : fallback;
}

PageSetupModel::Preview PageSetupModel::preview() const
{
    const double w = sheetWidthTwips(orie_) / kTwipsPerCm * kPreviewPerCm;
    const double h = sheetHeightTwips(orie_) / kTwipsPerCm * kPreviewPerCm;
    const double sup = numberOr(Sup, 0) * kPreviewPerCm;
    const double inf = numberOr(Inf, 0) * kPreviewPerCm;
    const double sin = numberOr(Sin, 0) * kPreviewPerCm;
    const double des = numberOr(Des, 0) * kPreviewPerCm;
    Preview p;
    p.sheet = QRectF(0, 0, w, h);
    p.frame = QRectF(sin, sup, std::max(0.0, w - sin - des - kFrameInset),
                     std::max(0.0, h - sup - inf - kFrameInset));
    return p;
}

bool PageSetupModel::confirm(PageSettings& page)
{
    double v[4] = {};
    for (int k = 0; k < 4; ++k) {
        if (!parseMargin(fields_.at(k), v[k])) {
            messages_.mostraMsg(QStringLiteral("Imposta pagina"),
                                QStringLiteral("Il margine %1 non è un numero: correggilo e riprova.")
                                    .arg(QLatin1String(kFieldNames[k])),
                                0, 2);
            return false;
        }
    }
    page.MargineSup = v[Sup];
    page.MargineInf = v[Inf];
    page.MargineSin = v[Sin];
    page.MargineDes = v[Des];
    page.Orientamento = orie_;
    SalvaMargini(settings_, page);
    return true;
}

}  // namespace tornelia
