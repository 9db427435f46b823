// A library with one export, for modules_test.cpp.
#ifdef _WIN32
#define EXPORTED __declspec(dllexport)
#else
#define EXPORTED __attribute__((visibility("default")))
#endif

extern "C" EXPORTED int TripleForTest(int value);
extern "C" EXPORTED int TripleForTest(int value) { return 3 * value; }
