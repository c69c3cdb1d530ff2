// The sample services as the explorer shows them.
#pragma once

/// Starts the sample server and registers TLibraryService and TClockService, which point at it. New
/// instances start with the key that the server takes. When the environment variable ZO_SAMPLE_HTTPBIN holds
/// the address of an httpbin server, THttpbinService follows them. Does nothing when the samples run already.
/// Raises ESampleServerError.
void StartSamples();

/// Takes the classes out of the registry and stops the server; harmless when the samples do not run. No
/// instance of the classes may be left.
void StopSamples();
