#include "platform/trace/trace.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "platform/variant.h"
#include "tests/support/environment.h"
#include "tests/support/raised.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

TEST(ATrace, AppendsOneLineACallAndEachIsThereAtOnce) {
  TempFolder folder;
  WriteFile(folder / "trace", "{\"earlier\":1}\n");
  Trace trace(folder / "trace");
  trace.Write(JsonLine::Object().Add("kind", "component").Add("op", "create"));
  EXPECT_EQ(ReadFile(folder / "trace"), "{\"earlier\":1}\n{\"kind\":\"component\",\"op\":\"create\"}\n");
  trace.Write(JsonLine::Object().Add("text", "line\nend"));
  EXPECT_EQ(ReadFile(folder / "trace"),
            "{\"earlier\":1}\n{\"kind\":\"component\",\"op\":\"create\"}\n{\"text\":\"line\\nend\"}\n");
}

TEST(ATrace, ThatCannotBeOpenedIsAnErrorAtTheStart) {
  TempFolder folder;
  const Error error = Raised([&] { Trace trace(folder / "none/trace"); });
  EXPECT_EQ(error.Number(), 75);
  EXPECT_EQ(error.Source(), "Trace");
  EXPECT_EQ(error.Description(), "The trace file \"" + (folder / "none/trace") +
                                     "\" that QMX_TRACE names cannot be written: No such file or directory.");
}

TEST(ATrace, IsNamedByTheEnvironment) {
  TempFolder folder;
  {
    const EnvironmentVariable unset("QMX_TRACE", nullptr);
    EXPECT_FALSE(Trace::FromEnvironment());
  }
  {
    const EnvironmentVariable empty("QMX_TRACE", "");
    EXPECT_FALSE(Trace::FromEnvironment());
  }
  const EnvironmentVariable set("QMX_TRACE", (folder / "trace").c_str());
  EXPECT_TRUE(Trace::FromEnvironment());
  EXPECT_TRUE(std::filesystem::exists(folder / "trace"));
}

TEST(ATrace, ShowsInvalidUtf8AsAReplacementCharacter) {
  TempFolder folder;
  Trace trace(folder / "trace");
  trace.Write(JsonLine::Object().Add("text", "M\xfcller"));
  EXPECT_EQ(ReadFile(folder / "trace"), "{\"text\":\"M\xef\xbf\xbdller\"}\n");
}

TEST(ATrace, WritesValuesOfEveryKind) {
  const auto shown = [](const Variant& value) { return TraceValue(value); };
  EXPECT_EQ(shown(Variant()), "{}");
  EXPECT_EQ(shown(Variant::Null()), "null");
  EXPECT_EQ(shown(true), "true");
  EXPECT_EQ(shown(std::uint8_t{200}), "200");
  EXPECT_EQ(shown(std::int16_t{-1}), "-1");
  EXPECT_EQ(shown(4711), "4711");
  EXPECT_EQ(shown(99999.9999), "99999.9999");
  EXPECT_EQ(shown("Grüße \"x\""), "\"Grüße \\\"x\\\"\"");
  EXPECT_EQ(shown(DateTime::FromDate(2026, 11, 20)), "{\"date\":\"2026-11-20\"}");
  EXPECT_EQ(shown(DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9)), "{\"date\":\"2026-11-20 14:05:09\"}");
  EXPECT_EQ(shown(Object()), "{\"object\":null}");
}

}  // namespace
}  // namespace qmx::test
