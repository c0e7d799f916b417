#include "tests/platform/database/written_texts.h"

#include <array>
#include <limits>

namespace qmx::test {
namespace {

using Pieces = std::vector<std::string>;

const Pieces kHeads = {"select * from t where ",
                       "delete from t where ",
                       "select count(*), min(w) from t where ",
                       "SELECT code, n FROM t WHERE ",
                       " delete from t where ",
                       "select t.w from t where ",
                       "select\tcode\r\nfrom \"t\" where ",
                       "select nothing from t where "};
const Pieces kColumns = {"code",         "n",      "s",   "w",    "d",      "plain", "words",
                         "\"odd name\"", "t.code", "t.n", "CODE", "nothing"};
const Pieces kComparisons = {"=", " = ", "<", ">", "<=", " >= ", "<>", " like "};
const Pieces kTails = {"", "", " order by code", " order by n desc, t.code", "  ", ";", " -- end"};
const Pieces kTexts = {"A1",
                       "A2",
                       "a1",
                       "",
                       "5",
                       "-5",
                       " 5",
                       "5 ",
                       "5.0",
                       "5e0",
                       "0x5",
                       "A1 ",
                       "\"",
                       "%",
                       "_1",
                       "?",
                       "a; -- /* ?",
                       "{fn x}",
                       "2026-1-31",
                       "2026-01-31 00:00:00",
                       "\\",
                       "A\\",
                       "\\1",
                       "$$",
                       ":a1",
                       "@x1",
                       "null",
                       "Z\xC3\xBCrich",
                       "\xF0\x9F\x98\x80",
                       "\xFF",
                       "2026-01-31 08:30:00",
                       "99999999999",
                       "NaN",
                       "true",
                       "a\tb\r\nc",
                       "{d '",
                       "#",
                       "[x]",
                       "`"};
const Pieces kNumbers = {"5",
                         "-5",
                         "0",
                         "-0",
                         "005",
                         "+5",
                         " 5",
                         "5 ",
                         "5.0",
                         "5.",
                         ".5",
                         "-.5",
                         "5e0",
                         "1e3",
                         "1E-3",
                         "90.5",
                         "2147483647",
                         "-2147483648",
                         "2147483648",
                         "-2147483649",
                         "9223372036854775807",
                         "9223372036854775808",
                         "99999999999999999999",
                         "-99999999999999999999",
                         "0.1000000000000000055",
                         "1e400"};

}  // namespace

SqlText TextWriter::Text() {
  for (;;) {
    const SqlText text = Chance(25) ? Insert() : Query();
    try {
      text.Check();
      return text;
    } catch (const Error&) {
      continue;
    }
  }
}

const std::string& TextWriter::One(const Pieces& pieces) {
  return pieces[Chance(60) ? Number((pieces.size() + 1) / 2) : Number(pieces.size())];
}

std::string TextWriter::TextOfAnyLength() {
  constexpr std::array<std::size_t, 12> kLengths = {1, 15, 16, 20, 21, 40, 41, 255, 256, 4000, 8001, 70000};
  return std::string(kLengths[Number(kLengths.size())], Chance(50) ? 'a' : '5');
}

Variant TextWriter::Whole() {
  constexpr std::array<std::int32_t, 6> kUsual = {
      5, -5, 0, 1, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min()};
  return Chance(80) ? kUsual[Number(kUsual.size())] : static_cast<std::int32_t>(choices_());
}

Variant TextWriter::AnyNumber() {
  switch (Number(8)) {
    case 0:
      return static_cast<std::int16_t>(choices_());
    case 1:
      return static_cast<std::uint8_t>(choices_());
    case 2:
      return static_cast<double>(static_cast<std::int32_t>(choices_())) / 8;
    case 3:
      return 1e20 * static_cast<double>(Number(100));
    case 4:
    case 5:
      return One(kNumbers);
    default:
      return Whole();
  }
}

Variant TextWriter::Moment() {
  const DateTime day = DateTime::FromDate(2026, 1, 30 + static_cast<std::int64_t>(Number(4)));
  return Chance(50) ? day : day.PlusTime(8, 30, 0);
}

Variant TextWriter::Any() {
  switch (Number(10)) {
    case 0:
      return AnyNumber();
    case 1:
      return Moment();
    case 2:
      return TextOfAnyLength();
    case 3:
      return Chance(50) ? Variant::Null() : Variant(Chance(50));
    default:
      return One(kTexts);
  }
}

void TextWriter::PutValue(SqlText& text) {
  if (Chance(40)) {
    text.Value(AnyNumber());
  } else if (Chance(90)) {
    text.Append("'").Value(Any()).Append("'");
  } else {  // a part of a literal
    text.Append(Chance(50) ? "'A" : "'").Value(Any()).Append(Chance(50) ? "%'" : "''x'");
  }
}

void TextWriter::PutCondition(SqlText& text) {
  text.Append(One(kColumns));
  switch (Number(12)) {
    case 0:
      text.Append(" in ("), PutValue(text), text.Append(", "), PutValue(text), text.Append(")");
      return;
    case 1:
      text.Append(" between "), PutValue(text), text.Append(" and "), PutValue(text);
      return;
    default:
      text.Append(One(kComparisons)), PutValue(text);
  }
}

SqlText TextWriter::Query() {
  SqlText text(One(kHeads));
  PutCondition(text);
  while (Chance(30)) text.Append(Chance(80) ? " and " : " or "), PutCondition(text);
  return text.Append(One(kTails));
}

SqlText TextWriter::Insert() {
  SqlText text("insert into t (code");
  const bool isWide = Chance(30);
  text.Append(",").Append(One(kColumns)).Append(isWide ? ",words" : "").Append(") values (");
  text.Append("'N").Append(std::to_string(Number(100))).Append("',");
  PutValue(text);
  if (isWide) text.Append(",'").Value(TextOfAnyLength()).Append("'");
  return text.Append(")");
}

std::string CreateT(const TypesOfT& types) {
  return "create table t (code varchar(20) not null primary key, n integer, s smallint, w double precision, d " +
         types.moment + ", plain " + types.plain + ", \"odd name\" " + types.oddName + ", words " + types.longText +
         ")";
}

}  // namespace qmx::test
