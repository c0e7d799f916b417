#include "tests/component_faults/windows/over_com.h"

#include <map>

#include "com/objects.h"
#include "platform/com/apartment.h"
#include "platform/com/com_components.h"
#include "platform/components/date_object.h"
#include "platform/names.h"
#include "tests/platform/com/registered_class.h"

namespace qmx::test {
namespace {

// The classes that were registered so far, and the ERP whose objects they create now. Registered until the process
// ends.
class Classes {
 public:
  static Classes& OfThisProcess() {
    static Classes classes;
    return classes;
  }

  ServedErp* erp = nullptr;
  Replacement replacement;

  void Register(const std::string& progId) {
    if (classes_.contains(progId)) return;
    classes_[progId] = std::make_unique<RegisteredClass>(progId, [this, progId] { return Created(progId); });
  }

 private:
  ComPtr<IUnknown> Created(const std::string& progId) {
    auto object = ComPtr<IDispatch>::Owning(orvan::FromServer(erp->Create(progId)));
    if (replacement) object = replacement(std::move(object));
    return ComPtr<IUnknown>::Owning(object.Detach());
  }

  std::shared_ptr<ComApartment> apartment_ = ComApartment::Enter();
  std::map<std::string, std::unique_ptr<RegisteredClass>> classes_;
};

class RegisteredComponents : public FurtherComponents {
 public:
  explicit RegisteredComponents(ServedErp& erp) { Classes::OfThisProcess().erp = &erp; }

  std::string Name() const override { return components_.Name(); }
  Registration Find(std::string_view progId) override { return components_.Find(progId); }
  Answer Create(std::string_view progId) override {
    if (!SameName(progId, kDateProgId)) Classes::OfThisProcess().Register(std::string(progId));
    return components_.Create(progId);
  }

 private:
  ComComponents components_;
};

}  // namespace

std::unique_ptr<FurtherComponents> OverCom(ServedErp& erp) { return std::make_unique<RegisteredComponents>(erp); }

void ReplaceObjectsOfCom(Replacement replacement) { Classes::OfThisProcess().replacement = std::move(replacement); }

}  // namespace qmx::test
