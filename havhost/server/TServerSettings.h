// TServerSettings: where and for whom the server listens, and what it grants each client.
//
// Ownership: a value.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace havhost {

struct TServerSettings {
  std::string address = "127.0.0.1";
  std::uint16_t port = 5988;
  std::string usersFile;        // empty: everybody who can connect may
  std::string certificateFile;  // PEM; empty: no TLS
  std::string keyFile;          // PEM; empty: the key stands in the certificate file
  bool writable = false;

  std::size_t maximumConnections = 128;
  std::size_t maximumHeader = 16 * 1024;         // bytes
  std::size_t maximumRequest = 2 * 1024 * 1024;  // bytes, of a body
  // For a request to arrive as a whole, and for each piece of an answer to be taken.
  std::chrono::seconds timeout{30};
};

}  // namespace havhost
