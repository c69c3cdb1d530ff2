// API documents over the fault server: good ones, changed ones and broken ones.
#pragma once

#include <QByteArray>
#include <QRandomGenerator>
#include <QString>
#include <QStringList>

/// Writes documents into a folder, each time others.
class TMonkeyDocuments {
public:
    /// AServer is the address of the fault server.
    TMonkeyDocuments(QString AFolder, QByteArray AServer, QRandomGenerator& ARandom);

    /// A file that holds a document, or something else.
    QString Any();
    /// A document without fault.
    QString Good();
    /// Writes one of the files anew, open or not.
    void Rewrite();

    static constexpr int Count = 6;

private:
    QString Write(int AIndex, const QByteArray& AText) const;
    QByteArray Text(int AIndex);
    QByteArray Broken(int AIndex);
    QByteArray Operations();
    int Random(int ABound) { return FRandom.bounded(ABound); }

    QString FFolder;
    QByteArray FServer;
    QRandomGenerator& FRandom;
};
