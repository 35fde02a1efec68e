// The panel's memory, driven by a clipboard the test controls.

#include "clipboard/clip_history.h"

#include <gtest/gtest.h>

#include <QStringList>

using namespace tornelia;

namespace {

class FakeClipboard final : public ClipSource {
public:
    QByteArray rtfData;
    QImage picture;
    QString plain;

    QByteArray rtf() const override { return rtfData; }
    QImage image() const override { return picture; }
    QString text() const override { return plain; }

    void copyText(const QString& t) { *this = {}, plain = t; }
    void copyRtf(const QByteArray& r, const QString& t) { *this = {}, rtfData = r, plain = t; }
    void copyImage(const QImage& i) { *this = {}, picture = i; }
};

// Every paste written down as "kind:content", in order.
class Recorder final : public ClipTarget {
public:
    QStringList calls;
    void pasteText(const QString& t) override { calls << "T:" + t; }
    void pasteRtf(const QString& r) override { calls << "R:" + r; }
    void pasteImage(const QImage& i) override { calls << QStringLiteral("I:%1x%2").arg(i.width()).arg(i.height()); }
};

QImage filled(int w, int h, Qt::GlobalColor c)
{
    QImage i(w, h, QImage::Format_RGB32);
    i.fill(c);
    return i;
}

// The ten entries as "kind:text", newest first; free ones as "L".
QStringList shown(const ClipHistory& h)
{
    QStringList out;
    for (int k = 0; k < ClipHistory::kEntries; ++k) {
        const ClipEntry& e = h.entry(k);
        out << (e.kind == u'L' ? QStringLiteral("L") : QString(e.kind) + ":" + e.text);
    }
    return out;
}

}  // namespace

TEST(ClipHistory, ElevenCopiesLoseTheOldest)
{
    FakeClipboard clip;
    ClipHistory h(clip);
    for (int n = 1; n <= 11; ++n) {
        clip.copyText(QStringLiteral("copia %1").arg(n));
        EXPECT_TRUE(h.Aggiorna()) << n;
    }
    QStringList expected;
    for (int n = 11; n >= 2; --n)
        expected << QStringLiteral("T:copia %1").arg(n);
    EXPECT_EQ(shown(h), expected);
    EXPECT_EQ(h.used(), 10);
}

TEST(ClipHistory, RecordsOnlyWhenKindOrContentChanges)
{
    FakeClipboard clip;
    ClipHistory h(clip);
    EXPECT_EQ(h.lastKind(), u'A');
    EXPECT_FALSE(h.Aggiorna());  // an empty clipboard is nothing to record
    clip.copyText("uno");
    EXPECT_TRUE(h.Aggiorna());
    // The poll and the clipboard's own signal both look at the same copy.
    EXPECT_FALSE(h.Aggiorna());
    EXPECT_FALSE(h.Aggiorna());
    // The same words as rich text are another kind.
    clip.copyRtf("{\\rtf1 {\\b uno}}", "uno");
    EXPECT_TRUE(h.Aggiorna());
    clip.copyImage(filled(3, 3, Qt::red));
    EXPECT_TRUE(h.Aggiorna());
    clip.copyImage(filled(3, 3, Qt::red));  // an equal picture copied again
    EXPECT_FALSE(h.Aggiorna());
    clip.copyImage(filled(3, 3, Qt::blue));
    EXPECT_TRUE(h.Aggiorna());
    // Going back to the first text is a change from what was seen last.
    clip.copyText("uno");
    EXPECT_TRUE(h.Aggiorna());
    EXPECT_EQ(shown(h), (QStringList{"T:uno", "I:", "I:", "R:uno", "T:uno", "L", "L", "L", "L", "L"}));
}

TEST(ClipHistory, KindFollowsTheRichestFormat)
{
    FakeClipboard clip;
    ClipHistory h(clip);
    // Rich text wins over a picture and over its own plain text.
    clip.rtfData = "{\\rtf1 ricco}";
    clip.plain = "ricco";
    clip.picture = filled(2, 2, Qt::green);
    ASSERT_TRUE(h.Aggiorna());
    EXPECT_EQ(h.entry(0).kind, u'R');
    EXPECT_EQ(h.entry(0).rtf, "{\\rtf1 ricco}");
    EXPECT_TRUE(h.entry(0).image.isNull());
    // A picture wins over text.
    clip = {};
    clip.picture = filled(300, 150, Qt::green);
    clip.plain = "didascalia";
    ASSERT_TRUE(h.Aggiorna());
    const ClipEntry& picture = h.entry(0);
    EXPECT_EQ(picture.kind, u'I');
    EXPECT_EQ(picture.image.size(), QSize(300, 150));
    // The thumbnail keeps the proportions within its square.
    EXPECT_EQ(picture.thumb.size(), QSize(64, 32));
    EXPECT_EQ(h.lastKind(), u'I');
    clip = {};
    clip.plain = "solo testo";
    ASSERT_TRUE(h.Aggiorna());
    EXPECT_EQ(h.entry(0).kind, u'T');
}

TEST(ClipHistory, PasteAllGoesInOrderAndSkipsFreeEntries)
{
    FakeClipboard clip;
    ClipHistory h(clip);
    clip.copyText("primo");
    h.Aggiorna();
    clip.copyImage(filled(5, 4, Qt::red));
    h.Aggiorna();
    clip.copyRtf("{\\rtf1 terzo}", "terzo");
    h.Aggiorna();
    Recorder r;
    h.pasteAll(r);
    EXPECT_EQ(r.calls, (QStringList{"R:{\\rtf1 terzo}", "I:5x4", "T:primo"}));

    Recorder one;
    h.paste(1, one);
    h.paste(7, one);   // free
    h.paste(10, one);  // outside the ten
    h.paste(-1, one);
    EXPECT_EQ(one.calls, QStringList{"I:5x4"});
}

TEST(ClipHistory, ClearEmptiesEverythingAndDoesNotRecordTheSameCopyAgain)
{
    FakeClipboard clip;
    ClipHistory h(clip);
    for (const char* t : {"a", "b", "c"}) {
        clip.copyText(t);
        h.Aggiorna();
    }
    h.clear();
    EXPECT_EQ(shown(h), QStringList(10, "L"));
    EXPECT_EQ(h.used(), 0);
    Recorder r;
    h.pasteAll(r);
    EXPECT_TRUE(r.calls.isEmpty());
    // What is still on the clipboard was already seen.
    EXPECT_FALSE(h.Aggiorna());
    clip.copyText("d");
    EXPECT_TRUE(h.Aggiorna());
    EXPECT_EQ(shown(h).first(), "T:d");
    EXPECT_EQ(h.used(), 1);
}

TEST(ClipHistory, DisabledRecordsNothing)
{
    FakeClipboard clip;
    ClipHistory h(clip);
    h.enabled = false;
    clip.copyText("x");
    EXPECT_FALSE(h.Aggiorna());
    EXPECT_EQ(h.used(), 0);
    // Enabled again, the waiting copy is recorded.
    h.enabled = true;
    EXPECT_TRUE(h.Aggiorna());
}
