// orvan-sandbox: creates the sandbox ERP's file, simulates work in it, and shows its content.
#include <CLI/CLI.hpp>
#include <chrono>
#include <ctime>
#include <iomanip>
#include <iostream>

#include "binding/failure.h"
#include "tool/make.h"
#include "tool/work.h"

namespace {

using orvan::Moment;

Moment Today() {
  const std::time_t now = std::time(nullptr);
  const std::tm local = *std::localtime(&now);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, 0, 0, 0};
}

// An option that takes a date, and rejects any other text.
template <class Date>
void AddDate(CLI::App* command, const std::string& name, Date& date, const std::string& help) {
  command->add_option_function<std::string>(
      name,
      [name, &date](const std::string& text) {
        const auto moment = Moment::Parse(text);
        if (!moment) throw CLI::ValidationError(name, "\"" + text + "\" is no date; write it as 2026-11-20");
        date = *moment;
      },
      help);
}

void AddSizes(CLI::App* command, orvan::Sizes& sizes) {
  const auto add = [&](const char* name, int& size, const char* help) {
    command->add_option(name, size, help)->check(CLI::NonNegativeNumber)->capture_default_str();
  };
  add("--service-types", sizes.serviceTypes, "service types");
  add("--centers", sizes.centers, "service centers");
  add("--areas", sizes.areas, "service areas");
  add("--skills", sizes.skills, "skills");
  add("--employees", sizes.employees, "service employees");
  add("--addresses", sizes.addresses, "addresses");
  add("--calendars", sizes.calendars, "calendars; the last of several is nobody's");
  add("--calendar-days", sizes.calendarDays, "days that each calendar spans, from 90 days before today on");
  add("--configurations", sizes.configurations, "configurations");
  add("--orders", sizes.orders, "service orders");
  add("--activities", sizes.activities, "activities per order, at most");
}

void Show(const std::string& path) {
  for (const orvan::TableCount& table : orvan::CountRecords(path))
    std::cout << table.code << "  " << std::left << std::setw(26) << table.description << std::right << std::setw(10)
              << table.records << '\n';
}

void Show(const std::vector<orvan::Changes>& changes) {
  std::cout << std::setw(46) << "inserted" << std::setw(10) << "updated" << std::setw(10) << "deleted" << '\n';
  for (const orvan::Changes& table : changes)
    std::cout << table.code << "  " << std::left << std::setw(26) << table.description << std::right << std::setw(10)
              << table.inserted << std::setw(10) << table.updated << std::setw(10) << table.deleted << '\n';
}

int Run(int argc, char** argv) {
  CLI::App app("Makes the sandbox ERP's file, and lets the company in it work.");
  app.require_subcommand(1);
  std::string file;
  orvan::Plan plan;
  plan.today = Today();
  bool replace = false;

  CLI::App* make = app.add_subcommand("make", "Make a file with data for all tables");
  make->add_option("FILE", file, "the file to make")->required();
  make->add_option("--seed", plan.seed, "the same seed makes the same data")->capture_default_str();
  AddDate(make, "--today", plan.today, "the day that the data is about (default: today)");
  AddSizes(make, plan.sizes);
  make->add_flag("--replace", replace, "replace a file of that name");
  make->callback([&] {
    orvan::MakeSandbox(file, plan, replace);
    Show(file);
  });

  orvan::WorkOrder order;
  order.today = plan.today;
  CLI::App* work = app.add_subcommand("work", "Play working days: everything that changes is in the audit trail");
  work->add_option("FILE", order.path, "a file made by orvan-sandbox make")->required();
  work->add_option("--seed", order.seed, "the same seed plays the same day on the same file")->capture_default_str();
  work->add_option("--days", order.days, "how many days")->check(CLI::PositiveNumber)->capture_default_str();
  AddDate(work, "--today", order.today, "the day that the changes are about (default: today)");
  AddDate(work, "--from", order.from, "when the audit trail says that work began (default: the machine's clock)");
  work->callback([&] { Show(orvan::Work(order)); });

  CLI::App* show = app.add_subcommand("show", "Show how many records each table has");
  show->add_option("FILE", file, "a file made by orvan-sandbox make")->required();
  show->callback([&] { Show(file); });

  CLI11_PARSE(app, argc, argv);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& failure) {
    std::cerr << "orvan-sandbox: " << failure.what() << '\n';
    return 1;
  }
}
