// What an API document says of its service, and the operations it has.
#pragma once

#include "openapi/DocSource_p.h"
#include "openapi/SchemaTypes_p.h"

#include "runtime/service/RestService.h"

enum TApiFormat { afUnknown, afSwagger2, afOpenApi30, afOpenApi31 };

/// One operation of the document.
struct TApiOperation {
    TDocView PathItem;
    TDocView Oper;
    TZOObjectBuilder Request; ///< gets its properties when the operation is completed
};

/// A document that is being read, and stays for the operations that are completed later.
class TApiModel {
public:
    TDocSource Source;
    TApiFormat Format = afUnknown;
    QString Title;
    QString Version;
    std::vector<TApiOperation> Opers;
    std::unique_ptr<TSchemaTypes> Schemas;

    /// The description of the service class, which keeps AModel for its operations. Null when the document
    /// is none of the known formats.
    static std::unique_ptr<TZORestService::TTypeInfo> MakeTypeInfo(const std::shared_ptr<TApiModel>& AModel);

    /// The document's named schemas.
    TDocView NamedSchemas() const;
    bool IsSwagger2() const { return Format == afSwagger2; }

private:
    using TDeclaration = TZORestService::TTypeInfo::TDeclaration;

    // ApiModel.cpp
    bool ReadHead(TDeclaration& ADeclaration);
    void ReadFormat();
    QString ClassName(const TDeclaration& ADeclaration) const;
    QString BaseUrl();
    QString BesideBase(TDocView APlace, const QString& AUrl);
    QString ServerUrl(TDocView AServers);
    QString SwaggerUrl() const;

    // ApiOperations.cpp
    void ReadOperations(TDeclaration& ADeclaration, TZOTypeLibrary& ATypes);
    void ReadPathItem(const QString& APath, TDocView AItem, TDeclaration& ADeclaration,
                      TZOTypeLibrary& ATypes);
    void ReadOperation(const QString& APath, const QString& AMethod, TDocView AItem, TDocView AOper,
                       TDeclaration& ADeclaration, TZOTypeLibrary& ATypes);
    QString OperationName(const QString& APath, const QString& AMethod, TDocView AOper);

    // ApiSecurity.cpp
    void ReadSecurity(TDeclaration& ADeclaration);
    void ReadScheme(const QString& AName, TDocView AScheme, TDeclaration& ADeclaration);
    void ReadHttpScheme(const QString& AName, TDocView AScheme, TDeclaration& ADeclaration);
    static TZOOAuthScheme ReadFlows(TDocView AScheme);
    void ReadScopes(TDocView AScheme, TDeclaration& ADeclaration);
    /// Schemes whose server describes itself do not list their scopes: those that are required count.
    static void AddSignOnScopes(TDocView ARequirements, TDeclaration& ADeclaration);
    std::vector<TZOSecurityAlternative> Alternatives(TDocView ARequirements,
                                                     const TDeclaration& ADeclaration);

    // What a relative address is beside: the document's own server, and before that is known this one, as
    // a file was given to us by none.
    QString FBaseUrl = QStringLiteral("http://localhost");
    std::set<QString> FNames;          // of operations
    std::set<QString> FUnknownSchemes; // that the document describes, but nobody can use here
};
