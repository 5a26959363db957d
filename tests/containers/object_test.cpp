// The reference-counted object: counting that never deletes, copies that
// carry the count, the class id and the user data, the layout and slot order
// that derived classes in other modules compile against, and the trace file
// that stays unwritten.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/object.h>

namespace {

// A road element shared between owners; it counts its own destruction. It
// is final: the base has no virtual destructor, so it is deleted as itself.
class Segment final : public TsObject
{
  public:
    explicit Segment(int *destroyed) : destroyed_(destroyed) {}
    Segment(const Segment &) = default;
    Segment &operator=(const Segment &) = default;
    ~Segment() { ++*destroyed_; }

    using TsObject::getReferenceCount;
    using TsObject::getUserData;
    using TsObject::internalAddRef;
    using TsObject::internalGetClsId;
    using TsObject::internalRelease;
    using TsObject::internalSetClsId;
    using TsObject::setUserData;

    // Offsets of the fields from the start of the base object.
    std::ptrdiff_t offsetOfCount() const { return offsetOf(&referenceCount); }
    std::ptrdiff_t offsetOfClassId() const { return offsetOf(&classId); }
    std::ptrdiff_t offsetOfUserData() const { return offsetOf(&userData); }

    int64_t userDataValue() const
    {
        int64_t value = -1;
        getUserData(value);
        return value;
    }

  private:
    std::ptrdiff_t offsetOf(const void *field) const
    {
        return static_cast<const char *>(field) -
               reinterpret_cast<const char *>(static_cast<const TsObject *>(this));
    }
    int *destroyed_;
};

// An owner's hold on a shared segment: copying the hold adds a reference,
// dropping it releases one, and the owner that releases the last deletes
// the segment, since the segment never deletes itself.
class Hold
{
  public:
    explicit Hold(Segment *segment) : segment_(segment) { segment_->internalAddRef(); }
    Hold(const Hold &other) : Hold(other.segment_) {}
    Hold &operator=(const Hold &) = delete;
    ~Hold()
    {
        if (segment_->internalRelease() == 0) delete segment_;
    }

  private:
    Segment *segment_;
};

TEST(TsObject, NewObjectHasNoReferencesAndNoUserData)
{
    int destroyed = 0;
    Segment segment(&destroyed);
    EXPECT_EQ(segment.getReferenceCount(), 0u);
    EXPECT_EQ(segment.userDataValue(), 0);
}

TEST(TsObject, CountingNeverDeletes)
{
    int destroyed = 0;
    auto *segment = new Segment(&destroyed);
    // Each row: the operation, what it returns, the count after it.
    struct Row {
        bool addRef;
        uint32_t result;
        uint32_t count;
    } rows[] = {
        {true, 0, 1},  {true, 0, 2},
        {false, 1, 1}, {false, 0, 0},                      // the last release leaves the object alive
        {true, 0, 1},                                      // and it can be taken again
        {false, 0, 0}, {false, 0xFFFFFFFFu, 0xFFFFFFFFu},  // no guard below zero: the unsigned count wraps
        {true, 0, 0},
    };
    for (const Row &row : rows) {
        const uint32_t result =
            row.addRef ? static_cast<uint32_t>(segment->internalAddRef()) : segment->internalRelease();
        EXPECT_EQ(result, row.result);
        EXPECT_EQ(segment->getReferenceCount(), row.count);
        EXPECT_EQ(destroyed, 0);
    }
    delete segment;
    EXPECT_EQ(destroyed, 1);
}

TEST(TsObject, ClassIdAndUserData)
{
    int destroyed = 0;
    Segment segment(&destroyed);
    // Each row: a class id and a user word, stored and read back whole.
    const std::pair<uint32_t, int64_t> rows[] = {
        {0u, 0}, {0x5EC7u, -1}, {0xFFFFFFFFu, INT64_MIN}, {7u, INT64_MAX}, {1u, int64_t{1} << 40},
    };
    for (const auto &[id, word] : rows) {
        EXPECT_EQ(segment.internalSetClsId(id), 0);
        segment.setUserData(word);
        EXPECT_EQ(segment.internalGetClsId(), id);
        EXPECT_EQ(segment.userDataValue(), word);
    }
}

TEST(TsObject, CopiesCarryAllThreeFields)
{
    int destroyed = 0;
    Segment original(&destroyed);
    original.internalSetClsId(0xA11);
    original.setUserData(-5'000'000'000'000);
    for (int i = 0; i < 3; ++i)
        original.internalAddRef();

    Segment copied(original);
    EXPECT_EQ(copied.getReferenceCount(), 3u);  // the count too, not a fresh 0
    EXPECT_EQ(copied.internalGetClsId(), 0xA11u);
    EXPECT_EQ(copied.userDataValue(), -5'000'000'000'000);

    Segment assigned(&destroyed);
    assigned.internalSetClsId(1);
    assigned.setUserData(1);
    assigned.internalAddRef();
    assigned = original;
    EXPECT_EQ(assigned.getReferenceCount(), 3u);
    EXPECT_EQ(assigned.internalGetClsId(), 0xA11u);
    EXPECT_EQ(assigned.userDataValue(), -5'000'000'000'000);

    // The copies count on their own from there.
    copied.internalRelease();
    EXPECT_EQ(original.getReferenceCount(), 3u);
    EXPECT_EQ(copied.getReferenceCount(), 2u);
    EXPECT_EQ(destroyed, 0);
}

TEST(TsObject, SharedSegmentIsDeletedOnceByItsLastOwner)
{
    int destroyed = 0;
    auto *segment = new Segment(&destroyed);
    {
        Hold station1(segment);
        std::vector<Hold> stations(4, station1);  // five holds in all
        EXPECT_EQ(segment->getReferenceCount(), 5u);
        stations.pop_back();
        stations.pop_back();
        EXPECT_EQ(segment->getReferenceCount(), 3u);
        stations.clear();
        EXPECT_EQ(segment->getReferenceCount(), 1u);
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(TsObject, LayoutAndSlotOrder)
{
    int destroyed = 0;
    Segment segment(&destroyed);
    // The table of virtual operations first, then the three fields in order.
    EXPECT_EQ(sizeof(TsObject), 24u);
    EXPECT_EQ(segment.offsetOfCount(), 8);
    EXPECT_EQ(segment.offsetOfClassId(), 12);
    EXPECT_EQ(segment.offsetOfUserData(), 16);
#if defined(__x86_64__)
    // A pointer to a virtual member holds 1 + the byte offset of its slot in
    // the table (Itanium C++ ABI), so the slots can be read off in order.
    const auto slotOf = [](auto member) {
        std::ptrdiff_t raw = 0;
        std::memcpy(&raw, &member, sizeof raw);
        return (raw - 1) / static_cast<std::ptrdiff_t>(sizeof(void *));
    };
    EXPECT_EQ(slotOf(&Segment::getReferenceCount), 0);
    EXPECT_EQ(slotOf(&Segment::internalRelease), 1);
    EXPECT_EQ(slotOf(&Segment::internalAddRef), 2);
    EXPECT_EQ(slotOf(&Segment::internalGetClsId), 3);
    EXPECT_EQ(slotOf(&Segment::internalSetClsId), 4);
    EXPECT_EQ(slotOf(&Segment::setUserData), 5);
    EXPECT_EQ(slotOf(&Segment::getUserData), 6);
#else
    GTEST_SKIP() << "slot offsets are read in the x86-64 encoding of member pointers";
#endif
}

TEST(TsObject, CountingWritesNoTraceFile)
{
    // The trace switch is off, so counting leaves the working directory as it was.
    namespace fs = std::filesystem;
    const fs::path trace = "counter.log";
    const bool existed = fs::exists(trace);
    const auto sizeBefore = existed ? fs::file_size(trace) : 0;
    int destroyed = 0;
    Segment segment(&destroyed);
    for (int i = 0; i < 10; ++i) {
        segment.internalAddRef();
        segment.internalRelease();
    }
    EXPECT_EQ(fs::exists(trace), existed);
    if (existed) {
        EXPECT_EQ(fs::file_size(trace), sizeBefore);
    }
}

}  // namespace
