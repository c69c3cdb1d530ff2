// The secrets of a request, to be kept out of what people are shown.
#pragma once

#include "runtime/http/HttpMessage.h"

#include <vector>

/// Knows the values of the credentials that a request carries: the headers and the query that are marked as
/// such, the single cookies and the password in them, each as it is and as an address has it.
class TZOHttpSecrets {
public:
    /// What stands in the place of a secret.
    static constexpr char Hidden[] = "(hidden)";
    /// A shorter value is hidden only in its own place: it would be found in every second word.
    static constexpr qsizetype MinSize = 4;

    explicit TZOHttpSecrets(const TZOHttpRequest& ARequest);

    /// AText with Hidden in the place of every secret that a server may have said back.
    QByteArray Hide(QByteArray AText) const;
    QString Hide(const QString& AText) const;
    /// Hides in every value, and the whole value of each cookie that a server sets: it is a credential of the
    /// next request.
    void HideIn(QList<TZOHttpHeader>& AHeaders) const;

private:
    void AddHeader(const TZOHttpHeader& AHeader);
    void AddQuery(const QByteArray& APieces);
    void Add(const QByteArray& AValue);

    std::vector<QByteArray> FValues; ///< the longest first
    std::vector<QByteArray> FPieces; ///< "name=value" of the query
};
