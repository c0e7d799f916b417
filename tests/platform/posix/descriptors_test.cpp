#include "platform/system/descriptors.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <string>
#include <thread>

namespace qmx::test {
namespace {

class Descriptors : public testing::Test {
 protected:
  Descriptors() { EXPECT_EQ(pipe(ends_.data()), 0); }
  ~Descriptors() override {
    for (const int end : ends_) close(end);
  }

  void Fill() const {
    fcntl(ends_[1], F_SETFL, O_NONBLOCK);
    const std::string text(1 << 16, 'x');
    while (write(ends_[1], text.data(), text.size()) > 0) continue;
  }
  // Without waiting.
  std::string Read() const {
    fcntl(ends_[0], F_SETFL, O_NONBLOCK);
    std::array<char, 4096> text{};
    const ssize_t length = read(ends_[0], text.data(), text.size());
    return {text.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
  }
  bool IsInherited(int descriptor) const { return (fcntl(descriptor, F_GETFD) & FD_CLOEXEC) == 0; }

  std::array<int, 2> ends_{};
};

TEST_F(Descriptors, ThatWereInheritedAreNotInheritedFurther) {
  EXPECT_TRUE(IsInherited(ends_[1]));
  EXPECT_EQ(InheritedDescriptor(ends_[1]), ends_[1]);
  EXPECT_FALSE(IsInherited(ends_[1]));
}

TEST_F(Descriptors, ThatAreNotOpenAreNone) {
  EXPECT_EQ(InheritedDescriptor(9999), -1);
  EXPECT_EQ(Duplicated(9999), -1);
  EXPECT_FALSE(WriteLine(-1, "rows 3\n"));
}

TEST_F(Descriptors, TakeALineUntilThePipeIsFull) {
  EXPECT_TRUE(WriteLine(ends_[1], "rows 3\n"));
  EXPECT_EQ(Read(), "rows 3\n");
  Fill();
  EXPECT_FALSE(WriteLine(ends_[1], "rows 3\n"));
  EXPECT_FALSE(WriteLine(ends_[1], "rows 3\n", std::chrono::milliseconds(1)));
}

TEST_F(Descriptors, TakeALineAfterSignalsToo) {
  struct sigaction before {};
  struct sigaction ignored {};
  ignored.sa_handler = [](int) {};
  sigaction(SIGUSR1, &ignored, &before);
  Fill();
  std::atomic<bool> hasEnded = false, isWritten = false;
  std::thread writer([&] {
    isWritten = WriteLine(ends_[1], "end 0\n", std::chrono::minutes(1));
    hasEnded = true;
  });
  for (int i = 0; i < 20; ++i) {
    pthread_kill(writer.native_handle(), SIGUSR1);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  while (!hasEnded) Read();
  writer.join();
  EXPECT_TRUE(isWritten);
  sigaction(SIGUSR1, &before, nullptr);
}

TEST_F(Descriptors, AreDuplicatedForThisProcessAlone) {
  const int second = Duplicated(ends_[1]);
  ASSERT_GE(second, 0);
  EXPECT_NE(second, ends_[1]);
  EXPECT_FALSE(IsInherited(second));
  EXPECT_EQ(write(second, "x", 1), 1);
  close(second);
  char read = 0;
  EXPECT_EQ(::read(ends_[0], &read, 1), 1);
  EXPECT_EQ(read, 'x');
}

}  // namespace
}  // namespace qmx::test
