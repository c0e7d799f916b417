#include "platform/components/date_object.h"
#include "platform/components/server_object.h"
#include "platform/names.h"
#include "tests/component_faults/ways.h"

namespace qmx::test {
namespace {

class ServedComponents : public FurtherComponents {
 public:
  explicit ServedComponents(ServedErp& erp) : erp_(erp) {}

  std::string Name() const override { return "the C interface"; }
  Registration Find(std::string_view) override { return {true, {}}; }
  Answer Create(std::string_view progId) override {
    if (SameName(progId, kDateProgId)) return {{}, false, "the ERP has no date"};
    return {Object(std::make_shared<ServerObject>(erp_.Create(progId), progId)), true, {}};
  }

 private:
  ServedErp& erp_;
};

}  // namespace

std::unique_ptr<FurtherComponents> OverTheCInterface(ServedErp& erp) { return std::make_unique<ServedComponents>(erp); }

}  // namespace qmx::test
