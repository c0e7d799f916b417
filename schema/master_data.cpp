#include "schema/column_words.h"

namespace qmx {

std::vector<LocalTable> MasterDataTables() {
  return {
      {"tccom130",
       {Code("cadr"), Description("nama"), Description("namc"), Code("hono"), Description("Name"), Code("pstc")},
       {"cadr"},
       {}},
      {"tsclm020",
       {Code("crtc"), Description("dsca"), Code("ccal"), Number("rctt"), Number("enst"), Number("sltn")},
       {"crtc"},
       {}},
      {"tsclm024", {Number("sltt"), Description("dsca")}, {"sltt"}, {}},
      {"tsmdm030", {Code("cstp"), Description("dsca"), Code("prod"), Code("ract")}, {"cstp"}, {}},
      {"tsmdm100",
       {Code("cwoc"), Description("dsca"), Code("wctp"), Code("cmwc"), Code("cwar"), Number("clrt"), Code("srtp"),
        Code("srep")},
       {"cwoc"},
       {}},
      {"tsmdm105",
       {Code("csar"), Description("dsca"), Code("artp"), Code("cmsa"), Code("cwoc"), Code("cwar"), Number("trti"),
        Number("dist"), Number("ccha"), Code("CCur"), Number("clrt")},
       {"csar"},
       {}},
      {"tsmdm130", {Code("skll"), Description("dsca"), Number("clrt")}, {"skll"}, {}},
      {"tsmdm135", {Code("emno"), Code("skll"), Code("cogr"), Number("afct")}, {"emno", "skll", "cogr"}, {}},
      {"tsmdm140",
       {Code("emno"), Description("dsca"), Code("cwoc"), Code("ccal"), Code("frmn"), Code("csar"), Code("ccar"),
        Code("ouser"), Number("mpod")},
       {"emno"},
       {}},
  };
}

}  // namespace qmx
