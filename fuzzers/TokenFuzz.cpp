// Stored tokens: bytes that are no token give none, and a token's bytes give that token.
#include "fuzzers/Fuzz.h"

#include "runtime/service/ServiceState.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
    const QByteArray bytes = Fuzz::Bytes(AData, ASize);
    const TZOServiceState read = TZOServiceState::FromBytes(bytes);
    Fuzz::Require(read.Token.AccessToken.isEmpty() || read.ToBytes() == bytes,
                  "only a token's own bytes are read");

    TZOServiceState state;
    TZOAuthToken& token = state.Token;
    token.AccessToken = QString::fromLatin1(bytes);
    token.RefreshToken = QString::fromUtf8(bytes);
    token.ExpiresAtMs = ASize > 0 ? AData[0] : 0;
    state.Binding = {QStringLiteral("TService"), token.AccessToken, token.RefreshToken, {token.AccessToken}};
    const TZOServiceState again = TZOServiceState::FromBytes(state.ToBytes());
    Fuzz::Require(
        again.Token.AccessToken == token.AccessToken && again.Token.RefreshToken == token.RefreshToken &&
            again.Token.ExpiresAtMs == token.ExpiresAtMs && again.Binding.IsSameGrant(state.Binding) &&
            again.Binding.Server == state.Binding.Server,
        "a token comes back as it was kept");
    return 0;
}
