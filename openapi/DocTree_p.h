// One file of an API document, read: a flat array of nodes over the file's text.
#pragma once

#include <QByteArray>
#include <QString>

#include <deque>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

enum TDocKind : quint8 { dkNull, dkBoolean, dkNumber, dkString, dkArray, dkObject, dkAlias };

/// One value, or one key of an object, which stands right before its value. A container's children follow
/// it, so a walk over siblings steps from End to End.
struct TDocNode {
    quint32 Begin = 0; ///< place of its text (strings without quotes); an alias's target
    quint32 Size = 0;  ///< bytes of its text; of a container the number of its items or entries
    quint32 End = 0;   ///< the node behind its last descendant
    quint32 Kind : 3 = dkNull;
    quint32 IsKey : 1 = 0;
    quint32 IsEscaped : 1 = 0; ///< its text holds JSON escapes
    quint32 IsHidden : 1 = 0;  ///< a key that merges another mapping, and is no entry
    quint32 Line : 26 = 0;     ///< where the text does not tell it; counts from 1
};
static_assert(sizeof(TDocNode) == 16);

class TDocTree;

/// A place in a tree; or nowhere, where everything is absent and empty. Aliases are followed.
class TDocView {
public:
    struct TEntry;
    class TEntries;

    TDocView() = default;
    TDocView(const TDocTree* ATree, quint32 ANode);

    bool IsValid() const { return FTree; }
    explicit operator bool() const { return FTree; }
    bool operator==(const TDocView& AOther) const { return FTree == AOther.FTree && FNode == AOther.FNode; }

    const TDocTree* Tree() const { return FTree; }
    quint32 Node() const { return FNode; }
    /// Whether it was reached through an alias, and so may be reached from several places.
    bool IsShared() const { return FIsShared; }

    TDocKind Kind() const;
    bool IsObject() const { return FTree && Kind() == dkObject; }
    bool IsArray() const { return FTree && Kind() == dkArray; }
    bool IsString() const { return FTree && Kind() == dkString; }
    /// Items of an array, entries of an object; 0 for anything else.
    int Count() const;
    /// The value of key AKey; nowhere when there is none, or when this is no object.
    TDocView operator[](std::string_view AKey) const;
    /// Item AIndex of an array.
    TDocView At(int AIndex) const;
    /// What an object or array holds; nothing for anything else.
    TEntries Entries() const;

    /// The text of a scalar, without escapes.
    std::string Utf8() const;
    QString Text() const;
    /// Whether this is the string AText.
    bool Is(std::string_view AText) const;
    bool IsTrue() const;
    bool IsFalse() const;
    /// The key under which it stands in its object; empty for others.
    QString Key() const;
    /// The value as compact JSON; parts deeper than ADepth are null.
    QByteArray ToJson(int ADepth = 64) const;

private:
    const TDocTree* FTree = nullptr;
    quint32 FNode = 0;
    bool FIsShared = false;
};

struct TDocView::TEntry {
    TDocView Key; ///< nowhere in an array
    TDocView Value;
};

/// For range loops.
class TDocView::TEntries {
public:
    class TIterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = TEntry;
        using difference_type = std::ptrdiff_t;
        using pointer = const TEntry*;
        using reference = TEntry;

        TIterator(const TDocTree* ATree, quint32 ANode, quint32 AEnd);
        bool operator==(const TIterator& AOther) const { return FNode == AOther.FNode; }
        TIterator& operator++();
        TEntry operator*() const;

    private:
        void SkipHidden();

        const TDocTree* FTree;
        quint32 FNode;
        quint32 FEnd;
    };

    TEntries(const TDocTree* ATree, quint32 ABegin, quint32 AEnd)
        : FTree(ATree), FBegin(ABegin), FEnd(AEnd) {}
    TIterator begin() const { return {FTree, FBegin, FEnd}; }
    TIterator end() const { return {FTree, FEnd, FEnd}; }

private:
    const TDocTree* FTree;
    quint32 FBegin;
    quint32 FEnd;
};

/// What went wrong while a file was read.
struct TDocError {
    int Line = 0;
    QString Message;
};

class TDocTree {
public:
    /// Containers may stand inside each other this deep; deeper ones are read as null.
    static constexpr std::size_t MaxDepth = 1000;

    QString FileName;
    quint32 Id = 0; ///< tells the trees of one document apart
    /// The file's bytes, or for YAML the texts of its scalars.
    QByteArray Text;
    std::vector<TDocNode> Nodes;
    std::vector<TDocError> Errors;
    /// Whether a key begins with a dollar and is not "$ref": only then schemas may name themselves.
    bool MayHaveIds = false;

    void NoteKey(std::string_view AKey) { MayHaveIds |= AKey.size() != 4 && AKey.starts_with('$'); }
    TDocView Root() const { return Nodes.empty() ? TDocView() : TDocView(this, 0); }
    std::string_view Raw(const TDocNode& ANode) const { return {Text.constData() + ANode.Begin, ANode.Size}; }
    /// The value node of key AKey in object ANode; 0 when there is none.
    quint32 Find(quint32 ANode, std::string_view AKey) const;
    /// The line of a node; counts from 1.
    int LineOf(quint32 ANode) const;
    /// The JSON pointer of a node. Takes time in proportion to its ancestors' children.
    QString PointerOf(quint32 ANode) const;

private:
    using TKeys = std::unordered_map<std::string_view, quint32>;

    const TKeys& KeysOf(quint32 ANode) const;

    // Of large objects, made when they are first looked into.
    mutable std::unordered_map<quint32, TKeys> FKeys;
    mutable std::deque<std::string> FUnescaped; // keys that FKeys looks at
};

/// Hears how much has been read, from 0 to 1; false ends the reading.
using TDocProgress = std::function<bool(double ADone)>;

namespace DocJson {
/// Zero bytes that follow the document in TDocTree::Text.
inline constexpr qsizetype Padding = 32;
/// Reads ATree.Text as JSON (RFC 8259). What stands before the first error is kept, with open containers
/// closed there. False when AProgress ended it.
bool Parse(TDocTree& ATree, const TDocProgress& AProgress);
/// The text that stands for the content of a JSON string.
std::string Unescape(std::string_view AContent);
} // namespace DocJson

namespace DocYaml {
/// Reads ABytes as one YAML document. Aliases are kept as such, so that no text can grow by them. What
/// stands before the first error is kept. False when AProgress ended it.
bool Parse(TDocTree& ATree, const QByteArray& ABytes, const TDocProgress& AProgress);
} // namespace DocYaml
