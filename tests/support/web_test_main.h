#pragma once

#include "views/web_views.h"

#include <QApplication>
#include <QTest>

/// What QTEST_MAIN is for tests that show conversations: the web engine wants to be prepared before there is
/// an application object.
template <typename Test>
int runWebTest(int argc, char **argv)
{
    prepareWebViews();
    QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

#define QB_WEB_TEST_MAIN(Test)                                                                               \
    int main(int argc, char **argv)                                                                          \
    {                                                                                                        \
        return runWebTest<Test>(argc, argv);                                                                 \
    }
