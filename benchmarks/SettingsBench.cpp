// A keystroke in the options page, which is acknowledged when it is on disk.
#include "benchmarks/Table.h"
#include "benchmarks/WindowTiming.h"

#include "pages/AuthOptionstPage.h"
#include "pages/Pages.h"

#include "shell/ServiceItem.h"
#include "shell/ShellFrame.h"
#include "shell/ShellPage.h"

#include "runtime/service/ServiceBuilder.h"

#include "platform/Registry.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

using namespace WindowTiming;

namespace {

constexpr int ServiceCount = 1000;
constexpr int Keystrokes = 60;
constexpr double AllowedMs = 2;
constexpr double AllowedTimes = 2;

/// The options page of one of many services, whose settings are all stored.
class TOptionsWindow {
public:
    TOptionsWindow() {
        qputenv("ZO_SETTINGS_FILE", QFile::encodeName(FFolder.filePath(QStringLiteral("settings.db"))));
        for (int i = 0; i < ServiceCount; ++i) {
            const QString name = QStringLiteral("TService%1").arg(i);
            FClasses.push_back(std::make_unique<TZORestServiceClass>(
                name,
                TZOServiceBuilder(name, {}, QStringLiteral("http://127.0.0.1")).Scope(name, true).Build()));
            TZORestServiceClass::Register(FClasses.back().get());
        }
        StartPages();
        Store();
        FShell = std::make_unique<TZOShellFrame>();
        FShell->resize(WindowSize);
        FShell->show();
        FItem = FShell->GetServices(ServiceCount / 2);
        FShell->NavigateAsync(TZOAuthOptionstPage::Make(FShell.get(), FItem));
        Flush();
        FEdit = FShell->GetNavStackTop()->Frame()->findChild<QLineEdit*>(QStringLiteral("ClientIdEdit"));
        Expect(FEdit && FEdit->isEnabled(), "the options page has no field for the client");
        FEdit->setFocus();
    }
    ~TOptionsWindow() {
        FShell.reset();
        StopPages();
        for (const auto& serviceClass : FClasses)
            TZORestServiceClass::Unregister(serviceClass.get());
        qunsetenv("ZO_SETTINGS_FILE");
    }
    TOptionsWindow(const TOptionsWindow&) = delete;
    TOptionsWindow& operator=(const TOptionsWindow&) = delete;

    double KeystrokeMs() {
        QElapsedTimer clock;
        clock.start();
        QTest::keyClick(FEdit, Qt::Key_A);
        Flush();
        return double(clock.nsecsElapsed()) / 1e6;
    }

    double BareMs() const {
        const QByteArray file = QFile::encodeName(FFolder.filePath(QStringLiteral("bare")));
        const QByteArray text(200, 'x');
        QElapsedTimer clock;
        clock.start();
        const int descriptor = ::open((file + ".new").constData(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
        const bool isWritten =
            ::write(descriptor, text.constData(), std::size_t(text.size())) == text.size() &&
            ::fsync(descriptor) == 0 && ::close(descriptor) == 0 &&
            ::rename((file + ".new").constData(), file.constData()) == 0;
        const double time = double(clock.nsecsElapsed()) / 1e6;
        Expect(isWritten, "the bare file was not written");
        return time;
    }

    void CheckStored() const {
        TRegistry registry;
        Expect(registry.OpenKeyReadOnly(FItem->GetRootKey()) &&
                   registry.ReadString(QStringLiteral("ClientId")) == FEdit->text(),
               "what was typed is not stored");
    }

private:
    void Store() const {
        TRegistry registry;
        for (const auto& serviceClass : FClasses) {
            registry.OpenKey(
                QStringLiteral("\\SOFTWARE\\Orvane Labs\\ZO-Tools 2020\\Bridgework\\APIExplorer\\") +
                    serviceClass->ClassName(),
                true);
            for (const char* name : {"ApiKey", "ClientId", "Secret", "RedirectUrl"})
                registry.WriteString(QLatin1String(name), QLatin1String(name) == QLatin1String("ApiKey")
                                                              ? QString()
                                                              : QString(30, u'x'));
            registry.OpenKey(QStringLiteral("Scopes"), true);
            registry.WriteString(QStringLiteral("0"), serviceClass->ClassName());
        }
        registry.CloseKey();
    }

    // On the disk that the benchmarks are run on: the folder for temporary files may be none.
    QTemporaryDir FFolder{QDir::currentPath() + QStringLiteral("/zobench-settings-XXXXXX")};
    std::vector<std::unique_ptr<TZORestServiceClass>> FClasses;
    std::unique_ptr<TZOShellFrame> FShell;
    TZOServiceItem* FItem = nullptr;
    QLineEdit* FEdit = nullptr;
};

struct TTimes {
    double Keystroke = 0, Bare = 0;
};

double MedianOf(std::vector<double> ATimes) {
    std::nth_element(ATimes.begin(), ATimes.begin() + std::ptrdiff_t(ATimes.size() / 2), ATimes.end());
    return ATimes[ATimes.size() / 2];
}

/// Both take turns, because the disk is never the same.
const TTimes& Times() {
    static const TTimes times = [] {
        TOptionsWindow window;
        std::vector<double> keystrokes, bare;
        for (int i = 0; i < Keystrokes; ++i) {
            bare.push_back(window.BareMs());
            keystrokes.push_back(window.KeystrokeMs());
        }
        window.CheckStored();
        return TTimes{MedianOf(keystrokes), MedianOf(bare)};
    }();
    return times;
}

} // namespace

void AddSettingsBenchmarks() {
    Bench::Measure(
        {"keystroke in the options", "1,000 services", "2 x file on disk + 2 ms", 1.0}, "ms",
        [] { return Times().Keystroke; }, [] { return AllowedTimes * Times().Bare + AllowedMs; });
    Bench::Measure(
        {"keystroke in the options", "1,000 services", "file on disk", std::nullopt}, "ms",
        [] { return Times().Keystroke; }, [] { return Times().Bare; });
}
