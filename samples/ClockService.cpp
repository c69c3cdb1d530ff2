#include "samples/ClockService.h"

#include "runtime/service/ServiceBuilder.h"

namespace {

using P = TZOServiceParam;

const TZOTypeInfo* MakeZonedTime(TZOTypeLibrary& ATypes) {
    return ATypes.NewObject("ZonedTime", "The time that clocks show in one zone.")
        .Property("zone", ATypes.Scalar(vkString))
        .Property("instant", ATypes.Scalar(vkDateTime))
        .Property("local", ATypes.Scalar(vkString))
        .Property("offsetMinutes", ATypes.Scalar(vkInteger))
        .Property("daylightSaving", ATypes.Scalar(vkBoolean))
        .Type();
}

const TZOTypeInfo* MakeInstant(TZOTypeLibrary& ATypes) {
    return ATypes.NewObject("Instant", "What one date-time means.")
        .Property("received", ATypes.Scalar(vkString), {.Description = "The text that reached the server."})
        .Property("instant", ATypes.Scalar(vkDateTime))
        .Property("date", ATypes.Scalar(vkDate))
        .Property("weekday", ATypes.Scalar(vkString))
        .Property("dayOfYear", ATypes.Scalar(vkInteger))
        .Property("unixMicroseconds", ATypes.Scalar(vkInt64))
        .Type();
}

} // namespace

std::unique_ptr<TZORestServiceClass> TClockService::DeclareClass(const QString& ABaseUrl) {
    TZOServiceBuilder service("TClockService", "Time zones, calendar sums and instants; no key needed.",
                              ABaseUrl);
    TZOTypeLibrary& types = service.Types();
    const auto text = types.Scalar(vkString);
    const auto integer = types.Scalar(vkInteger);
    const auto date = types.Scalar(vkDate);

    service.Operation("GetTime", "Tells the time in a zone, in UTC if none is named.", "GET", "/now",
                      {P::InQuery("zone", text, "An IANA zone such as Europe/Lisbon, or UTC+02:00.")},
                      MakeZonedTime(types));
    service.Operation("ListZones", "Lists the time zones that GetTime knows.", "GET", "/zones",
                      {P::InQuery("contains", text, "Only zones whose names contain this text.")},
                      types.NewList(text));
    service.Operation("ListLeapYears", "Lists the leap years of a range.", "GET", "/leap-years",
                      {P::InQuery("from", integer, "First year, 1 to 9999.").Needed(),
                       P::InQuery("to", integer, "Last year, 1 to 9999.").Needed()},
                      types.NewList(integer));
    service.Operation("CountDays", "Counts the days from one date to another.", "GET", "/days",
                      {P::InQuery("from", date, "For example 2024-02-28.").Needed(),
                       P::InQuery("to", date, "May lie before the first date.").Needed()},
                      types.Scalar(vkInt64));
    service.Operation(
        "ExplainInstant", "Takes a date-time apart and says what reached the server.", "GET", "/instant",
        {P::InQuery("at", types.Scalar(vkDateTime), "For example 2024-02-29T12:30:00+01:00.").Needed()},
        MakeInstant(types));

    auto made = std::make_unique<TZORestServiceClass>(
        "TClockService", service.Build(), [](const TZORestServiceClass* AClass, QObject* AOwner) {
            return std::make_unique<TClockService>(AClass, AOwner);
        });
    made->SetComponentHeader("samples/ClockServiceComponent.h");
    return made;
}
