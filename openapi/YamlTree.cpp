// YAML text to a tree, from the parser's events.
#include "openapi/DocTree_p.h"

#include "runtime/types/JsonText.h"

#include <yaml.h>

#include <optional>
#include <unordered_map>

namespace {

/// The entries that merge keys may add to one file, so that merges of merges stay bounded.
constexpr std::size_t MaxMerged = 1000000;

bool IsOneOf(std::string_view AText, std::initializer_list<std::string_view> AWords) {
    return std::find(AWords.begin(), AWords.end(), AText) != AWords.end();
}

/// What a scalar without quotes is (YAML 1.2, section 10.3.2). Numbers that JSON cannot write stay text.
TDocKind PlainKind(std::string_view AText) {
    if (AText.empty() || IsOneOf(AText, {"null", "~", "Null", "NULL"}))
        return dkNull;
    if (IsOneOf(AText, {"true", "false", "True", "False", "TRUE", "FALSE"}))
        return dkBoolean;
    return JsonText::IsNumber(AText) ? dkNumber : dkString;
}

class TYamlScanner {
public:
    TYamlScanner(TDocTree& ATree, const QByteArray& ABytes, const TDocProgress& AProgress)
        : FTree(ATree), FNodes(ATree.Nodes), FProgress(AProgress), FSize(double(ABytes.size())) {
        yaml_parser_initialize(&FParser);
        yaml_parser_set_input_string(&FParser, reinterpret_cast<const unsigned char*>(ABytes.constData()),
                                     static_cast<std::size_t>(ABytes.size()));
        FTree.Text.reserve(ABytes.size());
        FNodes.reserve(static_cast<std::size_t>(ABytes.size()) / 16);
    }
    TYamlScanner(const TYamlScanner&) = delete;
    TYamlScanner& operator=(const TYamlScanner&) = delete;
    ~TYamlScanner() { yaml_parser_delete(&FParser); }

    /// False when the reading was ended.
    bool Run() {
        bool goesOn = true;
        for (std::size_t count = 0; goesOn; ++count) {
            if (count % 16384 == 16383 && FProgress && !FProgress(double(FParser.mark.index) / FSize))
                return false;
            yaml_event_t event;
            if (!yaml_parser_parse(&FParser, &event)) {
                FailInParser();
                break;
            }
            goesOn = Take(event);
            yaml_event_delete(&event);
        }
        CloseAll();
        FTree.Text.squeeze();
        FNodes.shrink_to_fit();
        return true;
    }

private:
    struct TOpen {
        quint32 Node;
        bool IsMapping;
        bool HasMerge;
    };

    bool Fail(std::size_t ALine, const QString& AMessage) {
        FTree.Errors.push_back({static_cast<int>(ALine) + 1, AMessage});
        return false;
    }

    void FailInParser() {
        const bool isText = FParser.error == YAML_READER_ERROR;
        const QString reason = QString::fromUtf8(FParser.problem ? FParser.problem : "");
        Fail(isText ? FParser.mark.line : FParser.problem_mark.line,
             (isText ? QStringLiteral("The text is damaged: %1.") : QStringLiteral("This is no YAML: %1."))
                 .arg(reason));
    }

    /// False when there is nothing more to read.
    bool Take(const yaml_event_t& AEvent) {
        switch (AEvent.type) {
        case YAML_SCALAR_EVENT:
            return Scalar(AEvent);
        case YAML_ALIAS_EVENT:
            return Alias(AEvent);
        case YAML_SEQUENCE_START_EVENT:
            return Open(AEvent, dkArray, AEvent.data.sequence_start.anchor);
        case YAML_MAPPING_START_EVENT:
            return Open(AEvent, dkObject, AEvent.data.mapping_start.anchor);
        case YAML_SEQUENCE_END_EVENT:
        case YAML_MAPPING_END_EVENT:
            Close();
            return !FOpen.empty();
        case YAML_DOCUMENT_END_EVENT:
        case YAML_STREAM_END_EVENT:
            return false;
        default:
            return true;
        }
    }

    bool ExpectsKey() const { return !FOpen.empty() && FOpen.back().IsMapping && !FHasKey; }

    quint32 Push(const yaml_event_t& AEvent, TDocKind AKind) {
        TDocNode& node = FNodes.emplace_back();
        node.End = static_cast<quint32>(FNodes.size());
        node.Kind = AKind & 7;
        node.Line = static_cast<quint32>(AEvent.start_mark.line + 1) & 0x3FFFFFF;
        return node.End - 1;
    }

    /// Counts the value that was just begun.
    void CountValue() {
        FHasKey = false;
        if (!FOpen.empty())
            ++FNodes[FOpen.back().Node].Size;
    }

    void Anchor(const yaml_char_t* AName, quint32 ANode) {
        if (AName)
            FAnchors[reinterpret_cast<const char*>(AName)] = ANode;
    }

    void SetText(TDocNode& ANode, std::string_view AText) {
        ANode.Begin = static_cast<quint32>(FTree.Text.size());
        ANode.Size = static_cast<quint32>(AText.size());
        FTree.Text.append(AText.data(), qsizetype(AText.size()));
    }

    bool Scalar(const yaml_event_t& AEvent) {
        const auto& scalar = AEvent.data.scalar;
        std::string_view text(reinterpret_cast<const char*>(scalar.value), scalar.length);
        const bool isKey = ExpectsKey();
        const bool isPlain = scalar.style == YAML_PLAIN_SCALAR_STYLE && !scalar.tag;
        const TDocKind kind = isPlain && !isKey ? PlainKind(text) : dkString;
        const quint32 node = Push(AEvent, kind);
        if (kind == dkBoolean)
            text = text[0] == 't' || text[0] == 'T' ? "true" : "false";
        SetText(FNodes[node], text);
        FNodes[node].IsKey = isKey;
        Anchor(scalar.anchor, node);
        if (!isKey) {
            CountValue();
            return true;
        }
        FHasKey = true;
        FTree.NoteKey(text);
        if (isPlain && text == "<<") {
            FNodes[node].IsHidden = 1;
            FOpen.back().HasMerge = true;
        }
        return true;
    }

    bool Alias(const yaml_event_t& AEvent) {
        const auto* name = reinterpret_cast<const char*>(AEvent.data.alias.anchor);
        const auto target = FAnchors.find(name);
        if (target == FAnchors.end())
            return Fail(
                AEvent.start_mark.line,
                QStringLiteral("The alias *%1 has no anchor before it.").arg(QString::fromUtf8(name)));
        if (ExpectsKey())
            return Fail(AEvent.start_mark.line, QStringLiteral("An alias cannot be a key."));
        const quint32 node = Push(AEvent, dkAlias);
        FNodes[node].Begin = target->second;
        FNodes[node].Size = 0;
        CountValue();
        return true;
    }

    bool Open(const yaml_event_t& AEvent, TDocKind AKind, const yaml_char_t* AAnchor) {
        if (ExpectsKey())
            return Fail(AEvent.start_mark.line, QStringLiteral("A key has to be text."));
        if (FOpen.size() >= TDocTree::MaxDepth)
            return Fail(
                AEvent.start_mark.line,
                QStringLiteral(
                    "Values stand inside each other more than %1 levels deep; what follows is left out.")
                    .arg(TDocTree::MaxDepth));
        CountValue();
        const quint32 node = Push(AEvent, AKind);
        Anchor(AAnchor, node);
        FOpen.push_back({node, AKind == dkObject, false});
        return true;
    }

    void Close() {
        const TOpen open = FOpen.back();
        FOpen.pop_back();
        FNodes[open.Node].End = static_cast<quint32>(FNodes.size());
        if (open.HasMerge)
            Merge(open.Node);
    }

    /// Adds what the merge keys of a finished mapping stand for, as aliases of the values.
    void Merge(quint32 ANode) {
        std::vector<quint32> sources;
        for (quint32 key = ANode + 1; key < FNodes[ANode].End; key = FNodes[key + 1].End) {
            if (!FNodes[key].IsHidden)
                continue;
            --FNodes[ANode].Size;
            const TDocView value(&FTree, key + 1);
            if (value.IsObject())
                sources.push_back(value.Node());
            for (const auto& [none, item] : value.IsArray() ? value.Entries() : TDocView().Entries())
                sources.push_back(item.Node());
        }
        for (const quint32 source : sources)
            MergeFrom(ANode, source);
        FNodes[ANode].End = static_cast<quint32>(FNodes.size());
    }

    void MergeFrom(quint32 ANode, quint32 ASource) {
        // A mapping that is still open would be merged into a part of itself.
        if (FNodes[ASource].Kind != dkObject || (ASource <= ANode && FNodes[ASource].End > ANode) ||
            FNodes[ASource].End <= ASource)
            return;
        for (quint32 key = ASource + 1, end = FNodes[ASource].End; key < end; key = FNodes[key + 1].End) {
            FNodes[ANode].End = static_cast<quint32>(FNodes.size());
            if (FNodes[key].IsHidden || FTree.Find(ANode, FTree.Raw(FNodes[key])))
                continue;
            if (++FMerged > MaxMerged) {
                if (FMerged == MaxMerged + 1)
                    Fail(FNodes[ANode].Line - 1, QStringLiteral("Merge keys add too many entries."));
                return;
            }
            TDocNode copy = FNodes[key];
            copy.End = static_cast<quint32>(FNodes.size()) + 1;
            FNodes.push_back(copy);
            TDocNode alias;
            const TDocView target(&FTree, key + 1);
            alias.Begin = target.Node();
            alias.End = copy.End + 1;
            alias.Kind = dkAlias;
            alias.Line = copy.Line;
            FNodes.push_back(alias);
            ++FNodes[ANode].Size;
        }
    }

    void CloseAll() {
        if (!FNodes.empty() && FNodes.back().IsKey)
            FNodes.pop_back();
        while (!FOpen.empty())
            Close();
    }

    TDocTree& FTree;
    std::vector<TDocNode>& FNodes;
    const TDocProgress& FProgress;
    double FSize;
    yaml_parser_t FParser{};
    std::vector<TOpen> FOpen;
    std::unordered_map<std::string, quint32> FAnchors;
    std::size_t FMerged = 0;
    bool FHasKey = false;
};

} // namespace

bool DocYaml::Parse(TDocTree& ATree, const QByteArray& ABytes, const TDocProgress& AProgress) {
    return TYamlScanner(ATree, ABytes, AProgress).Run();
}
