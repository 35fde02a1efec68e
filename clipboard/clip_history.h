#pragma once

// The clipboard panel's memory, apart from its widget: the last ten things
// that passed through the system clipboard, newest at 0, and how each one
// goes back into the document.

#include <QByteArray>
#include <QImage>
#include <QString>

#include <array>

namespace tornelia {

// One entry. kind: "T" plain text, "R" rich text, "I" picture, "L" free.
struct ClipEntry {
    QChar kind = u'L';
    QString text;   // the plain text of "T" and "R"
    QString rtf;    // the rich text of "R"
    QImage image;   // the picture of "I"
    QImage thumb;   // its thumbnail

    bool operator==(const ClipEntry&) const = default;
};

// What a refresh reads. The program reads the system clipboard; a test
// drives its own.
class ClipSource {
public:
    virtual ~ClipSource() = default;
    virtual QByteArray rtf() const = 0;  // text/rtf or application/rtf, empty if neither
    virtual QImage image() const = 0;    // null without a picture
    virtual QString text() const = 0;    // empty without text
};

// Where a paste goes.
class ClipTarget {
public:
    virtual ~ClipTarget() = default;
    virtual void pasteText(const QString& text) = 0;
    virtual void pasteRtf(const QString& rtf) = 0;
    virtual void pasteImage(const QImage& image) = 0;
};

class ClipHistory {
public:
    static constexpr int kEntries = 10;
    static constexpr int kThumbSide = 64;

    explicit ClipHistory(ClipSource& source) : source_(source) {}

    bool enabled = true;

    // Looks at the clipboard: rich text first, then a picture, then text.
    // When the kind or the content differs from what was seen last, room is
    // made at 0 and the content goes there. True when an entry was added.
    bool Aggiorna();
    // Moves every entry one place down, losing the last, and frees entry 0.
    void SpoSta();
    // "Cancella appunti": every entry free. What was seen last stays, so
    // the same clipboard is not recorded again at the next refresh.
    void clear();

    // Pastes one entry by its kind; a free entry pastes nothing.
    void paste(int index, ClipTarget& target) const;
    // Every entry that is not free, from 0 on.
    void pasteAll(ClipTarget& target) const;

    const ClipEntry& entry(int index) const { return entries_.at(std::size_t(index)); }
    // The kind seen last on the clipboard; "A" before any refresh found one.
    QChar lastKind() const { return lastKind_; }
    int used() const;

private:
    ClipSource& source_;
    std::array<ClipEntry, kEntries> entries_;
    QChar lastKind_ = u'A';
    QString lastText_;
    QString lastRtf_;
    QImage lastImage_;
};

}  // namespace tornelia
