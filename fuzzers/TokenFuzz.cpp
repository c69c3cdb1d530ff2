// Stored tokens: bytes that are no token give none, and a token's bytes give that token.
#include "fuzzers/Fuzz.h"

#include "runtime/service/TokenState.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    const QByteArray bytes = Fuzz::Bytes(AData, ASize);
    const TZOTokenState read = TZOTokenState::FromBytes(bytes);
    Fuzz::Require(read.AccessToken.isEmpty() || read.ToBytes() == bytes, "only a token's own bytes are read");

    TZOTokenState token;
    token.AccessToken = QString::fromLatin1(bytes);
    token.RefreshToken = QString::fromUtf8(bytes);
    token.ExpiresAtMs = ASize > 0 ? AData[0] : 0;
    const TZOTokenState again = TZOTokenState::FromBytes(token.ToBytes());
    Fuzz::Require(again.AccessToken == token.AccessToken && again.RefreshToken == token.RefreshToken &&
                      again.ExpiresAtMs == token.ExpiresAtMs,
                  "a token comes back as it was kept");
    return 0;
}
