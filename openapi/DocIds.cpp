#include "openapi/DocIds_p.h"

#include <algorithm>

namespace {

constexpr std::string_view Id = "$id";

QString TextOf(const QUrl& AAddress) { return AAddress.toString(QUrl::FullyEncoded); }

QUrl WithoutFragment(const QUrl& AAddress) {
    return AAddress.adjusted(QUrl::RemoveFragment | QUrl::NormalizePathSegments);
}

} // namespace

TDocIds::TDocIds(const TDocTree& ATree, const TReport& AReport) : FTree(&ATree) {
    FResources.push_back(
        {0, static_cast<quint32>(ATree.Nodes.size()), -1, QUrl::fromLocalFile(ATree.FileName)});
    if (ATree.MayHaveIds) {
        AddResources(AReport);
        AddAnchors(AReport);
    }
}

template <class F>
void TDocIds::ForEach(std::string_view AKey, F&& ATake) const {
    // The objects that are open at a node, with their ends.
    std::vector<quint32> open;
    const std::vector<TDocNode>& nodes = FTree->Nodes;
    for (quint32 node = 0; node < nodes.size(); ++node) {
        while (!open.empty() && nodes[open.back()].End <= node)
            open.pop_back();
        if (nodes[node].Kind == dkObject && !nodes[node].IsKey)
            open.push_back(node);
        if (!nodes[node].IsKey || open.empty() || FTree->Raw(nodes[node]) != AKey)
            continue;
        const TDocView text(FTree, node + 1);
        if (text.IsString())
            ATake(open.back(), text);
    }
}

void TDocIds::AddResources(const TReport& AReport) {
    std::vector<std::pair<quint32, TDocView>> found;
    ForEach(Id, [&](quint32 AObject, TDocView AText) { found.emplace_back(AObject, AText); });
    // An object may hold others with addresses before its own.
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& A, const auto& B) { return A.first < B.first; });
    for (const auto& [object, text] : found) {
        const int parent = ResourceAt(object);
        const QUrl address = WithoutFragment(At(parent).Address.resolved(QUrl(text.Text())));
        if (object == 0)
            FResources.front().Address = address;
        const int resource = object == 0 ? 0 : static_cast<int>(FResources.size());
        if (!FAddresses.emplace(TextOf(address), resource).second)
            AReport(text, QStringLiteral("Another schema has the $id \"%1\".").arg(text.Text()));
        else if (object != 0)
            FResources.push_back({object, FTree->Nodes[object].End, parent, address});
    }
}

void TDocIds::AddAnchors(const TReport& AReport) {
    for (const char* key : {"$anchor", "$dynamicAnchor"}) {
        ForEach(key, [&](quint32 AObject, TDocView AText) {
            const auto [place, isNew] =
                FAnchors.emplace(std::pair(ResourceAt(AObject), AText.Text()), AObject);
            if (!isNew && place->second != AObject)
                AReport(AText, QStringLiteral("Another schema has the $anchor \"%1\".").arg(AText.Text()));
        });
    }
}

int TDocIds::ResourceAt(quint32 ANode) const {
    const auto after = std::upper_bound(FResources.begin(), FResources.end(), ANode,
                                        [](quint32 A, const TResource& B) { return A < B.Node; });
    int resource = static_cast<int>(after - FResources.begin()) - 1;
    while (resource > 0 && At(resource).End <= ANode)
        resource = At(resource).Parent;
    return resource;
}

int TDocIds::Find(const QUrl& AAddress) const {
    const auto found = FAddresses.find(TextOf(WithoutFragment(AAddress)));
    return found == FAddresses.end() ? -1 : found->second;
}

TDocView TDocIds::Anchored(int AResource, const QString& AName) const {
    const auto found = FAnchors.find({AResource, AName});
    return found == FAnchors.end() ? TDocView() : TDocView(FTree, found->second);
}
