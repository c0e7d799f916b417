#include "tests/tools/qmxadmin/copying.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

using QmxAdminVerifyOnASystem = CopyingOnASystem;
INSTANTIATE_TEST_SUITE_P(Over, QmxAdminVerifyOnASystem, testing::ValuesIn(SystemsUnderTest()),
                         [](const auto& info) { return info.param.name; });

TEST_P(QmxAdminVerifyOnASystem, FindsNothingAfterACopyAndEveryChangeThen) {
  ASSERT_EQ(Copy({"tsmdm140", "tcccp030", "tssoc200", "--jobs", "2"}).status, 0);
  const Process same = Verify({"tsmdm140", "tcccp030", "tssoc200"});
  EXPECT_EQ(same.status, 0) << same.err;
  EXPECT_THAT(same.out, MatchesRegex("tsmdm140: 30 in the ERP, 30 here: no difference\n"
                                     "tcccp030: ([0-9]+) in the ERP, [0-9]+ here: no difference\n"
                                     "tssoc200: 5 in the ERP, 5 here: no difference\n"));
  EXPECT_THAT(same.err, IsEmpty());

  Sql("update tsmdm140 set dsca = 'It''s \\ me', mpod = 0.1 where emno = 'E00002'");
  Sql("delete from tsmdm140 where emno = 'E00003'");
  Sql("insert into tsmdm140 (emno) values ('E''1')");
  const Process differs = Verify({"tsmdm140"});
  EXPECT_EQ(differs.status, 1) << differs.err;
  EXPECT_THAT(differs.out, HasSubstr("tsmdm140 surplus: emno='E'1'\n"));
  EXPECT_THAT(differs.out, HasSubstr("tsmdm140 different: emno='E00002': dsca is 'It's \\ me', in the ERP '"));
  EXPECT_THAT(differs.out, HasSubstr("'; mpod is 0.1, in the ERP "));
  EXPECT_THAT(differs.out, HasSubstr("tsmdm140 missing: emno='E00003'\n"));
  EXPECT_THAT(differs.out, HasSubstr("tsmdm140: 30 in the ERP, 30 here: 1 missing, 1 surplus, 1 different\n"));
}

}  // namespace
}  // namespace qmx::test
