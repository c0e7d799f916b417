#include "schema/column_words.h"

namespace qmx {

std::vector<LocalTable> OrderTables() {
  return {
      {"tscfg200",
       "Objects",
       {Code("ccfg"), Code("crob"), Line("oseq"), Description("dsca"), Code("cogr"), Code("cusc"), Code("manu"),
        Code("ccal"), Code("cdel")},
       {"ccfg", "crob", "oseq"},
       {}},
      {"tscfg220",
       "Configurations",
       {Code("ccfg"), Description("dsca"), Code("ofbp"), Code("cwoc"), Code("csar"), Code("tecr"), Code("teca"),
        Code("tecb"), Code("cusc"), Code("czon"), Number("dist"), Number("trti"), Code("ccal"), Code("cadr")},
       {"ccfg"},
       {}},
      {"tssoc200",
       "Service Orders",
       {Code("orno"),   Code("ccfg"),   Code("ofbp"),   Description("stna"), Code("lcad"),   Code("cprj"),
        Moment("ordt"), Code("osta"),   Code("cwoc"),   Code("csar"),        Code("emno"),   YesNo("blyn"),
        YesNo("ityn"),  Code("crit"),   Number("ordu"), Number("tvdu"),      Moment("pstm"), Moment("pftm"),
        Moment("estm"), Moment("lftm"), YesNo("otim"),  YesNo("appo"),       YesNo("rsrp"),  Moment("tstm"),
        Moment("astm"), Moment("aftm"), Code("csco"),   Code("csqu"),        Code("stbp"),   YesNo("emer"),
        Number("minu"), Moment("ract")},
       {"orno"},
       {}},
      {"tssoc205",
       "Service Order Engineers",
       {Code("orno"), Line("Line"), Code("emno"), Line("acln")},
       {"orno", "Line"},
       {}},
      {"tssoc210",
       "Service Order Activities",
       {Code("orno"),   Line("acln"),   Code("crac"),   Description("dsca"), Code("cstp"),   Code("cagr"),
        Code("ccfg"),   Code("crob"),   Line("oseq"),   Code("ccll"),        Code("crtc"),   Code("prpr"),
        Code("cupr"),   Code("obpr"),   Code("cprl"),   Code("cstn"),        Code("asta"),   Code("skla"),
        Code("sklb"),   Code("sklc"),   Number("acdu"), YesNo("appo"),       Moment("pstm"), Moment("pftm"),
        Moment("estm"), Moment("lftm"), Moment("astm"), Moment("aftm")},
       {"orno", "acln"},
       {}},
      {"tsspc200",
       "Planned Activities",
       {Code("ccfg"),   Code("crac"),   Line("aseq"),   Description("dsca"), Code("cagr"),   Code("cstp"),
        Code("cwoc"),   Code("crob"),   Line("oseq"),   Moment("esct"),      Moment("psct"), Moment("pfct"),
        Moment("lfct"), Number("adur"), Number("trtm"), Code("skla"),        Code("sklb"),   Code("sklc"),
        YesNo("appo"),  Code("stat"),   Code("orno"),   Line("acln")},
       {"ccfg", "crac", "aseq"},
       {}},
  };
}

}  // namespace qmx
