// ProtobufSubject: dynamic protobuf messages in an ordered map by path.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/dynamic_message.h>

#include "bench/Disk.h"

namespace havbench {

class ProtobufSubject {
 public:
  static constexpr const char* kName = "protobuf";

  ProtobufSubject();
  void Make(const Disk& disk);
  void Prepare(const std::vector<std::size_t>& numbers);
  bool Get(std::size_t place) const;
  std::uint64_t GetAndRead(std::size_t place) const;
  std::uint64_t SizeOf(std::size_t place) const;
  std::size_t Enumerate() const;
  std::uint64_t TotalSize() const;

 private:
  std::uint64_t Read(const google::protobuf::Message& message) const;

  google::protobuf::DescriptorPool m_pool;
  google::protobuf::DynamicMessageFactory m_factory;
  const google::protobuf::Descriptor* m_descriptor;
  const google::protobuf::Message* m_prototype;
  std::map<std::string, std::unique_ptr<google::protobuf::Message>> m_messages;
  std::vector<std::string> m_paths;
  std::vector<const google::protobuf::Message*> m_prepared;
};

}  // namespace havbench
