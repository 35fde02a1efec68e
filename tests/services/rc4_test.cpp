#include "services/cls_rc4.h"

#include <gtest/gtest.h>

#include <vector>

namespace tornelia {
namespace {

TEST(RC4, StandardVectors)
{
    struct Case {
        const char* key;
        const char* plain;
        const char* cipherHex;
    };
    const Case cases[] = {
        {"Key", "Plaintext", "bbf316e8d940af0ad3"},
        {"Wiki", "pedia", "1021bf0420"},
        {"Secret", "Attack at dawn", "45a01f645fc35b383552544b9bf5"},
    };
    for (const Case& c : cases) {
        clsRC4 rc4;
        QByteArray bytes(c.plain);
        rc4.EncryptByte(bytes, QString::fromLatin1(c.key));
        EXPECT_EQ(bytes.toHex(), QByteArray(c.cipherHex)) << c.key;
        // The same object, asked again, starts the stream again; deciphering
        // gives the plain text back.
        QByteArray again(c.plain);
        rc4.EncryptByte(again);
        EXPECT_EQ(again, bytes) << c.key;
        rc4.DecryptByte(again, QString::fromLatin1(c.key));
        EXPECT_EQ(again, QByteArray(c.plain)) << c.key;
    }
}

TEST(RC4, ChangingTheKeyRunsTheScheduleAgain)
{
    clsRC4 rc4;
    QByteArray a("Plaintext");
    rc4.EncryptByte(a, QStringLiteral("Wiki"));
    rc4.Key(QStringLiteral("Key"));
    QByteArray b("Plaintext");
    rc4.EncryptByte(b);
    EXPECT_EQ(b.toHex(), QByteArray("bbf316e8d940af0ad3"));
    EXPECT_NE(a, b);
}

TEST(RC4, StringsGoThroughTheWindowsCodePage)
{
    clsRC4 rc4;
    const QString plain = QStringLiteral("Perché costa 5 € — così");
    const QString cipher = rc4.EncryptString(plain, QStringLiteral("chiave"));
    EXPECT_NE(cipher, plain);
    EXPECT_EQ(rc4.DecryptString(cipher, QStringLiteral("chiave")), plain);
    // The cipher text is the byte cipher read back as Windows-1252.
    QByteArray bytes = toAnsi(plain);
    rc4.EncryptByte(bytes);
    EXPECT_EQ(cipher, fromAnsi(bytes));
    // A character the code page lacks is sent as "?".
    EXPECT_EQ(rc4.DecryptString(rc4.EncryptString(QStringLiteral("α"))), QStringLiteral("?"));
}

std::vector<int> progressOf(int size)
{
    clsRC4 rc4;
    std::vector<int> reports;
    rc4.Progress = [&reports](int& percent) { reports.push_back(percent); };
    QByteArray bytes(size, 'x');
    rc4.EncryptByte(bytes, QStringLiteral("Key"));
    return reports;
}

TEST(RC4, ProgressReports)
{
    std::vector<int> every(100);
    for (int i = 0; i < 100; ++i)
        every[i] = i;
    every.push_back(100);
    // A thousand bytes: each percent once, the last one added after the loop.
    EXPECT_EQ(progressOf(1000), every);
    // Ten bytes: one report a byte, the last already at 100.
    EXPECT_EQ(progressOf(10), (std::vector<int>{0, 11, 22, 33, 44, 55, 66, 77, 88, 100}));
    EXPECT_EQ(progressOf(1), (std::vector<int>{100}));
    EXPECT_EQ(progressOf(0), (std::vector<int>{100}));
}

}  // namespace
}  // namespace tornelia
