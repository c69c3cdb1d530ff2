// Memory for the many texts of one response.
#pragma once

#include <QString>

#include <string_view>

/// Makes strings that share blocks of memory instead of having one each: Qt lets several strings refer to
/// one counted array, and here each refers to its own part of it. A block goes with its last string. Such a
/// string is a usual one in every way: it ends with a zero unit, and moves out of the block as soon as it is
/// changed. Blocks are small, because a string that moves out by growing takes along room for what stands
/// before it.
class TZOTextBlocks {
public:
    TZOTextBlocks() = default;
    TZOTextBlocks(const TZOTextBlocks&) = delete;
    TZOTextBlocks& operator=(const TZOTextBlocks&) = delete;
    ~TZOTextBlocks() { Close(); }

    /// The string of a text in valid UTF-8. SlackBytes bytes behind the text can be read.
    QString Make(std::string_view AText);

    static constexpr std::size_t SlackBytes = 16;

private:
    using TBlock = QTypedArrayData<char16_t>;

    void Open(std::size_t ASize);
    void Close() noexcept;

    TBlock* FBlock = nullptr; // null before the first text
    char16_t* FFree = nullptr;
    char16_t* FEnd = nullptr;
    int FSpareReferences = 0; // counted in the block's header, and not yet given to a string
    std::size_t FNextSize = 64;
};
