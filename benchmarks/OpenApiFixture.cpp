#include "benchmarks/OpenApiFixture.h"

#include "benchmarks/WindowTiming.h"

#include "hosts/standalone/MainWindow.h"

#include "pages/Pages.h"
#include "pages/SearchList.h"

#include "shell/PageFactory.h"
#include "shell/ShellFrame.h"

#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QLineEdit>
#include <QMimeData>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <simdjson.h>

#include <algorithm>
#include <chrono>
#include <vector>

using WindowTiming::Expect;

namespace {

const QString Packages = QStringLiteral(ZO_NPM_FOLDER);

QByteArray Read(const QString& AFile) {
    QFile file(AFile);
    Expect(file.open(QIODevice::ReadOnly), "a document is missing: scripts/npm-packages bench installs it");
    return file.readAll();
}

QByteArray RunNode(const QStringList& AArguments) {
    QProcess node;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZO_NPM_FOLDER"), Packages);
    node.setProcessEnvironment(environment);
    node.start(QStringLiteral("node"),
               QStringList{QStringLiteral("--max-old-space-size=6000"), QStringLiteral(ZO_PEERS_SCRIPT)} +
                   AArguments);
    Expect(node.waitForFinished(300000) && node.exitCode() == 0, "node failed");
    return node.readAllStandardOutput();
}

/// Waits until AIsThere, and paints what is there then.
void Await(const std::function<bool()>& AIsThere) {
    const double start = OpenApiFixture::Now();
    while (!AIsThere()) {
        QApplication::processEvents();
        Expect(OpenApiFixture::Now() - start < 30000, "the window does not get on");
    }
    QApplication::processEvents();
}

void Drop(QWidget& AWindow, const QString& AFile) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(AFile)});
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&AWindow, &enter);
    Expect(enter.isAccepted(), "the window does not take the document");
    QDropEvent drop(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&AWindow, &drop);
}

OpenApiFixture::TWindowTimes TimeWindow() {
    OpenApiFixture::TWindowTimes times;
    TZOMainWindow window;
    window.resize(WindowTiming::WindowSize);
    window.show();
    TZOShellFrame* shell = window.Shell();
    Await([&] { return shell->GetNavStackCount() == 1; });
    const int before = shell->GetServiceCount();

    double start = OpenApiFixture::Now();
    Drop(window, OpenApiFixture::JsonFile());
    Await([&] { return shell->GetServiceCount() > before; });
    shell->NavigateAsync(PageFactory().MakeOperationList(shell, shell->GetServices(before)));
    Await([&] { return shell->GetNavStackCount() == 2; });
    times.ListPainted = OpenApiFixture::Now() - start;

    auto* list = window.findChild<TZOSearchList*>();
    auto* edit = window.findChild<QLineEdit*>();
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (auto* found = qobject_cast<TZOSearchList*>(widget); found && found->isVisible())
            list = found;
        if (auto* found = qobject_cast<QLineEdit*>(widget); found && found->isVisible())
            edit = found;
    }
    Expect(list && edit && list->model()->rowCount() == 1223, "the list shows another number of operations");
    start = OpenApiFixture::Now();
    WindowTiming::Key(edit, Qt::Key_R, QStringLiteral("r"));
    QApplication::processEvents();
    times.KeyPainted = OpenApiFixture::Now() - start;
    Expect(list->model()->rowCount() < 1223, "the search filters nothing");

    list->setCurrentIndex(list->model()->index(40, 0));
    start = OpenApiFixture::Now();
    WindowTiming::Key(list, Qt::Key_Return);
    Await([&] { return shell->GetNavStackCount() == 3; });
    times.RequestPainted = OpenApiFixture::Now() - start;
    return times;
}

double MedianOf(std::vector<double> ATimes) {
    std::sort(ATimes.begin(), ATimes.end());
    return ATimes[ATimes.size() / 2];
}

} // namespace

QString OpenApiFixture::JsonFile() {
    const QString file =
        Packages + QStringLiteral("/node_modules/@octokit/openapi/generated/api.github.com.json");
    Expect(QFile::exists(file), "the document is missing: scripts/npm-packages bench installs it");
    return file;
}

QString OpenApiFixture::YamlFile() {
    const QString file = Packages + QStringLiteral("/api.github.com.yaml");
    if (!QFile::exists(file))
        RunNode({QStringLiteral("yaml"), JsonFile(), file});
    return file;
}

const QByteArray& OpenApiFixture::Json() {
    static const QByteArray text = Read(JsonFile()) + QByteArray(qsizetype(simdjson::SIMDJSON_PADDING), '\0');
    return text;
}

const QByteArray& OpenApiFixture::Yaml() {
    static const QByteArray text = Read(YamlFile());
    return text;
}

double OpenApiFixture::Now() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

double OpenApiFixture::Median(int ACount, const std::function<void()>& AStep) {
    std::vector<double> times;
    for (int i = 0; i < ACount; ++i) {
        const double start = Now();
        AStep();
        times.push_back(Now() - start);
    }
    return MedianOf(std::move(times));
}

double OpenApiFixture::Node(const char* ATask) {
    return RunNode({QString::fromLatin1(ATask), JsonFile()}).trimmed().toDouble();
}

double OpenApiFixture::ZoApi() {
    return Median(7, [] {
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        process.start(QApplication::applicationDirPath() + QStringLiteral("/zoapi"),
                      {QStringLiteral("operations"), JsonFile()});
        Expect(process.waitForFinished() && process.exitCode() == 0, "zoapi failed");
    });
}

OpenApiFixture::TWindowTimes OpenApiFixture::WindowOnce() {
    const QTemporaryDir folder;
    qputenv("ZO_SETTINGS_FILE", folder.filePath(QStringLiteral("settings.db")).toUtf8());
    StartPages();
    const TWindowTimes times = TimeWindow();
    StopPages();
    qunsetenv("ZO_SETTINGS_FILE");
    return times;
}

const OpenApiFixture::TWindowTimes& OpenApiFixture::Window() {
    static const TWindowTimes times = [] {
        std::vector<double> list, request, key;
        for (int i = 0; i < 7; ++i) {
            const TWindowTimes run = WindowOnce();
            list.push_back(run.ListPainted);
            request.push_back(run.RequestPainted);
            key.push_back(run.KeyPainted);
        }
        return TWindowTimes{MedianOf(list), MedianOf(request), MedianOf(key)};
    }();
    return times;
}
