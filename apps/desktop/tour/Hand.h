// The operator's hand on windows and menus, by real events of mouse and keyboard.
#pragma once

#include <string>
#include <vector>

#include <QMenu>

#include "desktop/FormWindow.h"

namespace tour {

// Clicks a control of a window.
void Press(desktop::FormWindow& window, const char* control);
// Opens a menu of the bar by mouse and the submenus below it by their access keys; each is named as its
// control. Returns the last one, null where one did not come up.
QMenu* OpenMenu(desktop::FormWindow& window, const std::vector<std::string>& names);
// Clicks an entry of an open menu; false where the menu has no such entry.
bool ClickEntry(QMenu* menu, const std::string& name);
// Closes whatever menu is open.
void CloseMenus(desktop::FormWindow& window);

}  // namespace tour
