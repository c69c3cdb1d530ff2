#include "hosts/zoapi/Documents_p.h"

#include "hosts/zoapi/Arguments.h"

std::unique_ptr<TZOApiDocument> Documents::Load(const QString& AFileName) {
    auto document = TZOApiDocument::Load(AFileName);
    if (document->ServiceClass())
        return document;
    QStringList problems;
    for (const TZOApiProblem& problem : document->Problems())
        problems.append(problem.ToText());
    throw EZOUsageError(problems.join(u'\n'));
}

POper Documents::FindOper(const TZOApiDocument& ADocument, const QString& AName) {
    const TZORestService::TTypeInfo* type = ADocument.ServiceClass()->TypeInfo();
    POper found = nullptr;
    for (const TZORestService::TOper& oper : type->Opers()) {
        if (oper.Name == AName)
            found = &oper;
        else if (!found && QString::fromLatin1(oper.Http.Method) + u' ' + oper.Http.Path == AName)
            found = &oper;
    }
    if (!found)
        throw EZOUsageError(QStringLiteral("%1 has no operation \"%2\".").arg(ADocument.FileName(), AName));
    type->Complete(found);
    return found;
}

void Documents::PrintLine(const QString& AText, std::FILE* AFile) {
    const QByteArray text = AText.toUtf8() + '\n';
    std::fwrite(text.constData(), 1, std::size_t(text.size()), AFile);
}
