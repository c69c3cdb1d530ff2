// A request as a command for a shell.
#pragma once

#include "runtime/http/HttpMessage.h"

#include <functional>

/// What a command is to hold beside the request.
struct TZOCurlOptions {
    /// Credentials are in the command; else CredentialMark stands in the place of each.
    bool WithCredentials = false;
    /// The file for the answer; empty: standard output.
    QString OutputFile;
};

/// Writes requests as commands for curl 7.81 or later, in any POSIX shell, that send the same bytes (but for
/// the boundary of a form, which is random, and for "Expect"). Redirects are not followed.
class TZOCurlCommand {
public:
    static constexpr char CredentialMark[] = "YOUR-CREDENTIAL";

    /// Streams of ARequest must be files; they need not be open. Raises EZORequestValueError for what no
    /// command line can hold.
    static QString Of(const TZOHttpRequest& ARequest, const TZOCurlOptions& AOptions);
    static bool HasCredentials(const TZOHttpRequest& ARequest);
};
