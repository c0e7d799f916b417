// The record of one run: a line of JSON when it starts and one when it ends, appended to a file in the folder of the
// logs. docs/run-records.md is the contract of the lines.
//
// The file is opened like the logs (platform/system/plain_file.h). Each record is one write that begins with a line
// end, so concurrent processes do not mix their records, and a record that was cut short does not damage the next one.
//
// If a record cannot be written, the failure report gets one Error, and the run continues.
// Values that the connection text hides, such as passwords, are "***" in every text.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/failure_report.h"
#include "platform/json_line.h"
#include "platform/modDeclarations.h"
#include "platform/system/plain_file.h"

namespace qmx {

struct RunStart {
  std::string path;        // of the file, in the system's own form
  std::string version;     // of the program
  std::string table;       // as given on the command line
  std::string connection;  // the connection text, whose secrets are hidden
  std::optional<std::int32_t> request = {};
  std::string mode = {};  // "whole", "rows", or empty
};

class RunRecord {
 public:
  RunRecord(const RunStart& start, FailureReport& failures) noexcept;  // borrows the report
  ~RunRecord();
  RunRecord(const RunRecord&) = delete;
  RunRecord& operator=(const RunRecord&) = delete;

  // Keeps a failure and its causes for the end record.
  void Add(const Error& failure) noexcept;

  // Writes the end record, once. Any thread may call it.
  void End(int status, const RunFacts& facts) noexcept;

 private:
  void Open(const std::string& path);
  void WriteStart(const RunStart& start);
  void Append(const JsonLine& record);
  JsonLine Beginning(const char* record) const;
  JsonLine Causes() const;
  JsonLine Link(const Error& error) const;
  std::string WithoutSecrets(std::string text) const;

  // Reports its errors as a loss of the record.
  template <typename Step>
  void Try(const char* loss, Step&& step) noexcept;

  FailureReport& failures_;
  PlainFile file_;
  std::string path_;
  std::string run_;
  std::string table_;
  std::vector<std::string> secrets_;
  std::chrono::steady_clock::time_point started_ = std::chrono::steady_clock::now();
  std::mutex mutex_;
  std::vector<Error> causes_;
};

// A failure report that also adds each failure to the run's record.
class RecordedFailures : public FailureReport {
 public:
  RecordedFailures(FailureReport& inner, RunRecord* record) : inner_(inner), record_(record) {}  // borrowed
  void Report(const Error& error) noexcept override {
    if (record_) record_->Add(error);
    inner_.Report(error);
  }

 private:
  FailureReport& inner_;
  RunRecord* record_;  // null if the run has none
};

}  // namespace qmx
