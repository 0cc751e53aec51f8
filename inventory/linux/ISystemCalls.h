// ISystemCalls: what a Linux system tells only when it is asked, and not by a file that the
// kernel keeps. For another machine, files of its folder answer in its place.
//
// Ownership: whoever made it.
// Threads:   one thread at a time.
// Errors:    what cannot be found out is added to the collection's failures; the answer is
//            then empty.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "inventory/TCollection.h"
#include "inventory/TMachine.h"

namespace hav::inventory {

class ISystemCalls {
 public:
  struct TUsage {
    std::uint64_t size;       // bytes
    std::uint64_t available;  // bytes, to any user
  };
  using TProperties = std::map<std::string, std::string, std::less<>>;
  using TAddresses = std::map<std::string, std::vector<std::string>, std::less<>>;

  virtual ~ISystemCalls() = default;

  virtual std::optional<TUsage> FileSystemUsage(const std::string& mountPoint,
                                                TCollection& failures) const = 0;
  // What the device database knows of a device: "b8:0" is block device 8:0, "n2" network
  // interface 2. Texts are as the database has them, with \x20 and the like decoded.
  virtual TProperties DeviceProperties(const std::string& device, TCollection& failures) const = 0;
  // The addresses of every network port, by its name.
  virtual TAddresses NetworkAddresses(TCollection& failures) const = 0;
  virtual std::optional<std::string> Architecture(TCollection& failures) const = 0;
};

std::unique_ptr<ISystemCalls> MakeSystemCalls(const TMachine& machine);

// The value of a property, empty when there is none or people cannot read it.
std::optional<std::string> PropertyOf(const ISystemCalls::TProperties& properties,
                                      const char* name);
// `text` with each \xHH replaced by the byte that it stands for.
std::string DecodeDatabaseText(const std::string& text);

}  // namespace hav::inventory
