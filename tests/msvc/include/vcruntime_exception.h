// Stands in for the header of Microsoft's runtime of this name: exceptions and their base.
#pragma once

namespace std {

class exception {
 public:
  exception() noexcept;
  exception(const char* text) noexcept;
  exception(const char* text, int) noexcept;
  exception(const exception& other) noexcept;
  exception& operator=(const exception& other) noexcept;
  virtual ~exception() noexcept;
  virtual const char* what() const;

 private:
  const char* m_text;
  bool m_owned;
};

class bad_exception : public exception {
 public:
  bad_exception() noexcept;
};

class bad_alloc : public exception {
 public:
  bad_alloc() noexcept;

 private:
  friend class bad_array_new_length;
  bad_alloc(const char* text) noexcept;
};

class bad_array_new_length : public bad_alloc {
 public:
  bad_array_new_length() noexcept;
};

}  // namespace std
