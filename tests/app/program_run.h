#pragma once

// The built program run as a person runs it from a shell, in a folder of
// its own.

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <ostream>

namespace tornelia::testing {

struct Result {
    int code = -1;
    std::string out, err;
    bool operator==(const Result&) const = default;
};

inline void PrintTo(const Result& r, std::ostream* os) { *os << r.code << " | " << r.out << " | " << r.err; }

class ProgramRunTest : public ::testing::Test {
protected:
    QTemporaryDir dir;

    // Runs the program with no display at all, and with settings and data
    // folders of its own, so the user's settings never change a result.
    // `input` is what the person types; the system's reason for a failed
    // write is "<why>".
    Result run(const QStringList& args, const QByteArray& input = {}, const QString& workDir = {})
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
            env.remove(name);
        env.insert("XDG_CONFIG_HOME", path("config"));
        env.insert("XDG_DATA_HOME", path("data"));
        QProcess p;
        p.setProcessEnvironment(env);
        p.setWorkingDirectory(workDir.isEmpty() ? dir.path() : workDir);
        p.start(TORNELIA_BINARY, args);
        p.write(input);
        p.closeWriteChannel();
        EXPECT_TRUE(p.waitForFinished(60000)) << "the program did not end";
        static const QRegularExpression why("(impossibile scrivere [^:]+): .+");
        const QString err = QString::fromUtf8(p.readAllStandardError()).replace(why, "\\1: <why>");
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput().toStdString(),
                err.toStdString()};
    }
    QString path(const QString& name) const { return dir.filePath(name); }
    void write(const QString& name, const QByteArray& bytes)
    {
        QFile f(path(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
    }
    QByteArray read(const QString& name) const
    {
        QFile f(path(name));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : "<missing>";
    }
};

}  // namespace tornelia::testing
