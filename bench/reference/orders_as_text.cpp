// orders_as_text ORVAN: prints the service orders for PostgreSQL's COPY and MariaDB's LOAD DATA: one line per order,
// tabs between the columns, "\N" for null.
#include <cstdio>
#include <iostream>

#include "bench/reference/service_orders.h"

namespace {

void Append(std::string& line, std::string_view text) {
  for (const char c : text) {
    switch (c) {
      case '\\':
        line += "\\\\";
        break;
      case '\t':
        line += "\\t";
        break;
      case '\n':
        line += "\\n";
        break;
      default:
        line += c;
    }
  }
}

void Write(const std::string& orvan) {
  using namespace reference;
  const File erp = ErpFile(orvan);
  Statement rows = erp.Prepare("select " + OrderColumns() + " from tssoc200 order by orno");
  std::string line;
  while (rows.Step()) {
    line.clear();
    for (int i = 0; i < static_cast<int>(kOrderColumns.size()); ++i) {
      if (i > 0) line += '\t';
      if (IsNull(rows, i)) {
        line += "\\N";
      } else {
        Append(line, LocalText(rows, i, kOrderColumns[static_cast<std::size_t>(i)].kind));
      }
    }
    line += '\n';
    if (std::fwrite(line.data(), 1, line.size(), stdout) != line.size()) throw std::runtime_error("writing failed");
  }
  if (std::fflush(stdout) != 0) throw std::runtime_error("writing failed");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc != 2) throw std::runtime_error("usage: orders_as_text ORVAN");
    Write(argv[1]);
  } catch (const std::exception& failure) {
    std::cerr << "orders_as_text: " << failure.what() << '\n';
    return 1;
  }
}
