#include "tools/qmxadmin/text_table.h"

#include <algorithm>
#include <numeric>

#include "tools/qmxadmin/text_width.h"

namespace qmx {
namespace {

constexpr const char* kNothing = "-";
constexpr int kGap = 2;
constexpr int kLeastProse = 8;  // shorter prose is useless

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
  int weight = 0;
};

std::vector<TextColumn> ShownColumns(const Listing& listing) {
  std::vector<TextColumn> shown;
  for (std::size_t i = 0; i < listing.columns.size(); ++i) {
    const ListingColumn& column = listing.columns[i];
    const bool filled = std::any_of(listing.rows.begin(), listing.rows.end(),
                                    [i](const std::vector<Variant>& row) { return !row[i].IsNull(); });
    if (column.title.empty() || (!column.shownEmpty && !filled)) continue;
    TextColumn text{{column.title}, 0, column.toTheRight, column.prose, column.weight};
    for (const std::vector<Variant>& row : listing.rows) {
      text.cells.push_back(!column.shownEmpty && row[i].IsNull() ? "" : CellText(row[i]));
    }
    for (const std::string& cell : text.cells) text.width = std::max(text.width, TextWidth(cell));
    shown.push_back(std::move(text));
  }
  return shown;
}

int TotalWidth(const std::vector<TextColumn>& columns) {
  return std::accumulate(columns.begin(), columns.end(), kGap * (static_cast<int>(columns.size()) - 1),
                         [](int sum, const TextColumn& column) { return sum + column.width; });
}

// Narrows the widest of the prose columns, of several the last, until the columns fit or no prose can be cut.
void CutProse(std::vector<TextColumn>& columns, int terminalWidth) {
  const auto room = [](const TextColumn& column) { return column.prose ? column.width - kLeastProse : 0; };
  for (int width = TotalWidth(columns); width > terminalWidth; --width) {
    TextColumn& widest =
        *std::max_element(columns.rbegin(), columns.rend(),
                          [&](const TextColumn& one, const TextColumn& other) { return room(one) < room(other); });
    if (room(widest) <= 0) return;
    --widest.width;
  }
}

std::vector<TextColumn> Fitted(std::vector<TextColumn> columns, int terminalWidth) {
  while (true) {
    std::vector<TextColumn> cut = columns;
    CutProse(cut, terminalWidth);
    if (TotalWidth(cut) <= terminalWidth) return cut;
    if (columns.size() == 1) break;
    // The first column names the rows.
    const auto lightest =
        std::min_element(columns.rbegin(), columns.rend() - 1,
                         [](const TextColumn& one, const TextColumn& other) { return one.weight < other.weight; });
    columns.erase(std::next(lightest).base());
  }
  columns.front().width = std::max(1, terminalWidth);
  return columns;
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
  if (terminal.width) columns = Fitted(std::move(columns), *terminal.width);
  const std::string titles = Line(columns, 0);
  std::string text = terminal.colours ? "\033[1m" + titles + "\033[0m\n" : titles + "\n";
  for (std::size_t row = 1; row <= listing.rows.size(); ++row) text += Line(columns, row) + "\n";
  return text;
}

}  // namespace qmx
