#pragma once

// The application context: the one document and everything global to the
// process. The window and the command line get references from here; there
// are no other globals.

#include "core/document.h"
#include "core/ports.h"
#include "core/rich_text_surface.h"
#include "core/settings.h"
#include "core/typing_assist.h"
#include "core/undo_store.h"

#include <QString>

#include <memory>

namespace tornelia {

// The frame the document talks to. The context exists before the window
// and may run without one (the command line), so the window plugs itself in
// here; with no window attached the calls do nothing.
class FrameRelay final : public FramePort {
public:
    void attach(FramePort* frame) { frame_ = frame; }
    void detach(FramePort* frame)
    {
        if (frame_ == frame)
            frame_ = nullptr;
    }
    FramePort* target() const { return frame_; }

    void setCaption(const QString& caption) override;
    void setStatusPanel(int index, const QString& text) override;
    void showProgress(const QString& text, int percent) override;
    void hideProgress() override;
    void processEvents() override;

private:
    FramePort* frame_ = nullptr;
};

struct Ports {
    std::unique_ptr<MessagePort> messages;
    std::unique_ptr<DialogPort> dialogs;
    std::unique_ptr<ShellPort> shell;
};

class AppContext {
public:
    // settingsFolder: where the settings files live, empty for the user's
    // configuration folder.
    explicit AppContext(Ports ports, const QString& settingsFolder = {});
    ~AppContext();
    AppContext(const AppContext&) = delete;
    AppContext& operator=(const AppContext&) = delete;

    RichTextSurface& testo() { return *testo_; }
    SettingsStore& settings() { return settings_; }
    MessagePort& messages() { return *ports_.messages; }
    DialogPort& dialogs() { return *ports_.dialogs; }
    ShellPort& shell() { return *ports_.shell; }
    FrameRelay& frame() { return frame_; }
    Document& document() { return *document_; }
    UndoStore& undo() { return *undo_; }
    TypingAssist& typing() { return *typing_; }

    // The per-user data folder (~/.local/share/Tornelia), made when missing.
    static QString ensureDataFolder();
    // Where this process keeps its data: the per-user folder unless another
    // was given (tests keep theirs apart).
    QString dataFolder() const { return dataFolder_.isEmpty() ? ensureDataFolder() : dataFolder_; }
    void setDataFolder(const QString& folder) { dataFolder_ = folder; }

    // The document of the command line at start: quotes around it are
    // dropped; a path that does not exist leaves "Documento 1", with no
    // message.
    void openAtStart(const QString& path);

private:
    SettingsStore settings_;
    Ports ports_;
    FrameRelay frame_;
    std::unique_ptr<RichTextSurface> testo_;
    std::unique_ptr<Document> document_;
    std::unique_ptr<UndoStore> undo_;
    std::unique_ptr<TypingAssist> typing_;
    QString dataFolder_;
};

// Surrounding double quotes taken off a path, as the command line gives it.
QString unquotePath(const QString& path);

}  // namespace tornelia
