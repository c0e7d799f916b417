// A platform that records what the program says and does, without components and without a database.
#pragma once

#include <string>
#include <vector>

#include "copy/clsDataCopy.h"
#include "platform/components.h"
#include "platform/database.h"
#include "platform/error.h"
#include "platform/event_log.h"
#include "platform/failure_report.h"
#include "platform/platform.h"
#include "tests/support/fake_clock.h"

namespace qmx::fuzz {

class RecordingEventLog : public EventLog {
 public:
  void StartLogging(const std::string& target, int) override { targets.push_back(target); }
  void LogEvent(std::string_view text, int) override { entries.emplace_back(text); }
  std::vector<std::string> targets, entries;
};

class RecordingFailures : public FailureReport {
 public:
  void Report(const Error& error) noexcept override { chains.push_back(DescribeChain(error)); }
  std::vector<std::string> chains;
};

// Every object takes every call, and its texts are kept.
class TakingComponents : public Components {
 public:
  Object CreateObject(std::string_view progId) override {
    created.emplace_back(progId);
    return Object(std::make_shared<Taking>(*this));
  }
  std::vector<std::string> created, texts;

 private:
  class Taking final : public Dispatch {
   public:
    explicit Taking(TakingComponents& owner) : owner_(owner) {}
    Variant Invoke(const Member&, std::span<const Argument> arguments) override {
      for (const Argument& argument : arguments) owner_.texts.push_back(argument.Value().ToText());
      return {};
    }

   private:
    TakingComponents& owner_;
  };
};

struct BarePlatform {
  BarePlatform(TextFiles& files, std::vector<Driver*> drivers)
      : database(std::move(drivers)), platform{clock, files, eventLog, components, database, failures} {}
  BarePlatform(const BarePlatform&) = delete;
  BarePlatform& operator=(const BarePlatform&) = delete;

  test::FakeClock clock;
  RecordingEventLog eventLog;
  TakingComponents components;
  Database database;
  RecordingFailures failures;
  Platform platform;
};

}  // namespace qmx::fuzz
