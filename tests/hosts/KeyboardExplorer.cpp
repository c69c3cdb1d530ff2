#include "tests/hosts/KeyboardExplorer.h"

#include "pages/Pages.h"

#include "jsoneditor/view/RestView.h"

#include <QEventLoop>

#include <stdexcept>
#include <thread>

TKeyboardExplorer::TKeyboardExplorer() {
    StartPages();
    FWindow = std::make_unique<TZOMainWindow>();
    FWindow->setGeometry(0, 0, 1200, 1700);
    FWindow->show();
}

TKeyboardExplorer::~TKeyboardExplorer() {
    FWindow.reset();
    StopPages();
}

std::string TKeyboardExplorer::Run(const TKeyboardCall& ACall) {
    return Run([&](TKeyboardUser& AUser) { Work(AUser, ACall); });
}

std::string TKeyboardExplorer::Run(const std::function<void(TKeyboardUser&)>& AWork) {
    std::string problem;
    QEventLoop loop;
    std::thread thread([&] {
        try {
            TKeyboardUser user(FFolder.path());
            AWork(user);
        } catch (const std::exception& e) {
            problem = ExceptionMessage(e).toStdString();
        }
        QMetaObject::invokeMethod(
            &loop, [&] { loop.quit(); }, Qt::QueuedConnection);
    });
    loop.exec();
    thread.join();
    return problem;
}

void TKeyboardExplorer::Work(TKeyboardUser& AUser, const TKeyboardCall& ACall) {
    AUser.OpenOperation(ACall.Service, ACall.Operation);
    ACall.Fill(AUser);
    AUser.Driver().WaitFor(QStringLiteral("no request is shown"), [&] {
        FRequest = View();
        if (FRequest)
            FShown = ShownValues(*FRequest);
        return FRequest != nullptr;
    });
    AUser.Execute();
    if (ACall.IsDownload)
        AUser.NameFile(AUser.FilePath(QStringLiteral("download")));
    AUser.See(QStringLiteral("Responce"));
    ACall.Then(AUser);
}

TValueTexts TKeyboardExplorer::Answer() const {
    const TZORestView* view = View(FRequest);
    if (!view)
        throw std::runtime_error("no response is shown");
    return ShownValues(*view);
}

const TZORestView* TKeyboardExplorer::View(const TZORestView* AOther) const {
    const auto views = FWindow->findChildren<TZORestView*>();
    for (const TZORestView* view : views) {
        if (view->isVisible() && view != AOther)
            return view;
    }
    return nullptr;
}
