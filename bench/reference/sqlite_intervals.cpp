// sqlite_intervals EXPANDED LOCAL: inserts the intervals of an expanded file into another with SQLite's C interface:
// one prepared insert, one transaction per calendar. Prints the time of the inserts, without the reading before them.
#include <chrono>
#include <ctime>
#include <iostream>
#include <vector>

#include "bench/reference/sqlite.h"

namespace {

using namespace reference;

struct Interval {
  std::string ccal;
  std::string sttm;
  std::string entm;
};

std::vector<Interval> Read(const std::string& path) {
  std::vector<Interval> intervals;
  const File expanded(path, SQLITE_OPEN_READONLY);
  Statement rows = expanded.Prepare("select ccal, sttm, entm from tscalender order by rowid");
  while (rows.Step()) intervals.push_back({rows.Text(0), rows.Text(1), rows.Text(2)});
  return intervals;
}

void Insert(const std::vector<Interval>& intervals, const std::string& path) {
  const File local = LocalFile(path);
  Statement insert = local.Prepare("insert into tscalender (ccal, sttm, entm) values (?, ?, ?)");
  for (auto next = intervals.begin(); next != intervals.end();) {
    const std::string& calendar = next->ccal;
    local.Execute("begin");
    for (; next != intervals.end() && next->ccal == calendar; ++next) {
      insert.Bind(1, next->ccal);
      insert.Bind(2, next->sttm);
      insert.Bind(3, next->entm);
      insert.Run();
    }
    local.Execute("commit");
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc != 3) throw std::runtime_error("usage: sqlite_intervals EXPANDED LOCAL");
    const std::vector<Interval> intervals = Read(argv[1]);
    const auto start = std::chrono::steady_clock::now();
    const std::clock_t processorStart = std::clock();
    Insert(intervals, argv[2]);
    std::cout << "seconds " << std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count()
              << " of processor time " << static_cast<double>(std::clock() - processorStart) / CLOCKS_PER_SEC << '\n';
  } catch (const std::exception& failure) {
    std::cerr << "sqlite_intervals: " << failure.what() << '\n';
    return 1;
  }
}
