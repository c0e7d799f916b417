#include "tools/qmxadmin/text_table.h"

#include <algorithm>
#include <numeric>

#include "tools/qmxadmin/text_width.h"

namespace qmx {
namespace {

constexpr const char* kNothing = "-";
constexpr int kGap = 2;
constexpr int kLeastProse = 8;  // less tells nothing

std::string CellText(const Variant& value) {
  if (value.IsNull() || value.IsEmpty()) return kNothing;
  if (value.GetKind() == Variant::Kind::Boolean) return value.ToBoolean() ? "yes" : "no";
  return Printable(value.ToText());
}

struct TextColumn {
  std::vector<std::string> cells;  // the title first
  int width = 0;
  bool toTheRight = false;
  bool prose = false;
};

std::vector<TextColumn> ShownColumns(const Listing& listing) {
  std::vector<TextColumn> shown;
  for (std::size_t i = 0; i < listing.columns.size(); ++i) {
    const ListingColumn& column = listing.columns[i];
    const bool filled = std::any_of(listing.rows.begin(), listing.rows.end(),
                                    [i](const std::vector<Variant>& row) { return !row[i].IsNull(); });
    if (column.title.empty() || (!column.shownEmpty && !filled)) continue;
    TextColumn text{{column.title}, 0, column.toTheRight, column.prose};
    for (const std::vector<Variant>& row : listing.rows) {
      text.cells.push_back(!column.shownEmpty && row[i].IsNull() ? "" : CellText(row[i]));
    }
    for (const std::string& cell : text.cells) text.width = std::max(text.width, TextWidth(cell));
    shown.push_back(std::move(text));
  }
  return shown;
}

// Takes from the widest of the columns that give way, the last of several, until all columns fit side by side. What
// names a row mostly stands first.
void Narrow(std::vector<TextColumn>& columns, int terminalWidth, bool onlyProse, int least) {
  const int gaps = kGap * (static_cast<int>(columns.size()) - 1);
  int width = std::accumulate(columns.begin(), columns.end(), gaps,
                              [](int sum, const TextColumn& column) { return sum + column.width; });
  const auto room = [&](const TextColumn& column) { return onlyProse && !column.prose ? 0 : column.width; };
  for (; width > terminalWidth; --width) {
    TextColumn& widest =
        *std::max_element(columns.rbegin(), columns.rend(),
                          [&](const TextColumn& one, const TextColumn& other) { return room(one) < room(other); });
    if (room(widest) <= least) return;
    --widest.width;
  }
}

std::string Line(const std::vector<TextColumn>& columns, std::size_t number) {
  std::string line;
  for (const TextColumn& column : columns) {
    if (&column != &columns.front()) line.append(kGap, ' ');
    const std::string cell = CutToWidth(column.cells[number], column.width);
    const std::string room(static_cast<std::size_t>(column.width - TextWidth(cell)), ' ');
    line += column.toTheRight ? room + cell : cell + room;
  }
  return line.erase(line.find_last_not_of(' ') + 1);
}

}  // namespace

std::string TextTable(const Listing& listing, const Terminal& terminal) {
  std::vector<TextColumn> columns = ShownColumns(listing);
  if (columns.empty()) return {};
  if (terminal.width) {
    Narrow(columns, *terminal.width, true, kLeastProse);
    Narrow(columns, *terminal.width, false, 1);
  }
  const std::string titles = Line(columns, 0);
  std::string text = terminal.colours ? "\033[1m" + titles + "\033[0m\n" : titles + "\n";
  for (std::size_t row = 1; row <= listing.rows.size(); ++row) text += Line(columns, row) + "\n";
  return text;
}

}  // namespace qmx
