// Text files kept in memory, with the error numbers of real ones. A test can make one operation fail.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "platform/error.h"
#include "platform/text_files.h"
#include "tests/support/call_log.h"

namespace qmx::test {

class MemoryFiles : public TextFiles {
 public:
  explicit MemoryFiles(CallLog& log) : log_(log) {}

  std::map<std::string, std::string> texts;  // by path as it was given
  std::string failOn;      // "Open", "OpenForInput", "Write", "Close": that operation fails with error 61
  bool failsOnce = false;  // only the next time
  std::string currentDirectory = "\\home\\qmx";
  std::map<std::string, std::set<int>> numbers;                // under which each path was opened
  std::function<void(const std::string& path)> beforeOpening;  // if set
  bool IsOpen() const { return open_.has_value(); }

  void OpenForAppend(const std::string& path, int number) override { Open(path, number); }
  void OpenForInput(const std::string& path, int number) override {
    FailOn("OpenForInput");
    if (!texts.contains(path)) throw Error(errors::kFileNotFound, "MemoryFiles", "File not found: " + path);
    Open(path, number);
    place_ = 0;
  }
  void Print(int number, std::string_view line) override { Text(number) += std::string(line) + "\r\n"; }
  void Write(int number, std::initializer_list<std::string_view> items) override {
    FailOn("Write");
    std::string record;
    for (const std::string_view item : items) record += (record.empty() ? "\"" : ",\"") + std::string(item) + '"';
    Text(number) += record + "\r\n";
    log_.Add("log " + record);
  }
  std::string InputField(int number) override {
    const std::string& text = Text(number);
    if (place_ >= text.size())
      throw Error(errors::kInputPastEnd, "MemoryFiles", "Input past the end of " + open_->path);
    const std::size_t end = std::min(text.find_first_of(",\r\n", place_), text.size());
    const std::string field = text.substr(place_, end - place_);
    place_ = end + 1;
    return field;
  }
  void Close(int number) override {
    Text(number);
    FailOn("Close");
    open_.reset();
  }
  std::string CurrentDirectory() override { return currentDirectory; }

 private:
  struct OpenFile {
    std::string path;
    int number;
  };
  void Open(const std::string& path, int number) {
    if (beforeOpening) beforeOpening(path);
    if (open_) throw Error(errors::kFileAlreadyOpen, "MemoryFiles", "File already open: " + open_->path);
    FailOn("Open");
    open_ = {path, number};
    numbers[path].insert(number);
    texts[path];
  }
  std::string& Text(int number) {
    if (!open_ || open_->number != number) throw Error(errors::kBadFileNumber, "MemoryFiles", "Bad file number");
    return texts[open_->path];
  }
  void FailOn(const std::string& operation) {
    if (failOn != operation) return;
    if (failsOnce) failOn.clear();
    throw Error(errors::kDiskFull, "MemoryFiles", "Disk full");
  }

  CallLog& log_;
  std::optional<OpenFile> open_;
  std::size_t place_ = 0;
};

}  // namespace qmx::test
