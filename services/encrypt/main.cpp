// tornelia-encrypt: enciphers a file into FILE.tnlc, or deciphers a .tnlc
// file back to its own name, under a password.
//
// The key comes from the password through Argon2id with a random salt; the
// data go through XChaCha20-Poly1305 in libsodium's secretstream, in chunks,
// so a wrong password, a changed byte, a cut or an appended tail are all
// found before the result is kept. The result is written under a temporary
// name and renamed only when complete; the input is only ever read.
//
// File layout: "TNLC" 0x01 0 0 0, 16 bytes of salt, the 24-byte stream
// header, then chunks of up to 64 KiB, each with its 17-byte tag, the last
// one marked final.
//
// Usage: tornelia-encrypt [--password-stdin] [FILE]
// Without FILE a file is asked for; without --password-stdin the password is
// asked in a window (twice when enciphering).

#include <sodium.h>

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSaveFile>
#include <QVBoxLayout>

#include <array>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

namespace {

constexpr char kMagic[8] = {'T', 'N', 'L', 'C', 1, 0, 0, 0};
constexpr qsizetype kChunk = 64 * 1024;
const QString kSuffix = QStringLiteral(".tnlc");
const QString kTitle = QStringLiteral("Cifratura documento");
const QString kWrong = QStringLiteral("Password errata o file danneggiato");

bool gui = true;

void report(const QString& text, bool error)
{
    if (gui) {
        if (error)
            QMessageBox::critical(nullptr, kTitle, text);
        else
            QMessageBox::information(nullptr, kTitle, text);
    } else {
        std::fprintf(error ? stderr : stdout, "%s\n", text.toLocal8Bit().constData());
    }
}

// The key, kept out of swap and wiped when done.
struct Key {
    std::array<unsigned char, crypto_secretstream_xchacha20poly1305_KEYBYTES> bytes{};
    Key() { sodium_mlock(bytes.data(), bytes.size()); }
    ~Key() { sodium_munlock(bytes.data(), bytes.size()); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
};

bool deriveKey(Key& key, const QByteArray& password, const unsigned char* salt)
{
    return crypto_pwhash(key.bytes.data(), key.bytes.size(), password.constData(),
                         static_cast<unsigned long long>(password.size()), salt, crypto_pwhash_OPSLIMIT_INTERACTIVE,
                         crypto_pwhash_MEMLIMIT_INTERACTIVE, crypto_pwhash_ALG_ARGON2ID13) == 0;
}

// Reads up to n bytes, fewer only at the end of the file.
QByteArray readFull(QFile& in, qsizetype n)
{
    QByteArray out;
    while (out.size() < n) {
        const QByteArray part = in.read(n - out.size());
        if (part.isEmpty())
            break;
        out += part;
    }
    return out;
}

QString encipher(QFile& in, QSaveFile& out, const QByteArray& password)
{
    unsigned char salt[crypto_pwhash_SALTBYTES];
    randombytes_buf(salt, sizeof salt);
    Key key;
    if (!deriveKey(key, password, salt))
        return QStringLiteral("Memoria insufficiente per derivare la chiave.");
    crypto_secretstream_xchacha20poly1305_state state;
    unsigned char header[crypto_secretstream_xchacha20poly1305_HEADERBYTES];
    crypto_secretstream_xchacha20poly1305_init_push(&state, header, key.bytes.data());
    out.write(kMagic, sizeof kMagic);
    out.write(reinterpret_cast<const char*>(salt), sizeof salt);
    out.write(reinterpret_cast<const char*>(header), sizeof header);
    QByteArray cipher(kChunk + crypto_secretstream_xchacha20poly1305_ABYTES, Qt::Uninitialized);
    QByteArray chunk = readFull(in, kChunk);
    for (;;) {
        const QByteArray next = chunk.size() == kChunk ? readFull(in, kChunk) : QByteArray();
        const bool last = next.isEmpty();
        unsigned long long written = 0;
        crypto_secretstream_xchacha20poly1305_push(
            &state, reinterpret_cast<unsigned char*>(cipher.data()), &written,
            reinterpret_cast<const unsigned char*>(chunk.constData()), static_cast<unsigned long long>(chunk.size()),
            nullptr, 0,
            last ? crypto_secretstream_xchacha20poly1305_TAG_FINAL : crypto_secretstream_xchacha20poly1305_TAG_MESSAGE);
        if (out.write(cipher.constData(), qint64(written)) != qint64(written))
            return QStringLiteral("Impossibile scrivere il file %1.").arg(out.fileName());
        if (last)
            break;
        chunk = next;
    }
    if (in.error() != QFileDevice::NoError)
        return QStringLiteral("Impossibile leggere il file %1.").arg(in.fileName());
    return {};
}

QString decipher(QFile& in, QSaveFile& out, const QByteArray& password)
{
    const QByteArray magic = readFull(in, sizeof kMagic);
    if (magic != QByteArray(kMagic, sizeof kMagic))
        return QStringLiteral("Il file %1 non è un documento cifrato da Tornelia.").arg(in.fileName());
    const QByteArray salt = readFull(in, crypto_pwhash_SALTBYTES);
    const QByteArray header = readFull(in, crypto_secretstream_xchacha20poly1305_HEADERBYTES);
    if (salt.size() != crypto_pwhash_SALTBYTES || header.size() != crypto_secretstream_xchacha20poly1305_HEADERBYTES)
        return kWrong;
    Key key;
    if (!deriveKey(key, password, reinterpret_cast<const unsigned char*>(salt.constData())))
        return QStringLiteral("Memoria insufficiente per derivare la chiave.");
    crypto_secretstream_xchacha20poly1305_state state;
    if (crypto_secretstream_xchacha20poly1305_init_pull(
            &state, reinterpret_cast<const unsigned char*>(header.constData()), key.bytes.data()) != 0)
        return kWrong;
    QByteArray plain(kChunk, Qt::Uninitialized);
    for (;;) {
        const QByteArray chunk = readFull(in, kChunk + crypto_secretstream_xchacha20poly1305_ABYTES);
        // The end of the file before the final chunk: the file was cut.
        if (chunk.size() < qsizetype(crypto_secretstream_xchacha20poly1305_ABYTES))
            return kWrong;
        unsigned long long length = 0;
        unsigned char tag = 0;
        if (crypto_secretstream_xchacha20poly1305_pull(
                &state, reinterpret_cast<unsigned char*>(plain.data()), &length, &tag,
                reinterpret_cast<const unsigned char*>(chunk.constData()),
                static_cast<unsigned long long>(chunk.size()), nullptr, 0) != 0)
            return kWrong;
        if (out.write(plain.constData(), qint64(length)) != qint64(length))
            return QStringLiteral("Impossibile scrivere il file %1.").arg(out.fileName());
        if (tag == crypto_secretstream_xchacha20poly1305_TAG_FINAL) {
            // Anything after the final chunk was added to the file.
            if (!in.atEnd())
                return kWrong;
            return {};
        }
    }
}

// The password window: twice when enciphering, so a typing slip is caught
// before it locks the document away.
std::optional<QByteArray> askPassword(bool twice, const QString& fileName)
{
    for (;;) {
        QDialog dialog;
        dialog.setObjectName(QStringLiteral("frmPassword"));
        dialog.setWindowTitle(twice ? QStringLiteral("Cifratura documento") : QStringLiteral("Decifratura documento"));
        auto* layout = new QVBoxLayout(&dialog);
        layout->addWidget(new QLabel(
            (twice ? QStringLiteral("Scegli la password per cifrare %1") : QStringLiteral("Password per decifrare %1"))
                .arg(QFileInfo(fileName).fileName()),
            &dialog));
        auto* form = new QFormLayout;
        auto* first = new QLineEdit(&dialog);
        first->setEchoMode(QLineEdit::Password);
        form->addRow(QStringLiteral("Password:"), first);
        auto* second = new QLineEdit(&dialog);
        second->setEchoMode(QLineEdit::Password);
        if (twice)
            form->addRow(QStringLiteral("Ripeti la password:"), second);
        else
            second->hide();
        layout->addLayout(form);
        auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
        buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Annulla"));
        QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
        QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
        layout->addWidget(buttons);
        dialog.resize(380, dialog.sizeHint().height());
        if (dialog.exec() != QDialog::Accepted)
            return std::nullopt;
        if (first->text().isEmpty()) {
            report(QStringLiteral("La password non può essere vuota."), true);
            continue;
        }
        if (twice && first->text() != second->text()) {
            report(QStringLiteral("Le due password non coincidono."), true);
            continue;
        }
        return first->text().toUtf8();
    }
}

int run(const QString& givenPath, bool passwordFromStdin)
{
    QString path = givenPath;
    if (path.isEmpty()) {
        if (!gui) {
            report(QStringLiteral("Uso: tornelia-encrypt [--password-stdin] FILE"), true);
            return 2;
        }
        path = QFileDialog::getOpenFileName(nullptr, QStringLiteral("Scegli il file da cifrare o decifrare"));
        if (path.isEmpty())
            return 0;
    }
    const QFileInfo info(path);
    if (!info.isFile()) {
        report(QStringLiteral("Il file %1 non esiste.").arg(path), true);
        return 1;
    }
    const bool deciphering = path.endsWith(kSuffix, Qt::CaseInsensitive);
    const QString target = deciphering ? path.chopped(kSuffix.size()) : path + kSuffix;
    if (QFileInfo::exists(target)) {
        report(QStringLiteral("Il file %1 esiste già: spostalo o rinominalo e riprova.").arg(target), true);
        return 1;
    }
    QByteArray password;
    if (passwordFromStdin) {
        std::string line;
        std::getline(std::cin, line);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        password = QByteArray::fromStdString(line);
        sodium_memzero(line.data(), line.size());
        if (password.isEmpty()) {
            report(QStringLiteral("La password non può essere vuota."), true);
            return 1;
        }
    } else {
        const auto asked = askPassword(!deciphering, path);
        if (!asked)
            return 0;
        password = *asked;
    }
    QFile in(path);
    if (!in.open(QIODevice::ReadOnly)) {
        report(QStringLiteral("Impossibile leggere il file %1.").arg(path), true);
        return 1;
    }
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly)) {
        report(QStringLiteral("Impossibile scrivere il file %1.").arg(target), true);
        return 1;
    }
    const QString error = deciphering ? decipher(in, out, password) : encipher(in, out, password);
    sodium_memzero(password.data(), size_t(password.size()));
    if (!error.isEmpty()) {
        out.cancelWriting();
        report(error, true);
        return 1;
    }
    if (!out.commit()) {
        report(QStringLiteral("Impossibile scrivere il file %1.").arg(target), true);
        return 1;
    }
    if (gui)
        report((deciphering ? QStringLiteral("Documento decifrato in %1") : QStringLiteral("Documento cifrato in %1"))
                   .arg(target),
               false);
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    bool passwordFromStdin = false;
    QString path;
    for (int i = 1; i < argc; ++i) {
        const QString a = QString::fromLocal8Bit(argv[i]);
        if (a == QLatin1String("--password-stdin"))
            passwordFromStdin = true;
        else if (path.isEmpty())
            path = a;
    }
    gui = !passwordFromStdin;
    std::unique_ptr<QApplication> app;
    if (gui)
        app = std::make_unique<QApplication>(argc, argv);
    if (sodium_init() < 0) {
        report(QStringLiteral("Impossibile inizializzare la libreria di cifratura."), true);
        return 1;
    }
    return run(path, passwordFromStdin);
}
