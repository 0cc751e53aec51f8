// TUsers: who may use the server, from a file of names and hashed passwords.
//
// A line is NAME:scrypt:N:r:p:SALT:HASH, salt and hash in hexadecimal. Lines that are empty or
// begin with # do not count.
//
// Threads: Knows is called by one at a time, Recognises by any.
// Errors:  THostError, with the file and the line.
#pragma once

#include <map>
#include <mutex>
#include <string>

namespace havhost {

class TUsers {
 public:
  // Reads the file.
  explicit TUsers(const std::string& file);

  // True when `user` has this password. It takes as long as it takes to hash it, and no less
  // when there is no such user.
  bool Knows(const std::string& user, const std::string& password);
  // True when Knows has said so before; quickly.
  bool Recognises(const std::string& user, const std::string& password) const;

  // Writes `user` with a hash of the password into the file, in place of the line that it has;
  // others stay. A new file is for its owner's eyes only.
  static void Set(const std::string& file, const std::string& user, const std::string& password);

 private:
  std::map<std::string, std::string> m_hashes;  // by user: what is behind the name
  mutable std::mutex m_guard;
  std::map<std::string, std::string> m_verified;  // by user: a digest of the right password
  std::string m_secret;                           // of these digests
};

// True when `header` (of HTTP Basic) holds a name and a password.
bool ReadBasic(const std::string& header, std::string& user, std::string& password);

}  // namespace havhost
