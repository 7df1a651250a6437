// Memory for one parse, with an end to it: entities that expand into each other cannot take the machine with them.
// Past the limit the library's OutOfMemoryException ends the parse. What is left at the end is freed. Must outlive
// everything that was parsed with it.
#ifndef CATALOGUE_BOUNDED_MEMORY_H
#define CATALOGUE_BOUNDED_MEMORY_H

#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <cstddef>
#include <cstdlib>

namespace catalogue {

class BoundedMemory : public xercesc::MemoryManager {
public:
  explicit BoundedMemory(size_t most) : limit(most) {}
  BoundedMemory(const BoundedMemory &) = delete;
  BoundedMemory &operator=(const BoundedMemory &) = delete;
  // The library forgets a few blocks of a document type, and more of a parse that an exception ended.
  ~BoundedMemory() override {
    while (blocks) {
      Header *next = blocks->next;
      std::free(blocks);
      blocks = next;
    }
  }

  xercesc::MemoryManager *getExceptionMemoryManager() override { return xercesc::XMLPlatformUtils::fgMemoryManager; }

  void *allocate(XMLSize_t size) override {
    auto *block = limit - used >= size ? static_cast<Header *>(std::malloc(sizeof(Header) + size)) : nullptr;
    if (!block)
      throw xercesc::OutOfMemoryException();
    *block = Header{size, nullptr, blocks};
    if (blocks)
      blocks->previous = block;
    blocks = block;
    used += size;
    return block + 1;
  }

  void deallocate(void *memory) override {
    if (!memory)
      return;
    Header *block = static_cast<Header *>(memory) - 1;
    (block->previous ? block->previous->next : blocks) = block->next;
    if (block->next)
      block->next->previous = block->previous;
    used -= block->size;
    std::free(block);
  }

private:
  struct alignas(std::max_align_t) Header {
    size_t size;
    Header *previous;
    Header *next;
  };

  size_t limit;
  size_t used = 0;
  Header *blocks = nullptr;
};

} // namespace catalogue

#endif
