#include "platform/system/environment.h"

#include <gmock/gmock.h>
#include <windows.h>

namespace qmx::test {
namespace {

TEST(Environment, IsReadAsUtf8) {
  SetEnvironmentVariableW(L"QMX_TEST_VARIABLE", L"Gr\u00F6\u00DFe \u65E5");
  EXPECT_EQ(EnvironmentVariable("QMX_TEST_VARIABLE"), "Gr\u00F6\u00DFe \u65E5");
}

TEST(Environment, HasLongEmptyAndMissingVariables) {
  SetEnvironmentVariableW(L"QMX_TEST_VARIABLE", std::wstring(5000, L'x').c_str());
  EXPECT_EQ(EnvironmentVariable("QMX_TEST_VARIABLE"), std::string(5000, 'x'));
  SetEnvironmentVariableW(L"QMX_TEST_VARIABLE", L"");
  EXPECT_EQ(EnvironmentVariable("QMX_TEST_VARIABLE"), "");
  SetEnvironmentVariableW(L"QMX_TEST_VARIABLE", nullptr);
  EXPECT_EQ(EnvironmentVariable("QMX_TEST_VARIABLE"), std::nullopt);
}

TEST(Environment, SeparatesFoldersBySemicolonsBecauseDrivesHaveColons) { EXPECT_EQ(kSearchPathSeparator, ';'); }

}  // namespace
}  // namespace qmx::test
