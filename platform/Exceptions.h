// The exception classes that every floor shares, and the way to name any exception to the user.
#pragma once

#include <QString>

#include <exception>

/// Base of every exception this product raises: a message text, and the class name that a user sees
/// above it.
class EException : public std::exception {
public:
    explicit EException(const QString& AMessage);

    /// The text for the user, UTF-16, may hold several lines.
    const QString& Message() const noexcept { return FMessage; }
    /// The name of the most derived class, for example "EConvertError".
    virtual QString ClassName() const;
    /// Message() in UTF-8.
    const char* what() const noexcept override;

private:
    QString FMessage;
    QByteArray FUtf8;
};

/// Declares exception class AClass, derived from ABase, that knows its own name.
#define ZO_EXCEPTION(AClass, ABase)                                                                          \
    class AClass : public ABase {                                                                            \
    public:                                                                                                  \
        using ABase::ABase;                                                                                  \
        QString ClassName() const override { return QStringLiteral(#AClass); }                               \
    }

/// A text that is not what its type asks for.
ZO_EXCEPTION(EConvertError, EException);
/// An index outside a list, or a key that a list or map refuses.
ZO_EXCEPTION(EListError, EException);
/// A reference that is not of the class it was taken for.
ZO_EXCEPTION(EInvalidCast, EException);
/// Reading from or writing to a stream failed.
ZO_EXCEPTION(EStreamError, EException);
/// A file could not be created; the message names it and the reason.
ZO_EXCEPTION(EFCreateError, EStreamError);
/// A file could not be opened; the message names it and the reason.
ZO_EXCEPTION(EFOpenError, EStreamError);
/// The settings store could not be read or written.
ZO_EXCEPTION(ERegistryException, EException);

/// The class name of any exception: ClassName() of ours, the C++ type's name of others.
QString ExceptionClassName(const std::exception& AException);
/// The message of any exception: Message() of ours, what() of others.
QString ExceptionMessage(const std::exception& AException);
