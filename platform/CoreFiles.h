// What a crash leaves behind.
#pragma once

/// Lets this process write no core file: it would hold every key and token that is in memory. Called by
/// programs at their start; a plug-in leaves the choice to its host.
void ForbidCoreFiles();
