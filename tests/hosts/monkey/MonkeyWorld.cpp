#include "tests/hosts/monkey/MonkeyWorld.h"

#include "platform/Exceptions.h"
#include "platform/IdeTheming.h"

#include <QApplication>
#include <QDir>
#include <QFile>

namespace {

QRegularExpression Address(const QString& AServer) {
    return QRegularExpression(AServer + QStringLiteral(" (http://\\S+)"));
}

} // namespace

TMonkeyWorld::TMonkeyWorld(QRandomGenerator& ARandom)
    : FRandom(ARandom), FFolderBefore(QDir::currentPath()), FServers(QStringLiteral(ZO_MONKEY_SERVERS), {}) {
    qputenv("ZO_SETTINGS_FILE", FilePath(QStringLiteral("settings.db")).toUtf8());
    // What is typed for a file's name is one of these, then.
    QDir::setCurrent(FFolder.path());
    const QString faults = FServers.WaitFor(Address(QStringLiteral("faults")));
    FLibraryUrl = FServers.WaitFor(Address(QStringLiteral("library")));
    FClockUrl = FServers.WaitFor(Address(QStringLiteral("clock")));
    FDocuments = std::make_unique<TMonkeyDocuments>(FFolder.path(), faults.toUtf8(), FRandom);
    QFile file(FilePath(QStringLiteral("upload.bin")));
    if (file.open(QIODevice::WriteOnly))
        file.write(QByteArray(50'000, 'u'));
    SetDialogs(this);
    FPreviousDisplay = SetExceptionDisplay(
        [this](QWidget*, const std::exception& AException) { ShowException(AException); });
}

TMonkeyWorld::~TMonkeyWorld() {
    QDir::setCurrent(FFolderBefore);
    SetExceptionDisplay(std::move(FPreviousDisplay));
    SetDialogs(nullptr);
    TZOIdeTheming::SetTheme(thSystem);
    qunsetenv("ZO_SETTINGS_FILE");
}

void TMonkeyWorld::ShowException(const std::exception& AException) {
    const QString name = ExceptionClassName(AException);
    ++Shown[name.toStdString()];
    // What is none of ours was not foreseen.
    if (!dynamic_cast<const EException*>(&AException))
        FUnforeseen.append(name + QStringLiteral(": ") + ExceptionMessage(AException));
}

QStringList TMonkeyWorld::Wrongs() const {
    QStringList wrongs = FUnforeseen;
    for (const QUrl& url : FOpened.Urls) {
        if (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https"))
            wrongs.append(QStringLiteral("opened ") + url.toString());
    }
    return wrongs;
}

QString TMonkeyWorld::AnyFile() {
    switch (Random(6)) {
    case 0:
        return FFolder.path();
    case 1:
        return FilePath(QStringLiteral("no folder/file"));
    case 2:
        return QStringLiteral("/dev/full");
    default:
        return FilePath(QStringLiteral("upload.bin"));
    }
}

std::optional<QString> TMonkeyWorld::OpenFile(QWidget*, const QString&, const QString&, const QString&) {
    return Random(4) == 0 ? std::nullopt : std::optional(AnyFile());
}

QStringList TMonkeyWorld::OpenFiles(QWidget*, const QString&, const QString&, const QString&) {
    QStringList files;
    for (int i = Random(3); i > 0; --i)
        files.append(FDocuments->Any());
    return files;
}

std::optional<QString> TMonkeyWorld::SaveFile(QWidget*, const QString&, const QString&, const QString&) {
    if (Random(4) == 0)
        return std::nullopt;
    return Random(3) == 0 ? AnyFile() : FilePath(QStringLiteral("saved %1").arg(Random(3)));
}

std::optional<QString> TMonkeyWorld::InputQuery(QWidget*, const QString&, const QString&,
                                                const QString& AValue) {
    return Random(3) == 0 ? std::nullopt : std::optional(AValue + QStringLiteral(" more"));
}
