// What the leak sanitizer needs to know of a JVM: its thread-local memory cannot be read, it frees little at its end,
// and libzip, a library of its own, keeps the jars of the classpath open.
extern "C" const char* __lsan_default_options();
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_options() { return "use_tls=0:print_suppressions=0"; }
extern "C" const char* __lsan_default_suppressions() { return "leak:libjvm\nleak:libzip\n"; }
