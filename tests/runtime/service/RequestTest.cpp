// Requests as a whole: what is left out, what is refused, and bodies.
#include "tests/runtime/service/ServiceFixture.h"

#include "runtime/types/Streams.h"

#include <QBuffer>

namespace {

using namespace ServiceCalls;
using P = TZOServiceParam;

const TZOTypeInfo* const Text = TZOTypeLibrary::Scalar(vkString);
const TZOTypeInfo* const Integer = TZOTypeLibrary::Scalar(vkInteger);
const TZOTypeInfo* const Upload = TZOTypeLibrary::Scalar(vkUpload);

class TRequestTest : public TServiceTest {
protected:
    /// A service with one operation, "Call".
    TZORestService& Declare(const QByteArray& AMethod, const QString& APath, const std::vector<P>& AParams) {
        TZOServiceBuilder builder("TTestService", {}, Url());
        builder.Operation("Call", {}, AMethod, APath, AParams, nullptr);
        FClass = ClassOf(builder);
        FService = FClass->Create();
        return *FService;
    }

    static P WithType(P AParam, const QByteArray& AContentType) {
        AParam.Binding.ContentType = AContentType;
        return AParam;
    }

    /// Sends AStream as the property "file".
    void SendFile(TZORestService& AService, QIODevice* AStream, const QString& AMimeType = {}) {
        const POper oper = OperOf(AService, "Call");
        ZORequest request(&AService, oper->Request);
        void* ref = nullptr;
        ZOObject::TData::GetByRef(*static_cast<ZOObject**>(request.Data()),
                                  oper->Request->FindProperty(u"file")->Index, ref);
        static_cast<ZOUpload*>(ref)->SetStream(AStream);
        static_cast<ZOUpload*>(ref)->SetMimeType(AMimeType);
        request.ExecRequest();
    }

private:
    std::unique_ptr<TZORestServiceClass> FClass;
    std::unique_ptr<TZORestService> FService;
};

TEST_F(TRequestTest, AbsentPropertiesAreNotSent) {
    auto& service = Declare("GET", "/call",
                            {P::InQuery("q", Text, {}), P::InHeader("h", "X-H", Text, {}),
                             P::InCookie("c", Text, {}), P::InForm("f", Text, {})});
    Exec(service, "Call");
    EXPECT_EQ(Target(), "/call");
    EXPECT_FALSE(Last().toLower().contains("x-h:"));
    EXPECT_FALSE(Last().toLower().contains("cookie:"));
    EXPECT_EQ(Body(), "");
}

TEST_F(TRequestTest, NamesAreSentWithTheByteOrderMarkTheyBeginWith) {
    const QString query = QStringLiteral("\uFEFFq"), form = QStringLiteral("\uFEFFf");
    auto& service = Declare("POST", "/call", {P::InQuery(query, Text, {}), P::InForm(form, Text, {})});
    Exec(service, "Call", R"({"\uFEFFq":"1","\uFEFFf":"2"})");
    EXPECT_EQ(Target(), "/call?%EF%BB%BFq=1");
    EXPECT_EQ(Body(), "%EF%BB%BFf=2");

    QBuffer content;
    content.setData("x");
    content.open(QIODevice::ReadOnly);
    P file = P::InPart("file", Upload, {});
    file.Binding.WireName = "\xEF\xBB\xBFupload";
    SendFile(Declare("POST", "/call", {file}), &content);
    EXPECT_TRUE(Body().contains("filename=\"\xEF\xBB\xBFupload\"")) << Body().toStdString();
}

TEST_F(TRequestTest, AnAbsentPartOfThePathIsNamed) {
    auto& service =
        Declare("GET", "/a/{id}/b/{other}", {P::InPath("id", Integer, {}), P::InPath("other", Text, {})});
    EXPECT_EQ(FailureOf<EZORequestValueError>([&] { Exec(service, "Call", R"({"id":1})"); }),
              "\"other\" has no value, but is part of the operation's address \"/a/{id}/b/{other}\".");
    EXPECT_TRUE(Server.Requests().isEmpty());
    Exec(service, "Call", R"({"id":1,"other":"x"})");
    EXPECT_EQ(Target(), "/a/1/b/x");
}

TEST_F(TRequestTest, ARequestWithoutItsObjectIsSentWithoutProperties) {
    auto& service = Declare("GET", "/call", {P::InQuery("q", Text, {})});
    ZORequest request(&service, OperOf(service, "Call")->Request);
    auto*& object = *static_cast<ZOObject**>(request.Data());
    delete object;
    object = nullptr;
    request.ExecRequest();
    EXPECT_EQ(Target(), "/call");
}

TEST_F(TRequestTest, LineBreaksInHeadersAreRefused) {
    auto& service = Declare("GET", "/call", {P::InHeader("h", "X-H", Text, {}), P::InCookie("c", Text, {})});
    for (const char* text : {"a\\r\\nX-Evil: 1", "a\\nb", "a\\rb", "a\\u0000b", "\\u007F"})
        EXPECT_EQ(FailureOf<EZORequestValueError>(
                      [&] { Exec(service, "Call", QByteArray("{\"h\":\"") + text + "\"}"); }),
                  "The header \"X-H\" cannot hold line breaks or other control characters.");
    EXPECT_TRUE(Server.Requests().isEmpty());
    // Where there is a way to write them, they are.
    Exec(service, "Call", R"({"h":"a\tb","c":"a\r\nb"})");
    EXPECT_EQ(Header("X-H"), "a\tb");
    EXPECT_EQ(Header("Cookie"), "c=a%0D%0Ab");
}

TEST_F(TRequestTest, ARequestKeepsItsValueWhileItIsMoved) {
    auto& service = Declare("GET", "/call", {P::InQuery("q", Text, {})});
    ZORequest request(&service, OperOf(service, "Call")->Request);
    Fill(request, R"({"q":"1"})");
    void* const data = request.Data();
    ZORequest moved = std::move(request);
    EXPECT_EQ(moved.Data(), data);
    EXPECT_EQ(moved.Type(), OperOf(service, "Call")->Request);
    moved.ExecRequest();
    moved.ExecRequest();
    EXPECT_EQ(Target(), "/call?q=1");
    EXPECT_EQ(Server.Requests().size(), 2);
}

TEST_F(TRequestTest, TheOperationsPathStandsBelowTheServersAddress) {
    const struct {
        QString Address, Path;
        QByteArray Target;
    } rows[] = {
        {"", "/x", "/x"},
        {"/", "/x", "/x"},
        {"/base", "/x", "/base/x"},
        {"/base/", "/x", "/base/x"},
        {"/base", "x", "/base/x"},
        {"/base", "", "/base"},
        {"/a b", "/ü", "/a%20b/%C3%BC"},
        {"/base", "/x?fixed=1", "/base/x?fixed=1&q=2"},
    };
    for (const auto& row : rows) {
        const bool hasQuery = row.Target.contains('?');
        auto& service = Declare("GET", row.Path, {P::InQuery("q", Integer, {})});
        service.SetServerUrl(Url() + row.Address);
        Exec(service, "Call", hasQuery ? R"({"q":2})" : "{}");
        EXPECT_EQ(Target(), row.Target);
    }
}

TEST_F(TRequestTest, ABodyIsJsonUnlessItIsDeclaredOtherwise) {
    const struct {
        const TZOTypeInfo* Type;
        QByteArray Declared, Value, ContentType, Body;
    } rows[] = {
        {Text, "", R"("x")", "application/json", R"("x")"},
        {Text, "text/plain", R"("ü")", "text/plain; charset=utf-8", "\xC3\xBC"},
        {Text, "text/plain; charset=UTF-8", R"("ü")", "text/plain; charset=UTF-8", "\xC3\xBC"},
        {Text, "application/vnd.note+json", R"("x")", "application/vnd.note+json", R"("x")"},
        {Integer, "", "5", "application/json", "5"},
        {TZOTypeLibrary::Scalar(vkAny), "", R"({"a":[1.0]})", "application/json", R"({"a":[1.0]})"},
    };
    for (const auto& row : rows) {
        auto& service = Declare("PUT", "/call", {WithType(P::InBody("body", row.Type, {}), row.Declared)});
        Exec(service, "Call", "{\"body\":" + row.Value + "}");
        EXPECT_EQ(Header("Content-Type"), row.ContentType);
        EXPECT_EQ(Body(), row.Body);
    }
}

TEST_F(TRequestTest, AnAbsentBodyIsAnEmptyOneWithoutAType) {
    auto& service = Declare("POST", "/call", {P::InBody("body", Text, {})});
    Exec(service, "Call");
    EXPECT_EQ(Header("Content-Length"), "0");
    EXPECT_FALSE(Last().toLower().contains("content-type:"));
}

TEST_F(TRequestTest, AWholeBodyIsStreamedFromItsStart) {
    auto& service = Declare("PUT", "/call", {WithType(P::InBody("file", Upload, {}), "image/*")});
    QBuffer stream;
    stream.setData(QByteArray(300'000, 'x') + "end");
    stream.open(QIODevice::ReadOnly);
    stream.seek(5);
    SendFile(service, &stream);
    EXPECT_EQ(Body(), stream.data());
    EXPECT_EQ(Header("Content-Length"), "300003");
    EXPECT_EQ(Header("Content-Type"), "application/octet-stream");
    SendFile(service, &stream, "image/png");
    EXPECT_EQ(Header("Content-Type"), "image/png");
}

TEST_F(TRequestTest, AnUploadWithoutAStreamIsNamed) {
    for (const P& param : {P::InBody("file", Upload, {}), P::InPart("file", Upload, {})}) {
        auto& service = Declare("POST", "/call", {param});
        EXPECT_EQ(FailureOf<EZOUploadError>([&] { SendFile(service, nullptr); }),
                  "No content was chosen for \"file\".");
    }
    auto& service = Declare("GET", "/call", {P::InQuery("file", Upload, {})});
    EXPECT_EQ(FailureOf<EZORequestValueError>([&] { SendFile(service, nullptr); }),
              "The content of a stream cannot be sent in \"file\".");
    EXPECT_TRUE(Server.Requests().isEmpty());
}

TEST_F(TRequestTest, PartsAreSentOneForEachEntry) {
    TZOTypeLibrary types;
    const auto* point = types.NewObject("Point").Property("x", Integer).Type();
    auto& service =
        Declare("POST", "/call",
                {P::InPart("text", Text, {}), P::InPart("list", types.NewList(Integer), {}),
                 P::InPart("point", point, {}), WithType(P::InPart("note", Text, {}), "text/x-note"),
                 P::InPart("absent", Text, {})});
    Exec(service, "Call", R"({"text":"a\r\nb","list":[1,2],"point":{"x":3},"note":"n"})");
    const QByteArray prefix = "multipart/form-data; boundary=";
    const QByteArray type = Header("Content-Type");
    ASSERT_TRUE(type.startsWith(prefix)) << type.toStdString();
    const QByteArray line = "--" + type.mid(prefix.size());
    const auto part = [&](const QByteArray& AName, const QByteArray& AType, const QByteArray& AContent) {
        return line + "\r\nContent-Disposition: form-data; name=\"" + AName + "\"\r\n" +
               (AType.isEmpty() ? QByteArray() : "Content-Type: " + AType + "\r\n") + "\r\n" + AContent +
               "\r\n";
    };
    EXPECT_EQ(Body(), part("text", "", "a\r\nb") + part("list", "", "1") + part("list", "", "2") +
                          part("point", "application/json", R"({"x":3})") + part("note", "text/x-note", "n") +
                          line + "--\r\n");
}

} // namespace
