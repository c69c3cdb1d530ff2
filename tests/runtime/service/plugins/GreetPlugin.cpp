// Registers one service class, or does what the environment variable ZO_TEST_PLUGIN asks for instead.
#include "runtime/service/ServiceBuilder.h"
#include "runtime/service/ServicePlugins.h"

#include "platform/Exceptions.h"

namespace {

std::unique_ptr<TZORestServiceClass>& Greeting() {
    static std::unique_ptr<TZORestServiceClass> greeting;
    return greeting;
}

void Stop() { Greeting() = nullptr; }

} // namespace

ZO_START_SERVICES {
    const QString wish = qEnvironmentVariable("ZO_TEST_PLUGIN");
    if (wish == QStringLiteral("nothing"))
        return nullptr;
    TZOServiceBuilder service("TGreetService", "Greets.", "http://127.0.0.1:1");
    service.Operation("Greet", "Says hello.", "GET", "/", {}, nullptr);
    Greeting() = std::make_unique<TZORestServiceClass>("TGreetService", service.Build());
    TZORestServiceClass::Register(Greeting().get());
    if (wish == QStringLiteral("raise"))
        throw EException(QStringLiteral("The greeting is out of order."));
    return Stop;
}
