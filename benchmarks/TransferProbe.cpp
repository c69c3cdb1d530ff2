// One large transfer through the runtime, in a process without a window:
// transferprobe download|upload SERVER PATH FILE. Prints the most memory it has used, in megabytes.
#include "runtime/service/Request.h"
#include "runtime/service/ServiceBuilder.h"

#include "runtime/types/Streams.h"

#include "platform/Exceptions.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

namespace {

using P = TZOServiceParam;

std::unique_ptr<TZORestServiceClass> DeclareClass(const QString& AServer, const QString& APath) {
    TZOServiceBuilder service(QStringLiteral("TTransferService"), {}, AServer);
    service.Operation(QStringLiteral("Download"), {}, "GET", APath, {}, TZOTypeLibrary::Scalar(vkDownload));
    service.Operation(QStringLiteral("Upload"), {}, "PUT", APath,
                      {P::InBody(QStringLiteral("content"), TZOTypeLibrary::Scalar(vkUpload), {})}, nullptr);
    return std::make_unique<TZORestServiceClass>(QStringLiteral("TTransferService"), service.Build());
}

void Download(TZORestService& AService, POper AOper, const QString& AFile) {
    QFile file(AFile);
    if (!file.open(QIODevice::WriteOnly))
        throw EFCreateError(AFile);
    TZOValueHolder response(AOper->Response, true);
    void* ref = nullptr;
    response.GetByRef(ref);
    static_cast<ZODownload*>(ref)->SetStream(&file);
    ZORequest(&AService, AOper->Request).ExecRequest(&response);
}

void Upload(TZORestService& AService, POper AOper, const QString& AFile) {
    QFile file(AFile);
    if (!file.open(QIODevice::ReadOnly))
        throw EFOpenError(AFile);
    ZORequest request(&AService, AOper->Request);
    void* ref = nullptr;
    ZOObject::TData::GetByRef(*static_cast<ZOObject**>(request.Data()), 0, ref);
    static_cast<ZOUpload*>(ref)->SetStream(&file);
    request.ExecRequest();
}

/// The peak since this program was loaded; getrusage counts what the process had before, as a copy of the one
/// that started it.
double PeakMegabytes() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:"))
                return line.mid(6).replace("kB", "").trimmed().toDouble() / 1024;
        }
    }
    return -1;
}

} // namespace

int main(int AArgc, char** AArgv) {
    QCoreApplication application(AArgc, AArgv);
    const QStringList arguments = QCoreApplication::arguments();
    try {
        const auto serviceClass = DeclareClass(arguments.value(2), arguments.value(3));
        const auto service = serviceClass->Create();
        const auto& opers = service->TypeInfo()->Opers();
        if (arguments.value(1) == QLatin1String("download"))
            Download(*service, &opers[0], arguments.value(4));
        else
            Upload(*service, &opers[1], arguments.value(4));
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", qPrintable(ExceptionMessage(e)));
        return 1;
    }
    std::printf("%.1f\n", PeakMegabytes());
    return 0;
}
