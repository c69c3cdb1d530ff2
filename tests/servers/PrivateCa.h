// A certificate authority that nobody knows.
#pragma once

#include <QTemporaryDir>

/// Made by openssl, in a folder of its own, for as long as it lives. Raises std::runtime_error with openssl's
/// words when something cannot be made.
class TPrivateCa {
public:
    TPrivateCa();

    /// What has to be trusted, as a PEM file.
    QString CaFile() const { return FilePath(QStringLiteral("ca.pem")); }
    /// A path in the authority's folder.
    QString FilePath(const QString& AName) const { return FFolder.filePath(AName); }

    /// Makes "AName.pem" with "AName.key" for ASubject, for example "IP:127.0.0.1". An expired one was valid
    /// for a day of the year 2020.
    void Issue(const QString& AName, const QString& ASubject, bool AIsExpired = false) const;

private:
    void Write(const QString& AName, const QByteArray& AText) const;

    QTemporaryDir FFolder;
};
