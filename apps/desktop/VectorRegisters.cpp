#include "desktop/VectorRegisters.h"

namespace desktop {

#if defined(__x86_64__)
namespace {
__attribute__((target("avx"))) void ZeroUpperHalves() { __builtin_ia32_vzeroupper(); }
}  // namespace

void ReleaseUpperHalves() {
  if (__builtin_cpu_supports("avx")) ZeroUpperHalves();
}
#else
void ReleaseUpperHalves() {}
#endif

}  // namespace desktop
