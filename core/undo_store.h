#pragma once

// Undo by whole snapshots: each step is the complete TextRTF of its moment.
// Steps are kept compactly, but every read gives back the exact string.

#include "core/rich_text_surface.h"
#include "core/settings.h"

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>

namespace tornelia {

// What a menu entry or a toolbar button of one command shows.
struct CommandState {
    bool enabled = false;
    QString caption;
    bool operator==(const CommandState&) const = default;
};

// The state of "Annulla" and "Ripristina", for the window to follow.
struct UndoCommands {
    CommandState annulla;
    CommandState ripristina;
    bool operator==(const UndoCommands&) const = default;
};

class UndoStore {
public:
    explicit UndoStore(RichTextSurface& testo);
    ~UndoStore();
    UndoStore(const UndoStore&) = delete;
    UndoStore& operator=(const UndoStore&) = delete;

    // Before a change: stores the state to go back to, unless undo is off.
    void unDO();
    // One step back or forward; each does nothing while its command is disabled.
    void UnDoo();
    void RedOO();
    // Works out the state of the two commands and hands it to onCommands.
    UndoCommands CmeN();
    // Novo: the store starts again, empty.
    void clear();
    // A file was opened: what it holds now is where the first change made
    // to it goes back to. A new document has nothing before its first step.
    void keepOpened();
    // "Disabilita annulla": flips undo off or on, and remembers it in the settings.
    void disabilitaAnnulla(SettingsStore& settings);

    bool annullaOff() const { return annullaOff_; }
    void setAnnullaOff(bool off) { annullaOff_ = off; }
    int passoCorr() const { return passoCorr_; }
    int passoTot() const { return passoTot_; }
    // Step i as stored: for index 0 the opened document, if any, and "" beyond the last.
    QString passo(int i) const;
    // Bytes held by the stored steps.
    std::size_t memoryBytes() const;

    // Called by CmeN with the new state; the window's entries and buttons follow it.
    std::function<void(const UndoCommands&)> onCommands;

private:
    struct Steps;
    // The tests feed snapshots that the surface never writes (characters
    // beyond Latin-1) through store().
    friend struct UndoStoreProbe;

    UndoCommands commands() const;
    void store(const QString& rtf);
    void restore(int i);
    void moveCaret(long pos);
    bool stepEmpty(int i) const;

    RichTextSurface& testo_;
    std::unique_ptr<Steps> steps_;
    int passoCorr_ = 0;
    int passoTot_ = 0;
    bool annullaOff_ = false;
    // Step 0: the document as opened; empty for a new document.
    QString opened_;
};

}  // namespace tornelia
