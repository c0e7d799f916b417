#include "com/objects.h"

#include "com/clients_object.h"
#include "com/served_object.h"

namespace orvan {

qmx_object* ToServer(IDispatch* object) {
  if (!object) return nullptr;
  if (qmx_object* const served = ServedObject::Behind(*object)) {
    served->type->add_ref(served);
    return served;
  }
  return MakeClientsObject(object);
}

IDispatch* FromServer(qmx_object* object) {
  if (!object) return nullptr;
  if (IDispatch* const clients = ClientsObject(*object)) {
    clients->AddRef();
    object->type->release(object);
    return clients;
  }
  return ServedObject::For(object);
}

}  // namespace orvan
