// The files of an API document, joined by references.
#pragma once

#include "openapi/ApiProblem.h"
#include "openapi/DocIds_p.h"
#include "openapi/DocTree_p.h"

#include <QDir>

#include <map>
#include <optional>
#include <set>

/// Reads a document and what it refers to, in the folder of the document only. Nothing is fetched from
/// elsewhere.
class TDocSource {
public:
    /// Reads AFileName. When it cannot be read the root is nowhere, and a problem says why. False when
    /// AProgress ended it.
    bool Load(const QString& AFileName, const TDocProgress& AProgress);

    TDocView Root() const;
    /// The paths of all files that were looked for.
    QStringList Files() const;

    /// What stands behind AView: itself, or what its $ref refers to, through as many references as there
    /// are. Nowhere, with a problem reported, when there is nothing.
    TDocView Resolve(TDocView AView);
    /// What the text of a reference in AView's file refers to, as Resolve does.
    TDocView ResolveText(TDocView AView, const QString& AReference);

    /// AView is the place. The same is not reported twice.
    void Report(TDocView AView, const QString& AMessage);
    const TZOApiProblems& Problems() const { return FProblems; }

private:
    struct TFile {
        TDocTree Tree;
        std::unique_ptr<TDocIds> Ids;                           // made when first asked for
        std::map<std::pair<int, QString>, TDocView> References; // by the resource that they stand in
    };

    TFile* FileOf(const QString& APath, const TDocProgress& AProgress, QString& AReason);
    bool ReadInto(TDocTree& ATree, const TDocProgress& AProgress, QString& AReason);
    const TDocIds& IdsOf(TFile& AFile);
    TDocView Follow(TFile& AFile, TDocView AView, const QString& AReference);
    bool FindResource(const QUrl& AAddress, TFile*& AFile, int& AResource);
    TFile* FileFor(TDocView AView, const QString& AName);
    // Nothing where the fault was told already.
    std::optional<TDocView> Point(TFile& AFile, int AResource, TDocView AView, const QString& AFragment);
    std::optional<TDocView> Walk(TDocView AFrom, TDocView AView, const QString& APointer);
    void AddProblem(const TDocTree* ATree, int ALine, const QString& APointer, const QString& AMessage);

    QString FFolder;
    std::map<QString, std::unique_ptr<TFile>> FFiles; // by canonical path; null where it cannot be read
    TFile* FRoot = nullptr;
    TZOApiProblems FProblems;
    std::set<std::pair<QString, QString>> FReported;
    int FWalks = 0; // references inside references that are being followed
    bool FIsEnded = false;
};
