// The two helper programs we ship, run as the program runs them.
#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace {

QString beside(const char* name)
{
    return QFileInfo(QStringLiteral(TORNELIA_BINARY)).dir().filePath(QString::fromLatin1(name));
}

struct Outcome {
    int code = -1;
    QString output;
};

Outcome run(const QString& program, const QStringList& arguments, const QByteArray& input = {})
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, arguments);
    if (!p.waitForStarted(10000))
        return {};
    p.write(input);
    p.closeWriteChannel();
    p.waitForFinished(60000);
    return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, QString::fromLocal8Bit(p.readAll())};
}

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

QByteArray sampleBytes(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator gen(7);
    for (char& b : bytes)
        b = char(gen.bounded(256));
    return bytes;
}

TEST(Zipper, CompressThenExtractGivesTheSameBytes)
{
    QTemporaryDir dir;
    const QString a = dir.filePath(QStringLiteral("a.rtf"));
    const QByteArray content = "{\\rtf1\\ansi Ciao \\'e8 mondo}" + sampleBytes(200000);
    writeFile(a, content);
    const QString zip = dir.filePath(QStringLiteral("a.zip"));
    Outcome r = run(beside("tornelia-zipper"), {QStringLiteral("-c*") + a + QLatin1Char('*') + zip});
    ASSERT_EQ(r.code, 0) << r.output.toStdString();
    if (!QStandardPaths::findExecutable(QStringLiteral("unzip")).isEmpty()) {
        const Outcome list = run(QStringLiteral("unzip"), {QStringLiteral("-l"), zip});
        EXPECT_EQ(list.code, 0);
        EXPECT_TRUE(list.output.contains(QStringLiteral(" a.rtf\n"))) << list.output.toStdString();
    }
    const QString out = dir.filePath(QStringLiteral("out/"));
    r = run(beside("tornelia-zipper"), {QStringLiteral("-d*") + zip + QLatin1Char('*') + out});
    ASSERT_EQ(r.code, 0) << r.output.toStdString();
    EXPECT_EQ(readAll(dir.filePath(QStringLiteral("out/a.rtf"))), content);
    EXPECT_EQ(readAll(a), content);
}

TEST(Zipper, BadInputIsRefusedInItalian)
{
    QTemporaryDir dir;
    const QString junk = dir.filePath(QStringLiteral("finto.zip"));
    writeFile(junk, "non sono un archivio");
    Outcome r = run(beside("tornelia-zipper"), {QStringLiteral("-d*") + junk + QLatin1Char('*') + dir.filePath(QStringLiteral("o"))});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.output.startsWith(QStringLiteral("Impossibile aprire l'archivio"))) << r.output.toStdString();
    r = run(beside("tornelia-zipper"), {QStringLiteral("-c*") + dir.filePath(QStringLiteral("manca")) + QStringLiteral("*x.zip")});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.output.startsWith(QStringLiteral("Il file di origine"))) << r.output.toStdString();
    r = run(beside("tornelia-zipper"), {QStringLiteral("-x")});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.output.startsWith(QStringLiteral("Uso:")));
    EXPECT_FALSE(QFile::exists(QStringLiteral("x.zip")));
}

QStringList filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

TEST(Encrypt, RoundTripAndRefusals)
{
    QTemporaryDir dir;
    const QString plain = dir.filePath(QStringLiteral("lettera.rtf"));
    // More than one chunk, so a change in the middle of the stream is caught too.
    const QByteArray content = sampleBytes(150000);
    writeFile(plain, content);
    const QString tool = beside("tornelia-encrypt");
    const QStringList stdinOption{QStringLiteral("--password-stdin")};

    Outcome r = run(tool, stdinOption + QStringList{plain}, "segreta\n");
    ASSERT_EQ(r.code, 0) << r.output.toStdString();
    const QString sealed = plain + QStringLiteral(".tnlc");
    const QByteArray cipher = readAll(sealed);
    EXPECT_EQ(readAll(plain), content);
    EXPECT_FALSE(cipher.contains(content.left(64)));

    // Enciphering again would overwrite the first result: refused.
    r = run(tool, stdinOption + QStringList{plain}, "segreta\n");
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(readAll(sealed), cipher);

    QFile::remove(plain);
    r = run(tool, stdinOption + QStringList{sealed}, "sbagliata\n");
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.output.trimmed(), QStringLiteral("Password errata o file danneggiato"));
    EXPECT_EQ(filesIn(dir.path()), QStringList{QStringLiteral("lettera.rtf.tnlc")});

    // One byte changed, at the start of the data, in the middle, at the end;
    // and a file cut short.
    for (qsizetype at : {qsizetype(48), cipher.size() / 2, cipher.size() - 1, qsizetype(-1)}) {
        QByteArray damaged = cipher;
        if (at < 0)
            damaged.chop(30);
        else
            damaged[at] = char(damaged[at] ^ 0x01);
        const QString copy = dir.filePath(QStringLiteral("rotto.rtf.tnlc"));
        writeFile(copy, damaged);
        r = run(tool, stdinOption + QStringList{copy}, "segreta\n");
        EXPECT_EQ(r.code, 1) << at;
        EXPECT_EQ(r.output.trimmed(), QStringLiteral("Password errata o file danneggiato")) << at;
        EXPECT_EQ(readAll(copy), damaged);
        EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("rotto.rtf")))) << at;
        QFile::remove(copy);
    }

    r = run(tool, stdinOption + QStringList{sealed}, "segreta\n");
    ASSERT_EQ(r.code, 0) << r.output.toStdString();
    EXPECT_EQ(readAll(plain), content);
    EXPECT_EQ(readAll(sealed), cipher);
}

TEST(Encrypt, EmptyFileAndEmptyPassword)
{
    QTemporaryDir dir;
    const QString plain = dir.filePath(QStringLiteral("vuoto.txt"));
    writeFile(plain, {});
    const QString tool = beside("tornelia-encrypt");
    Outcome r = run(tool, {QStringLiteral("--password-stdin"), plain}, "\n");
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(r.output.trimmed(), QStringLiteral("La password non può essere vuota."));
    r = run(tool, {QStringLiteral("--password-stdin"), plain}, "x\n");
    ASSERT_EQ(r.code, 0);
    QFile::remove(plain);
    r = run(tool, {QStringLiteral("--password-stdin"), plain + QStringLiteral(".tnlc")}, "x\n");
    ASSERT_EQ(r.code, 0);
    EXPECT_EQ(readAll(plain), QByteArray());
}

}  // namespace
