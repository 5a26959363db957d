/*
 * Tessar: export and linkage macros.
 *
 * TESSAR_API marks every function and datum of the library's interface. The
 * library is built with hidden visibility, so what carries this mark is
 * exactly what a caller can link to. TESSAR_BEGIN_DECLS / TESSAR_END_DECLS
 * give the declarations C linkage when a header is read by a C++ compiler.
 */
#ifndef TESSAR_EXPORT_H
#define TESSAR_EXPORT_H

#if defined(TESSAR_STATIC)
#define TESSAR_API
#elif defined(_WIN32)
#if defined(TESSAR_BUILDING)
#define TESSAR_API __declspec(dllexport)
#else
#define TESSAR_API __declspec(dllimport)
#endif
#else
#define TESSAR_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#define TESSAR_BEGIN_DECLS extern "C" {
#define TESSAR_END_DECLS }
#else
#define TESSAR_BEGIN_DECLS
#define TESSAR_END_DECLS
#endif

#endif /* TESSAR_EXPORT_H */
