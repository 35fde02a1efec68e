#pragma once

// Ports that answer without a person: the command line runs the document's
// code with these, and keeps what the code wanted to say.

#include "core/ports.h"

#include <QList>
#include <QString>

namespace tornelia {

struct RecordedMessage {
    QString title;
    QString text;
    int buttons = 0;
    int icon = 0;
};

// Answers "ok" to a lone OK and "no" to every question, so nothing is saved
// or deleted that was not asked for.
class ScriptedMessagePort final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int buttons, int icon) override
    {
        messages.append({title, text, buttons, icon});
        return buttons == 0 ? QStringLiteral("ok") : QStringLiteral("no");
    }
    // Questions get the queued answers in order, then "".
    QString inputBox(const QString& title, const QString& prompt) override
    {
        messages.append({title, prompt, -1, 0});
        return answers.isEmpty() ? QString() : answers.takeFirst();
    }
    QList<RecordedMessage> messages;
    QStringList answers;
};

// Every chooser is cancelled.
class ScriptedDialogPort final : public DialogPort {
public:
    std::optional<QString> openFile(const QString&, const QStringList&) override { return std::nullopt; }
    std::optional<QString> saveFile(const QString&, const QStringList&, const QString&) override
    {
        return std::nullopt;
    }
    std::optional<QString> chooseFolder(const QString&) override { return std::nullopt; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return std::nullopt; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return std::nullopt; }
};

// Starts and opens nothing; remembers what it was asked.
class ScriptedShellPort final : public ShellPort {
public:
    bool openDocument(const QString& pathOrUrl) override
    {
        requests.append(pathOrUrl);
        return false;
    }
    bool startDetached(const QString& program, const QStringList&) override
    {
        requests.append(program);
        return false;
    }
    void showProperties(const QString& path) override { requests.append(path); }
    QStringList requests;
};

}  // namespace tornelia
