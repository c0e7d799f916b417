// operator new that fails at the Nth call, QMX_TEST_FAILING_ALLOCATION=N, or from there on, "N on". Linked to a program
// in a test.
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

std::atomic<long> callsBefore = 0;

bool Fails() {
  static const char* const wanted = std::getenv("QMX_TEST_FAILING_ALLOCATION");
  static const long first = wanted ? std::atol(wanted) : 0;
  static const bool lasts = wanted && std::strstr(wanted, " on");
  const long call = ++callsBefore;
  return first > 0 && (lasts ? call >= first : call == first);
}

void* Allocate(std::size_t size) { return Fails() ? nullptr : std::malloc(size > 0 ? size : 1); }

void* AllocateAligned(std::size_t size, std::align_val_t alignment) {
  void* memory = nullptr;
  if (Fails() || posix_memalign(&memory, static_cast<std::size_t>(alignment), size) != 0) return nullptr;
  return memory;
}

void* OrRaise(void* memory) {
  if (!memory) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return OrRaise(Allocate(size)); }
void* operator new[](std::size_t size) { return OrRaise(Allocate(size)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment) { return OrRaise(AllocateAligned(size, alignment)); }
void* operator new[](std::size_t size, std::align_val_t alignment) { return OrRaise(AllocateAligned(size, alignment)); }

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { std::free(memory); }
