// The rate at which the other end of a pseudo-terminal has set the line.
#pragma once

namespace unit {

// Rate in baud of the terminal behind the descriptor, any whole number; 0 if it can't be told.
int LineRate(int descriptor);

}  // namespace unit
