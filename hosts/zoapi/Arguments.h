// The arguments of one command.
#pragma once

#include "platform/Exceptions.h"

#include <QList>
#include <QStringList>

/// What the user asks for cannot be understood, or not be done with this document. Ends the program with 2.
ZO_EXCEPTION(EZOUsageError, EException);

/// Options and what stands between them.
class TZOArguments {
public:
    struct TOption {
        const char* Name; ///< without its hyphens
        bool TakesValue = false;
    };

    /// AArguments without the command. Options may stand anywhere, their values behind a blank or "=";
    /// what follows "--" is no option. Raises EZOUsageError for an option that is not in AOptions.
    TZOArguments(const QStringList& AArguments, const QList<TOption>& AOptions);

    const QStringList& Positional() const { return FPositional; }
    bool Has(const char* AName) const;
    /// The last value of the option; empty when it was not given.
    QString Value(const char* AName) const;
    /// All values of the option in their order.
    QStringList Values(const char* AName) const;

private:
    QStringList FPositional;
    QList<std::pair<QString, QString>> FOptions;
};
