#pragma once

// A message port that keeps every message as "title | text", and a way to
// print QStrings in failures, for the tests of the text tools.

#include "core/ports.h"

#include <QStringList>

#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

namespace tornelia::testing {

class RecordingMessagePort final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int, int) override
    {
        said << title + QStringLiteral(" | ") + text;
        return QStringLiteral("ok");
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    QStringList said;
};

class OneFileDialogPort final : public DialogPort {
public:
    std::optional<QString> openFile(const QString&, const QStringList&) override { return path; }
    std::optional<QString> saveFile(const QString&, const QStringList&, const QString&) override { return {}; }
    std::optional<QString> chooseFolder(const QString&) override { return {}; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return {}; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return {}; }
    std::optional<QString> path;
};

}  // namespace tornelia::testing
