#pragma once

// A table as a test compares it: rows, columns, spans, edges, borders,
// shading and the cells' text, one line per row.

#include "core/rtf_table.h"

#include <QStringList>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

namespace tornelia::test {

inline QString cellText(const QTextTableCell& cell, const QTextDocument& doc)
{
    QTextCursor c(const_cast<QTextDocument*>(&doc));
    c.setPosition(cell.firstPosition());
    c.setPosition(cell.lastPosition(), QTextCursor::KeepAnchor);
    QString t = c.selectedText();
    t.replace(QChar(QChar::ParagraphSeparator), u'|');
    t.replace(QChar(0xFDD0), u'<');
    t.replace(QChar(0xFDD1), u'>');
    return t;
}

inline void dumpTables(const QTextFrame* frame, const QTextDocument& doc, QStringList& out, int depth)
{
    for (const QTextFrame* child : frame->childFrames()) {
        const auto* t = qobject_cast<const QTextTable*>(child);
        if (!t) {
            dumpTables(child, doc, out, depth);
            continue;
        }
        QStringList edges;
        for (int e : t->format().property(prop::TableEdges).value<QList<int>>())
            edges << QString::number(e);
        out << QStringLiteral("%1table %2x%3 edges %4%5")
                   .arg(QString(depth * 2, u' '))
                   .arg(t->rows())
                   .arg(t->columns())
                   .arg(edges.join(u','))
                   .arg(t->format().boolProperty(prop::TableGridOnly) ? QStringLiteral(" grid") : QString());
        for (int r = 0; r < t->rows(); ++r) {
            QStringList cells;
            for (int c = 0; c < t->columns(); ++c) {
                const QTextTableCell cell = t->cellAt(r, c);
                if (cell.row() != r || cell.column() != c)
                    continue;
                const QTextTableCellFormat f = cell.format().toTableCellFormat();
                if (f.boolProperty(prop::CellFiller)) {
                    cells << QStringLiteral("-");
                    continue;
                }
                QString d = QStringLiteral("[%1").arg(c);
                if (cell.columnSpan() > 1)
                    d += QStringLiteral("+%1").arg(cell.columnSpan());
                if (cell.rowSpan() > 1)
                    d += QStringLiteral("v%1").arg(cell.rowSpan());
                d += QStringLiteral(" \"%1\"").arg(cellText(cell, doc));
                QStringList b;
                for (int v : f.property(prop::CellBorders).value<QList<int>>())
                    b << QString::number(v);
                if (!b.isEmpty())
                    d += QStringLiteral(" b") + b.join(u',');
                if (f.hasProperty(prop::CellShadeColour))
                    d += QStringLiteral(" shade%1").arg(f.intProperty(prop::CellShadeColour), 6, 16, QLatin1Char('0'));
                if (f.intProperty(prop::CellVAlign))
                    d += QStringLiteral(" va%1").arg(f.intProperty(prop::CellVAlign));
                if (f.intProperty(prop::RowAlign))
                    d += QStringLiteral(" align%1").arg(f.intProperty(prop::RowAlign));
                if (f.intProperty(prop::RowHeight))
                    d += QStringLiteral(" h%1").arg(f.intProperty(prop::RowHeight));
                cells << d + u']';
            }
            out << QString(depth * 2 + 2, u' ') + cells.join(u' ');
        }
        dumpTables(child, doc, out, depth + 1);
    }
}

// Every table of the document, nested ones indented under their table.
inline QString tableDump(const QTextDocument& doc)
{
    QStringList out;
    dumpTables(doc.rootFrame(), doc, out, 0);
    return out.join(u'\n');
}

}  // namespace tornelia::test
