#include "platform/windows/line_pipe.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <thread>

namespace qmx::test {
namespace {

constexpr std::chrono::milliseconds kNow{0};
constexpr std::chrono::minutes kLong{1};

// A pipe whose writes do not wait, as Windows describes them. Its reader makes room in the pauses.
class LinesOfAPipe : public testing::Test {
 protected:
  LinesOfAPipe() {
    room = 1000;
    roomOfAPause = 0;
    pauses = 0;
    hasReader = true;
    text.clear();
    linePipeCalls.write = [](HANDLE, const void* bytes, DWORD length, DWORD* written, OVERLAPPED*) -> BOOL {
      *written = hasReader ? std::min(length, room) : 0;
      text.append(static_cast<const char*>(bytes), *written);
      room -= *written;
      return hasReader;
    };
    linePipeCalls.pause = [](DWORD) {
      ++pauses;
      room += roomOfAPause;
    };
  }
  ~LinesOfAPipe() override { linePipeCalls = before_; }

  bool Write(std::string_view line, std::chrono::milliseconds within = kNow) {
    return lines_.Write(nullptr, line, within);
  }

  static inline DWORD room, roomOfAPause;
  static inline int pauses;
  static inline bool hasReader;
  static inline std::string text;
  LinePipe lines_;

 private:
  LinePipeCalls before_ = linePipeCalls;
};

TEST_F(LinesOfAPipe, AreWrittenAtOnceIfThereIsRoom) {
  EXPECT_TRUE(Write("rows 3\n"));
  EXPECT_TRUE(Write("rows 4\n"));
  EXPECT_EQ(text, "rows 3\nrows 4\n");
  EXPECT_EQ(pauses, 0);
}

TEST_F(LinesOfAPipe, AreLeftOutWhileItIsFull) {
  room = 0;
  EXPECT_FALSE(Write("rows 3\n"));
  EXPECT_FALSE(Write("rows 4\n"));
  room = 1000;
  EXPECT_TRUE(Write("rows 5\n"));
  EXPECT_EQ(text, "rows 5\n");
  EXPECT_EQ(pauses, 0);
}

TEST_F(LinesOfAPipe, ThatWereCutAreCompletedBeforeTheNextOne) {
  room = 6;
  EXPECT_TRUE(Write("rows 123456\n"));
  EXPECT_EQ(text, "rows 1");
  room = 2;
  EXPECT_FALSE(Write("rows 200000\n"));
  EXPECT_EQ(text, "rows 123");
  room = 1000;
  EXPECT_TRUE(Write("rows 300000\n"));
  EXPECT_EQ(text, "rows 123456\nrows 300000\n");
}

TEST_F(LinesOfAPipe, AreTriedUntilTheReaderHasMadeRoom) {
  room = 6;
  EXPECT_TRUE(Write("rows 123456\n"));
  roomOfAPause = 4;
  EXPECT_TRUE(Write("end 0\n", kLong));
  EXPECT_EQ(text, "rows 123456\nend 0\n");
  EXPECT_EQ(pauses, 3);
}

TEST_F(LinesOfAPipe, AreGivenUpWhenTheirTimeIsOver) {
  room = 0;
  EXPECT_FALSE(Write("end 0\n", std::chrono::milliseconds(20)));
  EXPECT_GT(pauses, 0);
  EXPECT_EQ(text, "");
}

TEST_F(LinesOfAPipe, AreNotTriedAgainIfNobodyReads) {
  hasReader = false;
  EXPECT_FALSE(Write("end 0\n", kLong));
  EXPECT_EQ(pauses, 0);
}

TEST_F(LinesOfAPipe, DoNotWaitForAnotherThreadThatDoesNotReturn) {
  static HANDLE begun, mayEnd;
  begun = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  mayEnd = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  linePipeCalls.write = [](HANDLE, const void*, DWORD length, DWORD* written, OVERLAPPED*) -> BOOL {
    SetEvent(begun);
    WaitForSingleObject(mayEnd, INFINITE);
    *written = length;
    return TRUE;
  };
  std::thread other([this] { EXPECT_TRUE(Write("rows 3\n")); });
  WaitForSingleObject(begun, INFINITE);
  EXPECT_FALSE(Write("end 2\n", std::chrono::milliseconds(10)));
  SetEvent(mayEnd);
  other.join();
  CloseHandle(begun);
  CloseHandle(mayEnd);
}

}  // namespace
}  // namespace qmx::test
