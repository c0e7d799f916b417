#include "tools/qmxadmin/runs/run_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "platform/run_records/record_fields.h"
#include "tools/qmxadmin/runs/run_history.h"

namespace qmx {
namespace {

constexpr int kDays = 30;
constexpr std::size_t kFailures = 20;
constexpr double kPlotWidth = 300;
constexpr double kPlotHeight = 56;
constexpr double kNarrow = 4;  // gaps between narrower bars would turn them grey

constexpr const char* kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Copies of the ERP's tables</title>
<style>
:root { color-scheme: light dark; --ink: #1d2a33; --soft: #586b78; --paper: #ffffff; --line: #d5dde3; --bar: #2f6f8f;
        --good: #2e7d4f; --bad: #c0392b; --held: #b7791f; --none: #e6ebef; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e4ebf0; --soft: #9fb0bc; --paper: #14191d; --line: #313b43; --bar: #6fb2d4;
          --good: #4fb37a; --bad: #ef6a5b; --held: #e0a84a; --none: #252d33; }
}
body { margin: 0 auto; padding: 1rem; max-width: 76rem; background: var(--paper); color: var(--ink);
       font: 15px/1.45 "DejaVu Sans", Verdana, "Segoe UI", Helvetica, Arial, sans-serif; }
h1 { font-size: 1.4rem; margin: 0 0 .2rem; } h2 { font-size: 1.1rem; margin: 2rem 0 .5rem; }
p { margin: 0 0 1rem; color: var(--soft); }
.tables { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(100%, 21rem), 1fr)); gap: 1rem; align-items: start; }
section { border: 1px solid var(--line); border-radius: 6px; padding: .7rem .9rem; min-width: 0; }
h3 { margin: 0; font-size: 1rem; } h3 span { color: var(--soft); font-weight: normal; }
.state { margin: .2rem 0 .5rem; font-weight: bold; overflow-wrap: anywhere; }
.good { color: var(--good); } .bad { color: var(--bad); } .held { color: var(--held); } .never { color: var(--soft); }
dl { display: grid; grid-template-columns: auto 1fr; gap: 0 .8rem; margin: 0 0 .6rem; font-size: .8rem; }
dt { color: var(--soft); } dd { margin: 0; overflow-wrap: anywhere; }
svg { display: block; width: 100%; height: auto; } svg text { fill: var(--soft); font-size: 10px; }
figure { margin: .5rem 0 0; } figcaption { color: var(--soft); font-size: .78rem; }
rect.good { fill: var(--good); } rect.bad { fill: var(--bad); } rect.held { fill: var(--held); } rect.none { fill: var(--none); }
rect.bar { fill: var(--bar); } line { stroke: var(--line); }
article { border-left: 3px solid var(--bad); padding: .1rem 0 .1rem .8rem; margin: 0 0 1rem; }
article h3 { font-size: .95rem; } ol { margin: .3rem 0; padding-left: 1.4rem; } li { overflow-wrap: anywhere; font-size: .86rem; }
li span { color: var(--soft); }
</style>
</head>
<body>
)";

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else if (c == '>')
      escaped += "&gt;";
    else if (c == '"')
      escaped += "&quot;";
    else
      escaped += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? ' ' : c;
  }
  return escaped;
}

std::string DayOf(RunMoment moment) { return LocalText(moment).substr(0, 10); }

const char* ClassOf(const Run& run) {
  if (IsFailure(run)) return "bad";
  return StateOf(run) == RunState::Complete ? "good" : "held";
}

// Failures are taller as well as red, for those who do not tell red from green.
struct DayMark {
  const char* colour;
  int height;
};

// The worst of the day.
std::string Strip(const TableRuns& table, RunMoment now) {
  std::string strip = fmt::format("<svg viewBox=\"0 0 {} 16\" role=\"img\" aria-label=\"Results of the last {} days\">",
                                  kPlotWidth, kDays);
  const double width = kPlotWidth / kDays;
  for (int day = 0; day < kDays; ++day) {
    const std::string date = DayOf(now - std::chrono::hours(24) * (kDays - 1 - day));
    int all = 0, complete = 0, failed = 0;
    for (const Run* run : table.runs) {
      if (DayOf(run->started) != date) continue;
      ++all;
      complete += StateOf(*run) == RunState::Complete ? 1 : 0;
      failed += IsFailure(*run) ? 1 : 0;
    }
    const DayMark mark = failed > 0     ? DayMark{"bad", 16}
                         : complete > 0 ? DayMark{"good", 12}
                         : all > 0      ? DayMark{"held", 12}
                                        : DayMark{"none", 6};
    strip += fmt::format(
        "<rect class=\"{}\" x=\"{:.1f}\" y=\"{}\" width=\"{:.1f}\" height=\"{}\" rx=\"1.5\"><title>{}: {} complete, {} "
        "failed, {} others</title></rect>",
        mark.colour, day * width, 16 - mark.height, width - 1.5, mark.height, date, complete, failed,
        all - complete - failed);
  }
  return strip + "</svg>";
}

struct Bar {
  double value;
  std::string title;
};

std::string Plot(const std::vector<Bar>& bars, const std::string& what, const std::string& largestText) {
  if (bars.empty()) return {};
  double largest = 0;
  for (const Bar& bar : bars) largest = std::max(largest, bar.value);
  std::string plot =
      fmt::format("<figure><svg viewBox=\"0 0 {} {}\" role=\"img\" aria-label=\"{}\">", kPlotWidth, kPlotHeight, what);
  plot += fmt::format("<line x1=\"0\" y1=\"{0}\" x2=\"{1}\" y2=\"{0}\"/>", kPlotHeight - 0.5, kPlotWidth);
  const double step = std::min(12.0, kPlotWidth / static_cast<double>(bars.size()));
  for (std::size_t i = 0; i < bars.size(); ++i) {
    const double height = largest > 0 ? std::max(1.0, bars[i].value / largest * (kPlotHeight - 2)) : 1;
    plot += fmt::format(
        "<rect class=\"bar\" x=\"{:.2f}\" y=\"{:.2f}\" width=\"{:.2f}\" height=\"{:.2f}\"><title>{}</title></rect>",
        static_cast<double>(i) * step, kPlotHeight - 1 - height, step < kNarrow ? step : step * 0.8, height,
        Escaped(bars[i].title));
  }
  return plot + fmt::format("</svg><figcaption>{} of {} complete {}, {} at most</figcaption></figure>", what,
                            bars.size(), bars.size() == 1 ? "run" : "runs", largestText);
}

// Of the complete runs of the last days.
std::string Plots(const TableRuns& table, RunMoment now) {
  std::vector<Bar> durations, rows;
  std::chrono::milliseconds longest{};
  std::int64_t most = 0;
  for (const Run* run : table.runs) {
    if (StateOf(*run) != RunState::Complete || now - run->started > std::chrono::hours(24) * kDays) continue;
    const std::string start = LocalText(run->started);
    const std::int64_t count =
        run->end->inserted.value_or(0) + run->end->updated.value_or(0) + run->end->deleted.value_or(0);
    durations.push_back(
        {static_cast<double>(run->end->duration.count()), start + ": " + DurationText(run->end->duration)});
    rows.push_back({static_cast<double>(count), start + ": " + run->Rows()});
    longest = std::max(longest, run->end->duration);
    most = std::max(most, count);
  }
  return Plot(durations, "Durations", DurationText(longest)) + Plot(rows, "Rows", std::to_string(most));
}

std::string Fact(const char* name, const std::string& value) {
  return value.empty() ? "" : fmt::format("<dt>{}</dt><dd>{}</dd>", name, Escaped(value));
}

std::string Section(const ReportedTable& table, const TableRuns& runs, RunMoment now) {
  std::string text =
      fmt::format("<section><h3>{} <span>{}</span></h3>\n", Escaped(table.code), Escaped(table.description));
  if (!runs.last) return text + "<div class=\"state never\">no run is recorded</div></section>\n";
  const Run& last = *runs.last;
  const auto age = std::chrono::floor<std::chrono::seconds>(now - last.started);
  text += fmt::format("<div class=\"state {}\">{}</div>\n<dl>", ClassOf(last), Escaped(StateText(last)));
  text += Fact("last run", LocalText(last.started) + ", " + AgeText(age) + " ago");
  if (last.end)
    text +=
        Fact("took", DurationText(last.end->duration)) + Fact("rows", last.Rows()) + Fact("method", last.end->method);
  if (runs.holder)
    text += Fact("process", fmt::format("{} on {}, user {}", last.process.value_or(0), last.host, last.user));
  if (runs.lastSuccess != runs.last)
    text += Fact("last complete", runs.lastSuccess ? LocalText(runs.lastSuccess->started) : "never");
  text += Fact("last update", runs.lastUpdate);
  return text + "</dl>\n" + Strip(runs, now) + Plots(runs, now) + "</section>\n";
}

std::string Failure(const Run& run) {
  std::string text =
      fmt::format("<article><h3>{}, {}: {}</h3>", Escaped(run.table), LocalText(run.started), Escaped(StateText(run)));
  if (!run.end) return text + "</article>\n";
  for (const std::vector<RunCause>& chain : run.end->causes) {
    text += "<ol>";
    for (const RunCause& cause : chain) {
      text += "<li>" + Escaped(cause.description) + "<span>";
      if (cause.number) text += fmt::format(" error {}, {}", *cause.number, Escaped(cause.source));
      for (const auto& [what, value] : cause.details) text += fmt::format("; {}: {}", Escaped(what), Escaped(value));
      text += "</span></li>";
    }
    text += "</ol>";
  }
  return text + "</article>\n";
}

}  // namespace

std::string RunReport(const std::vector<ReportedTable>& tables, const std::vector<Run>& runs, RunMoment now) {
  std::string page = kHead;
  page += fmt::format(
      "<h1>Copies of the ERP's tables</h1>\n<p>As of {}. The strips show the last {} days.</p>\n<div "
      "class=\"tables\">\n",
      LocalText(now), kDays);
  const std::map<std::string, TableRuns> byTable = RunsByTable(runs);
  for (const ReportedTable& table : tables) {
    const auto found = byTable.find(table.code);
    page += Section(table, found == byTable.end() ? TableRuns() : found->second, now);
  }
  page += "</div>\n<h2>Last failures</h2>\n";
  std::size_t failures = 0;
  for (auto run = runs.rbegin(); run != runs.rend() && failures < kFailures; ++run) {
    if (!IsFailure(*run)) continue;
    page += Failure(*run);
    ++failures;
  }
  if (failures == 0) page += "<p>None.</p>\n";
  return page + "</body>\n</html>\n";
}

}  // namespace qmx
