#include "tools/qmxadmin/check/findings.h"

#include <unistd.h>

#include <iostream>

#include "platform/error.h"
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

Findings::Findings(OutputForm form) : form_(form) {
  listing_.columns = {{.key = "check", .title = ""},
                      {.key = "state", .title = ""},
                      {.key = "told", .title = ""},
                      {.key = "what_to_do", .title = ""}};
}

void Findings::Good(const std::string& what, const std::string& told) { Add(State::Good, what, told, ""); }

void Findings::Wrong(const std::string& what, const std::string& told, const std::string& whatToDo) {
  Add(State::Wrong, what, told, whatToDo);
  anyWrong_ = true;
}

void Findings::Wrong(const std::string& what, const Error& error, const std::string& whatToDo) {
  Wrong(what, "error " + std::to_string(error.Number()) + ", " + error.Source() + ": " + error.Description(), whatToDo);
}

void Findings::NotLookedAt(const std::string& what, const std::string& why) { Add(State::NotLookedAt, what, why, ""); }

void Findings::Add(State state, const std::string& what, const std::string& told, const std::string& whatToDo) {
  const Word& word = kWords[static_cast<int>(state)];
  if (form_ == OutputForm::Json) {
    listing_.rows.push_back({what, word.text, told, whatToDo.empty() ? Variant::Null() : whatToDo});
    return;
  }
  static const bool colours = TerminalOf(STDOUT_FILENO).colours;
  const std::string blanks(static_cast<std::size_t>(kWidth - TextWidth(word.text)), ' ');
  std::cout << (colours ? word.colour : "") << word.text << (colours ? "\033[0m" : "") << blanks << "  "
            << Printable(what) << ": " << Printable(whatToDo.empty() ? told : Sentence(told) + " " + whatToDo)
            << std::endl;
}

void Findings::End() {
  if (form_ == OutputForm::Json) Print(listing_, form_);
}

}  // namespace qmx
