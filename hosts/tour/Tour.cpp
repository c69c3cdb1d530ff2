#include "hosts/tour/Tour.h"

#include "hosts/tour/TourDriver.h"
#include "hosts/tour/TourRoad_p.h"

#include <QCoreApplication>

#include <cstdio>

TZOTour::TZOTour(const QString& AFolder, QObject* AOwner) : QThread(AOwner), FFolder(AFolder) {}

TZOTour::~TZOTour() { wait(); }

void TZOTour::run() {
    int exitCode = 0;
    try {
        TZOTourDriver driver(FFolder);
        TourRoad::Walk(driver);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "The tour failed. %s\n", qPrintable(ExceptionMessage(e)));
        exitCode = 1;
    }
    QMetaObject::invokeMethod(QCoreApplication::instance(), [exitCode] { QCoreApplication::exit(exitCode); });
}
