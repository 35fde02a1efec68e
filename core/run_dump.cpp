#include "core/run_dump.h"

#include "core/rich_text_surface.h"
#include "core/text_format.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextBlock>
#include <QTextList>

#include <algorithm>

namespace tornelia {
namespace {

QString hexColour(qint64 c, const char* none)
{
    if (c < 0)
        return QLatin1String(none);
    return QStringLiteral("#%1%2%3")
        .arg(c & 0xFF, 2, 16, QLatin1Char('0'))
        .arg((c >> 8) & 0xFF, 2, 16, QLatin1Char('0'))
        .arg((c >> 16) & 0xFF, 2, 16, QLatin1Char('0'));
}

QJsonObject runOf(const QTextCharFormat& f, const QTextCharFormat& def)
{
    QJsonObject run;
    run[QStringLiteral("font")] = fontNameOf(f).isEmpty() ? fontNameOf(def) : fontNameOf(f);
    run[QStringLiteral("size")] = halfPointsOf(f, def) / 2.0;
    run[QStringLiteral("bold")] = f.fontWeight() >= QFont::DemiBold;
    run[QStringLiteral("italic")] = f.fontItalic();
    run[QStringLiteral("underline")] = QLatin1String(underlineName(underlineKindOf(f)));
    run[QStringLiteral("strike")] = f.fontStrikeOut();
    run[QStringLiteral("color")] = hexColour(foregroundOf(f), "auto");
    run[QStringLiteral("highlight")] = hexColour(highlightOf(f), "none");
    run[QStringLiteral("offset_half_points")] = offsetHalfPointsOf(f);
    run[QStringLiteral("hidden")] = isHidden(f);
    run[QStringLiteral("caps")] = isCaps(f);
    // Formats most documents never use are named only where they are.
    if (f.fontCapitalization() == QFont::SmallCaps)
        run[QStringLiteral("small_caps")] = true;
    if (f.fontStrikeOut() && f.boolProperty(prop::DoubleStrike))
        run[QStringLiteral("double_strike")] = true;
    return run;
}

}  // namespace

QString dumpRuns(const RichTextSurface& surface)
{
    static const char* const aligns[] = {"left", "right", "center", "justify"};
    const QTextDocument* doc = surface.document();
    const QTextCharFormat def = surface.defaultCharFormat();
    QJsonArray paragraphs;
    int pictures = 0;
    for (QTextBlock b = doc->begin(); b.isValid(); b = b.next()) {
        const QTextBlockFormat bf = b.blockFormat();
        QJsonObject para;
        para[QStringLiteral("align")] = QLatin1String(aligns[alignmentOf(bf)]);
        para[QStringLiteral("indent_twips")] = twipsOf(bf, prop::LeftIndent);
        para[QStringLiteral("right_indent_twips")] = twipsOf(bf, prop::RightIndent);
        para[QStringLiteral("bullet")] = b.textList() != nullptr;
        if (b.textList())
            para[QStringLiteral("label")] = listLabel(b);
        const std::vector<TabStop> tabs = tabStopsOf(bf);
        if (!tabs.empty()) {
            QJsonArray stops;
            static const char* const leaders[] = {"", "dot", "hyphen", "underline", "thick", "equal"};
            for (const TabStop& t : tabs)
                stops.append(QStringLiteral("%1%2%3").arg(QChar(t.kind)).arg(t.twips).arg(QLatin1String(leaders[std::clamp(t.leader, 0, 5)])));
            para[QStringLiteral("tabs")] = stops;
        }
        QJsonArray runs;
        QJsonObject current;
        QString text;
        auto flush = [&] {
            if (!text.isEmpty()) {
                current[QStringLiteral("text")] = text;
                runs.append(current);
            }
            text.clear();
        };
        for (auto it = b.begin(); !it.atEnd(); ++it) {
            const QTextFragment frag = it.fragment();
            if (frag.charFormat().isImageFormat()) {
                pictures += frag.length();
                continue;
            }
            QJsonObject run = runOf(frag.charFormat(), def);
            // Neighbours that differ only in what the dump does not show are one run.
            if (run != current) {
                flush();
                current = run;
            }
            text += frag.text();
        }
        flush();
        para[QStringLiteral("runs")] = runs;
        paragraphs.append(para);
    }
    QJsonObject root;
    root[QStringLiteral("paragraphs")] = paragraphs;
    root[QStringLiteral("pictures")] = pictures;
    return QString::fromUtf8(QJsonDocument(root).toJson(QJsonDocument::Compact));
}

}  // namespace tornelia
