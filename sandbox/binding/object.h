// Objects that a host can call by name.
//
// A Type lists the members that all objects of one kind have; an Object counts its references and answers calls by
// member number; a Component<Self> lets a class declare its members as a table of names and methods. Exceptions become
// the host's qmx_error at the C boundary (Guarded).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "binding/failure.h"
#include "binding/values.h"

namespace orvan {

// Types live until the process ends.
class Type : public qmx_type {
 public:
  Type(std::string name, std::vector<std::string> members);
  Type(const Type&) = delete;
  Type& operator=(const Type&) = delete;

  const std::string& Name() const { return name_; }
  const std::string& MemberName(std::int32_t id) const { return members_[static_cast<std::size_t>(id)]; }

  // Returns the member's number; -1 if there is none.
  std::int32_t Find(std::string_view member) const;

 private:
  std::string name_;
  std::vector<std::string> members_;
};

class Object : public qmx_object {
 public:
  explicit Object(const Type& type) : qmx_object{sizeof(qmx_object), 0, &type} {}
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  virtual void Invoke(std::int32_t member, Arguments arguments, Result result) = 0;

  const Type& ObjectType() const { return static_cast<const Type&>(*type); }
  bool IsShared() const { return references_ > 1; }
  void AddReference() { ++references_; }
  void Release() {
    if (--references_ == 0) delete this;
  }

 private:
  std::int32_t references_ = 1;
};

// A counted reference to an object of this server.
template <class T>
class Ref {
 public:
  Ref() = default;
  explicit Ref(T* made) : object_(made) {}  // takes over the first reference of a new object
  explicit Ref(T& object) : object_(&object) { object.AddReference(); }
  Ref(const Ref& other) : object_(other.object_) {
    if (object_) object_->AddReference();
  }
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() {
    if (object_) object_->Release();
  }

  explicit operator bool() const { return object_ != nullptr; }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }

 private:
  T* object_ = nullptr;
};

// A counted reference to an object of the host or of another server, called by name.
class ForeignObject {
 public:
  ForeignObject() = default;
  explicit ForeignObject(qmx_object* object);  // adds a reference
  explicit operator bool() const { return object_ != nullptr; }

  std::int32_t CallForInteger(std::string_view member) const;

 private:
  struct Releaser {
    void operator()(qmx_object* object) const { object->type->release(object); }
  };
  std::shared_ptr<qmx_object> object_;
};

// Creates an object and passes its first reference to the host.
template <class T, class... Parts>
void ReturnNew(Result result, Parts&&... parts) {
  result.SetObject(new T(std::forward<Parts>(parts)...));
}

// Passes a new reference to the host.
template <class T>
void Return(Result result, const Ref<T>& object) {
  object->AddReference();
  result.SetObject(&*object);
}

[[noreturn]] void WrongArgumentCount(const Object& object, std::string_view member, std::size_t wanted,
                                     std::size_t given);

// Returns the argument as an object of this server's class T. `what` names it in the error.
template <class T>
T& ObjectOf(Argument argument, const char* what) {
  qmx_object* object = argument.ObjectOrNothing();
  if (object && object->type == &T::ClassType()) return static_cast<T&>(*object);
  throw Failure(QMX_E_TYPE_MISMATCH, T::ClassType().Name(),
                std::string("The ") + what + " must be a " + T::ClassType().Name() +
                    " object of the sandbox ERP, but " + argument.Shown() + " was passed.");
}

// A class that declares its members: Self has a kName and a Methods() that returns an array of Method.
template <class Self>
class Component : public Object {
 public:
  static const Type& ClassType() {
    static const Type* const type = [] {
      std::vector<std::string> names;
      for (const auto& method : Self::Methods()) names.emplace_back(method.name);
      return new Type(Self::kName, std::move(names));
    }();
    return *type;
  }

 protected:
  struct Method {
    std::string_view name;
    std::size_t argumentCount;
    void (Self::*body)(Arguments arguments, Result result);
  };

  Component() : Object(ClassType()) {}

 private:
  void Invoke(std::int32_t member, Arguments arguments, Result result) final {
    const Method& method = Self::Methods()[static_cast<std::size_t>(member)];
    if (arguments.size() != method.argumentCount)
      WrongArgumentCount(*this, method.name, method.argumentCount, arguments.size());
    (static_cast<Self*>(this)->*method.body)(arguments, result);
  }
};

}  // namespace orvan
