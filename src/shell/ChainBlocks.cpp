#include "shell/ChainBlocks.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <variant>

#include "model/Kinds.h"
#include "panels/KeyNumbers.h"

namespace vc {
namespace {

const std::string NotThere = "Not Available";

struct BlockNames {
  std::array<std::string, 2> equalizer, broadband;
  std::string leftFilter, rightFilter;  // in front of the number
};

const BlockNames& NamesIn(std::int16_t configMode) {
  static const std::array<BlockNames, 3> names{
      {{{"Equalizer", NotThere}, {"Filter", NotThere}, "Filter ", "Filter "},
       {{"Left/Right EQ", NotThere}, {"Left/Right Filter", NotThere}, "Left/Right Filter ", NotThere},
       {{"Left Equalizer", "Right Equalizer"},
        {"Left Filter", "Right Filter"},
        "Left Filter ",
        "Right Filter "}}};
  return names.at(static_cast<std::size_t>(configMode));
}

// The stage's number within its channel.
int NumberOf(std::int16_t configMode, int stage) {
  return configMode == ConfigMode::StereoIndependent && stage > PairStages ? stage - PairStages : stage;
}

bool IsThere(const SystemSettings& settings, int stage) {
  if (settings.configMode == ConfigMode::StereoLinked && stage > PairStages) return false;
  return NumberOf(settings.configMode, stage) <= settings.numFilters;
}

std::string CaptionOf(const SystemSettings& settings, int stage) {
  const BlockNames& names = NamesIn(settings.configMode);
  const std::string& name = stage <= PairStages ? names.leftFilter : names.rightFilter;
  return name == NotThere ? name : name + std::to_string(NumberOf(settings.configMode, stage));
}

std::string Suffix(const std::string& caption) { return " (" + caption + ")"; }

void SetBlock(Frame& frame, const std::string& caption, bool there) {
  frame.core.SetCaption(caption);
  frame.core.SetEnabled(there && caption != NotThere);
}

}  // namespace

ChainBlocks::ChainBlocks(ChainLayout& layout, const SystemSettings& record)
    : whole(layout.pltWholeChain, record, [this](const ChainFilter& filter) { return NameOf(filter); }),
      chain(layout),
      settings(record) {}

// "Left Filter 2, Lowpass"
std::string ChainBlocks::NameOf(const ChainFilter& filter) const {
  if (const auto* end = std::get_if<ChainEnd>(&filter)) {
    return (*end == ChainEnd::Input ? chain.ihpf : chain.ohpf).frame.core.Caption();
  }
  const auto& block = std::get<BlockKind>(filter);
  const auto named = [&block](const Frame& frame, std::span<const KindRow> kinds) {
    const auto kind = static_cast<std::size_t>(block.kind);
    return frame.core.Caption() + (kind < kinds.size() ? ", " + std::string(kinds[kind].name) : "");
  };
  switch (block.family) {
    case BlockFamily::Equalizer:
      return named(chain.Equalizer(block.number).frame, EqKinds());
    case BlockFamily::Broadband:
      return named(chain.Broadband(block.number).frame, BroadbandKinds());
    default:
      return named(chain.Filter(block.number).frame, FilterKinds());
  }
}

void ChainBlocks::ConfigureBlocks() {
  const BlockNames& names = NamesIn(settings.configMode);
  for (const int side : {1, 2}) {
    const auto place = static_cast<std::size_t>(side - 1);
    SetBlock(chain.Equalizer(side).frame, names.equalizer.at(place), true);
    SetBlock(chain.Broadband(side).frame, names.broadband.at(place), true);
  }
  for (int stage = 1; stage <= FilterStages; ++stage) {
    SetBlock(chain.Filter(stage).frame, CaptionOf(settings, stage), IsThere(settings, stage));
  }
  const bool stereo = settings.configMode != ConfigMode::Mono;
  chain.fraLastStages.core.SetEnabled(IsThere(settings, PairStages + 1));
  ShowChannels();
  chain.lbOutputRight.core.SetVisible(stereo);
  chain.lblRightOut.core.SetVisible(stereo);
  chain.fraRightOut.core.SetVisible(stereo);
  ShowSignalPath();
}

// In Stereo Linked every block stands for both channels, in Stereo Independent only what is at the ends does.
void ChainBlocks::ShowChannels() {
  const bool stereo = settings.configMode != ConfigMode::Mono;
  const bool linked = IsLinked(settings.configMode);
  for (Frame* frame :
       {&chain.fraInputs, &chain.fraInputProcessor, &chain.fraOutputProcessor, &chain.fraOutputs,
        &chain.fraBroadbandStages, &chain.fraStages, &chain.fraEqualizers}) {
    frame->SetChannels(stereo ? 2 : 1);
  }
  const int perBlock = linked ? 2 : 1;
  for (int stage = 1; stage <= FilterStages; ++stage) chain.Filter(stage).frame.SetChannels(perBlock);
  for (const int side : {1, 2}) {
    chain.Equalizer(side).frame.SetChannels(perBlock);
    chain.Broadband(side).frame.SetChannels(perBlock);
  }
}

void ChainBlocks::ShowWhatBlocksDo() {
  due = held > 0;
  if (due) return;
  ShowKeyNumbers();
  ShowPictures();
  whole.Show(frequencyAxis);
}

void ChainBlocks::LayOutFrequencies(AxisLaw law) {
  frequencyAxis = law;
  ShowWhatBlocksDo();
}

void ChainBlocks::ShowKeyNumbers() {
  for (int stage = 1; stage <= FilterStages; ++stage) {
    chain.Filter(stage).keys.core.SetCaption(FilterKeyNumbers(settings, stage));
  }
  for (const int side : {1, 2}) {
    chain.Equalizer(side).keys.core.SetCaption(EqualizerKeyNumbers(settings, side));
    chain.Broadband(side).keys.core.SetCaption(BroadbandKeyNumbers(settings, side));
  }
  chain.ihpf.keys.core.SetCaption(HighpassKeyNumbers(settings.ihpfCutoff));
  chain.ohpf.keys.core.SetCaption(HighpassKeyNumbers(settings.ohpfCutoff));
  chain.agc.keys.core.SetCaption(AgcKeyNumbers(settings));
  chain.limiter.keys.core.SetCaption(LimiterKeyNumbers(settings));
}

std::vector<ChainBlocks::Pictured> ChainBlocks::PicturedBlocks() {
  std::vector<Pictured> blocks;
  for (int stage = 1; stage <= FilterStages; ++stage) {
    FilterBlock& block = chain.Filter(stage);
    blocks.push_back({{BlockFamily::Filter, stage, settings.filterType[stage]}, block.response, block.frame});
  }
  for (const int side : {1, 2}) {
    KindBlock &equalizer = chain.Equalizer(side), &broadband = chain.Broadband(side);
    blocks.push_back(
        {{BlockFamily::Equalizer, side, settings.eqType[side]}, equalizer.response, equalizer.frame});
    blocks.push_back(
        {{BlockFamily::Broadband, side, settings.broadbandType[side]}, broadband.response, broadband.frame});
  }
  return blocks;
}

void ChainBlocks::ShowPictures() {
  auto picture = pictures.begin();
  for (const auto& [block, plot, frame] : PicturedBlocks()) {
    picture->Follow(settings, block, frequencyAxis);
    PlotTrace trace = picture->trace;
    trace.colour = frame.InTheWay() == Standing::In ? TraceColours[0] : GrayText;
    plot.core.SetVisible(!trace.values.empty());
    plot.SetAxes(picture->x, picture->y);
    plot.SetTraces({std::move(trace)});
    ++picture;
  }
}

void ChainBlocks::ConfigureFilterStageButtons(int stage) {
  const bool adaptive = IsAdaptive(settings.filterType[stage]);
  chain.Filter(stage).adapt.core.SetVisible(adaptive);
  chain.Filter(stage).clear.core.SetVisible(adaptive);
}

void ChainBlocks::ShowSignalPath() {
  const bool processing = settings.procEnabled != 0;
  const auto show = [processing](Frame& frame, const GraphicButton& active, bool always = false) {
    const bool in = active.Value() == 1 && (processing || always);
    frame.SetStanding(!frame.core.Usable() ? Standing::Plain : in ? Standing::In : Standing::Out);
  };
  for (int stage = 1; stage <= FilterStages; ++stage) {
    show(chain.Filter(stage).frame, chain.Filter(stage).active);
  }
  for (const int side : {1, 2}) {
    show(chain.Equalizer(side).frame, chain.Equalizer(side).active);
    show(chain.Broadband(side).frame, chain.Broadband(side).active);
  }
  for (FixedBlock* block : {&chain.ihpf, &chain.agc, &chain.ohpf}) show(block->frame, block->active);
  show(chain.limiter.frame, chain.limiter.active, true);
  ShowWhatBlocksDo();
}

std::string ChainBlocks::FilterSuffix(int stage) const { return Suffix(CaptionOf(settings, stage)); }

std::string ChainBlocks::BroadbandSuffix(int number) const {
  return Suffix(NamesIn(settings.configMode).broadband.at(static_cast<std::size_t>(number - 1)));
}

std::string ChainBlocks::EqualizerSuffix(int number) const {
  if (settings.configMode == ConfigMode::Mono) return " (Mono Equalizer)";
  if (settings.configMode == ConfigMode::StereoLinked) return " (Left/Right Equalizer)";
  return number == 1 ? " (Left Equalizer)" : " (Right Equalizer)";
}

}  // namespace vc
