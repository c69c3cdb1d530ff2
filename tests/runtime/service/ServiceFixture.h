// What the tests of requests share: operations by name, values from JSON, failures by class.
#pragma once

#include "tests/servers/RawServer.h"

#include "runtime/json/JsonCodec.h"
#include "runtime/service/Request.h"
#include "runtime/service/ServiceBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ServiceCalls {

inline POper OperOf(const TZORestService& AService, const QString& AName) {
    for (const TZORestService::TOper& oper : AService.TypeInfo()->Opers()) {
        if (oper.Name == AName)
            return &oper;
    }
    throw std::invalid_argument("no operation " + AName.toStdString());
}

/// Gives the request's value the properties that AJson has.
inline void Fill(ZORequest& ARequest, const QByteArray& AJson) {
    TZOValueHolder value(ARequest.Type(), ARequest.Data(), false);
    TZOJson::Decode(AJson, value);
}

/// Executes an operation whose request value is AValue, and gives its response as JSON; empty for none.
inline QByteArray Exec(TZORestService& AService, const QString& AOper, const QByteArray& AValue = "{}") {
    const POper oper = OperOf(AService, AOper);
    ZORequest request(&AService, oper->Request);
    Fill(request, AValue);
    if (!oper->Response) {
        request.ExecRequest();
        return {};
    }
    TZOValueHolder response(oper->Response, true);
    request.ExecRequest(&response);
    return TZOJson::Encode(response);
}

/// The message of the TFailure that ACall has to end with.
template <class TFailure, class TCall>
QString FailureOf(TCall ACall) {
    try {
        ACall();
        ADD_FAILURE() << "nothing failed";
    } catch (const TFailure& failure) {
        return failure.Message();
    } catch (const EException& failure) {
        ADD_FAILURE() << failure.ClassName().toStdString() << ": " << failure.what();
    }
    return {};
}

inline std::unique_ptr<TZORestServiceClass> ClassOf(TZOServiceBuilder& ABuilder) {
    return std::make_unique<TZORestServiceClass>(QStringLiteral("TTestService"), ABuilder.Build());
}

} // namespace ServiceCalls

/// A test with a server that gives one answer to everything.
class TServiceTest : public testing::Test {
protected:
    QByteArray Answer = TRawServer::Answer("{}", "application/json");
    TRawServer Server{TRawServer::Answering([this](const QByteArray&) { return Answer; })};

    QString Url() const { return QString::fromLatin1(Server.Url({})); }
    /// The request that arrived last.
    QByteArray Last() const { return Server.Requests().isEmpty() ? QByteArray() : Server.Requests().last(); }
    /// The target in its first line.
    QByteArray Target() const { return Last().split(' ').value(1); }
    /// The value of its header AName; nothing when it has none.
    QByteArray Header(const QByteArray& AName) const {
        for (const QByteArray& line : Last().left(Last().indexOf("\r\n\r\n")).split('\n')) {
            if (line.toLower().startsWith(AName.toLower() + ':'))
                return line.mid(AName.size() + 1).trimmed();
        }
        return {};
    }
    QByteArray Body() const { return Last().mid(Last().indexOf("\r\n\r\n") + 4); }
};
