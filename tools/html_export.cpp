#include "tools/html_export.h"

#include "core/codepage.h"
#include "core/ports.h"
#include "core/rtf_table.h"

#include <QSaveFile>
#include <QTextTable>

#include <map>
#include <set>

namespace tornelia {

QString RGBtoHEX(Colour colour)
{
    const QString h = QString::number(colour, 16).toUpper().rightJustified(6, u'0');
    // The digits read BBGGRR; HTML wants them the other way round.
    return h.right(2) + h.mid(2, 2) + h.left(2);
}

namespace {

void frameTags(RichTextSurface& rtb, const QTextFrame* frame, std::map<long, QString>& tags, std::set<long>& ends)
{
    for (const QTextFrame* child : frame->childFrames()) {
        if (const auto* table = qobject_cast<const QTextTable*>(child)) {
            bool firstCell = true;
            for (int r = 0; r < table->rows(); ++r) {
                QString rowOpen = QStringLiteral("<tr>");
                long rowEnd = -1;
                for (int c = 0; c < table->columns(); ++c) {
                    const QTextTableCell cell = table->cellAt(r, c);
                    if (cell.row() != r || cell.column() != c || rtftable::isFillerCell(cell))
                        continue;
                    QString open = firstCell ? QStringLiteral("<table border=1>") : QString();
                    firstCell = false;
                    open += rowOpen;
                    rowOpen.clear();
                    open += QStringLiteral("<td");
                    if (cell.columnSpan() > 1)
                        open += QStringLiteral(" colspan=%1").arg(cell.columnSpan());
                    if (cell.rowSpan() > 1)
                        open += QStringLiteral(" rowspan=%1").arg(cell.rowSpan());
                    open += u'>';
                    tags[rtb.fromDocPos(cell.firstPosition())] += open;
                    const long end = rtb.fromDocPos(cell.lastPosition());
                    tags[end] += QStringLiteral("</td>");
                    ends.insert(end);
                    rowEnd = end;
                }
                if (rowEnd >= 0) {
                    tags[rowEnd] += QStringLiteral("</tr>");
                    ends.insert(rowEnd + 1);  // a row ends in CR LF
                }
            }
            const long tableEnd = rtb.fromDocPos(table->lastPosition());
            tags[tableEnd] += QStringLiteral("</table>");
        }
        frameTags(rtb, child, tags, ends);
    }
}

// Where each table's tags go, in Text positions.
void tableTags(RichTextSurface& rtb, std::map<long, QString>& tags, std::set<long>& ends)
{
    frameTags(rtb, rtb.document()->rootFrame(), tags, ends);
}

}  // namespace

QString RichToHTML(RichTextSurface& rtb, long first, long last)
{
    if (last < 0)
        last = rtb.length();
    QString html;
    int lastAlign = 0;
    bool lastBold = false;
    bool lastUnderline = false;
    bool lastItalic = false;
    bool lastStrike = false;
    QString lastFont;
    qint64 lastColour = -1;

    // A toggle tag for a property that reads as one value; a mixed reading
    // (a selection across a paragraph break) changes nothing.
    auto toggle = [&html](std::optional<bool> now, bool& last, const char* open, const char* close) {
        if (now && *now != last) {
            last = *now;
            html += QLatin1String(last ? open : close);
        }
    };

    // Tables: their tags stand where their cells begin, and the tab or the
    // paragraph break that ends a cell in Text is not written.
    std::map<long, QString> tags;
    std::set<long> cellEnds;
    tableTags(rtb, tags, cellEnds);

    for (long i = first; i <= last; ++i) {
        if (auto tag = tags.find(i); tag != tags.end())
            html += tag->second;
        if (cellEnds.count(i))
            continue;
        rtb.setSelStart(i);
        rtb.setSelLength(1);
        const std::optional<int> align = rtb.SelAlignment();
        if (align && *align != lastAlign) {
            lastAlign = *align;
            switch (lastAlign) {
            case 0: html += QLatin1String("<p align=left>"); break;
            case 1: html += QLatin1String("<p align=right>"); break;
            case 2: html += QLatin1String("<p align=center>"); break;
            default: break;
            }
        }
        QString text = rtb.SelText();
        // The surface cannot select half of a paragraph break: both its
        // positions give an empty selection. The break goes into the HTML
        // as the text has it, and only the end of the text gives "<br>".
        if (text.isEmpty() && i < rtb.length())
            text = rtb.Text().mid(i, 1);
        if (text.isEmpty())
            html += QLatin1String("<br>");
        toggle(rtb.SelBold(), lastBold, "<b>", "</b>");
        toggle(rtb.SelUnderline(), lastUnderline, "<u>", "</u>");
        toggle(rtb.SelItalic(), lastItalic, "<i>", "</i>");
        toggle(rtb.SelStrikeThru(), lastStrike, "<s>", "</s>");
        const std::optional<QString> font = rtb.SelFontName();
        if (font && *font != lastFont) {
            lastFont = *font;
            html += QLatin1String("<font face=\"") + lastFont + QLatin1String("\">");
        }
        const std::optional<Colour> colour = rtb.SelColor();
        if (colour && qint64(*colour) != lastColour) {
            lastColour = *colour;
            html += QLatin1String("<font color=#") + RGBtoHEX(*colour) + u'>';
        }
        html += text;
    }
    return html;
}

QString htmlPage(const QString& title, const QString& body)
{
    return QLatin1String("<HTML>\r<TITLE>") + title + QLatin1String("</TITLE>\r") + body +
           QLatin1String("\r</HTML>");
}

void saveHtmlFile(const QString& path, const QString& text)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw SurfaceError(file.errorString().toStdString());
    const QByteArray bytes = encodePlainText(text);
    if (file.write(bytes) != bytes.size() || !file.commit())
        throw SurfaceError(file.errorString().toStdString());
}

void HtmlConversion::u1(const QString& documentTitle)
{
    t_ = htmlPage(documentTitle, RichToHTML(testo_, 0, testo_.length()));
    converted_ = true;
}

bool HtmlConversion::u2()
{
    const std::optional<QString> name = dialogs_.saveFile(QStringLiteral("Selezionare il file da salvare"),
                                                          {QStringLiteral("File HTML (*.html)")}, QString());
    if (!name || name->isEmpty())
        return false;
    try {
        saveHtmlFile(*name, t_);
    } catch (const SurfaceError& e) {
        messages_.mostraMsg(QStringLiteral("Converti in HTML"),
                            QStringLiteral("Impossibile salvare il file ") + *name + QStringLiteral(": ") +
                                QString::fromUtf8(e.what()),
                            0, 3);
        return false;
    }
    return true;
}

}  // namespace tornelia
