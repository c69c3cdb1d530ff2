// What the fuzz targets share.
#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Runs the target on one input; libFuzzer's name, called by it or by Replay.cpp.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize);

namespace Fuzz {

inline QByteArray Bytes(const std::uint8_t* AData, std::size_t ASize) {
    return QByteArray(reinterpret_cast<const char*>(AData), qsizetype(ASize));
}

/// Ends the program when what must hold does not: a finding.
inline void Require(bool AHolds, const char* AWhat) {
    if (AHolds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", AWhat);
    std::abort();
}

} // namespace Fuzz
