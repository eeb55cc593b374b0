// The Windows build's picture blocks: the ordinary allocator, whose blocks
// the imaging component's copies fill as they are.

#include "drawing/MPicture.h"

void* AllocatePictureBlock(uint64_t size) {
    return MGetMemory(size);
}
