#pragma once

// The on-screen keyboard: a key field with the Italian layout that sits at
// the bottom of the main window and types into the document as if the keys
// were pressed, so the typing assistance sees every key.

#include "core/rich_text_surface.h"
#include "core/settings.h"

#include <QList>
#include <QWidget>

class QGridLayout;
class QToolButton;

namespace tornelia {

class FormTast : public QWidget {
    Q_OBJECT
public:
    explicit FormTast(RichTextSurface& testo, QWidget* parent = nullptr);
    ~FormTast() override;

    // TasTiER: shows the keyboard when hidden and hides it when shown; gives
    // the new state, for the setting and the menu check.
    bool TasTiER()
    {
        setVisible(isHidden());
        return !isHidden();
    }

    // The same, with the new state kept in the settings for the next start.
    bool TasTiER(SettingsStore& settings)
    {
        const bool shown = TasTiER();
        settings.scriviReg(QStringLiteral("Tornelia"), QStringLiteral("Tast"), QStringLiteral("1"),
                           shown ? QStringLiteral("True") : QStringLiteral("False"));
        return shown;
    }

    // Presses one key: a character, "{BS}", "{DEL}", "{ENTER}" or "{TAB}".
    // Characters follow Shift and Caps Lock as the keys show them.
    void premi(const QString& key);

    bool shift() const { return shift_; }
    void setShift(bool on);
    bool capsLock() const { return caps_; }
    void setCapsLock(bool on);

    // The key that stands for a character or a command, for tests and for the
    // window's own clicks.
    QToolButton* keyFor(const QString& key) const;
    QToolButton* shiftKey() const { return shiftKeys_.value(0); }
    QToolButton* capsKey() const { return capsKey_; }

protected:
    // The key on screen follows Caps Lock on the real keyboard: its press, and
    // the case of the letters typed while the program has the focus.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Key {
        QString base;     // what the key types, or a {COMMAND}
        QString shifted;  // with Shift; empty for letters and commands
        QToolButton* button = nullptr;
    };
    QToolButton* addKey(QGridLayout* grid, int row, int column, int span, const QString& base,
                        const QString& shifted = {});
    void relabel();
    QString charFor(const Key& key) const;
    void typeChar(const QString& ch);
    void typeControl(int keyCode, int keyAscii, const QString& text);
    void erase(bool backward);

    RichTextSurface& testo_;
    QList<Key> keys_;
    QList<QToolButton*> shiftKeys_;
    QToolButton* capsKey_ = nullptr;
    bool shift_ = false;
    bool caps_ = false;
};

}  // namespace tornelia
