// API documents: whatever a file holds, loading it raises nothing, and what was found can be completed,
// counted and outlined.
#include "fuzzers/Fuzz.h"

#include "openapi/ApiDocument.h"
#include "openapi/TypeOutline.h"

#include <QFile>
#include <QTemporaryDir>

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    static const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("document." ZO_FUZZ_SUFFIX));
    QFile file(name);
    Fuzz::Require(file.open(QIODevice::WriteOnly | QIODevice::Truncate), "the file can be written");
    file.write(reinterpret_cast<const char*>(AData), qint64(ASize));
    file.close();

    const auto document = TZOApiDocument::Load(name);
    Fuzz::Require(document != nullptr, "there is a document, even if nothing is in it");
    document->CompleteAll();
    document->Counts();
    const TZORestServiceClass* service = document->ServiceClass();
    Fuzz::Require(service || !document->Problems().empty(), "a file without a service has a problem");
    if (!service)
        return 0;
    for (const TZORestService::TOper& oper : service->TypeInfo()->Opers()) {
        Fuzz::Require(oper.Request != nullptr, "an operation has a request");
        TypeOutline::Of(oper);
    }
    return 0;
}
