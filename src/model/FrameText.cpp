#include "model/FrameText.h"

#include <algorithm>

#include "link/Frames.h"
#include "link/Status.h"
#include "link/veltrana.h"
#include "model/RegisterText.h"
#include "text/Convert.h"
#include "text/modString.h"

namespace vc {
namespace {

constexpr std::size_t ShownBytes = 24;

std::string Milliseconds(std::int64_t microseconds) {
  return FixedText(static_cast<double>(microseconds) / 1000.0, 1);
}

std::string LevelText(std::int16_t level) { return FixedText(LevelToDb(level, true), 1); }

std::string StatusText(std::string_view reply) {
  UnitStatus status;
  DecodeLevels(status, reply);
  DecodeUnitStatus(status, reply);
  DecodeUnitMode(status, reply);
  return "in " + LevelText(status.levelInLeft) + " and " + LevelText(status.levelInRight) + " dB, out " +
         LevelText(status.levelOutLeft) + " and " + LevelText(status.levelOutRight) + " dB, status 0x" +
         HexPadded(static_cast<std::uint32_t>(status.unitStatus), 4) + ", mode 0x" +
         HexPadded(static_cast<std::uint32_t>(status.unitMode), 4);
}

std::string EqualizerText(std::string_view reply) {
  UnitStatus status;
  DecodeEqualizerStages(status, reply);
  return "equalizer stages " + std::to_string(status.stageStatus[8]) + " and " +
         std::to_string(status.stageStatus[9]);
}

// "boot ROM 4.01, firmware 4.02"
std::string VersionText(std::string_view reply) {
  const auto version = [reply](std::size_t at) {
    return std::string(reply.substr(at, 1)) + "." + std::string(reply.substr(at + 1, 2));
  };
  constexpr std::size_t bootRom = 4, firmware = 7;
  return "boot ROM " + version(bootRom) + ", firmware " + version(firmware);
}

// What a reply of full length says that begins with its token.
std::string ContentText(const LineRow& row) {
  const std::string_view reply = row.bytes;
  if (reply.starts_with(token::Acknowledged)) return "acknowledged";
  if (reply.starts_with(token::Version)) return VersionText(reply);
  if (reply.starts_with(token::MainStatus)) return StatusText(reply);
  if (reply.starts_with(token::EqualizerStatus)) return EqualizerText(reply);
  if (reply.starts_with(token::FirstSpectrum)) return "spectrum of trace 1; " + StatusText(reply);
  if (reply.starts_with(token::SecondSpectrum)) return "spectrum of trace 2; " + StatusText(reply);
  if (!reply.starts_with(token::Coefficients)) return HexText(reply, ShownBytes);
  const std::string which = row.request ? ArgumentText(row.request->number, row.request->argument) : "";
  return std::to_string(CoefBlockSize) + " coefficients" + (which.empty() ? "" : " of " + which);
}

std::string WrongText(const LineRow& row) {
  const std::string hex = HexText(row.bytes, ShownBytes);
  if (row.bytes.size() < row.awaited) {
    return "incomplete, " + std::to_string(row.bytes.size()) + " of " + std::to_string(row.awaited) +
           " bytes: " + hex;
  }
  return (IsComplaint(row.bytes) ? "refused by the unit: " : "not the answer: ") + hex;
}

std::string ReplyText(const LineRow& row) {
  switch (row.fate) {
    case ReplyFate::Good:
      return ContentText(row);
    case ReplyFate::Unused:
      return ContentText(row) + ", not used";
    case ReplyFate::Wrong:
      return WrongText(row);
    case ReplyFate::Missing:
      return "no answer for " + Milliseconds(row.afterMicroseconds) + " ms";
    case ReplyFate::ThrownAway:
      return "thrown away: " + HexText(row.bytes, ShownBytes);
    default:
      return HexText(row.bytes, ShownBytes);
  }
}

std::string RequestText(const LineRow& row) {
  if (!row.request) return HexText(row.bytes, ShownBytes);
  const LineRequest& request = *row.request;
  const std::string text = request.packet ? "data packet " + std::to_string(request.number)
                                          : CommandText(request.number, request.argument);
  return row.attempt < 2 ? text : text + ", sent again, attempt " + std::to_string(row.attempt);
}

unsigned KindOf(const LineRequest& request) {
  if (request.packet || request.number == command::ReadCoefficients) return lineKind::Coefficients;
  if (request.number == command::Version || request.number == command::ConfirmConnection) {
    return lineKind::Other;
  }
  switch (UseOf(request.number)) {
    case CommandUse::Request:
      return lineKind::Polls;
    case CommandUse::Unknown:
      return lineKind::Other;
    default:
      return lineKind::Registers;
  }
}

bool IsError(const LineRow& row) {
  using enum ReplyFate;
  return row.trouble || row.attempt > 1 || row.fate == Wrong || row.fate == Missing || row.fate == ThrownAway;
}

bool IsAnswer(const LineRow& row) { return row.awaited != 0; }

}  // namespace

unsigned KindsOf(const LineRow& row) {
  const bool ofFrame = row.request && (row.way == LineWay::ToUnit || IsAnswer(row));
  return (ofFrame ? KindOf(*row.request) : lineKind::Other) | (IsError(row) ? lineKind::Errors : 0U);
}

std::string HexText(std::string_view bytes, std::size_t most) {
  std::string text;
  const std::size_t shown = std::min(bytes.size(), most);
  text.reserve(3 * shown);
  for (const char byte : bytes.substr(0, shown)) {
    if (!text.empty()) text += ' ';
    text += HexPadded(static_cast<std::uint8_t>(byte), 2);
  }
  if (shown < bytes.size()) text += " ... (" + std::to_string(bytes.size()) + " bytes)";
  return text;
}

std::string FrameText(const LineRow& row) {
  if (row.way == LineWay::Event) return row.bytes;
  if (row.fate == ReplyFate::Raw) return HexText(row.bytes, ShownBytes);
  return row.way == LineWay::ToUnit ? RequestText(row) : ReplyText(row);
}

std::string WayText(LineWay way) {
  if (way == LineWay::Event) return "line";
  return way == LineWay::ToUnit ? "to unit" : "from unit";
}

std::string StampText(const LineRow& row) { return Milliseconds(row.microseconds); }

std::string DelayText(const LineRow& row) {
  return IsAnswer(row) && row.request ? Milliseconds(row.afterMicroseconds) : "";
}

std::string LineText(const LineRow& row) {
  const std::string bytes = row.way == LineWay::Event ? "" : HexText(row.bytes);
  return StampText(row) + "\t" + DelayText(row) + "\t" + WayText(row.way) + "\t" + FrameText(row) + "\t" +
         bytes;
}

}  // namespace vc
