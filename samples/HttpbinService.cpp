#include "samples/HttpbinService.h"

#include "runtime/service/ServiceBuilder.h"

namespace {

using P = TZOServiceParam;

/// What the server's answers are made of. A name that was sent once comes back with one text, a name that
/// was sent twice with a list: such members are open.
class THttpbinTypes {
public:
    explicit THttpbinTypes(TZOTypeLibrary& ATypes) : FTypes(ATypes) {}

    const TZOTypeInfo* Text = TZOTypeLibrary::Scalar(vkString);
    const TZOTypeInfo* Integer = TZOTypeLibrary::Scalar(vkInteger);
    const TZOTypeInfo* Boolean = TZOTypeLibrary::Scalar(vkBoolean);
    const TZOTypeInfo* Any = TZOTypeLibrary::Scalar(vkAny);

    const TZOTypeInfo* ListOf(const TZOTypeInfo* AType) { return FTypes.NewList(AType); }
    const TZOTypeInfo* MapOf(const TZOTypeInfo* AType) { return FTypes.NewMap(AType); }
    TZOObjectBuilder Object(const QString& AName, const QString& AText) {
        return FTypes.NewObject(AName, AText);
    }

    /// What the server understood of a request without a body.
    TZOObjectBuilder Echo(const QString& AName) {
        return Object(AName, "What reached the server.")
            .Property("args", MapOf(Any), {.Description = "The query."})
            .Property("headers", MapOf(Text))
            .Property("origin", Text)
            .Property("url", Text);
    }
    /// The same with all that a body can hold.
    const TZOTypeInfo* BodyEcho() {
        if (!FBodyEcho)
            FBodyEcho = Echo("BodyEcho")
                            .Property("data", Text, {.Description = "The body as text."})
                            .Property("json", Any, {.Description = "The body, when it was JSON."})
                            .Property("form", MapOf(Any))
                            .Property("files", MapOf(Any))
                            .Type();
        return FBodyEcho;
    }

private:
    TZOTypeLibrary& FTypes;
    const TZOTypeInfo* FBodyEcho = nullptr;
};

void AddReading(TZOServiceBuilder& AService, THttpbinTypes& T) {
    AService.Operation(
        "Get", "Sends parameters in the query and shows what arrived.", "GET", "/get",
        {P::InQuery("text", T.Text, "Any text."), P::InQuery("number", T.Integer, "Any integer."),
         P::InQuery("tags", T.ListOf(T.Text), "Sent once for each entry."),
         P::InQuery("at", TZOTypeLibrary::Scalar(vkDateTime), "For example 2024-02-29T12:30:00Z.")},
        T.Echo("GetEcho").Type());
    AService.Operation(
        "Headers", "Sends a header and shows all that arrived.", "GET", "/headers",
        {P::InHeader("note", "X-Note", T.Text, "Sent as the header X-Note.")},
        T.Object("HeaderEcho", "The request's headers.").Property("headers", T.MapOf(T.Text)).Type());
    AService.Operation(
        "Cookies", "Sends a cookie and shows all that arrived.", "GET", "/cookies",
        {P::InCookie("flavour", T.Text, "Sent as the cookie of that name.")},
        T.Object("CookieEcho", "The request's cookies.").Property("cookies", T.MapOf(T.Text)).Type());
}

void AddBodies(TZOServiceBuilder& AService, THttpbinTypes& T) {
    const auto line = T.Object("OrderLine", "One article of an order.")
                          .Property("article", T.Text, {.Required = true})
                          .Property("count", T.Integer)
                          .Type();
    const auto order = T.Object("Order", "Something with lists, maps and free JSON in it.")
                           .Property("customer", T.Text, {.Required = true})
                           .Property("lines", T.ListOf(line))
                           .Property("labels", T.MapOf(T.Text))
                           .Property("extra", T.Any, {.Description = "Any JSON value."})
                           .Type();
    AService.Operation("PostJson", "Sends an object as JSON and shows what arrived.", "POST", "/post",
                       {P::InBody("order", order, "What to send.")}, T.BodyEcho());
    AService.Operation("PostForm", "Sends an urlencoded form and shows what arrived.", "POST", "/post",
                       {P::InForm("name", T.Text, "Any text.").Needed(),
                        P::InForm("toppings", T.ListOf(T.Text), "One field for each entry."),
                        P::InForm("urgent", T.Boolean, "True or False.")},
                       T.BodyEcho());
    AService.Operation("PostFile", "Sends a file in a multipart form and shows what arrived.", "POST",
                       "/post",
                       {P::InPart("file", TZOTypeLibrary::Scalar(vkUpload), "The file to send.").Needed(),
                        P::InPart("caption", T.Text, "A line beside the file.")},
                       T.BodyEcho());
}

void AddAnswers(TZOServiceBuilder& AService, THttpbinTypes& T) {
    AService.Operation("Status", "Answers with the status that is asked for, and no data.", "GET",
                       "/status/{code}", {P::InPath("code", T.Integer, "For example 204 or 404.")}, nullptr);
    AService.Operation("Redirect", "Redirects some times before it answers.", "GET", "/redirect/{times}",
                       {P::InPath("times", T.Integer, "1 to 10 are followed.")},
                       T.Echo("RedirectEcho").Type());
    AService.Operation("Delay", "Takes some seconds to answer.", "GET", "/delay/{seconds}",
                       {P::InPath("seconds", T.Integer, "Up to 10.")}, T.Echo("DelayEcho").Type());
    AService.Operation("Gzip", "Answers with a compressed body.", "GET", "/gzip", {},
                       T.Object("GzipEcho", "What reached the server.")
                           .Property("gzipped", T.Boolean)
                           .Property("headers", T.MapOf(T.Text))
                           .Property("method", T.Text)
                           .Property("origin", T.Text)
                           .Type());
    AService.Operation("DownloadBytes", "Saves random bytes to a file.", "GET", "/bytes/{count}",
                       {P::InPath("count", T.Integer, "Up to 102,400.")}, TZOTypeLibrary::Scalar(vkDownload));
    AService.Operation("Uuid", "Answers with a new UUID.", "GET", "/uuid", {},
                       T.Object("UuidAnswer", "A random UUID.").Property("uuid", T.Text).Type());
}

void AddLogins(TZOServiceBuilder& AService, THttpbinTypes& T) {
    const int basic = AService.AddScheme({"basic", skHttpBasic, {}});
    const int bearer = AService.AddScheme({"bearer", skHttpBearer, {}});
    AService
        .Operation("BasicAuth", "Refuses all but one user name and password.", "GET",
                   "/basic-auth/{user}/{password}",
                   {P::InPath("user", T.Text, "Accepted is the user name of the API key \"user:password\"."),
                    P::InPath("password", T.Text, "Accepted is the password of that API key.")},
                   T.Object("BasicAnswer", "Who was let in.")
                       .Property("authenticated", T.Boolean)
                       .Property("user", T.Text)
                       .Type())
        .OperationSecurity({{{basic}}});
    AService
        .Operation("Bearer", "Lets in whoever sends a token: here, the API key.", "GET", "/bearer", {},
                   T.Object("BearerAnswer", "The token that was sent.")
                       .Property("authenticated", T.Boolean)
                       .Property("token", T.Text)
                       .Type())
        .OperationSecurity({{{bearer}}});
}

} // namespace

std::unique_ptr<TZORestServiceClass> THttpbinService::DeclareClass(const QString& ABaseUrl) {
    TZOServiceBuilder service("THttpbinService",
                              "Sends back what it was sent: the httpbin server, which none of us wrote.",
                              ABaseUrl);
    THttpbinTypes types(service.Types());
    AddReading(service, types);
    AddBodies(service, types);
    AddAnswers(service, types);
    AddLogins(service, types);

    return std::make_unique<TZORestServiceClass>(
        "THttpbinService", service.Build(), [](const TZORestServiceClass* AClass, QObject* AOwner) {
            auto instance = std::make_unique<THttpbinService>(AClass, AOwner);
            instance->SetApiKey(QStringLiteral("user:password"));
            return instance;
        });
}
