// Export.h: symbol visibility, and the two facts about the C++ ABI that the contract
// depends on. The only header of the project that spells a compiler's attributes.
//
// HAVCORE_API   what `havcore` supplies and everyone else imports.
// INMEM_API     what the plug-in exports.
// HAV_TYPE      types that cross library borders but have no code of their own to import
//               (interfaces, the exception): their run-time type information is shared.
//
// Define HAVCORE_STATIC when `havcore` is linked as objects.
#pragma once

#if defined(_WIN32)
#define HAV_EXPORT __declspec(dllexport)
#define HAV_IMPORT __declspec(dllimport)
#define HAV_TYPE
#define HAV_EMIT
#else
#define HAV_EXPORT __attribute__((visibility("default")))
#define HAV_IMPORT __attribute__((visibility("default")))
#define HAV_TYPE __attribute__((visibility("default")))
#define HAV_EMIT __attribute__((used))
#endif

#if defined(HAVCORE_STATIC)
#define HAVCORE_API
#elif defined(HAVCORE_BUILDING)
#define HAVCORE_API HAV_EXPORT
#else
#define HAVCORE_API HAV_IMPORT
#endif

// The plug-in's symbols are reached through the loader or linked as objects, never through
// an import library: there is nothing to import.
#if defined(INMEM_BUILDING)
#define INMEM_API HAV_EXPORT
#define INMEM_INLINE_API HAV_EXPORT HAV_EMIT
#else
#define INMEM_API
#define INMEM_INLINE_API
#endif

// MSVC lays a run of overloads out in reverse order of declaration; the Itanium ABI keeps
// the order. (_MSC_VER covers Clang with an MSVC target, and not MinGW.)
#if defined(_MSC_VER)
#define HAV_OVERLOADS_REVERSED 1
#else
#define HAV_OVERLOADS_REVERSED 0
#endif
