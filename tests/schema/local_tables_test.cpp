#include "schema/local_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace qmx::test {
namespace {

std::string ColumnNames(const LocalTable& table) {
  std::string names;
  for (const LocalColumn& column : table.columns) names += (names.empty() ? "" : " ") + column.name;
  return names;
}

std::string KeyNames(const LocalTable& table) {
  std::string names;
  for (const std::string& column : table.key) names += (names.empty() ? "" : " ") + column;
  return names;
}

TEST(LocalTables, AreTheSeventeenOfTheErpAndTheTwoOfThisSystem) {
  std::vector<std::string> names;
  for (const LocalTable& table : LocalTables()) names.push_back(table.name);
  EXPECT_THAT(names,
              testing::ElementsAre("tcccp001", "tcccp030", "tccom130", "tscfg200", "tscfg220", "tsclm020", "tsclm024",
                                   "tsmdm030", "tsmdm100", "tsmdm105", "tsmdm130", "tsmdm135", "tsmdm140", "tssoc200",
                                   "tssoc205", "tssoc210", "tsspc200", "tstables", "tscalender"));
}

TEST(LocalTables, HaveTheDescriptionsThatTheSchedulingServerGets) {
  EXPECT_EQ(DescriptionOfTable("tsmdm030"), "Service Types");
  EXPECT_EQ(DescriptionOfTable("TSSOC210"), "Service Order Activities");
  for (const char* notCopied : {"tstables", "tscalender", "tsxyz999", ""}) EXPECT_EQ(DescriptionOfTable(notCopied), "");
  EXPECT_EQ(std::count_if(LocalTables().begin(), LocalTables().end(),
                          [](const LocalTable& table) { return !table.description.empty(); }),
            17);
}

TEST(LocalTables, HaveEveryColumnThatIsWritten) {
  std::map<std::string, std::string> columns;
  for (const LocalTable& table : LocalTables()) columns[table.name] = ColumnNames(table);
  const std::map<std::string, std::string> written = {
      {"tcccp001", "ract dsca ptmu hrsd avlb"},
      {"tcccp030", "ccal ract stdt sttm endt entm cutm ccap ustm uftm ahrs"},
      {"tccom130", "cadr nama namc hono Name pstc"},
      {"tscfg200", "ccfg crob oseq dsca cogr cusc manu ccal cdel"},
      {"tscfg220", "ccfg dsca ofbp cwoc csar tecr teca tecb cusc czon dist trti ccal cadr"},
      {"tsclm020", "crtc dsca ccal rctt enst sltn"},
      {"tsclm024", "sltt dsca"},
      {"tsmdm030", "cstp dsca prod ract"},
      {"tsmdm100", "cwoc dsca wctp cmwc cwar clrt srtp srep"},
      {"tsmdm105", "csar dsca artp cmsa cwoc cwar trti dist ccha CCur clrt"},
      {"tsmdm130", "skll dsca clrt"},
      {"tsmdm135", "emno skll cogr afct"},
      {"tsmdm140", "emno dsca cwoc ccal frmn csar ccar ouser mpod"},
      {"tssoc200",
       "orno ccfg ofbp stna lcad cprj ordt osta cwoc csar emno blyn ityn crit ordu tvdu pstm pftm estm lftm otim appo "
       "rsrp tstm astm aftm csco csqu stbp emer minu ract"},
      {"tssoc205", "orno Line emno acln"},
      {"tssoc210",
       "orno acln crac dsca cstp cagr ccfg crob oseq ccll crtc prpr cupr obpr cprl cstn asta skla sklb sklc acdu appo "
       "pstm pftm estm lftm astm aftm"},
      {"tsspc200",
       "ccfg crac aseq dsca cagr cstp cwoc crob oseq esct psct pfct lfct adur trtm skla sklb sklc appo stat orno acln"},
      {"tstables", "TableName in_use freq reqd syme lutm"},
      {"tscalender", "ccal sttm entm"},
  };
  EXPECT_EQ(columns, written);
}

TEST(LocalTables, HaveTheKeysByWhichRowsAreFoundAgain) {
  std::map<std::string, std::string> keys;
  for (const LocalTable& table : LocalTables()) keys[table.name] = KeyNames(table);
  const std::map<std::string, std::string> wanted = {
      {"tcccp001", "ract"},
      {"tcccp030", "ccal ract stdt sttm"},
      {"tccom130", "cadr"},
      {"tscfg200", "ccfg crob oseq"},
      {"tscfg220", "ccfg"},
      {"tsclm020", "crtc"},
      {"tsclm024", "sltt"},
      {"tsmdm030", "cstp"},
      {"tsmdm100", "cwoc"},
      {"tsmdm105", "csar"},
      {"tsmdm130", "skll"},
      {"tsmdm135", "emno skll cogr"},
      {"tsmdm140", "emno"},
      {"tssoc200", "orno"},
      {"tssoc205", "orno Line"},
      {"tssoc210", "orno acln"},
      {"tsspc200", "ccfg crac aseq"},
      {"tstables", "TableName"},
      {"tscalender", ""},
  };
  EXPECT_EQ(keys, wanted);
}

TEST(LocalTables, KeyColumnsAreColumnsOfTheirTable) {
  for (const LocalTable& table : LocalTables()) {
    for (const std::string& key : table.key) {
      EXPECT_TRUE(std::any_of(table.columns.begin(), table.columns.end(),
                              [&](const LocalColumn& column) { return column.name == key; }))
          << table.name << '.' << key;
    }
  }
}

TEST(LocalTables, HaveTextColumnsOfAtLeast100Characters) {
  for (const LocalTable& table : LocalTables()) {
    for (const LocalColumn& column : table.columns) {
      if (column.type == Variant::Kind::Text) {
        EXPECT_GE(column.width, 100) << table.name << '.' << column.name;
      }
    }
  }
}

}  // namespace
}  // namespace qmx::test
