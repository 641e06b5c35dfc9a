#include "unit/clean/OutputFormat.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <optional>

#include <sndfile.h>

namespace unit::clean {
namespace {

// From the least to the best. What is coded to sound alike has no depth; what it is decoded to is kept.
enum class Depth : std::uint8_t { Alike, Bits8, Bits16, Bits24, Bits32, Float, Double };

struct DepthRow {
  Depth depth;
  int coding;  // of several for one depth, the first that a container has
  unsigned bits;
  std::string_view name;
};
constexpr DepthRow Depths[] = {{Depth::Bits8, SF_FORMAT_PCM_U8, 8, "8 bits"},
                               {Depth::Bits8, SF_FORMAT_PCM_S8, 8, "8 bits"},
                               {Depth::Bits16, SF_FORMAT_PCM_16, 16, "16 bits"},
                               {Depth::Bits24, SF_FORMAT_PCM_24, 24, "24 bits"},
                               {Depth::Bits32, SF_FORMAT_PCM_32, 32, "32 bits"},
                               {Depth::Float, SF_FORMAT_FLOAT, 0, "32 bits, floating point"},
                               {Depth::Double, SF_FORMAT_DOUBLE, 0, "64 bits, floating point"}};

struct Kind {
  std::string_view ending;
  int container;
  std::string_view name;
  int coding = 0;  // of a kind that only sounds like what it was made of
};
constexpr Kind Kinds[] = {{".wav", SF_FORMAT_RF64, "WAV"},
                          {".flac", SF_FORMAT_FLAC, "FLAC"},
                          {".aiff", SF_FORMAT_AIFF, "AIFF"},
                          {".w64", SF_FORMAT_W64, "W64"},
                          {".au", SF_FORMAT_AU, "AU"},
                          {".caf", SF_FORMAT_CAF, "CAF"},
                          {".ogg", SF_FORMAT_OGG, "Ogg", SF_FORMAT_VORBIS},
                          {".opus", SF_FORMAT_OGG, "Opus", SF_FORMAT_OPUS},
                          {".mp3", SF_FORMAT_MPEG, "MP3", SF_FORMAT_MPEG_LAYER_III},
                          {"", SF_FORMAT_RF64, "WAV"},
                          {".wave", SF_FORMAT_RF64, "WAV"},
                          {".rf64", SF_FORMAT_RF64, "WAV"},
                          {".aif", SF_FORMAT_AIFF, "AIFF"},
                          {".snd", SF_FORMAT_AU, "AU"},
                          {".oga", SF_FORMAT_OGG, "Ogg", SF_FORMAT_VORBIS}};

Depth DepthOf(int recorded) {
  const int coding = recorded & SF_FORMAT_SUBMASK;
  const auto* const row = std::ranges::find(Depths, coding, &DepthRow::coding);
  if (row != std::end(Depths)) return row->depth;
  switch (coding) {
    case SF_FORMAT_VORBIS:
    case SF_FORMAT_OPUS:
    case SF_FORMAT_MPEG_LAYER_I:
    case SF_FORMAT_MPEG_LAYER_II:
    case SF_FORMAT_MPEG_LAYER_III:
      return Depth::Alike;
    case SF_FORMAT_ALAC_20:
    case SF_FORMAT_ALAC_24:
    case SF_FORMAT_DWVW_24:
      return Depth::Bits24;
    case SF_FORMAT_ALAC_32:
      return Depth::Bits32;
    case SF_FORMAT_DPCM_8:
      return Depth::Bits8;
    default:  // what a telephone or an old recorder packs
      return Depth::Bits16;
  }
}

const Kind* KindOf(const std::string& path) {
  std::string ending = std::filesystem::path(path).extension().string();
  std::ranges::transform(ending, ending.begin(), [](char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  });
  const auto* const kind = std::ranges::find(Kinds, ending, &Kind::ending);
  return kind == std::end(Kinds) ? nullptr : kind;
}

bool IsWritten(int format, int rate, int channels) {
  SF_INFO info{};
  info.samplerate = rate;
  info.channels = channels;
  info.format = format;
  return sf_format_check(&info) != 0;
}

// The wanted depth or the next better one, else the best that the kind has.
const DepthRow* BestRow(const Kind& kind, Depth wanted, int rate, int channels) {
  const DepthRow* best = nullptr;
  for (const DepthRow& row : Depths) {
    if (!IsWritten(kind.container | row.coding, rate, channels)) continue;
    best = &row;
    if (row.depth >= wanted) break;
  }
  return best;
}

std::string Instead() {
  std::string text = ": a name that ends in ";
  for (const Kind& kind : Kinds) {
    if (kind.coding == 0 && !kind.ending.empty()) text += std::string(kind.ending) + ", ";
    if (kind.ending == ".caf") break;
  }
  text.replace(text.rfind(", "), 2, " can be taken");
  return text;
}

std::string Another(const Kind& kind, Depth wanted, const DepthRow& row) {
  if (wanted == row.depth) return {};
  if (wanted == Depth::Alike) return "the recording has no depth of its own";
  const auto* const had = std::ranges::find(Depths, wanted, &DepthRow::depth);
  return std::string(kind.name) + " does not have the recording's " + std::string(had->name);
}

}  // namespace

unsigned BitsOf(int recorded) {
  const auto* const row = std::ranges::find(Depths, DepthOf(recorded), &DepthRow::depth);
  return row == std::end(Depths) ? 0 : row->bits;
}

std::variant<OutputFormat, std::string> OutputFormatFor(const std::string& path, int recorded, int rate,
                                                        int channels) {
  const Kind* const kind = KindOf(path);
  if (kind == nullptr) return path + ": is no name for sound to write" + Instead();
  const std::string unwritten = path + ": " + std::string(kind->name) + " can't be written at " +
                                std::to_string(rate) + " Hz" + Instead();
  if (kind->coding != 0) {
    if (!IsWritten(kind->container | kind->coding, rate, channels)) return unwritten;
    return OutputFormat{kind->container | kind->coding, 0, kind->name, "coded to sound alike", ""};
  }
  const Depth wanted = DepthOf(recorded);
  // A decoder gives more than 16 bits.
  const DepthRow* const row = BestRow(*kind, wanted == Depth::Alike ? Depth::Bits24 : wanted, rate, channels);
  if (row == nullptr) return unwritten;
  return OutputFormat{kind->container | row->coding, row->bits, kind->name, row->name,
                      Another(*kind, wanted, *row)};
}

}  // namespace unit::clean
