// The unit's replies, byte for byte. All begin with "!"; words are sent low byte first.
#pragma once

#include "unit/Bytes.h"
#include "unit/Stages.h"
#include "unit/Status.h"

namespace unit {

// "!OK".
Bytes Acknowledgement();

// Three bytes that tell the host that its frame was seen and refused; which = 0, 1, 2 for "!RT", "!T" and
// "!R", the short ones filled up with a NUL.
Bytes Complaint(int which);

// "!VER", then each version as units and two digits of hundredths; versions 0..999 in hundredths. 10 bytes.
Bytes VersionReply(int bootHundredths, int firmwareHundredths);

// "!MG" and the status, 46 bytes. The nibbles of the stages stand in pairs with the second first. The last
// byte makes the sum of all bytes after the token 0 modulo 256.
Bytes MainStatusReply(const Status& status);

// "!EG" and the status words of stages 9 and 10, 8 bytes, ended in the same way.
Bytes EqualizerStatusReply(const Status& status);

// "!S1" or "!S2" for trace 0 or 1, the same head as of the main status, a byte for each line, and one of 0:
// 558 bytes.
Bytes SpectrumReply(unsigned trace, const Status& status, const SpectrumLines& lines);

// "!CV", the same head as of the main status, and 256 coefficients of three bytes with the high byte first;
// two bytes of 0 fill it up to 815.
Bytes CoefficientReply(const Status& status, const CoefficientBlock& block);

}  // namespace unit
