// The signal's way through the frames of a flow, as lines with arrows in the gaps between them.
#pragma once

class QPainter;

namespace desktop {

class FrameView;

// Neighbours that face each other are joined. A row of blocks that nothing comes to from its left takes up
// the signal where the row above it ends. Blocks that are not there are passed by where there is no other
// way.
void DrawSignalPath(QPainter& painter, const FrameView& flow);

}  // namespace desktop
