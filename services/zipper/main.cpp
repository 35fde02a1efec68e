// tornelia-zipper: compresses one file into a zip archive or extracts an
// archive into a folder. Its one argument is the text the compression window
// builds: "-c*SOURCE*DEST.zip" or "-d*SOURCE.zip*FOLDER".

#include <zip.h>

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QMessageBox>
#include <QSaveFile>
#include <QString>

#include <cstdio>
#include <memory>

namespace {

// Started from the program, the tool has no terminal to write to: the
// message is also shown in a window when there is a screen to show it on.
int fail(int argc, char** argv, const QString& text)
{
    std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
    const bool screen = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (screen && qEnvironmentVariable("QT_QPA_PLATFORM") != QLatin1String("offscreen")) {
        QApplication app(argc, argv);
        QMessageBox::critical(nullptr, QStringLiteral("Compressione documento"), text);
    }
    return 1;
}

QString zipError(int code)
{
    zip_error_t e;
    zip_error_init_with_code(&e, code);
    const QString text = QString::fromLocal8Bit(zip_error_strerror(&e));
    zip_error_fini(&e);
    return text;
}

// Adds a file, or a folder with everything in it, under the given name.
bool addPath(zip_t* archive, const QString& path, const QString& name, QString& error)
{
    const QFileInfo info(path);
    if (info.isDir()) {
        if (zip_dir_add(archive, name.toUtf8().constData(), ZIP_FL_ENC_UTF_8) < 0) {
            error = QString::fromLocal8Bit(zip_strerror(archive));
            return false;
        }
        QDirIterator it(path, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
        while (it.hasNext()) {
            const QString child = it.next();
            if (!addPath(archive, child, name + QLatin1Char('/') + QFileInfo(child).fileName(), error))
                return false;
        }
        return true;
    }
    zip_source_t* source = zip_source_file(archive, QFile::encodeName(path).constData(), 0, -1);
    if (!source || zip_file_add(archive, name.toUtf8().constData(), source, ZIP_FL_ENC_UTF_8 | ZIP_FL_OVERWRITE) < 0) {
        if (source)
            zip_source_free(source);
        error = QString::fromLocal8Bit(zip_strerror(archive));
        return false;
    }
    return true;
}

QString compress(const QString& source, const QString& destination)
{
    const QFileInfo info(source);
    if (!info.exists())
        return QStringLiteral("Il file di origine %1 non esiste.").arg(source);
    int code = 0;
    // libzip writes the archive under a temporary name and renames it only
    // when it is complete, so a failure leaves no half-written archive.
    zip_t* archive = zip_open(QFile::encodeName(destination).constData(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    if (!archive)
        return QStringLiteral("Impossibile creare l'archivio %1: %2").arg(destination, zipError(code));
    QString error;
    if (!addPath(archive, info.absoluteFilePath(), info.fileName(), error)) {
        zip_discard(archive);
        return QStringLiteral("Impossibile comprimere %1: %2").arg(source, error);
    }
    if (zip_close(archive) < 0) {
        error = QString::fromLocal8Bit(zip_strerror(archive));
        zip_discard(archive);
        return QStringLiteral("Impossibile scrivere l'archivio %1: %2").arg(destination, error);
    }
    return {};
}

// An entry may not climb out of the destination folder.
bool safeName(const QString& name)
{
    if (name.isEmpty() || name.startsWith(QLatin1Char('/')) || name.contains(QLatin1Char('\\')) ||
        name.contains(QLatin1Char(':')))
        return false;
    for (const QString& part : name.split(QLatin1Char('/'))) {
        if (part == QLatin1String(".."))
            return false;
    }
    return true;
}

QString extract(const QString& source, const QString& folder)
{
    int code = 0;
    zip_t* archive = zip_open(QFile::encodeName(source).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &code);
    if (!archive)
        return QStringLiteral("Impossibile aprire l'archivio %1: %2").arg(source, zipError(code));
    const std::unique_ptr<zip_t, void (*)(zip_t*)> guard(archive, zip_discard);
    const QDir out(folder);
    if (!QDir().mkpath(folder))
        return QStringLiteral("Impossibile creare la cartella %1.").arg(folder);
    const zip_int64_t count = zip_get_num_entries(archive, 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        const QString name = QString::fromUtf8(zip_get_name(archive, zip_uint64_t(i), ZIP_FL_ENC_GUESS));
        if (!safeName(name))
            return QStringLiteral("L'archivio contiene un nome non valido: %1").arg(name);
        const QString target = out.filePath(name);
        if (name.endsWith(QLatin1Char('/'))) {
            if (!QDir().mkpath(target))
                return QStringLiteral("Impossibile creare la cartella %1.").arg(target);
            continue;
        }
        QDir().mkpath(QFileInfo(target).absolutePath());
        zip_file_t* entry = zip_fopen_index(archive, zip_uint64_t(i), 0);
        if (!entry)
            return QStringLiteral("Impossibile leggere %1 dall'archivio: %2").arg(name, QString::fromLocal8Bit(zip_strerror(archive)));
        QSaveFile file(target);
        bool ok = file.open(QIODevice::WriteOnly);
        char buffer[65536];
        zip_int64_t n = 0;
        while (ok && (n = zip_fread(entry, buffer, sizeof buffer)) > 0)
            ok = file.write(buffer, n) == n;
        zip_fclose(entry);
        // A short read is a damaged archive; the file being written is dropped.
        if (!ok || n < 0 || !file.commit())
            return QStringLiteral("Impossibile estrarre %1 in %2.").arg(name, target);
    }
    return {};
}

}  // namespace

int main(int argc, char** argv)
{
    const QString usage = QStringLiteral("Uso: tornelia-zipper -c*FILE*ARCHIVIO.zip oppure -d*ARCHIVIO.zip*CARTELLA");
    if (argc != 2)
        return fail(argc, argv, usage);
    const QString parameters = QString::fromLocal8Bit(argv[1]);
    // The flag ends at the first "*", the destination begins after the last:
    // a source name may hold a "*" of its own.
    const qsizetype first = parameters.indexOf(QLatin1Char('*'));
    const qsizetype last = parameters.lastIndexOf(QLatin1Char('*'));
    if (first < 0 || last <= first)
        return fail(argc, argv, usage);
    const QString flag = parameters.left(first);
    const QString source = parameters.mid(first + 1, last - first - 1);
    const QString destination = parameters.mid(last + 1);
    if (source.isEmpty() || destination.isEmpty())
        return fail(argc, argv, usage);
    QString error;
    if (flag == QLatin1String("-c"))
        error = compress(source, destination);
    else if (flag == QLatin1String("-d"))
        error = extract(source, destination);
    else
        return fail(argc, argv, usage);
    return error.isEmpty() ? 0 : fail(argc, argv, error);
}
