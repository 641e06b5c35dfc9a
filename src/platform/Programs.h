// Programs of ours that run beside this one and are told what to do: a line in, an answer out.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vc {

// What a program says: nothing, a truth, a number, a text, a row of values, or values by name.
class Said {
 public:
  struct Named;
  using Row = std::vector<Said>;
  using Names = std::vector<Named>;
  using Held = std::variant<std::monostate, bool, double, std::string, Row, Names>;

  Said() = default;
  explicit Said(Held value);

  // Each gives what stands in its place where the value is of another kind.
  bool True() const { return Or<bool>(false); }
  double Number(double otherwise = 0) const { return Or<double>(otherwise); }
  std::string Text() const { return Or<std::string>({}); }
  const Row& Items() const;
  // Of that name; nothing where there is none.
  const Said& operator[](std::string_view name) const;
  const Held& Value() const { return held; }
  bool Nothing() const { return std::holds_alternative<std::monostate>(held); }

 private:
  template <typename Kind>
  Kind Or(Kind otherwise) const {
    const auto* const value = std::get_if<Kind>(&held);
    return value != nullptr ? *value : otherwise;
  }

  Held held;
};

struct Said::Named {
  std::string name;
  Said value;
};

inline Said::Said(Held value) : held(std::move(value)) {}

inline const Said::Row& Said::Items() const {
  static const Row none;
  const auto* const row = std::get_if<Row>(&held);
  return row != nullptr ? *row : none;
}

inline const Said& Said::operator[](std::string_view name) const {
  static const Said nothing;
  if (const auto* const names = std::get_if<Names>(&held)) {
    for (const Named& each : *names) {
      if (each.name == name) return each.value;
    }
  }
  return nothing;
}

// A program that was started. It is asked to end with the object, by the end of its input, and killed where
// it has not ended within a second. No call but that blocks.
class RunningProgram {
 public:
  virtual ~RunningProgram() = default;
  // One line, without its end; it is lost where the program has ended.
  virtual void Say(const std::string& line) = 0;
  // The next answer, one for each line in their order; what the program says otherwise is passed over.
  virtual std::optional<Said> TakeAnswer() = 0;
  // False once it has ended, in whatever way, and all of its answers were taken.
  virtual bool Running() = 0;
  // The last line of its complaints so far; empty where it had none.
  virtual std::string LastWords() = 0;
};

class Programs {
 public:
  virtual ~Programs() = default;
  // Starts the program at a path. Where that fails the result is empty and reason says why in plain words.
  virtual std::unique_ptr<RunningProgram> Start(const std::string& path,
                                                const std::vector<std::string>& arguments,
                                                std::string& reason) = 0;
};

}  // namespace vc
