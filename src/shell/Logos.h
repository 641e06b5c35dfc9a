// The places where the program shows its mark, as drawings of a Picture.
#pragma once

#include "text/ProgramInfo.h"
#include "widgets/Mark.h"

namespace vc {

inline void DrawLogo(Surface& surface, const Rectangle& area, int /*image*/) { DrawMark(surface, area); }
inline void DrawNamedLogo(Surface& surface, const Rectangle& area, int /*image*/) {
  DrawMarkAndName(surface, area, ApplicationTitle);
}

}  // namespace vc
