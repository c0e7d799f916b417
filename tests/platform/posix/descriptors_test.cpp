#include "platform/system/descriptors.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <string>

namespace qmx::test {
namespace {

class Descriptors : public testing::Test {
 protected:
  Descriptors() { EXPECT_EQ(pipe(ends_.data()), 0); }
  ~Descriptors() override {
    for (const int end : ends_) close(end);
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
  EXPECT_FALSE(TakesALine(-1));
}

TEST_F(Descriptors, TakeALineUntilThePipeIsFull) {
  EXPECT_TRUE(TakesALine(ends_[1]));
  fcntl(ends_[1], F_SETFL, O_NONBLOCK);
  const std::string text(1 << 16, 'x');
  while (write(ends_[1], text.data(), text.size()) > 0) continue;
  EXPECT_FALSE(TakesALine(ends_[1]));
  EXPECT_FALSE(TakesALine(ends_[1], std::chrono::milliseconds(1)));
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
