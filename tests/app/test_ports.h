#pragma once

// Ports for tests of the window: answers given in advance, and every
// message kept as "title | text | buttons | icon".

#include "app/app_context.h"
#include "app/main_window.h"
#include "controls/editor_view.h"
#include "app/scripted_ports.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <ostream>

// Failures print strings as text.
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
inline void PrintTo(const QStringList& l, std::ostream* os)
{
    *os << "{ ";
    for (const QString& s : l)
        *os << '"' << s.toStdString() << "\", ";
    *os << '}';
}

namespace tornelia::testing {

// The name the program gives each window a command shows.
inline QString windowName(Window w)
{
    static const char* const names[] = {"frmImp", "frmIm",   "Form1",  "form2",     "form3", "frmMai",
                                        "frmGoTo", "frmTimeDate", "frmcic", "Fontt", "FrmSt", "frmHTM",
                                        "frmOnd",  "frmSott", "FrmApiPed", "frmCE", "frmMac", "frmCor",
                                        "FrmOpz",  "frmRecuper", "frmInc", "frmApp", "frmZip", "frmPreview"};
    return QString::fromLatin1(names[int(w)]);
}

// A key pressed and let go on `w`.
inline void key(QWidget* w, int k, Qt::KeyboardModifiers mods = Qt::NoModifier, const QString& text = {})
{
    QKeyEvent down(QEvent::KeyPress, k, mods, text);
    QCoreApplication::sendEvent(w, &down);
    QKeyEvent up(QEvent::KeyRelease, k, mods, text);
    QCoreApplication::sendEvent(w, &up);
}

// Each character as its key; Return and Tab come as "\r" and "\t".
inline void typeKeys(QWidget* w, const QString& text)
{
    for (const QChar c : text) {
        const int k = c == '\r' ? int(Qt::Key_Return) : c == '\t' ? int(Qt::Key_Tab) : int(c.toUpper().unicode());
        key(w, k, c.isUpper() ? Qt::ShiftModifier : Qt::NoModifier, QString(c));
    }
}

class AnsweringMessagePort final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int buttons, int icon) override
    {
        said << QStringList{title, text, QString::number(buttons), QString::number(icon)}.join(" | ");
        if (answers.empty())
            return buttons == 0 ? QStringLiteral("ok") : QStringLiteral("an");
        const QString a = answers.front();
        answers.pop_front();
        return a;
    }
    QString inputBox(const QString& title, const QString& prompt) override
    {
        said << QStringList{title, prompt, QStringLiteral("input")}.join(" | ");
        if (inputs.empty())
            return {};
        const QString a = inputs.front();
        inputs.pop_front();
        return a;
    }
    std::deque<QString> answers;
    std::deque<QString> inputs;
    QStringList said;
};

class SaveAsDialogPort final : public DialogPort {
public:
    std::optional<QString> openFile(const QString&, const QStringList&) override { return openPath; }
    std::optional<QString> saveFile(const QString&, const QStringList&, const QString&) override
    {
        return savePath;
    }
    std::optional<QString> chooseFolder(const QString&) override { return std::nullopt; }
    std::optional<FontChoice> chooseFont(const FontChoice& initial) override
    {
        fontSeeds.append(initial);
        return font;
    }
    std::optional<std::uint32_t> chooseColour(std::uint32_t initial) override
    {
        colourSeeds.append(initial);
        return colour;
    }
    std::optional<QString> openPath;
    std::optional<FontChoice> font;
    std::optional<std::uint32_t> colour;
    QList<FontChoice> fontSeeds;
    QList<std::uint32_t> colourSeeds;
    std::optional<QString> savePath;
};

// A context with settings in a folder of its own.
struct TestContext {
    TestContext()
    {
        auto m = std::make_unique<AnsweringMessagePort>();
        auto d = std::make_unique<SaveAsDialogPort>();
        messages = m.get();
        dialogs = d.get();
        context = std::make_unique<AppContext>(
            Ports{std::move(m), std::move(d), std::make_unique<ScriptedShellPort>()},
            folder.filePath(QStringLiteral("settings")));
        context->setDataFolder(folder.filePath(QStringLiteral("data")));
    }
    QTemporaryDir folder;
    AnsweringMessagePort* messages = nullptr;
    SaveAsDialogPort* dialogs = nullptr;
    std::unique_ptr<AppContext> context;
};

// The main window on screen over a fresh "Documento 1", with the keyboard
// focus in the text.
class ShownWindowTest : public ::testing::Test {
protected:
    ShownWindowTest() : window(*t.context)
    {
        t.context->document().Novo(0);
        window.resize(800, 600);
        window.show();
        window.activateWindow();
        window.editor()->setFocus();
        QApplication::processEvents();
    }

    RichTextSurface& testo() { return t.context->testo(); }

    TestContext t;
    MainWindow window;
};

}  // namespace tornelia::testing
