#pragma once

// The work behind the document services' windows, kept apart from the
// widgets so it can be checked on its own: finding the helper programs,
// the mail address and the unsent message, the compression parameters,
// the file association and the letter and fax layouts.

#include <QDate>
#include <QString>
#include <QStringList>

namespace tornelia {

class RichTextSurface;

// The support address the error report goes to, and the program's site.
inline const QString kSupportAddress = QStringLiteral("supporto@tornelia.it");
inline const QString kTorneliaSite = QStringLiteral("https://www.tornelia.it/");

// --- helper programs -----------------------------------------------------

// Where the helper programs are looked for: the per-user data folder, then
// the folder of the running executable.
QStringList toolFolders(const QString& dataFolder);
// The full path of the helper `name` ("encrypt", "zipper", "about"), tried
// as it stands, with ".exe" and as the "tornelia-" program we ship; empty
// when none is there.
QString findTool(const QString& name, const QStringList& folders);

// --- mail ----------------------------------------------------------------

// The address for the mail program, joined as it stands: a mail program
// reads the text after "body=" up to the end.
QString mailtoAddress(const QString& address, const QString& documentPath, const QString& text);

struct EmlMessage {
    QString sender;
    QString to;
    QString cc;
    QString bcc;
    QString subject;
    QString priority;
    QString body;
};
// The unsent message's bytes, one header a line, each ended by CR LF.
QByteArray emlText(const EmlMessage& message);
// Writes the message; false when the file cannot be written.
bool writeEml(const QString& path, const EmlMessage& message);

// The error report's body and its priority header value.
QString reportBody(const QString& severity, const QString& system, const QString& text);
QString reportPriority(int severityIndex);  // 0 low, 1 medium, 2 high

// --- compression ---------------------------------------------------------

bool zipDataValid(bool compress, const QString& source, const QString& destination);
// flag*source*destination, with no blanks added and no quoting.
QString zipParameters(bool compress, const QString& source, const QString& destination);

// --- file association ----------------------------------------------------

// ".abc" from "abc", "*.abc" or ".abc".
QString normaliseExtension(const QString& typed);
// The MIME type the program gives an extension of its own.
QString mimeTypeFor(const QString& extension);
QString mimePackageText(const QString& extension);
QString desktopEntryText(const QString& programPath, const QStringList& mimeTypes);

struct AssociationResult {
    bool ok = false;
    QString error;  // in Italian, when not ok
};
// Writes the MIME package and the program's .desktop entry under dataHome
// (the user's XDG data folder). With runTools, the system's databases are
// brought up to date and the program becomes the default for the type.
AssociationResult associateExtension(const QString& extension, const QString& programPath,
                                     const QString& dataHome, bool runTools);
// The user's XDG data folder.
QString xdgDataHome();

// --- letter and fax ------------------------------------------------------

// The date formats the composers offer, for the given date, in their order.
QStringList dateChoices(const QDate& date);

struct LetterFields {
    QString date;
    QString sender[5];     // name, address, telephone, fax, e-mail
    QString recipient[4];  // name, address, telephone, fax
    QString opening;
    QString closing;
    QString closingName;
};
void composeLetter(RichTextSurface& testo, const LetterFields& f);

struct FaxFields {
    QString date;
    QString time;  // "hh:mm"
    QString senderName;
    QString senderPhone;
    QString faxNumber;
    QString recipient;
    QString subject;
};
void composeFax(RichTextSurface& testo, const FaxFields& f);

}  // namespace tornelia

namespace tornelia {

class Document;
class MessagePort;
class ShellPort;

// "Invia a...": the document's path and text to the mail program.
bool sendByMail(ShellPort& shell, const RichTextSurface& testo, const QString& address);
// "Cifra documento corrente...": an unsaved document is offered a save
// first, then the encryption tool gets the document's path. False when
// the person cancelled or no tool is installed.
bool encryptCurrentDocument(Document& document, const RichTextSurface& testo, MessagePort& messages,
                            ShellPort& shell, const QStringList& folders);

}  // namespace tornelia
