#include "controls/form_tast.h"

#include "controls/editor_view.h"
#include "core/codepage.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QTextCursor>
#include <QToolButton>

namespace tornelia {

namespace {

constexpr int kUnit = 4;  // grid columns to a plain key
constexpr int kColumns = 60;

// Windows virtual key codes of the keys that have no character.
constexpr int kVkBack = 8;
constexpr int kVkTab = 9;
constexpr int kVkReturn = 13;
constexpr int kVkDelete = 46;

const QString kBs = QStringLiteral("{BS}");
const QString kDel = QStringLiteral("{DEL}");
const QString kEnter = QStringLiteral("{ENTER}");
const QString kTab = QStringLiteral("{TAB}");
const QString kShift = QStringLiteral("{SHIFT}");
const QString kCaps = QStringLiteral("{CAPS}");

const char* const kStyle =
    "QToolButton { background: palette(base); border: 1px solid palette(mid); border-radius: 3px;"
    " padding: 2px; }"
    "QToolButton:hover { background: palette(midlight); }"
    "QToolButton:pressed, QToolButton:checked { background: palette(highlight);"
    " color: palette(highlighted-text); }";

}  // namespace

FormTast::FormTast(RichTextSurface& testo, QWidget* parent) : QWidget(parent), testo_(testo)
{
    setObjectName(QStringLiteral("FormTast"));
    setStyleSheet(QString::fromLatin1(kStyle));
    // Across a wide window the keys keep a hand's proportions and stand in
    // the middle.
    auto* field = new QWidget(this);
    field->setMaximumWidth(960);
    auto* outer = new QHBoxLayout(this);
    outer->setContentsMargins(6, 4, 6, 4);
    outer->addStretch(1);
    outer->addWidget(field, 100);
    outer->addStretch(1);
    auto* grid = new QGridLayout(field);
    grid->setSpacing(3);
    grid->setContentsMargins(0, 0, 0, 0);
    for (int c = 0; c < kColumns; ++c)
        grid->setColumnStretch(c, 1);

    auto row = [&](int r, int column, const QString& base, const QString& shifted) {
        for (int i = 0; i < base.size(); ++i)
            addKey(grid, r, column + i * kUnit, kUnit, base.mid(i, 1),
                   shifted.isEmpty() ? QString() : shifted.mid(i, 1));
    };
    // Italian layout.
    row(0, 0, QStringLiteral("\\1234567890'ì"), QStringLiteral("|!\"£$%&/()=?^"));
    addKey(grid, 0, 52, 8, kBs);
    addKey(grid, 1, 0, 6, kTab);
    row(1, 6, QStringLiteral("qwertyuiopè+"), QStringLiteral("QWERTYUIOPé*"));
    capsKey_ = addKey(grid, 2, 0, 6, kCaps);
    row(2, 6, QStringLiteral("asdfghjklòàù"), QStringLiteral("ASDFGHJKLç°§"));
    QToolButton* enter = addKey(grid, 1, 54, 6, kEnter);
    grid->removeWidget(enter);
    grid->addWidget(enter, 1, 54, 2, 6);
    enter->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Expanding);
    shiftKeys_ << addKey(grid, 3, 0, 5, kShift);
    row(3, 5, QStringLiteral("<zxcvbnm,.-"), QStringLiteral(">ZXCVBNM;:_"));
    shiftKeys_ << addKey(grid, 3, 49, 11, kShift);
    addKey(grid, 4, 14, 32, QStringLiteral(" "));
    addKey(grid, 4, 50, 10, kDel);

    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    capsKey_->setCheckable(true);
    for (QToolButton* s : shiftKeys_)
        s->setCheckable(true);
    relabel();
    qApp->installEventFilter(this);
}

FormTast::~FormTast() { qApp->removeEventFilter(this); }

QToolButton* FormTast::addKey(QGridLayout* grid, int row, int column, int span, const QString& base,
                              const QString& shifted)
{
    auto* b = new QToolButton(grid->parentWidget());
    // The document keeps the focus: the keys are clicked, never focused.
    b->setFocusPolicy(Qt::NoFocus);
    b->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    b->setMinimumHeight(30);
    b->setAutoRepeat(base.size() == 1 || base == kBs || base == kDel);
    grid->addWidget(b, row, column, 1, span);
    keys_.append({base, shifted, b});
    connect(b, &QToolButton::clicked, this, [this, base] {
        if (base == kShift)
            setShift(!shift_);
        else if (base == kCaps)
            setCapsLock(!caps_);
        else
            premi(base);
    });
    return b;
}

QString FormTast::charFor(const Key& key) const
{
    if (key.base.size() != 1)
        return key.base;
    const QChar c = key.base.at(0);
    if (c.isLetter() && key.shifted == QString(c.toUpper()))
        return (shift_ != caps_) ? key.shifted : key.base;
    return shift_ && !key.shifted.isEmpty() ? key.shifted : key.base;
}

void FormTast::relabel()
{
    for (const Key& k : keys_) {
        QString label;
        if (k.base == kBs)
            label = QStringLiteral("← Backspace");
        else if (k.base == kDel)
            label = QStringLiteral("Canc");
        else if (k.base == kEnter)
            label = QStringLiteral("Invio ↵");
        else if (k.base == kTab)
            label = QStringLiteral("Tab ⇥");
        else if (k.base == kShift)
            label = QStringLiteral("⇧ Maiusc");
        else if (k.base == kCaps)
            label = QStringLiteral("Bloc Maiusc");
        else if (k.base == QLatin1String(" "))
            label = QString();
        else if (k.base == QLatin1String("&"))
            label = QStringLiteral("&&");
        else
            label = charFor(k) == QLatin1String("&") ? QStringLiteral("&&") : charFor(k);
        k.button->setText(label);
    }
    for (QToolButton* s : shiftKeys_)
        s->setChecked(shift_);
    if (capsKey_)
        capsKey_->setChecked(caps_);
}

void FormTast::setShift(bool on)
{
    shift_ = on;
    relabel();
}

void FormTast::setCapsLock(bool on)
{
    caps_ = on;
    relabel();
}

QToolButton* FormTast::keyFor(const QString& key) const
{
    for (const Key& k : keys_)
        if (k.base == key || k.shifted == key)
            return k.button;
    return nullptr;
}

void FormTast::premi(const QString& key)
{
    if (key == kBs) {
        erase(true);
    } else if (key == kDel) {
        erase(false);
    } else if (key == kEnter) {
        typeControl(kVkReturn, 13, QString(QChar::ParagraphSeparator));
    } else if (key == kTab) {
        typeControl(kVkTab, 9, QStringLiteral("\t"));
    } else {
        QString ch = key;
        for (const Key& k : keys_)
            if (k.base == key) {
                ch = charFor(k);
                break;
            }
        typeChar(ch);
        // Shift holds for one character, as a finger on it would.
        if (shift_)
            setShift(false);
    }
    testo_.SetFocus();
}

void FormTast::typeControl(int keyCode, int keyAscii, const QString& text)
{
    int code = keyCode;
    int shiftState = shift_ ? 1 : 0;
    testo_.raiseKeyDown(code, shiftState);
    if (code == 0)
        return;
    int ascii = keyAscii;
    testo_.raiseKeyPress(ascii);
    if (ascii != 0)
        testo_.typeText(ascii == keyAscii ? text : QString(QChar(ascii)));
    code = keyCode;
    testo_.raiseKeyUp(code, shiftState);
}

void FormTast::typeChar(const QString& ch)
{
    if (ch.isEmpty())
        return;
    const QChar c = ch.at(0);
    int shiftState = shift_ ? 1 : 0;
    const int vk = EditorView::virtualKey(c.toUpper().unicode(), shift_ ? Qt::ShiftModifier : Qt::NoModifier);
    if (vk != 0) {
        int code = vk;
        testo_.raiseKeyDown(code, shiftState);
        if (code == 0)
            return;
    }
    // What the handlers see is the character's code in the 8-bit code page,
    // as a real key would give it.
    const int b = cp1252Byte(c.unicode());
    const int original = b >= 0 ? b : c.unicode();
    int ascii = original;
    testo_.raiseKeyPress(ascii);
    if (ascii != 0) {
        QString text = ch;
        if (ascii != original)
            text = ascii >= 0x80 && ascii <= 0xFF ? QString(QChar(cp1252Char(static_cast<unsigned char>(ascii))))
                                                  : QString(QChar(ascii));
        testo_.typeText(text);
    }
    if (vk != 0) {
        int code = vk;
        testo_.raiseKeyUp(code, shiftState);
    }
}

void FormTast::erase(bool backward)
{
    int code = backward ? kVkBack : kVkDelete;
    int shiftState = 0;
    testo_.raiseKeyDown(code, shiftState);
    if (code == 0)
        return;
    if (backward) {
        int ascii = 8;
        testo_.raiseKeyPress(ascii);
        if (ascii == 0)
            return;
    }
    QTextCursor c = testo_.cursor();
    if (c.hasSelection())
        c.removeSelectedText();
    else if (backward)
        c.deletePreviousChar();
    else
        c.deleteChar();
    testo_.adoptCursor(c);
    code = backward ? kVkBack : kVkDelete;
    testo_.raiseKeyUp(code, shiftState);
}

bool FormTast::eventFilter(QObject* watched, QEvent* event)
{
    // One application-wide press reaches several objects; the one that has
    // the focus is the one that counts.
    if (event->type() == QEvent::KeyPress && watched == QApplication::focusWidget()) {
        auto* k = static_cast<QKeyEvent*>(event);
        if (k->key() == Qt::Key_CapsLock) {
            if (!k->isAutoRepeat())
                setCapsLock(!caps_);
        } else if (k->text().size() == 1 && k->text().at(0).isLetter()
                   && k->text().at(0).toUpper() != k->text().at(0).toLower()) {
            // The system tells nobody the state of Caps Lock, but a typed
            // letter shows it: a capital without Shift, or a small one with it.
            const bool upper = k->text().at(0).isUpper();
            const bool shifted = k->modifiers() & Qt::ShiftModifier;
            if ((upper != shifted) != caps_)
                setCapsLock(upper != shifted);
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace tornelia
