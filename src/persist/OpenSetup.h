// The setup file that is open: the one that has been stored or recalled last, and whether the record has been
// changed since.
#pragma once

#include <string>
#include <utility>

#include "model/SystemSettings.h"
#include "text/Wire.h"

namespace vc {

// A file, and the setup as it holds it.
struct SetupOfFile {
  std::string path;
  SystemSettings taken;
};

struct OpenSetup {
  // exchanged is told where another file is open, or none.
  OpenSetup(const SystemSettings& record, Wire<void()> exchanged)
      : settings(record), tellExchanged(std::move(exchanged)) {}

  // Whole, with its folder; empty where no file is open.
  const std::string& Path() const { return held.path; }
  // The record is as this file holds it, or, where the path is empty, as the run begins with it.
  void Take(const std::string& file);
  // A file is open that holds another record than the one in the hand, or, where the path is empty, none
  // does and the record is judged by this one.
  void Take(const std::string& file, const SystemSettings& judge);
  // No file holds what is in the record now.
  void Forget();
  // The record differs from what was taken in anything that a setup keeps.
  bool Changed() const;
  // For another setup that comes into the record with the file that is open of it, and back.
  const SetupOfFile& Held() const { return held; }
  void Swap(SetupOfFile& other);

 private:
  const SystemSettings& settings;
  Wire<void()> tellExchanged;
  SetupOfFile held;
};

}  // namespace vc
