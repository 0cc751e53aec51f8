#include "bench/ProtobufSubject.h"

#include <google/protobuf/descriptor.pb.h>

namespace havbench {

using namespace google::protobuf;

ProtobufSubject::ProtobufSubject() : m_factory(&m_pool) {
  FileDescriptorProto file;
  file.set_name("bench.proto");
  file.set_syntax("proto2");
  DescriptorProto& type = *file.add_message_type();
  type.set_name("Disk");
  const auto add = [&](const char* name, FieldDescriptorProto::Type fieldType) {
    FieldDescriptorProto& field = *type.add_field();
    field.set_name(name);
    field.set_number(type.field_size());
    field.set_type(fieldType);
    field.set_label(FieldDescriptorProto::LABEL_OPTIONAL);
  };
  for (const char* name : {"SystemName", "DeviceID", "Caption", "Vendor", "Model"})
    add(name, FieldDescriptorProto::TYPE_STRING);
  for (const char* name : {"Size", "FreeSpace"}) add(name, FieldDescriptorProto::TYPE_UINT64);
  for (const char* name : {"BlockSize", "Sectors", "Cylinders"})
    add(name, FieldDescriptorProto::TYPE_UINT32);
  for (const char* name : {"Removable", "Healthy"}) add(name, FieldDescriptorProto::TYPE_BOOL);
  m_descriptor = m_pool.BuildFile(file)->FindMessageTypeByName("Disk");
  m_prototype = m_factory.GetPrototype(m_descriptor);
}

// Fields are found by name, as a caller of the plug-in names its properties.
void ProtobufSubject::Make(const Disk& disk) {
  std::unique_ptr<Message> message(m_prototype->New());
  const Reflection& reflection = *message->GetReflection();
  const auto field = [&](const char* name) { return m_descriptor->FindFieldByName(name); };
  reflection.SetString(message.get(), field("SystemName"), disk.systemName);
  reflection.SetString(message.get(), field("DeviceID"), disk.deviceId);
  reflection.SetString(message.get(), field("Caption"), disk.caption);
  reflection.SetString(message.get(), field("Vendor"), disk.vendor);
  reflection.SetString(message.get(), field("Model"), disk.model);
  reflection.SetUInt64(message.get(), field("Size"), disk.size);
  reflection.SetUInt64(message.get(), field("FreeSpace"), disk.freeSpace);
  reflection.SetUInt32(message.get(), field("BlockSize"), disk.blockSize);
  reflection.SetUInt32(message.get(), field("Sectors"), disk.sectors);
  reflection.SetUInt32(message.get(), field("Cylinders"), disk.cylinders);
  reflection.SetBool(message.get(), field("Removable"), disk.removable);
  reflection.SetBool(message.get(), field("Healthy"), disk.healthy);
  m_messages[disk.Path()] = std::move(message);
}

void ProtobufSubject::Prepare(const std::vector<std::size_t>& numbers) {
  for (const std::size_t number : numbers) {
    m_paths.push_back(DiskNumber(number).Path());
    m_prepared.push_back(m_messages.at(m_paths.back()).get());
  }
}

bool ProtobufSubject::Get(std::size_t place) const {
  return m_messages.find(m_paths[place]) != m_messages.end();
}

std::uint64_t ProtobufSubject::Read(const Message& message) const {
  return message.GetReflection()->GetUInt64(message, m_descriptor->FindFieldByName("Size"));
}

std::uint64_t ProtobufSubject::GetAndRead(std::size_t place) const {
  return Read(*m_messages.find(m_paths[place])->second);
}

std::uint64_t ProtobufSubject::SizeOf(std::size_t place) const { return Read(*m_prepared[place]); }

std::uint64_t ProtobufSubject::TotalSize() const {
  std::uint64_t total = 0;
  for (const auto& entry : m_messages) total += Read(*entry.second);
  return total;
}

std::size_t ProtobufSubject::Enumerate() const {
  std::size_t visited = 0;
  for (const auto& entry : m_messages) visited += entry.second != nullptr;
  return visited;
}

}  // namespace havbench
