#pragma once

// Ports for benchmarks, with nobody watching: no dialog, no window.

#include "core/ports.h"

namespace tornelia::bench {

class SilentMessages final : public MessagePort {
public:
    QString mostraMsg(const QString&, const QString&, int, int) override { return QStringLiteral("ok"); }
    QString inputBox(const QString&, const QString&) override { return {}; }
};

// Every port at once: a message with buttons is answered "no", every
// dialog is cancelled.
struct SilentPorts : MessagePort, DialogPort, ShellPort, FramePort {
    QString mostraMsg(const QString&, const QString&, int buttons, int) override
    {
        return buttons == 0 ? QStringLiteral("ok") : QStringLiteral("no");
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    std::optional<QString> openFile(const QString&, const QStringList&) override { return {}; }
    std::optional<QString> saveFile(const QString&, const QStringList&, const QString&) override { return {}; }
    std::optional<QString> chooseFolder(const QString&) override { return {}; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return {}; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return {}; }
    bool openDocument(const QString&) override { return true; }
    bool startDetached(const QString&, const QStringList&) override { return true; }
    void showProperties(const QString&) override {}
    void setCaption(const QString&) override {}
    void setStatusPanel(int, const QString&) override {}
    void showProgress(const QString&, int) override {}
    void hideProgress() override {}
    void processEvents() override {}
};

}  // namespace tornelia::bench
