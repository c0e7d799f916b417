#include "tools/qmxadmin/check/findings.h"

#include <fmt/format.h>

#include <iostream>

#include "platform/system/descriptors.h"
#include "tools/qmxadmin/terminal.h"
#include "tools/qmxadmin/text_width.h"

namespace qmx {
namespace {

struct Word {
  const char* text;
  const char* colour;
};
constexpr Word kWords[] = {{"ok", "\033[32m"}, {"wrong", "\033[1;31m"}, {"not checked", "\033[33m"}};
constexpr int kWidth = 11;

std::string Sentence(const std::string& text) { return text.ends_with('.') ? text : text + "."; }

}  // namespace

Findings::Findings(OutputForm form, bool quiet) : form_(form), quiet_(quiet) {
  listing_.columns = {{.key = "check"}, {.key = "state"}, {.key = "told"}, {.key = "what_to_do"}};
}

void Findings::Add(const Finding& finding) {
  const auto& [state, what, detail, whatToDo] = finding;
  const Word& word = kWords[static_cast<int>(state)];
  anyWrong_ |= state == Finding::State::Wrong;
  if (form_ == OutputForm::Json) {
    listing_.rows.push_back({what, word.text, detail, TextOrNull(whatToDo)});
    return;
  }
  if (quiet_ && state != Finding::State::Wrong) return;
  static const bool colours = TerminalOf(kStandardOutput).colours;
  const std::string blanks(static_cast<std::size_t>(kWidth - TextWidth(word.text)), ' ');
  std::cout << fmt::format("{}{}{}{}  {}: {}", colours ? word.colour : "", word.text, colours ? "\033[0m" : "", blanks,
                           Printable(what), Printable(whatToDo.empty() ? detail : Sentence(detail) + " " + whatToDo))
            << std::endl;
}

void Findings::End() {
  if (form_ == OutputForm::Json) Print(listing_, form_);
}

}  // namespace qmx
