// The dynamic array and the linked list at the sizes of a road model: n
// points pushed at the end and popped again, and n points read in order.
#include <cstdint>

#include <benchmark/benchmark.h>

#include <tessar/dynarray.h>
#include <tessar/linkedlist.h>
#include <tessar/types.h>

namespace {

int32_t countOf(const benchmark::State &state)
{
    return static_cast<int32_t>(state.range(0));
}

tsDynArray *filledArray(int32_t n)
{
    tsDynArray *array = nullptr;
    tsDynArray_create(&array, sizeof(dpoint3d));
    for (int32_t i = 0; i < n; ++i) {
        const dpoint3d point{double(i), double(i), 0.0};
        tsDynArray_insertAndSetElement(array, -1, &point);
    }
    return array;
}

tsLinkedList *filledList(int32_t n)
{
    tsLinkedList *list = nullptr;
    tsLinkedList_create(&list, sizeof(dpoint3d));
    for (int32_t i = 0; i < n; ++i) {
        const dpoint3d point{double(i), double(i), 0.0};
        tsLinkedList_pushBack(list, &point);
    }
    return list;
}

int32_t byX(const void *a, const void *b, const tsLinkedList *)
{
    const double x = static_cast<const dpoint3d *>(a)->x, y = static_cast<const dpoint3d *>(b)->x;
    return x < y ? -1 : (x > y ? 1 : 0);
}

int32_t addX(void *element, void *userData)
{
    *static_cast<double *>(userData) += static_cast<const dpoint3d *>(element)->x;
    return 0;
}

void DynArrayPushPop(benchmark::State &state)
{
    const int32_t n = countOf(state);
    tsDynArray *array = nullptr;
    tsDynArray_create(&array, sizeof(dpoint3d));
    for (auto _ : state) {
        for (int32_t i = 0; i < n; ++i) {
            const dpoint3d point{double(i), 0.0, 0.0};
            tsDynArray_insertAndSetElement(array, -1, &point);
        }
        while (tsDynArray_getSize(array) > 0)
            tsDynArray_deleteElement(array, -1);
    }
    tsDynArray_destroy(&array);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(DynArrayPushPop)->RangeMultiplier(10)->Range(100, 1000000);

void DynArrayReadByIndex(benchmark::State &state)
{
    const int32_t n = countOf(state);
    tsDynArray *array = filledArray(n);
    for (auto _ : state) {
        double sum = 0.0;
        dpoint3d point;
        for (int32_t i = 0; i < n; ++i) {
            tsDynArray_getElement(array, i, &point);
            sum += point.x;
        }
        benchmark::DoNotOptimize(sum);
    }
    tsDynArray_destroy(&array);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(DynArrayReadByIndex)->RangeMultiplier(10)->Range(100, 1000000);

void DynArrayPerformAction(benchmark::State &state)
{
    const int32_t n = countOf(state);
    tsDynArray *array = filledArray(n);
    for (auto _ : state) {
        double sum = 0.0;
        tsDynArray_performAction(array, addX, &sum, -1, -1);
        benchmark::DoNotOptimize(sum);
    }
    tsDynArray_destroy(&array);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(DynArrayPerformAction)->RangeMultiplier(10)->Range(100, 1000000);

void ListPushPop(benchmark::State &state)
{
    const int32_t n = countOf(state);
    tsLinkedList *list = nullptr;
    tsLinkedList_create(&list, sizeof(dpoint3d));
    for (auto _ : state) {
        for (int32_t i = 0; i < n; ++i) {
            const dpoint3d point{double(i), 0.0, 0.0};
            tsLinkedList_pushBack(list, &point);
        }
        while (tsLinkedList_size(list) > 0)
            tsLinkedList_popFront(list);
    }
    tsLinkedList_destroy(&list);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(ListPushPop)->RangeMultiplier(10)->Range(100, 1000000);

void ListIterate(benchmark::State &state)
{
    const int32_t n = countOf(state);
    tsLinkedList *list = filledList(n);
    tsLListIterator *it = nullptr;
    tsLListIterator_create(&it, list);
    for (auto _ : state) {
        double sum = 0.0;
        dpoint3d point;
        tsLListIterator_reset(it);
        while (tsLListIterator_next(it) == 0) {
            tsLListIterator_getCurrent(it, &point);
            sum += point.x;
        }
        benchmark::DoNotOptimize(sum);
    }
    tsLListIterator_destroy(&it);
    tsLinkedList_destroy(&list);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(ListIterate)->RangeMultiplier(10)->Range(100, 1000000);

void ListPerformAction(benchmark::State &state)
{
    const int32_t n = countOf(state);
    tsLinkedList *list = filledList(n);
    for (auto _ : state) {
        double sum = 0.0;
        tsLinkedList_performAction(list, addX, &sum, nullptr, nullptr);
        benchmark::DoNotOptimize(sum);
    }
    tsLinkedList_destroy(&list);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(ListPerformAction)->RangeMultiplier(10)->Range(100, 1000000);

void ListSort(benchmark::State &state)
{
    const int32_t n = countOf(state);
    tsLinkedList *list = filledList(0);
    tsLinkedList_setCompareFunction(list, byX);
    for (auto _ : state) {
        state.PauseTiming();
        tsLinkedList_clear(list);
        // Stations 0 to 999 in a scrambled order, each repeated n / 1000 times.
        for (int32_t i = 0; i < n; ++i) {
            const dpoint3d point{double((i * 7919) % 1000), double(i), 0.0};
            tsLinkedList_pushBack(list, &point);
        }
        state.ResumeTiming();
        tsLinkedList_sort(list);
    }
    tsLinkedList_destroy(&list);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(ListSort)->RangeMultiplier(10)->Range(100, 1000000);

}  // namespace
