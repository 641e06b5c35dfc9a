// The state that other code leaves the processor's vector registers in.
#pragma once

namespace desktop {

// The toolkit's fills use the upper halves of the vector registers and do not hand them back (seen in Qt 6.4
// with AVX2). Until somebody does, each instruction on the lower halves has to keep them, and calculations
// take up to twice as long. To be called before much of that; takes no time, and changes no result.
void ReleaseUpperHalves();

}  // namespace desktop
