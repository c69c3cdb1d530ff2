#include "runtime/http/HttpClient.h"

class TZOHttpClient::TImpl {};

TZOHttpClient::TZOHttpClient() = default;
TZOHttpClient::~TZOHttpClient() = default;
