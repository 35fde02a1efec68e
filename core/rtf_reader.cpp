#include "core/rtf_reader.h"

#include "core/codepage.h"
#include "core/picture.h"
#include "core/rich_text_surface.h"
#include "core/rtf_keywords.h"
#include "core/rtf_lexer.h"
#include "core/rtf_table.h"
#include "core/text_format.h"

#include <QFileInfo>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QTextDocument>
#include <QPointer>
#include <QTextList>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tornelia {
namespace {

using rtf::Id;
using rtf::Keyword;
using rtf::Kind;

// Beyond this the input is treated as garbage, never as a reason to fail.
constexpr int kMaxDepth = 2048;
constexpr int kSymbolCodePage = -2;

// ---------------------------------------------------------------- state

struct CharState {
    int font = -1;  // -1: the document's default
    int fs = 24;
    bool bold = false;
    bool italic = false;
    bool strike = false;
    bool doubleStrike = false;
    bool hidden = false;
    bool caps = false;
    bool smallCaps = false;
    UnderlineKind ul = UnderlineKind::None;
    bool ulAltSpelling = false;  // "\uldbl" rather than "\uldb"
    int cf = 0;
    int highlight = 0;
    int offset = 0;        // half-points, + up, - down
    bool superSub = false; // the offset came from \super or \sub: shrunk text
    bool operator==(const CharState&) const = default;
};

struct CharStateHash {
    size_t operator()(const CharState& s) const noexcept
    {
        size_t h = std::hash<int>()(s.font);
        auto mix = [&h](size_t v) { h ^= v + 0x9e3779b97f4a7c15ULL + (h << 6) + (h >> 2); };
        mix(size_t(s.fs));
        mix(size_t(s.bold) | size_t(s.italic) << 1 | size_t(s.strike) << 2 | size_t(s.hidden) << 3 |
            size_t(s.caps) << 4 | size_t(s.ulAltSpelling) << 5 | size_t(s.doubleStrike) << 6 |
            size_t(s.smallCaps) << 7 | size_t(s.superSub) << 8 | size_t(s.ul) << 9);
        mix(size_t(s.cf));
        mix(size_t(s.highlight));
        mix(size_t(s.offset));
        return h;
    }
};

// A \pn list as the paragraph describes it.
struct PnState {
    enum Type : std::uint8_t { None, Bullet, Numbered } type = None;
    int style = 0;  // 0 decimal, 1 upper roman, 2 lower roman, 3 upper letter, 4 lower letter
    int start = 1;
    int font = -1;
    QString before, after;
    bool operator==(const PnState&) const = default;
};

struct ParaState {
    int align = 0;  // 0 left, 1 right, 2 centre, 3 justify
    int li = 0;
    int ri = 0;
    int fi = 0;
    bool ownIndent = false;  // \li or \fi of its own: the list level's indent gives way
    int ls = 0;    // \ls: an entry of the list override table
    int ilvl = 0;
    PnState pn;
    bool pnFresh = false;  // this paragraph has its own {\*\pn}: a list starts here
    std::vector<TabStop> tabs;
    TabStop nextTab;  // kind and leader words wait for their \tx
    int itap = 0;     // table nesting: 0 body, 1 a table's cell, 2 a table in a cell ...
    bool operator==(const ParaState&) const = default;
};

class Destination;

struct Group {
    Destination* dest = nullptr;  // nullptr: the body, where text is shown
    bool ownsDest = false;        // this group opened dest
    std::uint8_t sub = 0;         // what a destination is reading in this group
    CharState ch;
    ParaState pa;
    int uc = 1;
    int fontMode = -1;    // 0 \loch, 1 \hich, 2 \dbch: which font \af names
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

struct Style {
    CharState ch;
    ParaState pa;
};

struct ListLevel {
    int nfc = 0;
    int start = 1;
    int font = -1;
    QString text;  // \leveltext: placeholders 0..8 stand for the level numbers
    std::optional<int> li, fi;  // the level's indent, for paragraphs without their own
};

struct PictState {
    QByteArray type;
    int picw = 0, pich = 0, goalw = 0, goalh = 0, scalex = 100, scaley = 100;
    QByteArray data;
    int nibble = -1;
};

// A few Wingdings bullets as the characters they look like.
char16_t wingdingsBullet(unsigned char b)
{
    switch (b) {
    case 0x6C: return 0x25CF;
    case 0x6E: return 0x25A0;
    case 0x71: return 0x2751;
    case 0x75: return 0x25C6;
    case 0x76: return 0x2756;
    case 0xA7: return 0x25AA;
    case 0xD8: return 0x27A2;
    case 0xFC: return 0x2713;
    default: return 0;
    }
}

class Reader;

// ---------------------------------------------------------------- destinations

// What a group of the file feeds: the body (no destination), or one of these.
// A destination sees its own words first; what it leaves, the character and
// paragraph words, still set the group's state.
class Destination {
public:
    explicit Destination(Reader& r) : r_(r) {}
    virtual ~Destination() = default;
    // True when the word was the destination's own.
    virtual bool word(const Keyword& w, bool hasParam, int value) = 0;
    // Text bytes and \'hh bytes, in the order they come.
    virtual void text(std::string_view) {}
    // A \uN character.
    virtual void unicode(char32_t) {}
    // A group inside the destination closed.
    virtual void groupClosed(const Group&) {}
    // The destination's own group closed; end is the offset of its '}'.
    virtual void finish(const Group&, qsizetype) {}
    // Shows its text in the body (field results, shape results).
    virtual bool isSkip() const { return false; }

protected:
    Reader& r_;
};

// Swallows a group with everything in it.
class SkipDestination final : public Destination {
public:
    using Destination::Destination;
    bool word(const Keyword&, bool, int) override { return true; }
    bool isSkip() const override { return true; }
};

class Reader {
public:
    Reader(QByteArrayView src, QTextCursor& cursor, const RtfReadOptions& options)
        : src_(src), cursor_(cursor), opt_(options), skip_(*this),
          tables_(cursor, [this](int i) { return i >= 0 && i < int(colours_.size()) ? colours_[size_t(i)] : std::nullopt; })
    {
        origBlockFormat_ = cursor_.blockFormat();
        stack_.reserve(64);
        stack_.push_back(Group{});
    }

    void run();

    // --- what the destinations use
    Group& top() { return stack_.back(); }
    size_t depth() const { return stack_.size(); }
    Group& groupAt(size_t i) { return stack_[i]; }
    void open(std::unique_ptr<Destination> d);
    void skipGroup() { top().dest = &skip_; top().ownsDest = false; }
    // Decodes bytes in a font's code page; symbol fonts keep their bytes.
    void decodeIn(int font, std::string_view bytes, QString& out);
    int ansiCodePage() const { return ansiCodePage_; }
    FontDef* fontAt(int index);
    void setFont(int index, const FontDef& def)
    {
        fonts_[index] = def;
        formatCache_.clear();
        if (opt_.declarations)
            declare(QStringLiteral("font %1 \"%2\" %3 charset %4 cpg %5")
                        .arg(index).arg(def.name, def.kind.isEmpty() ? QStringLiteral("-") : def.kind)
                        .arg(def.charset).arg(def.codePage));
    }
    int fontCodePage(const FontDef& def) const;
    void addColour(std::optional<QColor> c)
    {
        colours_.push_back(c);
        formatCache_.clear();
        if (opt_.declarations)
            declare(QStringLiteral("colour %1 %2").arg(colours_.size() - 1).arg(c ? c->name() : QStringLiteral("auto")));
    }
    bool hasColours() const { return !colours_.empty(); }
    void setStyle(int index, const Style& s)
    {
        styles_[index] = s;
        if (opt_.declarations)
            declareStyle(index, s);
    }
    void addListLevel(int listId, const ListLevel& level)
    {
        lists_[listId].push_back(level);
        if (opt_.declarations)
            declareLevel(listId, level);
    }
    void setOverride(int ls, int listId)
    {
        overrides_[ls] = listId;
        if (opt_.declarations)
            declare(QStringLiteral("override ls %1 list %2").arg(ls).arg(listId));
    }
    void declare(const QString& line)
    {
        if (opt_.declarations)
            opt_.declarations->append(line);
    }
    bool declaring() const { return opt_.declarations != nullptr; }
    void showPicture(const QByteArray& raw, const PictState& pict);
    void showObject(const QByteArray& raw);
    void fieldInstruction(const QString& text);
    QByteArray rawGroup(qsizetype from, qsizetype end) const { return src_.sliced(from, end - from + 1).toByteArray(); }
    bool shapePictureWanted() const;
    void shapePictureShown() { shapePictureShown_ = true; }
    void setShapeName(const QString& name)
    {
        shapeName_ = name;
        declare(QStringLiteral("shape property %1").arg(name));
    }
    const QString& shapeName() const { return shapeName_; }
    bool shapeInValue() const;

private:
    void openGroup(qsizetype at);
    void closeGroup(qsizetype at);
    void controlWord(std::string_view name, bool hasParam, int param);
    void controlSymbol(char c);
    void textBytes(std::string_view bytes);
    void unicodeChar(char32_t c);
    bool stateWord(const Keyword& w, bool hasParam, int value);
    bool bodyWord(const Keyword& w, bool hasParam, int value);

    // --- tables: the rows go to QTextTables through tables_
    bool tableWord(std::string_view name, bool hasParam, int param);
    int contentLevel();
    void tableLevel(int level);
    void tableCell(int level);
    void tableRow(int level);
    std::optional<rtftable::RowDef> scanRow(int level) const;

    // --- the builder: what the body writes into the document
    void flushBytes();
    void emitChar(char16_t c);
    void flushText();
    void realizeBreak();
    void endParagraph();
    void applyParagraph(const ParaState& pa);
    void applyList(const ParaState& pa, QTextBlock block, QTextList* old, int oldNumber);
    const ListLevel* listLevelOf(const ParaState& pa) const;
    void emitObject(const QByteArray& raw, const QImage& image, QSize goalTwips);
    int codePageOf(int font) const;
    void declareStyle(int index, const Style& s);
    void declareLevel(int listId, const ListLevel& level);
    int effectiveFont(const CharState& s) const;
    const QTextCharFormat& formatOf(const CharState& s);
    ByteDecoder& decoder(int codePage);

    QByteArrayView src_;
    QTextCursor& cursor_;
    const RtfReadOptions& opt_;
    SkipDestination skip_;
    std::vector<std::unique_ptr<Destination>> live_;
    QTextBlockFormat origBlockFormat_;
    std::vector<Group> stack_;
    int extraDepth_ = 0;  // braces beyond kMaxDepth, counted but not stacked
    bool ignorableNext_ = false;
    // Where the group brace being read stands; -1 between braces.
    qsizetype braceAt_ = -1;
    int ucSkip_ = 0;
    bool done_ = false;
    // Blanks behind a table of the head are padding, not text: the colour
    // effects close a table they extend with "}  ".
    bool headPadding_ = false;

    int ansiCodePage_ = 1252;
    int deff_ = -1;
    int stshfLoch_ = -1;
    std::unordered_map<int, FontDef> fonts_;
    std::vector<std::optional<QColor>> colours_;
    std::unordered_map<int, Style> styles_;
    std::unordered_map<int, std::vector<ListLevel>> lists_;
    std::unordered_map<int, int> overrides_;

    bool shapePictureShown_ = false;
    bool shpPictSeen_ = false;
    // An INCLUDEPICTURE field being read: its instruction, the depth of the
    // field's group, and whether its picture has been shown.
    QString link_;
    size_t linkDepth_ = 0;
    bool linkShown_ = false;
    QString shapeName_;

    std::string bytes_;
    QString buf_;
    CharState bufState_;
    bool pendingBreak_ = false;
    bool pendingCellTab_ = false;
    // Word's lists number on across other paragraphs: one QTextList per
    // list and level.
    std::map<std::pair<int, int>, QPointer<QTextList>> lsLists_;
    std::unordered_map<CharState, QTextCharFormat, CharStateHash> formatCache_;
    std::unordered_map<int, std::unique_ptr<ByteDecoder>> decoders_;

    rtftable::Builder tables_;
    const RtfLexer* lexer_ = nullptr;
    // After \trowd or a \cell, text goes to the row until its \row, with or
    // without \intbl: some writers leave the word out.
    bool implicitRow_ = false;
};

// {\fonttbl{\f0\fswiss\fcharset0 Arial;}...}
class FontTable final : public Destination {
public:
    using Destination::Destination;
    bool word(const Keyword& w, bool hasParam, int value) override
    {
        switch (w.id) {
        case Id::F:
            if (!bytes_.empty() || !name_.isEmpty())
                commit();
            index_ = value;
            def_ = FontDef{};
            return true;
        case Id::Fcharset: def_.charset = value; return true;
        case Id::Fprq: def_.pitch = value; return true;
        case Id::Cpg: def_.codePage = value; return true;
        case Id::FontFamily: def_.kind = QString::fromLatin1(w.name.data(), qsizetype(w.name.size())); return true;
        case Id::Uc: return false;
        default:
            (void)hasParam;
            if (w.kind == Kind::Destination)
                r_.skipGroup();  // \panose, \falt and the like
            return true;
        }
    }
    void text(std::string_view b) override
    {
        for (char c : b) {
            if (c == ';')
                commit();
            else
                bytes_.push_back(c);
        }
    }
    void unicode(char32_t c) override
    {
        flushName();
        name_.append(QString::fromUcs4(&c, 1));
    }
    void groupClosed(const Group&) override
    {
        if (!bytes_.empty() || !name_.isEmpty())
            commit();
    }
    void finish(const Group& g, qsizetype) override { groupClosed(g); }

private:
    void flushName()
    {
        if (bytes_.empty())
            return;
        const int cp = r_.fontCodePage(def_);
        ByteDecoder dec(cp == kSymbolCodePage ? 1252 : (cp > 0 ? cp : r_.ansiCodePage()));
        dec.decode(bytes_.data(), qsizetype(bytes_.size()), name_);
        bytes_.clear();
    }
    void commit()
    {
        flushName();
        QString name;
        for (QChar c : std::as_const(name_))
            if (c.unicode() >= 0x20 && c.unicode() != 0x7F)
                name += c;  // control characters have no place in a font name
        name = name.trimmed();
        name_.clear();
        if (index_ < 0 || name.isEmpty())
            return;
        FontDef def = def_;
        def.codePage = r_.fontCodePage(def);
        def.name = name;
        r_.setFont(index_, def);
        index_ = -1;
    }

    int index_ = -1;
    FontDef def_;
    std::string bytes_;
    QString name_;
};

// {\colortbl;\red255\green0\blue0;}
class ColourTable final : public Destination {
public:
    using Destination::Destination;
    bool word(const Keyword& w, bool, int value) override
    {
        switch (w.id) {
        case Id::Red: red_ = std::clamp(value, 0, 255); set_ = true; return true;
        case Id::Green: green_ = std::clamp(value, 0, 255); set_ = true; return true;
        case Id::Blue: blue_ = std::clamp(value, 0, 255); set_ = true; return true;
        default:
            if (w.kind == Kind::Destination)
                r_.skipGroup();
            return true;
        }
    }
    void text(std::string_view b) override
    {
        for (char c : b) {
            if (c != ';')
                continue;
            // An entry without values is the automatic colour.
            r_.addColour(set_ ? std::optional<QColor>(QColor(red_, green_, blue_)) : std::nullopt);
            red_ = green_ = blue_ = 0;
            set_ = false;
        }
    }

private:
    int red_ = 0, green_ = 0, blue_ = 0;
    bool set_ = false;
};

// {\stylesheet{\s1\b\fs32 heading 1;}...}: each entry's words set the
// group's state, which the ';' keeps as the style.
class Stylesheet final : public Destination {
public:
    using Destination::Destination;
    bool word(const Keyword& w, bool, int value) override
    {
        switch (w.id) {
        case Id::S: index_ = value; return true;
        case Id::Cs: index_ = kCharacterStyles + value; return true;
        case Id::Ds:
        case Id::Ts: index_ = -1; return true;  // section and table styles
        default:
            if (w.kind == Kind::Destination) {
                r_.skipGroup();
                return true;
            }
            return false;
        }
    }
    void text(std::string_view b) override
    {
        if (b.find(';') != std::string_view::npos)
            commit(r_.top());
    }
    void groupClosed(const Group& g) override { commit(g); }
    // An entry without \s is the normal style, 0.
    void entryOpened() { index_ = 0; committed_ = false; }

    static constexpr int kCharacterStyles = 10000;

private:
    void commit(const Group& g)
    {
        if (index_ >= 0 && !committed_)
            r_.setStyle(index_, Style{g.ch, g.pa});
        committed_ = true;
    }

    int index_ = -1;
    bool committed_ = true;
};

// {\*\listtable{\list\listid7{\listlevel\levelnfc0\levelstartat1{\leveltext\'02\'00.;}...}}}
// and {\*\listoverridetable{\listoverride\listid7\ls1}}.
class ListTables final : public Destination {
public:
    enum Sub : std::uint8_t { None, List, Level, LevelText, Ignored, Override };
    using Destination::Destination;
    bool word(const Keyword& w, bool, int value) override
    {
        Group& g = r_.top();
        switch (w.id) {
        case Id::List: g.sub = List; listId_ = 0; levels_.clear(); return true;
        case Id::ListOverride: g.sub = Override; listId_ = 0; return true;
        case Id::ListLevel: g.sub = Level; level_ = ListLevel{}; return true;
        case Id::ListId: listId_ = value; return true;
        case Id::Ls:
            if (g.sub == Override)
                r_.setOverride(value, listId_);
            return true;
        case Id::LevelNfc: level_.nfc = value; return true;
        case Id::LevelStartAt: level_.start = value; return true;
        case Id::LevelText: g.sub = LevelText; textBytes_.clear(); level_.text.clear(); return true;
        case Id::LevelNumbers:
        case Id::ListName: g.sub = Ignored; return true;
        case Id::F: level_.font = value; return false;
        case Id::Li:
            if (g.sub == Level)
                level_.li = std::clamp(value, -31680, 31680);
            return false;
        case Id::Fi:
            if (g.sub == Level)
                level_.fi = std::clamp(value, -31680, 31680);
            return false;
        default:
            if (w.kind == Kind::Destination) {
                r_.skipGroup();
                return true;
            }
            return false;  // \fi, \li and the level's character words
        }
    }
    void text(std::string_view b) override
    {
        if (r_.top().sub == LevelText)
            textBytes_.append(b);
    }
    void unicode(char32_t c) override
    {
        if (r_.top().sub != LevelText)
            return;
        flush();
        level_.text.append(QString::fromUcs4(&c, 1));
    }
    void groupClosed(const Group& g) override
    {
        if (g.sub == LevelText) {
            flush();
            // The first character counts the rest; a ';' ends the text.
            QString t = level_.text;
            if (!t.isEmpty())
                t.remove(0, 1);
            if (t.endsWith(u';'))
                t.chop(1);
            level_.text = t;
        } else if (g.sub == Level && r_.top().sub != Level) {
            // The level's font may come after its text: map symbol bullets now.
            const FontDef* f = r_.fontAt(level_.font);
            const bool symbol = f && baseFontName(f->name).compare(QLatin1String("Symbol"), Qt::CaseInsensitive) == 0;
            for (QChar& c : level_.text) {
                const char16_t u = c.unicode();
                if (u < 0xF020 || u > 0xF0FF)
                    continue;
                const char16_t mapped = symbol ? symbolFontChar(u) : wingdingsBullet(static_cast<unsigned char>(u - 0xF000));
                c = QChar(mapped ? mapped : char16_t(0x2022));
            }
            levels_.push_back(level_);
        } else if (g.sub == List && r_.top().sub != List) {
            // \listid comes after the levels.
            for (const ListLevel& level : levels_)
                r_.addListLevel(listId_, level);
            levels_.clear();
        }
    }

private:
    void flush()
    {
        if (textBytes_.empty())
            return;
        r_.decodeIn(level_.font, textBytes_, level_.text);
        textBytes_.clear();
    }

    int listId_ = 0;
    std::vector<ListLevel> levels_;
    ListLevel level_;
    std::string textBytes_;
};

// {\*\pn\pnlvlbody\pndec\pnstart1{\pntxta .}}: the paragraph's list.
class PnDestination final : public Destination {
public:
    enum Sub : std::uint8_t { None, Before, After };
    using Destination::Destination;
    bool word(const Keyword& w, bool, int value) override
    {
        switch (w.id) {
        case Id::PnBullet: pn_.type = PnState::Bullet; return true;
        case Id::PnBody: pn_.type = PnState::Numbered; return true;
        case Id::PnLevel: pn_.type = PnState::Numbered; return true;
        case Id::PnCont: pn_.type = PnState::None; return true;
        case Id::PnStyle: pn_.style = value; return true;
        case Id::PnStart: pn_.start = value; return true;
        case Id::PnFont: pn_.font = value; return true;
        case Id::PnTextBefore: r_.top().sub = Before; return true;
        case Id::PnTextAfter: r_.top().sub = After; return true;
        default:
            if (w.kind == Kind::Destination) {
                r_.skipGroup();
                return true;
            }
            return w.id != Id::F && w.id != Id::Fs;
        }
    }
    void text(std::string_view b) override
    {
        if (r_.top().sub == None)
            return;
        QString decoded;
        r_.decodeIn(pn_.font, b, decoded);
        for (QChar& c : decoded) {
            const char16_t u = c.unicode();
            if (u >= 0xF020 && u <= 0xF0FF) {
                const FontDef* f = r_.fontAt(pn_.font);
                const bool symbol = f && baseFontName(f->name).compare(QLatin1String("Symbol"), Qt::CaseInsensitive) == 0;
                const char16_t mapped = symbol ? symbolFontChar(u) : wingdingsBullet(static_cast<unsigned char>(u - 0xF000));
                c = QChar(mapped ? mapped : char16_t(0x2022));
            }
        }
        (r_.top().sub == Before ? pn_.before : pn_.after) += decoded;
    }
    void unicode(char32_t c) override
    {
        if (r_.top().sub != None)
            (r_.top().sub == Before ? pn_.before : pn_.after) += QString::fromUcs4(&c, 1);
    }
    void finish(const Group&, qsizetype) override
    {
        // The paragraph words of the group around {\*\pn} take the list.
        if (r_.declaring())
            r_.declare(QStringLiteral("pn %1 style %2 start %3 font %4 before \"%5\" after \"%6\"")
                           .arg(pn_.type == PnState::Bullet ? "bullet" : pn_.type == PnState::Numbered ? "numbered" : "none")
                           .arg(pn_.style).arg(pn_.start).arg(pn_.font).arg(pn_.before, pn_.after));
        r_.top().pa.pn = pn_;
        r_.top().pa.pnFresh = true;
    }

private:
    PnState pn_;
};

// {\pict\pngblip\picw..\pich..<hex>}
class Picture final : public Destination {
public:
    Picture(Reader& r, bool show) : Destination(r), show_(show) {}
    bool word(const Keyword& w, bool, int value) override
    {
        switch (w.id) {
        case Id::Pngblip: p_.type = "png"; return true;
        case Id::Jpegblip: p_.type = "jpeg"; return true;
        case Id::Dibitmap: p_.type = "dib"; return true;
        case Id::Wbitmap: p_.type = "ddb"; return true;
        case Id::Wmetafile: p_.type = "wmf"; return true;
        case Id::Emfblip: p_.type = "emf"; return true;
        case Id::Macpict: p_.type = "pict"; return true;
        case Id::Picw: p_.picw = value; return true;
        case Id::Pich: p_.pich = value; return true;
        case Id::Picwgoal: p_.goalw = value; return true;
        case Id::Pichgoal: p_.goalh = value; return true;
        case Id::Picscalex: p_.scalex = value; return true;
        case Id::Picscaley: p_.scaley = value; return true;
        default:
            if (w.kind == Kind::Destination)
                r_.skipGroup();
            return true;
        }
    }
    void text(std::string_view b) override
    {
        for (char c : b) {
            int v = -1;
            if (c >= '0' && c <= '9') v = c - '0';
            else if (c >= 'a' && c <= 'f') v = c - 'a' + 10;
            else if (c >= 'A' && c <= 'F') v = c - 'A' + 10;
            if (v < 0)
                continue;
            if (p_.nibble < 0) {
                p_.nibble = v;
            } else {
                p_.data.append(char(p_.nibble * 16 + v));
                p_.nibble = -1;
            }
        }
    }
    void binary(std::string_view b) { p_.data.append(b.data(), qsizetype(b.size())); }
    void finish(const Group& g, qsizetype end) override
    {
        if (show_)
            r_.showPicture(r_.rawGroup(g.start, end), p_);
    }

private:
    bool show_;
    PictState p_;
};

// {\object ...}: kept whole, shown as its place.
class Object final : public Destination {
public:
    using Destination::Destination;
    bool word(const Keyword&, bool, int) override { return true; }
    void finish(const Group& g, qsizetype end) override { r_.showObject(r_.rawGroup(g.start, end)); }
};

// {\*\fldinst ...}: a field's instruction matters only when it links a
// picture; every other field shows its result.
class FieldInstruction final : public Destination {
public:
    using Destination::Destination;
    bool word(const Keyword& w, bool, int) override
    {
        if (w.kind == Kind::Destination)
            r_.skipGroup();
        return true;
    }
    void text(std::string_view b) override { text_ += QString::fromLatin1(b.data(), qsizetype(b.size())); }
    void unicode(char32_t c) override { text_ += QString::fromUcs4(&c, 1); }
    void finish(const Group&, qsizetype) override { r_.fieldInstruction(text_); }

private:
    QString text_;
};

// {\*\shpinst ...{\sp{\sn pib}{\sv{\pict...}}}}: a shape's properties; the
// picture of a picture shape is the one to show.
class ShapeInstructions final : public Destination {
public:
    enum Sub : std::uint8_t { None, Name, Value };
    using Destination::Destination;
    bool word(const Keyword& w, bool, int) override
    {
        switch (w.id) {
        case Id::ShapeProperty: return true;
        case Id::ShapeName: r_.top().sub = Name; name_.clear(); return true;
        case Id::ShapeValue: r_.top().sub = Value; return true;
        case Id::Pict: return false;  // the reader opens it when the shape wants it
        default:
            if (w.kind == Kind::Destination)
                r_.skipGroup();
            return true;
        }
    }
    void text(std::string_view b) override
    {
        if (r_.top().sub == Name)
            name_.append(b);
    }
    void groupClosed(const Group& g) override
    {
        if (g.sub == Name && r_.top().sub != Name)
            r_.setShapeName(QString::fromLatin1(name_.data(), qsizetype(name_.size())).trimmed());
    }

private:
    std::string name_;
};

// {\*\ud ...} inside {\upr ...}, and {\upr ...} itself: only the font
// table matters; the rest repeats the document in another form.
class UserProperties final : public Destination {
public:
    using Destination::Destination;
    bool word(const Keyword& w, bool, int) override
    {
        if (w.id == Id::Fonttbl) {
            r_.open(std::make_unique<FontTable>(r_));
            return true;
        }
        if (w.id == Id::Ud)
            return true;
        if (w.kind == Kind::Destination)
            r_.skipGroup();
        return w.kind == Kind::Destination;
    }
};

// ---------------------------------------------------------------- reader

void Reader::open(std::unique_ptr<Destination> d)
{
    Group& g = top();
    g.dest = d.get();
    g.ownsDest = true;
    g.sub = 0;
    live_.push_back(std::move(d));
}

FontDef* Reader::fontAt(int index)
{
    auto it = fonts_.find(index);
    return it == fonts_.end() ? nullptr : &it->second;
}

bool Reader::shapePictureWanted() const
{
    const Group& g = stack_.back();
    return g.dest && dynamic_cast<ShapeInstructions*>(g.dest) && g.sub == ShapeInstructions::Value &&
           shapeName_.compare(QLatin1String("pib"), Qt::CaseInsensitive) == 0;
}

void Reader::run()
{
    RtfLexer lexer(src_);
    lexer_ = &lexer;
    for (RtfToken t = lexer.next(); t.type != RtfToken::End && !done_; t = lexer.next()) {
        switch (t.type) {
        case RtfToken::GroupOpen:
            // The text the brace ends is read before the brace is: a row
            // it opens is looked for from the brace, so the group is seen
            // whole.
            braceAt_ = t.offset;
            flushBytes();
            braceAt_ = -1;
            ucSkip_ = 0;
            openGroup(t.offset);
            break;
        case RtfToken::GroupClose:
            flushBytes();
            ucSkip_ = 0;
            closeGroup(t.offset);
            break;
        case RtfToken::Word: controlWord(t.word, t.hasParam, t.param); break;
        case RtfToken::Symbol: controlSymbol(char(t.byte)); break;
        case RtfToken::HexByte: {
            const char b = char(t.byte);
            textBytes(std::string_view(&b, 1));
            break;
        }
        case RtfToken::Text: textBytes(t.word); break;
        case RtfToken::Binary:
            flushBytes();
            if (ucSkip_ > 0)
                --ucSkip_;
            else if (auto* p = dynamic_cast<Picture*>(top().dest))
                p->binary(t.word);
            break;
        case RtfToken::End: break;
        }
    }
    flushBytes();
    flushText();
    pendingCellTab_ = false;
    if (tables_.depth() > 0) {
        // A file ending inside a table: what was read stays in the table.
        tables_.closeAll();
        pendingBreak_ = false;
    }
    lexer_ = nullptr;
    tables_.uncoverEmptyParagraphs();
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
    g.ownsDest = false;
    stack_.push_back(g);
    ignorableNext_ = false;
    if (stack_[stack_.size() - 2].ownsDest)
        if (auto* s = dynamic_cast<Stylesheet*>(g.dest))
            s->entryOpened();
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
    Destination* parent = stack_.back().dest;
    headPadding_ = closing.ownsDest && stack_.size() == 2 &&
                   (dynamic_cast<FontTable*>(closing.dest) || dynamic_cast<ColourTable*>(closing.dest));
    if (closing.ownsDest) {
        std::unique_ptr<Destination> d = std::move(live_.back());
        live_.pop_back();
        d->finish(closing, at);
    } else if (!link_.isEmpty() && stack_.size() < linkDepth_) {
        // The link's field ends. With no picture for a result, the linked
        // file itself is the picture, when it is there.
        if (!linkShown_) {
            const QString file = linkedPictureFile(link_);
            const QImage image = QFileInfo(file).isFile() ? QImage(file) : QImage();
            if (!image.isNull())
                emitObject(pngPictureGroup(image), image, image.size() * 15);
        }
        link_.clear();
    } else if (closing.dest && !closing.dest->isSkip() && closing.dest == parent) {
        closing.dest->groupClosed(closing);
    }
    if (!(closing.ch == stack_.back().ch) || closing.dest != parent)
        flushText();
}

void Reader::unicodeChar(char32_t c)
{
    Group& g = top();
    if (g.dest) {
        if (!g.dest->isSkip())
            g.dest->unicode(c);
        return;
    }
    if (c > 0xFFFF) {
        emitChar(QChar::highSurrogate(c));
        emitChar(QChar::lowSurrogate(c));
    } else {
        emitChar(char16_t(c));
    }
}

void Reader::controlWord(std::string_view name, bool hasParam, int param)
{
    // Text gathered so far belongs to the state before this word.
    flushBytes();
    headPadding_ = false;
    Group& g = top();
    const Keyword* w = rtf::findKeyword(name);
    const bool ignorable = ignorableNext_;
    ignorableNext_ = false;
    const bool fresh = g.fresh;
    g.fresh = false;
    if (w && w->id == Id::U) {
        // A \uN inside the fallback of the one before is a character of its
        // own: TextEdit writes a surrogate pair that way with \uc1, and the
        // two halves side by side make the character.
        ucSkip_ = 0;
        int v = param;
        if (v < 0 && v >= -32768)
            v += 65536;
        if (hasParam && v > 0 && v <= 0xFFFF)
            unicodeChar(char16_t(v));
        ucSkip_ = top().uc;
        return;
    }
    if (ucSkip_ > 0) {
        --ucSkip_;
        return;
    }
    if (!g.dest && tableWord(name, hasParam, param))
        return;
    // The document's own group is never turned into another destination:
    // a stray destination word there would swallow the whole document.
    const bool documentGroup = stack_.size() <= 2;
    if (!w) {
        // An unknown destination marked \* is skipped with all it holds.
        if (ignorable && !documentGroup)
            skipGroup();
        return;
    }
    if (g.dest && g.dest->isSkip())
        return;
    const int value = hasParam ? param : w->defaultParam;
    if (g.dest && dynamic_cast<Object*>(g.dest))
        return;
    // Groups that only pass their text on may stand anywhere.
    const bool passes = w->id == Id::Ud || w->id == Id::Field || w->id == Id::FieldResult || w->id == Id::Shape ||
                        w->id == Id::ShpPict || w->id == Id::ShapeResult;
    if (w->kind == Kind::Destination && documentGroup && !passes)
        return;
    // A picture or an object is kept as its whole group, so only a word that
    // opens its own group can start one.
    if ((w->id == Id::Pict || w->id == Id::Object) && !fresh)
        return;
    if (g.dest) {
        if (g.dest->word(*w, hasParam, value))
            return;
        if (w->id == Id::Pict) {
            if (shapePictureWanted()) {
                shapePictureShown_ = true;
                open(std::make_unique<Picture>(*this, true));
            } else {
                skipGroup();
            }
            return;
        }
        if (w->kind == Kind::Destination) {
            skipGroup();
            return;
        }
        stateWord(*w, hasParam, value);
        return;
    }
    if (!stateWord(*w, hasParam, value))
        bodyWord(*w, hasParam, value);
}

// Words that set the group's character and paragraph state, wherever they stand.
bool Reader::stateWord(const Keyword& w, bool hasParam, int value)
{
    Group& g = top();
    CharState& ch = g.ch;
    ParaState& pa = g.pa;
    const bool on = w.kind == Kind::Toggle ? (!hasParam || value != 0) : true;
    auto tab = [&pa](int twips) {
        TabStop t = pa.nextTab;
        t.twips = std::clamp(twips, 0, 31680);
        pa.tabs.push_back(t);
        pa.nextTab = TabStop{};
    };
    switch (w.id) {
    case Id::Uc: g.uc = std::clamp(value, 0, 16); return true;
    case Id::F: ch.font = value; return true;
    case Id::Plain: ch = CharState{}; return true;
    case Id::B: ch.bold = on; return true;
    case Id::I: ch.italic = on; return true;
    case Id::Strike: ch.strike = on; ch.doubleStrike = false; return true;
    case Id::Striked: ch.strike = on; ch.doubleStrike = on; return true;
    case Id::V: ch.hidden = on; return true;
    case Id::Caps: ch.caps = on; return true;
    case Id::Scaps: ch.smallCaps = on; return true;
    case Id::Ul: ch.ul = on ? UnderlineKind::Single : UnderlineKind::None; ch.ulAltSpelling = false; return true;
    case Id::Uld: ch.ul = on ? UnderlineKind::Dotted : UnderlineKind::None; ch.ulAltSpelling = false; return true;
    case Id::Uldash: ch.ul = on ? UnderlineKind::Dash : UnderlineKind::None; ch.ulAltSpelling = false; return true;
    case Id::Uldashd: ch.ul = on ? UnderlineKind::DashDot : UnderlineKind::None; ch.ulAltSpelling = false; return true;
    case Id::Uldashdd: ch.ul = on ? UnderlineKind::DashDotDot : UnderlineKind::None; ch.ulAltSpelling = false; return true;
    case Id::Uldb: ch.ul = on ? UnderlineKind::Double : UnderlineKind::None; ch.ulAltSpelling = false; return true;
    case Id::Uldbl: ch.ul = on ? UnderlineKind::Double : UnderlineKind::None; ch.ulAltSpelling = on; return true;
    case Id::Ulth: ch.ul = on ? UnderlineKind::Thick : UnderlineKind::None; ch.ulAltSpelling = false; return true;
    case Id::Ulw: ch.ul = on ? UnderlineKind::Word : UnderlineKind::None; ch.ulAltSpelling = false; return true;
    case Id::Ulwave: ch.ul = on ? UnderlineKind::Wave : UnderlineKind::None; ch.ulAltSpelling = false; return true;
    case Id::Ulhair: ch.ul = on ? UnderlineKind::Hair : UnderlineKind::None; ch.ulAltSpelling = false; return true;
    case Id::Ulnone: ch.ul = UnderlineKind::None; ch.ulAltSpelling = false; return true;
    case Id::Up: ch.offset = std::clamp(value, -32767, 32767); ch.superSub = false; return true;
    case Id::Dn: ch.offset = -std::clamp(value, -32767, 32767); ch.superSub = false; return true;
    // "\super0" and "\sub0" switch off, as the toggles do.
    case Id::Super: ch.offset = on ? 6 : 0; ch.superSub = on; return true;
    case Id::Sub: ch.offset = on ? -6 : 0; ch.superSub = on; return true;
    case Id::Nosupersub: ch.offset = 0; ch.superSub = false; return true;
    case Id::Fs: ch.fs = std::clamp(value, 1, 3276); return true;
    case Id::Cf: ch.cf = std::max(0, value); return true;
    case Id::Highlight:
    case Id::Cb: ch.highlight = std::max(0, value); return true;
    case Id::Loch: g.fontMode = 0; return true;
    case Id::Hich: g.fontMode = 1; return true;
    case Id::Dbch: g.fontMode = 2; return true;
    // The associated font of \loch text is the font that Latin text shows in.
    case Id::Af: if (g.fontMode == 0) ch.font = value; return true;
    case Id::Pard: pa = ParaState{}; return true;
    case Id::Ql: pa.align = 0; return true;
    case Id::Qr: pa.align = 1; return true;
    case Id::Qc: pa.align = 2; return true;
    case Id::Qj: pa.align = 3; return true;
    case Id::Li: pa.li = std::clamp(value, -31680, 31680); pa.ownIndent = true; return true;
    case Id::Ri: pa.ri = std::clamp(value, -31680, 31680); return true;
    case Id::Fi: pa.fi = std::clamp(value, -31680, 31680); pa.ownIndent = true; return true;
    case Id::Ls: pa.ls = std::max(0, value); return true;
    case Id::Ilvl: pa.ilvl = std::clamp(value, 0, 8); return true;
    case Id::Tqr: pa.nextTab.kind = 'r'; return true;
    case Id::Tqc: pa.nextTab.kind = 'c'; return true;
    case Id::Tqdec: pa.nextTab.kind = 'd'; return true;
    case Id::Tldot: pa.nextTab.leader = 1; return true;
    case Id::Tlhyph: pa.nextTab.leader = 2; return true;
    case Id::Tlul: pa.nextTab.leader = 3; return true;
    case Id::Tlth: pa.nextTab.leader = 4; return true;
    case Id::Tleq: pa.nextTab.leader = 5; return true;
    case Id::Tx:
        if (pa.tabs.size() < 64)
            tab(value);
        return true;
    case Id::Tb:
        pa.nextTab = TabStop{};  // a bar is drawn, not a stop for text
        return true;
    default: return false;
    }
}

// Words of the body: destinations, the document's settings, characters.
bool Reader::bodyWord(const Keyword& w, bool, int value)
{
    Group& g = top();
    switch (w.id) {
    case Id::Fonttbl: open(std::make_unique<FontTable>(*this)); break;
    case Id::Colortbl: open(std::make_unique<ColourTable>(*this)); break;
    case Id::Stylesheet: open(std::make_unique<Stylesheet>(*this)); break;
    case Id::ListTable:
    case Id::ListOverrideTable: open(std::make_unique<ListTables>(*this)); break;
    case Id::Pict: open(std::make_unique<Picture>(*this, true)); break;
    case Id::Object: flushText(); open(std::make_unique<Object>(*this)); break;
    case Id::Pn: open(std::make_unique<PnDestination>(*this)); break;
    case Id::Upr: open(std::make_unique<UserProperties>(*this)); break;
    case Id::ShapeInst: shapeName_.clear(); open(std::make_unique<ShapeInstructions>(*this)); break;
    case Id::Shape: shapePictureShown_ = false; break;
    // A shape's own picture stands for it; its result is the same for readers
    // that cannot draw shapes.
    case Id::ShapeResult: if (shapePictureShown_) skipGroup(); break;
    case Id::ShpPict: shpPictSeen_ = true; break;
    case Id::NonShpPict:
        if (shpPictSeen_)
            skipGroup();
        shpPictSeen_ = false;
        break;
    case Id::FieldInst: open(std::make_unique<FieldInstruction>(*this)); break;
    case Id::SkipDest:
    case Id::List:
    case Id::ListLevel:
    case Id::LevelText:
    case Id::LevelNumbers:
    case Id::ListName:
    case Id::ListOverride:
    case Id::PnTextAfter:
    case Id::PnTextBefore:
    case Id::ShapeProperty:
    case Id::ShapeName:
    case Id::ShapeValue: skipGroup(); break;
    case Id::Ud:
    case Id::Field:
    case Id::FieldResult: break;
    case Id::Ansi: ansiCodePage_ = 1252; break;
    case Id::Mac: ansiCodePage_ = 10000; break;
    case Id::Pc: ansiCodePage_ = 437; break;
    case Id::Pca: ansiCodePage_ = 850; break;
    case Id::Ansicpg: ansiCodePage_ = value; break;
    case Id::Deff: deff_ = value; formatCache_.clear(); break;
    case Id::StshfLoch: stshfLoch_ = value; formatCache_.clear(); break;
    case Id::S:
    case Id::Cs: {
        auto it = styles_.find(w.id == Id::S ? value : 10000 + value);
        if (it == styles_.end())
            break;
        const Style& s = it->second;
        if (w.id == Id::S) {
            // A paragraph style brings all of its format; the words after
            // it in the file override what they name.
            g.ch = s.ch;
            const int ls = g.pa.ls, ilvl = g.pa.ilvl;
            const PnState pn = g.pa.pn;
            g.pa = s.pa;
            if (!g.pa.ls) g.pa.ls = ls, g.pa.ilvl = ilvl;
            if (g.pa.pn.type == PnState::None) g.pa.pn = pn;
        } else {
            // A character style adds what it names to the text's format.
            const CharState none;
            if (s.ch.font != none.font) g.ch.font = s.ch.font;
            if (s.ch.fs != none.fs) g.ch.fs = s.ch.fs;
            g.ch.bold = g.ch.bold || s.ch.bold;
            g.ch.italic = g.ch.italic || s.ch.italic;
            if (s.ch.cf) g.ch.cf = s.ch.cf;
            if (s.ch.ul != UnderlineKind::None) g.ch.ul = s.ch.ul;
        }
        break;
    }
    case Id::Par: endParagraph(); break;
    case Id::Page: endParagraph(); break;
    case Id::Row: tableRow(w.name == "row" ? 1 : std::max(2, g.pa.itap)); break;
    case Id::Cell: tableCell(w.name == "cell" ? 1 : std::max(2, g.pa.itap)); break;
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
    default: return false;
    }
    return true;
}

void Reader::controlSymbol(char c)
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
    case '}': textBytes(std::string_view(&c, 1)); break;
    case '~': emitChar(0x00A0); break;
    case '-': emitChar(0x00AD); break;
    case '_': emitChar(0x2011); break;
    case '\r':
    case '\n':
        if (!top().dest)
            endParagraph();
        break;
    case '\t': emitChar('\t'); break;
    default: break;
    }
}

void Reader::textBytes(std::string_view b)
{
    ignorableNext_ = false;
    Group& g = top();
    g.fresh = false;
    if (ucSkip_ > 0) {
        const size_t n = std::min<size_t>(size_t(ucSkip_), b.size());
        ucSkip_ -= int(n);
        b.remove_prefix(n);
    }
    if (b.empty())
        return;
    if (g.dest) {
        g.dest->text(b);
        return;
    }
    if (headPadding_) {
        while (!b.empty() && b.front() == ' ')
            b.remove_prefix(1);
        if (b.empty())
            return;
    }
    headPadding_ = false;
    bytes_.append(b);
}

int Reader::effectiveFont(const CharState& s) const
{
    if (s.font >= 0)
        return s.font;
    return stshfLoch_ >= 0 && fonts_.count(stshfLoch_) ? stshfLoch_ : deff_;
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

void Reader::decodeIn(int font, std::string_view bytes, QString& out)
{
    const int cp = codePageOf(font >= 0 ? font : effectiveFont(top().ch));
    if (cp == kSymbolCodePage) {
        // Symbol fonts keep their byte values in the private use area, so the
        // writer can give the same bytes back in that font.
        out.reserve(out.size() + qsizetype(bytes.size()));
        for (char b : bytes) {
            const auto u = static_cast<unsigned char>(b);
            out.append(QChar(u < 0x20 ? char16_t(u) : char16_t(0xF000 + u)));
        }
    } else {
        decoder(cp).decode(bytes.data(), qsizetype(bytes.size()), out);
    }
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

// ---------------------------------------------------------------- builder

void Reader::flushBytes()
{
    if (bytes_.empty())
        return;
    QString decoded;
    decodeIn(-1, bytes_, decoded);
    bytes_.clear();
    for (QChar c : std::as_const(decoded))
        emitChar(c.unicode());
}

void Reader::emitChar(char16_t c)
{
    if (top().dest)
        return;
    // Characters that QTextDocument would turn into structure are not text.
    if (c == '\r' || c == '\n' || c == 0x2029 || c == 0xFDD0 || c == 0xFDD1 || c == 0xFFFC || c == 0)
        return;
    if (tables_.needsMove(contentLevel()))
        tableLevel(contentLevel());
    if (pendingBreak_) {
        flushText();
        realizeBreak();
    }
    if (pendingCellTab_) {
        pendingCellTab_ = false;
        emitChar('\t');
    }
    shpPictSeen_ = false;
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
    if (top().dest)
        return;
    tableLevel(contentLevel());
    flushText();
    if (pendingBreak_)
        realizeBreak();
    pendingCellTab_ = false;
    applyParagraph(top().pa);
    if (cursor_.block().length() == 1) {
        // The first paragraph of a table cell holds the cell's format too.
        if (tables_.depth() > 0)
            cursor_.mergeBlockCharFormat(formatOf(top().ch));
        else
            cursor_.setBlockCharFormat(formatOf(top().ch));
    }
    pendingBreak_ = true;
    top().pa.pnFresh = false;
}

void Reader::applyParagraph(const ParaState& pa)
{
    QTextBlockFormat bf;
    setAlignment(bf, pa.align);
    int li = pa.li;
    int fi = pa.fi;
    if (pa.ls > 0 && !pa.ownIndent) {
        // A list paragraph without an indent of its own stands at its level's.
        if (const ListLevel* level = listLevelOf(pa)) {
            li = level->li.value_or(li);
            fi = level->fi.value_or(fi);
        }
    }
    setTwips(bf, prop::LeftIndent, li);
    setTwips(bf, prop::RightIndent, pa.ri);
    setTwips(bf, prop::FirstIndent, fi);
    setTabStops(bf, pa.tabs);
    QTextBlock block = cursor_.block();
    // The list the paragraph is in already (a paste into a list) may be the
    // one its words describe.
    QPointer<QTextList> old = block.textList();
    const int oldNumber = old ? listStart(old->format()) + old->itemNumber(block) : 0;
    if (old)
        old->remove(block);
    cursor_.setBlockFormat(bf);
    applyList(pa, block, old, oldNumber);
}

QTextListFormat::Style listStyleOf(int nfc)
{
    switch (nfc) {
    case 1: return QTextListFormat::ListUpperRoman;
    case 2: return QTextListFormat::ListLowerRoman;
    case 3: return QTextListFormat::ListUpperAlpha;
    case 4: return QTextListFormat::ListLowerAlpha;
    default: return QTextListFormat::ListDecimal;
    }
}

// A bullet's own glyph and the nearest one Qt draws.
void setBullet(QTextListFormat& lf, const QString& glyph)
{
    const char16_t g = glyph.isEmpty() ? 0x2022 : glyph.front().unicode();
    QTextListFormat::Style style = QTextListFormat::ListDisc;
    if (g == 'o' || g == 0x25E6 || g == 0x25CB)
        style = QTextListFormat::ListCircle;
    else if (g == 0x25AA || g == 0x25A0 || g == 0xA7 || g == 0x25FE)
        style = QTextListFormat::ListSquare;
    lf.setStyle(style);
    lf.setProperty(prop::ListLabel, glyph.isEmpty() ? QStringLiteral("\u2022") : glyph);
}

const ListLevel* Reader::listLevelOf(const ParaState& pa) const
{
    auto ov = overrides_.find(pa.ls);
    auto list = ov == overrides_.end() ? lists_.end() : lists_.find(ov->second);
    if (list == lists_.end() || list->second.empty())
        return nullptr;
    return &list->second[size_t(std::min<int>(pa.ilvl, int(list->second.size()) - 1))];
}

void Reader::applyList(const ParaState& pa, QTextBlock block, QTextList* old, int oldNumber)
{
    QTextListFormat lf;
    lf.setIndent(1);  // the level shows through the paragraph's own indent
    std::optional<std::pair<int, int>> key;
    if (pa.ls > 0) {
        auto ov = overrides_.find(pa.ls);
        auto list = ov == overrides_.end() ? lists_.end() : lists_.find(ov->second);
        if (list == lists_.end() || list->second.empty()) {
            // A list the file does not describe: a plain bullet.
            setBullet(lf, {});
        } else {
            const ListLevel& level = list->second[size_t(std::min<int>(pa.ilvl, int(list->second.size()) - 1))];
            if (level.nfc == 255)
                return;  // a level without a label
            key = std::make_pair(pa.ls, pa.ilvl);
            if (level.nfc == 23) {
                setBullet(lf, level.text.left(1));
            } else {
                // The text around this level's own number; numbers of the
                // levels above are left out, as Qt numbers one level.
                const QString& t = level.text;
                qsizetype own = -1;
                for (qsizetype i = 0; i < t.size(); ++i)
                    if (t[i].unicode() == char16_t(pa.ilvl))
                        own = i;
                QString before = own < 0 ? QString() : t.left(own);
                QString after = own < 0 ? QString() : t.mid(own + 1);
                before.removeIf([](QChar c) { return c.unicode() < 9; });
                after.removeIf([](QChar c) { return c.unicode() < 9; });
                while (before.endsWith(u'.') && before.size() > 0 && own > 0 && t[own - 1].unicode() == u'.')
                    before.chop(1);
                lf.setStyle(listStyleOf(level.nfc));
                lf.setNumberPrefix(before);
                lf.setNumberSuffix(own < 0 ? QStringLiteral(".") : after);
                lf.setProperty(prop::ListStart, std::max(0, level.start));
            }
        }
    } else if (pa.pn.type == PnState::Bullet) {
        // Blanks around the glyph are the writer's spacing; a glyph that is
        // itself a blank stays one rather than becoming the default dot.
        const QString glyph = pa.pn.before.trimmed();
        setBullet(lf, glyph.isEmpty() ? pa.pn.before.left(1) : glyph);
    } else if (pa.pn.type == PnState::Numbered) {
        lf.setStyle(listStyleOf(pa.pn.style));
        lf.setNumberPrefix(pa.pn.before);
        lf.setNumberSuffix(pa.pn.after);
        lf.setProperty(prop::ListStart, std::max(0, pa.pn.start));
    } else {
        return;
    }
    if (key) {
        // A paragraph of a level restarts the levels below it.
        for (auto it = lsLists_.begin(); it != lsLists_.end();)
            it = (it->first.first == key->first && it->first.second > key->second) ? lsLists_.erase(it) : std::next(it);
        QPointer<QTextList>& list = lsLists_[*key];
        if (list && list->format() == lf && list->count() > 0)
            list->add(block);
        else
            list = cursor_.createList(lf);
        return;
    }
    // Paragraphs that inherit the list words go on with the list before; a
    // paragraph with words of its own starts one, unless its start number is
    // the one that list would give next.
    auto sameFormat = [&lf](const QTextList* l) {
        return l && l->format().style() == lf.style() && l->format().numberPrefix() == lf.numberPrefix() &&
               l->format().numberSuffix() == lf.numberSuffix() &&
               l->format().property(prop::ListLabel) == lf.property(prop::ListLabel);
    };
    auto fits = [&pa](int number) { return !pa.pnFresh || pa.pn.type == PnState::Bullet || pa.pn.start == number; };
    const QTextBlock prev = block.previous();
    QTextList* before = prev.isValid() ? prev.textList() : nullptr;
    if (sameFormat(old) && fits(oldNumber))
        old->add(block);
    else if (sameFormat(before) && fits(listStart(before->format()) + before->itemNumber(prev) + 1))
        before->add(block);
    else
        cursor_.createList(lf);
}

void Reader::emitObject(const QByteArray& raw, const QImage& image, QSize goalTwips)
{
    tableLevel(contentLevel());
    if (pendingBreak_) {
        flushText();
        realizeBreak();
    }
    flushText();
    QTextImageFormat f;
    f.merge(formatOf(top().ch));
    QImage shown = image;
    if (!link_.isEmpty() && !linkShown_ && !raw.startsWith("{\\object")) {
        // A linked picture shows the file while it is there, and keeps its
        // field so that it is written back as a link.
        linkShown_ = true;
        f.setProperty(prop::PictureLink, link_);
        const QString file = linkedPictureFile(link_);
        const QImage linked = QFileInfo(file).isFile() ? QImage(file) : QImage();
        if (!linked.isNull())
            shown = linked;
    }
    setPictureFormat(*cursor_.document(), f, raw, shown, goalTwips);
    cursor_.insertImage(f);
}

void Reader::showPicture(const QByteArray& raw, const PictState& p)
{
    if (top().dest && !dynamic_cast<ShapeInstructions*>(top().dest))
        return;
    // Sizes: the goal in twips wins; a bitmap's own size is in pixels and a
    // metafile's in hundredths of a millimetre.
    auto scaled = [](int v, int scale) { return int(qint64(v) * std::clamp(scale, 1, 1000) / 100); };
    int goalw = p.goalw, goalh = p.goalh;
    if (goalw <= 0 || goalh <= 0) {
        const bool metric = p.type == "wmf" || p.type == "emf" || p.type == "pict";
        const auto twips = [metric](int v) {
            return int(std::clamp<qint64>(metric ? qint64(v) * 1440 / 2540 : qint64(v) * 15, 0, 1 << 24));
        };
        goalw = twips(p.picw);
        goalh = twips(p.pich);
    }
    const QImage image = decodePicture(p.type, p.data);
    if ((goalw <= 0 || goalh <= 0) && !image.isNull()) {
        // No size in the file: the picture's own pixels, which the scale
        // still applies to.
        goalw = image.width() * 15;
        goalh = image.height() * 15;
    }
    goalw = std::clamp(scaled(goalw, p.scalex), 0, 31680 * 4);
    goalh = std::clamp(scaled(goalh, p.scaley), 0, 31680 * 4);
    Destination* saved = top().dest;
    top().dest = nullptr;  // a shape's picture goes to the body
    if (declaring())
        declare(QStringLiteral("picture %1 %2 bytes, %3x%4 pixels, %5x%6 twips")
                    .arg(QString::fromLatin1(p.type.isEmpty() ? QByteArray("?") : p.type)).arg(p.data.size())
                    .arg(image.width()).arg(image.height()).arg(goalw).arg(goalh));
    emitObject(raw, image, QSize(goalw, goalh));
    top().dest = saved;
}

void Reader::declareStyle(int index, const Style& s)
{
    const QTextCharFormat f = formatOf(s.ch);
    QString line = index >= Stylesheet::kCharacterStyles ? QStringLiteral("character style %1").arg(index - Stylesheet::kCharacterStyles)
                                                         : QStringLiteral("style %1").arg(index);
    line += QStringLiteral(": %1 %2").arg(fontNameOf(f)).arg(s.ch.fs / 2.0);
    if (s.ch.bold) line += QLatin1String(" bold");
    if (s.ch.italic) line += QLatin1String(" italic");
    static const char* const aligns[] = {"", " right", " centre", " justified"};
    line += QLatin1String(aligns[std::clamp(s.pa.align, 0, 3)]);
    if (s.pa.li) line += QStringLiteral(" li %1").arg(s.pa.li);
    if (s.pa.fi) line += QStringLiteral(" fi %1").arg(s.pa.fi);
    if (s.pa.ls) line += QStringLiteral(" ls %1 ilvl %2").arg(s.pa.ls).arg(s.pa.ilvl);
    declare(line);
}

void Reader::declareLevel(int listId, const ListLevel& level)
{
    // Placeholders for the level numbers read as %0..%8.
    QString text;
    for (QChar c : level.text)
        text += c.unicode() < 9 ? QStringLiteral("%%1").arg(c.unicode()) : QString(c);
    QString line = QStringLiteral("list %1 level %2: nfc %3 start %4 \"%5\"")
                       .arg(listId).arg(lists_[listId].size() - 1).arg(level.nfc).arg(level.start).arg(text);
    if (level.li) line += QStringLiteral(" li %1").arg(*level.li);
    if (level.fi) line += QStringLiteral(" fi %1").arg(*level.fi);
    declare(line);
}

void Reader::fieldInstruction(const QString& text)
{
    const QString inst = text.trimmed();
    if (!inst.startsWith(QLatin1String("INCLUDEPICTURE"), Qt::CaseInsensitive))
        return;
    link_ = inst;
    linkDepth_ = stack_.size();  // the field's own group
    linkShown_ = false;
}

void Reader::showObject(const QByteArray& raw)
{
    if (top().dest)
        return;
    emitObject(raw, QImage(), QSize());
}

// ---------------------------------------------------------------- tables

bool Reader::tableWord(std::string_view name, bool hasParam, int param)
{
    ParaState& pa = top().pa;
    if (name == "intbl") {
        pa.itap = std::max(pa.itap, 1);
        return true;
    }
    if (name == "itap") {
        pa.itap = std::clamp(hasParam ? param : 1, 0, 16);
        return true;
    }
    // The row words of a nested table: read as the body's, at their level.
    if (name == "nesttableprops")
        return true;
    const int level = std::max(1, pa.itap);
    if (name == "trowd" && level == 1)
        implicitRow_ = true;
    return tables_.defWord(level, name, hasParam, param);
}

int Reader::contentLevel()
{
    const int itap = stack_.back().pa.itap;
    // Text outside the table's paragraphs once every cell of the row has
    // ended, with no \row to close it: the file forgot the row's end, and
    // the text goes on below the table rather than into a cell of its own.
    if (itap == 0 && implicitRow_ && tables_.rowFilled())
        implicitRow_ = false;
    return itap == 0 && implicitRow_ ? 1 : itap;
}

std::optional<rtftable::RowDef> Reader::scanRow(int level) const
{
    const qsizetype from = braceAt_ >= 0 ? braceAt_ : lexer_ ? lexer_->position() : src_.size();
    return rtftable::scanRowDef(src_, from, level, stack_.back().pa.itap);
}

// Moves the output to where a paragraph of the level goes. A table opened
// where a paragraph break is due stands in the break's place.
void Reader::tableLevel(int level)
{
    if (!tables_.needsMove(level))
        return;
    flushText();
    tables_.reach(level, [this](int l) { return scanRow(l); });
    pendingBreak_ = false;
}

void Reader::tableCell(int level)
{
    flushBytes();
    if (top().dest)
        return;
    if (level == 1)
        implicitRow_ = true;
    // A \\cell with no table before it: the paragraph it ends is the
    // table's first cell.
    QTextDocumentFragment orphan;
    if (level == 1 && tables_.depth() == 0 && !pendingBreak_) {
        flushText();
        QTextCursor sel(cursor_);
        sel.setPosition(cursor_.block().position(), QTextCursor::KeepAnchor);
        orphan = sel.selection();
        sel.removeSelectedText();
        const int at = cursor_.block().position();
        if (at > 0 && cursor_.document()->characterAt(at - 1) == QChar::ParagraphSeparator) {
            cursor_.deletePreviousChar();
            pendingBreak_ = true;
        }
    }
    tableLevel(level);
    if (!orphan.isEmpty())
        cursor_.insertFragment(orphan);
    flushText();
    if (pendingBreak_)
        realizeBreak();
    // A merged cell's words would land on the paragraph of the cell it
    // joins, whose own words came with it.
    if (!tables_.inMergedCell()) {
        applyParagraph(top().pa);
        if (cursor_.block().length() == 1)
            cursor_.mergeBlockCharFormat(formatOf(top().ch));  // keeps the cell's own format
    }
    top().pa.pnFresh = false;
    tables_.endCell(level, [this](int l) { return scanRow(l); });
}

void Reader::tableRow(int level)
{
    flushBytes();
    if (top().dest)
        return;
    if (level == 1)
        implicitRow_ = false;
    if (tables_.depth() < level)
        return;  // a row end with no cell before it
    // Text after the row's last \cell is a cell of its own.
    flushText();
    pendingBreak_ = false;
    tables_.endRow(level, [this](int l) { return scanRow(l); });
}

const QTextCharFormat& Reader::formatOf(const CharState& s)
{
    auto it = formatCache_.find(s);
    if (it != formatCache_.end())
        return it->second;
    QTextCharFormat f = opt_.baseFormat;
    auto font = fonts_.find(effectiveFont(s));
    if (font != fonts_.end() && !font->second.name.isEmpty()) {
        // A name with a script suffix shows in its base family, as Windows'
        // font substitutes do; the name itself stays first, to be written back.
        const QString& name = font->second.name;
        const QString base = baseFontName(name);
        f.setFontFamilies(base == name ? QStringList{name} : QStringList{name, base});
        f.setProperty(prop::FontCharset, font->second.charset);
        f.setProperty(prop::FontKind, font->second.kind);
        f.setProperty(prop::FontPitch, font->second.pitch);
    }
    f.setFontPointSize(s.fs / 2.0);
    f.setFontWeight(s.bold ? QFont::Bold : QFont::Normal);
    f.setFontItalic(s.italic);
    f.setFontStrikeOut(s.strike);
    if (s.doubleStrike)
        f.setProperty(prop::DoubleStrike, true);
    setUnderlineFormat(f, s.ul, s.ulAltSpelling ? QStringLiteral("uldbl") : QString());
    if (s.hidden)
        f.setProperty(prop::Hidden, true);
    if (s.caps)
        f.setFontCapitalization(QFont::AllUppercase);
    else if (s.smallCaps)
        f.setFontCapitalization(QFont::SmallCaps);
    if (s.offset && s.superSub) {
        // \super and \sub: smaller text, as every other program shows it.
        f.setProperty(prop::SuperSub, s.offset > 0 ? 1 : -1);
        f.setVerticalAlignment(s.offset > 0 ? QTextCharFormat::AlignSuperScript : QTextCharFormat::AlignSubScript);
    } else if (s.offset) {
        // \up and \dn raise and lower text at its full size.
        f.setProperty(prop::OffsetHalfPoints, s.offset);
        f.setBaselineOffset(100.0 * s.offset / s.fs);
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

void readRtf(QByteArrayView rtf, QTextCursor& cursor, const RtfReadOptions& options)
{
    Reader reader(rtf, cursor, options);
    reader.run();
}

void readRtf(QStringView rtf, QTextCursor& cursor, const RtfReadOptions& options)
{
    QByteArray bytes;
    bytes.reserve(rtf.size());
    const char16_t* s = rtf.utf16();
    for (qsizetype i = 0; i < rtf.size(); ++i) {
        const char16_t c = s[i];
        if (c <= 0xFF) {
            bytes.append(char(c));
            continue;
        }
        // A character beyond the bytes, put there by a program rather than
        // read from a file: spelled as a character of its own.
        bytes.append("{\\uc0\\u");
        bytes.append(QByteArray::number(uint(c)));
        bytes.append(" }");
    }
    readRtf(QByteArrayView(bytes), cursor, options);
}

}  // namespace tornelia
