#include "unit/sound/SoundSink.h"

#include <utility>

#include "unit/PartFile.h"

namespace unit::sound {
namespace {

// "clean.wav", then "clean-2.wav".
std::string NameOf(const std::string& path, int number) {
  if (number == 1) return path;
  const std::size_t slash = path.find_last_of('/');
  const std::size_t name = slash == std::string::npos ? 0 : slash + 1;
  const std::size_t dot = path.find_last_of('.');
  const std::size_t end = dot == std::string::npos || dot <= name ? path.size() : dot;
  return path.substr(0, end) + '-' + std::to_string(number) + path.substr(end);
}

// The recording may bear the name of a later file as well.
std::variant<SoundWriter, std::string> Create(const std::string& name, int rate, const std::string& heard) {
  const std::string written = WrittenOver(name, heard);
  if (!written.empty()) return written + ": is the file that is heard, so it is not written";
  return SoundWriter::Create(name, rate);
}

}  // namespace

FileSeries::FileSeries(std::string firstPath, SoundWriter begun, int sampleRate)
    : path(std::move(firstPath)), writer(std::make_unique<SoundWriter>(std::move(begun))), rate(sampleRate) {}

std::variant<FileSeries, std::string> FileSeries::Begin(const std::string& path, int rate,
                                                        const std::string& heard) {
  auto created = Create(path, rate, heard);
  if (auto* const wrong = std::get_if<std::string>(&created)) return std::move(*wrong);
  return FileSeries(path, std::get<SoundWriter>(std::move(created)), rate);
}

std::string FileSeries::Write(std::span<const float> left, std::span<const float> right) {
  empty = false;
  return writer->Write(left, right);
}

// A file that holds some sound already is complete.
std::string FileSeries::SetRate(int sampleRate, const std::string& heard) {
  if (sampleRate == rate) return {};
  rate = sampleRate;
  std::string failure = empty ? "" : writer->Close();
  writer.reset();
  if (!failure.empty()) return failure;
  if (!std::exchange(empty, true)) ++number;
  auto created = Create(NameOf(path, number), rate, heard);
  if (auto* const wrong = std::get_if<std::string>(&created)) return std::move(*wrong);
  writer = std::make_unique<SoundWriter>(std::get<SoundWriter>(std::move(created)));
  return {};
}

std::string FileSeries::Close() { return writer->Close(); }

bool FileSeries::Writes(const std::string& file) const {
  return !WrittenOver(NameOf(path, number), file).empty();
}

}  // namespace unit::sound
