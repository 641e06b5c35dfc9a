#include "panels/Parameter.h"

#include <memory>
#include <utility>

#include "model/Settings.h"

namespace vc {

FieldElement Single(const FieldRow& row) {
  return {&row, [](const SystemSettings&) { return std::array{0, 0}; }};
}

FieldElement OfFilter(const FieldRow& row, int j) {
  return {&row, [j](const SystemSettings& settings) { return std::array<int, 2>{settings.curFilter, j}; }};
}

FieldElement OfEqualizer(const FieldRow& row, int j) {
  const int first = row.extent[0].first;
  return {&row, [first, j](const SystemSettings& settings) {
            return std::array{first + settings.curEq - 1, j};
          }};
}

FieldElement OfBroadband(const FieldRow& row, int j) {
  return {&row, [j](const SystemSettings& settings) { return std::array<int, 2>{settings.curBroadband, j}; }};
}

Parameter InRecord(Panel& panel, const FieldElement& element, EditState state) {
  const int first = element.row->extent[0].first, second = element.row->extent[1].first;
  const auto read = [element](const SystemSettings& settings) {
    const auto [i, j] = element.index(settings);
    return NumberOf(settings, *element.row, i, j);
  };
  return {
      .value = [&panel, read] { return read(panel.settings); },
      .factory =
          [&panel, element] {
            const auto fresh = std::make_unique<SystemSettings>();
            InitSettings(*fresh);
            const auto [i, j] = element.index(panel.settings);
            return NumberOf(*fresh, *element.row, i, j);
          },
      .kept =
          [fraction = std::holds_alternative<float>(element.row->value(panel.settings, first, second))](
              double number) { return fraction ? static_cast<double>(static_cast<float>(number)) : number; },
      .store =
          [&panel, element, state](double value, const ControlCore& source, const std::string& title) {
            const auto [i, j] = element.index(panel.settings);
            panel.Edit(source, title, {{element.row, i, j, value}}, state);
          }};
}

Parameter Titled(Parameter parameter, const std::string& title) {
  parameter.store = [store = std::move(parameter.store), title](double value, const ControlCore& source,
                                                                const std::string&) {
    store(value, source, title);
  };
  return parameter;
}

}  // namespace vc
