#pragma once

// RC4 over byte arrays and strings. The class is kept as a tested building
// block: RC4 is broken as a cipher, so the documents themselves are enciphered
// by the separate encryption tool, which uses a modern construction.

#include <QByteArray>
#include <QString>

#include <array>
#include <cstdint>
#include <functional>

namespace tornelia {

class clsRC4 {
public:
    // Sets the key and runs the key schedule; the same key again does nothing.
    void Key(const QString& key);
    const QString& storedKey() const { return key_; }

    // Enciphers in place. Every call restarts the key stream, so one key
    // gives the same stream to every buffer.
    void EncryptByte(QByteArray& bytes, const QString& key = QString());
    // The same operation: RC4 is its own inverse.
    void DecryptByte(QByteArray& bytes, const QString& key = QString());
    // Through Windows-1252 both ways, the code page the documents come from.
    QString EncryptString(const QString& text, const QString& key = QString());
    QString DecryptString(const QString& text, const QString& key = QString());

    // Fired as the work goes, with the percent done; the handler may change it.
    std::function<void(int& percent)> Progress;

private:
    QString key_;
    std::array<std::uint16_t, 256> sbox_{};
};

// Text to bytes and back through Windows-1252; a character the code page
// lacks becomes "?".
QByteArray toAnsi(const QString& text);
QString fromAnsi(const QByteArray& bytes);

}  // namespace tornelia
