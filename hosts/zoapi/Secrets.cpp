#include "hosts/zoapi/Secrets.h"

#include "hosts/zoapi/Arguments.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 4> SecretOptions = {"--api-key", "--bearer", "--basic", "--secret"};

bool IsSecret(std::string_view AOption) {
    return std::find(SecretOptions.begin(), SecretOptions.end(), AOption) != SecretOptions.end();
}

void WipeLiteral(char* AValue) {
    const std::string_view value = AValue;
    if (!value.starts_with('@') && !value.starts_with("env:"))
        std::memset(AValue, 'x', value.size());
}

} // namespace

void Secrets::Wipe(int AArgc, char** AArgv) {
    for (int i = 1; i < AArgc; ++i) {
        const std::string_view argument = AArgv[i];
        const auto equals = argument.find('=');
        if (equals != argument.npos && IsSecret(argument.substr(0, equals)))
            WipeLiteral(AArgv[i] + equals + 1);
        else if (IsSecret(argument) && i + 1 < AArgc)
            WipeLiteral(AArgv[++i]);
    }
}

QString Secrets::Read(const QString& AText) {
    if (AText.startsWith(u'@')) {
        QFile file(AText.mid(1));
        const QByteArray line = file.open(QIODevice::ReadOnly) ? file.readLine() : QByteArray();
        if (file.error() != QFileDevice::NoError)
            throw EZOUsageError(QStringLiteral("The secret in %1 cannot be read: %2.")
                                    .arg(file.fileName(), file.errorString()));
        return QString::fromUtf8(line).trimmed();
    }
    if (!AText.startsWith(QStringLiteral("env:")))
        return AText;
    const QByteArray name = AText.mid(4).toLocal8Bit();
    if (!qEnvironmentVariableIsSet(name.constData()))
        throw EZOUsageError(QStringLiteral("The environment has no %1.").arg(AText.mid(4)));
    return qEnvironmentVariable(name.constData());
}
