// Frames off the line, one by one.
#include "FrameListener.h"

#include <cstdint>
#include <iomanip>
#include <limits>
#include <span>
#include <sstream>

#include "ScriptedUnit.h"

namespace support {
namespace {

constexpr std::size_t CommandLength = 7;
constexpr std::size_t PacketLength = 53;
constexpr std::size_t HeaderLength = 3;
constexpr std::size_t GroupLength = 4;
constexpr std::uint8_t MainStatus = 0xE8;
constexpr int SilenceMilliseconds = 1500;
constexpr int PatiencePolls = 10;

std::string Digits(const Bytes& bytes, std::size_t from, std::size_t count) {
  std::ostringstream text;
  text << std::hex << std::uppercase << std::setfill('0');
  for (std::size_t i = from; i < from + count && i < bytes.size(); ++i) text << std::setw(2) << int{bytes[i]};
  return text.str();
}

bool IsPacket(const Bytes& frame) { return frame[1] == 'L'; }

bool IsSound(const Bytes& frame) {
  if (frame.size() < CommandLength || frame[0] != '?' || frame[2] != 'P') return false;
  if (frame[1] != 'M' && frame[1] != 'L') return false;
  if (frame.size() != (IsPacket(frame) ? PacketLength : CommandLength)) return false;
  unsigned sum = 0;
  for (std::size_t i = HeaderLength; i < frame.size(); ++i) sum += frame[i];
  return sum % 256 == 0;
}

std::string PayloadText(const Bytes& frame) {
  constexpr std::size_t begin = 4, end = 52;
  std::string text;
  for (std::size_t at = begin; at < end;) {
    const std::string group = Digits(frame, at, GroupLength);
    int count = 0;
    for (; at < end && Digits(frame, at, GroupLength) == group; at += GroupLength) ++count;
    text.append(text.empty() ? "" : " ").append(group);
    if (count > 1) text.append("*").append(std::to_string(count));
  }
  return text;
}

std::string FrameText(const Bytes& frame) {
  if (!IsSound(frame)) return "bad " + Digits(frame, 0, frame.size());
  const std::string number = Digits(frame, HeaderLength, 1) + " ";
  return IsPacket(frame) ? "L " + number + PayloadText(frame) : "M " + number + Digits(frame, 4, 2);
}

// A stage of 1024 taps is centred in them, one of 976 in these, an equalizer in its 256.
std::string TableText(std::span<const Bytes> packets) {
  constexpr std::size_t perPacket = 16, payload = 4, bytes = 3;
  const std::size_t centre = packets.size() * perPacket / 2;
  const auto coefficient = [&](std::size_t i) {
    return Digits(packets[i / perPacket], payload + i % perPacket * bytes, bytes);
  };
  return std::to_string(packets.size()) + " packets: " + coefficient(0) + " first, " + coefficient(centre) +
         " at " + std::to_string(centre);
}

// How many packets from here on are numbered 0, 1, 2.
std::size_t TableLength(std::span<const Bytes> frames) {
  std::size_t length = 0;
  while (length < frames.size() && IsSound(frames[length]) && IsPacket(frames[length]) &&
         frames[length][HeaderLength] == length) {
    ++length;
  }
  return length;
}

FrameTexts InText(std::span<const Bytes> frames) {
  constexpr std::size_t shortest = 16;
  FrameTexts texts;
  while (!frames.empty()) {
    const std::size_t length = TableLength(frames);
    const bool table = length >= shortest;
    texts.push_back(table ? TableText(frames.first(length)) : FrameText(frames.front()));
    frames = frames.subspan(table ? length : 1);
  }
  return texts;
}

FrameTexts Listen(const Pty& line, std::size_t count, int polls) {
  std::vector<Bytes> frames;
  while (frames.size() < count) {
    const Bytes frame = ReadFrame(line);
    if (frame.empty()) break;
    const bool sound = IsSound(frame);
    if (sound) line.Write(GoodReply(frame).bytes);
    const bool poll = sound && !IsPacket(frame) && frame[HeaderLength] == MainStatus;
    if (!poll) frames.push_back(frame);
    if (poll && --polls == 0) break;
  }
  return InText(frames);
}

}  // namespace

Bytes ReadFrame(const Pty& line) {
  Bytes frame = line.Read(CommandLength, SilenceMilliseconds);
  if (frame.size() < CommandLength || !IsPacket(frame)) return frame;
  const Bytes rest = line.Read(PacketLength - CommandLength, SilenceMilliseconds);
  frame.insert(frame.end(), rest.begin(), rest.end());
  return frame;
}

FrameTexts FrameListener::Take(std::size_t count) const { return Listen(line, count, PatiencePolls); }

FrameTexts FrameListener::UntilPolls(int count) const {
  return Listen(line, std::numeric_limits<std::size_t>::max(), count);
}

FrameTexts Frames(std::string_view rows) {
  FrameTexts texts;
  std::istringstream table{std::string(rows)};
  for (std::string row; std::getline(table, row, ';');) {
    std::istringstream words(row);
    std::string text;
    for (std::string word; words >> word;) text.append(text.empty() ? "" : " ").append(word);
    if (!text.empty()) texts.push_back(text);
  }
  return texts;
}

}  // namespace support
