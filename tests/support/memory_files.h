// Text files kept in memory, with the error numbers of real ones: several may be open, each for appending or for input.
// A test can make one operation fail.
#pragma once

#include <functional>
#include <map>
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
  bool IsOpen() const { return !open_.empty(); }

  void OpenForAppend(const std::string& path, int number) override { Open(path, number, Use::Append); }
  void OpenForInput(const std::string& path, int number) override {
    FailOn("OpenForInput");
    if (!texts.contains(path)) throw Error(errors::kFileNotFound, "MemoryFiles", "File not found: " + path);
    Open(path, number, Use::Input);
  }
  void Print(int number, std::string_view line) override {
    texts[Find(number, Use::Append).path] += std::string(line) + "\r\n";
  }
  void Write(int number, std::initializer_list<std::string_view> items) override {
    std::string& text = texts[Find(number, Use::Append).path];
    FailOn("Write");
    std::string record;
    for (const std::string_view item : items) record += (record.empty() ? "\"" : ",\"") + std::string(item) + '"';
    text += record + "\r\n";
    log_.Add("log " + record);
  }
  std::string InputField(int number) override {
    OpenFile& open = Find(number, Use::Input);
    const std::string& text = texts[open.path];
    if (open.place >= text.size())
      throw Error(errors::kInputPastEnd, "MemoryFiles", "Input past the end of " + open.path);
    const std::size_t end = std::min(text.find_first_of(",\r\n", open.place), text.size());
    const std::string field = text.substr(open.place, end - open.place);
    open.place = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
    return field;
  }
  void Close(int number) override {
    if (open_.erase(number) == 0) throw BadNumber(number);  // the number is free again, even if closing fails
    FailOn("Close");
  }
  std::string CurrentDirectory() override { return currentDirectory; }

 private:
  enum class Use { Append, Input };
  struct OpenFile {
    std::string path;
    Use use;
    std::size_t place = 0;  // of input
  };
  void Open(const std::string& path, int number, Use use) {
    if (beforeOpening) beforeOpening(path);
    const auto open = open_.find(number);
    if (open != open_.end())
      throw Error(errors::kFileAlreadyOpen, "MemoryFiles", "File already open: " + open->second.path);
    FailOn("Open");
    open_[number] = {path, use};
    numbers[path].insert(number);
    texts[path];
  }
  static Error BadNumber(int number) {
    return Error(errors::kBadFileNumber, "MemoryFiles", "Bad file number " + std::to_string(number));
  }
  OpenFile& Find(int number, Use use) {
    const auto open = open_.find(number);
    if (open == open_.end() || open->second.use != use) throw BadNumber(number);
    return open->second;
  }
  void FailOn(const std::string& operation) {
    if (failOn != operation) return;
    if (failsOnce) failOn.clear();
    throw Error(errors::kDiskFull, "MemoryFiles", "Disk full");
  }

  CallLog& log_;
  std::map<int, OpenFile> open_;  // by number
};

}  // namespace qmx::test
