#include "hosts/zoapi/Arguments.h"

#include <algorithm>

TZOArguments::TZOArguments(const QStringList& AArguments, const QList<TOption>& AOptions) {
    bool isOver = false;
    for (qsizetype i = 0; i < AArguments.size(); ++i) {
        const QString& argument = AArguments[i];
        if (isOver || !argument.startsWith(QStringLiteral("--"))) {
            FPositional.append(argument);
            continue;
        }
        if (argument.size() == 2) {
            isOver = true;
            continue;
        }
        const qsizetype equals = argument.indexOf(u'=');
        const QString name = argument.mid(2, equals < 0 ? -1 : equals - 2);
        const auto option = std::find_if(AOptions.begin(), AOptions.end(),
                                         [&](const TOption& o) { return name == QLatin1String(o.Name); });
        if (option == AOptions.end())
            throw EZOUsageError(QStringLiteral("There is no option --%1 here.").arg(name));
        if (!option->TakesValue && equals >= 0)
            throw EZOUsageError(QStringLiteral("The option --%1 takes no value.").arg(name));
        if (option->TakesValue && equals < 0 && i + 1 == AArguments.size())
            throw EZOUsageError(QStringLiteral("The option --%1 wants a value.").arg(name));
        const bool isNext = option->TakesValue && equals < 0;
        FOptions.append({name, isNext ? AArguments[++i] : equals < 0 ? QString() : argument.mid(equals + 1)});
    }
}

bool TZOArguments::Has(const char* AName) const {
    return std::any_of(FOptions.begin(), FOptions.end(),
                       [&](const auto& o) { return o.first == QLatin1String(AName); });
}

QString TZOArguments::Value(const char* AName) const {
    const QStringList values = Values(AName);
    return values.isEmpty() ? QString() : values.last();
}

QStringList TZOArguments::Values(const char* AName) const {
    QStringList values;
    for (const auto& [name, value] : FOptions) {
        if (name == QLatin1String(AName))
            values.append(value);
    }
    return values;
}
