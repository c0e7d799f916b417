#include "schema/column_words.h"

namespace qmx {

std::vector<LocalTable> MasterDataTables() {
  return {
      {"tccom130",
       "Addresses",
       {Code("cadr"), Description("nama"), Description("namc"), Code("hono"), Description("Name"), Code("pstc")},
       {"cadr"},
       {}},
      {"tsclm020",
       "Response Times",
       {Code("crtc"), Description("dsca"), Code("ccal"), Number("rctt"), Number("enst"), Number("sltn")},
       {"crtc"},
       {}},
      {"tsclm024", "Priority Time Scales", {Number("sltt"), Description("dsca")}, {"sltt"}, {}},
      {"tsmdm030", "Service Types", {Code("cstp"), Description("dsca"), Code("prod"), Code("ract")}, {"cstp"}, {}},
      {"tsmdm100",
       "Service Centers",
       {Code("cwoc"), Description("dsca"), Code("wctp"), Code("cmwc"), Code("cwar"), Number("clrt"), Code("srtp"),
        Code("srep")},
       {"cwoc"},
       {}},
      {"tsmdm105",
       "Service Areas",
       {Code("csar"), Description("dsca"), Code("artp"), Code("cmsa"), Code("cwoc"), Code("cwar"), Number("trti"),
        Number("dist"), Number("ccha"), Code("CCur"), Number("clrt")},
       {"csar"},
       {}},
      {"tsmdm130", "Skills", {Code("skll"), Description("dsca"), Number("clrt")}, {"skll"}, {}},
      {"tsmdm135",
       "Skills By Employee",
       {Code("emno"), Code("skll"), Code("cogr"), Number("afct")},
       {"emno", "skll", "cogr"},
       {}},
      {"tsmdm140",
       "Service Employees",
       {Code("emno"), Description("dsca"), Code("cwoc"), Code("ccal"), Code("frmn"), Code("csar"), Code("ccar"),
        Code("ouser"), Number("mpod")},
       {"emno"},
       {}},
  };
}

}  // namespace qmx
