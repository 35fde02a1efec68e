#pragma once

// How the main window reaches the windows of the feature folders: each
// folder's wiring file adds an opener for the windows it owns, and
// showWindow looks the opener up. The main window stays free of the
// features' headers, and a window not yet added is simply not shown.

#include "core/procedures.h"

#include <QString>

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

// The procedures whose work lives in a feature folder. A command that reaches
// one is enabled only once its folder has registered the procedure, so no
// command can look finished and do nothing.
enum class Feature {
    StaMpa,                  // print
    AntEP,                   // print preview
    PaRImM,                  // picture bullets
    MaIL,                    // send the document by mail; the argument is the address
    appunti,                 // show or hide the clipboard panel
    opzioniAppunti,          // the clipboard panel's options
    CorrEzionE,              // spelling
    salvaImmagine,           // save the selected picture
    proprietaImmagine,       // the selected picture's properties
    CripT,                   // encrypt the document
    DeCripT,                 // decrypt the document
    cifraturaDocumento,      // the encryption window
    cifraDocumentoCorrente,  // encrypt the current document
    DeBugG,                  // the error report
    informazioni,            // about the program
    associazioni,            // file association (the options window's button)
    lettera,                 // the start panel's letter composer
    fax,                     // the start panel's fax composer
};

// The argument is the command's own (an address, a paste mode); most take none.
using FeatureAction = std::function<void(const WindowHost&, const QString& argument)>;

class WindowRegistry {
public:
    void add(Window window, WindowOpener opener) { openers_[window] = std::move(opener); }
    bool has(Window window) const { return openers_.count(window) > 0; }
    void addFeature(Feature feature, FeatureAction action) { features_[feature] = std::move(action); }
    bool hasFeature(Feature feature) const { return features_.count(feature) > 0; }
    // False when the feature has not been registered.
    bool run(Feature feature, const WindowHost& host, const QString& argument = QString()) const
    {
        const auto it = features_.find(feature);
        if (it == features_.end())
            return false;
        it->second(host, argument);
        return true;
    }
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
    std::map<Feature, FeatureAction> features_;
};

// One per feature folder, each in its own wiring_<folder>.cpp.
void registerRtfWindows(WindowRegistry& registry);
void registerToolsWindows(WindowRegistry& registry);
void registerMacroWindows(WindowRegistry& registry);
void registerPrintWindows(WindowRegistry& registry);
void registerAppWindows(WindowRegistry& registry);
void registerClipboardWindows(WindowRegistry& registry);
void registerServicesWindows(WindowRegistry& registry);
void registerPicturesWindows(WindowRegistry& registry);
void registerColourWindows(WindowRegistry& registry);
void registerFileDialogWindows(WindowRegistry& registry);
void registerDesignerWindows(WindowRegistry& registry);

inline void registerAllWindows(WindowRegistry& registry)
{
    registerAppWindows(registry);
    registerRtfWindows(registry);
    registerToolsWindows(registry);
    registerMacroWindows(registry);
    registerPrintWindows(registry);
    registerClipboardWindows(registry);
    registerServicesWindows(registry);
    registerPicturesWindows(registry);
    registerColourWindows(registry);
    registerFileDialogWindows(registry);
    registerDesignerWindows(registry);
}

}  // namespace tornelia
