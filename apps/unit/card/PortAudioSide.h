// What is done with PortAudio, each in a process of its own: a sound server that dies in the midst may hang
// PortAudio for minutes, or abort the process.
#pragma once

#include <string>

#include "unit/card/Attendant.h"
#include "unit/card/CardShare.h"

namespace unit::sound {

enum class Direction { In, Out };

// Tells the names of all inputs, each behind an 'i', and of all outputs, each behind an 'o'.
void ListCards(const Employer& employer);

// Opens the card, tells "rate" and two numbers, its rate in Hz and its own delay in seconds, or "wrong" and
// why not in words, and stays until the employer lets it go or the card ends.
void ServeCard(const Employer& employer, const std::string& name, Direction direction, CardShare& share);

}  // namespace unit::sound
