// Internal pieces of the assembly of strings: the connecting search shared by
// the point-string and the linked-list forms, and the lists of joined lines
// that joining and connecting hand out.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include <tessar/linestring.h>
#include <tessar/linkedlist.h>
#include <tessar/point.h>
#include <tessar/types.h>

namespace tessar::detail {

/* ---- Connecting ---- */

// The status of connecting.
inline constexpr int32_t kConnected = 0;
inline constexpr int32_t kStringsIntersect = 1;
inline constexpr int32_t kNothingToConnect = 2;

// What connecting found. The order holds end indices, one a string: for end
// e, string e / 2, walked forward when e is even and backward when it is odd.
// An empty order with status kConnected means that no walk met all the
// conditions.
struct ConnectResult {
    int32_t status = kConnected;
    int32_t closed = 0;
    double length = 0.0;
    std::vector<int32_t> order;
};

// Connects the strings: they first lose their repeated points, in place;
// strings that cross give kStringsIntersect, fewer than two ends
// kNothingToConnect. Writes the first walk found to the log file. The
// strings and their points must not be null. Throws std::bad_alloc.
ConnectResult connectStrings(std::span<tsLineString *const> strings);

/* ---- Lists of joined lines ---- */

struct ListDestroy {
    void operator()(tsLinkedList *list) const noexcept { tsLinkedList_destroy(&list); }
};

// A list of tsJoinedLine, destroyed unless released to a caller.
using OwnedList = std::unique_ptr<tsLinkedList, ListDestroy>;

// A new empty list of tsJoinedLine; empty when there is no memory.
OwnedList createJoinedLineList() noexcept;

// Appends the line as it stands in a chain; false when there is no memory.
bool appendJoinedLine(tsLinkedList *list, int32_t lineIndex, int32_t reversed, const tsLine &line) noexcept;

// Appends a connector (line index -1, not reversed) from one point to
// another; false when there is no memory.
bool appendConnector(tsLinkedList *list, const dpoint3d &from, const dpoint3d &to) noexcept;

// The line run the other way: from its end to its start.
tsLine turnedLine(const tsLine &line) noexcept;

inline dpoint3d startOf(const tsLine &line) noexcept
{
    dpoint3d start{};
    tsLine_getEndPoints(&line, &start, nullptr);
    return start;
}

inline dpoint3d endOf(const tsLine &line) noexcept
{
    dpoint3d end{};
    tsLine_getEndPoints(&line, nullptr, &end);
    return end;
}

}  // namespace tessar::detail
