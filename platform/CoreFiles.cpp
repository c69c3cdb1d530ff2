#include "platform/CoreFiles.h"

#include <sys/resource.h>

void ForbidCoreFiles() {
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
}
