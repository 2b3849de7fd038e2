#include "robustness/memory_watch.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

namespace tarnlink {
namespace {

std::atomic<std::size_t> held = 0;
std::atomic<std::size_t> peak = 0;

void* Counted(void* block) {
  if (block == nullptr) throw std::bad_alloc();
  const std::size_t size = malloc_usable_size(block);
  const std::size_t now = held.fetch_add(size) + size;
  std::size_t most = peak.load();
  while (now > most && !peak.compare_exchange_weak(most, now)) {
  }
  return block;
}

void* Take(std::size_t size) { return Counted(std::malloc(std::max<std::size_t>(size, 1))); }

void* TakeAligned(std::size_t size, std::align_val_t alignment) {
  const auto align = static_cast<std::size_t>(alignment);
  return Counted(std::aligned_alloc(align, (size + align - 1) / align * align));
}

void* TakeIfThereIs(std::size_t size) noexcept {
  try {
    return Take(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void GiveBack(void* block) {
  if (block == nullptr) return;
  held -= malloc_usable_size(block);
  std::free(block);
}

}  // namespace

MemoryWatch::MemoryWatch() : before_(held) { peak = before_; }

std::size_t MemoryWatch::Peak() const { return peak - std::min<std::size_t>(before_, peak); }

std::size_t HeldMemory() { return held; }

}  // namespace tarnlink

// The forms without exceptions call these.
void* operator new(std::size_t size) { return tarnlink::Take(size); }
void* operator new[](std::size_t size) { return tarnlink::Take(size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return tarnlink::TakeAligned(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return tarnlink::TakeAligned(size, alignment);
}
// The library's own would do with the ones above; under a sanitizer they would be its.
void* operator new(std::size_t size, const std::nothrow_t& /*none*/) noexcept {
  return tarnlink::TakeIfThereIs(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*none*/) noexcept {
  return tarnlink::TakeIfThereIs(size);
}
void operator delete(void* block) noexcept { tarnlink::GiveBack(block); }
void operator delete[](void* block) noexcept { tarnlink::GiveBack(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { tarnlink::GiveBack(block); }
void operator delete[](void* block, std::size_t /*size*/) noexcept { tarnlink::GiveBack(block); }
void operator delete(void* block, std::align_val_t /*alignment*/) noexcept {
  tarnlink::GiveBack(block);
}
void operator delete[](void* block, std::align_val_t /*alignment*/) noexcept {
  tarnlink::GiveBack(block);
}
void operator delete(void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  tarnlink::GiveBack(block);
}
void operator delete[](void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  tarnlink::GiveBack(block);
}
