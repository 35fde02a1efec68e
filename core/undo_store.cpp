#include "core/undo_store.h"

#include <QByteArray>

#include <algorithm>
#include <vector>

namespace tornelia {

namespace {

// Above this Len(Text) a step is still taken, and it turns undo off: each
// step is a whole document, taken at every word.
constexpr long kMaxLength = 50000;

// Steps are numbered by 16-bit counters (the macros' undo count is 16-bit
// too). A store that is full takes no more steps and keeps the ones it has:
// raising would reach callers such as the typing handlers, which have no use
// for the error, and the steps already taken stay good for undo and redo.
constexpr int kMaxStep = 32767;

// A whole, compressed copy every this many steps bounds the patches one read
// applies; in between, a step is its difference from the step before it.
constexpr int kKeyEvery = 32;

const QString kAnnulla = QStringLiteral("Annulla");
const QString kAnnullaOff = QStringLiteral("Annulla disabilitato");
const QString kAnnullaNone = QStringLiteral("Impossibile annullare");
const QString kRipristina = QStringLiteral("Ripristina");
const QString kRipristinaOff = QStringLiteral("Ripristina disabilitato");
const QString kRipristinaNone = QStringLiteral("Impossibile ripristinare");

bool fitsLatin1(QStringView s)
{
    for (const QChar c : s)
        if (c.unicode() > 0xFF)
            return false;
    return true;
}

// One byte a character when the text allows it (the RTF written is ASCII),
// UTF-16 otherwise, so any string comes back exactly.
QByteArray encode(QStringView s, bool& wide)
{
    wide = !fitsLatin1(s);
    if (!wide)
        return s.toLatin1();
    return QByteArray(reinterpret_cast<const char*>(s.utf16()), s.size() * qsizetype(sizeof(char16_t)));
}

bool decode(const QByteArray& bytes, bool wide, QString& out)
{
    if (!wide) {
        out = QString::fromLatin1(bytes);
        return true;
    }
    if (bytes.size() % 2)
        return false;
    out = QString(reinterpret_cast<const QChar*>(bytes.constData()), bytes.size() / 2);
    return true;
}

}  // namespace

// The steps 1 to passoTot, in the order they were taken. Each is either a
// key (the whole string, compressed) or a difference from the step before it
// in the array: the lengths of the common start and end, and the middle.
// Steps are only ever added at the end, so every difference keeps its base.
struct UndoStore::Steps {
    struct Step {
        qsizetype length = 0;  // of the whole string, for reads that need no more
        qsizetype prefix = 0;
        qsizetype suffix = 0;
        QByteArray data;  // key: compressed whole; difference: the middle
        bool key = false;
        bool wide = false;
    };
    std::vector<Step> list;  // list[i - 1] is step i
    QString last;            // the last step whole, which the next one is compared with
    int sinceKey = 0;

    int count() const { return int(list.size()); }
    qsizetype length(int i) const { return i >= 1 && i <= count() ? list[i - 1].length : 0; }

    void append(const QString& s)
    {
        Step st;
        st.length = s.size();
        bool key = list.empty() || sinceKey + 1 >= kKeyEvery;
        if (!key) {
            const ushort* a = last.utf16();
            const ushort* b = s.utf16();
            const qsizetype la = last.size();
            const qsizetype lb = s.size();
            const qsizetype shorter = std::min(la, lb);
            const qsizetype prefix = std::mismatch(a, a + shorter, b).first - a;
            qsizetype suffix = 0;
            while (suffix < shorter - prefix && a[la - 1 - suffix] == b[lb - 1 - suffix])
                ++suffix;
            const qsizetype middle = lb - prefix - suffix;
            // A wide change costs less as a key, and starts a fresh chain.
            if (middle > lb / 8 + 64) {
                key = true;
            } else {
                st.prefix = prefix;
                st.suffix = suffix;
                st.data = encode(QStringView(s).sliced(prefix, middle), st.wide);
            }
        }
        if (key) {
            st.key = true;
            st.data = qCompress(encode(s, st.wide), 1);
            st.data.squeeze();  // it was sized for the worst case
        }
        list.push_back(std::move(st));
        sinceKey = key ? 0 : sinceKey + 1;
        last = s;
    }

    // False when the stored bytes do not give back a string of the length
    // recorded, which only damage to memory can cause.
    bool read(int i, QString& out) const
    {
        if (i < 1 || i > count()) {
            out.clear();
            return true;
        }
        if (i == count()) {
            out = last;
            return true;
        }
        int k = i;
        while (!list[k - 1].key)
            --k;
        const Step& keyStep = list[k - 1];
        QString cur;
        if (!decode(qUncompress(keyStep.data), keyStep.wide, cur) || cur.size() != keyStep.length)
            return false;
        QString middle;
        for (int j = k + 1; j <= i; ++j) {
            const Step& d = list[j - 1];
            if (d.prefix + d.suffix > cur.size() || !decode(d.data, d.wide, middle))
                return false;
            cur.replace(d.prefix, cur.size() - d.prefix - d.suffix, middle);
            if (cur.size() != d.length)
                return false;
        }
        out = std::move(cur);
        return true;
    }

    std::size_t bytes() const
    {
        std::size_t n = sizeof(Steps) + list.capacity() * sizeof(Step)
                        + std::size_t(last.capacity()) * sizeof(QChar);
        for (const Step& st : list)
            if (!st.data.isNull())
                n += sizeof(QArrayData) + std::size_t(st.data.capacity());
        return n;
    }
};

UndoStore::UndoStore(RichTextSurface& testo) : testo_(testo), steps_(std::make_unique<Steps>()) {}

UndoStore::~UndoStore() = default;

void UndoStore::unDO()
{
    if (annullaOff_)
        return;
    store(testo_.TextRTF());
}

void UndoStore::store(const QString& rtf)
{
    if (annullaOff_ || passoTot_ >= kMaxStep)
        return;
    const bool troppoGrande = testo_.length() > kMaxLength;
    // The step goes in before the counters move, so a failure leaves both as they were.
    steps_->append(rtf);
    ++passoTot_;
    ++passoCorr_;
    annullaOff_ = troppoGrande;
    CmeN();
}

void UndoStore::UnDoo()
{
    if (!commands().annulla.enabled)
        return;
    const long posCursore = testo_.SelStart();
    // Typing since the last step is stored first, so that it can be redone.
    if (passoCorr_ != 0) {
        const QString now = testo_.TextRTF();
        if (now.size() != steps_->length(passoCorr_))
            store(now);
    }
    // Off while the step goes back in, so that handlers of the surface's
    // Change (typing assistance) take no step of the restore.
    annullaOff_ = true;
    --passoCorr_;
    restore(passoCorr_);
    annullaOff_ = false;
    CmeN();
    moveCaret(posCursore);
}

void UndoStore::RedOO()
{
    if (!commands().ripristina.enabled)
        return;
    const long posCursore = testo_.SelStart();
    annullaOff_ = true;
    ++passoCorr_;
    if (passoCorr_ <= passoTot_) {
        restore(passoCorr_);
        annullaOff_ = false;
        CmeN();
        moveCaret(posCursore);
    } else {
        // Beyond the last step, which the command's state keeps from
        // happening: back to the last, and undo stays off until turned on.
        passoCorr_ = passoTot_;
    }
}

void UndoStore::restore(int i)
{
    QString rtf;
    if (i == 0)
        rtf = opened_;
    else if (!steps_->read(i, rtf))
        return;
    try {
        testo_.setTextRTF(rtf);
    } catch (const SurfaceError& e) {
        // A step the surface refuses is skipped; the document stays as it is.
        qWarning("Annulla: passo %d non ripristinato: %s", i, e.what());
    }
}

void UndoStore::moveCaret(long pos)
{
    try {
        testo_.setSelStart(pos);  // beyond the end of a shorter text: the end
    } catch (const SurfaceError& e) {
        qWarning("Annulla: cursore non riportato a %ld: %s", pos, e.what());
    }
}

bool UndoStore::stepEmpty(int i) const
{
    if (i == 0)
        return opened_.isEmpty();
    return steps_->length(i) == 0;  // beyond the last holds ""
}

UndoCommands UndoStore::commands() const
{
    UndoCommands c;
    if (annullaOff_) {
        c.annulla = {false, kAnnullaOff};
        c.ripristina = {false, kRipristinaOff};
        return c;
    }
    if (passoCorr_ == 0)
        c.annulla = {false, kAnnullaOff};
    else if (stepEmpty(passoCorr_ - 1))
        c.annulla = {false, kAnnullaNone};
    else
        c.annulla = {true, kAnnulla};
    if (stepEmpty(passoCorr_ + 1))
        c.ripristina = {false, kRipristinaNone};
    else
        c.ripristina = {true, kRipristina};
    return c;
}

UndoCommands UndoStore::CmeN()
{
    const UndoCommands c = commands();
    if (onCommands)
        onCommands(c);
    return c;
}

void UndoStore::clear()
{
    steps_ = std::make_unique<Steps>();
    passoCorr_ = 0;
    passoTot_ = 0;
    opened_.clear();
    // The window shows the empty store at once.
    CmeN();
}

void UndoStore::keepOpened()
{
    // A document too large for steps takes none here either.
    opened_.clear();
    if (!annullaOff_ && testo_.length() <= kMaxLength)
        opened_ = testo_.TextRTF();
    CmeN();
}

void UndoStore::disabilitaAnnulla(SettingsStore& settings)
{
    annullaOff_ = !annullaOff_;
    CmeN();
    settings.scriviReg(QStringLiteral("Tornelia"), QStringLiteral("Ann"), QStringLiteral("1"),
                       annullaOff_ ? QStringLiteral("True") : QStringLiteral("False"));
}

QString UndoStore::passo(int i) const
{
    if (i == 0)
        return opened_;
    QString s;
    if (!steps_->read(i, s))
        s.clear();
    return s;
}

std::size_t UndoStore::memoryBytes() const
{
    return steps_->bytes() + std::size_t(opened_.capacity()) * sizeof(QChar);
}

}  // namespace tornelia
