// Writes what the fuzzers of setup files and of the files of one filter start from: `setup_seeds SETUPS
// FILTERS`, two folders. Each begins with the byte that says how it is read.
#include <filesystem>
#include <fstream>
#include <iostream>

#include "RandomRecord.h"
#include "model/Kinds.h"
#include "persist/IndivFiles.h"
#include "persist/SetupText.h"

namespace {

struct Seeds {
  std::filesystem::path folder;
  bool good = true;

  void Put(const std::string& name, char way, std::string_view text) {
    std::ofstream file(folder / name, std::ios::binary);
    file << way << text;
    file.close();
    good = good && !file.fail();
  }
};

// Short adaptive filters in every stage, and what they have learned.
vc::LearnedStages Learn(vc::SystemSettings& settings) {
  constexpr int taps = 5;
  settings.numFilters = vc::FilterStages;
  settings.configMode = vc::ConfigMode::Mono;
  settings.filterType.Fill(vc::FilterKind::RefCanceller);
  vc::LearnedStages learned;
  for (const int stage : vc::StagesWithBlocks(settings)) {
    learned[stage].assign(taps, -1000000 * stage);
    settings.ch2Taps[stage] = taps - 1;
  }
  return learned;
}

void PutSeeds(Seeds& seeds) {
  std::mt19937 random{1};
  vc::SystemSettings settings;
  vc::InitSettings(settings);
  const vc::LearnedStages learned = Learn(settings);
  const std::string text = vc::WriteSetup(settings, 0, learned);
  seeds.Put("learned", 'I', text);
  seeds.Put("learned-no-folder", 'E', text);
  for (const std::size_t length : {0U, 8U, 40U, 200U, 1000U, 4000U, 16000U})
    seeds.Put("cut-" + std::to_string(length), 'C', text.substr(0, length));
  const std::size_t block = text.find(vc::CoefficientLine);
  for (const std::size_t behind : {0U, 14U, 15U, 20U, 40U})
    seeds.Put("cut-block-" + std::to_string(behind), 'A', text.substr(0, block + behind));
  fuzz::RandomizeRecord(settings, random);
  seeds.Put("random", 'A', vc::WriteSetup(settings, 1, Learn(settings)));
}

// Of each type one drawn at random, for different stages and configurations.
void PutIndivSeeds(Seeds& seeds) {
  std::mt19937 random{2};
  vc::SystemSettings settings;
  constexpr int types = 9, stages = 6;
  for (std::int16_t type = 0; type < types; ++type) {
    fuzz::RandomizeRecord(settings, random);
    const int place = type % stages, configMode = type % 3;
    vc::LineWriter lines;
    vc::StoreIndivSettings(type, lines, 1, settings, {-8388608, 8388607, 1, -1, 5});
    seeds.Put("type-" + std::to_string(type), static_cast<char>(type + types * (place + stages * configMode)),
              lines.text);
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return std::cerr << "Usage: setup_seeds SETUPS FILTERS\n", 2;
  Seeds setups{arguments[1]}, filters{arguments[2]};
  for (const Seeds* seeds : {&setups, &filters}) std::filesystem::create_directories(seeds->folder);
  PutSeeds(setups);
  PutIndivSeeds(filters);
  return setups.good && filters.good ? 0 : 1;
}
