// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "JsonTree.h"

#include <gmock/gmock.h>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// "LINE:COLUMN REASON" of the first error, empty when there is none.
std::string errorIn(const std::string& text) {
    const JsonTree tree(text);
    if (!tree.complaint()) {
        return {};
    }
    const TextPosition position = positionOf(text, tree.complaint()->at);
    return std::to_string(position.line) + ':' + std::to_string(position.column) + ' '
           + tree.complaint()->reason;
}

TEST(JsonTree, KnowsWhereEverythingStands) {
    const std::string text = R"( {"a": [1, "b" ], "c":{}} )";
    const JsonTree tree(text);
    ASSERT_TRUE(tree.root());
    const JsonNode& root = *tree.root();
    EXPECT_EQ(tree.text(root.range), R"({"a": [1, "b" ], "c":{}})");
    ASSERT_THAT(root.children, SizeIs(2));
    EXPECT_EQ(tree.text(root.item(0)), R"("a": [1, "b" ])");
    EXPECT_EQ(tree.text(root.item(1)), R"("c":{})");
    EXPECT_THAT(root.commas, ElementsAre(text.find(", \"c\"")));
    EXPECT_EQ(tree.text(root.children[0].item(1)), R"("b")");
}

TEST(JsonTree, ReadsKeysAndStringsAsTheyAreMeant) {
    const JsonTree tree(R"({"\u0068ooks": "a\"\\\ud83d\ude00", "hooks": "ü"})");
    ASSERT_TRUE(tree.root());
    EXPECT_THAT(tree.members(*tree.root(), "hooks"), ElementsAre(0U, 1U));
    EXPECT_THAT(tree.members(*tree.root(), "other"), IsEmpty());
    EXPECT_EQ(tree.string(tree.root()->children[0].range), "a\"\\\U0001F600");
    EXPECT_EQ(tree.string(tree.root()->children[1].range), "ü");
}

TEST(JsonTree, TakesCommentsForBlanks) {
    const std::string text = "// \"\n{ /* } */ \"//\": \"/* */\" // ]\r\n}/**/";
    const JsonTree tree(text);
    EXPECT_EQ(errorIn(text), "");
    EXPECT_EQ(tree.withoutComments(), "    \n{         \"//\": \"/* */\"     \r\n}    ");
    EXPECT_THAT(tree.comments(), SizeIs(4));
}

TEST(JsonTree, IsEmptyWhereThereIsNoValue) {
    for (const char* text : {"", " \r\n\t", "\xEF\xBB\xBF", "// {}", "/* 1 */\n"}) {
        EXPECT_EQ(errorIn(text), "");
        EXPECT_FALSE(JsonTree(text).root()) << text;
    }
}

TEST(JsonTree, TakesWhatJsonAllows) {
    for (const char* text :
         {"0", "-0.5e-7", "12345678901234567890123", "[true,false,null]", R"("\b\f\n\r\t\/A")",
          "\xEF\xBB\xBF{}", "{\"a\":1,\"a\":1}", "[[],{}]", "1E+2"}) {
        EXPECT_EQ(errorIn(text), "") << text;
    }
}

TEST(JsonTree, TellsWhereAndWhyAStructureIsWrong) {
    EXPECT_EQ(errorIn("{"), "1:2 the text ends too early");
    EXPECT_EQ(errorIn("{\"a\""), "1:5 the text ends too early");
    EXPECT_EQ(errorIn("[1"), "1:3 the text ends too early");
    EXPECT_EQ(errorIn("[1,"), "1:4 the text ends too early");
    EXPECT_EQ(errorIn("{\n  \"a\": 1\n  \"b\": 2\n}"), "3:3 a comma or } is missing");
    EXPECT_EQ(errorIn("[1 2]"), "1:4 a comma or ] is missing");
    EXPECT_EQ(errorIn("[1}"), "1:3 a comma or ] is missing");
    EXPECT_EQ(errorIn("{\"ü\": [1,\r\n2], }"), "2:3 there is nothing behind this comma");
    EXPECT_EQ(errorIn("[1, /* 2 */ ]"), "1:3 there is nothing behind this comma");
    EXPECT_EQ(errorIn("{a: 1}"), "1:2 a key in quotes is missing");
    EXPECT_EQ(errorIn("{\"a\" 1}"), "1:6 a colon is missing");
    EXPECT_EQ(errorIn("{} {}"), "1:4 there is more behind the end");
    EXPECT_EQ(errorIn("[,]"), "1:2 a value is missing");
    EXPECT_EQ(errorIn("[nul]"), "1:2 a value is missing");
    EXPECT_EQ(errorIn("[truefalse]"), "1:6 a comma or ] is missing");
    EXPECT_EQ(errorIn("{} /* a"), "1:4 this comment does not end");
    EXPECT_EQ(errorIn("/"), "1:1 a value is missing");
}

TEST(JsonTree, TellsWhereAndWhyAValueIsWrong) {
    EXPECT_EQ(errorIn("[01]"), "1:2 a number does not begin with a zero");
    EXPECT_EQ(errorIn("[-]"), "1:3 a digit is missing");
    EXPECT_EQ(errorIn("[1.]"), "1:4 a digit is missing");
    EXPECT_EQ(errorIn("[1e]"), "1:4 a digit is missing");
    EXPECT_EQ(errorIn("[1e999]"), "1:2 this number is too large or too small");
    EXPECT_EQ(errorIn("\"a"), "1:1 this string does not end");
    EXPECT_EQ(errorIn("\"a\nb\""), "1:3 a control character stands in a string");
    EXPECT_EQ(errorIn(R"("\x")"), "1:2 no such escape is known");
    EXPECT_EQ(errorIn(R"("\u12g4")"), "1:2 four hexadecimal digits are missing");
    EXPECT_EQ(errorIn(R"("\ud800")"), "1:2 this is half a character");
    EXPECT_EQ(errorIn(R"("\udc00\ud800")"), "1:2 this is half a character");
}

TEST(JsonTree, TellsWhereATextIsNoUtf8) {
    EXPECT_EQ(errorIn("\n\"\xC3\xBC\xFF\""), "2:3 this is not UTF-8");
    EXPECT_EQ(errorIn("\xFF\xFE{\0}"), "1:1 this is not UTF-8");
    EXPECT_EQ(errorIn("{} // \xC3"), "1:7 this is not UTF-8");
    EXPECT_EQ(errorIn("\"\xED\xA0\x80\""), "1:2 this is not UTF-8");
}

TEST(JsonTree, GoesAsDeepAsAThousand) {
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '[') + std::string(depth, ']');
    };
    EXPECT_EQ(errorIn(nested(1'000)), "");
    EXPECT_EQ(errorIn(nested(1'001)), "1:1001 this is nested too deep");
    EXPECT_EQ(errorIn(std::string(5'000'000, '[')), "1:1001 this is nested too deep");
}

} // namespace
} // namespace sallowmere
