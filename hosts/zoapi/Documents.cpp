#include "hosts/zoapi/Documents_p.h"

#include "hosts/zoapi/Arguments.h"
#include "hosts/zoapi/Commands.h"
#include "hosts/zoapi/Console.h"

#include "runtime/service/ServicePlugins.h"

#include <QFileInfo>

namespace {

std::unique_ptr<TZOServicePlugins>& Plugins() {
    static std::unique_ptr<TZOServicePlugins> plugins;
    return plugins;
}

} // namespace

QList<const TZORestServiceClass*> Documents::PluginClasses() {
    if (!Plugins()) {
        Plugins() = std::make_unique<TZOServicePlugins>();
        Plugins()->LoadAll();
        for (const auto& failure : Plugins()->Failures())
            Console::PrintLines(failure.ToText(), stderr);
    }
    return TZOTypeInfo::Services();
}

void Commands::Done() { Plugins().reset(); }

Documents::TSource Documents::Load(const QString& AName) {
    if (!QFileInfo::exists(AName)) {
        for (const TZORestServiceClass* serviceClass : PluginClasses()) {
            if (serviceClass->ClassName() == AName)
                return {nullptr, serviceClass};
        }
    }
    auto document = TZOApiDocument::Load(AName);
    if (const TZORestServiceClass* serviceClass = document->ServiceClass())
        return {std::move(document), serviceClass};
    QStringList problems;
    for (const TZOApiProblem& problem : document->Problems())
        problems.append(problem.ToText());
    throw EZOUsageError(problems.join(u'\n'));
}

POper Documents::FindOper(const TSource& ASource, const QString& AName) {
    const TZORestService::TTypeInfo* type = ASource.Class->TypeInfo();
    POper found = nullptr;
    for (const TZORestService::TOper& oper : type->Opers()) {
        if (oper.Name == AName)
            found = &oper;
        else if (!found && QString::fromLatin1(oper.Http.Method) + u' ' + oper.Http.Path == AName)
            found = &oper;
    }
    if (!found)
        throw EZOUsageError(
            QStringLiteral("%1 has no operation \"%2\".")
                .arg(ASource.Document ? ASource.Document->FileName() : ASource.Class->ClassName(), AName));
    type->Complete(found);
    return found;
}
