// What TextFiles promises of numbers and modes, of the real files and of those in memory that tests use in their place.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "platform/system/text_files.h"
#include "tests/support/call_log.h"
#include "tests/support/memory_files.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

enum class Kind { Posix, InMemory };

class TextFilesOf : public testing::TestWithParam<Kind> {
 protected:
  std::string Path(const std::string& name) const { return folder_ / name; }

  template <typename Work>
  static std::int32_t Number(Work&& work) {
    return Raised(std::forward<Work>(work)).Number();
  }

  TempFolder folder_;
  CallLog log_;
  SystemTextFiles posix_;
  MemoryFiles inMemory_{log_};
  TextFiles& files_ = GetParam() == Kind::Posix ? static_cast<TextFiles&>(posix_) : inMemory_;
};
INSTANTIATE_TEST_SUITE_P(Each, TextFilesOf, testing::Values(Kind::Posix, Kind::InMemory), [](const auto& info) {
  return std::string(info.param == Kind::Posix ? "Posix" : "InMemory");
});

TEST_P(TextFilesOf, MayBeOpenBesideEachOther) {
  files_.OpenForAppend(Path("one"), 1);
  files_.OpenForAppend(Path("two"), 2);
  files_.Print(1, "a");
  files_.Print(2, "b,c");
  files_.Print(1, "d");
  files_.Close(1);
  files_.Close(2);
  files_.OpenForInput(Path("one"), 2);
  files_.OpenForInput(Path("two"), 1);
  EXPECT_EQ(files_.InputField(2), "a");
  EXPECT_EQ(files_.InputField(1), "b");
  EXPECT_EQ(files_.InputField(2), "d");
  EXPECT_EQ(files_.InputField(1), "c");
  EXPECT_EQ(Number([&] { files_.InputField(2); }), 62);
  EXPECT_EQ(Number([&] { files_.InputField(1); }), 62);
}

TEST_P(TextFilesOf, TakeANumberOnce) {
  files_.OpenForAppend(Path("one"), 1);
  EXPECT_EQ(Number([&] { files_.OpenForAppend(Path("two"), 1); }), 55);
  EXPECT_EQ(Number([&] { files_.OpenForInput(Path("one"), 1); }), 55);
  files_.Close(1);
  files_.OpenForInput(Path("one"), 1);
}

TEST_P(TextFilesOf, DoNotKnowANumberThatIsNotOpen) {
  files_.OpenForAppend(Path("one"), 1);
  EXPECT_EQ(Number([&] { files_.Print(2, "x"); }), 52);
  EXPECT_EQ(Number([&] { files_.Write(2, {"x"}); }), 52);
  EXPECT_EQ(Number([&] { files_.InputField(2); }), 52);
  EXPECT_EQ(Number([&] { files_.Close(2); }), 52);
  files_.Close(1);
  EXPECT_EQ(Number([&] { files_.Print(1, "x"); }), 52);
  EXPECT_EQ(Number([&] { files_.Close(1); }), 52);
}

TEST_P(TextFilesOf, AreForAppendingOrForInput) {
  files_.OpenForAppend(Path("one"), 1);
  EXPECT_EQ(Number([&] { files_.InputField(1); }), 52);
  files_.Write(1, {"kept"});
  files_.Close(1);
  files_.OpenForInput(Path("one"), 1);
  EXPECT_EQ(Number([&] { files_.Print(1, "x"); }), 52);
  EXPECT_EQ(Number([&] { files_.Write(1, {"x"}); }), 52);
}

TEST_P(TextFilesOf, AreNotMadeByInput) {
  EXPECT_EQ(Number([&] { files_.OpenForInput(Path("none"), 1); }), 53);
  files_.OpenForAppend(Path("none"), 1);
}

}  // namespace
}  // namespace qmx::test
