#include "tests/support/pipe_to_read.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace qmx::test {
namespace {

int Reader(std::intptr_t reader) { return static_cast<int>(reader); }

}  // namespace

PipeToRead::PipeToRead() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe can be created");
  reader_ = ends[0];
  writer_ = ends[1];
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
}

PipeToRead::~PipeToRead() {
  close(Reader(reader_));
  close(writer_);
}

std::string PipeToRead::NumberForPrograms() const { return std::to_string(writer_); }

bool PipeToRead::IsInherited() const { return (fcntl(writer_, F_GETFD) & FD_CLOEXEC) == 0; }

bool PipeToRead::Fill() {
  fcntl(writer_, F_SETFL, O_NONBLOCK);
  const std::string block(4096, 'x');
  while (write(writer_, block.data(), block.size()) > 0) continue;
  fcntl(writer_, F_SETFL, 0);
  return true;
}

std::string PipeToRead::ReadAll() {
  std::string text;
  std::array<char, 4096> buffer{};
  for (ssize_t count = 0; (count = read(Reader(reader_), buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace qmx::test
