// The explorer's window on the display, and somebody at its keyboard.
#pragma once

#include "tests/hosts/KeyboardUser.h"
#include "tests/hosts/SentValues.h"

#include "hosts/standalone/MainWindow.h"

#include <QTemporaryDir>

/// What a person does to call one operation.
struct TKeyboardCall {
    QString Service;
    QString Operation;
    std::function<void(TKeyboardUser&)> Fill;
    /// The answer goes to the file "download".
    bool IsDownload = false;
    /// What else is awaited, or looked at, when the response is there.
    std::function<void(TKeyboardUser&)> Then = [](TKeyboardUser&) {};
};

/// With the pages, for as long as it lives. The classes of the services outlive it.
class TKeyboardExplorer {
public:
    TKeyboardExplorer();
    ~TKeyboardExplorer();

    /// Lets somebody work at the window; returns what went wrong.
    std::string Run(const std::function<void(TKeyboardUser&)>& AWork);
    /// As the command line does.
    void OpenDocument(const QString& APath) { FWindow->OpenDocuments({APath}); }
    /// Builds the request from nothing and executes it; returns what went wrong.
    std::string Run(const TKeyboardCall& ACall);

    /// What the request's editor showed when it was executed.
    const TValueTexts& Shown() const noexcept { return FShown; }
    /// What the response's editor shows. Raises std::runtime_error when not all of it is in sight.
    TValueTexts Answer() const;
    /// In the folder of the user's files.
    QString FilePath(const QString& AName) const { return FFolder.filePath(AName); }

private:
    void Work(TKeyboardUser& AUser, const TKeyboardCall& ACall);
    /// The visible one that is not AOther.
    const TZORestView* View(const TZORestView* AOther = nullptr) const;

    QTemporaryDir FFolder;
    TValueTexts FShown;
    const TZORestView* FRequest = nullptr;
    std::unique_ptr<TZOMainWindow> FWindow;
};
