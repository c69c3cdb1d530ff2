// What the execute page shows of a server that does wrong, and what it never shows.
#include "tests/pages/ExecutePageFixture.h"
#include "tests/servers/FaultServer.h"

#include "runtime/http/HttpClient.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>

#include <cstring>

namespace {

using ExecuteFaults = ExecutePageTest;

TEST_F(ExecuteFaults, EachIsShownAndThePageStaysUsable) {
    const TFaultServer faults;
    ShowOperation(QStringLiteral("Echo"));
    TZORestService* service = Shell->GetServices(0)->Component();
    service->SetServerUrl(QString::fromLatin1(faults.Url()));
    service->HttpClient().Limits().MaxBodyBytes = TFaultServer::MaxBodyBytes;
    int count = 0;
    for (const TFault& fault : TFaultServer::Faults()) {
        // The drip never ends by itself; cancelling is told of elsewhere.
        if (*fault.ClassName == 0 || std::strcmp(fault.Name, "slow-drip") == 0)
            continue;
        ++count;
        service->HttpClient().Limits().StallTimeoutMs = TFaultServer::StallTimeoutMs(fault.Name);
        Fill(QStringLiteral("text"), QLatin1String(fault.Name));
        Execute();
        const QStringList expected =
            QStringList(QLatin1String(fault.ClassName)) + faults.MessageOf(fault).split(u'\n');
        EXPECT_EQ(Lines(RespView()), expected) << fault.Name;
        EXPECT_EQ(Token(RespView(), 0), ctError) << fault.Name;
        EXPECT_TRUE(ExecButton()->isEnabled());
    }
    EXPECT_GT(count, 40);
    service->HttpClient().Limits().StallTimeoutMs = TFaultServer::StallTimeoutMs({});
    Fill(QStringLiteral("text"), QStringLiteral("anything else"));
    Execute();
    EXPECT_EQ(Lines(RespView()),
              (QStringList{QStringLiteral("{"), QStringLiteral("  text: fine"), QStringLiteral("}")}));
}

/// All that is or can be read in AWidget and what is in it.
QString TextsIn(const QWidget* AWidget) {
    QStringList texts;
    QList<QWidget*> widgets = AWidget->findChildren<QWidget*>();
    widgets.append(const_cast<QWidget*>(AWidget));
    for (const QWidget* widget : widgets) {
        texts << widget->windowTitle() << widget->toolTip() << widget->accessibleName()
              << widget->accessibleDescription() << widget->statusTip() << widget->whatsThis();
        if (const auto* label = qobject_cast<const QLabel*>(widget))
            texts << label->text();
        else if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
            texts << button->text();
        else if (const auto* edit = qobject_cast<const QLineEdit*>(widget))
            texts << edit->displayText() << edit->placeholderText();
        else if (const auto* text = qobject_cast<const QPlainTextEdit*>(widget))
            texts << text->toPlainText();
    }
    texts.removeAll(QString());
    return texts.join(u'\n');
}

TEST_F(ExecuteFaults, NoSecretIsOnThePageOrInTheOutput) {
    // Says back the head of the request in every place where a server can speak.
    const TRawServer echo(TRawServer::Answering([](const QByteArray& ARequest) {
        const qsizetype start = ARequest.indexOf("X-Key: ");
        const QByteArray heard = ARequest.mid(start, ARequest.indexOf('\r', start) - start);
        const bool isFine = ARequest.contains("text=fine");
        return TRawServer::Answer(isFine ? QByteArray("{}") : heard, "application/json",
                                  isFine ? QByteArray("200 OK") : "403 " + heard,
                                  "X-Echo: " + heard + "\r\nSet-Cookie: session=planted-session\r\n");
    }));
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    ShowOperation(QStringLiteral("Echo"));
    TZORestService* service = Shell->GetServices(0)->Component();
    service->SetServerUrl(QString::fromLatin1(echo.Url({})));
    service->SetApiKey(QStringLiteral("planted-key"));
    QString shown;
    for (const char* text : {"fine", "refused"}) {
        Fill(QStringLiteral("text"), QLatin1String(text));
        Execute();
        shown += TextsIn(Shell.get()) + Lines(RespView()).join(u'\n') + Lines(ReqView()).join(u'\n');
    }
    EXPECT_TRUE(echo.Requests().value(0).contains("X-Key: planted-key"));
    EXPECT_TRUE(shown.contains(QStringLiteral("X-Echo: X-Key: (hidden)"))) << shown.toStdString();
    EXPECT_TRUE(shown.contains(QStringLiteral("403 X-Key: (hidden)")));
    EXPECT_FALSE(shown.contains(QStringLiteral("planted"))) << shown.toStdString();

    QTest::mouseClick(Find<QWidget>("CopyCurlLabel"), Qt::LeftButton);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions().front()).center());
    const QString command = QGuiApplication::clipboard()->text();
    EXPECT_TRUE(command.startsWith(QStringLiteral("curl"))) << command.toStdString();
    EXPECT_FALSE(command.contains(QStringLiteral("planted")));

    const std::string output =
        testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
    EXPECT_EQ(output.find("planted"), std::string::npos) << output;
}

} // namespace
