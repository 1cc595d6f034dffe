// SPDX-FileCopyrightText: 2026 The Velquarin developers
// SPDX-License-Identifier: MIT
#pragma once

#include "support/Await.h"

#include <QCoreApplication>
#include <QTest>

// Qt Test gives up after five seconds, which a busy machine may take.
#undef QTRY_VERIFY
#undef QTRY_VERIFY2
#undef QTRY_COMPARE
#define VELQUARIN_TRY(expression, verdict)                                                                             \
    do {                                                                                                               \
        [[maybe_unused]] const bool hasCome =                                                                          \
            QTest::qWaitFor([&] { return bool(expression); }, velquarin::test::waitLimitMs);                           \
        verdict;                                                                                                       \
    } while (false)
#define QTRY_VERIFY(expression) VELQUARIN_TRY((expression), QVERIFY(expression))
#define QTRY_VERIFY2(expression, message) VELQUARIN_TRY((expression), QVERIFY2((expression), (message)))
#define QTRY_COMPARE(actual, expected) VELQUARIN_TRY((actual) == (expected), QCOMPARE((actual), (expected)))

namespace velquarin::test {

//! Runs one test class with the arguments of a test program, and gives its exit status.
using TestRun = int (*)(int argc, char **argv);

//! Makes a test class known to the program that it is linked into. Many share one program, since linking each alone
//! took longer than running it; the first argument says which is meant: "gui_tests tst_popover [arguments of Qt Test]".
class RegisteredTest
{
public:
    //! @param file  of the class; its name without folder and ending is that of the test
    RegisteredTest(const char *file, TestRun run);
};

//! Runs @p Class inside an application of that kind.
template <typename Class, typename Application>
int runIn(int argc, char **argv)
{
    const Application application(argc, argv);
    Class tests;
    return QTest::qExec(&tests, argc, argv);
}

//! Runs @p Class without an application: it must not need one.
template <typename Class>
int runAlone(int argc, char **argv)
{
    Class tests;
    return QTest::qExec(&tests, argc, argv);
}

}  // namespace velquarin::test

#define VELQUARIN_TEST_RUN(run) static const velquarin::test::RegisteredTest registeredTest(__FILE__, run);
//! For a class that shows nothing.
#define VELQUARIN_TEST(Class) VELQUARIN_TEST_RUN((velquarin::test::runIn<Class, QCoreApplication>))
//! For a class that opens windows or draws; its file includes QApplication.
#define VELQUARIN_WINDOW_TEST(Class) VELQUARIN_TEST_RUN((velquarin::test::runIn<Class, QApplication>))
