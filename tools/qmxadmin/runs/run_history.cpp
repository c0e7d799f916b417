#include "tools/qmxadmin/runs/run_history.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>

#include "platform/error.h"
#include "platform/run_records/record_fields.h"
#include "platform/system/descriptors.h"
#include "platform/system/plain_file.h"

namespace qmx {
namespace {

namespace fs = std::filesystem;
using namespace run_records;
using Json = nlohmann::ordered_json;

// A member of the wanted type. None if it is missing, null or of another type.
template <typename Value>
std::optional<Value> Member(const Json& object, const char* name) {
  const auto member = object.find(name);
  if (member == object.end()) return std::nullopt;
  if constexpr (std::is_same_v<Value, std::string>) {
    return member->is_string() ? std::optional(member->template get<std::string>()) : std::nullopt;
  } else {
    return member->is_number_integer() ? std::optional(member->template get<Value>()) : std::nullopt;
  }
}

std::string Text(const Json& object, const char* name) { return Member<std::string>(object, name).value_or(""); }

// "2026-11-20T14:05:09.123+01:00"
std::optional<RunMoment> Moment(const std::string& text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, thousandths = 0, zoneHours = 0, zoneMinutes = 0;
  char sign = '+';
  if (std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d.%3d%c%2d:%2d", &year, &month, &day, &hour, &minute, &second,
                  &thousandths, &sign, &zoneHours, &zoneMinutes) != 10)
    return std::nullopt;
  using namespace std::chrono;
  const year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) return std::nullopt;
  const minutes zone(zoneHours * 60 + zoneMinutes);
  return sys_days(date) + hours(hour) + minutes(minute) + seconds(second) + milliseconds(thousandths) -
         (sign == '-' ? -zone : zone);
}

RunCause CauseFrom(const Json& link) {
  RunCause cause{Member<std::int64_t>(link, kNumber), Text(link, kSource), Text(link, kDescription), {}};
  const auto details = link.find(kDetails);
  if (details == link.end() || !details->is_object()) return cause;
  for (const auto& [what, value] : details->items())
    cause.details.emplace_back(what, value.is_string() ? value.get<std::string>() : value.dump());
  return cause;
}

RunEnd EndFrom(const Json& record, RunMoment time) {
  RunEnd end;
  end.time = time;
  end.duration = std::chrono::milliseconds(Member<std::int64_t>(record, kDuration).value_or(0));
  end.outcome = Text(record, kOutcome);
  end.status = Member<int>(record, kStatus).value_or(0);
  end.method = Text(record, kMethod);
  end.inserted = Member<std::int64_t>(record, kInserted);
  end.updated = Member<std::int64_t>(record, kUpdated);
  end.deleted = Member<std::int64_t>(record, kDeleted);
  end.lastUpdate = Text(record, kLastUpdate);
  const auto causes = record.find(kCauses);
  if (causes == record.end() || !causes->is_array()) return end;
  for (const Json& chain : *causes) {
    end.causes.emplace_back();
    if (!chain.is_array()) continue;
    for (const Json& link : chain) {
      if (link.is_object()) end.causes.back().push_back(CauseFrom(link));
    }
  }
  return end;
}

// Runs by their numbers, put together from records in any order.
class Collection {
 public:
  void Add(std::string_view line) {
    const Json record = Json::parse(line, nullptr, false);
    if (!record.is_object()) return;
    const std::string number = Text(record, kRun);
    const std::optional<RunMoment> time = Moment(Text(record, kTime));
    const std::string kind = Text(record, kRecord);
    if (number.empty() || !time || (kind != kStart && kind != run_records::kEnd)) return;
    Run& run = runs_[number];
    run.number = number;
    run.table = Text(record, kTable);
    if (kind == kStart) {
      AddStart(run, record, *time);
    } else {
      run.end = EndFrom(record, *time);
      if (run.host.empty()) run.started = *time - run.end->duration;
    }
  }

  std::vector<Run> Sorted() && {
    std::vector<Run> runs;
    for (auto& [number, run] : runs_) runs.push_back(std::move(run));
    std::stable_sort(runs.begin(), runs.end(), [](const Run& a, const Run& b) { return a.started < b.started; });
    return runs;
  }

 private:
  static void AddStart(Run& run, const Json& record, RunMoment time) {
    run.started = time;
    run.host = Text(record, kHost);
    run.boot = Text(record, kBoot);
    run.user = Text(record, kUser);
    run.version = Text(record, kProgram);
    run.process = Member<std::int64_t>(record, kProcess);
    run.startTicks = Member<std::int64_t>(record, kProcessStart);
    run.request = Member<std::int64_t>(record, kRequest);
    run.mode = Text(record, kMode);
  }

  std::map<std::string, Run> runs_;
};

// Compressed or not.
void ReadLines(const fs::path& path, Collection& runs) {
  const PlainFile file = OpenPlainFile(path.string(), FileUse::Input);
  if (file.code == ENOENT) return;  // rotated away meanwhile
  if (!file.stream) {
    throw Error(errors::kPathFileAccess, "Run records",
                "The run records \"" + path.string() + "\" cannot be read: " +
                    (file.reason.empty() ? std::strerror(file.code) : "it " + file.reason) + ".");
  }
  struct CloseArchive {
    void operator()(gzFile archive) const { gzclose(archive); }
  };
  const std::unique_ptr<gzFile_s, CloseArchive> archive(gzdopen(Duplicated(file.descriptor), "rb"));
  std::array<char, 65536> buffer{};
  std::string line;
  while (archive && gzgets(archive.get(), buffer.data(), static_cast<int>(buffer.size()))) {
    line += buffer.data();
    if (!line.ends_with('\n')) continue;
    runs.Add(line);
    line.clear();
  }
  runs.Add(line);  // no line end follows the last record
}

}  // namespace

std::vector<Run> ReadRuns(const std::string& logFolder) {
  std::error_code problem;
  Collection runs;
  for (fs::directory_iterator entry(logFolder, problem), end; !problem && entry != end; entry.increment(problem)) {
    const std::string name = entry->path().filename().string();
    const std::string rest = name.starts_with(kFileName) ? name.substr(std::strlen(kFileName)) : "no";
    if (rest.empty() || rest[0] == '.' || rest[0] == '-') ReadLines(entry->path(), runs);
  }
  if (problem) {
    throw Error(errors::kPathNotFound, "Run records",
                "The log folder \"" + logFolder + "\" cannot be read: " + problem.message() + ".");
  }
  return std::move(runs).Sorted();
}

std::map<std::string, TableRuns> RunsByTable(const std::vector<Run>& runs) {
  std::map<std::string, TableRuns> tables;
  for (const Run& run : runs) {
    TableRuns& table = tables[run.TableCode()];
    table.runs.push_back(&run);
    if (run.end && run.end->outcome == kRefused) continue;
    table.last = &run;
    table.holder = run.end ? nullptr : &run;
    if (!run.end) continue;
    table.lastEnded = &run;
    if (run.end->outcome == kComplete) table.lastSuccess = &run;
    if (!run.end->lastUpdate.empty()) table.lastUpdate = run.end->lastUpdate;
  }
  return tables;
}

}  // namespace qmx
