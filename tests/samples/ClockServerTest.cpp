#include "tests/samples/SampleClient.h"

namespace {

class ClockServer : public TSampleServerTest {
protected:
    std::pair<int, TJson> Ask(const std::string& APath) const {
        httplib::Client client("127.0.0.1", Server.Port());
        return Read(client.Get((Clock + APath).c_str()));
    }
    void ExpectClock(const QString& AOper, const TJson& AJson) const {
        ExpectDeclared(Oper(*ClockClass, AOper), AJson);
    }
};

TEST_F(ClockServer, TellsTheTimeWithoutAKey) {
    const auto [status, now] = Ask("/now");
    EXPECT_EQ(status, 200);
    EXPECT_EQ(now["zone"], "UTC");
    EXPECT_EQ(now["offsetMinutes"], 0);
    ExpectClock("GetTime", now);
    EXPECT_EQ(Ask("/now?zone=UTC%2B02:00").second["offsetMinutes"], 120);
    EXPECT_EQ(Ask("/now?zone=Atlantis/Harbour").first, 404);
}

TEST_F(ClockServer, ListsZones) {
    const TJson zones = Ask("/zones?contains=utc").second;
    EXPECT_TRUE(std::find(zones.begin(), zones.end(), "UTC") != zones.end());
    ExpectClock("ListZones", zones);
}

TEST_F(ClockServer, ListsLeapYears) {
    const TJson years = Ask("/leap-years?from=1896&to=1912").second;
    EXPECT_EQ(years, TJson({1896, 1904, 1908, 1912}));
    ExpectClock("ListLeapYears", years);
    EXPECT_EQ(Ask("/leap-years?from=2001&to=2000").second, TJson::array());
    EXPECT_EQ(Ask("/leap-years?to=2000").second["message"], "Field \"from\" is missing.");
    EXPECT_EQ(Ask("/leap-years?from=1&to=10000").second["field"], "to");
}

TEST_F(ClockServer, CountsDays) {
    EXPECT_EQ(Ask("/days?from=2024-02-28&to=2024-03-01").second, 2);
    EXPECT_EQ(Ask("/days?from=2024-03-01&to=2023-03-01").second, -366);
    EXPECT_EQ(Ask("/days?from=2023-02-29&to=2024-03-01").second["field"], "from");
    ExpectClock("CountDays", -366);
}

struct TInstantCase {
    std::string Text;
    std::string Instant;
    int64_t Micros;
};

TEST_F(ClockServer, ExplainsInstants) {
    const TInstantCase cases[] = {
        {"1970-01-01T00:00:00Z", "1970-01-01T00:00:00Z", 0},
        {"2024-02-29T00:30:00%2B01:00", "2024-02-28T23:30:00Z", 1'709'163'000'000'000},
        {"1969-12-31t23:59:59.5z", "1969-12-31T23:59:59.5Z", -500'000},
        {"2000-01-01T00:00:00.1234567-00:30", "2000-01-01T00:30:00.123456Z", 946'686'600'123'456},
    };
    for (const TInstantCase& instant : cases) {
        const auto [status, answer] = Ask("/instant?at=" + instant.Text);
        EXPECT_EQ(status, 200) << answer;
        EXPECT_EQ(answer["instant"], instant.Instant);
        EXPECT_EQ(answer["unixMicroseconds"], instant.Micros);
    }
    const TJson leapDay = Ask("/instant?at=2024-02-29T12:30:00Z").second;
    EXPECT_EQ(leapDay["weekday"], "Thursday");
    EXPECT_EQ(leapDay["dayOfYear"], 60);
    EXPECT_EQ(leapDay["date"], "2024-02-29");
    ExpectClock("ExplainInstant", leapDay);
}

TEST_F(ClockServer, RefusesWhatIsNoInstant) {
    for (const char* text :
         {"2024-02-30T00:00:00Z", "2024-02-29", "2024-02-29T24:00:00Z", "2024-02-29T12:30:00",
          "2024-02-29T12:30:00.Z", "2024-02-29T12:30:00Zulu", "2024-02-29T12:30:00%2B0100",
          "2024-02-29%2012:30:00Z", "-024-02-29T12:30:00Z", "soon"})
        EXPECT_EQ(Ask(std::string("/instant?at=") + text).second["field"], "at") << text;
}

} // namespace
