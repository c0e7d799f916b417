#include "platform/connection_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/error.h"
#include "tests/support/raised.h"

namespace qmx::test {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(ConnectionText, ReadsKeywordsAndValuesInOrder) {
  const ConnectionText text("Provider=SQLite;Data Source=/var/lib/local.db");
  ASSERT_EQ(text.Pairs().size(), 2U);
  EXPECT_EQ(text.Pairs()[0].first, "Provider");
  EXPECT_EQ(text.Pairs()[0].second, "SQLite");
  EXPECT_EQ(text.Pairs()[1].first, "Data Source");
  EXPECT_EQ(text.Pairs()[1].second, "/var/lib/local.db");
  EXPECT_EQ(text.Text(), "Provider=SQLite;Data Source=/var/lib/local.db");
}

TEST(ConnectionText, KeywordsCompareWithoutCaseAndBlanksAround) {
  const ConnectionText text("  data source = x y.db ; ");
  EXPECT_EQ(text.Get("Data Source"), "x y.db");
  EXPECT_EQ(text.Get("DATA SOURCE"), "x y.db");
  EXPECT_EQ(text.Get("Source"), std::nullopt);
}

TEST(ConnectionText, ValuesMayBeQuotedOrBraced) {
  const ConnectionText text(R"(a="1;2";b='it''s';c={x;y}}z};d="say ""hi""";e= 'with end' ;f={};g=a=b)");
  EXPECT_EQ(text.Get("a"), "1;2");
  EXPECT_EQ(text.Get("b"), "it's");
  EXPECT_EQ(text.Get("c"), "x;y}z");
  EXPECT_EQ(text.Get("d"), "say \"hi\"");
  EXPECT_EQ(text.Get("e"), "with end");
  EXPECT_EQ(text.Get("f"), "");
  EXPECT_EQ(text.Get("g"), "a=b");
}

TEST(ConnectionText, TheLastOfTwoEqualKeywordsHolds) { EXPECT_EQ(ConnectionText("a=1;A=2").Get("a"), "2"); }

TEST(ConnectionText, EmptyPiecesAndEmptyValuesAreAllowed) {
  EXPECT_TRUE(ConnectionText("").Pairs().empty());
  EXPECT_TRUE(ConnectionText(" ;; ; ").Pairs().empty());
  EXPECT_EQ(ConnectionText("a=;b=2").Get("a"), "");
  EXPECT_EQ(ConnectionText("a=;b=2").Get("b"), "2");
  EXPECT_EQ(ConnectionText("a=").Get("a"), "");
}

TEST(ConnectionText, WhatCannotBeReadIsAnErrorThatNamesThePlace) {
  const Error noEquals = Raised([] { ConnectionText("Provider=SQLite;local.db"); });
  EXPECT_EQ(noEquals.Number(), 5);
  EXPECT_THAT(noEquals.Description(), HasSubstr("character 17"));
  const Error noClosing = Raised([] { ConnectionText("a=1;b='two"); });
  EXPECT_EQ(noClosing.Number(), 5);
  EXPECT_THAT(noClosing.Description(), HasSubstr("\"b\""));
  EXPECT_THAT(noClosing.Description(), HasSubstr("character 7"));
  EXPECT_EQ(Raised([] { ConnectionText("c={open"); }).Number(), 5);
  EXPECT_EQ(Raised([] { ConnectionText("=value"); }).Number(), 5);
  EXPECT_EQ(Raised([] { ConnectionText("a='x' y;b=1"); }).Number(), 5);
}

TEST(ConnectionText, AnErrorNeverRepeatsAValue) {
  for (const char* text : {"PWD='geheim", "PWD={geheim", "PWD='geheim' geheim", "PWD=a;geheim", "PWD=a;geheim={x",
                           "PWD=a;geheim='x' y", "PWD=a;Port={geheim"}) {
    EXPECT_THAT(Raised([&] { ConnectionText{text}; }).Description(), Not(HasSubstr("geheim"))) << text;
  }
}

TEST(ConnectionText, PasswordsAreMasked) {
  EXPECT_EQ(ConnectionText("DSN=x;UID=me;PWD=geheim").Masked(), "DSN=x;UID=me;PWD=***");
  EXPECT_EQ(ConnectionText("pwd='a;b';Password={c};Port=1").Masked(), "pwd=***;Password=***;Port=1");
  EXPECT_EQ(ConnectionText("PWD = geheim ; Database Password=x;Port=1").Masked(),
            "PWD = ***; Database Password=***;Port=1");
}

TEST(ConnectionText, TheValuesOfUnknownKeywordsAreMasked) {
  EXPECT_EQ(ConnectionText("DSN=x;Token=geheim;Port=1").Masked(), "DSN=x;Token=***;Port=1");
  EXPECT_EQ(ConnectionText("PWD={a;b};Colour=red").Masked(), "PWD=***;Colour=***");
}

TEST(ConnectionText, TheRestOfAPasswordWithoutQuotesIsMaskedAsAWhole) {
  EXPECT_EQ(ConnectionText("DSN=x;PWD=ge;he=im;UID=me").Masked(), "DSN=x;PWD=***;***;UID=me");
  EXPECT_EQ(ConnectionText("PWD=ge;he = 'im';i=m ; UID=me").Masked(), "PWD=***;***;***; UID=me");
}

TEST(ConnectionText, WhatTheSystemsDriversTakeIsShown) {
  const std::string postgresql = "DRIVER=PostgreSQL Unicode;SERVER=a;PORT=5432;DATABASE=b;UID=c;Protocol=7.4-1";
  const std::string sqlite = "Provider=SQLite;Data Source=/a.db;Mode=Create";
  for (const std::string& text : {postgresql, sqlite, std::string("FILEDSN=/a;SSLMode=require;Timeout=3")}) {
    EXPECT_EQ(ConnectionText(text).Masked(), text);
  }
}

TEST(ConnectionText, WithAddsAKeywordAndBracesItsValueIfNeeded) {
  EXPECT_EQ(ConnectionText("a=1").With("b", "2").Text(), "a=1;b=2");
  EXPECT_EQ(ConnectionText("a=1;").With("b", "x;y}").Text(), "a=1;b={x;y}}}");
  EXPECT_EQ(ConnectionText("a=1;").With("b", "x;y}").Get("b"), "x;y}");
  EXPECT_EQ(ConnectionText("").With("PWD", "s").Masked(), "PWD=***");
}

}  // namespace
}  // namespace qmx::test
