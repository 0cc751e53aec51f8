#include "havhost/server/TUsers.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>
#include <vector>

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

#include "havcore/client/FoldedName.h"
#include "havcore/client/Utf8.h"
#include "havhost/THostError.h"

namespace havhost {

namespace {

constexpr std::size_t kSaltSize = 16;  // bytes
constexpr std::size_t kHashSize = 32;  // bytes
constexpr std::uint64_t kMaximumMemory = 64 * 1024 * 1024;

// The cost of a hash: about 50 ms and 16 MB.
struct TCost {
  std::uint64_t n = 16384;
  std::uint64_t r = 8;
  std::uint64_t p = 1;
};

std::string Hex(const std::string& bytes) {
  constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

// Empty when `text` is no hexadecimal.
std::string Bytes(const std::string& text) {
  std::string bytes;
  if (text.size() % 2 != 0) return {};
  for (std::size_t at = 0; at < text.size(); at += 2) {
    if (!std::isxdigit(static_cast<unsigned char>(text[at])) ||
        !std::isxdigit(static_cast<unsigned char>(text[at + 1])))
      return {};
    bytes += static_cast<char>(std::stoi(text.substr(at, 2), nullptr, 16));
  }
  return bytes;
}

std::string RandomBytes(std::size_t count) {
  std::string bytes(count, '\0');
  if (RAND_bytes(reinterpret_cast<unsigned char*>(bytes.data()), static_cast<int>(count)) != 1)
    throw THostError("no random numbers");
  return bytes;
}

std::string Scrypt(const std::string& password, const std::string& salt, const TCost& cost) {
  std::string hash(kHashSize, '\0');
  if (EVP_PBE_scrypt(password.data(), password.size(),
                     reinterpret_cast<const unsigned char*>(salt.data()), salt.size(), cost.n,
                     cost.r, cost.p, kMaximumMemory, reinterpret_cast<unsigned char*>(hash.data()),
                     hash.size()) != 1)
    throw THostError("cannot hash a password");
  return hash;
}

std::string Digest(const std::string& secret, const std::string& text) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned size = 0;
  HMAC(EVP_sha256(), secret.data(), static_cast<int>(secret.size()),
       reinterpret_cast<const unsigned char*>(text.data()), text.size(), digest.data(), &size);
  return {reinterpret_cast<const char*>(digest.data()), size};
}

bool SameBytes(const std::string& a, const std::string& b) {
  return a.size() == b.size() && CRYPTO_memcmp(a.data(), b.data(), a.size()) == 0;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

std::string HashText(const std::string& password) {
  const TCost cost;
  const auto salt = RandomBytes(kSaltSize);
  return "scrypt:" + std::to_string(cost.n) + ':' + std::to_string(cost.r) + ':' +
         std::to_string(cost.p) + ':' + Hex(salt) + ':' + Hex(Scrypt(password, salt, cost));
}

struct THash {
  TCost cost;
  std::string salt;
  std::string hash;
};

bool ReadNumber(const std::string& text, std::uint64_t maximum, std::uint64_t& number) {
  if (text.empty() || text.size() > 9) return false;
  number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return false;
    number = number * 10 + static_cast<std::uint64_t>(c - '0');
  }
  return number != 0 && number <= maximum;
}

bool ReadHash(const std::string& text, THash& hash) {
  const auto parts = Split(text, ':');
  if (parts.size() != 6 || parts[0] != "scrypt") return false;
  if (!ReadNumber(parts[1], 1u << 20, hash.cost.n) || !ReadNumber(parts[2], 64, hash.cost.r) ||
      !ReadNumber(parts[3], 16, hash.cost.p))
    return false;
  hash.salt = Bytes(parts[4]);
  hash.hash = Bytes(parts[5]);
  return !hash.salt.empty() && hash.hash.size() == kHashSize;
}

bool IsComment(const std::string& line) { return line.empty() || line[0] == '#'; }

std::string UserOf(const std::string& line) { return line.substr(0, line.find(':')); }

std::vector<std::string> ReadLines(const std::string& file) {
  std::ifstream stream(hav::client::PathOf(file), std::ios::binary);
  if (!stream) throw THostError("cannot read the user file '" + file + "'");
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  // The lines that are written again must be all of them.
  if (stream.bad()) throw THostError("cannot read the user file '" + file + "'");
  return lines;
}

// Nobody sees a file that is half written, or that is not yet for its owner alone.
void WriteLines(const std::string& file, const std::vector<std::string>& lines) {
  namespace fs = std::filesystem;
  const auto path = hav::client::PathOf(file);
  auto aside = path;
  aside += ".new";
  std::error_code failure;
  {
    std::ofstream stream(aside, std::ios::binary | std::ios::trunc);
    fs::permissions(aside, fs::perms::owner_read | fs::perms::owner_write, failure);
    for (const auto& line : lines) stream << line << '\n';
    if (!stream.flush()) throw THostError("cannot write the user file '" + file + "'");
  }
  fs::rename(aside, path, failure);
  if (failure) throw THostError("cannot write the user file '" + file + "': " + failure.message());
}

void CheckName(const std::string& user) {
  for (const char c : user)
    if (static_cast<unsigned char>(c) < 0x20 || c == ':' || c == '#')
      throw THostError("a user's name has no colon, no # and no control character in it");
  if (user.empty()) throw THostError("a user needs a name");
}

}  // namespace

TUsers::TUsers(const std::string& file) : m_secret(RandomBytes(kHashSize)) {
  std::size_t number = 0;
  for (const auto& line : ReadLines(file)) {
    ++number;
    if (IsComment(line)) continue;
    const auto user = UserOf(line);
    THash hash;
    const bool sound = user.size() < line.size() && ReadHash(line.substr(user.size() + 1), hash);
    if (user.empty() || !sound)
      throw THostError("user file '" + file + "', line " + std::to_string(number) +
                       ": no user with a hashed password (havhost passwd writes them)");
    m_hashes[user] = line.substr(user.size() + 1);
  }
  if (m_hashes.empty()) throw THostError("the user file '" + file + "' has no user");
}

bool TUsers::Knows(const std::string& user, const std::string& password) {
  const auto found = m_hashes.find(user);
  THash expected;
  expected.salt.assign(kSaltSize, '\0');
  const bool known = found != m_hashes.end() && ReadHash(found->second, expected);
  const auto hash = Scrypt(password, expected.salt, expected.cost);
  if (!known || !SameBytes(hash, expected.hash)) return false;
  const auto digest = Digest(m_secret, password);
  const std::lock_guard<std::mutex> guard(m_guard);
  m_verified[user] = digest;
  return true;
}

bool TUsers::Recognises(const std::string& user, const std::string& password) const {
  const auto digest = Digest(m_secret, password);
  const std::lock_guard<std::mutex> guard(m_guard);
  const auto verified = m_verified.find(user);
  return verified != m_verified.end() && SameBytes(verified->second, digest);
}

void TUsers::Set(const std::string& file, const std::string& user, const std::string& password) {
  CheckName(user);
  if (password.empty()) throw THostError("a password is not empty");
  std::error_code failure;
  std::vector<std::string> lines;
  if (std::filesystem::exists(hav::client::PathOf(file), failure)) lines = ReadLines(file);
  const auto line = user + ':' + HashText(password);
  bool replaced = false;
  for (auto& existing : lines)
    if (!IsComment(existing) && UserOf(existing) == user) {
      existing = line;
      replaced = true;
    }
  if (!replaced) lines.push_back(line);
  WriteLines(file, lines);
}

bool ReadBasic(const std::string& header, std::string& user, std::string& password) {
  constexpr std::string_view scheme = "basic ";
  if (header.size() < scheme.size() ||
      !hav::client::SameName(header.substr(0, scheme.size()), scheme))
    return false;
  const auto encoded =
      header.substr(std::min(header.find_first_not_of(' ', scheme.size()), header.size()));
  if (encoded.empty() || encoded.size() % 4 != 0 || encoded.size() > 4096) return false;
  std::string text(encoded.size() / 4 * 3, '\0');
  const int size = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                                   reinterpret_cast<const unsigned char*>(encoded.data()),
                                   static_cast<int>(encoded.size()));
  if (size < 0) return false;
  // The decoder counts what the padding stands for.
  std::size_t padding = 0;
  while (padding < 2 && encoded[encoded.size() - 1 - padding] == '=') ++padding;
  text.resize(static_cast<std::size_t>(size) - padding);
  const auto colon = text.find(':');
  if (colon == std::string::npos) return false;
  user = text.substr(0, colon);
  password = text.substr(colon + 1);
  return true;
}

}  // namespace havhost
