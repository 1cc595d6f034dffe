// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
// The main function of every test program.

#include "support/TestProgram.h"

#include <QByteArray>
#include <QFileInfo>
#include <QProcessEnvironment>

#include <cstdio>
#include <map>

namespace velquarin::test {

namespace {

std::map<QByteArray, TestRun> &knownTests()
{
    static std::map<QByteArray, TestRun> tests;
    return tests;
}

int listTests()
{
    std::fputs("The first argument is the name of a test, one of:\n", stderr);
    for (const auto &[name, run] : knownTests())
        std::fprintf(stderr, "  %s\n", name.constData());
    return 2;
}

// By hand a test shall run as it does under ctest: nothing of the desktop that it happens to be started on counts. The
// few tests that want another platform or scale say so in variables of our own.
void pinWhatTheToolkitReads()
{
    const auto ours = [](const char *variable, const char *otherwise) {
        const auto value = qgetenv(variable);
        return value.isEmpty() ? QByteArray(otherwise) : value;
    };
    qputenv("QT_QPA_PLATFORM", ours("VELQUARIN_TEST_PLATFORM", "offscreen"));
    qputenv("QT_SCALE_FACTOR", ours("VELQUARIN_TEST_SCALE", "1"));
    qputenv("QT_FONT_DPI", "96");
    qputenv("FONTCONFIG_FILE", VELQUARIN_TEST_FONTS);
    for (const char *variable :
         {"QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME", "QT_SCREEN_SCALE_FACTORS", "QT_SCALE_FACTOR_ROUNDING_POLICY",
          "QT_ENABLE_HIGHDPI_SCALING", "QT_LOGGING_RULES", "QT_PLUGIN_PATH"})
        qunsetenv(variable);
}

// A hook of git that runs the tests would else have them work in the repository that it is called for.
void forgetOtherRepositories()
{
    const auto names = QProcessEnvironment::systemEnvironment().keys();
    for (const auto &name : names) {
        if (name.startsWith(QLatin1String("GIT_")))
            qunsetenv(name.toLocal8Bit().constData());
    }
}

}  // namespace

RegisteredTest::RegisteredTest(const char *file, TestRun run)
{
    knownTests().emplace(QFileInfo(QString::fromUtf8(file)).completeBaseName().toUtf8(), run);
}

}  // namespace velquarin::test

int main(int argc, char **argv)
{
    using namespace velquarin::test;
    const auto test = argc > 1 ? knownTests().find(argv[1]) : knownTests().end();
    if (test == knownTests().end())
        return listTests();
    pinWhatTheToolkitReads();
    forgetOtherRepositories();
    argv[1] = argv[0];
    return test->second(argc - 1, argv + 1);
}
