// A pipe that the code under test writes and the test reads.
#pragma once

#include <cstdint>
#include <string>

namespace qmx::test {

class PipeToRead {
 public:
  PipeToRead();
  ~PipeToRead();  // closes both ends
  PipeToRead(const PipeToRead&) = delete;
  PipeToRead& operator=(const PipeToRead&) = delete;

  int Writer() const { return writer_; }  // a descriptor
  std::string NumberForPrograms() const;  // what $QMX_PROGRESS_FD would name it
  bool IsInherited() const;               // whether programs that this one starts get its writer
  std::string ReadAll();                  // what was written since the last time, without waiting

  // Writes until there is no room. Returns false, and has written nothing, where a writer cannot ask for the room: Wine
  // says of every pipe that it has none, and waits in a write to a full one whatever its mode.
  bool Fill();

 private:
  std::intptr_t reader_ = -1;
  int writer_ = -1;
};

}  // namespace qmx::test
