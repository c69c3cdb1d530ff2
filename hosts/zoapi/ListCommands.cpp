// The commands that tell what is in documents.
#include "hosts/zoapi/Commands.h"

#include "hosts/zoapi/Arguments.h"
#include "hosts/zoapi/Console.h"
#include "hosts/zoapi/Documents_p.h"

#include "openapi/TypeOutline.h"

#include "runtime/types/JsonText.h"

using namespace Documents;

namespace {

/// One JSON object, written member by member.
class TMembers {
public:
    void Add(const char* AKey, const QString& AText) {
        Key(AKey);
        JsonText::AppendQuoted(FJson, AText);
    }
    void Add(const char* AKey, qsizetype ANumber) {
        Key(AKey);
        FJson += QByteArray::number(ANumber);
    }
    void AddJson(const char* AKey, const QByteArray& AJson) {
        Key(AKey);
        FJson += AJson;
    }
    QByteArray Json() const { return '{' + FJson + '}'; }

private:
    void Key(const char* AKey) {
        if (!FJson.isEmpty())
            FJson += ',';
        FJson += '"' + QByteArray(AKey) + "\":";
    }

    QByteArray FJson;
};

QByteArray List(const QByteArrayList& AItems) { return '[' + AItems.join(',') + ']'; }

qsizetype OperCount(const TZOApiDocument& ADocument) {
    return ADocument.ServiceClass() ? qsizetype(ADocument.ServiceClass()->TypeInfo()->Opers().size()) : 0;
}

QByteArray ProblemsJson(const TZOApiDocument& ADocument) {
    QByteArrayList problems;
    for (const TZOApiProblem& problem : ADocument.Problems()) {
        TMembers members;
        members.Add("pointer", problem.Pointer);
        // Where there is no pointer the line says where.
        const bool needsLine = problem.Pointer.isEmpty() && problem.Line > 0;
        members.Add("message", needsLine
                                   ? QStringLiteral("Line %1: %2").arg(problem.Line).arg(problem.Message)
                                   : problem.Message);
        problems.append(members.Json());
    }
    return List(problems);
}

QByteArray ImportJson(TZOApiDocument& ADocument) {
    const TZOApiDocument::TCounts counts = ADocument.Counts();
    TMembers members;
    members.Add("file", ADocument.FileName());
    members.Add("format", ADocument.Format());
    members.Add("title", ADocument.Title());
    members.Add("version", ADocument.Version());
    members.Add("operations", OperCount(ADocument));
    members.Add("types", ADocument.TypeCount());
    members.Add("multipart", counts.Multipart);
    members.Add("binary_request", counts.BinaryRequest);
    members.Add("binary_response", counts.BinaryResponse);
    members.Add("unions", counts.Unions);
    members.Add("polymorphic", counts.Polymorphic);
    members.AddJson("problems", ProblemsJson(ADocument));
    return members.Json();
}

void PrintImport(const TZOApiDocument& ADocument) {
    const bool isKnown = ADocument.ServiceClass();
    Console::PrintRow(QStringLiteral("%1  %2  %3  %4 operations  %5 types  %6 problems")
                          .arg(isKnown ? ADocument.Title() : ADocument.FileName(), ADocument.Version(),
                               isKnown ? ADocument.Format() : QStringLiteral("unknown"))
                          .arg(OperCount(ADocument))
                          .arg(ADocument.TypeCount())
                          .arg(ADocument.Problems().size()));
    for (const TZOApiProblem& problem : ADocument.Problems())
        Console::PrintRow(QStringLiteral("  ") + problem.ToText());
}

} // namespace

int Commands::Import(const QStringList& AArguments) {
    const TZOArguments arguments(AArguments, {{"json"}});
    if (arguments.Positional().isEmpty())
        throw EZOUsageError(QStringLiteral("Name at least one document to import."));
    int exitCode = Success;
    for (const QString& fileName : arguments.Positional()) {
        const auto document = TZOApiDocument::Load(fileName);
        document->CompleteAll();
        if (arguments.Has("json"))
            Console::PrintExact(ImportJson(*document));
        else
            PrintImport(*document);
        if (!document->ServiceClass())
            exitCode = BadInput;
    }
    return exitCode;
}

int Commands::Services(const QStringList& AArguments) {
    const TZOArguments arguments(AArguments, {{"json"}});
    if (!arguments.Positional().isEmpty())
        throw EZOUsageError(QStringLiteral("The command \"services\" takes no name."));
    QByteArrayList items;
    for (const TZORestServiceClass* serviceClass : PluginClasses()) {
        const QString& description = serviceClass->TypeInfo()->Description();
        TMembers members;
        members.Add("name", serviceClass->ClassName());
        members.Add("description", description);
        items.append(members.Json());
        if (!arguments.Has("json"))
            Console::PrintRow(serviceClass->ClassName() + QStringLiteral("  ") + description.simplified());
    }
    if (arguments.Has("json"))
        Console::PrintExact(List(items));
    return Success;
}

int Commands::Operations(const QStringList& AArguments) {
    const TZOArguments arguments(AArguments, {{"json"}});
    if (arguments.Positional().size() != 1)
        throw EZOUsageError(QStringLiteral("Name one document."));
    const TSource source = Load(arguments.Positional().front());
    QByteArrayList items;
    for (const TZORestService::TOper& oper : source.Class->TypeInfo()->Opers()) {
        const QString method = QString::fromLatin1(oper.Http.Method);
        const QString& description = oper.Request->Description();
        if (arguments.Has("json")) {
            TMembers members;
            members.Add("name", oper.Name);
            members.Add("method", method);
            members.Add("path", oper.Http.Path);
            members.Add("description", description);
            items.append(members.Json());
        } else {
            const QString line =
                oper.Name + QStringLiteral("  ") + method + QStringLiteral("  ") + oper.Http.Path;
            Console::PrintRow(description.isEmpty() ? line
                                                    : line + QStringLiteral("  ") + description.simplified());
        }
    }
    if (arguments.Has("json"))
        Console::PrintExact(List(items));
    return Success;
}

int Commands::Describe(const QStringList& AArguments) {
    const TZOArguments arguments(AArguments, {});
    if (arguments.Positional().size() != 2)
        throw EZOUsageError(QStringLiteral("Name a document and one of its operations."));
    const TSource source = Load(arguments.Positional().front());
    const QString outline = TypeOutline::Of(*FindOper(source, arguments.Positional().last()));
    Console::PrintLines(outline.chopped(1), stdout);
    return Success;
}
