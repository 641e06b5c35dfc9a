// The three streams that every program is started with.
#pragma once

namespace host {

// Opens those that were closed at the start, to nowhere: else the first file that is opened takes the place
// of one, and what is printed lands in it. To be called before any file is opened.
void FillStandardStreams();

}  // namespace host
