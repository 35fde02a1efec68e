#include "clipboard/clip_history.h"

#include <Qt>

namespace tornelia {

bool ClipHistory::Aggiorna()
{
    if (!enabled)
        return false;
    ClipEntry seen;
    const QByteArray rtf = source_.rtf();
    if (!rtf.isEmpty()) {
        seen.kind = u'R';
        seen.rtf = QString::fromLatin1(rtf);
        seen.text = source_.text();
    } else if (const QImage image = source_.image(); !image.isNull()) {
        seen.kind = u'I';
        seen.image = image;
    } else if (const QString text = source_.text(); !text.isEmpty()) {
        seen.kind = u'T';
        seen.text = text;
    } else {
        return false;  // nothing that can be pasted back
    }
    if (seen.kind == lastKind_ && seen.text == lastText_ && seen.rtf == lastRtf_ && seen.image == lastImage_)
        return false;
    lastKind_ = seen.kind;
    lastText_ = seen.text;
    lastRtf_ = seen.rtf;
    lastImage_ = seen.image;
    if (!seen.image.isNull())
        seen.thumb = seen.image.scaled(kThumbSide, kThumbSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    SpoSta();
    entries_[0] = std::move(seen);
    return true;
}

void ClipHistory::SpoSta()
{
    for (int k = kEntries - 1; k >= 1; --k)
        entries_[std::size_t(k)] = std::move(entries_[std::size_t(k - 1)]);
    entries_[0] = ClipEntry{};
}

void ClipHistory::clear()
{
    entries_.fill(ClipEntry{});
}

int ClipHistory::used() const
{
    int n = 0;
    for (const ClipEntry& e : entries_)
        n += e.kind != u'L';
    return n;
}

void ClipHistory::paste(int index, ClipTarget& target) const
{
    if (index < 0 || index >= kEntries)
        return;
    const ClipEntry& e = entries_[std::size_t(index)];
    switch (e.kind.unicode()) {
    case u'T':
        target.pasteText(e.text);
        break;
    case u'R':
        target.pasteRtf(e.rtf);
        break;
    case u'I':
        target.pasteImage(e.image);
        break;
    default:
        break;
    }
}

void ClipHistory::pasteAll(ClipTarget& target) const
{
    for (int i = 0; i < kEntries; ++i)
        paste(i, target);
}

}  // namespace tornelia
