// Stands in for the header of Microsoft's runtime of this name: operator new and delete.
#pragma once

#include <stddef.h>

namespace std {

struct nothrow_t {
  explicit nothrow_t() = default;
};
extern const nothrow_t nothrow;

enum class align_val_t : size_t {};

}  // namespace std

void* operator new(size_t size);
void* operator new(size_t size, const std::nothrow_t&) noexcept;
void* operator new[](size_t size);
void* operator new[](size_t size, const std::nothrow_t&) noexcept;
void operator delete(void* block) noexcept;
void operator delete(void* block, size_t size) noexcept;
void operator delete(void* block, const std::nothrow_t&) noexcept;
void operator delete[](void* block) noexcept;
void operator delete[](void* block, size_t size) noexcept;
void operator delete[](void* block, const std::nothrow_t&) noexcept;

inline void* operator new(size_t, void* place) noexcept { return place; }
inline void* operator new[](size_t, void* place) noexcept { return place; }
inline void operator delete(void*, void*) noexcept {}
inline void operator delete[](void*, void*) noexcept {}
