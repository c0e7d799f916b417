#include "erp/record.h"

#include <limits>
#include <map>

namespace orvan {
namespace {

// The result of getClass: the class's name.
class RecordClass : public Component<RecordClass> {
 public:
  static constexpr char kName[] = "java.lang.Class";
  explicit RecordClass(const Table& table) : table_(table) {}
  static const auto& Methods() {
    static constexpr Method methods[] = {{"getName", 0, &RecordClass::GetName}};
    return methods;
  }

 private:
  void GetName(Arguments, Result result) { result.SetText(table_.record); }
  const Table& table_;
};

}  // namespace

const Type& Record::TypeOf(const Table& table) {
  static auto& types = *new std::map<const Table*, const Type*>;
  const Type*& type = types[&table];
  if (!type) {
    std::vector<std::string> members;
    for (const Column& column : table.columns) members.emplace_back(column.getter);
    members.emplace_back("getClass");
    type = new Type(std::string(table.record), std::move(members));
  }
  return *type;
}

Record& Record::Of(const Table& table, Argument argument, const char* what) {
  qmx_object* object = argument.ObjectOrNothing();
  if (object && object->type == &TypeOf(table)) return static_cast<Record&>(*object);
  throw Failure(QMX_E_TYPE_MISMATCH, std::string(table.record),
                std::string("The ") + what + " must be a " + std::string(table.record) +
                    " object of the sandbox ERP, but " + argument.Shown() + " was passed.");
}

void Record::SetText(Cell& cell, std::string_view text) {
  cell.kind = Kind::Text;
  cell.start = static_cast<std::uint32_t>(texts_.size());
  cell.length = static_cast<std::uint32_t>(text.size());
  texts_.append(text);
}

inline void Record::FillCell(Cell& cell, RowValue value) {
  switch (value.Kind()) {
    case SQLITE_NULL:
      cell.kind = Kind::Null;
      break;
    case SQLITE_INTEGER: {
      const std::int64_t whole = value.Whole();
      const bool fits =
          whole >= std::numeric_limits<std::int32_t>::min() && whole <= std::numeric_limits<std::int32_t>::max();
      cell.kind = fits ? Kind::Whole : Kind::Number;
      cell.whole = fits ? static_cast<std::int32_t>(whole) : 0;
      cell.number = static_cast<double>(whole);
      break;
    }
    case SQLITE_FLOAT:
      cell.kind = Kind::Number;
      cell.number = value.Number();
      break;
    default:
      SetText(cell, value.Text());
  }
}

void Record::Fill(const Statement& row) {
  texts_.clear();
  int from = 0;
  for (Cell& cell : cells_) {
    cell = Cell();
    FillCell(cell, row.At(from++));
  }
}

void Record::Fill(std::size_t column, RowValue value) { FillCell(cells_[column], value); }

void Record::FillKey(const Record& other) {
  for (const std::string_view part : table_.key) {
    const std::size_t column = table_.Find(part);
    const Cell& from = other.cells_[column];
    cells_[column] = from;
    if (from.kind == Kind::Text) SetText(cells_[column], other.TextOf(from));
  }
}

void Record::BindKey(Statement& statement) const {
  int parameter = 0;
  for (const std::string_view part : table_.key) {
    const Cell& cell = cells_[table_.Find(part)];
    ++parameter;
    if (cell.kind == Kind::Text)
      statement.Bind(parameter, TextOf(cell));
    else
      statement.Bind(parameter, cell.number);
  }
}

void Record::Invoke(std::int32_t member, Arguments arguments, Result result) {
  const auto column = static_cast<std::size_t>(member);
  if (arguments.size() == 0 && column < cells_.size()) {
    const Cell& cell = cells_[column];
    const ColumnType type = table_.columns[column].type;
    if (cell.kind == Kind::Text && type == ColumnType::Text) return result.SetText(TextOf(cell));
    if (cell.kind == Kind::Whole && type == ColumnType::Whole) return result.SetInteger(cell.whole);
  }
  InvokeOther(member, arguments, result);
}

void Record::InvokeOther(std::int32_t member, Arguments arguments, Result result) {
  const auto column = static_cast<std::size_t>(member);
  if (arguments.size() != 0) WrongArgumentCount(*this, ObjectType().MemberName(member), 0, arguments.size());
  if (column == cells_.size()) return ReturnNew<RecordClass>(result, table_);
  const Cell& cell = cells_[column];
  const ColumnType type = table_.columns[column].type;
  if (cell.kind == Kind::Empty) return GetBlank(type, result);
  if (cell.kind == Kind::Null) return type == ColumnType::Moment ? GetBlank(type, result) : result.SetNull();
  if (type == ColumnType::Moment) return GiveDate(DateOf(column), result);
  if (type == ColumnType::Day) return result.SetDate(DateOf(column));
  if (cell.kind == Kind::Text) return result.SetText(TextOf(cell));
  if (cell.kind == Kind::Whole) return result.SetInteger(cell.whole);
  result.SetNumber(cell.number);
}

void Record::GetBlank(ColumnType type, Result result) {
  switch (type) {
    case ColumnType::Text:
      return result.SetText({});
    case ColumnType::Whole:
      return result.SetInteger(0);
    case ColumnType::Number:
      return result.SetNumber(0);
    case ColumnType::Day:
      return result.SetDate(Moment());
    case ColumnType::Moment:
      return GiveDate(std::nullopt, result);
  }
}

void Record::GiveDate(const std::optional<Moment>& moment, Result result) {
  if (!date_ || date_->IsShared()) date_ = Ref(new Date);
  date_->Hold(moment);
  Return(result, date_);
}

Moment Record::DateOf(std::size_t column) const {
  if (const auto moment = Moment::Parse(TextOf(cells_[column]))) return *moment;
  std::string key;
  for (const std::string_view part : table_.key) {
    const Cell& cell = cells_[table_.Find(part)];
    key += ' ' + std::string(part) + '=' +
           (cell.kind == Kind::Text ? std::string(TextOf(cell)) : std::to_string(cell.whole));
  }
  throw Failure(QMX_E_TYPE_MISMATCH, std::string(table_.record),
                "Column " + std::string(table_.columns[column].name) + " of " + std::string(table_.code) + ", record" +
                    key + ", holds no date. Correct it in the sandbox file, as \"2026-11-20 14:05:09\".");
}

}  // namespace orvan
