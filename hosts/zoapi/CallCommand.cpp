// Executes one operation.
#include "hosts/zoapi/Commands.h"

#include "hosts/zoapi/Arguments.h"
#include "hosts/zoapi/Console.h"
#include "hosts/zoapi/Documents_p.h"
#include "hosts/zoapi/Output.h"
#include "hosts/zoapi/RequestPath.h"
#include "hosts/zoapi/Secrets.h"

#include "runtime/http/HttpClient.h"
#include "runtime/json/JsonCodec.h"
#include "runtime/oauth/AuthUI.h"
#include "runtime/service/Request.h"
#include "runtime/types/Streams.h"

#include <QFile>

#include <algorithm>
#include <optional>

using namespace Documents;

namespace {

const QList<TZOArguments::TOption>& CallOptions() {
    static const QList<TZOArguments::TOption> options = {
        {"server", true},    {"set", true},    {"request", true}, {"upload", true}, {"output", true},
        {"api-key", true},   {"bearer", true}, {"basic", true},   {"ca", true},     {"oauth", true},
        {"client-id", true}, {"secret", true}, {"scope", true},   {"verbose"}};
    return options;
}

/// The user opens the browser; it comes back by itself.
class TConsoleSignOn final : public TZOAuthUI {
public:
    void Begin(const QString&, const QByteArray& AUrl) override {
        Console::PrintRow(QStringLiteral("Open this address in a browser on this machine to sign on:"),
                          stderr);
        Console::PrintExact(AUrl, stderr);
    }
    bool Wait() override { return true; }
    void End() override {}
};

/// One call from its arguments to its answer.
class TCall {
public:
    explicit TCall(const TZOArguments& AArguments)
        : FArguments(AArguments),
          FSource(Load(AArguments.Positional().front())),
          FOper(FindOper(FSource, AArguments.Positional().last())),
          FService(FSource.Class->Create()),
          FRequest(FService.get(), FOper->Request),
          FIsDownload(FOper->Response && FOper->Response->Kind() == vkDownload) {
        if (FIsDownload && !FArguments.Has("output"))
            throw EZOUsageError(
                QStringLiteral("The operation answers with a file: say where to with --output."));
        SetUpService();
        FillRequest();
        FOutput.emplace(FArguments.Value("output"));
    }

    void Run() {
        if (FIsDownload) {
            TZOValueHolder response(FOper->Response, true);
            void* ref = nullptr;
            response.SetValue(true, ref);
            static_cast<ZODownload*>(ref)->SetStream(FOutput->Stream());
            FRequest.ExecRequest(&response);
            FOutput->Finish();
        } else if (FOper->Response) {
            TZOValueHolder response(FOper->Response, true);
            FRequest.ExecRequest(&response);
            if (!response.HasValue())
                return Finish();
            FOutput->Write(TZOJson::Encode(response) + '\n');
            FOutput->Finish();
        } else {
            FRequest.ExecRequest();
            Finish();
        }
    }

private:
    /// There is nothing to write.
    void Finish() {
        FOutput->Finish();
        Console::PrintRow(QStringLiteral("Ok"), stderr);
    }

    void SetUpService() {
        if (FArguments.Has("server"))
            FService->SetServerUrl(FArguments.Value("server"));
        SetUpKeys();
        if (FArguments.Has("bearer"))
            FService->SetToken(Secrets::Read(FArguments.Value("bearer")), {}, 0);
        SetUpOAuth();
        if (FArguments.Has("ca"))
            FService->HttpClient().SetCaFile(FArguments.Value("ca"));
        if (FArguments.Has("verbose"))
            FService->HttpClient().SetTrace(
                [](const QByteArray& ALine) { Console::PrintExact(ALine, stderr); });
    }

    /// The service reads user and password from its API key, too; where the document has other kinds of keys
    /// beside it, the scheme's name tells which is meant.
    void SetUpKeys() {
        if (FArguments.Has("api-key"))
            FService->SetApiKey(Secrets::Read(FArguments.Value("api-key")));
        if (!FArguments.Has("basic"))
            return;
        const auto& schemes = FService->TypeInfo()->Schemes();
        const auto basic =
            std::find_if(schemes.begin(), schemes.end(), [](const auto& s) { return s.Kind == skHttpBasic; });
        if (basic == schemes.end())
            throw EZOUsageError(QStringLiteral("The document knows no HTTP basic authentication."));
        QString key = Secrets::Read(FArguments.Value("basic"));
        if (schemes.size() > 1)
            key.prepend(basic->Name + u'=');
        if (FArguments.Has("api-key"))
            key.prepend(FService->GetApiKey() + QStringLiteral("; "));
        FService->SetApiKey(key);
    }

    void SetUpOAuth() {
        if (!FArguments.Has("oauth")) {
            for (const char* option : {"client-id", "secret", "scope"}) {
                if (FArguments.Has(option))
                    throw EZOUsageError(QStringLiteral("--%1 goes with --oauth.").arg(QLatin1String(option)));
            }
            return;
        }
        const QString name = FArguments.Value("oauth");
        const bool isCode = name == QStringLiteral("authorization-code");
        if (!isCode && name != QStringLiteral("client-credentials"))
            throw EZOUsageError(QStringLiteral("--oauth wants client-credentials or authorization-code, not "
                                               "\"%1\".")
                                    .arg(name));
        if (FArguments.Value("client-id").isEmpty())
            throw EZOUsageError(QStringLiteral("--oauth wants --client-id, too."));
        const TZOOAuthFlowKind flow = isCode ? ofAuthorizationCode : ofClientCredentials;
        const auto& schemes = FService->TypeInfo()->Schemes();
        if (std::none_of(schemes.begin(), schemes.end(), [&](const auto& s) { return s.OAuth.Has(flow); }))
            throw EZOUsageError(QStringLiteral("The document knows no OAuth flow of that kind."));
        FService->SetOAuthFlow(flow);
        FService->SetClientId(FArguments.Value("client-id"));
        FService->SetSecret(Secrets::Read(FArguments.Value("secret")));
        if (FArguments.Has("scope"))
            FService->Scopes() = FArguments.Values("scope");
        FService->SetAuthUI(&FSignOn);
    }

    void FillRequest() {
        TZOValueHolder value(FRequest.Type(), FRequest.Data(), false);
        if (FArguments.Has("request"))
            ReadRequest(value);
        for (const QString& setting : FArguments.Values("set")) {
            const auto [path, text] = Pair("set", setting);
            RequestPath::Set(value, path, text);
        }
        for (const QString& upload : FArguments.Values("upload")) {
            const auto [path, file] = Pair("upload", upload);
            AddUpload(value, path, file);
        }
    }

    static std::pair<QString, QString> Pair(const char* AOption, const QString& AText) {
        const qsizetype equals = AText.indexOf(u'=');
        if (equals < 1)
            throw EZOUsageError(
                QStringLiteral("--%1 wants NAME=VALUE, not \"%2\".").arg(QLatin1String(AOption), AText));
        return {AText.left(equals), AText.mid(equals + 1)};
    }

    void ReadRequest(TZOValueHolder& AValue) {
        const QString name = FArguments.Value("request");
        QFile file(name);
        const bool isOpen = name == QStringLiteral("-") ? file.open(stdin, QIODevice::ReadOnly)
                                                        : file.open(QIODevice::ReadOnly);
        const QByteArray json = isOpen ? file.readAll() : QByteArray();
        if (file.error() != QFileDevice::NoError)
            throw EZOUsageError(
                QStringLiteral("The request %1 cannot be read: %2.").arg(name, file.errorString()));
        try {
            TZOJson::Decode(json, AValue);
        } catch (const EZOJsonError& error) {
            throw EZOUsageError(
                QStringLiteral("The request %1 cannot be used: %2").arg(name, error.Message()));
        }
    }

    void AddUpload(TZOValueHolder& AValue, const QString& APath, const QString& AFileName) {
        const TZOValuePlace place = RequestPath::Reach(AValue, APath);
        if (place.Type->Kind() != vkUpload)
            throw EZOUsageError(QStringLiteral("\"%1\" takes no file.").arg(APath));
        auto& file = FUploads.emplace_back(std::make_unique<QFile>(AFileName));
        if (!file->open(QIODevice::ReadOnly))
            throw EZOUsageError(
                QStringLiteral("The upload %1 cannot be read: %2.").arg(AFileName, file->errorString()));
        static_cast<ZOUpload*>(place.Storage)->SetStream(file.get());
    }

    const TZOArguments& FArguments;
    TSource FSource;
    POper FOper;
    TConsoleSignOn FSignOn;
    std::unique_ptr<TZORestService> FService;
    ZORequest FRequest;
    bool FIsDownload;
    std::vector<std::unique_ptr<QFile>> FUploads;
    std::optional<TZOOutput> FOutput;
};

void PrintFailure(const EException& AFailure) {
    Console::PrintRow(AFailure.ClassName(), stderr);
    Console::PrintLines(AFailure.Message(), stderr);
}

} // namespace

int Commands::Call(const QStringList& AArguments) {
    const TZOArguments arguments(AArguments, CallOptions());
    if (arguments.Positional().size() != 2)
        throw EZOUsageError(QStringLiteral("Name a document and one of its operations."));
    TCall call(arguments);
    try {
        call.Run();
        return Success;
    } catch (const EZORequestValueError& failure) {
        PrintFailure(failure);
        return BadInput;
    } catch (const EException& failure) {
        PrintFailure(failure);
        return RequestFailed;
    }
}
