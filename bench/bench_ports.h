#pragma once

// A message port for benchmarks: nobody answers, every message is an OK.

#include "core/ports.h"

namespace tornelia::bench {

class SilentMessages final : public MessagePort {
public:
    QString mostraMsg(const QString&, const QString&, int, int) override { return QStringLiteral("ok"); }
    QString inputBox(const QString&, const QString&) override { return {}; }
};

}  // namespace tornelia::bench
