// A shared library that is no service plug-in.
extern "C" __attribute__((visibility("default"))) int ZOAnswer() { return 42; }
