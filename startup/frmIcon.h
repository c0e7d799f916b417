// The form that carries the application's icon. It is never shown.
//
// The picture is frmIcon.svg, installed as an application icon under this name.
#pragma once

namespace qmx {

class frmIcon {
 public:
  const char* Icon() const { return "qmxdatacopy"; }
};

}  // namespace qmx
