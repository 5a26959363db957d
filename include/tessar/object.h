/*
 * Tessar: reference-counted object.
 *
 * TsObject is the base class of the library's reference-counted objects, a
 * C++ class: a C compiler reads this header and finds nothing in it. An
 * object carries a reference count, a class id and a 64-bit word of user
 * data. A new object has a count of 0 and user data of 0; its class id is
 * not set. Copying an object copies all three fields, the reference count
 * among them. Releasing the last reference does not delete the object: its
 * owner does, and the class has no virtual destructor.
 *
 * Counting is not atomic: change an object's count from one thread at a
 * time. A library-wide switch, off at load and not reachable through any
 * function, would append a trace of every count change to the file
 * "counter.log" in the current directory.
 */
#ifndef TESSAR_OBJECT_H
#define TESSAR_OBJECT_H

#include <stdint.h>

#include <tessar/export.h>

#ifdef __cplusplus

/** The reference-counted base class. */
class TESSAR_API TsObject
{
  public:
    /** Copies the reference count, the class id and the user data. */
    TsObject(const TsObject &other);

    /** Copies the reference count, the class id and the user data. \return this object. */
    TsObject &operator=(const TsObject &other);

  protected:
    /** A new object: reference count 0, user data 0, class id not set. */
    TsObject();

    /* ---- Virtual operations, in the order of their slots ---- */

    /** \return the reference count. */
    virtual uint32_t getReferenceCount() const;

    /** Lowers the reference count; the object does not delete itself at zero. \return the new count. */
    virtual uint32_t internalRelease();

    /** Raises the reference count. \return 0. */
    virtual int32_t internalAddRef();

    /** \return the class id. */
    virtual uint32_t internalGetClsId();

    /** Stores the class id. \return 0. */
    virtual int32_t internalSetClsId(uint32_t id);

    /** Stores the user data. */
    virtual void setUserData(int64_t value);

    /** Reads the user data. \param[out] value the stored value */
    virtual void getUserData(int64_t &value) const;

    /* ---- Fields, in order after the table of virtual operations ---- */

    uint32_t referenceCount; /**< the number of references held */
    uint32_t classId;        /**< the class id, set by internalSetClsId */
    int64_t userData;        /**< the caller's word */
};

#endif /* __cplusplus */

#endif /* TESSAR_OBJECT_H */
