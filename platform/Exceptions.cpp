#include "platform/Exceptions.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

EException::EException(const QString& AMessage) : FMessage(AMessage), FUtf8(AMessage.toUtf8()) {}

QString EException::ClassName() const { return QStringLiteral("EException"); }

const char* EException::what() const noexcept { return FUtf8.constData(); }

QString ExceptionClassName(const std::exception& AException) {
    if (const auto* ours = dynamic_cast<const EException*>(&AException))
        return ours->ClassName();
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(typeid(AException).name(), nullptr, nullptr, &status), &std::free);
    return QString::fromUtf8(status == 0 ? name.get() : typeid(AException).name());
}

QString ExceptionMessage(const std::exception& AException) {
    if (const auto* ours = dynamic_cast<const EException*>(&AException))
        return ours->Message();
    return QString::fromUtf8(AException.what());
}
