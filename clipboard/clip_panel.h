#pragma once

// The clipboard panel of the main window ("Appunti"): the ten entries of a
// ClipHistory, each shown by its kind, the three buttons and the panel's
// menu. It refreshes from the system clipboard on a timer and whenever the
// clipboard says it changed, so what other programs copy is recorded too.

#include "clipboard/clip_history.h"

#include <QWidget>

#include <functional>
#include <memory>

class QLabel;
class QListWidget;
class QMenu;
class QTextEdit;
class QTimer;

namespace tornelia {

class MainProcedures;
class RichTextSurface;
class SettingsStore;
class UndoStore;

// The system clipboard as a refresh reads it.
class SystemClipSource final : public ClipSource {
public:
    QByteArray rtf() const override;
    QImage image() const override;
    QString text() const override;
};

// Pastes into the document: text and rich text straight into the
// selection, a picture through the clipboard and the window's paste, with
// the user's clipboard put back afterwards.
class SurfaceClipTarget final : public ClipTarget {
public:
    SurfaceClipTarget(RichTextSurface& testo, UndoStore& undo, MainProcedures& procedures)
        : testo_(testo), undo_(undo), procedures_(procedures)
    {
    }
    void pasteText(const QString& text) override;
    void pasteRtf(const QString& rtf) override;
    void pasteImage(const QImage& image) override;

private:
    RichTextSurface& testo_;
    UndoStore& undo_;
    MainProcedures& procedures_;
};

// The panel's own settings, section "Appunti".
struct ClipOptions {
    bool enabled = true;
    int seconds = 1;         // the refresh interval
    bool noResize = false;   // the width cannot be dragged
    int width = 230;

    static ClipOptions read(const SettingsStore& settings);
    void write(SettingsStore& settings) const;
};

class Clip : public QWidget {
    Q_OBJECT
public:
    // The panel owns neither the source nor the target.
    Clip(ClipSource& source, ClipTarget& target, SettingsStore& settings, QWidget* parent = nullptr);
    ~Clip() override;

    ClipHistory& history() { return history_; }
    int selected() const;
    void setSelected(int index);
    const ClipOptions& options() const { return options_; }
    void applyOptions(const ClipOptions& options);

    // What "&Nascondi" runs: the window's own show/hide command, so that
    // its menu check and the stored state follow.
    std::function<void()> onNascondi;
    // What rileggiOpzioni runs after reading the options again: the window
    // shows or hides the panel as the settings now say.
    std::function<void()> onRilettura;

    QMenu* menu() const { return mnuClip_; }

    // The width the panel asks of the window's layout: the one chosen last.
    QSize sizeHint() const override;
    void setWantedWidth(int width);

public slots:
    // Shows each entry by its kind.
    void agg();
    void SpoSta();
    void Aggiorna();
    // 0 "Incolla selezionato", 1 "Incolla tutto", 2 "Cancella appunti".
    void ButCli(int index);
    void Nascondi();
    // "&Opzioni appunti...": the options window, modal.
    void opzioni();
    // The options window of the program changed the settings.
    void rileggiOpzioni();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    struct Row {
        QWidget* frame = nullptr;
        QTextEdit* r = nullptr;
        QLabel* i = nullptr;
        QLabel* kind = nullptr;
    };

    ClipHistory history_;
    ClipTarget& target_;
    SettingsStore& settings_;
    ClipOptions options_;
    QListWidget* lista_ = nullptr;
    Row rows_[ClipHistory::kEntries];
    QMenu* mnuClip_ = nullptr;
    QTimer* timer_ = nullptr;
};

// The strip between the text and the panel; dragging it sets the panel's
// width unless the panel's options say "NoResize".
class ClipSplitter : public QWidget {
    Q_OBJECT
public:
    explicit ClipSplitter(Clip& clip, QWidget* parent = nullptr);

    // Runs after the width changed, so the window lays itself out again.
    std::function<void()> relayout;
    // Runs when the drag ends, with the panel's width.
    std::function<void(int)> widthChosen;

    QSize sizeHint() const override { return {5, 10}; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    Clip& clip_;
    int startX_ = 0;
    int startWidth_ = 0;
    bool dragging_ = false;
};

}  // namespace tornelia
