// The type of a component's object, which remembers the ids of its members.
//
// Objects whose type information has one GUID are of one type. An id is remembered if the type information gives it
// too. Objects without type information share a type that remembers nothing, and so do those of script engines: each
// has members of its own, but the type information of all has one GUID.
#pragma once

#include <oaidl.h>

#include <map>
#include <string>
#include <string_view>

namespace qmx {

class ComType {
 public:
  // Returns the type of the object. It lives until the process ends.
  static ComType& Of(IDispatch& object);

  struct Found {
    HRESULT result;
    DISPID id;
    bool isRemembered;  // whether the id serves for all objects of the type
  };
  // Looks the member up. The object is of this type.
  Found Find(IDispatch& object, std::string_view member);

  const std::string& Name() const { return name_; }  // empty if the component does not name it

  ComType(const ComType&) = delete;
  ComType& operator=(const ComType&) = delete;

 private:
  ComType(bool hasInformation, std::string name) : hasInformation_(hasInformation), name_(std::move(name)) {}

  const bool hasInformation_;
  const std::string name_;
  std::map<std::string, DISPID, std::less<>> ids_;  // by the members' folded names
};

}  // namespace qmx
