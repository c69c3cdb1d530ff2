// Memory for rows and their layouts: rows come and go by the million, layouts with every step of the wheel.
#pragma once

#include <cstddef>

/// Hands out slots of a few sizes from chunks, which return to the heap as soon as they are empty. For the
/// user interface's thread alone, as rows are.
namespace RowPool {

void* Take(std::size_t ASize);
/// ASize is what the slot was taken with.
void Give(void* ASlot, std::size_t ASize) noexcept;

} // namespace RowPool
