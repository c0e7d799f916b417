#include "tool/table_writer.h"

#include "binding/failure.h"
#include "binding/names.h"
#include "erp/schema.h"

namespace orvan {
namespace {

// Skips enough rows to be random, but not so many that a table of a million records is slow.
constexpr int kReach = 2000;

const Table& Known(std::string_view code) {
  if (const Table* table = FindTable(code)) return *table;
  throw Failure(QMX_E_INTERNAL, "orvan-sandbox", "There is no table " + std::string(code) + ".");
}

std::string InsertSql(const Table& table) {
  std::vector<std::string_view> names;
  std::string marks;
  for (const Column& column : table.columns) {
    names.push_back(column.name);
    marks += marks.empty() ? "?" : ", ?";
  }
  return "INSERT INTO " + std::string(table.code) + " (" + ColumnList(names) + ") VALUES (" + marks + ")";
}

void BindBlank(Statement& statement, int parameter, ColumnType type) {
  switch (type) {
    case ColumnType::Text:
    case ColumnType::Day:
      return statement.Bind(parameter, std::string_view());
    case ColumnType::Whole:
    case ColumnType::Number:
      return statement.Bind(parameter, std::int64_t{0});
    case ColumnType::Moment:
      return statement.BindNull(parameter);
  }
}

}  // namespace

void Value::BindTo(Statement& statement, int parameter, ColumnType type) const {
  if (const auto* text = std::get_if<std::string_view>(&value_)) return statement.Bind(parameter, *text);
  if (const auto* whole = std::get_if<std::int64_t>(&value_)) return statement.Bind(parameter, *whole);
  if (const auto* number = std::get_if<double>(&value_)) return statement.Bind(parameter, *number);
  if (const auto* moment = std::get_if<Moment>(&value_))
    return statement.Bind(parameter, type == ColumnType::Day ? moment->DateText() : moment->Text());
  statement.BindNull(parameter);
}

TableWriter::TableWriter(std::shared_ptr<Database> database, std::string_view code)
    : database_(std::move(database)), table_(Known(code)), insert_(database_, InsertSql(table_)) {}

void TableWriter::Insert(Fields fields) {
  const auto& columns = table_.columns;
  for (std::size_t i = 0; i < columns.size(); ++i) BindBlank(insert_, static_cast<int>(i) + 1, columns[i].type);
  std::size_t place = 0;
  for (const Field& field : fields) {
    // Fields usually come in the columns' order, so the next column is tried first.
    if (place >= columns.size() || columns[place].name != field.column) place = table_.Find(field.column);
    if (place == columns.size())
      throw Failure(QMX_E_INTERNAL, "orvan-sandbox",
                    std::string(table_.code) + " has no column " + std::string(field.column) + ".");
    field.value.BindTo(insert_, static_cast<int>(place) + 1, columns[place].type);
    ++place;
  }
  insert_.Run();
}

std::optional<std::string> TableWriter::Pick(Random& random, const std::string& filter) {
  const std::string from = " FROM " + std::string(table_.code) + " WHERE " + filter;
  Statement count(database_, "SELECT count(*) FROM (SELECT 1" + from + " LIMIT " + std::to_string(kReach) + ")");
  count.Step();
  const int records = static_cast<int>(count.Whole(0));
  if (records == 0) return std::nullopt;

  std::string literals;
  for (const std::string_view part : table_.key)
    literals += (literals.empty() ? "" : ", ") + ("quote(" + Quoted(part)) + ")";
  Statement pick(database_,
                 "SELECT " + literals + from + " LIMIT 1 OFFSET " + std::to_string(random.Between(0, records - 1)));
  pick.Step();
  std::string condition;
  for (std::size_t i = 0; i < table_.key.size(); ++i)
    condition += (i ? " AND " : "") + Quoted(table_.key[i]) + " = " + std::string(pick.Text(static_cast<int>(i)));
  return condition;
}

std::string TableWriter::Get(std::string_view column, const std::string& condition) {
  Statement get(database_, "SELECT " + Quoted(column) + " FROM " + std::string(table_.code) + " WHERE " + condition);
  return get.Step() ? std::string(get.Text(0)) : std::string();
}

void TableWriter::Update(const std::string& condition, Fields fields) {
  std::string assignments;
  for (const Field& field : fields) assignments += (assignments.empty() ? "" : ", ") + Quoted(field.column) + " = ?";
  Statement update(database_, "UPDATE " + std::string(table_.code) + " SET " + assignments + " WHERE " + condition);
  int parameter = 0;
  for (const Field& field : fields) field.value.BindTo(update, ++parameter, table_.At(field.column).type);
  update.Run();
}

void TableWriter::Delete(const std::string& condition) {
  database_->Execute("DELETE FROM " + std::string(table_.code) + " WHERE " + condition);
}

void TableWriter::DeleteAndInsertAgain(const std::string& condition) {
  const std::string code(table_.code);
  database_->Execute("CREATE TEMP TABLE kept AS SELECT * FROM " + code + " WHERE " + condition);
  Delete(condition);
  database_->Execute("INSERT INTO " + code + " SELECT * FROM kept; DROP TABLE kept");
}

}  // namespace orvan
