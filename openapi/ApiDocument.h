// API documents as service classes.
#pragma once

#include "openapi/ApiProblem.h"

#include "runtime/service/RestService.h"

#include <functional>
#include <memory>

class TApiModel;

/// An OpenAPI 3.0 or 3.1 or Swagger 2.0 document in JSON or YAML, with the files that it refers to in its own
/// folder. The list of its operations is made when it is loaded; what an operation takes and answers is made
/// when it is first used (TZORestService::TTypeInfo::Complete), which may find more problems.
class TZOApiDocument {
public:
    /// Hears how much has been read, from 0 to 1; false ends the loading.
    using TProgress = std::function<bool(double ADone)>;

    /// Counts of what operations have within reach of their request and response types.
    struct TCounts {
        int Multipart = 0;      ///< bodies of parts
        int BinaryRequest = 0;  ///< bodies that are the content of a file
        int BinaryResponse = 0; ///< responses that are written to a file
        int Unions = 0;
        int Polymorphic = 0;
    };

    /// Reads AFileName. Raises nothing: what is wrong becomes problems, and a document without a service
    /// class when it is none at all. Null when AProgress ended it. Nothing is registered.
    static std::unique_ptr<TZOApiDocument> Load(const QString& AFileName, const TProgress& AProgress = {});
    ~TZOApiDocument();

    /// The name that was given to Load.
    const QString& FileName() const { return FFileName; }
    /// "swagger-2.0", "openapi-3.0" or "openapi-3.1"; empty for anything else.
    QString Format() const;
    /// As the document has them, in one line each.
    const QString& Title() const;
    const QString& Version() const;
    /// Null when the document describes no service. Lives as long as this; its services have to be gone
    /// before.
    const TZORestServiceClass* ServiceClass() const { return FClass.get(); }
    /// The service class, handed over; its types keep what they need of the document.
    std::unique_ptr<TZORestServiceClass> TakeServiceClass() { return std::move(FClass); }
    /// The paths of the files that were read so far: the document's own and those it refers to.
    QStringList Files() const;
    /// What was found so far.
    const TZOApiProblems& Problems() const;

    /// Completes all operations.
    void CompleteAll();
    /// The schemas that have a name.
    int TypeCount() const;
    /// Completes all operations first.
    TCounts Counts();

private:
    TZOApiDocument();

    QString FFileName;
    std::shared_ptr<TApiModel> FModel;
    std::unique_ptr<TZORestServiceClass> FClass;
};
