#include "runtime/oauth/AuthUI.h"

TZOAuthUI::~TZOAuthUI() = default;

int TZOAuthUI::TimeLimitMs() const { return 300'000; }
