#include "platform/system/text_files.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "platform/error.h"
#include "platform/system/paths.h"
#include "platform/system/system_errors.h"

namespace qmx {
namespace {

constexpr const char* kSource = "Text files";

}  // namespace

void SystemTextFiles::OpenForAppend(const std::string& path, int number) { Open(path, number, FileUse::Append); }

void SystemTextFiles::OpenForInput(const std::string& path, int number) { Open(path, number, FileUse::Input); }

void SystemTextFiles::Open(const std::string& path, int number, FileUse use) {
  const std::string native = NativePath(path);
  const auto open = files_.find(number);
  if (open != files_.end()) {
    throw Error(errors::kFileAlreadyOpen, kSource,
                "File already open: number " + std::to_string(number) + " is in use by " + open->second.path +
                    " and cannot be used for " + native);
  }
  if (native.find('\0') != std::string::npos) RaiseSystemError(EINVAL, kSource, native);

  PlainFile file = OpenPlainFile(native, use);
  if (!file.stream) RaiseSystemError(file.code, kSource, native, file.reason);
  files_.emplace(number, OpenFile{native, use, std::move(file)});
}

SystemTextFiles::OpenFile& SystemTextFiles::Find(int number, FileUse use) {
  const auto open = files_.find(number);
  if (open == files_.end()) {
    throw Error(errors::kBadFileNumber, kSource, "Bad file number: " + std::to_string(number) + " is not open");
  }
  if (open->second.use != use) {
    throw Error(errors::kBadFileNumber, kSource,
                "Bad file number: " + std::to_string(number) + " is open for " +
                    (use == FileUse::Input ? "appending" : "input") + ", " + open->second.path);
  }
  return open->second;
}

void SystemTextFiles::Print(int number, std::string_view line) {
  OpenFile& open = Find(number, FileUse::Append);
  const std::string text = std::string(line) + "\r\n";
  if (std::fwrite(text.data(), 1, text.size(), open.file.stream.get()) != text.size())
    RaiseSystemError(errno, kSource, open.path);
}

void SystemTextFiles::Write(int number, std::initializer_list<std::string_view> items) {
  std::string record;
  for (const std::string_view item : items) {
    if (!record.empty()) record += ',';
    record.append("\"").append(item).append("\"");
  }
  Print(number, record);
}

std::string SystemTextFiles::InputField(int number) {
  OpenFile& open = Find(number, FileUse::Input);
  std::FILE* stream = open.file.stream.get();
  std::string field;
  bool quoted = false;
  int c = std::getc(stream);
  if (c == EOF && !std::ferror(stream)) {
    throw Error(errors::kInputPastEnd, kSource, "Input past end of file: " + open.path);
  }
  for (; c != EOF; c = std::getc(stream)) {
    if (!quoted && (c == ',' || c == '\n' || c == '\r')) break;
    if (c == '"') quoted = !quoted;
    if (c != ' ' || !field.empty()) field += static_cast<char>(c);
  }
  if (std::ferror(stream)) RaiseSystemError(errno, kSource, open.path);
  if (c == '\r') {  // CR LF is one line end
    const int next = std::getc(stream);
    if (next != '\n' && next != EOF) std::ungetc(next, stream);
  }
  if (field.starts_with('"')) {
    const std::size_t last = field.find_last_not_of(' ');
    if (last > 0 && field[last] == '"') field = field.substr(1, last - 1);
  }
  return field;
}

void SystemTextFiles::Close(int number) {
  const auto open = files_.find(number);
  if (open == files_.end()) {
    throw Error(errors::kBadFileNumber, kSource, "Bad file number: " + std::to_string(number) + " is not open");
  }
  OpenFile closing = std::move(open->second);
  files_.erase(open);  // the number is free again, even if closing fails
  if (std::fclose(closing.file.stream.release()) != 0) RaiseSystemError(errno, kSource, closing.path);
}

std::string SystemTextFiles::CurrentDirectory() {
  std::error_code problem;
  const std::filesystem::path folder = std::filesystem::current_path(problem);
  if (problem) {
    throw Error(errors::kPathNotFound, kSource, "Path not found: the current directory")
        .With("system", problem.message());
  }
  return PathText(folder.string());
}

}  // namespace qmx
