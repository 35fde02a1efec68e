#pragma once

// The ports as a person meets them: real dialogs and the desktop.

#include "core/ports.h"
#include "core/settings.h"

#include <QDialog>
#include <QString>

class QPushButton;

namespace tornelia {

// The common message dialog: title, text, icon and one of three button sets.
// The keys O, S, N and A press the buttons, in either case.
class MessageDialog : public QDialog {
    Q_OBJECT
public:
    MessageDialog(const QString& title, const QString& text, int buttons, int icon,
                  QWidget* parent = nullptr);
    // "ok", "si", "no" or "an"; what closing the window without a button gives
    // until one is pressed.
    QString answer() const { return answer_; }
    QPushButton* button(const QString& answer) const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void reject() override;

private:
    void choose(const QString& answer);
    QString answer_;
    QString escapeAnswer_;
    QList<QPair<QString, QPushButton*>> buttons_;
};

class GuiMessagePort final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int buttons, int icon) override;
    QString inputBox(const QString& title, const QString& prompt) override;
};

// Files and folders are chosen in the program's own dialog, frmCD.
class GuiDialogPort final : public DialogPort {
public:
    std::optional<QString> chooseFile(FileChoice choice, const QString& suggestedName = {}) override;
    std::optional<QString> openFile(const QString& title, const QStringList& filters) override;
    std::optional<QString> saveFile(const QString& title, const QStringList& filters,
                                    const QString& suggestedName) override;
    std::optional<QString> chooseFolder(const QString& title) override;
    std::optional<FontChoice> chooseFont(const FontChoice& initial) override;
    std::optional<std::uint32_t> chooseColour(std::uint32_t initial) override;

private:
    // The same per-user settings the document reads; the dialog keeps its
    // last folder and view there.
    SettingsStore settings_;
    GuiMessagePort messages_;
};

class GuiShellPort final : public ShellPort {
public:
    bool openDocument(const QString& pathOrUrl) override;
    bool startDetached(const QString& program, const QStringList& arguments) override;
    void showProperties(const QString& path) override;
};

// A file's properties: name, folder, size, dates and permissions.
class PropertiesWindow : public QDialog {
    Q_OBJECT
public:
    explicit PropertiesWindow(const QString& path, QWidget* parent = nullptr);
};

}  // namespace tornelia
