// The linked list's and the iterator's records, for the list functions and
// for the containers and line-string code that keep lists inside them.
#pragma once

#include <cstddef>
#include <cstdint>

#include <tessar/linkedlist.h>

namespace tessar::detail {

// A node of the ring. Its element copy lives in the same heap block, right
// after the node; the sentinel has no element.
struct ListNode {
    ListNode *next;
    ListNode *previous;
    void *element;
    tsLinkedList *owner;
};

// The longest list: 2^60 - 1 elements.
inline constexpr std::size_t kListMaxCount = (std::size_t{1} << 60) - 1;

}  // namespace tessar::detail

struct tsLinkedList {
    tessar::detail::ListNode *sentinel;  // the ring's head, without element
    std::size_t count;                   // number of elements
    std::size_t elementSize;             // bytes per element
    std::int32_t sorted;                 // 1 while the order is assured
    tsLinkedListCompareFunc compare;     // null: byte comparison of elementSize bytes
    tessar::detail::ListNode head;       // storage of the sentinel
};

// An iterator before the start has its flag set and stands on the sentinel,
// so that the next step, as from the sentinel, reaches the first node.
struct tsLListIterator {
    std::int32_t beforeStart;
    tessar::detail::ListNode *current;
    tsLinkedList *list;
};
