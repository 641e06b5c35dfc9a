// How well processed speech is understood.
#pragma once

#include <span>

namespace measure {

// The short-time objective intelligibility of degraded speech, from -1 to 1, which is that of the clean
// speech itself (C. H. Taal, R. C. Hendriks, R. Heusdens, J. Jensen, IEEE Transactions on Audio, Speech, and
// Language Processing 19, 2011). Both sounds have the same length and time. sampleRate in Hz. 0 where less
// than 0.4 s of the sound is speech.
double Intelligibility(std::span<const float> clean, std::span<const float> degraded, double sampleRate);

}  // namespace measure
