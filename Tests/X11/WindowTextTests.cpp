// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/WindowText.h"

#include <gmock/gmock.h>

namespace sallowmere {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using WindowText::decoded;
using WindowText::Encoding;
using WindowText::isSameName;
using WindowText::pieces;

TEST(WindowText, IsLatin1WhereItSaysNothingElse) {
    EXPECT_EQ(decoded("plain", Encoding::latin1), "plain");
    EXPECT_EQ(decoded("caf\xE9 \xA0\xFF", Encoding::latin1), "caf\u00E9 \u00A0\u00FF");
    EXPECT_EQ(decoded("\x1B$", Encoding::latin1), "\x1B$");
    EXPECT_EQ(decoded("", Encoding::latin1), "");
}

TEST(WindowText, PassesUtf8OnAsItIs) {
    EXPECT_EQ(decoded("caf\u00E9 \u2014", Encoding::utf8), "caf\u00E9 \u2014");
    EXPECT_EQ(decoded("\xFF\x1B", Encoding::utf8), "\xFF\x1B");
}

TEST(WindowText, ReadsCompoundTextAsFarAsItIsLatin1) {
    EXPECT_EQ(decoded("caf\xE9", Encoding::compound), "caf\u00E9");
    EXPECT_EQ(decoded("\x1B$(B\x46\x7C", Encoding::compound), std::nullopt);
    EXPECT_EQ(decoded("a\x9B\x31]b", Encoding::compound), std::nullopt);
}

TEST(WindowText, IsCutAtZeroBytes) {
    EXPECT_THAT(pieces("xterm\0XTerm\0"sv), ElementsAre("xterm", "XTerm"));
    EXPECT_THAT(pieces("xterm\0XTerm"sv), ElementsAre("xterm", "XTerm"));
    EXPECT_THAT(pieces("xterm"sv), ElementsAre("xterm"));
    EXPECT_THAT(pieces("\0XTerm\0"sv), ElementsAre("", "XTerm"));
    EXPECT_THAT(pieces("\0"sv), ElementsAre(""));
    EXPECT_THAT(pieces(""sv), IsEmpty());
}

TEST(WindowText, ComparesNamesWithoutRegardToCase) {
    EXPECT_TRUE(isSameName("xterm", "XTerm"));
    EXPECT_TRUE(isSameName("\u00C9cran", "\u00E9CRAN"));
    EXPECT_FALSE(isSameName("xterm", "xterm2"));
    EXPECT_FALSE(isSameName("xterm", ""));
}

} // namespace
} // namespace sallowmere
