// The components that are registered in COM.
//
// A ProgID is looked up among the registered classes. A name with a prefix ("java:java.util.Date") that is no ProgID is
// parsed as a moniker. Objects must have IDispatch. COM starts when the first object is asked for. A name that is not
// registered is looked up once: a copy asks for thousands of dates, which COM usually does not have.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/com/apartment.h"
#include "platform/further_components.h"

namespace qmx {

class ComComponents : public FurtherComponents {
 public:
  std::string Name() const override { return "COM"; }
  Answer Create(std::string_view progId) override;
  Registration Find(std::string_view progId) override;

 private:
  template <typename OfClass, typename OfMoniker>
  Answer Ask(std::string_view progId, const char* what, OfClass ofClass, OfMoniker ofMoniker);

  std::shared_ptr<ComApartment> apartment_;     // null before the first object
  std::map<std::string, Answer> unregistered_;  // by the folded names
};

}  // namespace qmx
