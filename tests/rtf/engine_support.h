#pragma once

// Scripted ports and a ready surface for the engine's tests.

#include "core/ports.h"
#include "core/rich_text_surface.h"

#include <QString>
#include <QStringList>

#include <deque>
#include <optional>
#include <ostream>

// Failures show the RTF as text, with its line ends visible.
inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << QString(s).replace(QLatin1String("\r"), QLatin1String("\\r")).replace(QLatin1String("\n"), QLatin1String("\\n")).toStdString() << '"';
}

namespace tornelia::test {

class RecordingMessages : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int buttons, int icon) override
    {
        shown << QStringLiteral("%1|%2|%3|%4").arg(title, text).arg(buttons).arg(icon);
        return QStringLiteral("ok");
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    QStringList shown;
};

// Answers colour questions from a script; an empty entry is a cancel.
class ScriptedColours : public DialogPort {
public:
    std::optional<QString> openFile(const QString&, const QStringList&) override { return std::nullopt; }
    std::optional<QString> saveFile(const QString&, const QStringList&, const QString&) override { return std::nullopt; }
    std::optional<QString> chooseFolder(const QString&) override { return std::nullopt; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return std::nullopt; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t initial) override
    {
        asked.push_back(initial);
        if (answers.empty())
            return std::nullopt;
        const auto a = answers.front();
        answers.pop_front();
        return a;
    }
    std::deque<std::optional<std::uint32_t>> answers;
    std::deque<std::uint32_t> asked;
};

inline void select(RichTextSurface& s, long start, long length)
{
    s.setSelStart(start);
    s.setSelLength(length);
}

}  // namespace tornelia::test
