// One QGuiApplication for every test: fonts and text layout need it. The
// offscreen platform keeps the tests off any display, and the settings and
// data folders point into a throw-away folder so that no test touches the
// real user's files.
#include <gtest/gtest.h>

#include <QApplication>
#include <QStandardPaths>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
