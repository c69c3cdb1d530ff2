// Declares a service class in C++, one operation after the other.
#pragma once

#include "runtime/service/RestService.h"

/// One property of an operation's request, with its place in the HTTP request.
struct TZOServiceParam {
    QString Name;
    const TZOTypeInfo* Type = nullptr;
    QString Description;
    bool Required = false;
    TZOParamBinding Binding; ///< its Property is set by the builder

    /// A part of the path, always required: the path holds "{AName}".
    static TZOServiceParam InPath(const QString& AName, const TZOTypeInfo* AType, const QString& AText);
    static TZOServiceParam InQuery(const QString& AName, const TZOTypeInfo* AType, const QString& AText);
    /// AHeader is the header's name.
    static TZOServiceParam InHeader(const QString& AName, const QByteArray& AHeader, const TZOTypeInfo* AType,
                                    const QString& AText);
    static TZOServiceParam InCookie(const QString& AName, const TZOTypeInfo* AType, const QString& AText);
    /// The whole body, always required.
    static TZOServiceParam InBody(const QString& AName, const TZOTypeInfo* AType, const QString& AText);
    static TZOServiceParam InForm(const QString& AName, const TZOTypeInfo* AType, const QString& AText);
    static TZOServiceParam InPart(const QString& AName, const TZOTypeInfo* AType, const QString& AText);

    /// The same parameter as one that a request cannot do without.
    TZOServiceParam Needed() const;
    /// The same parameter, written in another style than its place's usual one.
    TZOServiceParam Styled(TZOParamStyle AStyle, bool AExplode) const;
};

/// Collects what a service class is, and makes its description.
class TZOServiceBuilder {
public:
    TZOServiceBuilder(const QString& AName, const QString& ADescription, const QString& ABaseUrl);

    /// Where the types of the operations are made.
    TZOTypeLibrary& Types() noexcept { return *FTypes; }

    /// A permission that the service can grant; ADefault: part of the default set.
    TZOServiceBuilder& Scope(const QString& AName, bool ADefault);
    /// Every operation needs an API key, sent in the header AHeader.
    TZOServiceBuilder& ApiKeyHeader(const QByteArray& AHeader);
    /// Adds an operation with a request type of its own, an object of AParams in their order. AResponse is
    /// null when it answers without data.
    TZOServiceBuilder& Operation(const QString& AName, const QString& ADescription, const QByteArray& AMethod,
                                 const QString& APath, const std::vector<TZOServiceParam>& AParams,
                                 const TZOTypeInfo* AResponse);
    /// A way to authenticate, by its index. No operation uses it until OperationSecurity says so.
    int AddScheme(const TZOSecurityScheme& AScheme);
    /// Lets the operation added last authenticate by one of AAlternatives instead of the class's ways.
    TZOServiceBuilder& OperationSecurity(const std::vector<TZOSecurityAlternative>& AAlternatives);

    /// The finished description, which takes the types over. The builder is empty afterwards.
    std::unique_ptr<TZORestService::TTypeInfo> Build();

private:
    TZORestService::TTypeInfo::TDeclaration FDeclaration;
    std::unique_ptr<TZOTypeLibrary> FTypes;
};
