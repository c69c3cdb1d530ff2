// What is around the explorer's window while a monkey sits before it.
#pragma once

#include "tests/hosts/OpenedUrls.h"
#include "tests/hosts/monkey/MonkeyDocuments.h"
#include "tests/servers/ServerProcess.h"

#include "runtime/service/RestService.h"

#include "platform/Dialogs.h"
#include "platform/ExceptionDisplay.h"

#include <QStringList>
#include <QTemporaryDir>

#include <map>
#include <memory>

/// Servers, documents and settings of its own. It answers the dialogs by chance, and takes down what was
/// shown or opened.
class TMonkeyWorld : public TZODialogs {
public:
    explicit TMonkeyWorld(QRandomGenerator& ARandom);
    ~TMonkeyWorld() override;

    std::optional<QString> OpenFile(QWidget*, const QString&, const QString&, const QString&) override;
    QStringList OpenFiles(QWidget*, const QString&, const QString&, const QString&) override;
    std::optional<QString> SaveFile(QWidget*, const QString&, const QString&, const QString&) override;
    std::optional<QString> InputQuery(QWidget*, const QString&, const QString&, const QString&) override;
    bool Confirm(QWidget*, const QString&, const QString&) override { return Random(2) == 0; }
    void RevealFile(const QString& AFileName) override { Shown["reveal"] += AFileName.isEmpty() ? 0 : 1; }

    TMonkeyDocuments& Documents() { return *FDocuments; }
    const QString& LibraryUrl() const { return FLibraryUrl; }
    const QString& ClockUrl() const { return FClockUrl; }
    QString FilePath(const QString& AName) const { return FFolder.filePath(AName); }

    /// How often each class of exception was shown, and what else was asked.
    std::map<std::string, int> Shown;
    /// What must not happen.
    QStringList Wrongs() const;

private:
    QString AnyFile();
    int Random(int ABound) { return FRandom.bounded(ABound); }
    void ShowException(const std::exception& AException);

    QRandomGenerator& FRandom;
    QString FFolderBefore;
    QTemporaryDir FFolder;
    TServerProcess FServers;
    QString FLibraryUrl;
    QString FClockUrl;
    std::unique_ptr<TMonkeyDocuments> FDocuments;
    TZOExceptionDisplay FPreviousDisplay;
    TOpenedUrls FOpened;
    QStringList FUnforeseen;
};
