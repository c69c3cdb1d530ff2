#include "tests/hosts/monkey/WindowMonkey.h"

#include "samples/ClockService.h"
#include "samples/LibraryService.h"
#include "samples/SampleServer.h"

#include "shell/ServiceItem.h"
#include "shell/ShellFrame.h"

#include "runtime/http/HttpClient.h"

#include "platform/IdeTheming.h"
#include "platform/Registry.h"

#include <QAbstractButton>
#include <QApplication>

namespace {

/// So that silence is soon over, and nothing becomes large.
constexpr int StallTimeoutMs = 700;
constexpr qint64 MaxBodyBytes = 1024 * 1024;
/// As long as somebody looks at a menu.
constexpr int MaxActsInside = 60;

} // namespace

TWindowMonkey::TWindowMonkey(quint32 ASeed) : FSeed(ASeed), FRandom(ASeed), FWorld(FRandom) {
    FClock.start();
    FClasses.push_back(TLibraryService::DeclareClass(FWorld.LibraryUrl(), TSampleServer::ApiKey()));
    FClasses.push_back(TClockService::DeclareClass(FWorld.ClockUrl()));
    for (const auto& serviceClass : FClasses)
        TZORestServiceClass::Register(serviceClass.get());
    MakeWindow();
}

TWindowMonkey::~TWindowMonkey() {
    FComponent.reset();
    FWindow.reset();
    for (const auto& serviceClass : FClasses)
        TZORestServiceClass::Unregister(serviceClass.get());
    TRegistry::SetReportHandler({});
}

void TWindowMonkey::MakeWindow() {
    FWindow = std::make_unique<TZOMainWindow>();
    FWindow->show();
    FWindow->activateWindow();
    FWindow->OpenDocuments({FWorld.Documents().Good()});
}

bool TWindowMonkey::IsBusy() const { return FWindow->Shell()->IsBusy(); }

QWindow* TWindowMonkey::Target() const {
    for (const QWidget* widget : {QApplication::activePopupWidget(), QApplication::activeModalWidget()}) {
        if (widget && widget->windowHandle())
            return widget->windowHandle();
    }
    QWindow* window = QGuiApplication::focusWindow();
    return window && window->isVisible() ? window : FWindow->windowHandle();
}

void TWindowMonkey::Run(int ACount) {
    const auto calm = [this] { Calm(); };
    FPace.Run(
        ACount, [this] { Act(); }, calm);
    FPace.Run(
        1, [this] { FWindow->close(); }, calm);
}

void TWindowMonkey::Calm() {
    if (IsBusy() || QApplication::activePopupWidget() || QApplication::activeModalWidget())
        Press(Qt::Key_Escape);
}

void TWindowMonkey::Act() {
    struct TWeight {
        int Weight;
        const char* Name;
        TAct Act;
    };
    static const TWeight weights[] = {
        {300, "key", &TWindowMonkey::PressKey},
        {80, "text", &TWindowMonkey::TypeText},
        {150, "execute", &TWindowMonkey::Execute},
        {150, "mouse", &TWindowMonkey::UseMouse},
        {120, "control", &TWindowMonkey::ClickControl},
        {150, "row", &TWindowMonkey::OpenRow},
        {15, "drag", &TWindowMonkey::Drag},
        {60, "wheel", &TWindowMonkey::TurnWheel},
        {20, "menu", &TWindowMonkey::AskForMenu},
        {10, "tip", &TWindowMonkey::AskForTip},
        {10, "compose", &TWindowMonkey::Compose},
        {12, "drop", &TWindowMonkey::DropFiles},
        {6, "rewrite", &TWindowMonkey::RewriteFile},
        {15, "resize", &TWindowMonkey::Resize},
        {4, "look", &TWindowMonkey::ChangeLook},
        {10, "clipboard", &TWindowMonkey::FillClipboard},
        {6, "switch", &TWindowMonkey::SwitchWindow},
        {6, "services", &TWindowMonkey::ChangeServices},
        {6, "configure", &TWindowMonkey::Configure},
        {1, "close", &TWindowMonkey::CloseWindow},
    };
    ++FNumber;
    FInside = FPace.Depth() > 1 ? FInside + 1 : 0;
    if (IsBusy())
        return ActWhileBusy();
    if (QWidget* popup = QApplication::activePopupWidget(); popup && FInside > MaxActsInside)
        return ActInPopup(popup);
    int total = 0;
    for (const TWeight& weight : weights)
        total += weight.Weight;
    int chosen = Random(total);
    const TWeight* weight = weights;
    for (; chosen >= weight->Weight; ++weight)
        chosen -= weight->Weight;
    ++FActs[weight->Name];
    FActs["inside"] += FInside > 0 ? 1 : 0;
    FPace.Say("seed " + std::to_string(FSeed) + ", event " + std::to_string(FNumber) + ": " + weight->Name);
    (this->*weight->Act)();
    if (!FWindow->isVisible() && FPace.Depth() == 1 && !IsBusy()) {
        // Closed by one of its own commands: started again.
        FWindow.reset();
        MakeWindow();
    }
}

void TWindowMonkey::ActWhileBusy() {
    ++FActs["busy"];
    FPace.Say("seed " + std::to_string(FSeed) + ", event " + std::to_string(FNumber) + ": busy");
    switch (Random(24)) {
    case 0:
        Press(Qt::Key_Escape);
        break;
    case 1:
        if (auto* cancel = FWindow->findChild<QAbstractButton*>(QStringLiteral("CancelButton")))
            Click(cancel);
        break;
    case 2:
        ClickControl();
        break;
    case 3:
        PressKey();
        break;
    case 4:
        UseMouse();
        break;
    case 5:
        Resize();
        break;
    case 6:
        TurnWheel();
        break;
    case 7:
        DropFiles();
        break;
    case 8:
        if (Random(10) == 0)
            FWindow->close();
        break;
    case 9:
        if (Random(10) == 0)
            ChangeLook();
        break;
    default:
        break;
    }
}

void TWindowMonkey::ActInPopup(QWidget* APopup) {
    if (Random(2) == 0)
        Press(Qt::Key_Escape);
    else
        APopup->close();
}

void TWindowMonkey::ChangeServices() {
    if (FPace.Depth() > 1 || IsBusy())
        return;
    TZOShellFrame* shell = FWindow->Shell();
    const TZORestServiceClass* library = FClasses[0].get();
    switch (Random(5)) {
    case 0:
        shell->ServiceClassRemoved(library);
        break;
    case 1:
        shell->ServiceClassAdded(library);
        break;
    case 2:
        FComponent.reset();
        break;
    case 3:
        if (!FComponent)
            FComponent = FClasses[static_cast<std::size_t>(Random(2))]->Create();
        shell->ExploreComponent(FComponent.get());
        break;
    default:
        shell->ShowServiceList();
        break;
    }
}

void TWindowMonkey::Configure() {
    TZOShellFrame* shell = FWindow->Shell();
    for (int i = 0; i < shell->GetServiceCount(); ++i) {
        TZORestService* service = shell->GetServices(i)->Component();
        if (!service)
            continue;
        service->HttpClient().Limits().StallTimeoutMs = StallTimeoutMs;
        service->HttpClient().Limits().MaxBodyBytes = MaxBodyBytes;
        if (Random(4) == 0) {
            service->SetClientId(QStringLiteral("monkey"));
            service->SetSecret(QStringLiteral("-"));
            service->SetRedirectUrl(QStringLiteral("http://127.0.0.1/callback"));
            service->SetApiKey({});
        } else {
            service->SetApiKey(service->Class() == FClasses[0].get() ? TSampleServer::ApiKey()
                                                                     : QStringLiteral("banana"));
        }
        service->ReportOptions();
    }
}

void TWindowMonkey::CloseWindow() {
    if (FPace.Depth() > 1 || IsBusy())
        return;
    if (Random(2) == 0)
        FComponent.reset();
    FWindow->close();
}
