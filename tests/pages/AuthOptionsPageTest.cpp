#include "tests/pages/PagesFixture.h"
#include "tests/pages/Wheel.h"

#include "platform/DesignerNotify.h"
#include "platform/IdeTheming.h"

#include <QCheckBox>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

namespace {

const char* const Edits[] = {"ClientIdEdit", "SecretEdit", "RedirectUrlEdit"};
const char* const Lines[] = {"ClientIdPanel", "SecretPanel", "RedirectUrlPanel"};

struct TDesigner final : IDesignerNotify {
    void Modified() override { ++Count; }
    int Count = 0;
};

class AuthOptionsPage : public PagesTest {
protected:
    AuthOptionsPage() {
        Register(MakeServiceClass(QStringLiteral("TMapService"), QString(),
                                  {{QStringLiteral("Locate"), QString()}}));
        ShowShell();
        Item = Shell->GetServices(0);
    }

    void ShowOptions() {
        Open(QStringLiteral("TMapService"));
        Shell->ServiceOptionsAsync();
        Settle();
        ASSERT_EQ(Stack().back(), QStringLiteral("Service options"));
    }
    TZORestService* Service() const { return Item->Component(); }
    QPushButton* Button(const char* AName) const { return Find<QPushButton>(AName); }
    QList<QCheckBox*> Boxes() const { return Find<QWidget>("ScopesPanel")->findChildren<QCheckBox*>(); }
    void Type(const char* AEdit, const QString& AText) {
        Find<QLineEdit>(AEdit)->setFocus();
        Find<QLineEdit>(AEdit)->selectAll();
        QTest::keyClicks(Find<QLineEdit>(AEdit), AText);
    }
    void AskForKey(const std::optional<QString>& AAnswer) {
        TestDialogs.Answers.push_back(AAnswer);
        QTest::mouseClick(Find<QWidget>("ApiKeyHeader"), Qt::LeftButton);
    }
    bool IsRed(const char* ALine) const {
        auto* line = Find<QWidget>(ALine);
        Find<QScrollArea>("ScrollBox")->ensureWidgetVisible(line);
        const QImage image = Top()->grab(QRect(line->mapTo(Top(), QPoint()), line->size())).toImage();
        EXPECT_EQ(image.height(), 2);
        const bool isRed = image.pixelColor(5, 1) == QColor(255, 0, 0);
        EXPECT_TRUE(isRed || image.pixelColor(5, 1).rgb() == Top()->palette().color(QPalette::Window).rgb());
        return isRed;
    }
    QString RedLines() const {
        QString red;
        for (const char* line : Lines)
            red += IsRed(line) ? u'1' : u'0';
        return red;
    }
    QString Checked() const {
        QString checked;
        for (const QCheckBox* box : Boxes())
            checked += box->isChecked() ? u'1' : u'0';
        return checked;
    }
    /// The three edits, the three scopes and both buttons.
    QString Enabled() const {
        QList<QWidget*> widgets;
        for (const char* edit : Edits)
            widgets.append(Find<QLineEdit>(edit));
        for (QCheckBox* box : Boxes())
            widgets.append(box);
        widgets << Button("DefScopesButton") << Button("ResetButton");
        QString enabled;
        for (const QWidget* widget : widgets)
            enabled += widget->isEnabled() ? u'1' : u'0';
        return enabled;
    }
    static QString Key() {
        return QStringLiteral("SOFTWARE\\Orvane Labs\\ZO-Tools 2020\\Bridgework\\APIExplorer\\TMapService");
    }
    static QString Stored(const QString& AName) {
        TRegistry registry;
        return registry.OpenKeyReadOnly(Key()) ? registry.ReadString(AName) : QStringLiteral("(no key)");
    }
    QString Status() const { return Shell->findChild<QLabel*>(QStringLiteral("AuthStatusLabel"))->text(); }

    TZOServiceItem* Item = nullptr;
};

TEST_F(AuthOptionsPage, SaysOncePerChangeThatTheSettingsCannotBeWritten) {
    ShowOptions();
    qputenv("ZO_SETTINGS_FILE", "/dev/null/settings.db");
    auto* edit = Find<QLineEdit>("ClientIdEdit");
    QTest::keyClicks(edit, QStringLiteral("ab"));
    EXPECT_EQ(std::exchange(Errors, {}), QStringList(2, QStringLiteral("ERegistryException")));
    EXPECT_EQ(edit->text(), QStringLiteral("ab"));
    EXPECT_EQ(Service()->GetClientId(), QStringLiteral("ab"));
    QCheckBox* box = Boxes().front();
    const bool wasChecked = box->isChecked();
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
    EXPECT_EQ(std::exchange(Errors, {}).size(), 1);
    EXPECT_NE(box->isChecked(), wasChecked);
    QTest::mouseClick(Button("DefScopesButton"), Qt::LeftButton);
    EXPECT_EQ(std::exchange(Errors, {}).size(), 1);
    EXPECT_EQ(box->isChecked(), wasChecked);
    QTest::mouseClick(Button("ResetButton"), Qt::LeftButton);
    EXPECT_EQ(std::exchange(Errors, {}).size(), 1);
    TestDialogs.Answers.emplace_back(QStringLiteral("key"));
    QTest::mouseClick(Find<QWidget>("ApiKeyHeader"), Qt::LeftButton);
    EXPECT_EQ(std::exchange(Errors, {}).size(), 1);
    EXPECT_EQ(Find<QLabel>("ApiKeyLabel")->text(), QStringLiteral("key"));
    EXPECT_EQ(Shell->findChild<QLabel*>(QStringLiteral("AuthStatusLabel"))->text(),
              QStringLiteral("Configured"));
    qputenv("ZO_SETTINGS_FILE", Folder.filePath(QStringLiteral("settings.db")).toUtf8());
}

TEST_F(AuthOptionsPage, WhatWasTypedIsThereInTheNextRun) {
    ShowOptions();
    const QString texts[] = {QStringLiteral("client"), QStringLiteral("s3cret"),
                             QStringLiteral("http://127.0.0.1/x")};
    for (int i = 0; i < 3; ++i) {
        Find<QLineEdit>(Edits[i])->selectAll();
        QTest::keyClicks(Find<QLineEdit>(Edits[i]), texts[i]);
    }
    for (QCheckBox* box : Boxes()) // "read" and "admin&all" off, "write" on
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
    const auto stored = [this](const char* AName) {
        TRegistry registry;
        EXPECT_TRUE(registry.OpenKeyReadOnly(Item->GetRootKey()));
        return registry.ReadString(QLatin1String(AName));
    };
    EXPECT_EQ(stored("ClientId"), texts[0]);
    EXPECT_EQ(stored("Secret"), texts[1]);
    EXPECT_EQ(stored("RedirectUrl"), texts[2]);

    const auto nextRun = [this] {
        Shell.reset();
        ShowShell();
        Item = Shell->GetServices(0);
        ShowOptions();
    };
    nextRun();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Find<QLineEdit>(Edits[i])->text(), texts[i]);
    EXPECT_EQ(Service()->Scopes(), QStringList{QStringLiteral("write")});
    EXPECT_FALSE(Boxes()[0]->isChecked());
    EXPECT_TRUE(Boxes()[1]->isChecked());
    TestDialogs.Answers.emplace_back(QStringLiteral("key"));
    QTest::mouseClick(Find<QWidget>("ApiKeyHeader"), Qt::LeftButton);
    nextRun();
    EXPECT_EQ(Find<QLabel>("ApiKeyLabel")->text(), QStringLiteral("key"));
    EXPECT_FALSE(Find<QLineEdit>(Edits[0])->isEnabled());
    TestDialogs.Answers.emplace_back(QString());
    QTest::mouseClick(Find<QWidget>("ApiKeyHeader"), Qt::LeftButton);
    QTest::mouseClick(Button("DefScopesButton"), Qt::LeftButton);
    nextRun();
    EXPECT_EQ(stored("ApiKey"), QString());
    EXPECT_EQ(Find<QLineEdit>(Edits[0])->text(), texts[0]);
    EXPECT_EQ(Service()->Scopes(), (QStringList{QStringLiteral("read"), QStringLiteral("admin&all")}));
}

} // namespace

TEST_F(AuthOptionsPage, ShowsWhatTheServiceHas) {
    Service()->SetClientId(QStringLiteral("id"));
    Service()->SetSecret(QStringLiteral("secret"));
    Service()->SetRedirectUrl(QStringLiteral("http://127.0.0.1/callback"));
    Service()->Scopes() = {QStringLiteral("write")};
    ShowOptions();
    EXPECT_EQ(Find<QLabel>("HeaderLabel")->text(), QStringLiteral("Service options"));
    EXPECT_EQ(Find<QLabel>("ApiKeyHeader")->text(), QStringLiteral("Use API Key..."));
    EXPECT_EQ(Find<QLabel>("ApiKeyLabel")->text(), QString());
    EXPECT_EQ(Find<QLineEdit>("ClientIdEdit")->text(), QStringLiteral("id"));
    EXPECT_EQ(Find<QLineEdit>("SecretEdit")->text(), QStringLiteral("secret"));
    EXPECT_EQ(Find<QLineEdit>("RedirectUrlEdit")->text(), QStringLiteral("http://127.0.0.1/callback"));
    EXPECT_EQ(Checked(), QStringLiteral("010"));
    EXPECT_EQ(RedLines(), QStringLiteral("000"));
}

TEST_F(AuthOptionsPage, OpeningItModifiesNothing) {
    Service()->SetClientId(QStringLiteral("id"));
    ShowOptions();
    EXPECT_EQ(Stored(QStringLiteral("ClientId")), QStringLiteral("(no key)"));
}

TEST_F(AuthOptionsPage, AnApiKeySwitchesTheRestOff) {
    Service()->SetApiKey(QStringLiteral("abc"));
    ShowOptions();
    EXPECT_EQ(Find<QLabel>("ApiKeyHeader")->text(), QStringLiteral("API Key:"));
    EXPECT_EQ(Find<QLabel>("ApiKeyLabel")->text(), QStringLiteral("abc"));
    EXPECT_EQ(Enabled(), QStringLiteral("00000000"));
    EXPECT_EQ(RedLines(), QStringLiteral("000"));
}

TEST_F(AuthOptionsPage, MarksTheFieldsThatAreEmpty) {
    ShowOptions();
    EXPECT_EQ(RedLines(), QStringLiteral("111"));
    Type("ClientIdEdit", QStringLiteral("x"));
    EXPECT_EQ(RedLines(), QStringLiteral("011"));
    QTest::keyClick(Find<QLineEdit>("ClientIdEdit"), Qt::Key_Backspace);
    EXPECT_EQ(RedLines(), QStringLiteral("111"));
}

TEST_F(AuthOptionsPage, WritesEveryKeystrokeThrough) {
    ShowOptions();
    Type("ClientIdEdit", QStringLiteral("i"));
    EXPECT_EQ(Service()->GetClientId(), QStringLiteral("i"));
    EXPECT_EQ(Stored(QStringLiteral("ClientId")), QStringLiteral("i"));
    Type("ClientIdEdit", QStringLiteral("id"));
    Type("SecretEdit", QStringLiteral("se"));
    EXPECT_EQ(Status(), QStringLiteral("Not configured"));
    Type("RedirectUrlEdit", QStringLiteral("url"));
    EXPECT_EQ(Service()->GetSecret(), QStringLiteral("se"));
    EXPECT_EQ(Service()->GetRedirectUrl(), QStringLiteral("url"));
    EXPECT_EQ(Stored(QStringLiteral("ClientId")), QStringLiteral("id"));
    EXPECT_EQ(Stored(QStringLiteral("Secret")), QStringLiteral("se"));
    EXPECT_EQ(Stored(QStringLiteral("RedirectUrl")), QStringLiteral("url"));
    EXPECT_EQ(Status(), QStringLiteral("Configured"));
}

TEST_F(AuthOptionsPage, AsksForTheApiKeyAndComesBackFromIt) {
    Service()->Scopes() = {QStringLiteral("write")};
    ShowOptions();
    Type("ClientIdEdit", QStringLiteral("id"));
    Type("RedirectUrlEdit", QStringLiteral("url"));
    AskForKey(QStringLiteral("k1"));
    EXPECT_EQ(TestDialogs.Asked, QStringList{QStringLiteral("query API Key|Please specify API Key|")});
    EXPECT_EQ(Service()->GetApiKey(), QStringLiteral("k1"));
    EXPECT_EQ(Stored(QStringLiteral("ApiKey")), QStringLiteral("k1"));
    EXPECT_EQ(Enabled(), QStringLiteral("00000000"));
    EXPECT_EQ(RedLines(), QStringLiteral("000"));
    AskForKey(std::nullopt); // cancelled
    EXPECT_EQ(TestDialogs.Asked.back(), QStringLiteral("query API Key|Please specify API Key|k1"));
    EXPECT_EQ(Service()->GetApiKey(), QStringLiteral("k1"));
    AskForKey(QString());
    EXPECT_EQ(Service()->GetApiKey(), QString());
    EXPECT_EQ(Find<QLabel>("ApiKeyHeader")->text(), QStringLiteral("Use API Key..."));
    EXPECT_EQ(Find<QLabel>("ApiKeyLabel")->text(), QString());
    EXPECT_EQ(Enabled(), QStringLiteral("11111111"));
    EXPECT_EQ(Find<QLineEdit>("ClientIdEdit")->text(), QStringLiteral("id"));
    EXPECT_EQ(Find<QLineEdit>("SecretEdit")->text(), QString());
    EXPECT_EQ(Find<QLineEdit>("RedirectUrlEdit")->text(), QStringLiteral("url"));
    EXPECT_EQ(Checked(), QStringLiteral("010"));
    EXPECT_EQ(RedLines(), QStringLiteral("010"));
    EXPECT_EQ(Stored(QStringLiteral("ApiKey")), QString());
    EXPECT_EQ(Stored(QStringLiteral("ClientId")), QStringLiteral("id"));
}

TEST_F(AuthOptionsPage, TakesTheKeyFromTheKeyboardToo) {
    ShowOptions();
    TestDialogs.Answers.emplace_back(QStringLiteral("k"));
    Find<QWidget>("ApiKeyHeader")->setFocus();
    QTest::keyClick(Find<QWidget>("ApiKeyHeader"), Qt::Key_Space);
    EXPECT_EQ(Service()->GetApiKey(), QStringLiteral("k"));
}

TEST_F(AuthOptionsPage, ListsTheScopesInTheirOrder) {
    ShowOptions();
    QStringList captions;
    int bottom = -1;
    for (const QCheckBox* box : Boxes()) {
        captions.append(box->text());
        EXPECT_GT(box->y(), bottom);
        bottom = box->geometry().bottom();
    }
    EXPECT_EQ(captions, (QStringList{QStringLiteral("  read (default)"), QStringLiteral("  write"),
                                     QStringLiteral("  admin&&all (default)")}));
    EXPECT_GT(Find<QWidget>("DefScopesPanel")->y(), bottom);
    EXPECT_EQ(Checked(), QStringLiteral("101"));
}

TEST_F(AuthOptionsPage, ChecksAndUnchecksScopes) {
    Service()->Scopes() = {QStringLiteral("READ"), QStringLiteral("admin&all")};
    ShowOptions();
    EXPECT_EQ(Checked(), QStringLiteral("001")); // names count by every letter
    Boxes()[0]->setFocus();
    QTest::keyClick(Boxes()[0], Qt::Key_Space);
    EXPECT_EQ(Service()->Scopes(),
              (QStringList{QStringLiteral("READ"), QStringLiteral("admin&all"), QStringLiteral("read")}));
    QTest::mouseClick(Boxes()[2], Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_EQ(Service()->Scopes(), (QStringList{QStringLiteral("READ"), QStringLiteral("read")}));
    TRegistry registry;
    ASSERT_TRUE(registry.OpenKeyReadOnly(Key() + QStringLiteral("\\Scopes")));
    EXPECT_EQ(registry.ReadString(QStringLiteral("1")), QStringLiteral("read"));
    EXPECT_FALSE(registry.ValueExists(QStringLiteral("2")));
}

TEST_F(AuthOptionsPage, NeverListsAScopeTwice) {
    Service()->Scopes().clear();
    ShowOptions();
    Service()->Scopes().append(QStringLiteral("read")); // behind the page's back
    QTest::mouseClick(Boxes()[0], Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_EQ(Service()->Scopes(), QStringList{QStringLiteral("read")});
}

TEST_F(AuthOptionsPage, RestoresTheDefaultScopes) {
    Service()->Scopes() = {QStringLiteral("write"), QStringLiteral("other")};
    ShowOptions();
    QTest::mouseClick(Button("DefScopesButton"), Qt::LeftButton);
    EXPECT_EQ(Checked(), QStringLiteral("101"));
    for (const QCheckBox* box : Boxes())
        EXPECT_EQ(box->isChecked(), box->text().endsWith(QStringLiteral(" (default)")));
    EXPECT_EQ(Service()->Scopes(), (QStringList{QStringLiteral("read"), QStringLiteral("admin&all")}));
    EXPECT_EQ(Stored(QStringLiteral("ClientId")), QString()); // saved
}

TEST_F(AuthOptionsPage, ResetsTheToken) {
    Service()->SetToken(QStringLiteral("token"), QString(), 0);
    ShowOptions();
    QTest::mouseClick(Button("ResetButton"), Qt::LeftButton);
    EXPECT_EQ(Service()->GetToken(), QString());
    TRegistry registry;
    ASSERT_TRUE(registry.OpenKeyReadOnly(Key()));
    EXPECT_FALSE(registry.ValueExists(QStringLiteral("Token")));
}

TEST_F(AuthOptionsPage, TellsTheDesignerOfAComponent) {
    QWidget form;
    TDesigner designer;
    SetDesignRoot(&form, &designer);
    TZORestService component(Classes[0].get(), &form);
    component.setObjectName(QStringLiteral("Map1"));
    Shell->ExploreComponent(&component);
    Settle();
    Shell->ServiceOptionsAsync();
    Settle();
    EXPECT_EQ(designer.Count, 0);
    Type("SecretEdit", QStringLiteral("-"));
    EXPECT_EQ(designer.Count, 1);
    EXPECT_EQ(component.GetSecret(), QStringLiteral("-"));
    ClearDesignRoot(&form);
}

TEST_F(AuthOptionsPage, FillingTheEditsAgainIsNoChangeOfItsOwn) {
    QWidget form;
    TDesigner designer;
    SetDesignRoot(&form, &designer);
    TZORestService component(Classes[0].get(), &form);
    Shell->ExploreComponent(&component);
    Settle();
    Shell->ServiceOptionsAsync();
    Settle();
    component.SetClientId(QStringLiteral("id")); // behind the page's back
    component.Scopes() = {QStringLiteral("write")};
    QTest::mouseClick(Button("DefScopesButton"), Qt::LeftButton);
    EXPECT_EQ(Find<QLineEdit>("ClientIdEdit")->text(), QStringLiteral("id"));
    EXPECT_EQ(Checked(), QStringLiteral("101"));
    EXPECT_EQ(designer.Count, 1) << "the scopes alone";
    ClearDesignRoot(&form);
}

TEST_F(AuthOptionsPage, LivesThroughTheEndOfItsService) {
    auto component = std::make_unique<TZORestService>(Classes[0].get());
    Shell->ExploreComponent(component.get());
    Settle();
    Shell->ServiceOptionsAsync();
    Settle();
    component.reset();
    EXPECT_EQ(Shell->GetNavStackTop()->AuthState(true), asHidden);
    Find<QLineEdit>("ClientIdEdit")->setText(QStringLiteral("x"));
    Settle();
    EXPECT_EQ(Stack(), QStringList{QStringLiteral("Services")});
}

TEST_F(AuthOptionsPage, SaysHowAClientWithoutSecretIsMeant) {
    ShowOptions();
    EXPECT_TRUE(Find<QLineEdit>("SecretEdit")->toolTip().contains(QStringLiteral("hyphen")));
}

TEST_F(AuthOptionsPage, ColoursItsLinkByTheTheme) {
    ShowOptions();
    EXPECT_EQ(TextColor(Find<QWidget>("ApiKeyHeader")), QColor(0, 102, 204));
    TZOIdeTheming::SetTheme(thDark);
    EXPECT_EQ(TextColor(Find<QWidget>("ApiKeyHeader")), QColor(255, 224, 188));
    EXPECT_EQ(RedLines(), QStringLiteral("111"));
}

TEST_F(AuthOptionsPage, ScrollsWhereItDoesNotFit) {
    ShowOptions();
    Shell->resize(500, 300);
    Settle();
    auto* box = Find<QScrollArea>("ScrollBox");
    ASSERT_GT(box->verticalScrollBar()->maximum(), 200);
    TurnWheel(Find<QLineEdit>("ClientIdEdit"), -120);
    EXPECT_EQ(box->verticalScrollBar()->value(), 96);
}

TEST_F(AuthOptionsPage, ReportsSettingsThatCannotBeWritten) {
    ShowOptions();
    qputenv("ZO_SETTINGS_FILE", "/dev/null/settings.db");
    Type("SecretEdit", QStringLiteral("s"));
    EXPECT_EQ(Errors, QStringList{QStringLiteral("ERegistryException")});
    Errors.clear();
    EXPECT_EQ(Service()->GetSecret(), QStringLiteral("s"));
}
