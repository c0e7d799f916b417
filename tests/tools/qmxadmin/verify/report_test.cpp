#include "tools/qmxadmin/verify/report.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

namespace qmx::test {
namespace {

LocalTable FourKinds() {
  LocalTable table;
  table.name = "kinds";
  table.columns = {{"code", Variant::Kind::Text, 20},
                   {"line", Variant::Kind::Int32},
                   {"name", Variant::Kind::Text, 50},
                   {"stdt", Variant::Kind::DateTime}};
  table.key = {"code", "line"};
  return table;
}

RowValues Row(const char* code, std::int32_t line, Variant name) {
  return {code, line, std::move(name), DateTime::FromDate(2026, 11, 20)};
}

std::string Told(OutputForm form) {
  std::ostringstream out;
  const LocalTable table = FourKinds();
  const auto report = MakeVerifyReport(out, form);
  report->Begin(table);
  report->Missing(Row("A", 1, "x"));
  report->Surplus(Row("B\x1b[2J", 2, "x"));
  report->Different(Row("C", 3, "x"), {"C", std::int32_t{3}, Variant::Null(), DateTime::FromDate(2026, 11, 21)},
                    {2, 3});
  report->Repeated(Row("D", 4, "x"), 2);
  EXPECT_FALSE(report->End({5, 6, 7}));
  report->Begin(table);
  EXPECT_TRUE(report->End({3, 3, 0}));
  report->Begin(table);
  EXPECT_TRUE(report->End({2, 0, 2}));
  report->Close();
  return out.str();
}

TEST(AVerifyReport, PrintsOneLinePerDifferenceAndTheCountsOfEachTable) {
  EXPECT_EQ(
      Told(OutputForm::Table),
      "kinds missing: code='A', line=1\n"
      "kinds surplus: code='B [2J', line=2\n"
      "kinds different: code='C', line=3: name is 'x', in the ERP null; stdt is 2026-11-20, in the ERP 2026-11-21\n"
      "kinds repeated: code='D', line=4 is listed 2 times\n"
      "kinds: 6 in the ERP, 5 here: 1 missing, 1 surplus, 1 different, 1 repeated; 7 local rows are older than "
      "the period that the ERP lists\n"
      "kinds: 3 in the ERP, 3 here: no difference\n"
      "kinds: 0 in the ERP, 2 here: no difference; 2 local rows are older than the period that the ERP lists; "
      "the ERP lists nothing, and a full copy would keep these rows\n");
}

TEST(AVerifyReport, ShowsNumbersToTheLastDigit) {
  LocalTable table = FourKinds();
  table.columns[2].type = Variant::Kind::Double;
  std::ostringstream out;
  const auto report = MakeVerifyReport(out, OutputForm::Table);
  report->Begin(table);
  report->Different(Row("C", 3, 0.3), Row("C", 3, 0.1 + 0.2), {2});
  EXPECT_EQ(out.str(), "kinds different: code='C', line=3: name is 0.3, in the ERP 0.30000000000000004\n");
}

TEST(AVerifyReport, IsOneJsonArray) {
  const nlohmann::json told = nlohmann::json::parse(Told(OutputForm::Json));
  ASSERT_EQ(told.size(), 7U);
  EXPECT_EQ(told[0], nlohmann::json::parse(R"({"table":"kinds","difference":"missing","key":{"code":"A","line":1}})"));
  EXPECT_EQ(told[2], nlohmann::json::parse(R"({"table":"kinds","difference":"different","key":{"code":"C","line":3},
    "local":{"name":"x","stdt":"2026-11-20 00:00:00"},"erp":{"name":null,"stdt":"2026-11-21 00:00:00"}})"));
  EXPECT_EQ(told[3]["times"], 2);
  EXPECT_EQ(told[4], nlohmann::json::parse(R"({"table":"kinds","erp_rows":6,"local_rows":5,"older":7,
    "missing":1,"surplus":1,"different":1,"repeated":1})"));
}

TEST(AVerifyReport, OfNothingIsAnEmptyArray) {
  std::ostringstream out;
  MakeVerifyReport(out, OutputForm::Json)->Close();
  EXPECT_TRUE(nlohmann::json::parse(out.str()).empty());
}

}  // namespace
}  // namespace qmx::test
