// Instances and their slots.
#include "tests/oracle/TRun.h"

#include <boost/make_shared.hpp>

#include "support/ForeignInstance.h"

namespace havtest::oracle {

void TRun::OnInstance(const char* what, void (ICIMInstance::*onPlugin)(TOptions),
                      void (TModel::*onModel)(Id)) {
  if (m_instances.empty()) return Nothing();
  const auto instance = Place(m_instances, 0);
  m_what << what << " I" << instance;
  Both([=] { ((*m_instances[instance]).*onPlugin)({}); },
       [=] { (m_model.*onModel)(Number(instance)); });
}

void TRun::AllocateInstance() {
  const auto cls = OwnClass(0);
  m_what << "allocate instance I" << m_instances.size() << " of C" << cls;
  Both(
      [=] {
        m_instances.push_back(m_classes[cls]->AllocateInstance({}));
        m_placeOfInstance[m_instances.back().get()] = m_instances.size() - 1;
      },
      [=] { m_model.AllocateInstance(m_classIds[cls]); });
}

void TRun::WrapInstance() {
  if (m_instances.empty()) return Nothing();
  const auto behind = AskedInstance();
  const bool stored = Arg(1) % 4 != 0;
  m_what << "host's object I" << m_instances.size() << " around I" << behind
         << (stored ? ", stored in its class" : "");
  Both(
      [=] {
        m_instances.push_back(boost::make_shared<ForeignInstance>(m_instances[behind]));
        const auto instance = m_instances.back();
        m_placeOfInstance[instance.get()] = m_instances.size() - 1;
        if (stored) instance->GetClass({})->AddInstance(instance, {});
      },
      [=] {
        const Id instance = m_model.WrapInstance(Number(behind));
        if (stored) m_model.Store(m_model.instances[instance].cls, instance);
      });
}

TRun::TValueSpec TRun::FittingSpec(const std::string& name, std::size_t i) const {
  TValueSpec spec = Spec(i);
  if (Arg(i) % 5 == 0) return spec;
  if (name == "Left" || name == "left" || name == "Right" || name == "LEFT")
    return {6 + spec.kind % 4, spec.a, 0};
  return {10, spec.a, 0};
}

void TRun::SetProperty() {
  if (m_instances.empty()) return Nothing();
  const auto instance = Place(m_instances, 0);
  const std::string name = Pick(kReads, Arg(1) % 3 != 0 ? Arg(1) / 3 % 3 : Arg(1) / 3);
  const auto spec = FittingSpec(name, 2);
  m_what << 'I' << instance << ": set " << Quoted(name) << " = " << Named(spec);
  Both([=] { m_instances[instance]->SetPropertyValue(name, PluginValue(spec), {}); },
       [=] { m_model.SetProperty(Number(instance), name, ModelValue(spec)); });
}

void TRun::StoreIn(bool add) {
  if (m_instances.empty()) return Nothing();
  const auto cls = OwnClass(0), instance = Place(m_instances, 1);
  m_what << 'C' << cls << (add ? ": store I" : ": remove I") << instance;
  Both(
      [=] {
        if (add)
          m_classes[cls]->AddInstance(m_instances[instance], {});
        else
          m_classes[cls]->RemoveInstance(m_instances[instance], {});
      },
      [=] {
        if (add)
          m_model.Store(m_classIds[cls], Number(instance));
        else
          m_model.Unstore(m_classIds[cls], Number(instance));
      });
}

void TRun::GetProperty() {
  if (m_instances.empty()) return Nothing();
  const auto instance = Place(m_instances, 0);
  const std::string name = Pick(kReads, Arg(1));
  m_what << 'I' << instance << ": get " << Quoted(name) << " as slot " << m_slots.size();
  Both(
      [=] {
        const auto slot = m_instances[instance]->GetProperty(name, {});
        m_slots.push_back(slot);
        return slot->GetDecl({})->GetName({}) + ' ' + Text(slot->GetValue({})) +
               (slot->IsValueDefault({}) ? " default" : "") + " before " +
               (slot->HasPrevValue({}) ? "" : "(none) ") + Text(slot->GetPrevValue({}));
      },
      [=] {
        const auto slot = m_model.GetSlot(Number(instance), name);
        m_modelSlots.push_back(slot);
        return m_model.decls[slot->decl].name + ' ' + Text(m_model.ValueOf(*slot)) +
               (slot->value ? "" : " default") + " before " + (slot->previous ? "" : "(none) ") +
               Text(m_model.PreviousOf(*slot));
      });
}

void TRun::SetSlot(bool previous) {
  if (m_slots.empty()) return Nothing();
  const auto slot = Place(m_slots, 0);
  const auto spec = FittingSpec(m_slots[slot]->GetDecl({})->GetName({}), 1);
  m_what << "slot " << slot << (previous ? ": set previous " : ": set ") << Named(spec);
  Both(
      [=] {
        if (previous)
          m_slots[slot]->SetPrevValue(PluginValue(spec), {});
        else
          m_slots[slot]->SetValue(PluginValue(spec), {});
      },
      [=] {
        if (previous)
          m_model.SetPrevious(*m_modelSlots[slot], ModelValue(spec));
        else
          m_model.SetValue(*m_modelSlots[slot], ModelValue(spec));
      });
}

void TRun::ClearPrevious() {
  if (m_slots.empty()) return Nothing();
  const auto slot = Place(m_slots, 0);
  m_what << "slot " << slot << ": clear previous";
  Both(
      [=] {
        m_slots[slot]->ClearPrevValue({});
        return std::string(m_slots[slot]->GetPrevValue({}).IsNull() ? "NULL" : "a value");
      },
      [=] {
        m_modelSlots[slot]->previous = std::make_unique<TValue>();
        m_modelSlots[slot]->previous->type = 0;
        return std::string("NULL");
      });
}

void TRun::CompareSlots() {
  if (m_slots.empty()) return Nothing();
  const auto a = Place(m_slots, 0), b = Place(m_slots, 1);
  m_what << "slot " << a << " == slot " << b;
  Both([=] { return std::string(*m_slots[a] == *m_slots[b] ? "equal" : "differ"); },
       [=] {
         const TSlot &left = *m_modelSlots[a], &right = *m_modelSlots[b];
         return std::string(left.decl == right.decl && SameValue(m_model, m_model.ValueOf(left),
                                                                 m_model.ValueOf(right))
                                ? "equal"
                                : "differ");
       });
}

void TRun::ClearInstances() {
  const auto ns = LivingNamespace(0);
  m_what << "namespace " << ns << ": clear instances";
  Both([=] { m_namespaces[ns]->ClearInstances(); }, [=] { m_model.ClearInstances(Number(ns)); });
}

void TRun::FindInstance() {
  if (m_instances.empty()) return Nothing();
  const auto instance = Place(m_instances, 0);
  const auto ns = LivingNamespace(1);
  m_what << "namespace " << ns << ": find the path of I" << instance;
  Both(
      [=] {
        const auto path = m_instances[instance]->GetReference({});
        return path.GetPath() + ' ' + Text(m_namespaces[ns]->GetInstance(path, {}));
      },
      [=] {
        const auto path = m_model.Reference(Number(instance));
        return m_model.PathText(path) + ' ' + TextOfInstance(m_model.GetInstance(Number(ns), path));
      });
}

}  // namespace havtest::oracle
