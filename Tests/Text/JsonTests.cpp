// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Text/Json.h"

#include "Support/Texts.h"

#include <gmock/gmock.h>

#include <gtest/gtest.h>
#include <limits>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::Optional;

std::string nested(std::size_t depth) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i) {
        text += R"({"a":)";
    }
    return text + '1' + std::string(depth, '}');
}

TEST(Json, RefusesWhatIsNotStrictlyJson) {
    JsonReader reader;
    for (const std::string_view text : {
             R"()",
             R"(   )",
             R"(not JSON at all)",
             R"({)",
             R"({"a":1)",
             R"({"a":1,})",
             R"({"a":[1,]})",
             R"({"a":1}})",
             R"({"a":1} x)",
             R"({"a":1}{"b":2})",
             R"({a:1})",
             R"({'a':1})",
             R"({1:1})",
             R"({"a" 1})",
             R"({"a":01})",
             R"({"a":-01})",
             R"({"a":+1})",
             R"({"a":.5})",
             R"({"a":1.})",
             R"({"a":1e})",
             R"({"a":0x10})",
             R"({"a":NaN})",
             R"({"a":Infinity})",
             R"({"a":-Infinity})",
             R"({"a":True})",
             R"({"a":nul})",
             R"({"a":1e309})",
             R"({"a":-1e400})",
             R"({"a":"\ud800"})",
             R"({"a":"\ud800x"})",
             R"({"a":"\ud800\ud800"})",
             R"({"a":"\udc00"})",
             R"({"a":"\udfff\ud800"})",
             R"({"\udc00":1})",
             R"({"a":"\x41"})",
             R"({"a":"\u12"})",
             R"({"a":"b)",
             R"({"a":1} // done)",
             "{\"a\":\"b\tc\"}",
             "{\"a\":\"b\nc\"}",
             "{\"a\":\"b\x01\"}",
             "\xEF\xBB\xBF{\"a\":1}",
             "\xC2\xA0{\"a\":1}",
         }) {
        EXPECT_FALSE(reader.object(text)) << text;
    }
    EXPECT_FALSE(reader.object(std::string_view("{\"a\":1}\0", 8)));
    EXPECT_FALSE(reader.object(std::string_view("{\"a\":\"\0\"}", 9)));
}

TEST(Json, TakesObjectsAlone) {
    JsonReader reader;
    for (const std::string_view text : {"[]", "[{}]", "1", "\"a\"", "null", "true"}) {
        EXPECT_FALSE(reader.object(text)) << text;
    }
    EXPECT_TRUE(reader.object("{}"));
    EXPECT_TRUE(reader.object(" \t\r\n{ \"a\" : [ 1 , 2 ] }\r\n"));
}

TEST(Json, ReadsEscapes) {
    JsonReader reader;
    const auto object = reader.object(R"({"a":"\"\\\/\b\f\n\r\t\u00e9\ud83d\ude00"})");
    ASSERT_TRUE(object);
    EXPECT_EQ(utf8(object->text("a")), "\"\\/\b\f\n\r\té😀");
}

TEST(Json, TakesIntegersOfAnyLength) {
    struct Row {
        std::string_view digits;
        double value;
    };
    const std::string longest = '1' + std::string(308, '0');
    JsonReader reader;
    for (const Row& row : {
             Row{"9223372036854775807", 9223372036854775807.0},
             Row{"9223372036854775808", 9223372036854775808.0},
             Row{"18446744073709551616", 18446744073709551616.0},
             Row{"-9223372036854775809", -9223372036854775809.0},
             Row{"123456789012345678901234567890", 123456789012345678901234567890.0},
             Row{"-123456789012345678901234567890", -123456789012345678901234567890.0},
             Row{longest, 1e308},
         }) {
        const std::string text = R"({"a":)" + std::string(row.digits) + R"(,"b":[{"c":)"
                                 + std::string(row.digits)
                                 + R"(}],"d":"\"123456789012345678901234567890","e":7})";
        const auto object = reader.object(text);
        ASSERT_TRUE(object) << row.digits;
        EXPECT_THAT(object->number("a"), Optional(row.value));
        EXPECT_THAT(dictArray(*object, "b")->front().number("c"), Optional(row.value));
        EXPECT_THAT(object->string("d"), Optional(std::string("\"123456789012345678901234567890")));
        EXPECT_THAT(object->number("e"), Optional(7.0));
    }
    EXPECT_FALSE(reader.object(R"({"a":0123456789012345678901234567890})"));
    EXPECT_FALSE(reader.object(R"({"a":12345678901234567890123456789-})"));
}

TEST(Json, TakesIntegersBeyondADoubleAsItsEnd) {
    constexpr double most = std::numeric_limits<double>::max();
    const std::string digits(400, '9');
    JsonReader reader;
    const auto object = reader.object(R"({"a":)" + digits + R"(,"b":-)" + digits + R"(,"c":7})");
    ASSERT_TRUE(object);
    EXPECT_THAT(object->number("a"), Optional(most));
    EXPECT_THAT(object->number("b"), Optional(-most));
    EXPECT_THAT(object->number("c"), Optional(7.0));
    EXPECT_FALSE(reader.object(R"({"a":0)" + digits + '}'));
    EXPECT_FALSE(reader.object(R"({"a":)" + digits + ".5}"));
    EXPECT_FALSE(reader.object(R"({"a":--)" + digits + '}'));
}

TEST(Json, ReplacesInvalidBytesBeforeReading) {
    JsonReader reader;
    const auto object = reader.object("{\"a\":\"x\xFF\xC3y\",\"b\":12345678901234567890123}");
    ASSERT_TRUE(object);
    EXPECT_EQ(utf8(object->text("a")), utf8(u"x\uFFFD\uFFFDy"));
    EXPECT_THAT(object->number("b"), Optional(12345678901234567890123.0));
    EXPECT_FALSE(reader.object("{\"a\":1}\xFF"));
    EXPECT_FALSE(reader.object("{\"a\":1}\xC3"));
}

TEST(Json, KeepsAByteOrderMarkInsideAString) {
    JsonReader reader;
    const auto object = reader.object("{\"a\":\"\xEF\xBB\xBFx\",\"b\":\"\\ufeffx\"}");
    ASSERT_TRUE(object);
    EXPECT_EQ(utf8(object->text("a")), "\xEF\xBB\xBFx");
    EXPECT_EQ(utf8(object->text("b")), "\xEF\xBB\xBFx");
}

TEST(Json, CountsAMemberOfAnotherTypeAsMissing) {
    JsonReader reader;
    const auto object = reader.object(
        R"({"text":"x","number":2.5,"truth":true,"lie":false,"none":null,"list":["a"],"map":{}})");
    ASSERT_TRUE(object);
    for (const char* key : {"text", "number", "truth", "lie", "none", "list", "map", "missing"}) {
        const std::string_view name = key;
        EXPECT_EQ(object->string(key).has_value(), name == "text") << key;
        EXPECT_EQ(object->text(key).has_value(), name == "text") << key;
        EXPECT_EQ(object->boolean(key).has_value(), name == "truth" || name == "lie") << key;
        EXPECT_EQ(object->isTrue(key), name == "truth") << key;
        EXPECT_EQ(object->number(key).has_value(),
                  name == "number" || name == "truth" || name == "lie")
            << key;
        EXPECT_EQ(object->object(key).has_value(), name == "map") << key;
        EXPECT_EQ(object->texts(key).has_value(), name == "list") << key;
        EXPECT_EQ(dictArray(*object, key).has_value(), name == "list") << key;
    }
}

TEST(Json, CountsTruthsAsNumbersButNoNumbersAsTruths) {
    JsonReader reader;
    const auto object = reader.object(R"({"yes":true,"no":false,"one":1,"zero":0})");
    ASSERT_TRUE(object);
    EXPECT_THAT(object->number("yes"), Optional(1.0));
    EXPECT_THAT(object->number("no"), Optional(0.0));
    EXPECT_FALSE(object->boolean("one"));
    EXPECT_FALSE(object->boolean("zero"));
    EXPECT_FALSE(object->isTrue("one"));
}

TEST(Json, ListsStringsOnlyWhenThereIsNothingElse) {
    JsonReader reader;
    const auto object =
        reader.object(R"({"good":["a","é"],"empty":[],"mixed":["a",1],"nulls":["a",null]})");
    ASSERT_TRUE(object);
    EXPECT_THAT(utf8(object->texts("good").value()), ElementsAre("a", "é"));
    EXPECT_TRUE(object->texts("empty").value().isEmpty());
    EXPECT_FALSE(object->texts("mixed"));
    EXPECT_FALSE(object->texts("nulls"));
}

TEST(DictArray, KeepsTheObjectsInTheirOrder) {
    JsonReader reader;
    const auto object =
        reader.object(R"({"mixed":["x",{"n":1},2,null,[{"n":9}],{"n":2}],"texts":["a","b"],)"
                      R"("empty":[],"map":{"n":1},"none":null})");
    ASSERT_TRUE(object);
    const auto mixed = dictArray(*object, "mixed");
    ASSERT_TRUE(mixed);
    ASSERT_EQ(mixed->size(), 2U);
    EXPECT_THAT(mixed->at(0).number("n"), Optional(1.0));
    EXPECT_THAT(mixed->at(1).number("n"), Optional(2.0));
    ASSERT_TRUE(dictArray(*object, "texts"));
    EXPECT_TRUE(dictArray(*object, "texts")->empty());
    ASSERT_TRUE(dictArray(*object, "empty"));
    EXPECT_TRUE(dictArray(*object, "empty")->empty());
    EXPECT_FALSE(dictArray(*object, "map"));
    EXPECT_FALSE(dictArray(*object, "none"));
    EXPECT_FALSE(dictArray(*object, "missing"));
}

TEST(JsonObject, HasNoMembersByDefault) {
    const JsonObject object;
    EXPECT_FALSE(object.string("a"));
    EXPECT_FALSE(object.number("a"));
    EXPECT_FALSE(dictArray(object, "a"));
}

TEST(Json, RefusesEndlessNesting) {
    JsonReader reader;
    EXPECT_TRUE(reader.object(nested(1'000)));
    EXPECT_FALSE(reader.object(nested(2'000)));
    EXPECT_FALSE(reader.object(nested(1'000'000)));
    EXPECT_FALSE(reader.object(std::string(1'000'000, '[')));
}

TEST(JsonReader, ReadsOnAfterDamageAndAfterLargeTexts) {
    JsonReader reader;
    const std::string large = R"({"a":")" + std::string(5'000'000, 'x') + R"("})";
    EXPECT_EQ(reader.object(large)->string("a")->size(), 5'000'000U);
    EXPECT_FALSE(reader.object(R"({"a":)"));
    EXPECT_THAT(reader.object(R"({"a":3})")->number("a"), Optional(3.0));
    EXPECT_EQ(reader.object(large)->string("a")->size(), 5'000'000U);
}

} // namespace
} // namespace sallowmere
