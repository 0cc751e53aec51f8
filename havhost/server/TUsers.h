// TUsers: who may use the server, from a file of names and hashed passwords.
//
// A line is NAME:scrypt:N:r:p:SALT:HASH, salt and hash in hexadecimal. Lines that are empty or
// begin with # do not count.
//
// Threads: one at a time.
// Errors:  THostError, with the file and the line.
#pragma once

#include <map>
#include <string>

namespace havhost {

class TUsers {
 public:
  // Reads the file.
  explicit TUsers(const std::string& file);

  // True when `user` has this password. What was right once is recognised quickly; a wrong
  // password takes as long as it takes to hash it, and so does one of a user that there is not.
  bool Knows(const std::string& user, const std::string& password);

  // Writes `user` with a hash of the password into the file, in place of the line that it has;
  // others stay. A new file is for its owner's eyes only.
  static void Set(const std::string& file, const std::string& user, const std::string& password);

 private:
  std::map<std::string, std::string> m_hashes;    // by user: what is behind the name
  std::map<std::string, std::string> m_verified;  // by user: a digest of the right password
  std::string m_secret;                           // of these digests
};

// True when `header` (of HTTP Basic) holds a name and a password.
bool ReadBasic(const std::string& header, std::string& user, std::string& password);

}  // namespace havhost
