// Before.h: included before every source that is compiled for the MSVC ABI without Microsoft's
// headers. MinGW-w64's headers of the C library take their place; their attributes stand where
// Clang refuses them when it plays MSVC, and the C11 functions that libc++ wants are missing.
#pragma once

#include <_mingw.h>

#undef __MINGW_ATTRIB_DEPRECATED
#undef __MINGW_ATTRIB_DEPRECATED_MSG
#undef __MINGW_ATTRIB_DEPRECATED_MSVC2005
#undef __MINGW_ATTRIB_DEPRECATED_SEC_WARN
#undef __MINGW_ATTRIB_DEPRECATED_STR
#undef __MINGW_ATTRIB_NORETURN
#undef __MINGW_NOTHROW
#define __MINGW_ATTRIB_DEPRECATED
#define __MINGW_ATTRIB_DEPRECATED_MSG(text)
#define __MINGW_ATTRIB_DEPRECATED_MSVC2005
#define __MINGW_ATTRIB_DEPRECATED_SEC_WARN
#define __MINGW_ATTRIB_DEPRECATED_STR(text)
#define __MINGW_ATTRIB_NORETURN
#define __MINGW_NOTHROW

// Microsoft's library stands in std itself and not in a namespace within, and so do the names
// in what is exported.
#include <__config>

#undef _LIBCPP_BEGIN_NAMESPACE_STD
#undef _LIBCPP_END_NAMESPACE_STD
#undef _VSTD
#define _LIBCPP_BEGIN_NAMESPACE_STD namespace std {
#define _LIBCPP_END_NAMESPACE_STD }
#define _VSTD std

#include <corecrt.h>
#include <stddef.h>

struct timespec;
extern "C" {
float _strtof_l(const char* text, char** end, _locale_t locale);
long double _strtold_l(const char* text, char** end, _locale_t locale);
void* aligned_alloc(size_t alignment, size_t size);
int at_quick_exit(void (*function)(void));
void quick_exit(int status);
int timespec_get(timespec* time, int base);
}
