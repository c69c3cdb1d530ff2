#include "tests/pages/ExecutePageFixture.h"

#include "jsoneditor/view/RowChunk.h"
#include "jsoneditor/view/ViewRow.h"
#include "jsoneditor/view/ViewRowLayout.h"
#include "runtime/service/ServiceBuilder.h"

#include <QFile>

#include <httplib.h>

#include <thread>

class TTestServer::TImpl {
public:
    explicit TImpl(const TTestServer& AOwner) {
        Http.Get("/echo", [&AOwner](const httplib::Request& ARequest, httplib::Response& AResponse) {
            if (AOwner.OnEcho)
                AOwner.OnEcho();
            if (!AOwner.Answer.empty()) {
                AResponse.set_content(AOwner.Answer, "application/json");
                return;
            }
            AResponse.set_content(R"({"text": ")" + ARequest.get_param_value("text") +
                                      R"(", "numbers": [1, 2]})",
                                  "application/json");
        });
        Http.Post("/nothing",
                  [](const httplib::Request&, httplib::Response& AResponse) { AResponse.status = 204; });
        Http.Get("/file", [](const httplib::Request& ARequest, httplib::Response& AResponse) {
            if (ARequest.get_param_value("bytes") == "0") {
                AResponse.status = 500;
                return;
            }
            AResponse.set_content(std::string(std::stoul(ARequest.get_param_value("bytes")), 'x'),
                                  "application/octet-stream");
        });
        const auto inParts = [&AOwner](std::size_t ASize, std::size_t AOffset, httplib::DataSink& ASink) {
            const std::size_t half = ASize / 2;
            if (AOffset == half && AOwner.OnHalf)
                AOwner.OnHalf();
            const std::string part(AOffset < half ? half : ASize - half, 'y');
            return ASink.write(part.data(), part.size());
        };
        Http.Get("/halves", [inParts](const httplib::Request& ARequest, httplib::Response& AResponse) {
            const std::size_t size = std::stoul(ARequest.get_param_value("bytes"));
            AResponse.set_content_provider(
                size, "application/octet-stream",
                [inParts, size](std::size_t AOffset, std::size_t, httplib::DataSink& ASink) {
                    return inParts(size, AOffset, ASink);
                });
        });
        Http.Get("/chunks", [inParts](const httplib::Request&, httplib::Response& AResponse) {
            AResponse.set_chunked_content_provider("application/octet-stream",
                                                   [inParts](std::size_t AOffset, httplib::DataSink& ASink) {
                                                       const bool isDone = inParts(400'000, AOffset, ASink);
                                                       if (AOffset > 0)
                                                           ASink.done();
                                                       return isDone;
                                                   });
        });
        Http.Post("/slowstore", [&AOwner](const httplib::Request&, httplib::Response& AResponse,
                                          const httplib::ContentReader& AReader) {
            if (AOwner.OnHalf)
                AOwner.OnHalf();
            AReader([](const httplib::MultipartFormData&) { return true; },
                    [](const char*, std::size_t) { return true; });
            AResponse.set_content("{}", "application/json");
        });
        Http.Post("/store", [this](const httplib::Request& ARequest, httplib::Response& AResponse) {
            const auto part = ARequest.get_file_value("file");
            if (Refusals-- > 0)
                AResponse.status = 503;
            AResponse.set_content(R"({"text": ")" + std::to_string(part.content.size()) + ":" +
                                      part.content.substr(0, 5) + R"("})",
                                  "application/json");
        });
        Http.Get("/fail", [](const httplib::Request&, httplib::Response& AResponse) {
            AResponse.status = 404;
            AResponse.set_content("No such thing\nLook elsewhere", "text/plain");
        });
        Http.set_keep_alive_max_count(1); // stopping would wait for idle connections
        Port = Http.bind_to_any_port("127.0.0.1");
        Thread = std::thread([this] { Http.listen_after_bind(); });
        // Stopping a server that does not listen yet has no effect.
        while (!Http.is_running())
            std::this_thread::yield();
    }
    ~TImpl() {
        Http.stop();
        Thread.join();
    }

    httplib::Server Http;
    std::thread Thread;
    int Port = 0;
    std::atomic<int> Refusals = 1; // of the first upload
};

TTestServer::TTestServer() : FImpl(std::make_unique<TImpl>(*this)) {}
TTestServer::~TTestServer() = default;
QString TTestServer::Url() const { return QStringLiteral("http://127.0.0.1:%1").arg(FImpl->Port); }

ExecutePageTest::ExecutePageTest() {
    using P = TZOServiceParam;
    TZOServiceBuilder service(QStringLiteral("TTestService"), QStringLiteral("For tests"), Server.Url());
    service.ApiKeyHeader("X-Key");
    TZOTypeLibrary& types = service.Types();
    const auto text = types.Scalar(vkString);
    const auto echo = types.NewObject(QStringLiteral("Echo"))
                          .Property(QStringLiteral("text"), text)
                          .Property(QStringLiteral("numbers"), types.NewList(types.Scalar(vkInteger)))
                          .Type();
    service.Operation(QStringLiteral("Echo"), QStringLiteral("Says it again"), "GET", QStringLiteral("/echo"),
                      {P::InQuery(QStringLiteral("text"), text, {}),
                       P::InQuery(QStringLiteral("count"), types.Scalar(vkInteger), {})},
                      echo);
    service.Operation(QStringLiteral("DoNothing"), {}, "POST", QStringLiteral("/nothing"), {}, nullptr);
    service.Operation(QStringLiteral("Fail"), {}, "GET", QStringLiteral("/fail"), {}, echo);
    service.Operation(QStringLiteral("Download"), {}, "GET", QStringLiteral("/file"),
                      {P::InQuery(QStringLiteral("bytes"), types.Scalar(vkInteger), {})},
                      types.Scalar(vkDownload));
    service.Operation(QStringLiteral("Halves"), {}, "GET", QStringLiteral("/halves"),
                      {P::InQuery(QStringLiteral("bytes"), types.Scalar(vkInteger), {})},
                      types.Scalar(vkDownload));
    service.Operation(QStringLiteral("Chunks"), {}, "GET", QStringLiteral("/chunks"), {},
                      types.Scalar(vkDownload));
    service.Operation(QStringLiteral("Upload"), {}, "POST", QStringLiteral("/store"),
                      {P::InPart(QStringLiteral("file"), types.Scalar(vkUpload), {})}, echo);
    service.Operation(QStringLiteral("SlowUpload"), {}, "POST", QStringLiteral("/slowstore"),
                      {P::InPart(QStringLiteral("file"), types.Scalar(vkUpload), {})}, echo);
    Register(std::make_unique<TZORestServiceClass>(QStringLiteral("TTestService"), service.Build()));
}

void ExecutePageTest::ShowOperation(const QString& AName) {
    ShowShell();
    Shell->GetServices(0)->Component()->SetApiKey(QStringLiteral("key"));
    Open(QStringLiteral("TTestService"));
    Open(AName);
    ASSERT_EQ(Stack().back(), AName);
}

TZORestView* ExecutePageTest::View(const char* APanel) const {
    return Find<QWidget>(APanel)->findChild<TZORestView*>();
}

QStringList ExecutePageTest::Lines(const TZORestView* AView) {
    QStringList lines;
    for (auto* layout = AView->Layouts().GetFirst(); layout; layout = layout->Next()) {
        QString line(2 * layout->Row()->Level(), u' ');
        for (int i = 0; i < layout->GetChunkCount(); ++i)
            line += layout->GetChunks(i)->Text();
        lines.append(line);
    }
    return lines;
}

TZOChunkToken ExecutePageTest::Token(const TZORestView* AView, int ARow) {
    return AView->RowAt(ARow)->Layout()->GetChunks(0)->TextToken();
}

void ExecutePageTest::GoTo(const QString& AKey) {
    ReqView()->setFocus();
    QTest::keyClick(ReqView(), Qt::Key_Home, Qt::ControlModifier);
    for (int i = 0; i < ReqView()->GetRowCount(); ++i) {
        const TZOViewRow* selected = ReqView()->Selected();
        if (selected && selected->Layout()->GetChunks(0)->Text() == AKey)
            return;
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    }
    ADD_FAILURE() << "no row " << AKey.toStdString();
}

void ExecutePageTest::Fill(const QString& AKey, const QString& AText) {
    GoTo(AKey);
    QTest::keyClicks(QApplication::focusWidget(), AText);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
}

void ExecutePageTest::Execute() {
    QTest::mouseClick(ExecButton(), Qt::LeftButton);
    Settle();
}

QString ExecutePageTest::WriteFile(const QString& AName, const QByteArray& AContent) const {
    QFile file(Folder.filePath(AName));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(AContent);
    return file.fileName();
}

QByteArray ExecutePageTest::ReadFile(const QString& AName) const {
    QFile file(Folder.filePath(AName));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << AName.toStdString();
    return file.readAll();
}

void ExecutePageTest::OnGui(const std::function<void()>& AWhat) {
    QMetaObject::invokeMethod(qApp, AWhat, Qt::BlockingQueuedConnection);
}

void ExecutePageTest::ClickInWindow(const QWidget* AWidget) const {
    const QPoint place = AWidget->mapTo(Shell.get(), AWidget->rect().center());
    QTest::mouseClick(Shell->windowHandle(), Qt::LeftButton, {}, place);
}

void ExecutePageTest::KeyInWindow(Qt::Key AKey, Qt::KeyboardModifiers AModifiers) const {
    QTest::keyClick(Shell->windowHandle(), AKey, AModifiers);
}
