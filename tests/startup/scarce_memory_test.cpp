// A start-up that runs out of memory: it ends with a failure that says so, whichever allocation fails, before main too.
#include "tests/startup/data_copy_process.h"

namespace qmx::test {
namespace {

using testing::AnyOf;
using testing::HasSubstr;

class AStartUpShortOfMemory : public DataCopyProcess {
 protected:
  AStartUpShortOfMemory() {
    // Reports of the sanitizers in an abort's place would hide it.
    environment_["ASAN_OPTIONS"] = "detect_leaks=0:handle_abort=0:handle_segv=0";
  }

  Process RunFailing(const std::string& allocation, const std::vector<std::string>& arguments) {
    environment_["QMX_TEST_FAILING_ALLOCATION"] = allocation;
    return test::Run(SHORT_OF_MEMORY, arguments, environment_, folder_.Path());
  }

  // With each allocation failing in turn, once or from there on, until the run ends as it does when none fails.
  // Returns how many allocations failed.
  int FailEach(const std::vector<std::string>& arguments, const std::string& lasting, int step = 1) {
    const Process undisturbed = RunFailing("0", arguments);
    for (int allocation = 1;; allocation += step) {
      const Process run = RunFailing(std::to_string(allocation) + lasting, arguments);
      if (run.status == undisturbed.status && run.err == undisturbed.err && run.out == undisturbed.out)
        return allocation - 1;
      EXPECT_THAT(run.status, AnyOf(1, 2)) << allocation << lasting << ": " << run.err;
      EXPECT_THAT(run.err, HasSubstr("ut of memory")) << allocation << lasting;
      if (HasFailure()) return allocation;
    }
  }
};

TEST_F(AStartUpShortOfMemory, SaysSoInsteadOfItsVersion) {
  EXPECT_GT(FailEach({"--version"}, "", 7), 50);  // most of them before main
  EXPECT_GT(FailEach({"--version"}, " on", 7), 50);
}

TEST_F(AStartUpShortOfMemory, SaysSoInsteadOfWhatIsWrongWithTheArguments) {
  EXPECT_GT(FailEach({"a,b"}, "", 7), 50);
  EXPECT_GT(FailEach({"a,b"}, " on", 7), 50);
}

TEST_F(AStartUpShortOfMemory, SaysSoInsteadOfWhyItCannotConnect) {
  pieces_.connection = "Provider=SQLite;Data Source=" + (folder_ / "none.db");
  EXPECT_GT(FailEach({pieces_.Line()}, "", 11), 100);
  EXPECT_GT(FailEach({pieces_.Line()}, " on", 11), 100);
}

}  // namespace
}  // namespace qmx::test
