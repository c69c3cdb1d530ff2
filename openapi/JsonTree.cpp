// JSON text to a tree, in one pass without recursion. It keeps what a parser of whole documents throws away:
// the place of every value, what stands before an error, and everything but what nests too deep.
#include "openapi/DocTree_p.h"

#include "platform/Utf8.h"
#include "runtime/types/JsonText.h"

#include <simdjson.h>

#include <algorithm>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

/// The first byte from AAt on that ends or escapes a string's content, or may not stand in it.
const char* EndOfPlainText(const char* AAt) {
#ifdef __SSE2__
    const __m128i quote = _mm_set1_epi8('"');
    const __m128i backslash = _mm_set1_epi8('\\');
    const __m128i control = _mm_set1_epi8(0x1F);
    for (;; AAt += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(AAt));
        const __m128i found =
            _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, quote), _mm_cmpeq_epi8(bytes, backslash)),
                         _mm_cmpeq_epi8(_mm_min_epu8(bytes, control), bytes));
        if (const auto mask = static_cast<unsigned>(_mm_movemask_epi8(found)))
            return AAt + __builtin_ctz(mask);
    }
#else
    while (*AAt != '"' && *AAt != '\\' && static_cast<unsigned char>(*AAt) >= 0x20)
        ++AAt;
    return AAt;
#endif
}

const char* EndOfSpace(const char* AAt) {
    while (*AAt == ' ' || *AAt == '\n' || *AAt == '\r' || *AAt == '\t') {
#ifdef __SSE2__
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(AAt + 1));
        const auto others =
            ~static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(' '))));
        AAt += 1 + __builtin_ctz(others | 0x10000);
#else
        ++AAt;
#endif
    }
    return AAt;
}

class TJsonScanner {
public:
    TJsonScanner(TDocTree& ATree, const TDocProgress& AProgress)
        : FTree(ATree),
          FProgress(AProgress),
          FNodes(ATree.Nodes),
          FStart(ATree.Text.constData()),
          FPos(FStart),
          FEnd(FStart + ATree.Text.size() - DocJson::Padding) {}

    /// False when the reading was ended.
    bool Run() {
        if (std::memcmp(FStart, "\xEF\xBB\xBF", 3) == 0)
            FPos += 3;
        FNodes.reserve(static_cast<std::size_t>(FEnd - FStart) / 16 + 16);
        if (Values()) {
            FPos = EndOfSpace(FPos);
            if (FPos < FEnd)
                Fail(QStringLiteral("Something follows the end of the document."));
        }
        CloseAll();
        if (FNodes.capacity() > FNodes.size() / 4 * 5 + 64)
            FNodes.shrink_to_fit();
        return !FIsEnded;
    }

private:
    bool Report() {
        constexpr qsizetype step = qsizetype(4) << 20;
        const bool isFirst = !FNextReport;
        FNextReport = FPos + step;
        FIsEnded = !isFirst && FProgress && !FProgress(double(FPos - FStart) / double(FEnd - FStart));
        return !FIsEnded;
    }

    bool Fail(const QString& AMessage) {
        const auto line = 1 + std::count(FStart, FPos, '\n');
        FTree.Errors.push_back({static_cast<int>(line), AMessage});
        return false;
    }

    bool FailHere(const char* AExpected) {
        if (FPos >= FEnd)
            return Fail(QStringLiteral("The document ends in the middle: %1 is missing.")
                            .arg(QLatin1String(AExpected)));
        return Fail(QStringLiteral("This is no JSON: %1 is expected here.").arg(QLatin1String(AExpected)));
    }

    quint32 Push(TDocKind AKind, const char* ABegin, std::size_t ASize) {
        TDocNode& node = FNodes.emplace_back();
        node.Begin = static_cast<quint32>(ABegin - FStart);
        node.Size = static_cast<quint32>(ASize);
        node.End = static_cast<quint32>(FNodes.size());
        node.Kind = AKind & 7;
        return node.End - 1;
    }

    /// Reads one value with everything in it.
    bool Values() {
        for (;;) {
            if (FPos > FNextReport && !Report())
                return false;
            FPos = EndOfSpace(FPos);
            bool isOpened = false;
            if (!OneValue(isOpened))
                return false;
            if (!isOpened && !AfterValue())
                return false;
            if (FOpen.empty())
                return true;
        }
    }

    /// Reads a scalar or the start of a container that is not empty.
    bool OneValue(bool& AIsOpened) {
        if (!FOpen.empty())
            ++FNodes[FOpen.back()].Size;
        switch (*FPos) {
        case '"':
            return String();
        case '{':
        case '[':
            return Open(AIsOpened);
        case 't':
            return Word("true", dkBoolean);
        case 'f':
            return Word("false", dkBoolean);
        case 'n':
            return Word("null", dkNull);
        default:
            return Number();
        }
    }

    bool Open(bool& AIsOpened) {
        const bool isObject = *FPos == '{';
        FOpen.push_back(Push(isObject ? dkObject : dkArray, FPos, 0));
        FPos = EndOfSpace(FPos + 1);
        if (*FPos == (isObject ? '}' : ']')) {
            Close();
            return true;
        }
        AIsOpened = true;
        return !isObject || Key();
    }

    void Close() {
        const quint32 open = FOpen.back();
        FOpen.pop_back();
        ++FPos;
        if (FOpen.size() >= TDocTree::MaxDepth)
            DropContent(open);
        FNodes[open].End = static_cast<quint32>(FNodes.size());
    }

    void DropContent(quint32 ANode) {
        if (!FIsTooDeep)
            Fail(QStringLiteral(
                     "Values stand inside each other more than %1 levels deep; what is deeper is left out.")
                     .arg(TDocTree::MaxDepth));
        FIsTooDeep = true;
        FNodes.resize(ANode + 1);
        FNodes[ANode].Kind = dkNull;
        FNodes[ANode].Size = 0;
    }

    /// Reads on to the next value of an open container, or to the end of the outermost.
    bool AfterValue() {
        while (!FOpen.empty()) {
            FPos = EndOfSpace(FPos);
            const bool isObject = FNodes[FOpen.back()].Kind == dkObject;
            if (*FPos == ',') {
                FPos = EndOfSpace(FPos + 1);
                return !isObject || Key();
            }
            if (*FPos != (isObject ? '}' : ']'))
                return FailHere(isObject ? "\",\" or \"}\"" : "\",\" or \"]\"");
            Close();
        }
        return true;
    }

    bool Key() {
        if (*FPos != '"')
            return FailHere("a key in quotes");
        if (!String())
            return false;
        FNodes.back().IsKey = 1;
        FTree.NoteKey(FTree.Raw(FNodes.back()));
        FPos = EndOfSpace(FPos);
        if (*FPos != ':')
            return FailHere("\":\"");
        ++FPos;
        return true;
    }

    bool String() {
        const char* const begin = FPos + 1;
        const char* at = EndOfPlainText(begin);
        const bool isEscaped = *at == '\\';
        while (*at == '\\')
            at = EndOfPlainText(at + 2);
        if (*at != '"' || at >= FEnd) {
            FPos = at < FEnd ? at : FEnd;
            return FailHere("the quote that ends a string");
        }
        const std::string_view content(begin, static_cast<std::size_t>(at - begin));
        if (isEscaped && !JsonText::IsStringContent(content))
            return Fail(QStringLiteral("A string holds an escape that JSON does not know."));
        FNodes[Push(dkString, begin, content.size())].IsEscaped = isEscaped;
        FPos = at + 1;
        return true;
    }

    bool Word(const char* AWord, TDocKind AKind) {
        const std::size_t size = std::strlen(AWord);
        if (std::strncmp(FPos, AWord, size) != 0)
            return FailHere("a value");
        Push(AKind, FPos, size);
        FPos += size;
        return true;
    }

    bool Number() {
        const char* at = FPos;
        while ((*at >= '0' && *at <= '9') || *at == '-' || *at == '+' || *at == '.' || *at == 'e' ||
               *at == 'E')
            ++at;
        const std::string_view token(FPos, static_cast<std::size_t>(at - FPos));
        if (!JsonText::IsNumber(token))
            return FailHere("a value");
        Push(dkNumber, FPos, token.size());
        FPos = at;
        return true;
    }

    void CloseAll() {
        if (FNodes.empty())
            return;
        if (FNodes.back().IsKey)
            FNodes.pop_back();
        if (!FOpen.empty())
            FixCount();
        while (!FOpen.empty())
            Close();
    }

    /// The innermost container has counted a value that did not come.
    void FixCount() {
        const quint32 open = FOpen.back();
        const bool isObject = FNodes[open].Kind == dkObject;
        quint32 count = 0;
        for (quint32 node = open + 1; node < FNodes.size(); ++count)
            node = FNodes[isObject ? node + 1 : node].End;
        FNodes[open].Size = count;
    }

    TDocTree& FTree;
    const TDocProgress& FProgress;
    std::vector<TDocNode>& FNodes;
    std::vector<quint32> FOpen;
    const char* FStart;
    const char* FPos;
    const char* FEnd;
    const char* FNextReport = nullptr;
    bool FIsTooDeep = false;
    bool FIsEnded = false;
};

unsigned HexAt(std::string_view AText, std::size_t APlace) {
    unsigned value = 0;
    for (const char c : AText.substr(APlace, 4))
        value = value * 16 + static_cast<unsigned>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
    return value;
}

} // namespace

bool DocJson::Parse(TDocTree& ATree, const TDocProgress& AProgress) {
    const auto size = static_cast<std::size_t>(ATree.Text.size() - Padding);
    if (!TJsonScanner(ATree, AProgress).Run())
        return false;
    if (!simdjson::validate_utf8(ATree.Text.constData(), size))
        ATree.Errors.push_back(
            {0, QStringLiteral("The file is not in UTF-8: some of its texts are damaged.")});
    return true;
}

std::string DocJson::Unescape(std::string_view AContent) {
    QString text;
    text.reserve(qsizetype(AContent.size()));
    for (std::size_t i = 0; i < AContent.size();) {
        const std::size_t plain = std::min(AContent.find('\\', i), AContent.size());
        text += TextFromUtf8(AContent.substr(i, plain - i));
        if (plain + 1 >= AContent.size())
            break;
        const char kind = AContent[plain + 1];
        i = plain + (kind == 'u' ? 6 : 2);
        constexpr std::string_view kinds = "bfnrt";
        if (kind == 'u')
            text += QChar(static_cast<char16_t>(HexAt(AContent, plain + 2)));
        else if (const auto place = kinds.find(kind); place != kinds.npos)
            text += QLatin1Char("\b\f\n\r\t"[place]);
        else
            text += QLatin1Char(kind);
    }
    return text.toStdString();
}
