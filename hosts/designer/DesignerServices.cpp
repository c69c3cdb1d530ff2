#include "hosts/designer/DesignerServices.h"

#include "runtime/service/ServicePlugins.h"

#include <QCoreApplication>

#include <memory>

namespace {

// Never destroyed by itself: an editor unloads its plug-ins when everything that stops services has gone.
TZOServicePlugins* GPlugins = nullptr;
int GComponentCount = 0;

void Stop() {
    if (GComponentCount == 0)
        delete std::exchange(GPlugins, nullptr);
}

} // namespace

void DesignerServices::Start() {
    if (GPlugins)
        return;
    GPlugins = new TZOServicePlugins;
    GPlugins->LoadAll();
    qAddPostRoutine(Stop);
}

QStringList DesignerServices::Failures() {
    QStringList failures;
    for (const auto& failure : GPlugins->Failures())
        failures.append(failure.ToText());
    return failures;
}

void DesignerServices::ComponentMade() { ++GComponentCount; }

void DesignerServices::ComponentGone() { --GComponentCount; }
