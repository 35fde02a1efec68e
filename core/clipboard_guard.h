#pragma once

// Keeps the user's clipboard aside while the program borrows it, e.g. to
// paste a picture through the paste path, and puts it back afterwards.
// What was kept is one of four kinds: "r" rich text (with its plain text),
// "b" a picture, "t" plain text, "e" nothing.

#include <QByteArray>
#include <QImage>
#include <QString>

namespace tornelia {

class ClipboardGuard {
public:
    ClipboardGuard() = default;
    ~ClipboardGuard();
    ClipboardGuard(const ClipboardGuard&) = delete;
    ClipboardGuard& operator=(const ClipboardGuard&) = delete;

    // Reads the system clipboard and keeps its content. From here to
    // restoreClipboard the clipboard is on loan.
    void saveClipboard();
    // Puts the kept content back; "e" empties the clipboard.
    void restoreClipboard();

    QChar kind() const { return kind_; }

    // True while some guard has the clipboard on loan: what passes through
    // it then was not copied by the user, and the clipboard panel ignores it.
    static bool onLoan() { return loans_ > 0; }

private:
    void endLoan();

    static inline int loans_ = 0;
    bool lent_ = false;
    QChar kind_ = u'e';
    QByteArray rtf_;
    QString text_;
    QImage image_;
};

}  // namespace tornelia
