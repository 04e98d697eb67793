// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Text/Paths.h"

#include <QString>

#include <gtest/gtest.h>

namespace sallowmere {
namespace {

TEST(Paths, LastComponentIgnoresTrailingSlashes) {
    struct Row {
        std::string_view path;
        std::string_view last;
    };
    for (const Row& row :
         {Row{"/a/b/notes.txt", "notes.txt"}, Row{"/a/b/", "b"}, Row{"/a/b//", "b"}, Row{"/", "/"},
          Row{"//", "/"}, Row{"", ""}, Row{"a", "a"}}) {
        EXPECT_EQ(lastPathComponent(row.path), row.last) << row.path;
        const QString text = QString::fromLatin1(row.path.data(), qsizetype(row.path.size()));
        EXPECT_EQ(lastPathComponent(QStringView(text)).toString().toStdString(), row.last);
    }
}

TEST(Paths, ExtensionNeedsSomethingBeforeIt) {
    EXPECT_TRUE(hasExtension("/p/a.jsonl", "jsonl"));
    EXPECT_TRUE(hasExtension(".a.jsonl", "jsonl"));
    EXPECT_FALSE(hasExtension("/p/.jsonl", "jsonl"));
    EXPECT_FALSE(hasExtension("/p/jsonl", "jsonl"));
    EXPECT_FALSE(hasExtension("a.JSONL", "jsonl"));
    EXPECT_FALSE(hasExtension("a.json", "jsonl"));
    EXPECT_FALSE(hasExtension("a.xjsonl", "jsonl"));
}

TEST(Paths, TildeExpandsAloneOrBeforeASlash) {
    EXPECT_EQ(expandTilde("~", "/home/u"), "/home/u");
    EXPECT_EQ(expandTilde("~/x", "/home/u"), "/home/u/x");
    EXPECT_EQ(expandTilde("~other/x", "/home/u"), "~other/x");
    EXPECT_EQ(expandTilde("/a/~", "/home/u"), "/a/~");
    EXPECT_EQ(expandTilde("", "/home/u"), "");
}

TEST(Paths, JoinsWithOneSlash) {
    EXPECT_EQ(joinPath("/a", "b"), "/a/b");
    EXPECT_EQ(joinPath("/", "b"), "/b");
}

} // namespace
} // namespace sallowmere
