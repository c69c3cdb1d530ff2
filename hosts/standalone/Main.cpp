#include "hosts/standalone/AppIcon.h"
#include "hosts/standalone/HostSettings.h"
#include "hosts/standalone/MainWindow.h"
#include "hosts/tour/Tour.h"

#include "pages/Pages.h"

#include "jsoneditor/view/DemoDataSource.h"
#include "jsoneditor/view/RestView.h"

#include "runtime/service/ServicePlugins.h"

#include "platform/CoreFiles.h"
#include "platform/ExceptionDisplay.h"
#include "platform/Exceptions.h"
#include "platform/Fonts.h"
#include "platform/VisibleText.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>

#include <cstdio>
#include <memory>

namespace {

constexpr int BadCommandLine = 2;

struct TOptions {
    bool DemoEditor = false;
    QString TourFolder;
    QStringList Documents;
};

// Ends the program where the command line is wrong or only asks for information.
TOptions ReadCommandLine(const QCoreApplication& AApplication) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Browses REST services, fills in requests, executes them and shows the answers."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    const QCommandLineOption demo(QStringLiteral("demo-editor"),
                                  QStringLiteral("Shows the row editor alone, with random rows."));
    const QCommandLineOption tour(
        QStringLiteral("tour"),
        QStringLiteral("Drives itself through the sample services and leaves pictures in <folder>."),
        QStringLiteral("folder"));
    parser.addOptions({demo, tour});
    parser.addPositionalArgument(QStringLiteral("documents"),
                                 QStringLiteral("OpenAPI and Swagger documents to open."),
                                 QStringLiteral("[documents...]"));
    QString error;
    if (!parser.parse(AApplication.arguments()))
        error = parser.errorText();
    for (const QString& document : parser.positionalArguments()) {
        if (error.isEmpty() && !QFileInfo::exists(document))
            error = QStringLiteral("There is no document '%1'.").arg(document);
    }
    if (!error.isEmpty()) {
        std::fprintf(stderr, "%s\nTry 'zoexplorer --help'.\n", qUtf8Printable(VisibleLines(error)));
        std::exit(BadCommandLine);
    }
    if (parser.isSet(version))
        parser.showVersion();
    if (parser.isSet(help))
        parser.showHelp();
    return {parser.isSet(demo), parser.value(tour), parser.positionalArguments()};
}

int RunDemoEditor() {
    TZOIdeTheming::SetTheme(HostSettings::Theme());
    TZORestView view;
    view.setWindowTitle(QStringLiteral("Row editor"));
    view.resize(640, 480);
    view.SetOwnDataSource(true);
    view.SetDataSource(new TZODemoDataSource);
    view.show();
    return QApplication::exec();
}

int RunExplorer(const TOptions& AOptions) {
    TZOServicePlugins plugins;
    plugins.LoadAll();
    StartPages();
    int exitCode = 0;
    {
        TZOMainWindow window;
        for (const auto& failure : plugins.Failures())
            window.Notify(failure.ToText());
        window.show();
        if (!AOptions.Documents.isEmpty())
            QMetaObject::invokeMethod(
                &window, [&] { window.OpenDocuments(AOptions.Documents); }, Qt::QueuedConnection);
        std::unique_ptr<TZOTour> tour;
        if (!AOptions.TourFolder.isEmpty()) {
            tour = std::make_unique<TZOTour>(AOptions.TourFolder);
            tour->start();
        }
        exitCode = QApplication::exec();
    }
    StopPages();
    return exitCode;
}

} // namespace

int main(int AArgc, char** AArgv) {
    ForbidCoreFiles();
    QApplication application(AArgc, AArgv);
    QApplication::setApplicationName(QStringLiteral("zoexplorer"));
    QApplication::setApplicationVersion(QStringLiteral(ZO_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("zoexplorer"));
    QApplication::setWindowIcon(AppIcon());
    // Menus and dialogs are set in the font of the pages.
    QApplication::setFont(UiFont(QStringLiteral("Segoe UI"), 12));
    const TOptions options = ReadCommandLine(application);
    try {
        return options.DemoEditor ? RunDemoEditor() : RunExplorer(options);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s: %s\n", qUtf8Printable(ExceptionClassName(e)),
                     qUtf8Printable(VisibleLines(ExceptionMessage(e))));
        return 1;
    }
}
