#include "tests/hosts/designer/RoadPlugin.h"

#include "tests/hosts/designer/EditorUser.h"
#include "tests/hosts/designer/Roads.h"

#include <QApplication>
#include <QIcon>
#include <QProcess>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int RoadFailed = 3;

void WalkRoad(QDesignerFormEditorInterface* ACore) {
    try {
        TEditorUser user(ACore, qEnvironmentVariable("ZO_ROAD_FOLDER"));
        Roads::Walk(qEnvironmentVariable("ZO_ROAD"), user);
        // Nothing may be asked of the editor any more: it waits for this thread when it ends.
        QProcess::startDetached(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("ctrl+q")});
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", qPrintable(ExceptionMessage(e)));
        std::_Exit(RoadFailed);
    }
}

} // namespace

QIcon TRoadPlugin::icon() const { return {}; }

QWidget* TRoadPlugin::createWidget(QWidget* AParent) { return new TRoad(AParent); }

void TRoadPlugin::initialize(QDesignerFormEditorInterface* ACore) {
    QTimer::singleShot(0, this, [this, ACore] {
        QThread* walker = QThread::create([ACore] { WalkRoad(ACore); });
        walker->setParent(this);
        connect(qApp, &QCoreApplication::aboutToQuit, walker, [walker] { walker->wait(); });
        walker->start();
    });
}
