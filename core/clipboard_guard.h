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
    // Reads the system clipboard and keeps its content.
    void saveClipboard();
    // Puts the kept content back; "e" empties the clipboard.
    void restoreClipboard() const;

    QChar kind() const { return kind_; }

private:
    QChar kind_ = u'e';
    QByteArray rtf_;
    QString text_;
    QImage image_;
};

}  // namespace tornelia
