// The look of the program: its own light and dark palette on one style.
#pragma once

namespace desktop {

enum class Theme { Light, Dark };

// By the lightness of the system's palette; ask before the first ApplyTheme.
Theme SystemTheme();
// Dresses the whole application; windows that are open change at once.
void ApplyTheme(Theme theme);

}  // namespace desktop
