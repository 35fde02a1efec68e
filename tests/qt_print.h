#pragma once

// Readable failure messages for Qt strings.

#include <QString>
#include <QStringList>

#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

inline void PrintTo(const QStringList& list, std::ostream* os)
{
    *os << "{\n";
    for (const QString& s : list)
        *os << "  \"" << s.toStdString() << "\"\n";
    *os << "}";
}
