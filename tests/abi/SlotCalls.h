// SlotCalls: calls on live objects by the number of the slot, through the virtual table: what
// a host does that was compiled long ago. The names of the operations play no part.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "SlotTables.h"
#include "support/Repository.h"

namespace havtest {

class SlotCalls {
 public:
  // The object by the slots of `Interface`, of which `number` is about to be called.
  template <class Interface>
  TSlots<Interface>& At(int number, Interface& object) {
    m_called.insert(number);
    return reinterpret_cast<TSlots<Interface>&>(object);
  }
  template <class Interface>
  const TSlots<Interface>& At(int number, const Interface& object) {
    m_called.insert(number);
    return reinterpret_cast<const TSlots<Interface>&>(object);
  }

  // Calls slot 0, the destructor. The memory is never freed, nor are `owners`, who may still
  // refer to the object.
  template <class Interface>
  void Destroy(const boost::shared_ptr<Interface>& object,
               const std::vector<boost::shared_ptr<void>>& owners = {}) {
    static auto* const kept = new std::vector<boost::shared_ptr<void>>;
    kept->push_back(object);
    kept->insert(kept->end(), owners.begin(), owners.end());
    At(0, *object).~TSlots<Interface>();
  }

  // Calls slot 0 of an object of the test's own, and expects that it is its destructor.
  template <class Made, class... Arguments>
  void DestroyOwn(Arguments&&... arguments) {
    bool destroyed = false;
    struct TFlagged : Made {
      TFlagged(bool& flag, Arguments&&... passed)
          : Made(std::forward<Arguments>(passed)...), m_flag(flag) {}
      ~TFlagged() { m_flag = true; }
      bool& m_flag;
    };
    alignas(TFlagged) unsigned char memory[sizeof(TFlagged)];
    auto* const made = ::new (memory) TFlagged(destroyed, std::forward<Arguments>(arguments)...);
    using TInterface = typename Made::TInterface;
    At<TInterface>(0, *made).~TSlots<TInterface>();
    EXPECT_TRUE(destroyed);
  }

  const std::set<int>& Called() const { return m_called; }

 private:
  std::set<int> m_called;
};

// The operation in the slot of that number: SLOT(5, *cls)({}).
#define SLOT(number, object) calls.At(number, object).s##number

// Each calls every slot of the table that it is named after.
void CallElementSlots(SlotCalls& calls);
void CallNamedElementSlots(SlotCalls& calls);
void CallClassSlots(SlotCalls& calls);
void CallNamedElementSlotsOfClass(SlotCalls& calls);
void CallNamespaceSlots(SlotCalls& calls);
void CallInstanceSlots(SlotCalls& calls);
void CallPropertySlots(SlotCalls& calls);
void CallPropertyDeclSlots(SlotCalls& calls);
void CallMethodDeclSlots(SlotCalls& calls);
void CallParameterDeclSlots(SlotCalls& calls);
void CallQualifierSlots(SlotCalls& calls);
void CallQualifierDeclSlots(SlotCalls& calls);
void CallNamespaceProviderSlots(SlotCalls& calls);
void CallNamespaceProviderManagerSlots(SlotCalls& calls);
void CallLoggerSlots(SlotCalls& calls);
void CallNamespaceConsumerSlots(SlotCalls& calls);
void CallProviderSlots(SlotCalls& calls);
void CallIndicationFilterSlots(SlotCalls& calls);

}  // namespace havtest
