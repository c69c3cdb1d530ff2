#include "samples/ClockRoutes_p.h"

#include <QDateTime>
#include <QTimeZone>

namespace {

using namespace std::chrono;

constexpr int64_t FirstYear = 1;
constexpr int64_t LastYear = 9999;

void GetTime(TSampleCall& ACall) {
    const std::string name = ACall.Param("zone").value_or("UTC");
    const QTimeZone zone(QByteArray::fromStdString(name));
    if (!zone.isValid())
        throw ERefusal(404, "There is no time zone \"" + name + "\".", "zone");
    const SampleTime::TInstant now = SampleTime::Now();
    const QDateTime local =
        QDateTime::fromMSecsSinceEpoch(duration_cast<milliseconds>(now.time_since_epoch()).count(), zone);
    ACall.Answer({{"zone", name},
                  {"instant", SampleTime::FormatInstant(now)},
                  {"local", local.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toStdString()},
                  {"offsetMinutes", local.offsetFromUtc() / 60},
                  {"daylightSaving", local.isDaylightTime()}});
}

void ListZones(TSampleCall& ACall) {
    const std::string part = ACall.Param("contains").value_or("");
    TJson zones = TJson::array();
    for (const QByteArray& zone : QTimeZone::availableTimeZoneIds()) {
        if (SampleText::Contains(zone.toStdString(), part))
            zones.push_back(zone.toStdString());
    }
    ACall.Answer(zones);
}

void ListLeapYears(TSampleCall& ACall) {
    const int64_t first = SampleText::Integer(ACall.NeededParam("from"), "from", FirstYear, LastYear);
    const int64_t last = SampleText::Integer(ACall.NeededParam("to"), "to", FirstYear, LastYear);
    TJson years = TJson::array();
    for (int64_t y = first; y <= last; ++y) {
        if (year(static_cast<int>(y)).is_leap())
            years.push_back(y);
    }
    ACall.Answer(years);
}

void CountDays(TSampleCall& ACall) {
    const auto first = SampleText::Date(ACall.NeededParam("from"), "from");
    const auto last = SampleText::Date(ACall.NeededParam("to"), "to");
    ACall.Answer(static_cast<int64_t>((last - first).count()));
}

void ExplainInstant(TSampleCall& ACall) {
    static constexpr const char* names[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                            "Thursday", "Friday", "Saturday"};
    const std::string text = ACall.NeededParam("at");
    const SampleTime::TInstant instant = SampleText::Instant(text, "at");
    const SampleTime::TDay day = floor<days>(instant);
    const sys_days newYear = year_month_day(day).year() / January / 1;
    ACall.Answer({{"received", text},
                  {"instant", SampleTime::FormatInstant(instant)},
                  {"date", SampleTime::FormatDate(day)},
                  {"weekday", names[weekday(day).c_encoding()]},
                  {"dayOfYear", (day - newYear).count() + 1},
                  {"unixMicroseconds", instant.time_since_epoch().count()}});
}

} // namespace

void AddClockRoutes(httplib::Server& AServer, const std::string& APrefix) {
    TSampleRoutes routes(AServer, APrefix, {});
    routes.Add("GET", "/now", GetTime);
    routes.Add("GET", "/zones", ListZones);
    routes.Add("GET", "/leap-years", ListLeapYears);
    routes.Add("GET", "/days", CountDays);
    routes.Add("GET", "/instant", ExplainInstant);
}
