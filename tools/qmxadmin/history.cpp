#include "tools/qmxadmin/history.h"

#include <fmt/format.h>

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

#include "platform/error.h"
#include "platform/names.h"
#include "platform/system/paths.h"
#include "tools/qmxadmin/json_output.h"
#include "tools/qmxadmin/runs/age.h"
#include "tools/qmxadmin/runs/run_history.h"

namespace qmx {
namespace {

constexpr std::size_t kShortNumber = 8;

Variant OrNull(const std::string& text) { return text.empty() ? Variant::Null() : Variant(text); }

Variant CountOrNull(const std::optional<std::int64_t>& count) {
  return count ? Variant(static_cast<double>(*count)) : Variant::Null();
}

std::vector<Variant> RowOf(const Run& run) {
  const bool ended = run.end.has_value();
  return {LocalText(run.started),
          run.table,
          StateText(run),
          ended ? Variant(std::int32_t{run.end->status}) : Variant::Null(),
          ended ? OrNull(run.end->method) : Variant::Null(),
          OrNull(run.ShownMode()),
          ended ? CountOrNull(run.end->inserted) : Variant::Null(),
          ended ? CountOrNull(run.end->updated) : Variant::Null(),
          ended ? CountOrNull(run.end->deleted) : Variant::Null(),
          ended ? Variant(DurationText(run.end->duration)) : Variant::Null(),
          ended ? Variant(static_cast<double>(run.end->duration.count())) : Variant::Null(),
          ended ? OrNull(run.end->lastUpdate) : Variant::Null(),
          OrNull(run.user),
          OrNull(run.host),
          run.process ? Variant(static_cast<std::int32_t>(*run.process)) : Variant::Null(),
          CountOrNull(run.request),
          run.number.substr(0, kShortNumber),
          run.number,
          OrNull(run.Reason())};
}

Listing ListingOf(const std::vector<const Run*>& runs) {
  Listing listing;
  listing.columns = {{.key = "started", .title = "STARTED"},
                     {.key = "table", .title = "TABLE"},
                     {.key = "result", .title = "RESULT"},
                     {.key = "status", .title = "STATUS", .toTheRight = true},
                     {.key = "method", .title = "METHOD"},
                     {.key = "mode", .title = "MODE", .shownEmpty = false},
                     {.key = "inserted", .title = "ADDED", .toTheRight = true},
                     {.key = "updated", .title = "UPDATED", .toTheRight = true},
                     {.key = "deleted", .title = "REMOVED", .toTheRight = true},
                     {.key = "took", .title = "TOOK", .toTheRight = true},
                     {.key = "duration_ms", .title = ""},
                     {.key = "lutm", .title = ""},
                     {.key = "user", .title = "USER"},
                     {.key = "host", .title = ""},
                     {.key = "pid", .title = ""},
                     {.key = "request", .title = ""},
                     {.key = "run_short", .title = "RUN"},
                     {.key = "run", .title = ""},
                     {.key = "reason", .title = "REASON", .prose = true, .shownEmpty = false}};
  for (const Run* run : runs) listing.rows.push_back(RowOf(*run));
  return listing;
}

// As in the records: one chain for each failure, the outermost cause first.
Json CausesOf(const Run& run) {
  Json chains = Json::array();
  if (!run.end) return chains;
  for (const std::vector<RunCause>& chain : run.end->causes) {
    Json links = Json::array();
    for (const RunCause& cause : chain) {
      Json link = Json::object();
      link["number"] = cause.number ? Json(*cause.number) : Json(nullptr);
      link["source"] = cause.source;
      link["description"] = cause.description;
      link["details"] = Json::object();
      for (const auto& [what, value] : cause.details) link["details"][what] = value;
      links.push_back(std::move(link));
    }
    chains.push_back(std::move(links));
  }
  return chains;
}

void PrintList(const std::vector<const Run*>& runs, OutputForm form) {
  const Listing listing = ListingOf(runs);
  if (form == OutputForm::Table) return Print(listing, form);
  JsonArrayWriter array(std::cout);
  for (std::size_t i = 0; i < runs.size(); ++i) {
    Json run = JsonObject(listing.columns, listing.rows[i]);
    run["causes"] = CausesOf(*runs[i]);
    array.Add(run);
  }
  array.End();
}

// Texts of records hold what components said: no control character of it reaches the terminal.
std::string Plain(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }, ' ');
  return text;
}

void PrintCauses(const RunEnd& end) {
  for (const std::vector<RunCause>& chain : end.causes) {
    const char* beginning = "";
    for (const RunCause& cause : chain) {
      const std::string number = cause.number ? fmt::format("error {}, {}: ", *cause.number, Plain(cause.source)) : "";
      std::cout << fmt::format("{}{}{}\n", beginning, number, Plain(cause.description));
      for (const auto& [what, value] : cause.details)
        std::cout << fmt::format("      {}: {}\n", Plain(what), Plain(value));
      beginning = "  because of ";
    }
  }
}

void PrintWhole(const Run& run) {
  const auto line = [](const char* what, const std::string& value) {
    if (!value.empty()) std::cout << fmt::format("{:<9} {}\n", what, Plain(value));
  };
  line("run", run.number);
  line("table", run.table);
  line("started", LocalText(run.started));
  if (run.process)
    line("process", fmt::format("{} on {}, user {}, version {}", *run.process, run.host, run.user, run.version));
  line("request", run.request ? std::to_string(*run.request) : "");
  line("result", StateText(run));
  if (!run.end) return;
  line("status", std::to_string(run.end->status));
  line("ended", LocalText(run.end->time) + ", after " + DurationText(run.end->duration));
  line("method", run.end->method);
  line("mode", run.mode);
  line("rows", run.Rows());
  line("lutm", run.end->lastUpdate);
  PrintCauses(*run.end);
}

AdminStatus ShowRun(const std::vector<Run>& runs, const HistoryArguments& arguments) {
  std::vector<const Run*> found;
  for (const Run& run : runs) {
    if (run.number.starts_with(arguments.run)) found.push_back(&run);
  }
  if (found.empty()) {
    std::cerr << "There is no run " << Plain(arguments.run) << " in the records.\n";
    return AdminStatus::Wrong;
  }
  if (found.size() > 1)
    throw Error(errors::kInvalidCall, "qmxadmin",
                fmt::format("{} runs begin with {}: give more of the number.", found.size(), arguments.run));
  if (arguments.form == OutputForm::Json) {
    PrintList(found, OutputForm::Json);
  } else {
    PrintWhole(*found.front());
  }
  return AdminStatus::Done;
}

}  // namespace

AdminStatus ShowHistory(const HistoryArguments& arguments) {
  const std::vector<Run> runs = ReadRuns(NativePath(arguments.logs));
  if (!arguments.run.empty()) return ShowRun(runs, arguments);

  const RunMoment now = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
  const RunMoment since = arguments.since.empty() ? RunMoment() : SinceMoment(arguments.since, now);
  std::vector<const Run*> shown;
  for (const Run& run : runs) {
    const bool isOfTable = arguments.tables.empty() ||
                           std::any_of(arguments.tables.begin(), arguments.tables.end(), [&](const auto& table) {
                             return SameName(table, run.TableCode()) || table == run.table;
                           });
    if (isOfTable && run.started >= since && (!arguments.failed || IsFailure(run))) shown.push_back(&run);
  }
  if (shown.size() > arguments.last)
    shown.erase(shown.begin(), shown.end() - static_cast<std::ptrdiff_t>(arguments.last));
  PrintList(shown, arguments.form);
  return AdminStatus::Done;
}

}  // namespace qmx
