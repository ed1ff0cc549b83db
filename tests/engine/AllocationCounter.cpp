#include <cstdlib>
#include <new>

#include "AllocationCounter.h"

namespace {

thread_local int allocations = 0;

void* counted(std::size_t size) {
  ++allocations;
  return std::malloc(size ? size : 1);
}

void* countedOrThrown(std::size_t size) {
  if (void* memory = counted(size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

// In force for the library too, so they must be seen from outside.
#define ORN_REPLACED __attribute__((visibility("default")))
ORN_REPLACED void* operator new(std::size_t size) { return countedOrThrown(size); }
ORN_REPLACED void* operator new[](std::size_t size) { return countedOrThrown(size); }
ORN_REPLACED void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return counted(size); }
ORN_REPLACED void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return counted(size); }
ORN_REPLACED void operator delete(void* memory) noexcept { std::free(memory); }
ORN_REPLACED void operator delete[](void* memory) noexcept { std::free(memory); }
ORN_REPLACED void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
ORN_REPLACED void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
ORN_REPLACED void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
ORN_REPLACED void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

namespace orn {

int allocationsOf(const std::function<void()>& what) {
  const int before = allocations;
  what();
  return allocations - before;
}

}  // namespace orn
