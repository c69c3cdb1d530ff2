// Answers that are not what the operation promises: a message that says where, an absent response, and a
// service that goes on working.
#include "tests/runtime/service/ServiceFixture.h"

#include "runtime/http/HttpClient.h"

namespace {

using namespace ServiceCalls;
using testing::HasSubstr;

class TResponseTest : public TServiceTest {
protected:
    void SetUp() override {
        TZOServiceBuilder builder("TTestService", {}, Url());
        TZOTypeLibrary& types = builder.Types();
        TZOObjectBuilder node = types.NewObject("Node");
        node.Property("name", types.Scalar(vkString))
            .Property("count", types.Scalar(vkInteger))
            .Property("tags", types.NewList(types.Scalar(vkString)))
            .Property("child", node.Type());
        builder.Operation("Read", {}, "GET", "/node", {}, node.Type());
        builder.Operation("ReadText", {}, "GET", "/text", {}, types.Scalar(vkString));
        builder.Operation("ReadAny", {}, "GET", "/any", {}, types.Scalar(vkAny));
        builder.Operation("Touch", {}, "POST", "/touch", {}, nullptr);
        Class = ClassOf(builder);
        Service = Class->Create();
    }

    void Serve(const QByteArray& ABody, const QByteArray& AType = "application/json") {
        Answer = TRawServer::Answer(ABody, AType);
    }

    /// Executes "Read" on a holder that has a value already, and gives the message it fails with.
    QString JsonFailure() {
        const POper oper = OperOf(*Service, "Read");
        ZORequest request(Service.get(), oper->Request);
        TZOValueHolder response(oper->Response, true);
        TZOJson::Decode(R"({"name":"from before"})", response);
        const QString message = FailureOf<EZOJsonError>([&] { request.ExecRequest(&response); });
        EXPECT_FALSE(response.HasValue()) << message.toStdString();
        return message;
    }

    /// The next request, of the same service, finds the connection and all else in order.
    void ExpectWorks() {
        Serve(R"({"name":"fine"})");
        EXPECT_EQ(Exec(*Service, "Read"), R"({"name":"fine"})");
    }

    std::unique_ptr<TZORestServiceClass> Class;
    std::unique_ptr<TZORestService> Service;
};

TEST_F(TResponseTest, WhatIsNoJsonOrDoesNotFitIsNamedWithItsPlace) {
    const struct {
        QByteArray Body, Message;
    } rows[] = {
        {"{\"name\":\"x\",\n \"count\": oops}", "line 2, column 11"},
        {"{\"name\":\"x\"} and more", "line 1, column 14"},
        {"{\"name\":\"cut of", "line 1, column 16: the text ends too early"},
        {"{\"name\":\"x\"", "line 1, column 12: the text ends too early"},
        {"[]", "line 1, column 1: an object is expected, not an array"},
        {"{\"name\":5}", "line 1, column 9 (/name): a string is expected, not a number"},
        {"{\"count\":\"5\"}", "line 1, column 10 (/count): a whole number is expected, not a string"},
        {"{\"count\":2147483648}", "line 1, column 10 (/count)"},
        {"{\"tags\":[\"a\",\n{}]}", "line 2, column 1 (/tags/1): a string is expected, not an object"},
        {"{\"child\":{\"child\":{\"count\":true}}}", "line 1, column 28 (/child/child/count)"},
        {"{\"unknown\":{\"a\":[1,2,}}", "line 1, column 22"},
        {"{\"name\":\"\xFF\"}", "line 1, column "},
    };
    for (const auto& row : rows) {
        Serve(row.Body);
        EXPECT_THAT(JsonFailure().toStdString(), HasSubstr(row.Message.toStdString()))
            << row.Body.toStdString();
    }
    ExpectWorks();
    EXPECT_EQ(Server.ConnectionCount(), 1);
}

TEST_F(TResponseTest, NestingIsBounded) {
    const auto nested = [](int ADepth) {
        return QByteArray("{\"child\":").repeated(ADepth) + "{}" + QByteArray(ADepth, '}');
    };
    Serve(nested(999));
    EXPECT_EQ(Exec(*Service, "Read"), nested(999));
    for (const int depth : {1000, 100'000}) {
        Serve(nested(depth));
        EXPECT_THAT(JsonFailure().toStdString(), HasSubstr("line 1, column "));
        // What the type does not know is bounded as well.
        Serve("{\"unknown\":" + QByteArray(depth, '[') + QByteArray(depth, ']') + '}');
        EXPECT_THAT(JsonFailure().toStdString(), HasSubstr("line 1, column "));
    }
    ExpectWorks();
}

TEST_F(TResponseTest, UnknownPropertiesAreSkipped) {
    Serve(R"({"x":{"name":"not mine","list":[1,[2]]},"name":"mine","count":null,"y":"z"})");
    EXPECT_EQ(Exec(*Service, "Read"), R"({"name":"mine"})");
}

TEST_F(TResponseTest, AnAnswerWithoutContentIsAbsent) {
    Answer = "HTTP/1.1 204 No Content\r\n\r\n";
    const POper oper = OperOf(*Service, "Read");
    ZORequest request(Service.get(), oper->Request);
    TZOValueHolder response(oper->Response, true);
    TZOJson::Decode(R"({"name":"from before"})", response);
    request.ExecRequest(&response);
    EXPECT_FALSE(response.HasValue());
    Serve("null");
    request.ExecRequest(&response);
    EXPECT_FALSE(response.HasValue());
    ExpectWorks();
}

TEST_F(TResponseTest, APageInsteadOfJsonIsCalledWhatItIs) {
    Serve("<html><body>Welcome to the hotel's network</body></html>", "text/html");
    const std::string message = JsonFailure().toStdString();
    EXPECT_THAT(message, HasSubstr("line 1, column 1"));
    EXPECT_THAT(message, testing::EndsWith("\nThe server calls its answer \"text/html\", not JSON."));
    ExpectWorks();
}

TEST_F(TResponseTest, JsonIsReadInEveryCharacterEncodingThatIsNamed) {
    Serve("\xEF\xBB\xBF{\"name\":\"mark\"}");
    EXPECT_EQ(Exec(*Service, "Read"), R"({"name":"mark"})");
    Serve("{\"name\":\"f\xFCr\"}", "application/json; charset=ISO-8859-1");
    EXPECT_EQ(Exec(*Service, "Read"), "{\"name\":\"f\xC3\xBCr\"}");
}

TEST_F(TResponseTest, TextIsTakenAsItIsAndJsonTextIsDecoded) {
    Serve("\"quoted\" text", "text/plain");
    EXPECT_EQ(Exec(*Service, "ReadText"), R"("\"quoted\" text")");
    Serve("\"quoted\"", "application/json");
    EXPECT_EQ(Exec(*Service, "ReadText"), R"("quoted")");
    Serve("f\xFCr", "text/plain; charset=latin1");
    EXPECT_EQ(Exec(*Service, "ReadText"), "\"f\xC3\xBCr\"");
}

TEST_F(TResponseTest, AnyJsonKeepsItsDigitsAndItsOrder) {
    Serve(R"({"z":1.50,"a":12345678901234567890,"m":[]})");
    EXPECT_EQ(Exec(*Service, "ReadAny"), R"({"z":1.50,"a":12345678901234567890,"m":[]})");
}

TEST_F(TResponseTest, DataThatNobodyAskedForIsDropped) {
    Serve("{\"not\": even JSON", "application/json");
    EXPECT_NO_THROW(Exec(*Service, "Touch"));
    ExpectWorks();
}

TEST_F(TResponseTest, AnAnswerThatBreaksOffIsNoAnswer) {
    Answer = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 100\r\n\r\n{}";
    TRawServer breaking([this](TRawServer::TConnection& AConnection) {
        AConnection.ReadRequest();
        AConnection.Write(Answer);
    });
    Service->SetServerUrl(QString::fromLatin1(breaking.Url({})));
    EXPECT_THAT(FailureOf<EZOTruncatedError>([&] { Exec(*Service, "Read"); }).toStdString(),
                testing::EndsWith(" broke before the answer was complete."));
    Service->SetServerUrl(Url());
    ExpectWorks();
}

TEST_F(TResponseTest, AFailureShowsWhatTheServerSaid) {
    Answer =
        TRawServer::Answer("{\"error\":\n\"no such \x1B[31mnode\"}", "application/json", "404 Not Found");
    EXPECT_EQ(FailureOf<EZOHttpStatusError>([&] { Exec(*Service, "Read"); }),
              QString::fromUtf8("404 Not Found\n{\"error\":\n\"no such \uFFFD[31mnode\"}"));
    Answer = TRawServer::Answer(QByteArray(5000, 'x'), "text/plain", "503 Service Unavailable");
    EXPECT_EQ(FailureOf<EZOHttpStatusError>([&] { Exec(*Service, "Read"); }),
              "503 Service Unavailable\n" + QString(2000, 'x') + "...");
    Answer = TRawServer::Answer(QByteArray(1999, 'x') + "\xF0\x9F\x98\x80y", "text/plain", "400 Bad Request");
    EXPECT_EQ(FailureOf<EZOHttpStatusError>([&] { Exec(*Service, "Read"); }),
              "400 Bad Request\n" + QString(1999, 'x') + "...")
        << "no half of a character";
    Answer = TRawServer::Answer(QByteArray("\x89PNG\0\0", 6), "image/png", "500");
    EXPECT_EQ(FailureOf<EZOHttpStatusError>([&] { Exec(*Service, "Read"); }),
              "500 Internal Server Error\n(6 bytes of image/png)");
    ExpectWorks();
}

TEST_F(TResponseTest, AnAnswerLargerThanTheLimitIsNotKept) {
    Service->HttpClient().Limits().MaxBodyBytes = 1000;
    Serve("{\"name\":\"" + QByteArray(2000, 'x') + "\"}");
    FailureOf<EZOResponseTooLargeError>([&] { Exec(*Service, "Read"); });
    ExpectWorks();
}

} // namespace
