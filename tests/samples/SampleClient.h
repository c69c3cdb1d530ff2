// A plain HTTP client for the sample server, and the operations of the sample classes by name.
#pragma once

#include "samples/ClockService.h"
#include "samples/LibraryService.h"
#include "samples/SampleServer.h"

#include "runtime/json/JsonCodec.h"

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

using TJson = nlohmann::json;

/// The fixture of a test against a running server.
class TSampleServerTest : public testing::Test {
protected:
    static constexpr const char* Library = "/library/v1";
    static constexpr const char* Clock = "/clock/v1";

    /// The operation of that name; fails the test when there is none.
    static POper Oper(const TZORestServiceClass& AClass, const QString& AName) {
        for (const TZORestService::TOper& oper : AClass.TypeInfo()->Opers()) {
            if (oper.Name == AName)
                return &oper;
        }
        ADD_FAILURE() << "no operation " << AName.toStdString();
        return nullptr;
    }

    httplib::Client Client() const {
        httplib::Client client("127.0.0.1", Server.Port());
        client.set_read_timeout(60); // the first answer of the journal takes its time under a sanitizer
        client.set_default_headers({{"X-Api-Key", "library-demo-key"}});
        return client;
    }

    /// The status, and the JSON that came with it.
    static std::pair<int, TJson> Read(const httplib::Result& AResult) {
        if (!AResult)
            return {0, httplib::to_string(AResult.error())};
        return {AResult->status, TJson::parse(AResult->body, nullptr, false)};
    }

    std::pair<int, TJson> Get(const std::string& APath, const httplib::Headers& AHeaders = {}) const {
        return Read(Client().Get((Library + APath).c_str(), AHeaders));
    }
    std::pair<int, TJson> Post(const std::string& APath, const TJson& ABody,
                               const httplib::Headers& AHeaders = {}) const {
        return Read(Client().Post((Library + APath).c_str(), AHeaders, ABody.dump(), "application/json"));
    }
    std::pair<int, TJson> Put(const std::string& APath, const TJson& ABody) const {
        return Read(Client().Put((Library + APath).c_str(), ABody.dump(), "application/json"));
    }
    std::pair<int, TJson> PostForm(const std::string& APath, const httplib::Params& AForm) const {
        return Read(Client().Post((Library + APath).c_str(), AForm));
    }

    /// Expects that AJson is what the operation's declaration promises: that it decodes into the response
    /// type and that nothing of it is lost on the way.
    static void ExpectDeclared(POper AOper, const TJson& AJson) {
        ASSERT_TRUE(AOper && AOper->Response);
        TZOValueHolder holder(AOper->Response, true);
        try {
            TZOJson::Decode(QByteArray::fromStdString(AJson.dump()), holder);
        } catch (const EException& failure) {
            FAIL() << AOper->Name.toStdString() << ": " << failure.what();
        }
        EXPECT_EQ(TJson::parse(TZOJson::Encode(holder).toStdString()), AJson) << AOper->Name.toStdString();
    }
    void ExpectDeclared(const QString& AOper, const TJson& AJson) const {
        ExpectDeclared(Oper(*LibraryClass, AOper), AJson);
    }

    TSampleServer Server;
    std::unique_ptr<TZORestServiceClass> LibraryClass =
        TLibraryService::DeclareClass(Server.LibraryUrl(), TSampleServer::ApiKey());
    std::unique_ptr<TZORestServiceClass> ClockClass = TClockService::DeclareClass(Server.ClockUrl());
};
