#include "plug_heap.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

// The system's own routines, under the names that it keeps for whoever stands in front of them.
extern "C" {
void* SystemMalloc(std::size_t size) __asm__("__libc_malloc");
void* SystemCalloc(std::size_t count, std::size_t size) __asm__("__libc_calloc");
void* SystemRealloc(void* block, std::size_t size) __asm__("__libc_realloc");
void* SystemMemalign(std::size_t alignment, std::size_t size) __asm__("__libc_memalign");
void SystemFree(void* block) __asm__("__libc_free");

void* CountedMalloc(std::size_t size) __asm__("malloc");
void* CountedCalloc(std::size_t count, std::size_t size) __asm__("calloc");
void* CountedRealloc(void* block, std::size_t size) __asm__("realloc");
void* CountedAlign(std::size_t alignment, std::size_t size) __asm__("aligned_alloc");
void* CountedMemalign(std::size_t alignment, std::size_t size) __asm__("memalign");
int CountedPosixAlign(void** place, std::size_t alignment,
                      std::size_t size) __asm__("posix_memalign");
void CountedFree(void* block) __asm__("free");
}

namespace e2e {
namespace {

HeapCount before_the_file;
HeapCount* count = &before_the_file;

void* Add(void* block) {
  if (block == nullptr) return nullptr;
  ++count->blocks;
  count->bytes += static_cast<std::int64_t>(malloc_usable_size(block));
  return block;
}

void Remove(std::int64_t bytes) {
  --count->blocks;
  count->bytes -= bytes;
}

// Before there is a second thread.
[[gnu::constructor]] void Begin() {
  const char* const path = getenv(kHeapFile);
  const int file = path == nullptr ? -1 : open(path, O_RDWR | O_CLOEXEC);
  if (file < 0) return;
  void* const shared =
      mmap(nullptr, sizeof(HeapCount), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  if (shared == MAP_FAILED) return;
  auto* const there = static_cast<HeapCount*>(shared);
  there->blocks = before_the_file.blocks.load();
  there->bytes = before_the_file.bytes.load();
  count = there;
}

}  // namespace
}  // namespace e2e

void* CountedMalloc(std::size_t size) { return e2e::Add(SystemMalloc(size)); }

void* CountedCalloc(std::size_t count, std::size_t size) {
  return e2e::Add(SystemCalloc(count, size));
}

void* CountedRealloc(void* block, std::size_t size) {
  const auto before = static_cast<std::int64_t>(malloc_usable_size(block));
  void* const now = SystemRealloc(block, size);
  // What could not grow stays as it is.
  if (block != nullptr && (now != nullptr || size == 0)) e2e::Remove(before);
  return e2e::Add(now);
}

void* CountedAlign(std::size_t alignment, std::size_t size) {
  return e2e::Add(SystemMemalign(alignment, size));
}

void* CountedMemalign(std::size_t alignment, std::size_t size) {
  return e2e::Add(SystemMemalign(alignment, size));
}

int CountedPosixAlign(void** place, std::size_t alignment, std::size_t size) {
  void* const block = CountedAlign(alignment, size);
  if (block == nullptr) return ENOMEM;
  *place = block;
  return 0;
}

void CountedFree(void* block) {
  if (block == nullptr) return;
  e2e::Remove(static_cast<std::int64_t>(malloc_usable_size(block)));
  SystemFree(block);
}
