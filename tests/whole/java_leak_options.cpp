// What the leak sanitizer needs to know of a JVM with a database driver in it: thread-local memory cannot be read,
// little is freed at the JVM's end, and a copy by change leaves its manager, which has the ERP's file open, to the
// garbage collector.
extern "C" const char* __lsan_default_options();
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_options() { return "use_tls=0:print_suppressions=0"; }
extern "C" const char* __lsan_default_suppressions() { return "leak:libjvm\nleak:libz\nleak:libsqlite3\n"; }
