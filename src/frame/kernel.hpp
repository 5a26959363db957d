// The frame of a UTMAT_* call: the kernel's process-wide state and the steps
// every kernel function goes through (clear the error word on entry, test
// pointers, fail, read the word after a nested call, copy a table failure).
// Internal: never included by a public header.
#pragma once

#include <cstdint>

#include <tessar/frame.h>

namespace tessar::detail {

inline constexpr std::int32_t kFailure = TESSAR_FAILURE;

// The kernel's and the table layer's error words and the kernel's settings.
// Plain process-wide variables, neither locked nor per thread.
extern std::int32_t utmatErreur;
extern std::int32_t utmatErreurDetail;
extern std::int32_t memErreur;
extern std::int32_t memErreurDetail;
extern double utmatCalculPrec;
extern double utmatDistanceTolerance;
extern std::int32_t utmatSpiralFormula;

// Step 1: every computing kernel function starts here.
inline void enterKernel() noexcept
{
    utmatErreur = 0;
}

// Stores the failure value in the kernel's word. Returns true so that a
// caller can write `return fail(), result;` or `if (...) return (void)fail();`.
inline bool fail() noexcept
{
    utmatErreur = kFailure;
    return true;
}

// Step 2: a null among the tested pointers fails the call. Returns true when
// the caller must return at once.
template <class... P> inline bool failIfNull(const P *...pointers) noexcept
{
    if (((pointers == nullptr) || ...)) return fail();
    return false;
}

// Step 4: after a nested kernel call that can fail, the composite returns at
// once with the nested value left in place.
inline bool nestedFailed() noexcept
{
    return utmatErreur != 0;
}

// Step 4 for tables: a MEM_* failure reaches the kernel only through this
// copy, the one writer of the kernel's detail word.
inline bool tableFailed() noexcept
{
    MEM_GetErreur(&utmatErreur, &utmatErreurDetail);
    return utmatErreur != 0;
}

// The kernel's comparisons as used inside kernel functions. Each leaves the
// error word at 0, exactly as the exported UTMAT_ wrappers do.
inline bool egal(double a, double b, double t) noexcept
{
    return UTMAT_Egal(a, b, t) != 0;
}
inline bool inf(double a, double b, double t) noexcept
{
    return UTMAT_Inf(a, b, t) != 0;
}
inline bool infOuEgal(double a, double b, double t) noexcept
{
    return UTMAT_InfOuEgal(a, b, t) != 0;
}
inline bool sup(double a, double b, double t) noexcept
{
    return UTMAT_Sup(a, b, t) != 0;
}
inline bool supOuEgal(double a, double b, double t) noexcept
{
    return UTMAT_SupOuEgal(a, b, t) != 0;
}

}  // namespace tessar::detail
