// Several operations at once, so that there is something to ask about.
#include "tests/oracle/TRun.h"

namespace havtest::oracle {

std::size_t TRun::KeyedClass(std::size_t i) const {
  std::vector<std::size_t> keyed;
  for (std::size_t place = 0; place < m_classes.size(); ++place)
    if (m_model.classes[m_classIds[place]].inNamespace &&
        !m_model.Keys(m_classIds[place]).empty() &&
        (Arg(i) % 8 == 1 || !m_model.IsTrue(m_classIds[place], "association")))
      keyed.push_back(place);
  return keyed.empty() || Arg(i) % 16 == 0 ? Place(m_classes, i) : keyed[Place(keyed, i)];
}

void TRun::MakeClass(bool association) {
  constexpr const char* classes[] = {"A", "B", "C", "D", "ORVSG_CPU"};
  constexpr const char* associations[] = {"L", "M", "N"};
  const auto isAssociation = [this](Id cls) { return m_model.IsTrue(cls, "association"); };
  AllocateClass(association ? Pick(associations, Arg(1)) : Pick(classes, Arg(1)),
                [&](Id cls) { return isAssociation(cls) == association; });
  const auto allocatePlugin = m_onPlugin, allocateModel = m_onModel;
  const std::size_t ends[] = {KeyedClass(4), KeyedClass(5)};
  m_what << (association ? ", association of C" + std::to_string(ends[0]) + " and C" +
                               std::to_string(ends[1])
                         : ", with a key")
         << ", and add it";
  const auto key = QualifierDeclNamed("Key"), marks = QualifierDeclNamed("Association");
  Both(
      [=] {
        std::string text = allocatePlugin();
        const auto cls = m_newClass ? m_newClass : m_classes[std::stoul(text.substr(1))];
        if (association) {
          cls->AllocateQualifier(m_qualifierDecls[marks], TCIMValue(true), {});
          for (const int end : {0, 1}) {
            const auto decl =
                cls->AllocateReferenceDecl(end == 0 ? "Left" : "Right", m_classes[ends[end]], {});
            decl->AllocateQualifier(m_qualifierDecls[key], TCIMValue(true), {});
            decl->AddToClass({});
          }
        } else {
          const auto decl = cls->AllocatePropertyDecl("Name", TCIMValue::Null(kCIMString), {});
          decl->AllocateQualifier(m_qualifierDecls[key], TCIMValue(true), {});
          decl->AddToClass({});
        }
        cls->AddToNamespace({});
        return text;
      },
      [=] {
        std::string text = allocateModel();
        const Id cls = m_classIds[std::stoul(text.substr(1))];
        const auto declare = [&](const char* name, const TValue& value) {
          const Id decl = m_model.NewDecl(cls, name, value);
          const Id id = m_qualifierDeclIds[key];
          m_model.QualifyDecl(decl, id, ModelValue({2, 1, 0}), m_model.qualifierDecls[id].flavor);
          m_model.AddProperty(cls, decl);
        };
        if (association) {
          const Id id = m_qualifierDeclIds[marks];
          m_model.QualifyClass(cls, id, ModelValue({2, 1, 0}), m_model.qualifierDecls[id].flavor);
          for (const int end : {0, 1}) {
            TValue value;
            value.type = kReference;
            value.path = std::make_shared<TPath>(m_model.PathOf(m_classIds[ends[end]]));
            declare(end == 0 ? "Left" : "Right", value);
          }
        } else {
          declare("Name", TValue());
        }
        m_model.AddClass(cls);
        return text;
      });
}

unsigned TRun::StoredFor(Id cls, const std::string& role, unsigned number) const {
  const auto entry = m_model.classes[cls].properties.find(role);
  if (entry == m_model.classes[cls].properties.end()) return number;
  const TValue& declared = m_model.decls[entry->second.decl].value;
  std::vector<unsigned> fitting;
  for (const TClass& holder : m_model.classes)
    for (const auto& [path, instance] : holder.store)
      if (declared.path && m_model.IsA(m_model.instances[instance].cls, declared.path->cls))
        fitting.push_back(static_cast<unsigned>(instance));
  return fitting.empty() ? number : fitting[number % fitting.size()];
}

void TRun::MakeInstance(bool link) {
  std::vector<std::size_t> classes;
  for (std::size_t i = 0; i < m_classes.size(); ++i)
    if (m_model.OwnClass(m_classIds[i]) == m_classIds[i] &&
        m_model.IsTrue(m_classIds[i], "association") == link)
      classes.push_back(i);
  if (classes.empty() || m_instances.empty()) return AllocateInstance();
  const auto cls = classes[Arg(0) % classes.size()];
  const TValueSpec name{10, Arg(1), 0};
  const TValueSpec ends[] = {{6, StoredFor(m_classIds[cls], "left", Arg(2)), 0},
                             {6, StoredFor(m_classIds[cls], "right", Arg(3)), 0}};
  m_what << "make instance I" << m_instances.size() << " of C" << cls;
  if (link)
    m_what << ", Left = " << Named(ends[0]) << ", Right = " << Named(ends[1]);
  else
    m_what << ", Name = " << Named(name);
  Both(
      [=] {
        const auto left = PluginValue(ends[0]), right = PluginValue(ends[1]);
        m_instances.push_back(m_classes[cls]->AllocateInstance({}));
        const auto instance = m_instances.back();
        m_placeOfInstance[instance.get()] = m_instances.size() - 1;
        if (link) {
          instance->SetPropertyValue("Left", left, {});
          instance->SetPropertyValue("Right", right, {});
        } else {
          instance->SetPropertyValue("Name", PluginValue(name), {});
        }
        instance->AddToNamespace({});
      },
      [=] {
        // The plug-in's side has counted the new instance already when it came that far.
        const auto instances = m_model.instances.size();
        const auto end = [&](const TValueSpec& spec) {
          TValue value = ModelValue({5, 0, 0});
          value.path =
              std::make_shared<TPath>(m_model.Reference(static_cast<Id>(spec.a % instances)));
          return value;
        };
        const TValue left = end(ends[0]), right = end(ends[1]);
        const Id instance = m_model.AllocateInstance(m_classIds[cls]);
        if (link) {
          m_model.SetProperty(instance, "Left", left);
          m_model.SetProperty(instance, "Right", right);
        } else {
          m_model.SetProperty(instance, "Name", ModelValue(name));
        }
        m_model.AddInstance(instance);
      });
}

}  // namespace havtest::oracle
