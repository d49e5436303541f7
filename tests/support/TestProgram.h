#pragma once

#include "support/DataRows.h"

#include <QTest>

/// Test programs hold several test classes. The first argument of such a program is the name of the class to
/// run, so each class has a process of its own; all further arguments go to Qt Test.
///
/// QUILMORA_TEST(MyTest, runCoreTest) at the end of a source file adds MyTest to its program. The function, a
/// template like those below, makes the application that the class needs, runs the class and returns the exit
/// status.
#define QUILMORA_TEST(Class, run)                                                                            \
    static const quilmora::test::TestRegistration Class##Registration{#Class, run<Class>};

namespace quilmora::test {

/// For all tests.
using namespace Qt::StringLiterals;

struct TestRegistration final {
    using Run = int (*)(int argc, char **argv);

    /// `name` must outlive the program.
    TestRegistration(const char *name, Run run);
};

/// Runs the tests of a class without an application object.
template <typename Test>
int runTest(int argc, char **argv)
{
    Test test;
    return QTest::qExec(&test, argc, argv);
}

/// Runs the tests of a class with an application object without windows.
template <typename Test>
int runCoreTest(int argc, char **argv)
{
    const QCoreApplication application{argc, argv};
    return runTest<Test>(argc, argv);
}

/// Runs the tests of a class with an application object that can load fonts and make windows.
template <typename Test>
int runGuiTest(int argc, char **argv)
{
    const QGuiApplication application{argc, argv};
    return runTest<Test>(argc, argv);
}

} // namespace quilmora::test
