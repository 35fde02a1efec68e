#pragma once

// The macro engine: a line interpreter that works on the macro's text with
// searches for single characters. No syntax tree, no token stream: the
// language's rules are this scanner's rules, oddities included, because the
// macros people have written rely on them.

#include "macro/value.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tornelia {

class Document;
class MainProcedures;
class MessagePort;
class RichTextSurface;
class UndoStore;

// What the commands act on: the same document, undo store and main-window
// procedures as the menus, so a macro command is the menu command.
struct MacroHost {
    RichTextSurface& testo;
    MessagePort& messages;
    MainProcedures& procedures;
    Document* document = nullptr;  // new, open, save, delete, prop
    UndoStore* undo = nullptr;     // undo, redo
    // The hidden control that ins loads a file into; when none is given the
    // run keeps one of its own.
    RichTextSurface* hidden = nullptr;
};

// Ends a whole run (a macro too long for the line counter, or the step
// limit). Deliberately not a MacroError: no step handler may swallow it.
struct MacroRunAborted {};

class c {
public:
    explicit c(MacroHost host);
    ~c();
    c(const c&) = delete;
    c& operator=(const c&) = delete;

    // The macro to run.
    QString ScriptText;

    // Runs ScriptText from its first line to its last. A run has no result;
    // the variables are gone when it ends.
    void ScriptExecute();

    // The 38 command words an assignment may start with.
    static bool IsFun(const QString& name);
    // Every command of the language, in lower case.
    static const QStringList& commandNames();

    // Fires for every non-empty line, before anything of it runs; the
    // arguments are the run's own, so a listener may rewrite them.
    std::function<void(QString& lineText, std::int16_t& lineNumber)> LineStart;

    // Scanning steps after which a run is abandoned; 0 for no limit. An
    // unpaired quote in an assignment scans for ever, so callers that run
    // macros they did not write set one.
    long long stepLimit = 0;
    // Whether the last run was abandoned at the step limit.
    bool stoppedAtLimit() const { return stoppedAtLimit_; }

    // --- the engine's operations, public for whoever embeds or checks it ---
    void SetVar(const QString& name, const MacroValue& value);
    MacroValue GetVar(const QString& name) const;
    bool EvalCompare(const QString& expression);
    MacroValue EvalParen(QString expression);
    MacroValue EvalExpr(const QString& expression);
    MacroValue CallFun(const QString& callText);
    MacroValue RunFun(const QString& name, const QString& argument, const QString& argumentText);
    QString ArgValue(const QString& argumentText);

    const QStringList& VarNames() const { return varNames_; }
    const std::vector<MacroValue>& VarValues() const { return varValues_; }

private:
    void tick();
    void runLine(QString line, std::int16_t number);
    void apply(const QString& op, MacroValue& accumulator, const MacroValue& operand);
    RichTextSurface& hiddenSurface();
    void insertFile(const QString& path);

    MacroHost host_;
    QStringList varNames_;
    std::vector<MacroValue> varValues_;
    std::unique_ptr<RichTextSurface> ownHidden_;
    long long steps_ = 0;
    bool stoppedAtLimit_ = false;
};

// Removes blanks from both ends; tabs and line ends stay, as the language
// counts only the blank.
QString trimBlanks(const QString& s);

}  // namespace tornelia
