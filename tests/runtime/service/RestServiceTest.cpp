#include "tests/runtime/service/ServiceFixture.h"

#include <QBuffer>
#include <QSignalSpy>

namespace {

using namespace ServiceCalls;
using TAlternatives = std::vector<TZOSecurityAlternative>;

/// A class with one scheme of each kind and one operation that names its own ways to authenticate.
std::unique_ptr<TZORestServiceClass> ClassSecuredBy(const TAlternatives& AAlternatives) {
    TZOServiceBuilder builder("TTestService", "A service of this test.", "http://127.0.0.1:1/base");
    builder.Scope("read", true).Scope("write", false).Scope("list", true);
    builder.AddScheme({"key", skApiKeyHeader, "X-Key"});
    builder.Operation("Free", "Free of charge.", "GET", "/free", {}, nullptr);
    builder.Operation("Call", {}, "GET", "/call", {}, nullptr).OperationSecurity(AAlternatives);
    return ClassOf(builder);
}

class TRestServiceTest : public testing::Test {
protected:
    std::unique_ptr<TZORestServiceClass> Class = ClassSecuredBy({{{0}}});
    std::unique_ptr<TZORestService> Service = Class->Create();

    static QByteArray Saved(const TZORestService& AService) {
        QBuffer stream;
        stream.open(QIODevice::WriteOnly);
        AService.SaveToken(&stream);
        return stream.data();
    }
    static void Load(TZORestService& AService, QByteArray ABytes) {
        QBuffer stream(&ABytes);
        stream.open(QIODevice::ReadOnly);
        AService.LoadToken(&stream);
    }
};

TEST_F(TRestServiceTest, StartsAsItsClassSays) {
    EXPECT_EQ(Service->Class(), Class.get());
    EXPECT_EQ(Service->TypeInfo(), TZOTypeInfo::Get(*Class));
    EXPECT_EQ(Service->TypeInfo()->Description(), "A service of this test.");
    EXPECT_EQ(Service->ServerUrl(), "http://127.0.0.1:1/base");
    EXPECT_EQ(Service->GetApiKey(), "");
    EXPECT_EQ(Service->GetClientId(), "");
    EXPECT_EQ(Service->GetSecret(), "");
    EXPECT_EQ(Service->GetRedirectUrl(), "");
    EXPECT_EQ(Service->GetToken(), "");
    EXPECT_EQ(Service->Scopes(), (QStringList{"read", "list"}));
}

TEST_F(TRestServiceTest, BelongsToItsOwner) {
    QObject owner;
    const auto* owned = Class->Create(&owner).release();
    EXPECT_EQ(owned->parent(), &owner);
}

/// Writes down what it can still ask a service that goes.
class TListener final : public IZOFreeNotification {
public:
    void Notification(QObject* AComponent, TZOOperation AOperation) override {
        const auto* service = dynamic_cast<TZORestService*>(AComponent);
        ASSERT_TRUE(service);
        Seen = QStringLiteral("%1 is %2 with the key %3")
                   .arg(service->TypeInfo()->Name(), AOperation == opRemove ? "removed" : "inserted",
                        service->GetApiKey());
    }
    QString Seen;
};

TEST_F(TRestServiceTest, AnnouncesItsRemovalWhileItIsWhole) {
    Service->SetApiKey("k");
    TListener listener;
    Service->FreeNotifier().Register(&listener);
    Service.reset();
    EXPECT_EQ(listener.Seen, "TTestService is removed with the key k");
}

TEST_F(TRestServiceTest, ScopesGoBackToTheDefaultSet) {
    Service->Scopes().removeAt(0);
    Service->Scopes().append("write");
    EXPECT_EQ(Service->Scopes().indexOf("read"), -1);
    Service->SetDefaultScopes();
    EXPECT_EQ(Service->Scopes(), (QStringList{"read", "list"}));
}

TEST_F(TRestServiceTest, KeepsCredentialsAsTheyWereSet) {
    Service->SetApiKey("k");
    Service->SetClientId("c");
    Service->SetSecret("s");
    Service->SetRedirectUrl("not even an address");
    EXPECT_EQ(Service->GetApiKey(), "k");
    EXPECT_EQ(Service->GetClientId(), "c");
    EXPECT_EQ(Service->GetSecret(), "s");
    EXPECT_EQ(Service->GetRedirectUrl(), "not even an address");
}

TEST_F(TRestServiceTest, ARequestTypeOfNoOperationIsRefused) {
    const auto other = ClassSecuredBy({});
    EXPECT_EQ(Class->TypeInfo()->FindOper(other->TypeInfo()->Opers()[0].Request), nullptr);
    EXPECT_THROW(ZORequest(Service.get(), other->TypeInfo()->Opers()[0].Request), EInvalidCast);
}

TEST(RestServiceStart, TheKeyIsNoneNeededWhereNoOperationNeedsOne) {
    const struct {
        TAlternatives Alternatives;
        bool NeedsCredentials;
    } rows[] = {
        {{}, false},
        {{{{}}}, false},
        {{{{0}}, {{}}}, false},
        {{{{0}}}, true},
    };
    for (const auto& row : rows) {
        const auto serviceClass = ClassSecuredBy(row.Alternatives);
        EXPECT_EQ(serviceClass->TypeInfo()->NeedsCredentials(), row.NeedsCredentials);
        EXPECT_EQ(serviceClass->Create()->GetApiKey(), row.NeedsCredentials ? "" : "none needed");
    }
}

TEST(RestServiceStart, TheRedirectUrlIsLoopbackWhereAnAuthorizationServerIsAsked) {
    TZOServiceBuilder builder("TTestService", {}, "http://127.0.0.1:1");
    const int oauth = builder.AddScheme({"login", skOAuth2, {}});
    builder.Operation("Call", {}, "GET", "/", {}, nullptr).OperationSecurity({{{oauth}}});
    const auto serviceClass = ClassOf(builder);
    const auto service = serviceClass->Create();
    EXPECT_EQ(service->GetRedirectUrl(), "http://127.0.0.1/callback");
    EXPECT_EQ(service->GetApiKey(), "");
}

TEST_F(TRestServiceTest, ATokenIsSavedAndLoaded) {
    Service->SetToken("access \u00FC", "refresh", 1'700'000'000'000);
    const auto again = Class->Create();
    QSignalSpy reports(again.get(), &TZORestService::TokenReported);
    const QByteArray saved = Saved(*Service);
    Load(*again, saved);
    EXPECT_EQ(again->GetToken(), "access \u00FC");
    EXPECT_EQ(reports.count(), 1);
    EXPECT_EQ(Saved(*again), saved);
}

TEST_F(TRestServiceTest, EveryChangeOfTheTokenIsReported) {
    QSignalSpy reports(Service.get(), &TZORestService::TokenReported);
    Service->SetToken("a", {}, 0);
    EXPECT_EQ(reports.count(), 1);
    Service->ResetToken();
    EXPECT_EQ(reports.count(), 2);
    EXPECT_EQ(Service->GetToken(), "");
}

TEST_F(TRestServiceTest, WithoutARefreshTokenAccessCannotBeRenewed) {
    Service->SetToken("a", {}, 0);
    EXPECT_EQ(FailureOf<EZOAuthorizationError>([&] { Service->RefreshAccess(); }),
              "TTestService holds no refresh token to renew its access with.");
}

TEST_F(TRestServiceTest, BytesThatAreNoTokenCountAsNone) {
    Service->SetToken("access", "refresh", 17);
    const QByteArray whole = Saved(*Service);
    QList<QByteArray> spoilt = {
        "", "Z", "ZOTK", QByteArray(1000, '\0'), "{\"access_token\":\"x\"}", whole + 'x', 'x' + whole};
    for (qsizetype i = 0; i < whole.size(); ++i) {
        spoilt.append(whole.left(i));
        QByteArray changed = whole;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        spoilt.append(changed);
    }
    for (const QByteArray& bytes : spoilt) {
        const auto service = Class->Create();
        service->SetToken("before", "before", 0);
        Load(*service, bytes);
        EXPECT_EQ(service->GetToken(), "") << bytes.toHex().toStdString();
        EXPECT_THROW(service->RefreshAccess(), EZOAuthorizationError);
    }
}

TEST_F(TRestServiceTest, AStreamThatTakesNoTokenIsAnError) {
    QBuffer stream;
    stream.open(QIODevice::ReadOnly);
    EXPECT_THROW(Service->SaveToken(&stream), EStreamError);
}

TEST(ServiceRegistry, ListsClassesOnceInTheOrderOfTheirRegistration) {
    const auto before = TZOTypeInfo::Services();
    const auto first = ClassSecuredBy({});
    auto second = ClassSecuredBy({});
    TZORestServiceClass::Register(second.get());
    TZORestServiceClass::Register(first.get());
    TZORestServiceClass::Register(second.get());
    EXPECT_EQ(TZOTypeInfo::Services().mid(before.size()),
              (QList<const TZORestServiceClass*>{second.get(), first.get()}));
    second.reset();
    EXPECT_EQ(TZOTypeInfo::Services().mid(before.size()), QList<const TZORestServiceClass*>{first.get()});
    TZORestServiceClass::Unregister(first.get());
    TZORestServiceClass::Unregister(first.get());
    EXPECT_EQ(TZOTypeInfo::Services().size(), before.size());
}

} // namespace
