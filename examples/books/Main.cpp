// The books of the sample library: books [--print]. With --print the list goes to standard output.
#include "BookWindow.h"

#include <samples/Samples.h>

#include <QApplication>

#include <cstdio>

int main(int AArgc, char** AArgv) {
    QApplication application(AArgc, AArgv);
    // Registers the service classes of the forms. A program with a service of its own does that here, too.
    StartSamples();
    int exitCode = 0;
    {
        TBookWindow window;
        window.show();
        if (QApplication::arguments().contains("--print")) {
            window.List();
            std::puts(window.Text().toUtf8().constData());
        } else {
            exitCode = QApplication::exec();
        }
    }
    StopSamples();
    return exitCode;
}
