// The names that schemas give to themselves.
#pragma once

#include "openapi/DocTree_p.h"

#include <QUrl>

#include <map>

/// The schemas of one file that are known by an address ("$id") or by a name ("$anchor"), as JSON Schema of
/// 2020 has them. A schema with an address is a resource: references in it start from there. The file itself
/// is the first resource. Making one takes a few passes over the file's nodes, where any key looks like it.
class TDocIds {
public:
    /// A name that is given twice stays with the first that has it; the other is told to AReport.
    TDocIds(const TDocTree& ATree, const std::function<void(TDocView, const QString&)>& AReport);

    /// The resource that ANode stands in.
    int ResourceAt(quint32 ANode) const;
    const QUrl& AddressOf(int AResource) const { return At(AResource).Address; }
    TDocView RootOf(int AResource) const { return {FTree, At(AResource).Node}; }

    /// The resource of that address, without a fragment; -1 when there is none.
    int Find(const QUrl& AAddress) const;
    /// The schema of that name in a resource; nowhere when there is none.
    TDocView Anchored(int AResource, const QString& AName) const;

private:
    struct TResource {
        quint32 Node = 0;
        quint32 End = 0;
        int Parent = -1;
        QUrl Address;
    };
    using TReport = std::function<void(TDocView, const QString&)>;

    const TResource& At(int AResource) const { return FResources[static_cast<std::size_t>(AResource)]; }
    void AddResources(const TReport& AReport);
    void AddAnchors(const TReport& AReport);
    /// Calls ATake with each object that holds a text under AKey, and with that text; outer objects first.
    template <class F>
    void ForEach(std::string_view AKey, F&& ATake) const;

    const TDocTree* FTree;
    std::vector<TResource> FResources; // in the order of their nodes
    std::map<QString, int> FAddresses;
    std::map<std::pair<int, QString>, quint32> FAnchors;
};
