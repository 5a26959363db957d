// The reference-counted object: counting that never deletes, copies, layout and slot order, no trace.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>

#include <gtest/gtest.h>

#include <tessar/object.h>

namespace {

// A road element that counts its own destruction; final, as the base has no virtual destructor.
class Segment final : public TsObject
{
  public:
    explicit Segment(int *destroyed) : destroyed_(destroyed) {}
    Segment(const Segment &) = default;
    Segment &operator=(const Segment &) = default;
    ~Segment() { ++*destroyed_; }
    using TsObject::getReferenceCount, TsObject::getUserData, TsObject::internalAddRef,
        TsObject::internalGetClsId, TsObject::internalRelease, TsObject::internalSetClsId,
        TsObject::setUserData;
    int64_t user() const
    {
        int64_t value = -1;
        getUserData(value);
        return value;
    }
    // Offsets of the count, the class id and the user data from the start of the base object.
    std::array<std::ptrdiff_t, 3> offsets() const
    {
        const auto *base = reinterpret_cast<const char *>(static_cast<const TsObject *>(this));
        return {reinterpret_cast<const char *>(&referenceCount) - base,
                reinterpret_cast<const char *>(&classId) - base,
                reinterpret_cast<const char *>(&userData) - base};
    }

  private:
    int *destroyed_;
};

TEST(TsObject, CountingNeverDeletesAndWritesNoTrace)
{
    // The trace switch is off, so counting leaves the working directory as it was.
    namespace fs = std::filesystem;
    const bool traced = fs::exists("counter.log");
    const auto traceSize = traced ? fs::file_size("counter.log") : 0;
    int destroyed = 0;
    auto *segment = new Segment(&destroyed);
    EXPECT_EQ(segment->getReferenceCount(), 0u);
    EXPECT_EQ(segment->user(), 0);
    // Each row: add or release, its result, the count after; the last release leaves the object alive;
    // below zero the count wraps (~0u).
    const struct {
        bool addRef;
        uint32_t result, count;
    } rows[] = {
        {true, 0, 1}, {true, 0, 2},  {false, 1, 1},     {false, 0, 0},
        {true, 0, 1}, {false, 0, 0}, {false, ~0u, ~0u}, {true, 0, 0},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(row.addRef ? uint32_t(segment->internalAddRef()) : segment->internalRelease(), row.result);
        EXPECT_EQ(segment->getReferenceCount(), row.count);
        EXPECT_EQ(destroyed, 0);
    }
    delete segment;  // the owner that released the last reference deletes it
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(fs::exists("counter.log"), traced);
    EXPECT_EQ(traced ? fs::file_size("counter.log") : 0, traceSize);
}

TEST(TsObject, ClassIdUserDataAndCopies)
{
    int destroyed = 0;
    Segment original(&destroyed), assigned(&destroyed);
    // Each row: a class id and a user word, stored and read back whole.
    const std::pair<uint32_t, int64_t> rows[] = {
        {0u, 0}, {0x5EC7u, -1}, {0xFFFFFFFFu, INT64_MIN}, {7u, INT64_MAX}, {0xA11u, -5'000'000'000'000}};
    for (const auto &[id, word] : rows) {
        EXPECT_EQ(original.internalSetClsId(id), 0);
        original.setUserData(word);
        EXPECT_EQ(original.internalGetClsId(), id);
        EXPECT_EQ(original.user(), word);
    }
    for (int i = 0; i < 3; ++i)
        original.internalAddRef();
    // The copy and the assignment carry all three fields, the count too, not a fresh 0.
    Segment copied(original);
    assigned.internalSetClsId(1);
    assigned.setUserData(1);
    assigned.internalAddRef();
    assigned = original;
    for (Segment *s : {&copied, &assigned}) {
        EXPECT_EQ(s->getReferenceCount(), 3u);
        EXPECT_EQ(s->internalGetClsId(), 0xA11u);
        EXPECT_EQ(s->user(), -5'000'000'000'000);
    }
    copied.internalRelease();  // the copies count on their own from there
    EXPECT_EQ(original.getReferenceCount(), 3u);
    EXPECT_EQ(copied.getReferenceCount(), 2u);
}

TEST(TsObject, LayoutAndSlotOrder)
{
    int destroyed = 0;
    Segment segment(&destroyed);
    // The table of virtual operations first, then the three fields in order.
    EXPECT_EQ(sizeof(TsObject), 24u);
    EXPECT_EQ(segment.offsets(), (std::array<std::ptrdiff_t, 3>{8, 12, 16}));
#if defined(__x86_64__)
    // A pointer to a virtual member holds 1 + the byte offset of its slot (Itanium C++ ABI).
    const auto slotOf = [](auto member) {
        std::ptrdiff_t raw = 0;
        std::memcpy(&raw, &member, sizeof raw);
        return (raw - 1) / static_cast<std::ptrdiff_t>(sizeof(void *));
    };
    EXPECT_EQ(
        (std::array<std::ptrdiff_t, 7>{slotOf(&Segment::getReferenceCount), slotOf(&Segment::internalRelease),
                                       slotOf(&Segment::internalAddRef), slotOf(&Segment::internalGetClsId),
                                       slotOf(&Segment::internalSetClsId), slotOf(&Segment::setUserData),
                                       slotOf(&Segment::getUserData)}),
        (std::array<std::ptrdiff_t, 7>{0, 1, 2, 3, 4, 5, 6}));
#else
    GTEST_SKIP() << "slot offsets are read in the x86-64 encoding of member pointers";
#endif
}

}  // namespace
