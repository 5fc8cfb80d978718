// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// The main() of an end-to-end test that drives the real binary on an X display. Without
// one (run by hand outside CTest) it starts offscreen and tells the test, whose
// constructor takes whether there is a display, so that it can say why it does nothing.

#include <QApplication>
#include <QTest>

#define CORKWHEEL_DISPLAY_TEST_MAIN(TestObject)                                                    \
    int main(int argc, char* argv[]) {                                                             \
        const bool hasDisplay = !qEnvironmentVariableIsEmpty("DISPLAY");                           \
        if (!hasDisplay)                                                                           \
            qputenv("QT_QPA_PLATFORM", "offscreen");                                               \
        QApplication app(argc, argv);                                                              \
        TestObject test(hasDisplay);                                                               \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
