// The signal's way through the frames of a flow, as lines with arrows in the gaps between them.
#pragma once

class QPainter;

namespace desktop {

class FrameView;

// Neighbours that face each other are joined by an arrow for each channel. Lanes of one channel follow each
// other. Blocks that are not there are passed by where there is no other way.
void DrawSignalPath(QPainter& painter, const FrameView& flow);

}  // namespace desktop
