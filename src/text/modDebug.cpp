#include "text/modDebug.h"

namespace vc {

std::int32_t modDebug::RegisterObject(const std::string& name) {
  objects[++maxId] = name;
  return maxId;
}

std::string modDebug::UnregisterObject(std::int32_t serial) {
  const auto node = objects.extract(serial);
  return node ? node.mapped() : std::string{};
}

void modDebug::DumpObjects(std::string& text) const {
  const std::string lineEnd = "\r\n";
  text.clear();
  int count = 0;
  for (const auto& [serial, name] : objects) {
    text.append(std::to_string(++count)).append(" ").append(name).append(lineEnd);
  }
  text += "-----------------" + lineEnd;
  text += "Total: " + std::to_string(objects.size()) + lineEnd;
  text += "Max IDs: " + std::to_string(maxId) + lineEnd;
}

}  // namespace vc
