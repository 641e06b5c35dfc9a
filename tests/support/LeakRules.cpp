// What the sanitizers are to take for no leak. Fontconfig, by which pictures find their letters, keeps its
// patterns as offsets, behind which nobody sees a pointer.
extern "C" const char* __lsan_default_suppressions();   // NOLINT(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier,cert-dcl37-c)
  return "leak:libfontconfig\n";
}
