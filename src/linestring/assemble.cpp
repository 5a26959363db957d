// Connecting whole strings, handed out as one point string with the order
// of its pieces, or as one list of joined lines built from chains; and the
// lists of joined lines that joining and connecting share.
#include <algorithm>
#include <new>
#include <span>
#include <vector>

#include <tessar/frame.h>
#include <tessar/linestring.h>
#include <tessar/memory.h>
#include <tessar/point.h>

#include "linestring/assemble.hpp"
#include "linestring/linestring.hpp"

namespace tessar::detail {

OwnedList createJoinedLineList() noexcept
{
    tsLinkedList *list = nullptr;
    tsLinkedList_create(&list, sizeof(tsJoinedLine));
    return OwnedList(list);
}

bool appendJoinedLine(tsLinkedList *list, int32_t lineIndex, int32_t reversed, const tsLine &line) noexcept
{
    const tsJoinedLine element{lineIndex, reversed, line};
    return tsLinkedList_pushBack(list, &element) == 0;
}

bool appendConnector(tsLinkedList *list, const dpoint3d &from, const dpoint3d &to) noexcept
{
    tsLine line{};
    // Two equal points still give a complete line of length 0.
    tsLine_createBy2points(&line, &from, &to);
    return appendJoinedLine(list, -1, 0, line);
}

tsLine turnedLine(const tsLine &line) noexcept
{
    const dpoint3d start = startOf(line);
    const dpoint3d end = endOf(line);
    tsLine turned{};
    tsLine_createBy2points(&turned, &end, &start);
    return turned;
}

namespace {

// Frees the array held at an output and clears it with its count.
template <class T> void clearArrayOutput(T **array, int32_t *count) noexcept
{
    if (*array) tsMem_free(*array);
    *array = nullptr;
    *count = 0;
}

// Step 10: the strings in walk order, each forward or backward, in a library
// array of capacity points. The string of end e is string e / 2, as the
// order counts it.
LibraryArray<dpoint3d> walkPoints(std::span<tsLineString *const> strings, const std::vector<int32_t> &order,
                                  size_t capacity, int32_t &count)
{
    LibraryArray<dpoint3d> points = allocateLibraryArray<dpoint3d>(capacity);
    if (!points) return points;
    count = 0;
    for (const int32_t end : order) {
        const tsLineString &string = *strings[static_cast<size_t>(end / 2)];
        for (int32_t i = 0; i < string.count; ++i)
            points[static_cast<size_t>(count++)] = string.points[end % 2 == 0 ? i : string.count - 1 - i];
    }
    return points;
}

// The elements of a list, in order.
std::vector<tsJoinedLine> listElements(const tsLinkedList *list)
{
    std::vector<tsJoinedLine> elements;
    elements.reserve(tsLinkedList_size(list));
    // The room is reserved, so the action adds without allocating.
    tsLinkedList_performAction(
        list,
        [](void *element, void *user) -> int32_t {
            auto &into = *static_cast<std::vector<tsJoinedLine> *>(user);
            if (into.size() == into.capacity()) return 1;
            into.push_back(*static_cast<const tsJoinedLine *>(element));
            return 0;
        },
        &elements, nullptr, nullptr);
    return elements;
}

// The string of a chain: the start of every line and the end of the last.
std::vector<dpoint3d> chainString(const std::vector<tsJoinedLine> &chain)
{
    std::vector<dpoint3d> points;
    points.reserve(chain.size() + 1);
    for (const tsJoinedLine &element : chain)
        points.push_back(startOf(element.line));
    points.push_back(endOf(chain.back().line));
    return points;
}

// The chains merged along the order into a new list: a chain entered at its
// far end is walked from its last line, each line turned and its reversed
// flag flipped; a connector goes from the end of each chain to the start of
// the next. Empty when there is no memory.
OwnedList mergeChains(const std::vector<std::vector<tsJoinedLine>> &chains, const std::vector<int32_t> &order)
{
    OwnedList merged = createJoinedLineList();
    if (!merged) return merged;
    dpoint3d previousEnd{};
    for (size_t k = 0; k < order.size(); ++k) {
        const std::vector<tsJoinedLine> &chain = chains[static_cast<size_t>(order[k] / 2)];
        const bool backward = order[k] % 2 == 1;
        for (size_t i = 0; i < chain.size(); ++i) {
            tsJoinedLine element = chain[backward ? chain.size() - 1 - i : i];
            if (backward) {
                element.line = turnedLine(element.line);
                element.reversed = element.reversed ? 0 : 1;
            }
            if (k > 0 && i == 0 && !appendConnector(merged.get(), previousEnd, startOf(element.line)))
                return {};
            if (!appendJoinedLine(merged.get(), element.lineIndex, element.reversed, element.line)) return {};
            previousEnd = endOf(element.line);
        }
    }
    return merged;
}

}  // namespace

}  // namespace tessar::detail

using namespace tessar::detail;

int32_t tsConnectLines_dpoint3dLineStrings(tsLineString *const *strings, int32_t n, int32_t *status,
                                           int32_t *closed, double *length, dpoint3d **points,
                                           int32_t *pointCount, int32_t **order, int32_t *orderCount)
{
    *status = kConnected;
    *closed = 0;
    *length = 0.0;
    clearArrayOutput(points, pointCount);
    clearArrayOutput(order, orderCount);
    if (!strings || n < 1) return TESSAR_FAILURE;
    const std::span<tsLineString *const> all{strings, static_cast<size_t>(n)};
    for (const tsLineString *string : all)
        if (!string || !string->points) return TESSAR_FAILURE;
    try {
        const ConnectResult result = connectStrings(all);
        *status = result.status;
        if (result.status != kConnected) return 0;
        // The capacity is every point left after the repeated ones went; a
        // search that found no walk hands it out empty.
        size_t total = 0;
        for (const tsLineString *string : all)
            total += static_cast<size_t>(string->count);
        int32_t walked = 0;
        LibraryArray<dpoint3d> walk = walkPoints(all, result.order, total, walked);
        LibraryArray<int32_t> ends = allocateLibraryArray<int32_t>(result.order.size());
        if (!walk || (!result.order.empty() && !ends)) throw std::bad_alloc();
        std::copy(result.order.begin(), result.order.end(), ends.get());
        *points = walk.release();
        *pointCount = walked;
        if (!result.order.empty()) *order = ends.release();
        *orderCount = static_cast<int32_t>(result.order.size());
        *closed = result.closed;
        *length = result.length;
        return 0;
    } catch (const std::bad_alloc &) {
        *status = kNothingToConnect;
        return TESSAR_FAILURE;
    }
}

int32_t tsConnectLines_dline3dAssembleLinkedListLineStrings(tsLinkedList *const *lists, int32_t n,
                                                            tsLinkedList **result, int32_t *status,
                                                            int32_t *closed, double *length)
{
    *status = kConnected;
    *closed = 0;
    *length = 0.0;
    // A list held on entry is refused, not freed: it stays the caller's.
    if (*result) {
        *status = kNothingToConnect;
        return TESSAR_FAILURE;
    }
    if (n < 2 || !lists) return TESSAR_FAILURE;
    const std::span<tsLinkedList *const> given{lists, static_cast<size_t>(n)};
    for (const tsLinkedList *list : given) {
        if (tsLinkedList_size(list) == 0) {
            *status = kNothingToConnect;
            return TESSAR_FAILURE;
        }
    }
    try {
        // The temporary strings live in these vectors and go on every path.
        std::vector<std::vector<tsJoinedLine>> chains;
        std::vector<std::vector<dpoint3d>> points;
        std::vector<tsLineString> strings;
        std::vector<tsLineString *> pointers;
        for (const tsLinkedList *list : given) {
            chains.push_back(listElements(list));
            points.push_back(chainString(chains.back()));
        }
        for (std::vector<dpoint3d> &string : points)
            strings.push_back({string.data(), static_cast<int32_t>(string.size())});
        for (tsLineString &string : strings)
            pointers.push_back(&string);

        const ConnectResult connected = connectStrings(pointers);
        *status = connected.status;
        if (connected.status != kConnected) return 0;
        OwnedList merged = mergeChains(chains, connected.order);
        if (!merged) throw std::bad_alloc();
        *result = merged.release();
        *closed = connected.closed;
        *length = connected.length;
        return 0;
    } catch (const std::bad_alloc &) {
        *status = kNothingToConnect;
        return TESSAR_FAILURE;
    }
}
