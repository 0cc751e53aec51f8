// Stands in for the header of Microsoft's runtime of this name: run-time type information.
#pragma once

#include <stddef.h>
#include <vcruntime_exception.h>

class type_info {
 public:
  type_info(const type_info&) = delete;
  type_info& operator=(const type_info&) = delete;
  virtual ~type_info();

  size_t hash_code() const noexcept;
  bool operator==(const type_info& other) const noexcept;
  bool operator!=(const type_info& other) const noexcept;
  bool before(const type_info& other) const noexcept;
  const char* name() const;
  const char* raw_name() const;

 private:
  void* m_undecorated;
  char m_decorated[1];
};

namespace std {

using ::type_info;

class bad_cast : public exception {
 public:
  bad_cast() noexcept;
};

class bad_typeid : public exception {
 public:
  bad_typeid() noexcept;
};

}  // namespace std
