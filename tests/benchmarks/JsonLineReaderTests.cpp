// SPDX-License-Identifier: MIT
#include "JsonLineReader.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace quorvane {
namespace {

using Kind = JsonMember::Kind;

/// The only member of a line.
JsonMember single(JsonLineReader& reader)
{
    JsonMember member;
    EXPECT_TRUE(reader.next(member)) << reader.fault();
    return member;
}

bool isAccepted(const std::string& line)
{
    JsonLineReader reader(line);
    JsonMember member;
    while (reader.next(member)) {
    }
    return reader.fault().empty();
}

TEST(JsonLineReader, ReadsMembersInOrder)
{
    JsonLineReader reader(R"( { "a" : 1, "b":"two" ,"c":true,"d":null,"e":false } )");
    JsonMember member;
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(member.key, "a");
    EXPECT_EQ(member.integer, 1);
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(member.text, "two");
    ASSERT_TRUE(reader.next(member));
    EXPECT_TRUE(member.boolean);
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(member.kind, Kind::null);
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(member.kind, Kind::boolean);
    EXPECT_FALSE(member.boolean);
    EXPECT_FALSE(reader.next(member));
    EXPECT_EQ(reader.fault(), "");
}

TEST(JsonLineReader, WholeNumbersOf64BitsAreExact)
{
    JsonLineReader reader(
        R"({"a":9223372036854775807,"b":-9223372036854775808,"c":9223372036854775808,"d":1.5e1})");
    JsonMember member;
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(member.integer, std::numeric_limits<std::int64_t>::max());
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(member.integer, std::numeric_limits<std::int64_t>::min());
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(member.kind, Kind::real);
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(member.kind, Kind::real);
    EXPECT_EQ(member.real, 15.0);
}

TEST(JsonLineReader, EscapesAreResolved)
{
    JsonLineReader reader(R"({"\u0061":"\"\\\/\b\f\n\r\t\u00e9\ud83d\uddc2"})");
    const JsonMember member = single(reader);
    EXPECT_EQ(member.key, "a");
    EXPECT_EQ(member.text, "\"\\/\b\f\n\r\té🗂");
}

TEST(JsonLineReader, HalfASurrogatePairReadsAsReplacementCharacter)
{
    JsonLineReader reader(R"({"a":"x\udcffy\ud800\u0041"})");
    EXPECT_EQ(single(reader).text, "x\xEF\xBF\xBDy\xEF\xBF\xBD"
                                   "A");
}

TEST(JsonLineReader, NestedValuesArePassedOver)
{
    JsonLineReader reader(R"({"a":{"b":["}",{"c":"\"]"}]},"d":4})");
    JsonMember member;
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(member.kind, Kind::nested);
    ASSERT_TRUE(reader.next(member));
    EXPECT_EQ(member.key, "d");
    EXPECT_EQ(member.integer, 4);
}

TEST(JsonLineReader, AcceptsOneObjectOfTheGrammar)
{
    for (const char* line :
         {"{}", " {\"a\":1}\r", "{\"a\":0}", "{\"a\":-0}", "{\"a\":0.5e+1}", "{\"a\":[]}"}) {
        EXPECT_TRUE(isAccepted(line)) << line;
        EXPECT_TRUE(QJsonDocument::fromJson(QByteArray(line)).isObject()) << line;
    }
}

TEST(JsonLineReader, RefusesWhatIsNoneOrMore)
{
    for (const char* line : {"",
                             "{",
                             "[]",
                             "1",
                             "{,}",
                             "{\"a\":1,}",
                             "{\"a\"}",
                             "{\"a\":}",
                             "{a:1}",
                             "{\"a\":1 \"b\":2}",
                             "{\"a\":01}",
                             "{\"a\":+1}",
                             "{\"a\":1.}",
                             "{\"a\":.5}",
                             "{\"a\":1e}",
                             "{\"a\":tru}",
                             "{\"a\":\"x}",
                             "{\"a\":\"\\x\"}",
                             "{\"a\":\"\\u12\"}",
                             "{\"a\":\"\\u12g4\"}",
                             "{\"a\":1}x",
                             "{\"a\":1} {}",
                             "{\"a\":[}",
                             "{\"a\":[1}]}",
                             "{\"a\":\"\xFF\"}"}) {
        EXPECT_FALSE(isAccepted(line)) << line;
    }
}

TEST(JsonLineReader, EveryCutLineIsRefused)
{
    const std::string line = R"({"a":"b\u00e9","c":[1,{"d":"e"}],"f":-1.5e3,"g":true,"h":null})";
    ASSERT_TRUE(isAccepted(line));
    for (std::size_t length = 0; length < line.size(); ++length) {
        EXPECT_FALSE(isAccepted(line.substr(0, length))) << line.substr(0, length);
    }
}

} // namespace
} // namespace quorvane
