// sqlite_changed_copy ORVAN LOCAL [fresh]: a changed copy of the service orders with SQLite's own interface, in one
// transaction and with prepared statements; with "fresh" each order is selected by a text of its own.
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

  std::optional<std::string> Partner(const std::string& orno) {
    if (freshSelect_) {
      Statement select = file_.Prepare("select * from tssoc200 where orno='" + orno + "'");
      return PartnerOf(select);
    }
    select_.Bind(1, orno);
    const auto partner = PartnerOf(select_);
    select_.Reset();
    return partner;
  }

  void Insert(const Statement& row) {
    for (int i = 0; i < static_cast<int>(kOrderColumns.size()); ++i) BindOrderColumn(row, i, insert_, i + 1);
    insert_.Run();
  }

  void Update(reference::Update update, const Statement& row) {
    const bool isWhole = update == reference::Update::Whole;
    Statement& statement = isWhole ? updateWhole_ : updateAudited_;
    int parameter = 0;
    for (const int column : isWhole ? whole_ : audited_) BindOrderColumn(row, column, statement, ++parameter);
    BindOrderColumn(row, kNumber, statement, ++parameter);
    statement.Run();
  }

 private:
  static std::optional<std::string> PartnerOf(Statement& select) {
    if (!select.Step()) return std::nullopt;
    return select.Text(kPartner);
  }

  const File& file_;
  const bool freshSelect_;
  const std::vector<int> audited_ = UpdatedColumns(reference::Update::Audited);
  const std::vector<int> whole_ = UpdatedColumns(reference::Update::Whole);
  Statement delete_ = file_.Prepare("delete from tssoc200 where orno=?");
  Statement select_ = file_.Prepare("select * from tssoc200 where orno=?");
  Statement insert_ = file_.Prepare(InsertOrder());
  Statement updateAudited_ = file_.Prepare(UpdateOrder(reference::Update::Audited));
  Statement updateWhole_ = file_.Prepare(UpdateOrder(reference::Update::Whole));
};

}  // namespace

int main(int argc, char** argv) {
  try {
    const bool fresh = argc == 4 && argv[3] == std::string("fresh");
    if (argc != 3 && !fresh) throw std::runtime_error("usage: sqlite_changed_copy ORVAN LOCAL [fresh]");
    const File file = LocalFile(argv[2]);
    file.Execute("begin");
    Local local(file, fresh);
    ApplyChanges(argv[1], local);
    file.Execute("commit");
  } catch (const std::exception& failure) {
    std::cerr << "sqlite_changed_copy: " << failure.what() << '\n';
    return 1;
  }
}
