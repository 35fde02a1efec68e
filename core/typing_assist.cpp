#include "core/typing_assist.h"

#include "core/codepage.h"
#include "core/go_on.h"
#include "core/picture.h"

#include <algorithm>
#include <exception>

namespace tornelia {

TypingProcedures::~TypingProcedures() = default;

namespace {

// Stands in for the window until it plugs its own procedures in: keys
// pressed before then reach no command.
class NoProcedures final : public TypingProcedures {
public:
    void CopYa() override {}
    void AntEP() override {}
    void showForm1() override {}
    void INco(const QString&) override {}
    void TaGl() override {}
};

NoProcedures& noProcedures()
{
    static NoProcedures none;
    return none;
}

// The handlers go on at the next statement: a step the surface refuses,
// such as a caret put before the start, is skipped and the rest still runs.
template <typename Step>
void goOn(Step&& step)
{
    goOnAt<SurfaceError>("Digitazione", step);
}

// Key codes and characters, as the handlers get them.
constexpr int kTab = 9;
constexpr int kEnter = 13;
constexpr int kDelete = 46;
constexpr int kF2 = 113;
constexpr int kShift = 1;
constexpr int kCtrl = 2;

// The arrows of the font Wingdings that "<-" and "->" become.
constexpr unsigned char kLeftArrow = 223;
constexpr unsigned char kRightArrow = 224;
const QString kWingdings = QStringLiteral("Wingdings");

QString windowsChar(unsigned char b) { return QString(QChar(cp1252Char(b))); }

}  // namespace

std::array<bool, 9> readCorrections(const SettingsStore& settings)
{
    std::array<bool, 9> on{};
    for (int i = 0; i < 9; ++i)
        on[i] = settings.leggiReg({}, kCorrSection, QString::number(i + 1), QStringLiteral("False"))
                == QLatin1String("True");
    return on;
}

void writeCorrections(SettingsStore& settings, const std::array<bool, 9>& on)
{
    for (int i = 0; i < 9; ++i)
        settings.scriviReg({}, kCorrSection, QString::number(i + 1),
                           on[i] ? QStringLiteral("True") : QStringLiteral("False"));
}

// ------------------------------------------------------------------ F2 cycle

QString toUpperKeepingLength(const QString& text)
{
    QString out = text;
    for (QChar& c : out)
        c = c.toUpper();
    return out;
}

QString toLowerKeepingLength(const QString& text)
{
    QString out = text;
    for (QChar& c : out)
        c = c.toLower();
    return out;
}

QString toProperCase(const QString& text)
{
    // A word starts after a blank, a tab, a line or page break, or a NUL.
    QString out = toLowerKeepingLength(text);
    bool atWordStart = true;
    for (QChar& c : out) {
        const char16_t u = c.unicode();
        const bool separator = u == 0 || u == u' ' || (u >= 9 && u <= 13);
        if (!separator && atWordStart)
            c = c.toUpper();
        atWordStart = separator;
    }
    return out;
}

// ------------------------------------------------------------------ handlers

TypingAssist::TypingAssist(RichTextSurface& testo, SettingsStore& settings, UndoStore& undo)
    : testo_(testo), settings_(settings), undo_(undo), procs_(&noProcedures())
{
    connections_[0] = QObject::connect(&testo_, &RichTextSurface::KeyDown, &testo_,
                                       [this](int& code, int& shift) { KeyDown(code, shift); });
    connections_[1] = QObject::connect(&testo_, &RichTextSurface::KeyPress, &testo_,
                                       [this](int& k) { KeyPress(k); });
    connections_[2] = QObject::connect(&testo_, &RichTextSurface::KeyUp, &testo_,
                                       [this](int& code, int& shift) { KeyUp(code, shift); });
    connections_[3] = QObject::connect(&testo_, &RichTextSurface::SelChange, &testo_, [this] { SelChange(); });
    connections_[4] = QObject::connect(&testo_, &RichTextSurface::Change, &testo_, [this] { Change(); });
}

TypingAssist::~TypingAssist()
{
    for (const QMetaObject::Connection& c : connections_)
        QObject::disconnect(c);
}

void TypingAssist::setProcedures(TypingProcedures* procedures)
{
    procs_ = procedures ? procedures : &noProcedures();
}

void TypingAssist::KeyPress(int& k)
{
    RichTextSurface& t = testo_;
    const std::array<bool, 9> rule = readCorrections(settings_);
    const auto on = [&rule](Correction c) { return rule[int(c) - 1]; };

    // One undo step per word or line.
    if (k == kEnter || k == 32)
        goOn([&] { undo_.unDO(); });

    // An upper-case letter needs no capital rule and no correction.
    if (k >= 65 && k <= 90) {
        puntoVisto_ = false;
        spazioVisto_ = false;
        return;
    }

    if (k == kEnter) {
        puntoVisto_ = true;
        spazioVisto_ = true;
    }

    if (on(Correction::CapitalAfterStop)) {
        if (k == 46)
            puntoVisto_ = true;
        if (k == 32)
            spazioVisto_ = true;
        if (k >= 97 && k <= 122 && puntoVisto_ && spazioVisto_) {
            k -= 32;
            puntoVisto_ = false;
            spazioVisto_ = false;
        }
    }

    const long posizione = t.SelStart();
    const std::optional<QString> fontSalvato = t.SelFontName();

    // "<-" and "->": the character before is looked at, whatever the rule.
    if (t.SelStart() >= 1 && (k == 62 || k == 45)) {
        goOn([&] { t.setSelStart(posizione - 1); });
        goOn([&] { t.setSelLength(1); });
        if (k == 45 && on(Correction::Arrows) && t.SelText() == QLatin1String("<")) {
            goOn([&] { t.setSelFontName(kWingdings); });
            goOn([&] { t.setSelText(QString(QChar(kLeftArrow))); });
            k = 0;
        }
        if (k == 62 && on(Correction::Arrows) && t.SelText() == QLatin1String("-")) {
            goOn([&] { t.setSelFontName(kWingdings); });
            goOn([&] { t.setSelText(QString(QChar(kRightArrow))); });
            k = 0;
        }
        goOn([&] { t.setSelStart(posizione); });
        goOn([&] { t.setSelLength(0); });
        // The text typed next goes on in the font it had before the arrow.
        // Naming the font it already has would only split its run.
        if (fontSalvato && t.SelFontName() != fontSalvato)
            goOn([&] { t.setSelFontName(*fontSalvato); });
    }

    // "£" is 163 in the code page; 128 is the euro there.
    if (on(Correction::Euro) && k == 163)
        k = 128;

    if (k == 41 && t.SelStart() >= 2) {
        goOn([&] { t.setSelStart(posizione - 2); });
        goOn([&] { t.setSelLength(2); });
        if (on(Correction::Copyright) && t.SelText().toLower() == QLatin1String("(c")) {
            goOn([&] { t.setSelText(QStringLiteral("©")); });
            k = 0;
        }
        if (on(Correction::Registered) && t.SelText().toLower() == QLatin1String("(r")) {
            goOn([&] { t.setSelText(QStringLiteral("®")); });
            k = 0;
        }
        goOn([&] { t.setSelStart(posizione - 3); });
        goOn([&] { t.setSelLength(3); });
        if (on(Correction::TradeMark) && t.SelText().toLower() == QLatin1String("(tm")) {
            goOn([&] { t.setSelText(QStringLiteral("™")); });
            k = 0;
        }
        // Back where the ")" was typed, even when the text got shorter.
        goOn([&] { t.setSelStart(posizione); });
        goOn([&] { t.setSelLength(0); });
    }

    if (on(Correction::SpaceAfterComma) && k == 44) {
        goOn([&] { t.setSelText(QStringLiteral(", ")); });
        k = 0;
    }
    if (on(Correction::SpaceAfterSemicolon) && k == 59) {
        goOn([&] { t.setSelText(QStringLiteral("; ")); });
        k = 0;
    }
    if (on(Correction::SpaceAfterColon) && k == 58) {
        goOn([&] { t.setSelText(QStringLiteral(": ")); });
        k = 0;
    }
}

std::span<const TakenKey> keysTaken()
{
    // Tab, Enter while picture bullets are on, Delete for its undo step, F2
    // for the case cycle, then the table of Control keys.
    static constexpr TakenKey keys[] = {
        {kTab, -1}, {kEnter, -1}, {kDelete, -1}, {kF2, -1},  //
        {'A', kCtrl}, {'C', kCtrl}, {'E', kCtrl}, {'L', kCtrl}, {'V', kCtrl}, {'X', kCtrl}, {189, kCtrl}, {190, kCtrl},
    };
    return keys;
}

void TypingAssist::KeyDown(int& code, int& shift)
{
    RichTextSurface& t = testo_;

    // Tab is a character of the text; the focus never leaves the document.
    // In a table it goes to the next cell instead (Shift+Tab to the one
    // before), as it does in every table a user has met.
    if (code == kTab) {
        goOn([&] {
            if (!t.tabInTable(shift & kShift))
                t.setSelText(QStringLiteral("\t"));
        });
        code = 0;
    }

    if (code == kEnter && procs_->bulletImmagine()) {
        pictureBulletEnter();
        code = 0;
    }

    if (code == kDelete)
        goOn([&] { undo_.unDO(); });

    goOn([&] { procs_->aggText(); });

    if (code == kF2)
        caseCycle();

    if (shift == kCtrl && code >= 18) {
        switch (code) {
        case 'A':
            goOn([&] { t.setSelAlignment(2); });
            break;
        case 'C':
            goOn([&] { procs_->CopYa(); });
            break;
        case 'E':
            goOn([&] { procs_->AntEP(); });
            break;
        case 'L':
            goOn([&] { procs_->showForm1(); });
            break;
        case 'V':
            goOn([&] { procs_->INco(QString()); });
            break;
        case 'X':
            goOn([&] { procs_->TaGl(); });
            break;
        case 189:
            goOn([&] { t.setSelText(QString(54, QChar(cp1252Char(151)))); });
            break;
        case 190:
            goOn([&] { t.setSelText(windowsChar(133)); });
            break;
        default:
            break;
        }
        code = 0;
        shift = 0;
    }
}

void TypingAssist::pictureBulletEnter()
{
    // Each new line starts with a copy of the bullet picture, pasted through
    // the clipboard; the user's clipboard is put back afterwards.
    RichTextSurface& t = testo_;
    // The new line goes on in the font of the text before Enter, not in the
    // picture's.
    const QTextCharFormat typed = textFormatAt(t.cursor());
    goOn([&] { t.setSelText(t.SelText() + QStringLiteral("\r\n")); });
    goOn([&] { procs_->saveClipboard(); });
    goOn([&] { procs_->copyBulletPicture(); });
    goOn([&] { t.Paste(); });
    goOn([&] { t.setSelText(QStringLiteral("  ")); });
    goOn([&] {
        QTextCursor blanks = t.cursor();
        blanks.setPosition(std::max(0, blanks.position() - 2), QTextCursor::KeepAnchor);
        blanks.setCharFormat(typed);
    });
    goOn([&] { procs_->restoreClipboard(); });
}

void TypingAssist::caseCycle()
{
    RichTextSurface& t = testo_;
    goOn([&] { undo_.unDO(); });
    const long start = t.SelStart();
    const long length = t.SelLength();
    QString converted;
    switch (statoMaiuscole_) {
    case 0:
        converted = toUpperKeepingLength(t.SelText());
        statoMaiuscole_ = 1;
        break;
    case 1:
        converted = toLowerKeepingLength(t.SelText());
        statoMaiuscole_ = 2;
        break;
    default:
        converted = toProperCase(t.SelText());
        statoMaiuscole_ = 0;
        break;
    }
    goOn([&] { t.setSelText(converted); });
    goOn([&] { t.setSelStart(start); });
    goOn([&] { t.setSelLength(length); });
}

void TypingAssist::KeyUp(int& /*keyCode*/, int& /*shift*/)
{
    goOn([&] { procs_->rulerFollowsCaret(); });
}

void TypingAssist::SelChange()
{
    goOn([&] { procs_->rulerFollowsCaret(); });
    goOn([&] { procs_->aggText(); });
    if (pump_)
        pump_();
    // Whatever moved the caret, typing included, ends the wait for a capital.
    puntoVisto_ = false;
    spazioVisto_ = false;
}

void TypingAssist::Change()
{
    if (pump_)
        pump_();
    if (procs_->loadRunning())
        return;
    goOn([&] { procs_->Conalinee(); });
    goOn([&] { procs_->ChMnu(); });
}

}  // namespace tornelia
