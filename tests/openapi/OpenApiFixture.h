// What the tests of API documents share: documents from text, operations by name, calls to a server that
// writes down what it gets.
#pragma once

#include "tests/servers/RawServer.h"

#include "openapi/ApiDocument.h"
#include "runtime/service/Request.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

class TOpenApiTest : public testing::Test {
protected:
    /// Writes a file beside the others of this test, and returns its path.
    QString Write(const QString& AName, const QByteArray& AText) const;
    std::unique_ptr<TZOApiDocument> Load(const QByteArray& AText,
                                         const QString& AName = QStringLiteral("api.yaml")) const;
    /// A document with "paths" and what follows it, of version 3.0.
    std::unique_ptr<TZOApiDocument> LoadPaths(const QByteArray& AFromPaths) const;

    /// Null, with a failure, when there is none.
    static POper OperOf(const TZOApiDocument& ADocument, const QString& AName);
    static QStringList OperNames(const TZOApiDocument& ADocument);
    static QStringList Problems(const TZOApiDocument& ADocument);

    QTemporaryDir Folder;
};

/// A request as it came over the wire.
struct TWireRequest {
    explicit TWireRequest(const QByteArray& ABytes);

    QByteArray Header(const QByteArray& AName) const;

    QByteArray Line; ///< "METHOD TARGET"
    QByteArrayList Headers;
    QByteArray Body; ///< with the boundary of parts replaced by BOUNDARY
};

/// Calls one operation of a service at a server of its own. AScript: one line of JSON for the request's
/// value, then lines "set PATH=TEXT", "upload PATH=CONTENT", "key TEXT" and "token TEXT".
TWireRequest CallWith(const TZOApiDocument& ADocument, POper AOper, const QByteArray& AScript);
