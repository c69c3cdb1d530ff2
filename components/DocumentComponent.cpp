#include "components/DocumentComponent.h"

#include "components/SharedDocuments.h"

namespace {

const QString NoDocument = QStringLiteral("The property Document names no API document yet.");

QString ProblemsOf(const TZOApiDocument& ADocument) {
    QStringList problems;
    for (const TZOApiProblem& problem : ADocument.Problems())
        problems.append(problem.ToText());
    return problems.join(u'\n');
}

} // namespace

TZODocumentComponent::TZODocumentComponent(QWidget* AParent)
    : TZOServiceComponent(nullptr, AParent), FProblem(NoDocument) {}

TZODocumentComponent::~TZODocumentComponent() {
    // The service goes before the document that its class belongs to.
    SetServiceClass(nullptr);
}

void TZODocumentComponent::SetDocument(const QString& AName) {
    if (AName == FDocument)
        return;
    FDocument = AName;
    FProblem.clear();
    const QString file = SharedDocuments::Find(AName);
    std::shared_ptr<TZOApiDocument> loaded;
    if (AName.isEmpty())
        FProblem = NoDocument;
    else if (file.isEmpty())
        FProblem = QStringLiteral("There is no API document \"%1\".").arg(AName);
    else if (loaded = SharedDocuments::Load(file); !loaded->ServiceClass())
        FProblem = ProblemsOf(*loaded);
    if (!FProblem.isEmpty() || loaded == FLoaded)
        return;
    SetServiceClass(loaded->ServiceClass());
    FLoaded = std::move(loaded);
}
