#include "tests/shell/ShellFixture.h"

#include "platform/IdeTheming.h"

#include <QCoreApplication>
#include <QLayout>

#include <algorithm>

void TTestService::TokenChanged() {
    TZORestService::TokenChanged();
    if (OnTokenChanged)
        OnTokenChanged();
}

std::unique_ptr<TZORestServiceClass> MakeServiceClass(const QString& AName, const QString& ADescription) {
    auto types = std::make_unique<TZOTypeLibrary>();
    TZORestService::TTypeInfo::TDeclaration declaration;
    declaration.Name = AName;
    declaration.Description = ADescription;
    TZORestService::TOper get;
    get.Name = QStringLiteral("Get");
    get.Request = types->NewObject(QStringLiteral("TGet")).Type();
    declaration.Opers.push_back(get);
    declaration.Scopes = {
        {QStringLiteral("read"), true}, {QStringLiteral("write"), false}, {QStringLiteral("admin"), true}};
    auto info = std::make_unique<TZORestService::TTypeInfo>(std::move(declaration), std::move(types));
    return std::make_unique<TZORestServiceClass>(
        AName, std::move(info), [](const TZORestServiceClass* AClass, QObject* AOwner) {
            auto service = std::make_unique<TTestService>(AClass, AOwner);
            service->SetApiKey(QString()); // needs no credentials, but these tests look at them
            return service;
        });
}

QString SettingsKey(const QString& AClassName) {
    return QStringLiteral("SOFTWARE\\Orvane Labs\\ZO-Tools 2020\\Bridgework\\APIExplorer\\") + AClassName;
}

TTestPageFrame::TTestPageFrame(const QString& ACaption, QStringList* ALog, bool AIsServiceList)
    : Caption(ACaption), Log(ALog), IsServiceList(AIsServiceList) {}

TTestPageFrame::~TTestPageFrame() { Log->append(QStringLiteral("destroyed ") + Caption); }

ShellTest::ShellTest() {
    qputenv("ZO_SETTINGS_FILE", Folder.filePath(QStringLiteral("settings.db")).toUtf8());
    TRegistry::SetReportHandler([this](const QString& AMessage) { Reports.append(AMessage); });
    Reports.clear();
    TZORestServiceClass::Register(First.get());
    TZORestServiceClass::Register(Second.get());
    SetPageFactory(this);
    TZOIdeTheming::SetTheme(thLight);
}

ShellTest::~ShellTest() {
    Shell.reset();
    for (const auto& page : Pages)
        delete page;
    SetPageFactory(nullptr);
    TZOIdeTheming::SetTheme(thSystem);
    TRegistry::SetReportHandler({});
    qunsetenv("ZO_SETTINGS_FILE");
}

TZOShellPage* ShellTest::MakeServiceList(TZOShellFrame*) {
    return MakePage(QStringLiteral("Services"), true);
}

TZOShellPage* ShellTest::MakeOperationList(TZOShellFrame*, TZOServiceItem* AItem) {
    return MakePage(AItem->Name(), false, AItem);
}

bool ShellTest::IsServiceList(const QWidget* AFrame) const {
    const auto* frame = dynamic_cast<const TTestPageFrame*>(AFrame);
    return frame && frame->IsServiceList;
}

TZOShellPage* ShellTest::MakePage(const QString& ACaption, bool AIsServiceList, TZOServiceItem* AItem) {
    auto* frame = new TTestPageFrame(ACaption, &Log, AIsServiceList);
    const auto told = [this, ACaption](const char* AWhat) {
        return [this, ACaption, AWhat](TZOServiceItem* AService) {
            Log.append(QStringLiteral("%1 %2 %3").arg(ACaption, QLatin1String(AWhat), AService->Name()));
        };
    };
    const QPointer<TTestPageFrame> alive(frame);
    auto* page = new TZOShellPage(ACaption, frame, told("added"), told("removed"),
                                  [this, alive, ACaption](bool AShowOptions) {
                                      if (AShowOptions)
                                          Log.append(ACaption + QStringLiteral(" options"));
                                      if (AShowOptions && alive && alive->OnOptions)
                                          alive->OnOptions();
                                      return alive ? alive->State : asHidden;
                                  });
    page->SetService(AItem);
    Pages.append(page);
    return page;
}

TTestPageFrame* ShellTest::FrameOf(const TZOShellPage* APage) {
    return dynamic_cast<TTestPageFrame*>(APage->Frame());
}

void ShellTest::MakeShell() {
    Shell = std::make_unique<TZOShellFrame>();
    Log.clear();
}

void ShellTest::ShowShell() {
    MakeShell();
    Shell->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(Shell.get()));
    Shell->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Shell.get()));
    Settle();
}

void ShellTest::Push(const QStringList& ACaptions) {
    for (const QString& caption : ACaptions) {
        Shell->NavigateAsync(MakePage(caption));
        Settle();
    }
}

void ShellTest::Settle() { QCoreApplication::processEvents(); }

QStringList ShellTest::Stack() const {
    QStringList captions;
    for (int i = 0; i < Shell->GetNavStackCount(); ++i)
        captions.append(Shell->GetNavStack(i)->Caption());
    return captions;
}

QString ShellTest::Bar() const {
    QList<QLabel*> labels =
        Find<QWidget>("NavPanel")->findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
    Find<QWidget>("NavPanel")->layout()->activate(); // else it happens with the next events
    labels.removeIf([](const QLabel* ALabel) { return !ALabel->isVisible(); });
    std::sort(labels.begin(), labels.end(), [](auto* A, auto* B) { return A->x() < B->x(); });
    QStringList texts;
    for (const QLabel* label : labels)
        texts.append(label->text());
    return texts.join(u' ');
}

QColor ShellTest::TextColor(const QWidget* AWidget) {
    return AWidget->palette().color(QPalette::Active, QPalette::WindowText);
}
