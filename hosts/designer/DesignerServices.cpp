#include "hosts/designer/DesignerServices.h"

#include "components/SharedDocuments.h"

#include "runtime/service/ServicePlugins.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>

namespace {

/// XML has no way to write a control character.
bool CanStandInForm(const QString& AText) {
    return std::none_of(AText.cbegin(), AText.cend(), [](QChar AChar) { return AChar < u' '; });
}

/// What the components of an editor stand for.
class TServices {
public:
    TServices() {
        FPlugins.LoadAll();
        for (const auto& failure : FPlugins.Failures())
            FFailures.append(failure.ToText());
        LoadDocuments();
    }
    TServices(const TServices&) = delete;
    TServices& operator=(const TServices&) = delete;
    ~TServices() {
        for (const auto& document : FDocuments)
            TZORestServiceClass::Unregister(document->ServiceClass());
    }

    const QStringList& Failures() const { return FFailures; }
    const std::vector<std::shared_ptr<TZOApiDocument>>& Documents() const { return FDocuments; }

private:
    void LoadDocuments() {
        const QStringList kinds{QStringLiteral("*.json"), QStringLiteral("*.yaml"), QStringLiteral("*.yml")};
        const auto files = QDir(SharedDocuments::UserFolder())
                               .entryInfoList(kinds, QDir::Files | QDir::Readable, QDir::Name);
        for (const QFileInfo& file : files) {
            if (!CanStandInForm(file.fileName())) {
                FFailures.append(QStringLiteral("The API document %1 was skipped: no form can hold its name.")
                                     .arg(file.absoluteFilePath()));
                continue;
            }
            auto document = SharedDocuments::Load(file.absoluteFilePath());
            if (!document->ServiceClass()) {
                const QString reason =
                    document->Problems().empty() ? QString() : document->Problems().front().ToText();
                FFailures.append(QStringLiteral("The API document %1 was skipped: %2")
                                     .arg(file.absoluteFilePath(), reason));
                continue;
            }
            TZORestServiceClass::Register(document->ServiceClass());
            FDocuments.push_back(std::move(document));
        }
    }

    TZOServicePlugins FPlugins;
    std::vector<std::shared_ptr<TZOApiDocument>> FDocuments;
    QStringList FFailures;
};

// Never destroyed by itself: an editor unloads its plug-ins when everything that stops services has gone.
TServices* GServices = nullptr;
int GUserCount = 0;

void Stop() {
    if (GUserCount == 0)
        delete std::exchange(GServices, nullptr);
}

} // namespace

void DesignerServices::Start() {
    if (GServices)
        return;
    GServices = new TServices;
    qAddPostRoutine(Stop);
}

QStringList DesignerServices::Failures() { return GServices->Failures(); }

const std::vector<std::shared_ptr<TZOApiDocument>>& DesignerServices::Documents() {
    return GServices->Documents();
}

DesignerServices::TUser::TUser() { ++GUserCount; }

DesignerServices::TUser::~TUser() { --GUserCount; }
