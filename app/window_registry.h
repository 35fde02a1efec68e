#pragma once

// How the main window reaches the windows of the feature folders: each
// folder's wiring file adds an opener for the windows it owns, and
// showWindow looks the opener up. The main window stays free of the
// features' headers, and a window not yet added is simply not shown.

#include "core/procedures.h"

#include <functional>
#include <map>

class QWidget;

namespace tornelia {

class AppContext;

// What an opener gets: the one document and the window that owns the new one.
struct WindowHost {
    AppContext& context;
    QWidget* owner;
    MainProcedures& procedures;
};

using WindowOpener = std::function<void(const WindowHost&)>;

class WindowRegistry {
public:
    void add(Window window, WindowOpener opener) { openers_[window] = std::move(opener); }
    bool has(Window window) const { return openers_.count(window) > 0; }
    // False when nothing is registered for the window.
    bool open(Window window, const WindowHost& host) const
    {
        const auto it = openers_.find(window);
        if (it == openers_.end())
            return false;
        it->second(host);
        return true;
    }

private:
    std::map<Window, WindowOpener> openers_;
};

// One per feature folder, each in its own wiring_<folder>.cpp.
void registerRtfWindows(WindowRegistry& registry);
void registerToolsWindows(WindowRegistry& registry);
void registerMacroWindows(WindowRegistry& registry);
void registerPrintWindows(WindowRegistry& registry);
void registerAppWindows(WindowRegistry& registry);

inline void registerAllWindows(WindowRegistry& registry)
{
    registerAppWindows(registry);
    registerRtfWindows(registry);
    registerToolsWindows(registry);
    registerMacroWindows(registry);
    registerPrintWindows(registry);
}

}  // namespace tornelia
