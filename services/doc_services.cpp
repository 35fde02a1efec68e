#include "services/doc_services.h"

#include "core/rich_text_surface.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>

namespace tornelia {

namespace {

const QString kBreak = QStringLiteral("\r\n");

}  // namespace

// --- helper programs -----------------------------------------------------

QStringList toolFolders(const QString& dataFolder)
{
    QStringList folders;
    if (!dataFolder.isEmpty())
        folders << dataFolder;
    const QString own = QCoreApplication::applicationDirPath();
    if (!own.isEmpty())
        folders << own;
    return folders;
}

QString findTool(const QString& name, const QStringList& folders)
{
    const QStringList names{name, name + QStringLiteral(".exe"), QStringLiteral("tornelia-") + name};
    for (const QString& folder : folders) {
        for (const QString& n : names) {
            const QFileInfo f(QDir(folder).filePath(n));
            if (f.isFile() && f.isExecutable())
                return f.absoluteFilePath();
        }
    }
    return {};
}

// --- mail ----------------------------------------------------------------

QString mailtoAddress(const QString& address, const QString& documentPath, const QString& text)
{
    return QStringLiteral("mailto:") + address + QStringLiteral("?subject=") + documentPath + QStringLiteral("&body=") +
           text;
}

QByteArray emlText(const EmlMessage& m)
{
    QString out = QStringLiteral("From: <") + m.sender + QStringLiteral(">") + kBreak;
    // Without a recipient there is no message to open, only its sender.
    if (!m.to.isEmpty()) {
        out += QStringLiteral("To: ") + m.to + kBreak;
        if (!m.cc.isEmpty())
            out += QStringLiteral("CC: ") + m.cc + kBreak;
        if (!m.bcc.isEmpty())
            out += QStringLiteral("BCC: ") + m.bcc + kBreak;
        out += QStringLiteral("Subject: ") + m.subject + kBreak;
        out += QStringLiteral("X-Priority:") + m.priority + kBreak;
        out += QStringLiteral("X-Unsent: 1") + kBreak;
        out += kBreak;
        // The report's text field gives bare line feeds; the message wants CR LF.
        QString body = m.body;
        body.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        body.replace(QLatin1Char('\r'), QLatin1Char('\n'));
        body.replace(QLatin1Char('\n'), kBreak);
        out += body;
    }
    return out.toUtf8();
}

bool writeEml(const QString& path, const EmlMessage& message)
{
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    f.write(emlText(message));
    return f.commit();
}

QString reportBody(const QString& severity, const QString& system, const QString& text)
{
    return QStringLiteral("Gravità dell'errore: ") + severity + kBreak + QStringLiteral("Sistema operativo: ") + system +
           kBreak + text;
}

QString reportPriority(int severityIndex)
{
    switch (severityIndex) {
    case 2:
        return QStringLiteral("1");
    case 0:
        return QStringLiteral("5");
    default:
        return QStringLiteral("3");
    }
}

// --- compression ---------------------------------------------------------

bool zipDataValid(bool compress, const QString& source, const QString& destination)
{
    if (source.isEmpty() || !QFileInfo(source).isFile())
        return false;
    if (compress)
        return destination.right(4).toLower() == QLatin1String(".zip");
    return !destination.isEmpty();
}

QString zipParameters(bool compress, const QString& source, const QString& destination)
{
    return (compress ? QStringLiteral("-c") : QStringLiteral("-d")) + QLatin1Char('*') + source + QLatin1Char('*') +
           destination;
}

// --- file association ----------------------------------------------------

QString normaliseExtension(const QString& typed)
{
    QString e = typed.trimmed();
    if (e.startsWith(QLatin1Char('*')))
        e.remove(0, 1);
    if (!e.isEmpty() && !e.startsWith(QLatin1Char('.')))
        e.prepend(QLatin1Char('.'));
    return e;
}

QString mimeTypeFor(const QString& extension)
{
    return QStringLiteral("application/x-tornelia-") + normaliseExtension(extension).mid(1).toLower();
}

QString mimePackageText(const QString& extension)
{
    const QString ext = normaliseExtension(extension);
    // A weight above the usual 50 lets the program's type win over the
    // system's own for the same extension, as the user asked for.
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
                          "  <mime-type type=\"%1\">\n"
                          "    <comment>File Tornelia</comment>\n"
                          "    <icon name=\"accessories-text-editor\"/>\n"
                          "    <glob pattern=\"*%2\" weight=\"80\"/>\n"
                          "  </mime-type>\n"
                          "</mime-info>\n")
        .arg(mimeTypeFor(ext), ext.toHtmlEscaped());
}

QString desktopEntryText(const QString& programPath, const QStringList& mimeTypes)
{
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Tornelia\n"
                          "GenericName=Elaboratore di testi\n"
                          "Exec=\"%1\" %f\n"
                          "Icon=accessories-text-editor\n"
                          "Terminal=false\n"
                          "Categories=Office;WordProcessor;\n"
                          "MimeType=%2\n")
        .arg(programPath, mimeTypes.join(QLatin1Char(';')) + QLatin1Char(';'));
}

QString xdgDataHome()
{
    const QString env = qEnvironmentVariable("XDG_DATA_HOME");
    if (!env.isEmpty())
        return env;
    return QDir::homePath() + QStringLiteral("/.local/share");
}

namespace {

bool writeWhole(const QString& path, const QByteArray& bytes)
{
    QSaveFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size() && f.commit();
}

// Runs a system tool when it is installed; its absence is no failure.
void runIfPresent(const QString& program, const QStringList& arguments)
{
    const QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty())
        return;
    QProcess p;
    p.start(path, arguments);
    p.waitForFinished(30000);
}

}  // namespace

AssociationResult associateExtension(const QString& extension, const QString& programPath, const QString& dataHome,
                                     bool runTools)
{
    AssociationResult r;
    const QString ext = normaliseExtension(extension);
    if (ext.size() < 2 || ext.contains(QRegularExpression(QStringLiteral("[\\s/\\\\*?\"<>]")))) {
        r.error = QStringLiteral("L'estensione \"%1\" non è valida.").arg(extension);
        return r;
    }
    const QString type = mimeTypeFor(ext);
    const QString packages = QDir(dataHome).filePath(QStringLiteral("mime/packages"));
    const QString applications = QDir(dataHome).filePath(QStringLiteral("applications"));
    if (!QDir().mkpath(packages) || !QDir().mkpath(applications)) {
        r.error = QStringLiteral("Impossibile creare la cartella %1.").arg(dataHome);
        return r;
    }
    const QString package = QDir(packages).filePath(QStringLiteral("tornelia-%1.xml").arg(ext.mid(1).toLower()));
    if (!writeWhole(package, mimePackageText(ext).toUtf8())) {
        r.error = QStringLiteral("Impossibile scrivere il file %1.").arg(package);
        return r;
    }
    // The entry keeps the types of earlier associations and gains this one.
    const QString desktop = QDir(applications).filePath(QStringLiteral("tornelia.desktop"));
    QStringList types;
    QFile existing(desktop);
    if (existing.open(QIODevice::ReadOnly)) {
        for (const QString& line : QString::fromUtf8(existing.readAll()).split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("MimeType=")))
                types = line.mid(9).split(QLatin1Char(';'), Qt::SkipEmptyParts);
        }
        existing.close();
    }
    if (!types.contains(type))
        types << type;
    if (!writeWhole(desktop, desktopEntryText(programPath, types).toUtf8())) {
        r.error = QStringLiteral("Impossibile scrivere il file %1.").arg(desktop);
        return r;
    }
    if (runTools) {
        runIfPresent(QStringLiteral("update-mime-database"), {QDir(dataHome).filePath(QStringLiteral("mime"))});
        runIfPresent(QStringLiteral("update-desktop-database"), {applications});
        runIfPresent(QStringLiteral("xdg-mime"), {QStringLiteral("default"), QStringLiteral("tornelia.desktop"), type});
    }
    r.ok = true;
    return r;
}

// --- letter and fax ------------------------------------------------------

QStringList dateChoices(const QDate& date)
{
    const QLocale it(QLocale::Italian, QLocale::Italy);
    return {it.toString(date, QStringLiteral("dd MMMM yyyy")), it.toString(date, QStringLiteral("dd/MM/yy")),
            it.toString(date, QStringLiteral("dd/MM/yyyy")), it.toString(date, QStringLiteral("dddd dd MMMM yyyy"))};
}

void composeLetter(RichTextSurface& t, const LetterFields& f)
{
    t.setText(QString());
    t.setSelStart(0);
    t.setSelFontName(QStringLiteral("Tahoma"));
    t.setSelText(kBreak);
    t.setSelText(f.date + kBreak + kBreak);
    t.setSelBold(true);
    t.setSelText(f.sender[0] + kBreak + f.sender[1] + kBreak);
    t.setSelText(QStringLiteral("Tel. ") + f.sender[2] + QStringLiteral(" Fax. ") + f.sender[3] + kBreak);
    t.setSelText(f.sender[4] + kBreak);
    t.setSelAlignment(1);
    t.setSelText(f.recipient[0] + kBreak + f.recipient[1] + kBreak);
    t.setSelText(QStringLiteral("Tel. ") + f.recipient[2] + QStringLiteral(" Fax. ") + f.recipient[3] + kBreak);
    t.setSelBold(false);
    t.setSelAlignment(0);
    t.setSelText(kBreak + kBreak);
    t.setSelText(f.opening + QStringLiteral(",") + kBreak + kBreak);
    t.setSelText(QStringLiteral("Inserire qui il testo della lettera") + kBreak + kBreak);
    t.setSelText(f.closing + kBreak + kBreak);
    t.setSelText(f.closingName);
}

void composeFax(RichTextSurface& t, const FaxFields& f)
{
    t.setText(QString());
    t.setSelStart(0);
    t.setSelFontName(QStringLiteral("Tahoma"));
    t.setSelAlignment(0);
    t.setSelFontSize(30);
    t.setSelFontName(QStringLiteral("Times New Roman"));
    t.setSelAlignment(2);
    t.setSelText(QStringLiteral("Fax") + kBreak);
    t.setSelAlignment(0);
    t.setSelFontName(QStringLiteral("Tahoma"));
    t.setSelFontSize(10);
    const auto row = [&t](const QString& label, const QString& value) {
        t.setSelBold(true);
        t.setSelText(label);
        t.setSelBold(false);
        t.setSelText(value + kBreak);
    };
    row(QStringLiteral("Per: "), f.recipient);
    row(QStringLiteral("Fax: "), f.faxNumber);
    row(QStringLiteral("Da: "), f.senderName + QStringLiteral("  ") + f.senderPhone);
    row(QStringLiteral("Data: "), f.date + QLatin1Char(' ') + f.time);
    row(QStringLiteral("Oggetto: "), f.subject);
    t.setSelBold(true);
    t.setSelText(QStringLiteral("Per problemi o domande relativi a questo fax, chiamare il numero ") + f.senderPhone);
    t.setSelBold(false);
    t.setSelAlignment(0);
    t.setSelText(kBreak + QStringLiteral("___________Inizio fax___________") + kBreak);
    t.setSelFontSize(11);
    t.setSelText(QStringLiteral("[Digitare qui il testo del fax]") + kBreak);
    t.setSelFontSize(10);
    t.setSelText(QStringLiteral("____________Fine fax____________") + kBreak);
}

}  // namespace tornelia

#include "core/document.h"
#include "core/ports.h"

namespace tornelia {

bool sendByMail(ShellPort& shell, const RichTextSurface& testo, const QString& address)
{
    return shell.openDocument(mailtoAddress(address, testo.FileName(), testo.Text()));
}

namespace {

bool savedOnDisk(const RichTextSurface& testo)
{
    const QString path = testo.FileName();
    return !path.isEmpty() && path != kNoDocument && QFileInfo(path).isFile();
}

}  // namespace

bool encryptCurrentDocument(Document& document, const RichTextSurface& testo, MessagePort& messages, ShellPort& shell,
                            const QStringList& folders)
{
    if (!savedOnDisk(testo)) {
        const QString answer = messages.mostraMsg(QStringLiteral("File non salvato"),
                                                  QStringLiteral("Il file in uso non è stato salvato. Salvare?"), 3, 4);
        if (answer == QLatin1String("an"))
            return false;
        if (answer == QLatin1String("si"))
            document.Salvare(QString());
    }
    const QString tool = findTool(QStringLiteral("encrypt"), folders);
    if (tool.isEmpty())
        return false;
    // Still unsaved: the tool asks for a file itself.
    return shell.startDetached(tool, savedOnDisk(testo) ? QStringList{testo.FileName()} : QStringList{});
}

}  // namespace tornelia
