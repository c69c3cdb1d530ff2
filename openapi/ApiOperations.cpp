// The fast index: which operations there are. Nothing is read of what they take and answer.
#include "openapi/ApiModel_p.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array Methods = {"get", "put", "post", "delete", "options", "head", "patch", "trace"};

QString FirstSentence(const QString& AText) {
    const QString text = AText.trimmed();
    qsizetype end = text.indexOf(u'\n');
    if (end < 0)
        end = text.size();
    const qsizetype stop = text.indexOf(QStringLiteral(". "));
    return text.left(stop >= 0 && stop < end ? stop + 1 : end).trimmed();
}

} // namespace

void TApiModel::ReadOperations(TDeclaration& ADeclaration, TZOTypeLibrary& ATypes) {
    const TDocView paths = Source.Root()["paths"];
    if (!paths && Format != afOpenApi31)
        Source.Report(Source.Root(), QStringLiteral("The document has no \"paths\"."));
    else if (paths && !paths.IsObject())
        Source.Report(paths, QStringLiteral("\"paths\" has to be an object."));
    for (const auto& [key, value] : paths.Entries()) {
        const QString path = key.Text();
        if (path.startsWith(QStringLiteral("x-")))
            continue;
        if (!path.startsWith(u'/'))
            Source.Report(value, QStringLiteral("A path has to start with a slash."));
        const TDocView item = Source.Resolve(value);
        if (item.IsObject())
            ReadPathItem(path, item, ADeclaration, ATypes);
        else if (item)
            Source.Report(item, QStringLiteral("A path has to be an object of operations."));
    }
}

void TApiModel::ReadPathItem(const QString& APath, TDocView AItem, TDeclaration& ADeclaration,
                             TZOTypeLibrary& ATypes) {
    for (const auto& [key, value] : AItem.Entries()) {
        const QString method = key.Text();
        const bool isMethod = std::any_of(Methods.begin(), Methods.end(),
                                          [&](const char* m) { return method == QLatin1String(m); });
        if (!isMethod)
            continue;
        const TDocView oper = Source.Resolve(value);
        if (oper.IsObject())
            ReadOperation(APath, method.toUpper(), AItem, oper, ADeclaration, ATypes);
        else if (oper)
            Source.Report(oper, QStringLiteral("An operation has to be an object."));
    }
}

void TApiModel::ReadOperation(const QString& APath, const QString& AMethod, TDocView AItem, TDocView AOper,
                              TDeclaration& ADeclaration, TZOTypeLibrary& ATypes) {
    TZORestService::TOper& oper = ADeclaration.Opers.emplace_back();
    oper.Name = OperationName(APath, AMethod, AOper);
    oper.IsComplete = false;
    oper.Http.Method = AMethod.toLatin1();
    oper.Http.Path = APath;
    for (const TDocView& owner : {AOper, AItem}) {
        if (oper.Http.Server.isEmpty() && owner["servers"].Count() > 0)
            oper.Http.Server = ServerUrl(owner["servers"]);
    }
    if (AOper["security"].IsArray()) {
        oper.Http.HasOwnSecurity = true;
        oper.Http.Security = Alternatives(AOper["security"], ADeclaration);
        AddSignOnScopes(AOper["security"], ADeclaration);
    }
    const QString summary = AOper["summary"].Text().trimmed();
    const TZOObjectBuilder request =
        ATypes.NewObject(oper.Name, summary.isEmpty() ? FirstSentence(AOper["description"].Text()) : summary);
    oper.Request = request.Type();
    Opers.push_back({AItem, AOper, request});
}

QString TApiModel::OperationName(const QString& APath, const QString& AMethod, TDocView AOper) {
    const QString plain = AMethod + u' ' + APath;
    const TDocView id = AOper["operationId"];
    QString name = id.IsString() ? id.Text() : QString();
    if (id && !id.IsString())
        Source.Report(id, QStringLiteral("An operationId has to be text."));
    if (name.isEmpty()) {
        name = plain;
    } else if (FNames.contains(name)) {
        Source.Report(
            id, QStringLiteral("Another operation has the operationId \"%1\"; this one is called \"%2\".")
                    .arg(name, plain));
        name = plain;
    }
    for (int i = 2; !FNames.insert(name).second; ++i)
        name = QStringLiteral("%1 %2").arg(plain).arg(i);
    return name;
}
