// The program's mark as the icon of its windows.
#pragma once

#include <QIcon>

namespace desktop {

QIcon MarkIcon();

}  // namespace desktop
