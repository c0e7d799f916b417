#include "tools/qmxadmin/text_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::Not;

const Listing kOrders = {{{.key = "table", .title = "TABLE"},
                          {.key = "description", .title = "DESCRIPTION", .prose = true, .weight = 1},
                          {.key = "in_progress", .title = "IN PROGRESS"},
                          {.key = "rows", .title = "ROWS", .toTheRight = true},
                          {.key = "note", .title = "NOTE", .prose = true, .shownEmpty = false}},
                         {{"tssoc200", "Service Orders", true, std::int32_t{400}, Variant::Null()},
                          {"tssoc210", "Service Order Activities", false, Variant::Null(), Variant::Null()}}};

Terminal Wide(int width) { return {width, false}; }

TEST(TextTable, PutsValuesBelowTheirTitlesAndNumbersToTheRight) {
  EXPECT_EQ(TextTable(kOrders, {}),
            "TABLE     DESCRIPTION               IN PROGRESS  ROWS\n"
            "tssoc200  Service Orders            yes           400\n"
            "tssoc210  Service Order Activities  no              -\n");
}

TEST(TextTable, IsTheSameOnATerminalThatIsWideEnough) {
  EXPECT_EQ(TextTable(kOrders, Wide(53)), TextTable(kOrders, {}));
}

TEST(TextTable, CutsProseOnANarrowTerminal) {
  EXPECT_EQ(TextTable(kOrders, Wide(45)),
            "TABLE     DESCRIPTION       IN PROGRESS  ROWS\n"
            "tssoc200  Service Orders    yes           400\n"
            "tssoc210  Service Order A…  no              -\n");
}

TEST(TextTable, LeavesOutTheLightestColumnAndOfSeveralTheLast) {
  EXPECT_EQ(TextTable(kOrders, Wide(30)),
            "TABLE     IN PROGRESS  ROWS\n"
            "tssoc200  yes           400\n"
            "tssoc210  no              -\n");
  EXPECT_EQ(TextTable(kOrders, Wide(26)),
            "TABLE     IN PROGRESS\n"
            "tssoc200  yes\n"
            "tssoc210  no\n");
  EXPECT_EQ(TextTable(kOrders, Wide(20)), "TABLE\ntssoc200\ntssoc210\n");
}

TEST(TextTable, CutsCodesOnlyIfTheTerminalIsNarrowerThanThey) {
  EXPECT_EQ(TextTable(kOrders, Wide(8)), "TABLE\ntssoc200\ntssoc210\n");
  EXPECT_EQ(TextTable(kOrders, Wide(5)), "TABLE\ntsso…\ntsso…\n");
  EXPECT_EQ(TextTable(kOrders, Wide(1)), "…\n…\n…\n");
}

TEST(TextTable, ShowsAnOptionalColumnOnceItHasAValue) {
  Listing listing = kOrders;
  listing.rows[1][4] = "no such table";
  EXPECT_EQ(TextTable(listing, {}),
            "TABLE     DESCRIPTION               IN PROGRESS  ROWS  NOTE\n"
            "tssoc200  Service Orders            yes           400\n"
            "tssoc210  Service Order Activities  no              -  no such table\n");
}

TEST(TextTable, LeavesOutColumnsWithoutATitle) {
  EXPECT_EQ(TextTable({{{"table", "TABLE"}, {"id", ""}}, {{"tssoc200", "17"}}}, {}), "TABLE\ntssoc200\n");
  EXPECT_EQ(TextTable({{{"id", ""}}, {{"17"}}}, {}), "");
}

TEST(TextTable, OfNoRowsIsItsTitles) { EXPECT_EQ(TextTable({{{"table", "TABLE"}}, {}}, {}), "TABLE\n"); }

TEST(TextTable, AlignsLettersOfEveryWidth) {
  EXPECT_EQ(TextTable({{{"name", "NAME"}, {.key = "rows", .title = "ROWS", .toTheRight = true}},
                       {{"Müller", std::int32_t{1}}, {"日本", std::int32_t{22}}}},
                      {}),
            "NAME    ROWS\n"
            "Müller     1\n"
            "日本      22\n");
}

TEST(TextTable, NeverSendsControlSequencesOfValuesToTheTerminal) {
  EXPECT_THAT(TextTable({{{"name", "NAME"}}, {{"\033[2J\nnext"}}}, Wide(80)), testing::EndsWith("\n [2J next\n"));
}

TEST(TextTable, HasBoldTitlesIfColoursAreWanted) {
  EXPECT_THAT(TextTable(kOrders, {80, true}), HasSubstr("\033[1mTABLE"));
  EXPECT_THAT(TextTable(kOrders, {80, false}), Not(HasSubstr("\033")));
}

}  // namespace
}  // namespace qmx::test
