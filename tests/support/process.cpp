#include "tests/support/process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

[[noreturn]] void Become(char* const* argv, const std::map<std::string, std::string>& environment,
                         const std::string& folder, const std::string& out, const std::string& err) {
  const auto redirect = [](const std::string& path, int flags, int descriptor) {
    const int opened = open(path.c_str(), flags, 0600);
    return opened >= 0 && dup2(opened, descriptor) >= 0;
  };
  if (redirect("/dev/null", O_RDONLY, 0) && redirect(out, O_WRONLY | O_CREAT, 1) &&
      redirect(err, O_WRONLY | O_CREAT, 2) && chdir(folder.c_str()) == 0) {
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    execv(argv[0], argv);
  }
  _exit(127);
}

}  // namespace

Process Run(const std::string& program, const std::vector<std::string>& arguments,
            const std::map<std::string, std::string>& environment, const std::string& folder) {
  const TempFolder output;
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);

  const pid_t child = fork();
  if (child == 0) Become(argv.data(), environment, folder, output / "out", output / "err");
  int state = 0;
  if (child < 0 || waitpid(child, &state, 0) != child) throw std::runtime_error("cannot run " + program);
  return {WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state), ReadFile(output / "out"),
          ReadFile(output / "err")};
}

}  // namespace qmx::test
