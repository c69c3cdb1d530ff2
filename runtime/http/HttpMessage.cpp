#include "runtime/http/HttpMessage.h"

QByteArray TZOHttpResponse::Header(const QByteArray& AName) const {
    QByteArray value;
    for (const TZOHttpHeader& header : Headers) {
        if (header.Name.compare(AName, Qt::CaseInsensitive) == 0)
            value = header.Value;
    }
    return value;
}
