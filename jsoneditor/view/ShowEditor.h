// Where the in-place editor goes next.
#pragma once

/// Where the editor goes when a row is selected. Values keep their numbers.
enum TZOShowEditor : int {
    seNoChange,     ///< its current chunk if it is visible, else nowhere
    seHide,         ///< nowhere
    seDefaultChunk, ///< the chunk with its current identifier if editable here, else the first editable one
    seFirstChunk,
    seLastChunk,
    seNextChunk, ///< the next editable chunk on its own row, else the first editable one
    sePrevChunk  ///< the previous editable chunk on its own row, else the last editable one
};
