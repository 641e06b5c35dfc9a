#include "model/RegisterText.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "model/RegisterTable.h"

namespace vc {
namespace {

// The row of a code in either table; both null for an unknown code.
struct Found {
  const RegisterRow* row = nullptr;
  const CommandRow* command = nullptr;
};

Found RowFor(std::uint8_t code) {
  for (const RegisterRow& row : RegisterRows()) {
    if (code >= row.firstCode && code < row.firstCode + row.count) return {.row = &row};
  }
  const auto commands = CommandRows();
  const auto found = std::ranges::find(commands, code, &CommandRow::code);
  return {.command = found == commands.end() ? nullptr : &*found};
}

}  // namespace

CommandUse UseOf(std::uint8_t code) {
  const Found found = RowFor(code);
  if (found.row != nullptr) return CommandUse::Register;
  if (found.command == nullptr) return CommandUse::Unknown;
  return found.command->request ? CommandUse::Request : CommandUse::Action;
}

std::string CommandName(std::uint8_t code) {
  const auto [row, command] = RowFor(code);
  if (row != nullptr) return row->name + row->entry(code - row->firstCode);
  return command == nullptr ? std::string() : command->name;
}

std::string ArgumentText(std::uint8_t code, std::uint16_t argument) {
  const auto [row, command] = RowFor(code);
  if (row == nullptr) {
    const bool says = command != nullptr && command->read != nullptr;
    return says ? command->read(argument, 0) : std::string();
  }
  const std::string value = row->read(argument, code - row->firstCode);
  return *row->unit == '\0' ? value : value + " " + row->unit;
}

std::string CommandText(std::uint8_t code, std::uint16_t argument) {
  const std::string name = CommandName(code), says = ArgumentText(code, argument);
  const std::string number = std::to_string(code), value = " = " + std::to_string(argument);
  if (name.empty()) return number + value + ": not known to this program";
  if (says.empty()) return number + " " + name + (argument == 0 ? "" : value);
  return number + " " + name + value + ": " + says;
}

}  // namespace vc
