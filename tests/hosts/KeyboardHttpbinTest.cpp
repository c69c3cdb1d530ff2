// Every operation of httpbin, its request built from nothing and executed by keyboard alone in the real
// window; what the server says that it got, as the window shows it, is what was shown before.
#include "tests/hosts/KeyboardExplorer.h"
#include "tests/servers/HttpbinServer.h"

#include "samples/HttpbinService.h"
#include "samples/Samples.h"

#include <QFile>
#include <QUuid>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using U = TKeyboardUser;

struct TCase {
    const char* Operation;
    std::function<void(U&)> Fill;
    /// What must have been shown; a file stands for itself.
    TValueTexts Shown = {};
    /// Where the answer says what arrived, and the place in the request that this is of: "args/" -> "".
    TValueTexts Echoes = {};
    /// What the answer holds beside that.
    TValueTexts Answer = {};
    /// What the window shows when there is no answer to read.
    QStringList Outcome = {};
    bool IsDownload = false;
    const char* Variant = "";
};

void PrintTo(const TCase& ACase, std::ostream* AStream) { *AStream << ACase.Operation << ACase.Variant; }

/// No text: httpbin answers with the bytes in base64.
QByteArray UploadedBytes() {
    QByteArray bytes;
    for (int i = 0; i < 48; ++i)
        bytes.append(static_cast<char>(255 - 5 * i));
    return bytes;
}

void FillOrder(U& u) {
    u.Open("order: object");
    u.Set("customer", "A. Night & Sons");
    u.Open("lines: list");
    u.Press("Down");
    u.ChooseFromMenu("Insert After");
    u.Set("article", "nail");
    u.Set("count", "100");
    // Behind the closing row of the first line comes the second.
    u.Go("}");
    u.Press("Insert");
    u.Go("object");
    u.ChooseFromMenu("Insert After");
    u.Set("article", "\"saw\"");
    u.Open("labels: map");
    u.Go("key: ");
    u.Enter("to");
    u.Press("Up");
    u.Set("to", "Lisbon");
    u.Set("extra", R"({"deep":[1,[2,{"x":null}],true]})");
}

void FillFile(U& u) {
    const QString path = u.FilePath("upload.bin");
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(UploadedBytes());
    file.close();
    u.Go("file: ");
    u.ChooseFromMenu("Choose file...");
    u.NameFile(path);
    u.See("upload.bin");
    u.Set("caption", "Bytes; \"all\" of them");
}

void FillNothing(U&) {}
const auto Texts = TKeyboardUser::Texts;

const TCase Cases[] = {
    {"Get",
     [](U& u) {
         u.Set("text", "a b&c=d/100%+");
         u.Set("number", "-7");
         u.Open("tags: list");
         u.FillList({"one", "two,three"});
         u.Set("at", "2024-02-29T13:30:00+01:00");
     },
     {{"text", "a b&c=d/100%+"},
      {"number", "-7"},
      {"tags/0", "one"},
      {"tags/1", "two,three"},
      {"at", "2024-02-29T12:30:00Z"}},
     {{"args/", ""}}},
    {"Headers",
     Texts({{"note", "kept, as it is; \"so\""}}),
     {{"note", "kept, as it is; \"so\""}},
     {{"headers/X-Note", "note"}}},
    {"Cookies", Texts({{"flavour", "oats=raisins"}}), {{"flavour", "oats=raisins"}}, {{"cookies/", ""}}},
    {"PostJson",
     FillOrder,
     {{"order/customer", "A. Night & Sons"},
      {"order/lines/0/article", "nail"},
      {"order/lines/0/count", "100"},
      {"order/lines/1/article", "\"saw\""},
      {"order/labels/to", "Lisbon"},
      {"order/extra", R"({"deep":[1,[2,{"x":null}],true]})"}},
     {{"json", "order"}},
     {{"headers/Content-Type", "application/json"}}},
    {"PostForm",
     [](U& u) {
         u.Set("name", "a=b & c");
         u.Open("toppings: list");
         u.FillList({"ham", "olives"});
         u.Pick("urgent", 1, "True");
     },
     {{"name", "a=b & c"}, {"toppings/0", "ham"}, {"toppings/1", "olives"}, {"urgent", "true"}},
     {{"form/", ""}},
     {{"headers/Content-Type", "application/x-www-form-urlencoded"}}},
    {"PostFile", FillFile, {{"caption", "Bytes; \"all\" of them"}}, {{"form/", ""}, {"files/", ""}}},
    {"Status",
     Texts({{"code", "204"}}),
     {{"code", "204"}},
     {},
     {},
     {"204 NO CONTENT", "Ok", "No response data"}},
    {"Status", Texts({{"code", "404"}}), {{"code", "404"}}, {}, {}, {"404 NOT FOUND"}, false, "Missing"},
    {"Redirect", Texts({{"times", "3"}}), {{"times", "3"}}, {}, {{"url", "/get"}}},
    {"Delay", Texts({{"seconds", "1"}}), {{"seconds", "1"}}, {}, {{"url", "/delay/1"}}},
    {"Gzip", FillNothing, {}, {}, {{"gzipped", "true"}, {"method", "GET"}}},
    {"DownloadBytes",
     Texts({{"count", "1234"}}),
     {{"count", "1234"}},
     {},
     {},
     {"File downloaded to:", "download (1234 bytes)"},
     true},
    {"Uuid", FillNothing, {}, {}, {{"uuid", "new"}}},
    {"BasicAuth",
     Texts({{"user", "user"}, {"password", "password"}}),
     {{"user", "user"}, {"password", "password"}},
     {},
     {{"authenticated", "true"}, {"user", "user"}}},
    {"BasicAuth",
     Texts({{"user", "user"}, {"password", "other"}}),
     {{"user", "user"}, {"password", "other"}},
     {},
     {},
     {"401 UNAUTHORIZED"},
     false,
     "Refused"},
    {"Bearer", FillNothing, {}, {}, {{"authenticated", "true"}, {"token", "user:password"}}},
};

/// The values of the request that AAnswer, shown in the window, says to have arrived.
TValueTexts EchoedValues(const TValueTexts& AAnswer, const TValueTexts& AEchoes, const TValueTexts& AShown) {
    TValueTexts values;
    for (const auto& [place, property] : AEchoes) {
        const bool isFolder = place.back() == '/';
        for (const auto& [path, text] : AAnswer) {
            if (isFolder ? path.rfind(place, 0) == 0 : path == place)
                AddJsonValues(text, isFolder ? path.substr(place.size()) : property, AShown, values);
        }
    }
    return values;
}

/// The samples as a user has them who names an httpbin server.
class KeyboardHttpbin : public testing::TestWithParam<TCase> {
protected:
    static void SetUpTestSuite() { Server = std::make_unique<THttpbinServer>(); }
    static void TearDownTestSuite() { Server.reset(); }

    KeyboardHttpbin() {
        qputenv("ZO_SAMPLE_HTTPBIN", Server->Url().toUtf8());
        StartSamples();
    }
    ~KeyboardHttpbin() override {
        StopSamples();
        qunsetenv("ZO_SAMPLE_HTTPBIN");
    }

    /// What differs with every run stands for itself.
    static void Settle(TValueTexts& AAnswer) {
        const std::string server = Server->Url().toStdString();
        if (std::string& url = AAnswer["url"]; url.rfind(server, 0) == 0)
            url.erase(0, server.size());
        if (std::string& uuid = AAnswer["uuid"]; !QUuid::fromString(QString::fromStdString(uuid)).isNull())
            uuid = "new";
    }

    inline static std::unique_ptr<THttpbinServer> Server;
};

} // namespace

TEST_P(KeyboardHttpbin, SaysThatItGotWhatWasShown) {
    const TCase& operation = GetParam();
    TKeyboardExplorer explorer;
    const std::string problem = explorer.Run(
        {"THttpbinService", operation.Operation, operation.Fill, operation.IsDownload, [&](U& u) {
             for (const QString& text : operation.Outcome)
                 u.See(text);
         }});
    ASSERT_EQ(problem, "");
    const bool isUpload = operation.Echoes.count("files/") > 0;
    TValueTexts shown = operation.Shown;
    if (isUpload)
        shown["file"] = explorer.FilePath("upload.bin").toStdString();
    EXPECT_EQ(explorer.Shown(), shown);
    if (operation.IsDownload) {
        EXPECT_EQ(std::to_string(QFile(explorer.FilePath("download")).size()), shown["count"]);
    }
    if (!operation.Outcome.isEmpty())
        return;

    TValueTexts answer = explorer.Answer();
    Settle(answer);
    for (const auto& [place, text] : operation.Answer)
        EXPECT_EQ(answer[place], text) << place;
    TValueTexts echoed = EchoedValues(answer, operation.Echoes, shown);
    const std::string file =
        "data:application/octet-stream;base64," + UploadedBytes().toBase64().toStdString();
    if (isUpload && echoed["file"] == file)
        echoed["file"] = shown["file"];
    if (operation.Echoes.empty())
        return;
    EXPECT_EQ(echoed, shown) << testing::PrintToString(answer);
}

TEST(KeyboardHttpbinRequests, LeaveNoOperationOut) {
    const auto serviceClass = THttpbinService::DeclareClass(QString());
    for (const TZORestService::TOper& operation : serviceClass->TypeInfo()->Opers())
        EXPECT_TRUE(std::any_of(std::begin(Cases), std::end(Cases), [&](const TCase& ACase) {
            return QLatin1String(ACase.Operation) == operation.Name;
        })) << operation.Name.toStdString();
}

INSTANTIATE_TEST_SUITE_P(All, KeyboardHttpbin, testing::ValuesIn(Cases), [](const auto& AInfo) {
    return std::string(AInfo.param.Operation) + AInfo.param.Variant;
});
