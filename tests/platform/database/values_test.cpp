#include <limits>

#include "tests/platform/database/record_set_test.h"

namespace qmx::test {
namespace {

using testing::ElementsAre;

class RecordsetValues : public RecordSetTest {
 protected:
  void SetUp() override {
    CreatePeople();
    records = OpenedTable("people");
    records->AddNew();
    records->Fields("code") = "A";
  }

  // What a column holds after the row was saved and read anew.
  Variant Kept(const char* column, const Variant& value) {
    records->Fields(column) = value;
    records->Update();
    return Opened("select * from people")->Fields(column).Value();
  }

  std::unique_ptr<Recordset> records;
};
INSTANTIATE_TEST_SUITE_P(Over, RecordsetValues, testing::ValuesIn(DriversUnderTest()), DriverName);

TEST_P(RecordsetValues, TextsComeBackWhole) {
  for (const std::string text :
       {"", " ", "it's \"quoted\"; -- and \\ more", "Zürich – 東京 – 🙂", "two\r\nlines\tand a tab", "%_*?"}) {
    EXPECT_EQ(Kept("name", text), Variant(text));
  }
  const std::string longText(5000, 'x');
  connection.Execute("create table letters (body " + GetParam().longTextType + ")");
  const auto letters = OpenedTable("letters");
  letters->AddNew();
  letters->Fields("body") = longText;
  letters->Close();
  EXPECT_EQ(Opened("select * from letters")->Fields("body").Value(), Variant(longText));
}

TEST_P(RecordsetValues, NumbersComeBackExactly) {
  for (const double number : {0.0, 2.5, -0.1, 1e15, 123456789.125, 1e-7, 99999.9999}) {
    EXPECT_EQ(Kept("weight", number), Variant(number));
  }
  for (const std::int32_t number :
       {0, -1, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(Kept("visits", number), Variant(number));
  }
  EXPECT_EQ(Kept("floor", -3), Variant(static_cast<std::int16_t>(-3)));
}

TEST_P(RecordsetValues, DatesComeBackWithAndWithoutATimeOfDay) {
  for (const DateTime moment : {DateTime::FromDate(2026, 11, 20), DateTime::FromDate(2026, 11, 20).PlusTime(14, 5, 9),
                                DateTime::FromDate(1899, 12, 30), DateTime::FromDate(1850, 1, 1).PlusTime(23, 59, 59),
                                DateTime::FromDate(9999, 12, 31)}) {
    EXPECT_EQ(Kept("born", moment), Variant(moment));
  }
}

TEST_P(RecordsetValues, NullIsKeptAndEmptyBecomesNull) {
  const std::pair<const char*, Variant> columns[] = {{"name", Variant("Ann")},
                                                     {"weight", Variant(70.5)},
                                                     {"floor", Variant(static_cast<std::int16_t>(4))},
                                                     {"visits", Variant(12)},
                                                     {"born", Variant(DateTime::FromDate(1990, 5, 17))}};
  for (const auto& [column, value] : columns) {
    for (const Variant& nothing : {Variant::Null(), Variant()}) {
      EXPECT_EQ(Kept(column, value), value) << column;
      EXPECT_TRUE(Kept(column, nothing).IsNull()) << column;
    }
  }
}

TEST_P(RecordsetValues, AValueBecomesItsColumnsTypeWhenItIsAssigned) {
  records->Fields("name") = 12.5;
  EXPECT_EQ(records->Fields("name").Value(), Variant("12.5"));
  records->Fields("floor") = "4";
  EXPECT_EQ(records->Fields("floor").Value(), Variant(static_cast<std::int16_t>(4)));
  records->Fields("floor") = 2.5;
  EXPECT_EQ(records->Fields("floor").Value(), Variant(static_cast<std::int16_t>(2)));
  records->Fields("weight") = "70.25";
  EXPECT_EQ(records->Fields("weight").Value(), Variant(70.25));
  records->Fields("visits") = static_cast<std::uint8_t>(1);
  EXPECT_EQ(records->Fields("visits").Value(), Variant(1));
  records->Fields("born") = "2026-7-4 8:00";
  EXPECT_EQ(records->Fields("born").Value(), Variant(DateTime::FromDate(2026, 7, 4).PlusTime(8, 0, 0)));
  records->Update();
  EXPECT_THAT(Rows("select name, floor, weight, visits, born from people"),
              ElementsAre("12.5|2|70.25|1|2026-07-04 08:00:00"));
}

TEST_P(RecordsetValues, WhatCannotBeConvertedFailsAtItsAssignmentWithTableColumnAndKey) {
  const Error error = Raised([&] { records->Fields("weight") = "heavy"; });
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.DetailOf("table"), "people");
  EXPECT_EQ(error.DetailOf("column"), "weight");
  EXPECT_EQ(error.DetailOf("key"), "code='A'");
  EXPECT_EQ(Raised([&] { records->Fields("born") = "soon"; }).Number(), 13);
  EXPECT_EQ(Raised([&] { records->Fields("born") = ""; }).Number(), 13);
  EXPECT_EQ(Raised([&] { records->Fields("floor") = 40000; }).Number(), 6);
  EXPECT_EQ(Raised([&] { records->Fields("visits") = 3e9; }).Number(), 6);
  EXPECT_EQ(Raised([&] { records->Fields("name") = Object(); }).Number(), 13);
}

TEST_P(RecordsetValues, AnAssignmentThatFailedLeavesTheRowAsItWas) {
  records->Fields("weight") = 70.5;
  Raised([&] { records->Fields("weight") = "heavy"; });
  EXPECT_EQ(records->Fields("weight").Value(), Variant(70.5));
  records->Update();
  Raised([&] { records->Fields("floor") = "top"; });
  driver.Restart();
  records->Update();
  EXPECT_THAT(driver.Record(), ElementsAre());  // nothing became pending
}

TEST_P(RecordsetValues, NotANumberAndInfinityAreRefused) {
  EXPECT_EQ(Raised([&] { records->Fields("weight") = std::numeric_limits<double>::quiet_NaN(); }).Number(), 6);
  EXPECT_EQ(Raised([&] { records->Fields("weight") = std::numeric_limits<double>::infinity(); }).Number(), 6);
}

TEST_P(RecordsetValues, DatesCompareInTheDatabaseAsDatesDo) {
  records->Fields("born") = DateTime::FromDate(2026, 1, 10);
  records->Update();
  const auto found = [&](const char* comparison, int day) {
    const DateTime moment = DateTime::FromDate(2026, 1, day);
    return Opened(SqlText("select * from people where born").Append(comparison).Append("'").Value(moment).Append("'"))
        ->recordcount();
  };
  EXPECT_EQ(found(">", 9), 1);
  EXPECT_EQ(found(">", 10), 0);
  EXPECT_EQ(found("<=", 10), 1);
  EXPECT_EQ(found("=", 10), 1);
}

TEST_P(RecordsetValues, TextKeysCompareLetterByLetter) {
  records->Fields("name") = "upper";
  records->AddNew();
  records->Fields("code") = "a";
  records->Update();
  EXPECT_EQ(Opened("select * from people where code='a'")->recordcount(), 1);
  EXPECT_EQ(Opened("select * from people where code='A'")->Fields("name").Value(), Variant("upper"));
}

}  // namespace
}  // namespace qmx::test
