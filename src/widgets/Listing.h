// Rows of text in columns, of which there may be far more than are on show: each is asked for when somebody
// looks at it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "widgets/Form.h"

namespace vc {

struct ListingColumn {
  std::string heading;
  int characters;        // for which there is room; the last column takes what is left
  bool aligned = false;  // at its right, as numbers are
};

// Rows are numbered, and keep their numbers while older ones go at the top and others come at the end.
// Whoever looks at the end stays there; whoever looks elsewhere goes on seeing the rows that he sees.
struct Listing {
  Listing(Place place, const std::string& name, const std::string& caption, std::vector<ListingColumn> shown);
  ControlCore core;
  const std::vector<ListingColumn> columns;
  int lines = 16;  // for which there is room at least
  // A cell a column, of a row First()..Behind() - 1.
  std::function<std::vector<std::string>(std::size_t number)> cells;
  // Whether the row is to be seen at once.
  std::function<bool(std::size_t number)> stands;

  std::size_t First() const { return first; }
  std::size_t Behind() const { return behind; }
  std::size_t Rows() const { return behind - first; }
  // Rows up to the first one have gone, and others have come before the number behind the last. Neither
  // falls.
  void Roll(std::size_t nowFirst, std::size_t nowBehind);
  // All rows are others, from this number on.
  void Replace(std::size_t nowFirst, std::size_t nowBehind);
  // Counts the calls of Replace.
  unsigned Edition() const { return edition; }
  // All rows, a line each with tabs between the cells, below the headings.
  std::string Text() const;

 private:
  std::size_t first = 0, behind = 0;
  unsigned edition = 0;
};

}  // namespace vc
