#include "platform/run_records/sudden_end.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>

#include "platform/run_records/record_fields.h"
#include "platform/run_records/record_time.h"
#include "platform/system/write_all.h"

namespace qmx {
namespace {

constexpr int kSignalled = 128;

struct Armed {
  int descriptor = -1;
  std::array<char, 512> beginning{};
  std::size_t length = 0;
  long offset = 0;
  bool showsCause = true;
  std::chrono::steady_clock::time_point started;
};
Armed armed;

// A record in a buffer of fixed size. Cuts what does not fit.
class RecordBuffer {
 public:
  void Add(std::string_view text) noexcept {
    for (const char c : text) {
      if (length_ < text_.size()) text_[length_++] = c;
    }
  }
  void AddNumber(std::int64_t number) noexcept {
    std::array<char, 20> digits{};
    std::size_t first = digits.size();
    do digits[--first] = static_cast<char>('0' + number % 10);
    while ((number /= 10) > 0 && first > 0);
    Add({digits.data() + first, digits.size() - first});
  }
  void AddName(const char* name) noexcept {
    Add(",\"");
    Add(name);
    Add("\":");
  }
  void AddText(std::string_view text) noexcept {
    Add("\"");
    for (const char c : text) {
      const bool isPlain = static_cast<unsigned char>(c) >= 0x20 && static_cast<unsigned char>(c) < 0x7f;
      if (c == '"' || c == '\\') Add("\\");
      Add(isPlain ? std::string_view(&c, 1) : "?");
    }
    Add("\"");
  }
  std::string_view Text() const noexcept { return {text_.data(), length_}; }

 private:
  std::array<char, 4096> text_;
  std::size_t length_ = 0;
};

}  // namespace

void SuddenEnd::Arm(int descriptor, std::string_view beginning, long offset, bool showsCause) noexcept {
  if (beginning.size() > armed.beginning.size()) return;
  std::copy(beginning.begin(), beginning.end(), armed.beginning.begin());
  armed.length = beginning.size();
  armed.descriptor = descriptor;
  armed.offset = offset;
  armed.showsCause = showsCause;
  armed.started = std::chrono::steady_clock::now();
  armed_ = true;
}

void SuddenEnd::Write(std::string_view cause, int status) noexcept {
  using namespace run_records;
  if (!Disarm()) return;
  const int errorBefore = errno;
  const auto now = std::chrono::system_clock::now();
  const auto duration = std::chrono::steady_clock::now() - armed.started;

  RecordBuffer record;
  record.Add({armed.beginning.data(), armed.length});
  record.AddText(RecordTime(now, armed.offset).Text());
  record.AddName(kDuration);
  record.AddNumber(std::chrono::duration_cast<std::chrono::milliseconds>(duration).count());
  record.AddName(kOutcome);
  record.AddText(status > kSignalled ? kCrashed : kEnded);
  record.AddName(kStatus);
  record.AddNumber(status);
  record.AddName(kCauses);
  record.Add("[[{\"");
  record.Add(kDescription);
  record.Add("\":");
  record.AddText(armed.showsCause ? cause.substr(0, 1024) : "***");
  record.Add("}]]}");
  WriteAtOnce(armed.descriptor, record.Text());
  errno = errorBefore;
}

}  // namespace qmx
