#include "openapi/DocTree_p.h"

#include "platform/Utf8.h"
#include "runtime/types/JsonText.h"

#include <algorithm>

namespace {

constexpr quint32 LargeObject = 16;

bool IsTextOf(const TDocTree& ATree, const TDocNode& ANode, std::string_view AText) {
    const std::string_view raw = ATree.Raw(ANode);
    return ANode.IsEscaped ? DocJson::Unescape(raw) == AText : raw == AText;
}

void AppendPointer(QString& APointer, QString APart) {
    APart.replace(u'~', QStringLiteral("~0")).replace(u'/', QStringLiteral("~1"));
    APointer += u'/' + APart;
}

void AppendJson(QByteArray& AJson, const TDocView& AView, int ADepth) {
    switch (AView.Kind()) {
    case dkString:
        JsonText::AppendQuoted(AJson, AView.Text());
        return;
    case dkArray:
    case dkObject:
        break;
    default:
        const std::string text = AView.Utf8();
        AJson += AView.Kind() == dkNull ? "null" : text.c_str();
        return;
    }
    if (ADepth == 0) {
        AJson += "null";
        return;
    }
    AJson += AView.IsArray() ? '[' : '{';
    bool isFirst = true;
    for (const auto& [key, value] : AView.Entries()) {
        if (!std::exchange(isFirst, false))
            AJson += ',';
        if (key) {
            JsonText::AppendQuoted(AJson, key.Text());
            AJson += ':';
        }
        AppendJson(AJson, value, ADepth - 1);
    }
    AJson += AView.IsArray() ? ']' : '}';
}

} // namespace

TDocView::TDocView(const TDocTree* ATree, quint32 ANode) : FTree(ATree), FNode(ANode) {
    if (FTree->Nodes[FNode].Kind == dkAlias) {
        FNode = FTree->Nodes[FNode].Begin;
        FIsShared = true;
    }
}

TDocKind TDocView::Kind() const { return FTree ? static_cast<TDocKind>(FTree->Nodes[FNode].Kind) : dkNull; }

int TDocView::Count() const {
    return IsObject() || IsArray() ? static_cast<int>(FTree->Nodes[FNode].Size) : 0;
}

TDocView TDocView::operator[](std::string_view AKey) const {
    const quint32 node = IsObject() ? FTree->Find(FNode, AKey) : 0;
    return node ? TDocView(FTree, node) : TDocView();
}

TDocView TDocView::At(int AIndex) const {
    if (!IsArray() || AIndex < 0)
        return {};
    for (const TEntry& entry : Entries()) {
        if (AIndex-- == 0)
            return entry.Value;
    }
    return {};
}

TDocView::TEntries TDocView::Entries() const {
    return IsObject() || IsArray() ? TEntries(FTree, FNode + 1, FTree->Nodes[FNode].End)
                                   : TEntries(nullptr, 0, 0);
}

std::string TDocView::Utf8() const {
    if (!FTree || IsObject() || IsArray())
        return {};
    const TDocNode& node = FTree->Nodes[FNode];
    return node.IsEscaped ? DocJson::Unescape(FTree->Raw(node)) : std::string(FTree->Raw(node));
}

QString TDocView::Text() const {
    if (!FTree || IsObject() || IsArray())
        return {};
    const TDocNode& node = FTree->Nodes[FNode];
    const std::string_view raw = FTree->Raw(node);
    return node.IsEscaped ? TextFromUtf8(DocJson::Unescape(raw)) : TextFromUtf8(raw);
}

bool TDocView::Is(std::string_view AText) const {
    return IsString() && IsTextOf(*FTree, FTree->Nodes[FNode], AText);
}

bool TDocView::IsTrue() const { return FTree && Kind() == dkBoolean && Utf8() == "true"; }

bool TDocView::IsFalse() const { return FTree && Kind() == dkBoolean && Utf8() == "false"; }

QString TDocView::Key() const {
    const bool hasKey = FTree && FNode > 0 && FTree->Nodes[FNode - 1].IsKey;
    return hasKey ? TDocView(FTree, FNode - 1).Text() : QString();
}

QByteArray TDocView::ToJson(int ADepth) const {
    QByteArray json;
    AppendJson(json, *this, ADepth);
    return json;
}

TDocView::TEntries::TIterator::TIterator(const TDocTree* ATree, quint32 ANode, quint32 AEnd)
    : FTree(ATree), FNode(ANode), FEnd(AEnd) {
    SkipHidden();
}

void TDocView::TEntries::TIterator::SkipHidden() {
    while (FNode != FEnd && FTree->Nodes[FNode].IsHidden)
        FNode = FTree->Nodes[FNode + 1].End;
}

TDocView::TEntries::TIterator& TDocView::TEntries::TIterator::operator++() {
    const quint32 value = FTree->Nodes[FNode].IsKey ? FNode + 1 : FNode;
    FNode = FTree->Nodes[value].End;
    SkipHidden();
    return *this;
}

TDocView::TEntry TDocView::TEntries::TIterator::operator*() const {
    if (!FTree->Nodes[FNode].IsKey)
        return {{}, TDocView(FTree, FNode)};
    return {TDocView(FTree, FNode), TDocView(FTree, FNode + 1)};
}

quint32 TDocTree::Find(quint32 ANode, std::string_view AKey) const {
    if (Nodes[ANode].Size > LargeObject) {
        const TKeys& keys = KeysOf(ANode);
        const auto found = keys.find(AKey);
        return found == keys.end() ? 0 : found->second;
    }
    for (quint32 node = ANode + 1; node < Nodes[ANode].End; node = Nodes[node + 1].End) {
        if (!Nodes[node].IsHidden && IsTextOf(*this, Nodes[node], AKey))
            return node + 1;
    }
    return 0;
}

const TDocTree::TKeys& TDocTree::KeysOf(quint32 ANode) const {
    const auto [place, isNew] = FKeys.try_emplace(ANode);
    TKeys& keys = place->second;
    if (!isNew)
        return keys;
    keys.reserve(Nodes[ANode].Size);
    for (quint32 node = ANode + 1; node < Nodes[ANode].End; node = Nodes[node + 1].End) {
        const TDocNode& key = Nodes[node];
        if (key.IsHidden)
            continue;
        std::string_view text = Raw(key);
        if (key.IsEscaped)
            text = FUnescaped.emplace_back(DocJson::Unescape(text));
        keys.emplace(text, node + 1);
    }
    return keys;
}

int TDocTree::LineOf(quint32 ANode) const {
    const TDocNode& node = Nodes[ANode];
    if (node.Line > 0)
        return static_cast<int>(node.Line);
    const char* text = Text.constData();
    return 1 + static_cast<int>(std::count(text, text + node.Begin, '\n'));
}

QString TDocTree::PointerOf(quint32 ANode) const {
    QString pointer;
    quint32 at = 0;
    while (at != ANode) {
        const bool isObject = Nodes[at].Kind == dkObject;
        quint32 child = at + 1;
        int index = 0;
        quint32 value = isObject ? child + 1 : child;
        while (Nodes[value].End <= ANode) {
            child = Nodes[value].End;
            value = isObject ? child + 1 : child;
            ++index;
        }
        AppendPointer(pointer, isObject ? TDocView(this, child).Text() : QString::number(index));
        if (child == ANode)
            break;
        at = value;
    }
    return pointer;
}
