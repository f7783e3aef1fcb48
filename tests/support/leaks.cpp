// What the leak checker leaves out: memory that a system library keeps until the process ends and never gives back.
// fontconfig keeps the patterns of every font that cairo has asked it for.

extern "C" const char* __lsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier): the checker's name
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
