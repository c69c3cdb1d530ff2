#include <QApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

int main(int AArgc, char** AArgv) {
    // A test that waits for a dialog nobody answers would hang: fail where there is a screen, too.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(AArgc, AArgv);
    testing::InitGoogleTest(&AArgc, AArgv);
    return RUN_ALL_TESTS();
}
