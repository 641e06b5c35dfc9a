// A sound through the unit as the host sets it up: compare_unit IN.wav REFERENCE.wav OUT.wav SETTING...
//
// REFERENCE.wav is what the right input hears, or "-" for silence. A SETTING is a field of the record, with
// its place where it has several, and a value: bandwidthIndex=1, "ch1Taps(1)=1024". They are edited in this
// order in a session in which all processors are off, and reach the unit over the line as any edit does.
#include <cstdio>
#include <iterator>

#include "SoundRun.h"
#include "Waves.h"
#include "model/Kinds.h"

namespace {

using measure::Signal;

void Edit(support::SoundRun& run, const std::string& setting) {
  const std::size_t equals = setting.find('='), open = setting.find('(');
  if (equals == std::string::npos) throw std::runtime_error(setting + " is no setting");
  const bool placed = open < equals;
  const int place = placed ? std::stoi(setting.substr(open + 1)) : 0;
  const std::string field = setting.substr(0, placed ? open : equals);
  if (vc::FindField(field) == nullptr) throw std::runtime_error("there is no field " + field);
  run.Edit(field, setting.substr(equals + 1), place);
  run.Settle();
}

void Run(const std::vector<std::string>& words) {
  constexpr std::uint16_t bothBroadband = 3;
  compare::Wave wave = compare::ReadWave(words[0]);
  support::SoundRun run(vc::ConfigMode::Mono);
  for (std::size_t i = 3; i < words.size(); ++i) Edit(run, words[i]);
  run.Take();
  if (run.Rate() != wave.rate) throw std::runtime_error(words[0] + " has not the unit's rate");
  run.engine.ResetBroadband(bothBroadband);  // of the silence that went before
  Signal right = words[1] == "-" ? Signal() : compare::ReadWave(words[1]).channels[0];
  right.resize(wave.channels[0].size());
  compare::WriteWave(words[2], wave.rate, run.Through({wave.channels[0], right})[0]);
}

}  // namespace

int main(int count, char** words) {
  try {
    if (count < 4) throw std::runtime_error("compare_unit IN.wav REFERENCE.wav OUT.wav SETTING...");
    Run(std::vector<std::string>(std::next(words), std::next(words, count)));
    return testing::Test::HasFailure() ? 1 : 0;
  } catch (const std::exception& trouble) {
    std::fprintf(stderr, "%s\n", trouble.what());
    return 1;
  }
}
