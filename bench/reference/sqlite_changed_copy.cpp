// sqlite_changed_copy ORVAN LOCAL [fresh|differences]: a changed copy of the service orders with SQLite's C interface,
// in one transaction and with prepared statements. With "fresh" each order is selected by its own statement. With
// "differences" an update writes only the columns that differ.
#include <cstring>
#include <iostream>

#include "bench/reference/changed_copy.h"

namespace {

using namespace reference;

class Local {
 public:
  Local(const File& file, bool freshSelect) : file_(file), freshSelect_(freshSelect) {}

  void Delete(const std::string& orno) {
    delete_.Bind(1, orno);
    delete_.Run();
  }

  bool Find(const std::string& orno) {
    if (freshSelect_) {
      fresh_.emplace(file_.Prepare("select * from tssoc200 where orno='" + orno + "'"));
    } else {
      select_.Reset();
      select_.Bind(1, orno);
    }
    return Found().Step();
  }
  std::string Partner() { return Found().Text(kPartner); }
  bool HasPageFrequency() { return sqlite3_column_double(Found().Get(), kPageFrequency) != 0; }
  bool Differs(const Statement& row, int column) {
    const Kind kind = kOrderColumns[static_cast<std::size_t>(column)].kind;
    const bool isNull = IsNull(row, column);
    if (isNull || IsNull(Found(), column)) return isNull != IsNull(Found(), column);
    if (kind == Kind::Number) {
      return sqlite3_column_double(row.Get(), column) != sqlite3_column_double(Found().Get(), column);
    }
    return LocalText(row, column, kind) != Found().Text(column);
  }

  void Insert(const Statement& row) {
    for (int i = 0; i < static_cast<int>(kOrderColumns.size()); ++i) BindOrderColumn(row, i, insert_, i + 1);
    insert_.Run();
  }

  void Change(const Update& update, const Statement& row) {
    Found().Reset();
    Statement& statement = updates_.For(update, [&](const Update& made) { return file_.Prepare(UpdateOrder(made)); });
    int parameter = 0;
    for (const int column : update.columns) BindOrderColumn(row, column, statement, ++parameter);
    BindOrderColumn(row, kNumber, statement, ++parameter);
    statement.Run();
  }

 private:
  Statement& Found() { return fresh_ ? *fresh_ : select_; }

  const File& file_;
  const bool freshSelect_;
  std::optional<Statement> fresh_;
  Statement delete_ = file_.Prepare("delete from tssoc200 where orno=?");
  Statement select_ = file_.Prepare("select * from tssoc200 where orno=?");
  Statement insert_ = file_.Prepare(InsertOrder());
  Updates<Statement> updates_;
};

}  // namespace

int main(int argc, char** argv) {
  try {
    const bool fresh = argc == 4 && std::strcmp(argv[3], "fresh") == 0;
    const bool differences = argc == 4 && std::strcmp(argv[3], kOnlyDifferences) == 0;
    if (argc != 3 && !fresh && !differences) {
      throw std::runtime_error("usage: sqlite_changed_copy ORVAN LOCAL [fresh|differences]");
    }
    const File file = LocalFile(argv[2]);
    file.Execute("begin");
    {
      Local local(file, fresh);
      Changes(argv[1], local, differences).Apply();
    }
    file.Execute("commit");
  } catch (const std::exception& failure) {
    std::cerr << "sqlite_changed_copy: " << failure.what() << '\n';
    return 1;
  }
}
