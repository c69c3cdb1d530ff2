// Operations executed, pages opened and closed, documents loaded and dropped, again and again in one window:
// what the process holds does not grow.
#include "tests/hosts/monkey/MonkeyWorld.h"
#include "tests/hosts/monkey/ProcessFigures.h"
#include "tests/servers/HttpbinServer.h"

#include "hosts/standalone/MainWindow.h"

#include "pages/ExecutePage.h"
#include "pages/Pages.h"

#include "jsoneditor/view/RestView.h"

#include "samples/ClockService.h"
#include "samples/HttpbinService.h"
#include "samples/LibraryService.h"
#include "samples/SampleServer.h"

#include "shell/ServiceItem.h"
#include "shell/ShellFrame.h"
#include "shell/ShellPage.h"

#include "platform/Registry.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>

namespace {

/// What is pasted into the request of an operation; the others are executed as they stand.
const QHash<QString, QString>& Requests() {
    static const QHash<QString, QString> requests{
        {"SearchMedia", R"({"text":"the","genres":["crime","drama"],"pageSize":5})"},
        {"GetMedium", R"({"id":3})"},
        {"AddMedium", R"({"medium":{"kind":"film","title":"The Quiet Harbour","copies":{"Harbour":3},
                          "notes":{"shelf":[1,2.5,null]},"director":"A. Night","subtitles":["en","pt"]}})"},
        {"ReplaceMedium", R"({"id":4,"medium":{"kind":"recording","title":"Dawn","artist":"The Letters",
                              "tracks":[{"title":"One","seconds":61}]}})"},
        {"AnnotateMedium", R"({"id":5,"notes":[{"a":"b"},2]})"},
        {"RemoveMedium", R"({"id":6})"},
        {"UploadCover", R"({"id":1,"caption":"Front & back"})"},
        {"DownloadCover", R"({"id":1})"},
        {"GetAuthor", R"({"id":7})"},
        {"RegisterReader", R"({"reader":{"name":"Ann Night"}})"},
        {"LendMedium", R"({"card":"R-1001","loan":{"mediumId":1}})"},
        {"ListLoans", R"({"card":"R-1001"})"},
        {"ReturnMedium", R"({"id":1})"},
        {"GetOpeningHours", R"({"branch":"Old Town"})"},
        {"PrintAnnualReport", R"({"year":2024})"},
        {"ListLeapYears", R"({"from":1990,"to":2010})"},
        {"CountDays", R"({"from":"2024-02-28","to":"2024-03-01"})"},
        {"ExplainInstant", R"({"at":"2024-02-29T12:30:00+01:00"})"},
        {"Get", R"({"text":"a b&c","tags":["one","two"]})"},
        {"PostJson", R"({"order":{"customer":"A","lines":[{"article":"nail","count":100}]}})"},
        {"PostForm", R"({"name":"a=b & c","toppings":["ham"]})"},
        {"Status", R"({"code":404})"},
        {"Redirect", R"({"times":3})"},
        {"Delay", R"({"seconds":0})"},
        {"DownloadBytes", R"({"count":5000})"},
        {"BasicAuth", R"({"user":"user","password":"password"})"},
    };
    return requests;
}

/// Agrees to everything.
class TLongWorld final : public TMonkeyWorld {
public:
    using TMonkeyWorld::TMonkeyWorld;
    std::optional<QString> SaveFile(QWidget*, const QString&, const QString&, const QString&) override {
        return FilePath(QStringLiteral("saved"));
    }
    bool Confirm(QWidget*, const QString&, const QString&) override { return true; }
};

class LongRun : public testing::Test {
protected:
    LongRun() {
        StartPages();
        Classes.push_back(TLibraryService::DeclareClass(World.LibraryUrl(), TSampleServer::ApiKey()));
        Classes.push_back(TClockService::DeclareClass(World.ClockUrl()));
        Classes.push_back(THttpbinService::DeclareClass(Httpbin.Url()));
        for (const auto& serviceClass : Classes)
            TZORestServiceClass::Register(serviceClass.get());
        Window = std::make_unique<TZOMainWindow>();
        Window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(Window.get()));
        Window->activateWindow();
        QCoreApplication::processEvents();
    }
    ~LongRun() override {
        Window.reset();
        for (const auto& serviceClass : Classes)
            TZORestServiceClass::Unregister(serviceClass.get());
        StopPages();
        TRegistry::SetReportHandler({});
    }

    TZOShellFrame* Shell() const { return Window->Shell(); }

    void Execute(TZOServiceItem* AItem, POper AOper) {
        TZOShellPage* page = TZOExecutePage::Make(Shell(), AItem, AOper);
        Shell()->NavigateAsync(page);
        ASSERT_TRUE(QTest::qWaitFor([&] { return Shell()->GetNavStackTop() == page; }));
        QWidget* frame = page->Frame();
        auto* view = frame->findChild<TZORestView*>();
        ASSERT_TRUE(view);
        view->setFocus();
        if (const QString request = Requests().value(AOper->Name); !request.isEmpty()) {
            QGuiApplication::clipboard()->setText(request);
            QTest::keyClick(view, Qt::Key_Home, Qt::ControlModifier);
            QTest::keyClick(view, Qt::Key_V, Qt::ControlModifier);
        }
        QTest::keyClick(frame, Qt::Key_Return, Qt::ControlModifier);
        const QString summary = frame->findChild<QLabel*>(QStringLiteral("SummaryLabel"))->text();
        ++Executions;
        Answers += summary.isEmpty() ? 0 : 1;
        Successes += summary.startsWith(u'2') ? 1 : 0;
        QCoreApplication::processEvents(); // what has changed is painted
        Shell()->ShowServiceList();
    }
    void ExecuteAll(TZOServiceItem* AItem, std::size_t AMax) {
        const auto& opers = AItem->Component()->TypeInfo()->Opers();
        for (std::size_t i = 0; i < opers.size() && i < AMax && !HasFatalFailure(); ++i)
            Execute(AItem, &opers[i]);
    }
    void Choose(const QList<Qt::Key>& AKeys) const {
        QTest::keyClick(Window->menuBar(), AKeys.front(), Qt::AltModifier);
        for (const Qt::Key key : AKeys.mid(1)) {
            if (QWidget* menu = QApplication::activePopupWidget())
                QTest::keyClick(menu, key);
        }
    }

    /// All operations of the services, and some of a document that comes and goes.
    void Cycle() {
        Window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(Window.get()));
        const int count = Shell()->GetServiceCount();
        for (int i = 0; i < count && !HasFatalFailure(); ++i)
            ExecuteAll(Shell()->GetServices(i), 100);
        Window->OpenDocuments({World.Documents().Good()});
        ASSERT_EQ(Shell()->GetServiceCount(), count + 1);
        // The first faults are soon over.
        ExecuteAll(Shell()->GetServices(count), 4);
        Choose({Qt::Key_F, Qt::Key_C, Qt::Key_Return});
        QCoreApplication::processEvents();
        ASSERT_EQ(Shell()->GetServiceCount(), count);
    }

    QRandomGenerator Random{20261};
    TLongWorld World{Random};
    const THttpbinServer Httpbin;
    std::vector<std::unique_ptr<TZORestServiceClass>> Classes;
    std::unique_ptr<TZOMainWindow> Window;
    int Executions = 0;
    int Answers = 0;
    int Successes = 0;
};

} // namespace

TEST_F(LongRun, HoldsNoMoreAtItsEnd) {
    int wanted = qEnvironmentVariableIntValue("ZO_LONG_RUN_EXECUTIONS");
    wanted = wanted > 0 ? wanted : 200;
    TProcessFigures warm;
    // A fifth of it to warm up: fonts, connections, pools.
    while (Executions < wanted && !HasFatalFailure()) {
        Cycle();
        const TProcessFigures now = TProcessFigures::Now();
        if (Executions * 5 <= wanted || warm.Memory == 0)
            warm = now;
        std::cout << Executions << " executions: " << now << std::endl;
    }
    const TProcessFigures end = TProcessFigures::Now();
    EXPECT_EQ(World.Wrongs(), QStringList());
    EXPECT_GE(Answers * 100, Executions * 90) << "the others were not sent";
    EXPECT_GE(Successes * 100, Executions * 60);
    EXPECT_LE(end.Descriptors, warm.Descriptors);
    EXPECT_LE(end.Threads, warm.Threads);
    if (CountsMemory()) {
        EXPECT_LE(end.Memory, warm.Memory + warm.Memory / 10);
    }
    std::cout << Executions << " executions, " << Answers << " answers, " << Successes
              << " successes; warm: " << warm << "; at the end: " << end << std::endl;
}
