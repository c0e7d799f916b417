#include "erp/manager.h"

#include <map>

#include "binding/names.h"
#include "erp/enumeration.h"
#include "erp/schema.h"

namespace orvan {
namespace {

constexpr std::string_view kComponentName = "OrvanSandbox";

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string ListSql(const Table& table) {
  std::string columns;
  for (const Column& column : table.columns) columns += (columns.empty() ? "" : ", ") + Quoted(column.name);
  std::string sql = "SELECT " + columns + " FROM " + std::string(table.code);
  const char* joint = " WHERE ";
  for (const std::string_view bound : table.bounds) {
    sql += joint + Quoted(bound) + " BETWEEN ? AND ?";
    joint = " AND ";
  }
  return sql + " ORDER BY " + ColumnList(table.key);
}

}  // namespace

void BindBound(Statement& statement, int parameter, const Column& column, Argument bound) {
  switch (column.type) {
    case ColumnType::Text:
      return statement.Bind(parameter, bound.Text());
    case ColumnType::Whole:
    case ColumnType::Number:
      return statement.Bind(parameter, bound.Number());
    case ColumnType::Day:
      return statement.Bind(parameter, bound.Date().DateText());
    case ColumnType::Moment:
      return statement.Bind(parameter, bound.Date().Text());
  }
}

Manager::Manager(const Table& table) : Object(TypeOf(table)), table_(table), listSql_(ListSql(table)) {}

const Type& Manager::TypeOf(const Table& table) {
  static auto& types = *new std::map<const Table*, const Type*>;
  const Type*& type = types[&table];
  if (!type) type = new Type(std::string(table.manager), {"initialize", std::string(table.list), "Close"});
  return *type;
}

Manager& Manager::Of(Argument argument) {
  qmx_object* object = argument.ObjectOrNothing();
  for (const Table& table : AllTables())
    if (object && object->type == &TypeOf(table)) return static_cast<Manager&>(*object);
  throw Failure(QMX_E_TYPE_MISMATCH, "OrvanSandbox",
                "The manager must be a manager object of the sandbox ERP, but " + argument.Shown() + " was passed.");
}

const std::shared_ptr<Database>& Manager::File() const {
  if (file_) return file_;
  throw Failure(QMX_E_INVALID_CALL, ObjectType().Name(),
                ObjectType().Name() + " is not open. Call initialize with \"OrvanSandbox, PATH\" first.");
}

void Manager::Invoke(std::int32_t member, Arguments arguments, Result result) {
  const std::size_t wanted = member == 0 ? 1 : member == 1 ? 2 * table_.bounds.size() : 0;
  if (arguments.size() != wanted) WrongArgumentCount(*this, ObjectType().MemberName(member), wanted, arguments.size());
  switch (member) {
    case 0:
      return Initialize(arguments[0].Text());
    case 1:
      return List(arguments, result);
    default:
      file_.reset();  // enumerations in use keep the file open
  }
}

void Manager::Initialize(std::string_view businessComponent) {
  const auto comma = businessComponent.find(',');
  const std::string_view name = Trimmed(businessComponent.substr(0, comma));
  const std::string_view path =
      comma == std::string_view::npos ? std::string_view() : Trimmed(businessComponent.substr(comma + 1));
  if (!SameName(name, kComponentName) || path.empty())
    throw Failure(QMX_E_INVALID_CALL, ObjectType().Name(),
                  "The business component \"" + std::string(businessComponent) +
                      "\" is unknown. The sandbox ERP answers to \"OrvanSandbox, PATH\", where PATH is a file made by "
                      "orvan-sandbox.");
  auto file = Database::OpenToRead(std::string(path));
  if (!file->HasTable(table_.code))
    throw Failure(kFileUnusable, ObjectType().Name(),
                  "The file \"" + std::string(path) + "\" has no table " + std::string(table_.code) +
                      ". Make a complete one with: orvan-sandbox make FILE");
  file_ = std::move(file);
}

void Manager::List(Arguments bounds, Result result) {
  Statement rows(File(), listSql_);
  for (std::size_t i = 0; i < bounds.size(); ++i)
    BindBound(rows, static_cast<int>(i) + 1, table_.At(table_.bounds[i / 2]), bounds[i]);
  ReturnNew<Enumeration>(result, table_, std::move(rows));
}

}  // namespace orvan
