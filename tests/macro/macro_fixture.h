#pragma once

// A document, its undo store and recording procedures for running whole
// macros the way the editor runs them.

#include "app/scripted_ports.h"
#include "core/document.h"
#include "core/procedures.h"
#include "core/rich_text_surface.h"
#include "core/settings.h"
#include "core/undo_store.h"
#include "macro/interpreter.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <QTemporaryDir>

#include <map>

namespace tornelia {

class QuietFrame final : public FramePort {
public:
    void setCaption(const QString&) override {}
    void setStatusPanel(int, const QString&) override {}
    void showProgress(const QString&, int) override {}
    void hideProgress() override {}
    void processEvents() override {}
};

// Writes down every procedure a command reaches, in order.
class RecordingProcedures final : public MainProcedures {
public:
    void CopYa() override { calls << QStringLiteral("CopYa"); }
    void AntEP() override { calls << QStringLiteral("AntEP"); }
    void showForm1() override { calls << QStringLiteral("showForm1"); }
    void INco(const QString& how) override { calls << QStringLiteral("INco:") + how; }
    void TaGl() override { calls << QStringLiteral("TaGl"); }
    void showWindow(Window w) override { calls << QStringLiteral("show:") + QString::number(int(w)); }
    void StaMpa() override { calls << QStringLiteral("StaMpa"); }
    void PaRImM() override { calls << QStringLiteral("PaRImM"); }
    void CpAr() override
    {
        calls << QStringLiteral("CpAr");
        if (failWordCount)
            throw std::out_of_range("no argument");
    }
    void MaIL(const QString& address) override { calls << QStringLiteral("MaIL:") + address; }
    void InSFilE() override { calls << QStringLiteral("InSFilE"); }
    void showKeyboard(bool shown) override { calls << (shown ? QStringLiteral("keyboard on") : QStringLiteral("keyboard off")); }
    QStringList calls;
    bool failWordCount = false;
};

class MacroTest : public ::testing::Test {
protected:
    MacroTest()
        : settings(dir.path()),
          document(testo, settings, messages, dialogs, shell, frame),
          undo(testo)
    {
    }

    // Runs the lines joined by CR LF. A line "#probe" takes a snapshot of
    // every variable as it stands there.
    void run(const QStringList& lines, long long stepLimit = 0)
    {
        c engine(MacroHost{testo, messages, procedures, &document, &undo, nullptr});
        engine.stepLimit = stepLimit;
        engine.LineStart = [&](QString& text, std::int16_t& number) {
            started << number;
            if (text == QLatin1String("#probe"))
                for (qsizetype k = engine.VarNames().size() - 1; k >= 0; --k)
                    probe[engine.VarNames().at(k)] = engine.VarValues().at(std::size_t(k));
        };
        engine.ScriptText = lines.join(QStringLiteral("\r\n"));
        engine.ScriptExecute();
        EXPECT_TRUE(engine.VarNames().isEmpty());
    }
    QStringList shown() const
    {
        QStringList out;
        for (const RecordedMessage& m : messages.messages)
            out << m.title + u'|' + m.text;
        return out;
    }

    QTemporaryDir dir;
    RichTextSurface testo;
    SettingsStore settings;
    ScriptedMessagePort messages;
    ScriptedDialogPort dialogs;
    ScriptedShellPort shell;
    QuietFrame frame;
    Document document;
    UndoStore undo;
    RecordingProcedures procedures;
    std::map<QString, MacroValue> probe;
    QList<int> started;
};

}  // namespace tornelia
