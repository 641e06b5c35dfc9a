#include "model/ChainResponse.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <utility>

#include "model/Kinds.h"

namespace vc {
namespace {

using Filters = std::vector<ChainFilter>;

// The filters of one channel; of a linked pair the left ones stand for both.
Filters ChannelOf(const SystemSettings& s, std::int16_t side, int firstStage, int stages) {
  Filters filters;
  if (s.ihpfEnabled != 0) filters.emplace_back(ChainEnd::Input);
  if (s.broadbandActive[side] != 0) {
    filters.emplace_back(BlockKind{BlockFamily::Broadband, side, s.broadbandType[side]});
  }
  for (int stage = firstStage; stage < firstStage + stages; ++stage) {
    if (s.filterActive[stage] == 0) continue;
    filters.emplace_back(BlockKind{BlockFamily::Filter, stage, s.filterType[stage]});
  }
  if (s.eqActive[side] != 0) filters.emplace_back(BlockKind{BlockFamily::Equalizer, side, s.eqType[side]});
  if (s.ohpfEnabled != 0) filters.emplace_back(ChainEnd::Output);
  return filters;
}

ChainBasis BasisNow(const SystemSettings& settings, const ChainFilter& filter) {
  if (const auto* end = std::get_if<ChainEnd>(&filter)) return EndHighpassOf(settings, *end);
  return BasisOf(settings, std::get<BlockKind>(filter));
}

std::vector<double> GainsOf(const SystemSettings& settings, const ChainBasis& basis,
                            std::span<const double> hertz) {
  const auto* highpass = std::get_if<EndHighpass>(&basis);
  if (highpass == nullptr) return GainsAt(std::get<ResponseBasis>(basis), hertz);
  std::vector<double> cycles(hertz.begin(), hertz.end());
  for (double& frequency : cycles) frequency /= static_cast<double>(settings.sampleRate);
  return GainsAt(*highpass, cycles);
}

// The telling ones that lie within the others, sorted in.
std::vector<double> Merged(std::span<const double> frequencies, std::span<const double> telling) {
  std::vector<double> all(frequencies.begin(), frequencies.end());
  if (all.empty()) return all;
  std::ranges::copy_if(telling, std::back_inserter(all),
                       [&](double one) { return one > frequencies.front() && one < frequencies.back(); });
  std::ranges::sort(all);
  const auto again = std::unique(all.begin(), all.end());
  all.erase(again, all.end());
  return all;
}

float Decibels(double gain) {
  return std::max(ChainResponse::LowestPart, static_cast<float>(20 * std::log10(std::abs(gain))));
}

}  // namespace

std::vector<Filters> FiltersInTheWay(const SystemSettings& settings) {
  const bool apart = settings.configMode == ConfigMode::StereoIndependent;
  if (settings.procEnabled == 0) return std::vector<Filters>(apart ? 2 : 1);
  const int most = settings.configMode == ConfigMode::Mono ? FilterStages : PairStages;
  const int stages = std::clamp<int>(settings.numFilters, 0, most);
  std::vector<Filters> channels{ChannelOf(settings, 1, 1, stages)};
  if (apart) channels.push_back(ChannelOf(settings, 2, PairStages + 1, stages));
  return channels;
}

bool IsDesigned(const ChainFilter& filter) {
  const auto* block = std::get_if<BlockKind>(&filter);
  return block == nullptr || (block->family != BlockFamily::Broadband && HasResponse(*block));
}

bool ChainResponse::Follow(const SystemSettings& settings, std::span<const double> frequencies) {
  std::vector<Channel> before = std::exchange(channels, {});
  const std::vector<double> placesBefore = places;
  std::vector<std::vector<float>> sums;
  sums.reserve(before.size());
  for (const Channel& channel : before) sums.push_back(channel.decibels);
  for (const Filters& filters : FiltersInTheWay(settings)) {
    Channel& channel = channels.emplace_back();
    for (const ChainFilter& filter : filters) {
      if (IsDesigned(filter)) channel.parts.push_back(Taken(settings, filter, before));
    }
  }
  std::vector<double> telling;
  for (const Channel& channel : channels) {
    for (const Part& part : channel.parts) std::ranges::copy(part.telling, std::back_inserter(telling));
  }
  places = Merged(frequencies, telling);
  const std::size_t computedBefore = computed;
  for (Channel& channel : channels) {
    for (Part& part : channel.parts) Fill(settings, part, frequencies);
    Sum(channel);
  }
  return computed != computedBefore || places != placesBefore ||
         !std::ranges::equal(channels, sums, {}, &Channel::decibels);
}

// Where a filter follows from the same as before, what has been computed of it still holds.
ChainResponse::Part ChainResponse::Taken(const SystemSettings& settings, const ChainFilter& filter,
                                         const std::vector<Channel>& before) {
  ChainBasis basis = BasisNow(settings, filter);
  for (const Channel& channel : before) {
    const auto found = std::ranges::find_if(
        channel.parts, [&](const Part& part) { return part.filter == filter && part.basis == basis; });
    if (found != channel.parts.end()) return *found;
  }
  Part part{filter, std::move(basis)};
  if (const auto* response = std::get_if<ResponseBasis>(&part.basis)) part.telling = TellingAt(*response);
  return part;
}

// It is computed at its own places alone. At those of the others it has what the line that joins two of its
// own has: a table is designed anew for each request, however few the frequencies are.
void ChainResponse::Fill(const SystemSettings& settings, Part& part, std::span<const double> frequencies) {
  const std::vector<double> own = Merged(frequencies, part.telling);
  if (part.ownPlaces != own) {
    part.ownPlaces = own;
    part.own.clear();
    for (const double gain : GainsOf(settings, part.basis, own)) part.own.push_back(Decibels(gain));
    computed += own.size();
  } else if (part.places == places) {
    return;
  }
  part.places = places;
  part.decibels.clear();
  std::size_t next = 0;
  for (const double place : places) {
    while (next + 1 < own.size() && own[next] < place) ++next;
    const double step = next == 0 ? 0 : own[next] - own[next - 1];
    const double back = step > 0 ? std::max(own[next] - place, 0.0) / step : 0;
    const double before = part.own[next == 0 ? 0 : next - 1];
    part.decibels.push_back(static_cast<float>(part.own[next] + (before - part.own[next]) * back));
  }
}

void ChainResponse::Sum(Channel& channel) const {
  channel.decibels.assign(places.size(), 0.0F);
  for (const Part& part : channel.parts) {
    std::ranges::transform(channel.decibels, part.decibels, channel.decibels.begin(), std::plus());
  }
  for (float& sum : channel.decibels) sum = std::max(sum, LowestResponse);
}

std::optional<ChainResponse::Share> ChainResponse::GreatestAt(std::size_t channel, double hertz) const {
  constexpr float flat = 0.5F;  // dB
  if (channel >= channels.size() || places.empty()) return {};
  auto nearest = std::ranges::lower_bound(places, hertz);
  if (nearest == places.end() || (nearest != places.begin() && hertz - *(nearest - 1) < *nearest - hertz)) {
    --nearest;
  }
  const auto at = static_cast<std::size_t>(nearest - places.begin());
  std::optional<Share> greatest;
  for (const Part& part : channels[channel].parts) {
    const float most = greatest ? std::abs(greatest->decibels) : flat;
    if (std::abs(part.decibels[at]) > most) greatest = {part.filter, part.decibels[at]};
  }
  return greatest;
}

}  // namespace vc
