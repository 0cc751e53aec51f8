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

  // `deviceNumber`: that of the file system, "MAJOR:MINOR".
  virtual std::optional<TUsage> FileSystemUsage(const std::string& mountPoint,
                                                const std::string& deviceNumber,
                                                TCollection& failures) const = 0;
  // What the device database knows of a device: "b8:0" is block device 8:0, "n2" network
  // interface 2, "+pci:0000:00:02.0" a device of a bus. Texts are as the database has them,
  // with \x20 and the like decoded.
  virtual TProperties DeviceProperties(const std::string& device, TCollection& failures) const = 0;
  // The addresses of every network port, by its name.
  virtual TAddresses NetworkAddresses(TCollection& failures) const = 0;
  // What the hardware database knows of every device of a kind, which is named as modules are
  // ("pci:v00008086d00001237…").
  virtual TProperties HardwareProperties(const std::string& kind, TCollection& failures) const = 0;
  virtual std::optional<std::string> Architecture(TCollection& failures) const = 0;
  // The twelve characters in which a hypervisor tells the processors' name for it.
  virtual std::optional<std::string> HypervisorSignature(TCollection& failures) const = 0;
};

std::unique_ptr<ISystemCalls> MakeSystemCalls(const TMachine& machine);

// A text of the databases about a device with a name on its bus and a kind: what is known of
// this very device, else of its kind.
std::optional<std::string> KnownText(const ISystemCalls& calls, const std::string& device,
                                     const std::optional<std::string>& kind, const char* property,
                                     TCollection& failures);

// The value of a property, empty when there is none or people cannot read it.
std::optional<std::string> PropertyOf(const ISystemCalls::TProperties& properties,
                                      const char* name);
// `text` with each \xHH replaced by the byte that it stands for.
std::string DecodeDatabaseText(const std::string& text);

}  // namespace hav::inventory
