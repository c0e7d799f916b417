#include "platform/run_records/sudden_end.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/run_records/record_fields.h"
#include "platform/run_records/record_time.h"

namespace qmx {
namespace {

constexpr int kSignalled = 128;

struct Armed {
  int descriptor = -1;
  std::array<char, 512> beginning{};
  std::size_t length = 0;
  long offset = 0;
  bool showsCause = true;
  timespec started{};
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

std::int64_t Milliseconds(const timespec& from, const timespec& to) noexcept {
  return (to.tv_sec - from.tv_sec) * 1000 + (to.tv_nsec - from.tv_nsec) / 1'000'000;
}

}  // namespace

void SuddenEnd::Arm(int descriptor, std::string_view beginning, long offset, bool showsCause) noexcept {
  if (beginning.size() > armed.beginning.size()) return;
  std::copy(beginning.begin(), beginning.end(), armed.beginning.begin());
  armed.length = beginning.size();
  armed.descriptor = descriptor;
  armed.offset = offset;
  armed.showsCause = showsCause;
  clock_gettime(CLOCK_MONOTONIC, &armed.started);
  armed_ = true;
}

void SuddenEnd::Write(std::string_view cause, int status) noexcept {
  using namespace run_records;
  if (!Disarm()) return;
  const int errorBefore = errno;
  timespec now{};
  timespec ended{};
  clock_gettime(CLOCK_REALTIME, &now);
  clock_gettime(CLOCK_MONOTONIC, &ended);

  RecordBuffer record;
  record.Add({armed.beginning.data(), armed.length});
  record.AddText(RecordTime(now, armed.offset).Text());
  record.AddName(kDuration);
  record.AddNumber(Milliseconds(armed.started, ended));
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
  const std::string_view text = record.Text();
  [[maybe_unused]] const ssize_t written = write(armed.descriptor, text.data(), text.size());
  errno = errorBefore;
}

}  // namespace qmx
