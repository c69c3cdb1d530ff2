#include "tests/shell/ShellFixture.h"

#include "platform/DesignerNotify.h"
#include "platform/Exceptions.h"

#include <QBuffer>

namespace {

class ServiceItem : public ShellTest {
protected:
    ServiceItem() { MakeShell(); }

    TZOServiceItem* Item() const { return Shell->GetServices(0); }
    TTestService* Service() const { return static_cast<TTestService*>(Item()->Component()); }
    static QString Key() { return SettingsKey(QStringLiteral("TFirstService")); }

    static void Store(const QMap<QString, QString>& AValues, const QString& ASubKey = QString()) {
        TRegistry registry;
        registry.OpenKey(Key() + u'\\' + ASubKey, true);
        for (auto value = AValues.begin(); value != AValues.end(); ++value)
            registry.WriteString(value.key(), value.value());
        registry.CloseKey();
    }
    static QStringList Names(const QString& ASubKey = QString()) {
        TRegistry registry;
        registry.OpenKeyReadOnly(Key() + u'\\' + ASubKey);
        return registry.GetValueNames();
    }
    static QString Stored(const QString& AName) {
        TRegistry registry;
        return registry.OpenKeyReadOnly(Key()) ? registry.ReadString(AName) : QString();
    }
    static QByteArray StoredToken() {
        TRegistry registry;
        return registry.OpenKeyReadOnly(Key()) ? registry.ReadBinaryData(QStringLiteral("Token"))
                                               : QByteArray();
    }
    static QByteArray TokenBytes(const TZORestService& AService) {
        QBuffer stream;
        stream.open(QIODevice::WriteOnly);
        AService.SaveToken(&stream);
        return stream.data();
    }
};

struct TDesigner final : IDesignerNotify {
    void Modified() override { ++Count; }
    int Count = 0;
};

const QStringList DefaultScopes = {QStringLiteral("read"), QStringLiteral("admin")};

} // namespace

TEST_F(ServiceItem, IsNamedAndDescribedByItsClass) {
    EXPECT_EQ(Item()->Name(), QStringLiteral("TFirstService"));
    EXPECT_EQ(Item()->Description(), QStringLiteral("The first."));
    EXPECT_EQ(Shell->GetServices(1)->Description(), QString());
    EXPECT_EQ(Item()->TypeInfo(), First->TypeInfo());
    EXPECT_FALSE(Item()->GetIsUserComp());
    EXPECT_EQ(Item()->GetRootKey(), Key());
}

TEST_F(ServiceItem, IsNamedByTheUsersComponent) {
    TTestService named(First.get());
    named.setObjectName(QStringLiteral("Petstore1"));
    TTestService unnamed(First.get());
    TZOServiceItem one(Shell.get(), &named);
    TZOServiceItem other(Shell.get(), &unnamed);
    EXPECT_EQ(one.Name(), QStringLiteral("Petstore1"));
    EXPECT_EQ(other.Name(), QStringLiteral("<TFirstService>"));
    EXPECT_TRUE(one.GetIsUserComp());
}

TEST_F(ServiceItem, IsConfiguredByAnApiKeyOrAllOfOAuth) {
    struct TCase {
        const char *ApiKey, *ClientId, *Secret, *RedirectUrl;
        bool Configured;
    };
    for (const TCase& c : {TCase{"", "", "", "", false},
                           {"", "id", "secret", "url", true},
                           {"", "", "secret", "url", false},
                           {"", "id", "", "url", false},
                           {"", "id", "secret", "", false},
                           {"key", "", "", "", true},
                           {"key", "id", "", "", true}}) {
        Service()->SetApiKey(QLatin1String(c.ApiKey));
        Service()->SetClientId(QLatin1String(c.ClientId));
        Service()->SetSecret(QLatin1String(c.Secret));
        Service()->SetRedirectUrl(QLatin1String(c.RedirectUrl));
        EXPECT_EQ(Item()->IsConfigured(), c.Configured)
            << c.ApiKey << ',' << c.ClientId << ',' << c.Secret << ',' << c.RedirectUrl;
    }
}

TEST_F(ServiceItem, IsConfiguredByWhatIsStored) {
    const QMap<QString, QString> whole{{QStringLiteral("ApiKey"), QString()},
                                       {QStringLiteral("ClientId"), QStringLiteral("id")},
                                       {QStringLiteral("Secret"), QStringLiteral("s")},
                                       {QStringLiteral("RedirectUrl"), QStringLiteral("url")}};
    const auto isConfigured = [this](const QMap<QString, QString>& AValues) {
        Store(AValues);
        MakeShell();
        return Item()->IsConfigured();
    };
    EXPECT_TRUE(isConfigured(whole));
    for (const char* name : {"ClientId", "Secret", "RedirectUrl"}) {
        QMap<QString, QString> values = whole;
        values[QLatin1String(name)].clear();
        EXPECT_FALSE(isConfigured(values)) << name;
        values[QStringLiteral("ApiKey")] = QStringLiteral("key");
        EXPECT_TRUE(isConfigured(values)) << name;
    }
}

TEST_F(ServiceItem, LoadsWhatIsStoredWhenItIsMade) {
    Store({{QStringLiteral("ApiKey"), QString()},
           {QStringLiteral("ClientId"), QStringLiteral("id")},
           {QStringLiteral("Secret"), QStringLiteral("s")},
           {QStringLiteral("RedirectUrl"), QStringLiteral("url")}});
    MakeShell();
    EXPECT_TRUE(Item()->IsConfigured());
    EXPECT_EQ(Service()->GetClientId(), QStringLiteral("id"));
    EXPECT_EQ(Service()->GetSecret(), QStringLiteral("s"));
    EXPECT_EQ(Service()->GetRedirectUrl(), QStringLiteral("url"));
}

TEST_F(ServiceItem, KeepsWhatIsNotStored) {
    Store({{QStringLiteral("ClientId"), QStringLiteral("id")}});
    Service()->SetApiKey(QStringLiteral("mine"));
    Item()->LoadOptions();
    EXPECT_EQ(Service()->GetApiKey(), QStringLiteral("mine"));
    EXPECT_EQ(Service()->GetClientId(), QStringLiteral("id"));
}

TEST_F(ServiceItem, ReadsScopesUpToTheFirstGap) {
    Store({{QStringLiteral("0"), QStringLiteral("a")},
           {QStringLiteral("1"), QStringLiteral("b")},
           {QStringLiteral("3"), QStringLiteral("d")}},
          QStringLiteral("Scopes"));
    Item()->LoadOptions();
    EXPECT_EQ(Service()->Scopes(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(ServiceItem, EmptiesItsScopesWhenNoneAreStored) {
    ASSERT_EQ(Service()->Scopes(), DefaultScopes);
    Store({});
    Item()->LoadOptions();
    EXPECT_EQ(Service()->Scopes(), QStringList());
}

TEST_F(ServiceItem, StaysAsItIsWhenNothingIsStored) {
    Service()->SetApiKey(QStringLiteral("mine"));
    Service()->SetClientId(QStringLiteral("id"));
    Service()->SetSecret(QStringLiteral("s"));
    Service()->SetRedirectUrl(QStringLiteral("url"));
    {
        const QSignalBlocker blocker(Service());
        Service()->SetToken(QStringLiteral("token"), QString(), 0);
    }
    Item()->LoadOptions();
    Item()->LoadToken();
    EXPECT_EQ(Service()->GetApiKey(), QStringLiteral("mine"));
    EXPECT_EQ(Service()->GetClientId(), QStringLiteral("id"));
    EXPECT_EQ(Service()->GetSecret(), QStringLiteral("s"));
    EXPECT_EQ(Service()->GetRedirectUrl(), QStringLiteral("url"));
    EXPECT_EQ(Service()->Scopes(), DefaultScopes);
    EXPECT_EQ(Service()->GetToken(), QStringLiteral("token"));
}

TEST_F(ServiceItem, SavesEverythingAndDiscardsTheToken) {
    Service()->SetToken(QStringLiteral("token"), QString(), 0);
    ASSERT_FALSE(StoredToken().isEmpty());
    Store({{QStringLiteral("0"), QStringLiteral("old")},
           {QStringLiteral("5"), QStringLiteral("old")},
           {QStringLiteral("7"), QStringLiteral("old")}},
          QStringLiteral("Scopes"));
    Service()->SetApiKey(QStringLiteral("key"));
    Service()->Scopes() = {QStringLiteral("x"), QStringLiteral("y")};
    Item()->SaveOptions();
    EXPECT_EQ(Names(), (QStringList{QStringLiteral("ApiKey"), QStringLiteral("ClientId"),
                                    QStringLiteral("RedirectUrl"), QStringLiteral("Secret")}));
    EXPECT_EQ(Stored(QStringLiteral("ApiKey")), QStringLiteral("key"));
    EXPECT_EQ(Names(QStringLiteral("Scopes")), (QStringList{QStringLiteral("0"), QStringLiteral("1")}));
    EXPECT_EQ(Service()->GetToken(), QStringLiteral("token"));
    Service()->Scopes().clear();
    Item()->LoadOptions();
    EXPECT_EQ(Service()->Scopes(), (QStringList{QStringLiteral("x"), QStringLiteral("y")}));
}

TEST_F(ServiceItem, KeepsTheTokensBytesAsTheServiceWroteThem) {
    Service()->SetToken(QStringLiteral("token"), QStringLiteral("refresh"), 12345);
    EXPECT_EQ(StoredToken(), TokenBytes(*Service())); // at once, not only when the shell goes
    TTestService* before = Service();
    const QByteArray bytes = TokenBytes(*before);
    MakeShell();
    EXPECT_EQ(Service()->GetToken(), QStringLiteral("token"));
    EXPECT_EQ(TokenBytes(*Service()), bytes);
}

TEST_F(ServiceItem, DeletesTheStoredTokenWhenTheServiceDropsIt) {
    Service()->SetToken(QStringLiteral("token"), QString(), 0);
    Service()->ResetToken();
    EXPECT_EQ(Names(), QStringList());
    EXPECT_TRUE(TRegistry().KeyExists(Key()));
}

TEST_F(ServiceItem, StoresNothingForATokenThatNeverWas) {
    Service()->ResetToken();
    EXPECT_FALSE(TRegistry().KeyExists(Key()));
}

TEST_F(ServiceItem, ResetsTheTokenWhenItsKeyHoldsNone) {
    {
        const QSignalBlocker blocker(Service());
        Service()->SetToken(QStringLiteral("token"), QString(), 0);
    }
    Store({{QStringLiteral("ApiKey"), QString()}});
    Item()->LoadToken();
    EXPECT_EQ(Service()->GetToken(), QString());
}

TEST_F(ServiceItem, DoesNotSaveWhatIsReportedWhileItLoads) {
    Store({{QStringLiteral("ApiKey"), QStringLiteral("stored")}});
    int reports = 0;
    Service()->OnTokenChanged = [&] {
        ++reports;
        Service()->SetApiKey(QStringLiteral("changed"));
        Item()->OptionsModified();
    };
    Item()->LoadToken();
    Service()->OnTokenChanged = {};
    EXPECT_EQ(reports, 1);
    EXPECT_EQ(Stored(QStringLiteral("ApiKey")), QStringLiteral("stored"));
    Item()->OptionsModified();
    EXPECT_EQ(Stored(QStringLiteral("ApiKey")), QStringLiteral("changed"));
}

TEST_F(ServiceItem, DoesNotSaveWhatIsReportedWhileItLoadsItsOptions) {
    QFile settings(Folder.filePath(QStringLiteral("settings.db")));
    ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
    settings.write("rubbish rubbish rubbish");
    settings.setPermissions(QFile::ReadOwner | QFile::WriteOwner); // or those would be told of, too
    settings.close();
    // What is wrong with the settings is told in the midst of loading them.
    int reports = 0;
    TRegistry::SetReportHandler([&](const QString&) {
        ++reports;
        Service()->SetApiKey(QStringLiteral("changed"));
        Item()->OptionsModified();
    });
    Item()->LoadOptions();
    TRegistry::SetReportHandler({});
    EXPECT_EQ(reports, 1);
    EXPECT_FALSE(TRegistry().KeyExists(Key()));
    Item()->OptionsModified();
    EXPECT_EQ(Stored(QStringLiteral("ApiKey")), QStringLiteral("changed"));
}

TEST_F(ServiceItem, SavesAgainAfterALoadThatFailed) {
    {
        TRegistry registry;
        registry.OpenKey(Key(), true);
        registry.WriteBinaryData(QStringLiteral("ApiKey"), "bytes");
        registry.CloseKey();
    }
    EXPECT_THROW(Item()->LoadOptions(), ERegistryException);
    Service()->SetApiKey(QStringLiteral("good"));
    Item()->OptionsModified();
    EXPECT_EQ(Stored(QStringLiteral("ApiKey")), QStringLiteral("good"));
}

TEST_F(ServiceItem, LetsTheExplorerStartWithABadValue) {
    {
        TRegistry registry;
        registry.OpenKey(Key(), true);
        registry.WriteString(QStringLiteral("Token"), QStringLiteral("text"));
        registry.CloseKey();
    }
    MakeShell();
    EXPECT_EQ(Shell->GetServiceCount(), 2);
    ASSERT_EQ(Reports.size(), 1);
    EXPECT_TRUE(Reports[0].contains(QLatin1String("Token")));
}

TEST_F(ServiceItem, RaisesWhenTheOptionsCannotBeSaved) {
    QDir(Folder.path()).mkpath(QStringLiteral("settings.db"));
    EXPECT_THROW(Item()->SaveOptions(), ERegistryException);
    EXPECT_THROW(Item()->SaveToken(), ERegistryException);
}

TEST_F(ServiceItem, ReportsATokenThatCouldNotBeSaved) {
    QDir(Folder.path()).mkpath(QStringLiteral("settings.db"));
    Service()->SetToken(QStringLiteral("token"), QString(), 0);
    EXPECT_EQ(Reports.size(), 1);
    Service()->ResetToken();
}

TEST_F(ServiceItem, KeepsAUsersComponentOutOfTheStore) {
    Store({{QStringLiteral("ApiKey"), QStringLiteral("the class's")}});
    TTestService component(First.get());
    component.SetApiKey(QStringLiteral("the component's"));
    TZOServiceItem item(Shell.get(), &component);
    EXPECT_EQ(component.GetApiKey(), QStringLiteral("the component's"));
    EXPECT_EQ(component.Scopes(), DefaultScopes);
    component.SetToken(QStringLiteral("token"), QString(), 0);
    item.SaveToken();
    item.OptionsModified();
    EXPECT_EQ(Stored(QStringLiteral("ApiKey")), QStringLiteral("the class's"));
    EXPECT_EQ(StoredToken(), QByteArray());
}

TEST_F(ServiceItem, TellsTheDesignerOfTheFormThatHoldsTheComponent) {
    QWidget designerWindow;
    QWidget form(&designerWindow);
    QWidget panel(&form);
    TTestService component(First.get(), &panel);
    TZOServiceItem item(Shell.get(), &component);
    TDesigner designer;
    item.OptionsModified();
    EXPECT_EQ(designer.Count, 0);
    SetDesignRoot(&form, &designer);
    item.OptionsModified();
    EXPECT_EQ(designer.Count, 1);
    SetDesignRoot(&form, nullptr);
    item.OptionsModified();
    EXPECT_EQ(designer.Count, 1);
}
