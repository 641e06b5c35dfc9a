// The look of the program: its own light and dark palette on one style.
#pragma once

#include <QColor>
#include <QPalette>

#include "platform/Desk.h"

namespace desktop {

using vc::Theme;

// By the lightness of the system's own palette.
Theme SystemTheme();
// Dresses the whole application in the light or the dark theme; windows that are open change at once.
void ApplyTheme(Theme theme);
QPalette PaletteOf(Theme theme);
bool IsDark(const QPalette& palette);
// Of the titles of groups, in the theme that a palette is of.
QColor TitleColour(const QPalette& palette);

}  // namespace desktop
