// Service orders: the columns that the ERP's file and the local table share, and the conversion of their values.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "bench/reference/sqlite.h"

namespace reference {

enum class Kind {
  Text,
  Number,
  YesNo,   // 1 for the ERP's yes, else 0
  Moment,  // a text, with the time of day at midnight too
};

struct OrderColumn {
  const char* name;
  Kind kind;
};

inline constexpr std::array<OrderColumn, 32> kOrderColumns = {{
    {"orno", Kind::Text},   {"ccfg", Kind::Text},   {"ofbp", Kind::Text},   {"stna", Kind::Text},
    {"lcad", Kind::Text},   {"cprj", Kind::Text},   {"ordt", Kind::Moment}, {"osta", Kind::Text},
    {"cwoc", Kind::Text},   {"csar", Kind::Text},   {"emno", Kind::Text},   {"blyn", Kind::YesNo},
    {"ityn", Kind::YesNo},  {"crit", Kind::Text},   {"ordu", Kind::Number}, {"tvdu", Kind::Number},
    {"pstm", Kind::Moment}, {"pftm", Kind::Moment}, {"estm", Kind::Moment}, {"lftm", Kind::Moment},
    {"otim", Kind::YesNo},  {"appo", Kind::YesNo},  {"rsrp", Kind::YesNo},  {"tstm", Kind::Moment},
    {"astm", Kind::Moment}, {"aftm", Kind::Moment}, {"csco", Kind::Text},   {"csqu", Kind::Text},
    {"stbp", Kind::Text},   {"emer", Kind::YesNo},  {"minu", Kind::Number}, {"ract", Kind::Moment},
}};

// Places in the list above.
inline constexpr int kNumber = 0;
inline constexpr int kPartner = 2;
inline constexpr int kPartnerName = 3;
inline constexpr int kPageFrequency = 30;

// "orno<between>ccfg<between>...", each name with the text behind it.
inline std::string OrderColumns(const std::string& behind = "", std::size_t first = 0) {
  std::string list;
  for (std::size_t i = first; i < kOrderColumns.size(); ++i)
    list += (list.empty() ? "" : ", ") + (kOrderColumns[i].name + behind);
  return list;
}

inline std::string InsertOrder() {
  std::string marks = "?";
  for (std::size_t i = 1; i < kOrderColumns.size(); ++i) marks += ", ?";
  return "insert into tssoc200 (" + OrderColumns() + ") values (" + marks + ")";
}

// A text of the ERP's file as it stands in the local table; for a number or a flag, its text.
inline std::string_view LocalText(const Statement& row, int column, Kind kind) {
  if (kind == Kind::YesNo) return sqlite3_column_int(row.Get(), column) == 1 ? "1" : "0";
  return {row.Text(column), static_cast<std::size_t>(sqlite3_column_bytes(row.Get(), column))};
}

inline bool IsNull(const Statement& row, int column) { return sqlite3_column_type(row.Get(), column) == SQLITE_NULL; }

// A column of the ERP's row to a parameter; valid until the ERP's row is left.
inline void BindOrderColumn(const Statement& row, int column, const Statement& target, int parameter) {
  const Kind kind = kOrderColumns[static_cast<std::size_t>(column)].kind;
  if (IsNull(row, column)) {
    sqlite3_bind_null(target.Get(), parameter);
  } else if (kind == Kind::Number) {
    sqlite3_bind_double(target.Get(), parameter, sqlite3_column_double(row.Get(), column));
  } else if (kind == Kind::YesNo) {
    sqlite3_bind_int(target.Get(), parameter, sqlite3_column_int(row.Get(), column) == 1 ? 1 : 0);
  } else {
    const std::string_view text = LocalText(row, column, kind);
    sqlite3_bind_text(target.Get(), parameter, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  }
}

}  // namespace reference
