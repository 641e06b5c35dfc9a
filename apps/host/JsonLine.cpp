#include "host/JsonLine.h"

#include <nlohmann/json.hpp>

namespace host {
namespace {

using nlohmann::json;

vc::Said SaidBy(const json& value) {
  if (value.is_boolean()) return vc::Said(value.get<bool>());
  if (value.is_number()) return vc::Said(value.get<double>());
  if (value.is_string()) return vc::Said(value.get<std::string>());
  if (value.is_array()) {
    vc::Said::Row row;
    for (const json& each : value) row.push_back(SaidBy(each));
    return vc::Said(std::move(row));
  }
  if (!value.is_object()) return {};
  vc::Said::Names names;
  for (const auto& [name, each] : value.items()) names.push_back({name, SaidBy(each)});
  return vc::Said(std::move(names));
}

}  // namespace

std::optional<vc::Said> ReadJsonLine(const std::string& line) {
  const json value = json::parse(line, nullptr, false);
  if (!value.is_object()) return std::nullopt;
  return SaidBy(value);
}

}  // namespace host
