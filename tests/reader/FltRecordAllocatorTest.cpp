// Block allocation of record objects: the room of a record replaced right after it was built
// is reused; any other freed room waits for its whole block.
#include <gtest/gtest.h>

#include "reader/FltRecordAllocator.h"

TEST(FltRecordAllocator, onlyTheObjectCarvedLastGivesItsRoomBack)
{
    void* first = fltrecordmemory::allocate(400);
    fltrecordmemory::release(first, 400);
    void* again = fltrecordmemory::allocate(48);
    EXPECT_EQ(again, first);

    void* next = fltrecordmemory::allocate(48);
    EXPECT_NE(next, again);
    fltrecordmemory::release(again, 48);  // not the last one carved: its room stays taken
    void* after = fltrecordmemory::allocate(48);
    EXPECT_NE(after, again);
    EXPECT_NE(after, next);
    fltrecordmemory::release(after, 48);
    fltrecordmemory::release(next, 48);
}
