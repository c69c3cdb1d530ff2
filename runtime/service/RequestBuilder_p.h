// From an operation and its request value to the HTTP request.
#pragma once

#include "runtime/http/HttpMessage.h"
#include "runtime/service/ParamStyles_p.h"
#include "runtime/service/RestService.h"

/// Builds the request of one call. Credentials are not its subject.
class TZORequestBuilder {
public:
    /// AObject is the request value, or null for one without properties; both outlive the builder.
    TZORequestBuilder(const TZORestService::TOper& AOper, const ZOObject* AObject);

    /// The request to AServerUrl. Raises EZORequestValueError, which names the property, for what cannot be
    /// sent, and EZOUploadError for an upload without a stream.
    TZOHttpRequest Build(const QString& AServerUrl);

private:
    /// A property that has a value, with where it goes.
    struct TParam {
        const TZOParamBinding* Binding;
        const TZOTypeInfo* Type;
        const void* Value;
        QByteArray Name; ///< on the wire
    };

    void CollectParams();
    void Place(const TParam& AParam);
    void PlaceBody(const TParam& AParam);
    void PlaceHeader(const TParam& AParam);
    void AddAcceptHeader();
    void AddParts(const TParam& AParam);
    void FinishBody();
    QByteArray Url(const QString& AServerUrl) const;
    QByteArray Path() const;
    QByteArray PathText(const QString& AName) const;
    TZOParamText Text(const TParam& AParam) const;
    void AppendPairs(QByteArray& AText, const TParam& AParam, const char* ASeparator,
                     ParamStyles::TEncoder AEncode) const;

    const TZORestService::TOper& FOper;
    const ZOObject* FObject;
    std::vector<TParam> FParams;
    TZOHttpRequest FRequest;
    QByteArray FQuery;
    QByteArray FCookies;
    QByteArray FForm;
    QByteArray FContentType; ///< from a header parameter of that name
    bool FHasForm = false;
};
