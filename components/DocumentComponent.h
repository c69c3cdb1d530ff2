// An API document's service as a component on a form.
#pragma once

#include "components/ServiceComponent.h"

class TZOApiDocument;

/// Stands on a form for the service that an API document describes. It has no service before Document has
/// named one.
class TZODocumentComponent : public TZOServiceComponent {
    Q_OBJECT
    Q_PROPERTY(QString Document READ GetDocument WRITE SetDocument)

public:
    explicit TZODocumentComponent(QWidget* AParent = nullptr);
    ~TZODocumentComponent() override;

    /// The document's file; SharedDocuments::Find says where it is looked for.
    QString GetDocument() const { return FDocument; }
    /// Reads the document and replaces the service; the new one has the options that were set here. A name
    /// that leads to no service leaves the old one: form editors set a name letter by letter while it is
    /// typed. Raises nothing: see Problem.
    void SetDocument(const QString& AName);
    /// Why Document leads to no service; empty when it does.
    const QString& Problem() const { return FProblem; }

private:
    QString FDocument;
    QString FProblem;
    std::shared_ptr<TZOApiDocument> FLoaded;
};
