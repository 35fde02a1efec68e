#include "core/rtf_reader.h"

#include "core/codepage.h"
#include "core/picture.h"
#include "core/rich_text_surface.h"
#include "core/text_format.h"

#include <QCryptographicHash>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tornelia {
namespace {

// Beyond these the input is treated as garbage, never as a reason to fail.
constexpr int kMaxKeywordLength = 32;
constexpr int kMaxParameterDigits = 10;
constexpr int kMaxDepth = 2048;
constexpr int kSymbolCodePage = -2;

enum class Kind : std::uint8_t { Flag, Toggle, Value, Destination, Symbol };

enum class Id : std::uint16_t {
    // destinations
    Fonttbl, Colortbl, Pict, Object, Pn, SkipDest, NormalDest, Field,
    // document
    Ansi, Mac, Pc, Pca, Ansicpg, Deff, Uc, U, Bin,
    // font table
    F, Fcharset, Fprq, Cpg, FontFamily,
    // colour table
    Red, Green, Blue,
    // character
    Plain, B, I, Strike, Striked, V, Caps, Ul, Uld, Uldash, Uldashd, Uldashdd, Uldb, Uldbl,
    Ulth, Ulw, Ulwave, Ulhair, Ulnone, Up, Dn, Super, Sub, Nosupersub, Fs, Cf, Highlight, Cb,
    // paragraph
    Pard, Ql, Qr, Qc, Qj, Li, Ri, Fi, Ls, PnBullet,
    // specials
    Par, Line, Tab, Cell, Row, Page, Emdash, Endash, Bullet, Lquote, Rquote, Ldblquote,
    Rdblquote, Emspace, Enspace, Qmspace, Zwj, Zwnj, Ltrmark, Rtlmark,
    // picture
    Pngblip, Jpegblip, Dibitmap, Wbitmap, Wmetafile, Emfblip, Macpict, Picw, Pich, Picwgoal,
    Pichgoal, Picscalex, Picscaley,
};

struct Word {
    std::string_view name;
    Kind kind;
    Id id;
    int defaultParam;
};

// Sorted by name; looked up by binary search.
constexpr Word kWords[] = {
    {"aftncn", Kind::Destination, Id::SkipDest, 0},
    {"aftnsep", Kind::Destination, Id::SkipDest, 0},
    {"aftnsepc", Kind::Destination, Id::SkipDest, 0},
    {"annotation", Kind::Destination, Id::SkipDest, 0},
    {"ansi", Kind::Flag, Id::Ansi, 0},
    {"ansicpg", Kind::Value, Id::Ansicpg, 1252},
    {"atnauthor", Kind::Destination, Id::SkipDest, 0},
    {"atndate", Kind::Destination, Id::SkipDest, 0},
    {"atnid", Kind::Destination, Id::SkipDest, 0},
    {"atnref", Kind::Destination, Id::SkipDest, 0},
    {"atntime", Kind::Destination, Id::SkipDest, 0},
    {"author", Kind::Destination, Id::SkipDest, 0},
    {"b", Kind::Toggle, Id::B, 1},
    {"bin", Kind::Value, Id::Bin, 0},
    {"blue", Kind::Value, Id::Blue, 0},
    {"bullet", Kind::Symbol, Id::Bullet, 0},
    {"buptim", Kind::Destination, Id::SkipDest, 0},
    {"caps", Kind::Toggle, Id::Caps, 1},
    {"category", Kind::Destination, Id::SkipDest, 0},
    {"cb", Kind::Value, Id::Cb, 0},
    {"cell", Kind::Symbol, Id::Cell, 0},
    {"cf", Kind::Value, Id::Cf, 0},
    {"colortbl", Kind::Destination, Id::Colortbl, 0},
    {"comment", Kind::Destination, Id::SkipDest, 0},
    {"company", Kind::Destination, Id::SkipDest, 0},
    {"cpg", Kind::Value, Id::Cpg, 0},
    {"creatim", Kind::Destination, Id::SkipDest, 0},
    {"deff", Kind::Value, Id::Deff, 0},
    {"dibitmap", Kind::Value, Id::Dibitmap, 0},
    {"dn", Kind::Value, Id::Dn, 6},
    {"doccomm", Kind::Destination, Id::SkipDest, 0},
    {"docvar", Kind::Destination, Id::SkipDest, 0},
    {"emdash", Kind::Symbol, Id::Emdash, 0},
    {"emfblip", Kind::Flag, Id::Emfblip, 0},
    {"emspace", Kind::Symbol, Id::Emspace, 0},
    {"endash", Kind::Symbol, Id::Endash, 0},
    {"enspace", Kind::Symbol, Id::Enspace, 0},
    {"f", Kind::Value, Id::F, 0},
    {"fbidi", Kind::Flag, Id::FontFamily, 0},
    {"fcharset", Kind::Value, Id::Fcharset, 0},
    {"fdecor", Kind::Flag, Id::FontFamily, 0},
    {"fi", Kind::Value, Id::Fi, 0},
    {"field", Kind::Destination, Id::Field, 0},
    {"fldinst", Kind::Destination, Id::SkipDest, 0},
    {"fldrslt", Kind::Destination, Id::NormalDest, 0},
    {"fmodern", Kind::Flag, Id::FontFamily, 0},
    {"fnil", Kind::Flag, Id::FontFamily, 0},
    {"fonttbl", Kind::Destination, Id::Fonttbl, 0},
    {"footer", Kind::Destination, Id::SkipDest, 0},
    {"footerf", Kind::Destination, Id::SkipDest, 0},
    {"footerl", Kind::Destination, Id::SkipDest, 0},
    {"footerr", Kind::Destination, Id::SkipDest, 0},
    {"footnote", Kind::Destination, Id::SkipDest, 0},
    {"fprq", Kind::Value, Id::Fprq, 0},
    {"froman", Kind::Flag, Id::FontFamily, 0},
    {"fs", Kind::Value, Id::Fs, 24},
    {"fscript", Kind::Flag, Id::FontFamily, 0},
    {"fswiss", Kind::Flag, Id::FontFamily, 0},
    {"ftech", Kind::Flag, Id::FontFamily, 0},
    {"ftncn", Kind::Destination, Id::SkipDest, 0},
    {"ftnsep", Kind::Destination, Id::SkipDest, 0},
    {"ftnsepc", Kind::Destination, Id::SkipDest, 0},
    {"green", Kind::Value, Id::Green, 0},
    {"header", Kind::Destination, Id::SkipDest, 0},
    {"headerf", Kind::Destination, Id::SkipDest, 0},
    {"headerl", Kind::Destination, Id::SkipDest, 0},
    {"headerr", Kind::Destination, Id::SkipDest, 0},
    {"highlight", Kind::Value, Id::Highlight, 0},
    {"i", Kind::Toggle, Id::I, 1},
    {"info", Kind::Destination, Id::SkipDest, 0},
    {"jpegblip", Kind::Flag, Id::Jpegblip, 0},
    {"keywords", Kind::Destination, Id::SkipDest, 0},
    {"ldblquote", Kind::Symbol, Id::Ldblquote, 0},
    {"li", Kind::Value, Id::Li, 0},
    {"lin", Kind::Value, Id::Li, 0},
    {"line", Kind::Symbol, Id::Line, 0},
    {"listtext", Kind::Destination, Id::SkipDest, 0},
    {"lquote", Kind::Symbol, Id::Lquote, 0},
    {"ls", Kind::Value, Id::Ls, 0},
    {"ltrmark", Kind::Symbol, Id::Ltrmark, 0},
    {"mac", Kind::Flag, Id::Mac, 0},
    {"macpict", Kind::Flag, Id::Macpict, 0},
    {"manager", Kind::Destination, Id::SkipDest, 0},
    {"nestcell", Kind::Symbol, Id::Cell, 0},
    {"nestrow", Kind::Symbol, Id::Row, 0},
    {"nesttableprops", Kind::Destination, Id::SkipDest, 0},
    {"nonesttables", Kind::Destination, Id::SkipDest, 0},
    {"nonshppict", Kind::Destination, Id::SkipDest, 0},
    {"nosupersub", Kind::Flag, Id::Nosupersub, 0},
    {"object", Kind::Destination, Id::Object, 0},
    {"operator", Kind::Destination, Id::SkipDest, 0},
    {"page", Kind::Symbol, Id::Page, 0},
    {"par", Kind::Symbol, Id::Par, 0},
    {"pard", Kind::Flag, Id::Pard, 0},
    {"pc", Kind::Flag, Id::Pc, 0},
    {"pca", Kind::Flag, Id::Pca, 0},
    {"pich", Kind::Value, Id::Pich, 0},
    {"pichgoal", Kind::Value, Id::Pichgoal, 0},
    {"picscalex", Kind::Value, Id::Picscalex, 100},
    {"picscaley", Kind::Value, Id::Picscaley, 100},
    {"pict", Kind::Destination, Id::Pict, 0},
    {"picw", Kind::Value, Id::Picw, 0},
    {"picwgoal", Kind::Value, Id::Picwgoal, 0},
    {"plain", Kind::Flag, Id::Plain, 0},
    {"pn", Kind::Destination, Id::Pn, 0},
    {"pngblip", Kind::Flag, Id::Pngblip, 0},
    {"pnlvlblt", Kind::Flag, Id::PnBullet, 0},
    {"pnlvlbody", Kind::Flag, Id::PnBullet, 0},
    {"pnlvlcont", Kind::Flag, Id::PnBullet, 0},
    {"pnseclvl", Kind::Destination, Id::SkipDest, 0},
    {"pntext", Kind::Destination, Id::SkipDest, 0},
    {"pntxta", Kind::Destination, Id::SkipDest, 0},
    {"pntxtb", Kind::Destination, Id::SkipDest, 0},
    {"printim", Kind::Destination, Id::SkipDest, 0},
    {"private", Kind::Destination, Id::SkipDest, 0},
    {"qc", Kind::Flag, Id::Qc, 0},
    {"qj", Kind::Flag, Id::Qj, 0},
    {"ql", Kind::Flag, Id::Ql, 0},
    {"qmspace", Kind::Symbol, Id::Qmspace, 0},
    {"qr", Kind::Flag, Id::Qr, 0},
    {"rdblquote", Kind::Symbol, Id::Rdblquote, 0},
    {"red", Kind::Value, Id::Red, 0},
    {"revtim", Kind::Destination, Id::SkipDest, 0},
    {"ri", Kind::Value, Id::Ri, 0},
    {"rin", Kind::Value, Id::Ri, 0},
    {"row", Kind::Symbol, Id::Row, 0},
    {"rquote", Kind::Symbol, Id::Rquote, 0},
    {"rtlmark", Kind::Symbol, Id::Rtlmark, 0},
    {"sect", Kind::Symbol, Id::Page, 0},
    {"shppict", Kind::Destination, Id::NormalDest, 0},
    {"shprslt", Kind::Destination, Id::NormalDest, 0},
    {"strike", Kind::Toggle, Id::Strike, 1},
    {"striked", Kind::Toggle, Id::Striked, 1},
    {"stylesheet", Kind::Destination, Id::SkipDest, 0},
    {"sub", Kind::Toggle, Id::Sub, 0},
    {"subject", Kind::Destination, Id::SkipDest, 0},
    {"super", Kind::Toggle, Id::Super, 0},
    {"tab", Kind::Symbol, Id::Tab, 0},
    {"tc", Kind::Destination, Id::SkipDest, 0},
    {"template", Kind::Destination, Id::SkipDest, 0},
    {"title", Kind::Destination, Id::SkipDest, 0},
    {"txe", Kind::Destination, Id::SkipDest, 0},
    {"u", Kind::Value, Id::U, 0},
    {"uc", Kind::Value, Id::Uc, 1},
    {"ud", Kind::Destination, Id::NormalDest, 0},
    {"ul", Kind::Toggle, Id::Ul, 1},
    {"uld", Kind::Toggle, Id::Uld, 1},
    {"uldash", Kind::Toggle, Id::Uldash, 1},
    {"uldashd", Kind::Toggle, Id::Uldashd, 1},
    {"uldashdd", Kind::Toggle, Id::Uldashdd, 1},
    {"uldb", Kind::Toggle, Id::Uldb, 1},
    {"uldbl", Kind::Toggle, Id::Uldbl, 1},
    {"ulhair", Kind::Toggle, Id::Ulhair, 1},
    {"ulhwave", Kind::Toggle, Id::Ulwave, 1},
    {"ulldash", Kind::Toggle, Id::Uldash, 1},
    {"ulnone", Kind::Flag, Id::Ulnone, 0},
    {"ulth", Kind::Toggle, Id::Ulth, 1},
    {"ulthd", Kind::Toggle, Id::Ulth, 1},
    {"ulthdash", Kind::Toggle, Id::Ulth, 1},
    {"ulthdashd", Kind::Toggle, Id::Ulth, 1},
    {"ulthdashdd", Kind::Toggle, Id::Ulth, 1},
    {"ulthldash", Kind::Toggle, Id::Ulth, 1},
    {"ululdbwave", Kind::Toggle, Id::Ulwave, 1},
    {"ulw", Kind::Toggle, Id::Ulw, 1},
    {"ulwave", Kind::Toggle, Id::Ulwave, 1},
    {"up", Kind::Value, Id::Up, 6},
    {"upr", Kind::Destination, Id::SkipDest, 0},
    {"userprops", Kind::Destination, Id::SkipDest, 0},
    {"v", Kind::Toggle, Id::V, 1},
    {"wbitmap", Kind::Value, Id::Wbitmap, 0},
    {"wmetafile", Kind::Value, Id::Wmetafile, 1},
    {"xe", Kind::Destination, Id::SkipDest, 0},
    {"zwj", Kind::Symbol, Id::Zwj, 0},
    {"zwnj", Kind::Symbol, Id::Zwnj, 0},
};

const Word* findWord(std::string_view name)
{
    static const bool sorted = std::is_sorted(std::begin(kWords), std::end(kWords),
                                              [](const Word& a, const Word& b) { return a.name < b.name; });
    Q_ASSERT(sorted);
    (void)sorted;
    auto it = std::lower_bound(std::begin(kWords), std::end(kWords), name,
                               [](const Word& w, std::string_view n) { return w.name < n; });
    return (it != std::end(kWords) && it->name == name) ? it : nullptr;
}

enum class Dest : std::uint8_t { Normal, Skip, FontTable, ColorTable, Pict, Object, Pn };

struct CharState {
    int font = -1;
    int fs = 24;
    bool bold = false;
    bool italic = false;
    bool strike = false;
    bool hidden = false;
    bool caps = false;
    UnderlineKind ul = UnderlineKind::None;
    bool ulAltSpelling = false;  // "\uldbl" rather than "\uldb"
    int cf = 0;
    int highlight = 0;
    int offset = 0;  // half-points, + up, - down
    bool operator==(const CharState&) const = default;
};

struct CharStateHash {
    size_t operator()(const CharState& s) const noexcept
    {
        size_t h = std::hash<int>()(s.font);
        auto mix = [&h](size_t v) { h ^= v + 0x9e3779b97f4a7c15ULL + (h << 6) + (h >> 2); };
        mix(size_t(s.fs));
        mix(size_t(s.bold) | size_t(s.italic) << 1 | size_t(s.strike) << 2 | size_t(s.hidden) << 3 |
            size_t(s.caps) << 4 | size_t(s.ulAltSpelling) << 5 | size_t(s.ul) << 8);
        mix(size_t(s.cf));
        mix(size_t(s.highlight));
        mix(size_t(s.offset));
        return h;
    }
};

struct ParaState {
    int align = 0;  // 0 left, 1 right, 2 centre, 3 justify
    int li = 0;
    int ri = 0;
    int fi = 0;
    bool bullet = false;
};

struct Group {
    Dest dest = Dest::Normal;
    CharState ch;
    ParaState pa;
    int uc = 1;
    qsizetype start = 0;  // offset of the '{' that opened the group
    bool fresh = true;    // nothing but \* read in the group yet
};

struct FontDef {
    QString name;
    int charset = -1;  // none given: the document's code page
    QString kind;
    int pitch = -1;
    int codePage = 0;  // 0: the document's, kSymbolCodePage: symbol font
};

struct PictState {
    QByteArray type;
    int picw = 0, pich = 0, goalw = 0, goalh = 0, scalex = 100, scaley = 100;
    QByteArray data;
    int nibble = -1;
};

class Reader {
public:
    Reader(QStringView src, QTextCursor& cursor, const RtfReadOptions& options)
        : src_(src), cursor_(cursor), opt_(options)
    {
        origBlockFormat_ = cursor_.blockFormat();
        stack_.reserve(64);
        stack_.push_back(Group{});
    }

    void run();

private:
    Group& top() { return stack_.back(); }
    void openGroup(qsizetype at);
    void closeGroup(qsizetype at);
    void controlWord(std::string_view name, bool hasParam, int param);
    void controlSymbol(char16_t c);
    void textChar(char16_t c);
    void hexByte(unsigned char b);
    void binary(qsizetype from, qsizetype n);

    void flushBytes();
    void emitChar(char16_t c);
    void flushText();
    void realizeBreak();
    void endParagraph();
    void applyParagraph(const ParaState& pa);
    void emitObject(const QByteArray& raw, const QImage& image, QSize goalTwips);
    void finishPicture();
    void commitFont();
    void flushFontName();
    int fontCodePage(const FontDef& def) const;
    int codePageOf(int font) const;
    const QTextCharFormat& formatOf(const CharState& s);
    ByteDecoder& decoder(int codePage);

    QStringView src_;
    QTextCursor& cursor_;
    const RtfReadOptions& opt_;
    QTextBlockFormat origBlockFormat_;
    std::vector<Group> stack_;
    int extraDepth_ = 0;  // braces beyond kMaxDepth, counted but not stacked
    bool ignorableNext_ = false;
    int ucSkip_ = 0;
    bool done_ = false;
    // Blanks behind a table of the head are padding, not text: the colour
    // effects close a table they extend with "}  ".
    bool headPadding_ = false;

    int ansiCodePage_ = 1252;
    int deff_ = -1;
    std::unordered_map<int, FontDef> fonts_;
    FontDef curFont_;
    int curFontIndex_ = -1;
    std::string fontNameBytes_;
    QString fontName_;

    std::vector<std::optional<QColor>> colours_;
    int red_ = 0, green_ = 0, blue_ = 0;
    bool colourSet_ = false;

    PictState pict_;

    std::string bytes_;
    QString buf_;
    CharState bufState_;
    bool pendingBreak_ = false;
    bool pendingCellTab_ = false;
    QTextList* list_ = nullptr;
    std::unordered_map<CharState, QTextCharFormat, CharStateHash> formatCache_;
    std::unordered_map<int, std::unique_ptr<ByteDecoder>> decoders_;
};

void Reader::run()
{
    const char16_t* s = reinterpret_cast<const char16_t*>(src_.data());
    const qsizetype n = src_.size();
    qsizetype i = 0;
    // Leading blanks and a byte-order mark are not part of the stream.
    while (i < n && (s[i] == ' ' || s[i] == '\t' || s[i] == '\r' || s[i] == '\n' || s[i] == 0xFEFF))
        ++i;
    while (i < n && !done_) {
        const char16_t c = s[i];
        if (c == '{') {
            flushBytes();
            ucSkip_ = 0;
            openGroup(i);
            ++i;
        } else if (c == '}') {
            flushBytes();
            ucSkip_ = 0;
            closeGroup(i);
            ++i;
        } else if (c == '\\') {
            ++i;
            if (i >= n)
                break;
            const char16_t d = s[i];
            if ((d >= 'a' && d <= 'z') || (d >= 'A' && d <= 'Z')) {
                char name[kMaxKeywordLength + 1];
                int len = 0;
                while (i < n && ((s[i] >= 'a' && s[i] <= 'z') || (s[i] >= 'A' && s[i] <= 'Z'))) {
                    if (len < kMaxKeywordLength)
                        name[len++] = char(s[i]);
                    ++i;
                }
                bool hasParam = false;
                bool negative = false;
                long long value = 0;
                if (i < n && s[i] == '-' && i + 1 < n && s[i + 1] >= '0' && s[i + 1] <= '9') {
                    negative = true;
                    ++i;
                }
                int digits = 0;
                while (i < n && s[i] >= '0' && s[i] <= '9') {
                    if (digits < kMaxParameterDigits)
                        value = value * 10 + (s[i] - '0');
                    ++digits;
                    hasParam = true;
                    ++i;
                }
                value = std::clamp(negative ? -value : value, -2147483647LL, 2147483647LL);
                if (i < n && s[i] == ' ')
                    ++i;
                const std::string_view word(name, len);
                if (word == "bin" && hasParam) {
                    flushBytes();
                    const qsizetype count = std::clamp<qsizetype>(value, 0, n - i);
                    if (ucSkip_ > 0)
                        --ucSkip_;
                    else
                        binary(i, count);
                    i += count;
                } else {
                    controlWord(word, hasParam, int(value));
                }
            } else if (d == '\'') {
                ++i;
                auto hex = [](char16_t h) -> int {
                    if (h >= '0' && h <= '9') return h - '0';
                    if (h >= 'a' && h <= 'f') return h - 'a' + 10;
                    if (h >= 'A' && h <= 'F') return h - 'A' + 10;
                    return -1;
                };
                const int hi = i < n ? hex(s[i]) : -1;
                const int lo = i + 1 < n ? hex(s[i + 1]) : -1;
                if (hi >= 0 && lo >= 0) {
                    i += 2;
                    hexByte(static_cast<unsigned char>(hi * 16 + lo));
                }
            } else {
                ++i;
                controlSymbol(d);
            }
        } else if (c == '\r' || c == '\n') {
            ++i;
        } else {
            textChar(c);
            ++i;
        }
    }
    flushBytes();
    flushText();
    if (pendingCellTab_)
        pendingCellTab_ = false;
    if (opt_.wholeDocument) {
        if (!pendingBreak_) {
            applyParagraph(top().pa);
            if (cursor_.block().length() == 1)
                cursor_.setBlockCharFormat(formatOf(top().ch));
        }
    } else if (pendingBreak_) {
        realizeBreak();
    }
}

void Reader::openGroup(qsizetype at)
{
    if (int(stack_.size()) >= kMaxDepth) {
        ++extraDepth_;
        return;
    }
    Group g = stack_.back();
    g.start = at;
    g.fresh = true;
    stack_.push_back(g);
    ignorableNext_ = false;
}

void Reader::closeGroup(qsizetype at)
{
    ignorableNext_ = false;
    if (extraDepth_ > 0) {
        --extraDepth_;
        return;
    }
    if (stack_.size() <= 1)
        return;  // a stray brace before the document's own group
    const Group closing = stack_.back();
    stack_.pop_back();
    // The closing brace of the document: what follows is not RTF.
    if (stack_.size() == 1)
        done_ = true;
    const Dest parent = stack_.back().dest;
    if (closing.dest == Dest::FontTable && (!fontNameBytes_.empty() || !fontName_.isEmpty()))
        commitFont();
    headPadding_ = (closing.dest == Dest::FontTable || closing.dest == Dest::ColorTable) && stack_.size() == 2;
    if (closing.dest == Dest::Pict && parent != Dest::Pict) {
        const QByteArray raw = src_.sliced(closing.start, at - closing.start + 1).toLatin1();
        if (parent == Dest::Normal) {
            finishPicture();
            emitObject(raw, decodePicture(pict_.type, pict_.data), QSize(pict_.goalw, pict_.goalh));
        }
        pict_ = PictState{};
    } else if (closing.dest == Dest::Object && parent != Dest::Object && parent == Dest::Normal) {
        const QByteArray raw = src_.sliced(closing.start, at - closing.start + 1).toLatin1();
        emitObject(raw, QImage(), QSize());
    }
    if (!(closing.ch == stack_.back().ch) || closing.dest != parent)
        flushText();
}

void Reader::controlWord(std::string_view name, bool hasParam, int param)
{
    // Text gathered so far belongs to the state before this word.
    flushBytes();
    headPadding_ = false;
    Group& g = top();
    const Word* w = findWord(name);
    const bool ignorable = ignorableNext_;
    ignorableNext_ = false;
    const bool fresh = g.fresh;
    g.fresh = false;
    if (ucSkip_ > 0) {
        --ucSkip_;
        return;
    }
    // The document's own group is never turned into another destination:
    // a stray destination word there would swallow the whole document.
    const bool documentGroup = stack_.size() <= 2;
    if (!w) {
        // An unknown destination marked \* is skipped with all it holds.
        if (ignorable && !documentGroup)
            g.dest = Dest::Skip;
        return;
    }
    if (g.dest == Dest::Skip || g.dest == Dest::Object)
        return;
    if (w->kind == Kind::Destination && documentGroup && w->id != Id::NormalDest && w->id != Id::Field)
        return;
    // A picture or an object is kept as its whole group, so only a word that
    // opens its own group can start one.
    if ((w->id == Id::Pict || w->id == Id::Object) && !fresh)
        return;
    const int value = hasParam ? param : w->defaultParam;
    const bool on = w->kind == Kind::Toggle ? (!hasParam || param != 0) : true;
    CharState& ch = g.ch;
    ParaState& pa = g.pa;

    if (g.dest == Dest::FontTable) {
        switch (w->id) {
        case Id::F:
            if (!fontNameBytes_.empty() || !fontName_.isEmpty())
                commitFont();
            curFontIndex_ = value;
            curFont_ = FontDef{};
            return;
        case Id::Fcharset: curFont_.charset = value; return;
        case Id::Fprq: curFont_.pitch = value; return;
        case Id::Cpg: curFont_.codePage = value; return;
        case Id::FontFamily: curFont_.kind = QString::fromLatin1(name.data(), qsizetype(name.size())); return;
        case Id::Uc: g.uc = std::clamp(value, 0, 16); return;
        case Id::U:
            // Names beyond the font's code page come as \u, between bytes that do not.
            if (hasParam) {
                flushFontName();
                const int v = param < 0 ? param + 65536 : param;
                if (v > 0 && v <= 0xFFFF)
                    fontName_.append(QChar(char16_t(v)));
                ucSkip_ = g.uc;
            }
            return;
        default:
            if (w->kind == Kind::Destination)
                g.dest = Dest::Skip;
            return;
        }
    }
    if (g.dest == Dest::ColorTable) {
        switch (w->id) {
        case Id::Red: red_ = std::clamp(value, 0, 255); colourSet_ = true; return;
        case Id::Green: green_ = std::clamp(value, 0, 255); colourSet_ = true; return;
        case Id::Blue: blue_ = std::clamp(value, 0, 255); colourSet_ = true; return;
        default:
            if (w->kind == Kind::Destination)
                g.dest = Dest::Skip;
            return;
        }
    }
    if (g.dest == Dest::Pict) {
        switch (w->id) {
        case Id::Pngblip: pict_.type = "png"; return;
        case Id::Jpegblip: pict_.type = "jpeg"; return;
        case Id::Dibitmap: pict_.type = "dib"; return;
        case Id::Wbitmap: pict_.type = "ddb"; return;
        case Id::Wmetafile: pict_.type = "wmf"; return;
        case Id::Emfblip: pict_.type = "emf"; return;
        case Id::Macpict: pict_.type = "pict"; return;
        case Id::Picw: pict_.picw = value; return;
        case Id::Pich: pict_.pich = value; return;
        case Id::Picwgoal: pict_.goalw = value; return;
        case Id::Pichgoal: pict_.goalh = value; return;
        case Id::Picscalex: pict_.scalex = value; return;
        case Id::Picscaley: pict_.scaley = value; return;
        default:
            if (w->kind == Kind::Destination)
                g.dest = Dest::Skip;
            return;
        }
    }
    if (g.dest == Dest::Pn) {
        if (w->id == Id::PnBullet) {
            // The \pn group describes the paragraph around it.
            for (auto it = stack_.rbegin(); it != stack_.rend(); ++it) {
                it->pa.bullet = true;
                if (it->dest != Dest::Pn)
                    break;
            }
        } else if (w->kind == Kind::Destination) {
            g.dest = Dest::Skip;
        }
        return;
    }

    switch (w->id) {
    case Id::Fonttbl:
        g.dest = Dest::FontTable;
        curFontIndex_ = -1;
        curFont_ = FontDef{};
        fontNameBytes_.clear();
        fontName_.clear();
        break;
    case Id::Colortbl: g.dest = Dest::ColorTable; red_ = green_ = blue_ = 0; colourSet_ = false; break;
    case Id::Pict: g.dest = Dest::Pict; pict_ = PictState{}; break;
    case Id::Object: flushText(); g.dest = Dest::Object; break;
    case Id::Pn: g.dest = Dest::Pn; break;
    case Id::SkipDest: g.dest = Dest::Skip; break;
    case Id::NormalDest:
    case Id::Field: break;
    case Id::Ansi: ansiCodePage_ = 1252; break;
    case Id::Mac: ansiCodePage_ = 10000; break;
    case Id::Pc: ansiCodePage_ = 437; break;
    case Id::Pca: ansiCodePage_ = 850; break;
    case Id::Ansicpg: ansiCodePage_ = value; break;
    case Id::Deff: deff_ = value; break;
    case Id::Uc: g.uc = std::clamp(value, 0, 16); break;
    case Id::U: {
        int v = param;
        if (v < 0 && v >= -32768)
            v += 65536;
        if (hasParam && v >= 0 && v <= 0xFFFF)
            emitChar(char16_t(v));
        ucSkip_ = g.uc;
        break;
    }
    case Id::F: ch.font = value; break;
    case Id::Plain: {
        const int font = deff_;
        ch = CharState{};
        ch.font = font;
        break;
    }
    case Id::B: ch.bold = on; break;
    case Id::I: ch.italic = on; break;
    case Id::Strike:
    case Id::Striked: ch.strike = on; break;
    case Id::V: ch.hidden = on; break;
    case Id::Caps: ch.caps = on; break;
    case Id::Ul: ch.ul = on ? UnderlineKind::Single : UnderlineKind::None; ch.ulAltSpelling = false; break;
    case Id::Uld: ch.ul = on ? UnderlineKind::Dotted : UnderlineKind::None; ch.ulAltSpelling = false; break;
    case Id::Uldash: ch.ul = on ? UnderlineKind::Dash : UnderlineKind::None; ch.ulAltSpelling = false; break;
    case Id::Uldashd: ch.ul = on ? UnderlineKind::DashDot : UnderlineKind::None; ch.ulAltSpelling = false; break;
    case Id::Uldashdd: ch.ul = on ? UnderlineKind::DashDotDot : UnderlineKind::None; ch.ulAltSpelling = false; break;
    case Id::Uldb: ch.ul = on ? UnderlineKind::Double : UnderlineKind::None; ch.ulAltSpelling = false; break;
    case Id::Uldbl: ch.ul = on ? UnderlineKind::Double : UnderlineKind::None; ch.ulAltSpelling = on; break;
    case Id::Ulth: ch.ul = on ? UnderlineKind::Thick : UnderlineKind::None; ch.ulAltSpelling = false; break;
    case Id::Ulw: ch.ul = on ? UnderlineKind::Word : UnderlineKind::None; ch.ulAltSpelling = false; break;
    case Id::Ulwave: ch.ul = on ? UnderlineKind::Wave : UnderlineKind::None; ch.ulAltSpelling = false; break;
    case Id::Ulhair: ch.ul = on ? UnderlineKind::Hair : UnderlineKind::None; ch.ulAltSpelling = false; break;
    case Id::Ulnone: ch.ul = UnderlineKind::None; ch.ulAltSpelling = false; break;
    case Id::Up: ch.offset = std::clamp(value, -32767, 32767); break;
    case Id::Dn: ch.offset = -std::clamp(value, -32767, 32767); break;
    // "\super0" and "\sub0" switch off, as the toggles do.
    case Id::Super: ch.offset = on ? 6 : 0; break;
    case Id::Sub: ch.offset = on ? -6 : 0; break;
    case Id::Nosupersub: ch.offset = 0; break;
    case Id::Fs: ch.fs = std::clamp(value, 1, 3276); break;
    case Id::Cf: ch.cf = std::max(0, value); break;
    case Id::Highlight:
    case Id::Cb: ch.highlight = std::max(0, value); break;
    case Id::Pard: pa = ParaState{}; break;
    case Id::Ql: pa.align = 0; break;
    case Id::Qr: pa.align = 1; break;
    case Id::Qc: pa.align = 2; break;
    case Id::Qj: pa.align = 3; break;
    case Id::Li: pa.li = std::clamp(value, -31680, 31680); break;
    case Id::Ri: pa.ri = std::clamp(value, -31680, 31680); break;
    case Id::Fi: pa.fi = std::clamp(value, -31680, 31680); break;
    case Id::Ls: pa.bullet = value > 0; break;
    case Id::Par: endParagraph(); break;
    case Id::Page: endParagraph(); break;
    case Id::Row: pendingCellTab_ = false; endParagraph(); break;
    case Id::Cell: pendingCellTab_ = true; break;
    case Id::Line: emitChar(QChar::LineSeparator); break;
    case Id::Tab: emitChar('\t'); break;
    case Id::Emdash: emitChar(0x2014); break;
    case Id::Endash: emitChar(0x2013); break;
    case Id::Bullet: emitChar(0x2022); break;
    case Id::Lquote: emitChar(0x2018); break;
    case Id::Rquote: emitChar(0x2019); break;
    case Id::Ldblquote: emitChar(0x201C); break;
    case Id::Rdblquote: emitChar(0x201D); break;
    case Id::Emspace: emitChar(0x2003); break;
    case Id::Enspace: emitChar(0x2002); break;
    case Id::Qmspace: emitChar(0x2005); break;
    case Id::Zwj: emitChar(0x200D); break;
    case Id::Zwnj: emitChar(0x200C); break;
    case Id::Ltrmark: emitChar(0x200E); break;
    case Id::Rtlmark: emitChar(0x200F); break;
    default: break;
    }
}

void Reader::controlSymbol(char16_t c)
{
    if (c == '*') {
        ignorableNext_ = true;
        return;
    }
    flushBytes();
    if (ucSkip_ > 0) {
        --ucSkip_;
        return;
    }
    switch (c) {
    case '\\':
    case '{':
    case '}': textChar(c); break;
    case '~': emitChar(0x00A0); break;
    case '-': emitChar(0x00AD); break;
    case '_': emitChar(0x2011); break;
    case '\r':
    case '\n':
        if (top().dest == Dest::Normal)
            endParagraph();
        break;
    case '\t': emitChar('\t'); break;
    default: break;
    }
}

void Reader::textChar(char16_t c)
{
    ignorableNext_ = false;
    top().fresh = false;
    if (ucSkip_ > 0) {
        --ucSkip_;
        return;
    }
    Group& g = top();
    if (headPadding_ && c == ' ')
        return;
    headPadding_ = false;
    switch (g.dest) {
    case Dest::Normal:
        if (c == '\t') {
            flushBytes();
            emitChar('\t');
        } else if (c > 0xFF) {
            flushBytes();
            emitChar(c);
        } else {
            bytes_.push_back(char(c));
        }
        break;
    case Dest::FontTable:
        if (c == ';')
            commitFont();
        else if (c > 0xFF)
            flushFontName(), fontName_.append(QChar(c));
        else
            fontNameBytes_.push_back(char(c));
        break;
    case Dest::ColorTable:
        if (c == ';') {
            if (colourSet_ || !colours_.empty())
                colours_.push_back(colourSet_ ? std::optional<QColor>(QColor(red_, green_, blue_)) : std::nullopt);
            else
                colours_.push_back(std::nullopt);  // the automatic colour, entry 0
            red_ = green_ = blue_ = 0;
            colourSet_ = false;
        }
        break;
    case Dest::Pict: {
        int v = -1;
        if (c >= '0' && c <= '9') v = c - '0';
        else if (c >= 'a' && c <= 'f') v = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F') v = c - 'A' + 10;
        if (v < 0)
            break;
        if (pict_.nibble < 0) {
            pict_.nibble = v;
        } else {
            pict_.data.append(char(pict_.nibble * 16 + v));
            pict_.nibble = -1;
        }
        break;
    }
    default:
        break;
    }
}

void Reader::hexByte(unsigned char b)
{
    ignorableNext_ = false;
    top().fresh = false;
    if (ucSkip_ > 0) {
        --ucSkip_;
        return;
    }
    Group& g = top();
    if (g.dest == Dest::Normal)
        bytes_.push_back(char(b));
    else if (g.dest == Dest::FontTable)
        fontNameBytes_.push_back(char(b));
}

void Reader::binary(qsizetype from, qsizetype n)
{
    if (top().dest == Dest::Pict)
        pict_.data.append(src_.sliced(from, n).toLatin1());
}

int Reader::codePageOf(int font) const
{
    auto it = fonts_.find(font);
    if (it == fonts_.end())
        return ansiCodePage_;
    const FontDef& f = it->second;
    if (f.codePage == kSymbolCodePage)
        return kSymbolCodePage;
    if (f.codePage > 0)
        return f.codePage;
    return ansiCodePage_;
}

ByteDecoder& Reader::decoder(int codePage)
{
    auto& slot = decoders_[codePage];
    if (!slot)
        slot = std::make_unique<ByteDecoder>(codePage);
    return *slot;
}

void Reader::flushBytes()
{
    if (bytes_.empty())
        return;
    const int font = top().ch.font >= 0 ? top().ch.font : deff_;
    const int cp = codePageOf(font);
    QString decoded;
    if (cp == kSymbolCodePage) {
        // Symbol fonts keep their byte values in the private use area, so the
        // writer can give the same bytes back in that font.
        decoded.reserve(qsizetype(bytes_.size()));
        for (char b : bytes_) {
            const auto u = static_cast<unsigned char>(b);
            decoded.append(QChar(u < 0x20 ? char16_t(u) : char16_t(0xF000 + u)));
        }
    } else {
        decoder(cp).decode(bytes_.data(), qsizetype(bytes_.size()), decoded);
    }
    bytes_.clear();
    for (QChar c : std::as_const(decoded))
        emitChar(c.unicode());
}

void Reader::emitChar(char16_t c)
{
    if (top().dest != Dest::Normal)
        return;
    // Characters that QTextDocument would turn into structure are not text.
    if (c == '\r' || c == '\n' || c == 0x2029 || c == 0xFDD0 || c == 0xFDD1 || c == 0xFFFC || c == 0)
        return;
    if (pendingBreak_) {
        flushText();
        realizeBreak();
    }
    if (pendingCellTab_) {
        pendingCellTab_ = false;
        emitChar('\t');
    }
    const CharState& ch = top().ch;
    if (!buf_.isEmpty() && !(ch == bufState_))
        flushText();
    if (buf_.isEmpty())
        bufState_ = ch;
    buf_.append(QChar(c));
}

void Reader::flushText()
{
    if (buf_.isEmpty())
        return;
    cursor_.insertText(buf_, formatOf(bufState_));
    buf_.clear();
}

void Reader::realizeBreak()
{
    pendingBreak_ = false;
    cursor_.insertBlock(origBlockFormat_, formatOf(top().ch));
}

void Reader::endParagraph()
{
    flushBytes();
    if (top().dest != Dest::Normal)
        return;
    flushText();
    if (pendingBreak_)
        realizeBreak();
    pendingCellTab_ = false;
    applyParagraph(top().pa);
    if (cursor_.block().length() == 1)
        cursor_.setBlockCharFormat(formatOf(top().ch));
    pendingBreak_ = true;
}

void Reader::applyParagraph(const ParaState& pa)
{
    QTextBlockFormat bf;
    setAlignment(bf, pa.align);
    setTwips(bf, prop::LeftIndent, pa.li);
    setTwips(bf, prop::RightIndent, pa.ri);
    setTwips(bf, prop::FirstIndent, pa.fi);
    QTextBlock block = cursor_.block();
    if (QTextList* old = block.textList())
        old->remove(block);
    cursor_.setBlockFormat(bf);
    if (pa.bullet) {
        const QTextBlock prev = block.previous();
        if (list_ && prev.isValid() && prev.textList() == list_) {
            list_->add(block);
        } else {
            QTextListFormat lf;
            lf.setStyle(QTextListFormat::ListDisc);
            lf.setIndent(1);
            list_ = cursor_.createList(lf);
        }
    }
}

void Reader::emitObject(const QByteArray& raw, const QImage& image, QSize goalTwips)
{
    if (pendingBreak_) {
        flushText();
        realizeBreak();
    }
    flushText();
    QTextImageFormat f;
    f.merge(formatOf(top().ch));
    setPictureFormat(*cursor_.document(), f, raw, image, goalTwips);
    cursor_.insertImage(f);
}

void Reader::finishPicture()
{
    // Sizes: the goal in twips wins; a bitmap's own size is in pixels and a
    // metafile's in hundredths of a millimetre.
    auto scaled = [](int v, int scale) { return int(qint64(v) * std::clamp(scale, 1, 1000) / 100); };
    if (pict_.goalw <= 0 || pict_.goalh <= 0) {
        const bool metric = pict_.type == "wmf" || pict_.type == "emf" || pict_.type == "pict";
        const auto twips = [metric](int v) {
            return int(std::clamp<qint64>(metric ? qint64(v) * 1440 / 2540 : qint64(v) * 15, 0, 1 << 24));
        };
        pict_.goalw = twips(pict_.picw);
        pict_.goalh = twips(pict_.pich);
    }
    pict_.goalw = std::clamp(scaled(pict_.goalw, pict_.scalex), 0, 31680 * 4);
    pict_.goalh = std::clamp(scaled(pict_.goalh, pict_.scaley), 0, 31680 * 4);
}

int Reader::fontCodePage(const FontDef& def) const
{
    if (def.charset == 2)
        return kSymbolCodePage;
    if (def.codePage > 0)
        return def.codePage;
    if (def.charset >= 0 && def.charset != 1)
        return codePageOfCharset(def.charset);
    return 0;
}

void Reader::flushFontName()
{
    if (fontNameBytes_.empty())
        return;
    const int cp = fontCodePage(curFont_);
    ByteDecoder dec(cp == kSymbolCodePage ? 1252 : (cp > 0 ? cp : ansiCodePage_));
    dec.decode(fontNameBytes_.data(), qsizetype(fontNameBytes_.size()), fontName_);
    fontNameBytes_.clear();
}

void Reader::commitFont()
{
    flushFontName();
    QString name;
    for (QChar c : std::as_const(fontName_))
        if (c.unicode() >= 0x20 && c.unicode() != 0x7F)
            name += c;  // control characters have no place in a font name
    name = name.trimmed();
    fontName_.clear();
    while (name.endsWith(u';'))
        name.chop(1);
    if (curFontIndex_ < 0 || name.isEmpty())
        return;
    FontDef def = curFont_;
    def.codePage = fontCodePage(def);
    def.name = name;
    fonts_[curFontIndex_] = def;
    curFontIndex_ = -1;
    formatCache_.clear();
}

const QTextCharFormat& Reader::formatOf(const CharState& s)
{
    auto it = formatCache_.find(s);
    if (it != formatCache_.end())
        return it->second;
    QTextCharFormat f = opt_.baseFormat;
    const int fontIndex = s.font >= 0 ? s.font : deff_;
    auto font = fonts_.find(fontIndex);
    if (font != fonts_.end() && !font->second.name.isEmpty()) {
        f.setFontFamilies(QStringList{font->second.name});
        f.setProperty(prop::FontCharset, font->second.charset);
        f.setProperty(prop::FontKind, font->second.kind);
        f.setProperty(prop::FontPitch, font->second.pitch);
    }
    f.setFontPointSize(s.fs / 2.0);
    f.setFontWeight(s.bold ? QFont::Bold : QFont::Normal);
    f.setFontItalic(s.italic);
    f.setFontStrikeOut(s.strike);
    setUnderlineFormat(f, s.ul, s.ulAltSpelling ? QStringLiteral("uldbl") : QString());
    if (s.hidden)
        f.setProperty(prop::Hidden, true);
    if (s.caps)
        f.setFontCapitalization(QFont::AllUppercase);
    if (s.offset) {
        f.setProperty(prop::OffsetHalfPoints, s.offset);
        f.setVerticalAlignment(s.offset > 0 ? QTextCharFormat::AlignSuperScript : QTextCharFormat::AlignSubScript);
    }
    if (s.cf > 0 && s.cf < int(colours_.size()) && colours_[s.cf])
        f.setForeground(*colours_[s.cf]);
    else if (s.cf == 0 && !colours_.empty() && colours_[0])
        f.setForeground(*colours_[0]);
    if (s.highlight > 0 && s.highlight < int(colours_.size()) && colours_[s.highlight])
        f.setBackground(*colours_[s.highlight]);
    return formatCache_.emplace(s, f).first->second;
}

}  // namespace

void readRtf(QStringView rtf, QTextCursor& cursor, const RtfReadOptions& options)
{
    Reader reader(rtf, cursor, options);
    reader.run();
}

}  // namespace tornelia
