// What a screen reader is told of the program's own widgets: the numbers that are shown, and nothing that is
// not.
#pragma once

namespace desktop {

// Once for the application, before its first window.
void InstallAccessibility();

}  // namespace desktop
