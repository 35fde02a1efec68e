#pragma once

// Ports for the tests of the text tools and their windows: messages kept as
// "title | text", answers and file names given in advance.

#include "core/ports.h"

#include <QStringList>

#include <deque>
#include <optional>
#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

namespace tornelia::tooltest {

class Messages final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int buttons, int) override
    {
        said << title + QStringLiteral(" | ") + text;
        if (answers.empty())
            return buttons == 0 ? QStringLiteral("ok") : QStringLiteral("si");
        const QString a = answers.front();
        answers.pop_front();
        return a;
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    // What was said since the last call.
    QStringList take()
    {
        QStringList s = said;
        said.clear();
        return s;
    }
    QStringList said;
    std::deque<QString> answers;
};

class Dialogs final : public DialogPort {
public:
    std::optional<QString> openFile(const QString&, const QStringList& f) override
    {
        filters = f;
        return openPath;
    }
    std::optional<QString> saveFile(const QString&, const QStringList& f, const QString& suggested) override
    {
        filters = f;
        suggestedName = suggested;
        return savePath;
    }
    std::optional<QString> chooseFolder(const QString&) override { return std::nullopt; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return std::nullopt; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return std::nullopt; }
    std::optional<QString> openPath;
    std::optional<QString> savePath;
    QStringList filters;
    QString suggestedName;
};

}  // namespace tornelia::tooltest
