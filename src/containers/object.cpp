// TsObject: the reference-counted base class. Counting is plain, not atomic,
// and releasing the last reference leaves the object alive: its owner
// deletes it.
//
// A library-wide trace of count changes exists: with its switch on, each
// change appends a line to "counter.log" in the current directory and a
// running count of all references is kept. The switch is off at load and no
// function turns it on, so in practice nothing is ever written.
#include <cstdint>
#include <cstdio>

#include <tessar/object.h>

namespace {

// Off at load, and nothing in the library sets it.
bool counterLogOn = false;

// References added minus references released, over all objects; only kept
// while the trace is on.
int32_t runningCount = 0;

// Appends one trace line: the object's address cut to 32 bits, the running
// count and the object's count, both after the change. The file is opened
// for each line.
void traceCountChange(const char *format, const void *object, uint32_t referenceCount)
{
    std::FILE *file = std::fopen("counter.log", "at+");
    if (file == nullptr) return;
    std::fprintf(file, format, static_cast<int>(reinterpret_cast<std::uintptr_t>(object)), runningCount,
                 static_cast<int>(referenceCount));
    std::fclose(file);
}

}  // namespace

// The class id is deliberately left unset.
TsObject::TsObject() : referenceCount(0), userData(0) {}

TsObject::TsObject(const TsObject &other)
    : referenceCount(other.referenceCount), classId(other.classId), userData(other.userData)
{
}

TsObject &TsObject::operator=(const TsObject &other)
{
    // The reference count is copied with the rest.
    referenceCount = other.referenceCount;
    classId = other.classId;
    userData = other.userData;
    return *this;
}

uint32_t TsObject::getReferenceCount() const
{
    return referenceCount;
}

uint32_t TsObject::internalRelease()
{
    // No delete at zero, and no guard below it: a count of 0 wraps around.
    --referenceCount;
    if (counterLogOn) {
        --runningCount;
        traceCountChange("\n <= %d, %d, %d \n", this, referenceCount);
    }
    return referenceCount;
}

int32_t TsObject::internalAddRef()
{
    ++referenceCount;
    if (counterLogOn) {
        ++runningCount;
        traceCountChange("\n => %d, %d, %d \n", this, referenceCount);
    }
    return 0;
}

uint32_t TsObject::internalGetClsId()
{
    return classId;
}

int32_t TsObject::internalSetClsId(uint32_t id)
{
    classId = id;
    return 0;
}

void TsObject::setUserData(int64_t value)
{
    userData = value;
}

void TsObject::getUserData(int64_t &value) const
{
    value = userData;
}
