#pragma once

// What the logic asks of the person and of the system. The window implements
// these with real dialogs; tests and the command line with scripted answers.

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace tornelia {

// The common message dialog. Buttons: 0 OK alone, 1 OK and Cancel, 2 Yes
// and No, 3 Yes, No and Cancel. Icons: 0 none, 1 information, 2 warning, 3 error, 4 question.
// The answer is "ok", "si", "no" or "an".
class MessagePort {
public:
    virtual ~MessagePort() = default;
    virtual QString mostraMsg(const QString& title, const QString& text, int buttons, int icon) = 0;
    // A modal question with an answer field; a cancel gives "".
    virtual QString inputBox(const QString& title, const QString& prompt) = 0;
};

struct FontChoice {
    QString name;
    float size = 10;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    std::uint32_t colour = 0;  // 0x00BBGGRR
};

// What the program's own file chooser is opened for. Each sets the chooser's
// title, its filters and the extension a bare name gets.
enum class FileChoice {
    OpenDocument,  // "Apri"
    SaveDocument,  // "Salva con nome"
    OpenPicture,   // a picture to insert or show
    SavePicture,   // where to write a picture
    InsertFile,    // a file to put into the document
};

// File, folder, font and colour choosers. An empty optional is a cancel.
class DialogPort {
public:
    virtual ~DialogPort() = default;
    // The window answers with its own chooser; ports without one fall back
    // on the plain choosers below.
    virtual std::optional<QString> chooseFile(FileChoice choice, const QString& suggestedName = {})
    {
        switch (choice) {
        case FileChoice::SaveDocument:
            return saveFile(QStringLiteral("Seleziona il file da salvare"), {}, suggestedName);
        case FileChoice::SavePicture:
            return saveFile(QStringLiteral("Seleziona il file da salvare"), {}, suggestedName);
        case FileChoice::OpenPicture:
            return openFile(QStringLiteral("Seleziona il file immagine"), {});
        case FileChoice::InsertFile:
            return openFile(QStringLiteral("Seleziona il file da inserire"), {});
        case FileChoice::OpenDocument:
            break;
        }
        return openFile(QStringLiteral("Seleziona il file da aprire"), {});
    }
    virtual std::optional<QString> openFile(const QString& title, const QStringList& filters) = 0;
    virtual std::optional<QString> saveFile(const QString& title, const QStringList& filters,
                                            const QString& suggestedName) = 0;
    virtual std::optional<QString> chooseFolder(const QString& title) = 0;
    virtual std::optional<FontChoice> chooseFont(const FontChoice& initial) = 0;
    virtual std::optional<std::uint32_t> chooseColour(std::uint32_t initial) = 0;
};

// The system: open with the default program, start a program without
// waiting, show a file's properties.
class ShellPort {
public:
    virtual ~ShellPort() = default;
    virtual bool openDocument(const QString& pathOrUrl) = 0;
    virtual bool startDetached(const QString& program, const QStringList& arguments) = 0;
    virtual void showProperties(const QString& path) = 0;
};

// The window around the document: its caption, the status bar's panels and
// the progress strip of a load.
class FramePort {
public:
    virtual ~FramePort() = default;
    virtual void setCaption(const QString& caption) = 0;
    virtual void setStatusPanel(int index, const QString& text) = 0;
    virtual void showProgress(const QString& text, int percent) = 0;
    virtual void hideProgress() = 0;
    // Lets the events through during a long operation.
    virtual void processEvents() = 0;
};

}  // namespace tornelia
