// The setup file that is open: the one that has been stored or recalled last, and whether the record has been
// changed since.
#pragma once

#include <string>
#include <utility>

#include "model/SystemSettings.h"
#include "text/Wire.h"

namespace vc {

struct OpenSetup {
  // exchanged is told where another file is open, or none.
  OpenSetup(const SystemSettings& record, Wire<void()> exchanged)
      : settings(record), tellExchanged(std::move(exchanged)) {}

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
  Wire<void()> tellExchanged;
  std::string path;
  SystemSettings taken;
};

}  // namespace vc
