// What the tests of the HTTP client share.
#pragma once

#include "tests/servers/RawServer.h"

#include "runtime/http/HttpClient.h"
#include "runtime/types/Failures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QIODevice>

#include <algorithm>

/// A device that can be read once, as a pipe can.
class TPipe : public QIODevice {
public:
    explicit TPipe(const QByteArray& AContent) : FContent(AContent) { open(QIODevice::ReadOnly); }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* AData, qint64 ASize) override {
        const qint64 count = qMin(ASize, FContent.size());
        std::copy_n(FContent.constData(), count, AData);
        FContent.remove(0, count);
        return count > 0 ? count : -1;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray FContent;
};

class THttpTest : public testing::Test {
protected:
    TZOHttpClient Client;

    TZOHttpResponse Get(const QByteArray& AUrl) { return Client.Execute(Request("GET", AUrl)); }

    static TZOHttpRequest Request(const QByteArray& AMethod, const QByteArray& AUrl) {
        TZOHttpRequest request;
        request.Method = AMethod;
        request.Url = AUrl;
        return request;
    }

    static TZOHttpRequest WithBody(const QByteArray& AMethod, const QByteArray& AUrl,
                                   const QByteArray& AContent, const QByteArray& AType = "text/plain") {
        TZOHttpRequest request = Request(AMethod, AUrl);
        request.Body.Kind = bkBytes;
        request.Body.Content = AContent;
        request.Body.ContentType = AType;
        return request;
    }

    /// Sends ARequest, which has to fail with a TFailure, and gives its message.
    template <class TFailure>
    QString FailureOf(const TZOHttpRequest& ARequest) {
        try {
            const TZOHttpResponse response = Client.Execute(ARequest);
            ADD_FAILURE() << "answered with " << response.Status;
        } catch (const TFailure& failure) {
            return failure.Message();
        } catch (const EException& failure) {
            ADD_FAILURE() << failure.ClassName().toStdString() << ": " << failure.what();
        }
        return {};
    }
};
