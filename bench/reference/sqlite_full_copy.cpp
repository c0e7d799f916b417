// sqlite_full_copy ORVAN LOCAL: a full copy of the service orders with SQLite's C interface: one prepared select, one
// prepared insert, one transaction.
#include <iostream>

#include "bench/reference/service_orders.h"

namespace {

void Copy(const std::string& orvan, const std::string& localPath) {
  using namespace reference;
  const File erp = ErpFile(orvan);
  const File local = LocalFile(localPath);
  Statement rows = erp.Prepare("select " + OrderColumns() + " from tssoc200 order by orno");
  Statement insert = local.Prepare(InsertOrder());
  local.Execute("begin");
  local.Execute("delete from tssoc200");
  while (rows.Step()) {
    for (int i = 0; i < static_cast<int>(kOrderColumns.size()); ++i) BindOrderColumn(rows, i, insert, i + 1);
    insert.Run();
  }
  local.Execute("commit");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc != 3) throw std::runtime_error("usage: sqlite_full_copy ORVAN LOCAL");
    Copy(argv[1], argv[2]);
  } catch (const std::exception& failure) {
    std::cerr << "sqlite_full_copy: " << failure.what() << '\n';
    return 1;
  }
}
