// Run records as copies leave them, written line by line by a test.
#pragma once

#include <unistd.h>

#include <nlohmann/json.hpp>
#include <string>

#include "platform/system/process_identity.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {

class RunLog {
 public:
  using Json = nlohmann::ordered_json;

  std::string Folder() const { return folder_.Path().string(); }
  std::string File(const std::string& name = "QMXRuns.jsonl") const { return folder_ / name; }

  void Append(const std::string& line, const std::string& name = "QMXRuns.jsonl") {
    WriteFile(File(name), ReadFile(File(name)) + "\n" + line);
  }

  // A run of this process, which is alive.
  static Json Start(const std::string& run, const std::string& table, const std::string& time) {
    return {{"v", 1},
            {"record", "start"},
            {"run", run},
            {"table", table},
            {"time", time},
            {"host", HostName()},
            {"pid", getpid()},
            {"pid_start", StartTicksOf(getpid()).value_or(0)},
            {"boot", BootNumber()},
            {"user", "qmx"},
            {"uid", 7},
            {"version", "1.2.3"},
            {"request", nullptr}};
  }
  static Json Complete(const std::string& run, const std::string& table, const std::string& time) {
    return {{"v", 1},
            {"record", "end"},
            {"run", run},
            {"table", table},
            {"time", time},
            {"duration_ms", 1500},
            {"outcome", "complete"},
            {"status", 0},
            {"method", "full"},
            {"inserted", 7},
            {"updated", 2},
            {"deleted", 1},
            {"lutm", "2026-11-20 14:00:00"},
            {"retries", 0},
            {"peak_memory_kib", 9000},
            {"causes", Json::array()}};
  }
  static Json Failed(const std::string& run, const std::string& table, const std::string& time) {
    Json end = Complete(run, table, time);
    end["outcome"] = "failed";
    end["status"] = 1;
    end["lutm"] = nullptr;
    const Json outer = {{"number", 3365},
                        {"source", "Copy Service Types"},
                        {"description", " Copy <failed>"},
                        {"details", Json::object()}};
    const Json inner = {{"number", 3265},
                        {"source", "ADODB.Recordset"},
                        {"description", "There is no column \"ract\"."},
                        {"details", {{"column", "ract"}, {"key", "cstp='ADV'"}}}};
    end["causes"] = Json::array({Json::array({outer, inner})});
    return end;
  }

  void AddComplete(const std::string& run, const std::string& table, const std::string& from, const std::string& to) {
    Append(Start(run, table, from).dump());
    Append(Complete(run, table, to).dump());
  }
  void AddFailed(const std::string& run, const std::string& table, const std::string& from, const std::string& to) {
    Append(Start(run, table, from).dump());
    Append(Failed(run, table, to).dump());
  }
  // A run without an end.
  void AddStart(const std::string& run, const std::string& table, const std::string& time, const Json& changed = {}) {
    Json start = Start(run, table, time);
    for (const auto& [name, value] : changed.items()) start[name] = value;
    Append(start.dump());
  }

 private:
  TempFolder folder_;
};

}  // namespace qmx::test
