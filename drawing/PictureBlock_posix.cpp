// The native build's picture blocks: large ones aligned to and advised for
// huge pages. A fresh block is paid for page by page when first written,
// and at 4 kB a page a 16 MB picture takes thousands of faults, more than
// decoding it; in huge pages it takes eight.

#include "drawing/MPicture.h"

#include <cstdint>
#include <cstdlib>
#include <sys/mman.h>

namespace {

const uint64_t HugePage = uint64_t(2) << 20;

} // namespace

void* AllocatePictureBlock(uint64_t size) {
    if (size < HugePage || size > SIZE_MAX - HugePage) return MGetMemory(size);
    uint64_t rounded = (size + HugePage - 1) / HugePage * HugePage;
    void* block = std::aligned_alloc(size_t(HugePage), size_t(rounded));
    if (!block) return MGetMemory(size);
    madvise(block, size_t(rounded), MADV_HUGEPAGE);
    return block;
}
