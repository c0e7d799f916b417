#include "tools/qmxadmin/runs/run_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "tests/support/environment.h"
#include "tests/support/process.h"
#include "tests/tools/qmxadmin/runs/run_log.h"
#include "tools/qmxadmin/runs/run_history.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class TheReport : public testing::Test {
 protected:
  TheReport() {
    tzset();
    log_.AddComplete("r1", "tsmdm030", "2026-11-18T14:00:00.000+01:00", "2026-11-18T14:00:01.500+01:00");
    log_.AddFailed("r2", "tsmdm030", "2026-11-20T14:30:00.000+01:00", "2026-11-20T14:30:01.500+01:00");
    log_.AddStart("r3", "tssoc200", "2026-11-20T14:50:00.000+01:00");
  }

  std::string Page() {
    return RunReport({{"tsmdm030", "Service Types"}, {"tssoc200", "Service Orders"}, {"tsmdm100", "Service Centers"}},
                     ReadRuns(log_.Folder()), RunMoment(std::chrono::seconds(1795183200)));
  }

  EnvironmentVariable zone_{"TZ", "CET-1"};
  RunLog log_;
};

TEST_F(TheReport, HasTheStateOfEachTable) {
  const std::string page = Page();
  EXPECT_THAT(page, HasSubstr("<h3>tsmdm030 <span>Service Types</span></h3>\n<div class=\"state bad\">failed</div>"));
  EXPECT_THAT(page, HasSubstr("<dt>last run</dt><dd>2026-11-20 14:30:00, 30 min ago</dd><dt>took</dt><dd>1.50 s</dd>"
                              "<dt>rows</dt><dd>7 added, 2 updated, 1 removed</dd><dt>method</dt><dd>full</dd>"
                              "<dt>last complete</dt><dd>2026-11-18 14:00:00</dd>"
                              "<dt>last update</dt><dd>2026-11-20 14:00:00</dd>"));
  EXPECT_THAT(page, HasSubstr("<div class=\"state held\">running</div>"));
  EXPECT_THAT(
      page, HasSubstr("<h3>tsmdm100 <span>Service Centers</span></h3>\n<div class=\"state never\">no run is recorded"));
}

TEST_F(TheReport, HasAStripOfThirtyDaysAndBarsOfDurationsAndRows) {
  const std::string page = Page();
  const std::regex cell("<rect class=\"(good|bad|held|none)\"");
  EXPECT_EQ(std::distance(std::sregex_iterator(page.begin(), page.end(), cell), {}), 60);  // of two tables
  EXPECT_THAT(page, HasSubstr("2026-11-18: 1 complete, 0 failed, 0 others"));
  EXPECT_THAT(page, HasSubstr("2026-11-20: 0 complete, 1 failed, 0 others"));
  EXPECT_THAT(page, HasSubstr("<title>2026-11-18 14:00:00: 1.50 s</title>"));
  EXPECT_THAT(page, HasSubstr("<figcaption>Rows of 1 complete run, 10 at most</figcaption>"));
  EXPECT_THAT(page, HasSubstr("width=\"9.60\" height=\"54.00\"><title>2026-11-18 14:00:00: 7 added"));
}

TEST_F(TheReport, LeavesNoGapsBetweenNarrowBars) {
  for (int run = 0; run < 100; ++run)
    log_.AddComplete("n" + std::to_string(run), "tsmdm030", "2026-11-19T14:00:00.000+01:00",
                     "2026-11-19T14:00:01.500+01:00");
  const std::string page = Page();
  EXPECT_THAT(page, HasSubstr("<figcaption>Durations of 101 complete runs, 1.50 s at most</figcaption>"));
  EXPECT_THAT(page, HasSubstr("<rect class=\"bar\" x=\"2.97\" y=\"1.00\" width=\"2.97\""));
}

TEST_F(TheReport, HasTheLastFailuresWithTheirCauses) {
  EXPECT_THAT(Page(),
              HasSubstr("<article><h3>tsmdm030, 2026-11-20 14:30:00: failed</h3><ol>"
                        "<li> Copy &lt;failed&gt;<span> error 3365, Copy Service Types</span></li>"
                        "<li>There is no column &quot;ract&quot;.<span> error 3265, ADODB.Recordset; column: ract; "
                        "key: cstp='ADV'</span></li></ol></article>"));
}

TEST_F(TheReport, HasNoScriptAndNoReferenceToAnythingOutside) {
  for (const char* text : {"<script", "http", "src=", "href=", "url(", "@import"})
    EXPECT_THAT(Page(), Not(HasSubstr(text)));
}

TEST_F(TheReport, ParsesAsTheElementsThatItOpens) {
  log_.AddFailed("r4", "a<b>&\"c", "2026-11-20T14:55:00.000+01:00", "2026-11-20T14:55:01.500+01:00");
  WriteFile(log_.File("page"), Page());
  const Process check = test::Run("/usr/bin/python3", {"-c", R"(
import html.parser, sys
class Check(html.parser.HTMLParser):
    opened = []
    def handle_starttag(self, tag, attrs):
        if tag != 'meta': self.opened.append(tag)
    def handle_startendtag(self, tag, attrs): pass
    def handle_endtag(self, tag):
        assert self.opened and self.opened.pop() == tag, tag
check = Check()
check.feed(open(sys.argv[1]).read())
check.close()
assert check.opened == [], check.opened
print('parsed'))",
                                                       log_.File("page")});
  EXPECT_EQ(check.out, "parsed\n") << check.err;
}

}  // namespace
}  // namespace qmx::test
