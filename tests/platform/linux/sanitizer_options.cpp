// The thread sanitizer sees what GLib's libraries do to memory, but not the locks they do it under:
// those are made of system calls in code that is not instrumented. Their own accesses are left out
// here; Vellora's stay in.
// libsystemd's hash tables take their random seed from one place, where a thread may renew it while
// another copies it; any bytes will do there.
extern "C" const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libglib-2.0.so\n"
         "called_from_lib:libgobject-2.0.so\n"
         "called_from_lib:libgio-2.0.so\n"
         "called_from_lib:libsystemd.so\n";
}
