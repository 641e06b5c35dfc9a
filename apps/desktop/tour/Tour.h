// A walk through the program's real windows as an operator would take it, told line by line.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QTimer>

#include "desktop/Program.h"
#include "desktop/tour/Album.h"
#include "desktop/tour/BoxDriver.h"

namespace tour {

class Tour {
 public:
  Tour(desktop::Program& desktopProgram, Album& pictures);

  // Starts the session, walks through it and ends it.
  void Run();
  bool Passed() const { return failures == 0; }

 private:
  void StartSession();
  void WatchLevels();
  void ShowMenus();
  void ChangeRate();
  void ShowAbout();
  void ShowObjectLog();
  void Reconnect();
  void LeaveProgram();

  void Say(const char* how, const std::string& what) const;
  void Expect(bool happened, const std::string& what);
  void Await(const std::function<bool()>& condition, const std::string& what);
  void Photograph(QWidget* window, const std::string& name);
  void Choose(const std::vector<std::string>& menus, const std::string& entry);
  desktop::FormWindow& Master() const { return *program.windows.WindowOf(program.session.master.form); }
  // What a widget of the master panel says, by the name of its control.
  std::string Spoken(const char* control) const;
  bool Shows(const std::string& state) const { return Spoken("txtComInfo") == state; }

  desktop::Program& program;
  Album& album;
  BoxDriver boxes;
  bool linked = false;  // a unit is there; without one only what works alone is shown
  int failures = 0;
  int boxNumber = 0;
};

}  // namespace tour
