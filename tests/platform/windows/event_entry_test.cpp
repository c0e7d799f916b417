#include "platform/windows/event_entry.h"

#include <gmock/gmock.h>

namespace qmx::test {
namespace {

TEST(AnEntryOfTheEventLog, HasItsTextAsItIs) {
  EXPECT_EQ(EventEntry("Table       : tsmdm030\r\n100 % of \xC3\xA4%s%"),
            L"Table       : tsmdm030\r\n100 % of \u00E4%s%");
  EXPECT_EQ(EventEntry(""), L"");
}

TEST(AnEntryOfTheEventLog, HasNothingThatTheViewerReplaces) {
  EXPECT_EQ(EventEntry("key '%1', '%%4711' and '%9!s!'"), L"key '%\u200B1', '%\u200B%\u200B4711' and '%\u200B9!s!'");
  EXPECT_EQ(EventEntry("%%%"), L"%\u200B%\u200B%");
}

TEST(AnEntryOfTheEventLog, IsNotLongerThanWindowsTakes) {
  EXPECT_EQ(EventEntry(std::string(40'000, 'a')), std::wstring(31'839, L'a'));
  EXPECT_EQ(EventEntry(std::string(40'000, '%')).size(), 31'839U);
}

}  // namespace
}  // namespace qmx::test
