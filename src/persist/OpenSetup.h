// The setup file that is open: the one that has been stored or recalled last, and whether the record has been
// changed since.
#pragma once

#include <functional>
#include <string>

#include "model/SystemSettings.h"

namespace vc {

struct OpenSetup {
  explicit OpenSetup(const SystemSettings& record) : settings(record) {}

  // Another file is open, or none.
  std::function<void()> exchanged = [] {};

  // Whole, with its folder; empty where no file is open.
  const std::string& Path() const { return path; }
  // The record is as this file holds it, or, where the path is empty, as the run begins with it.
  void Take(const std::string& file);
  // No file holds what is in the record now.
  void Forget();
  // The record differs from what was taken in anything that a setup keeps.
  bool Changed() const;

 private:
  const SystemSettings& settings;
  std::string path;
  SystemSettings taken;
};

}  // namespace vc
