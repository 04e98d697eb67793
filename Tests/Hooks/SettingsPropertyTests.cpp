// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookSettings.h"
#include "Hooks/SettingsShapes.h"

#include <gmock/gmock.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace sallowmere {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

QJsonObject parsed(const std::string& text) {
    const std::string plain = JsonTree(text).withoutComments();
    QJsonParseError error;
    const QJsonDocument document =
        QJsonDocument::fromJson(QByteArray::fromStdString(plain), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString() << text;
    return document.object();
}

QJsonObject snippetHooks() {
    QFile file(SALLOWMERE_HOOK_SETTINGS);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll())["hooks"].toObject();
}

/// The settings with the snippet's entries behind those of each event.
QJsonObject withEntries(QJsonObject settings) {
    const QJsonObject ours = snippetHooks();
    QJsonObject hooks = settings["hooks"].toObject();
    for (auto event = ours.begin(); event != ours.end(); ++event) {
        QJsonArray list = hooks[event.key()].toArray();
        list.append(event.value().toArray().first());
        hooks.insert(event.key(), list);
    }
    settings.insert(QStringLiteral("hooks"), hooks);
    return settings;
}

/// Whether the whole of `part` can be had by deleting from `text`, so that nothing of it was
/// changed or moved.
bool survives(const std::string& part, const std::string& text) {
    std::size_t found = 0;
    for (const char c : text) {
        found += found < part.size() && part[found] == c ? 1U : 0U;
    }
    return found == part.size();
}

class EachShape : public testing::Test {
protected:
    const std::vector<SettingsShape> shapes = settingsShapes();
};

TEST_F(EachShape, IsOneOfMany) {
    EXPECT_GT(shapes.size(), 2'000U);
}

TEST_F(EachShape, HoldsTheEntriesAndAllElseOnceInstalled) {
    for (const SettingsShape& shape : shapes) {
        const HookSettings::Outcome outcome = HookSettings::installed(shape.text);
        ASSERT_FALSE(outcome.refusal) << shape.name << outcome.refusal->reason << shape.text;
        EXPECT_THAT(outcome.events, SizeIs(snippetHooks().size())) << shape.name;
        EXPECT_EQ(parsed(outcome.text), withEntries(parsed(shape.text))) << shape.name;
        EXPECT_TRUE(survives(shape.text, outcome.text)) << shape.name << outcome.text;
    }
}

TEST_F(EachShape, StaysAsItIsWhenInstalledTwice) {
    for (const SettingsShape& shape : shapes) {
        const std::string once = HookSettings::installed(shape.text).text;
        const HookSettings::Outcome twice = HookSettings::installed(once);
        EXPECT_FALSE(twice.refusal) << shape.name;
        EXPECT_THAT(twice.events, IsEmpty()) << shape.name;
        EXPECT_EQ(twice.text, once) << shape.name;
    }
}

TEST_F(EachShape, ComesBackWhenRemoved) {
    for (const SettingsShape& shape : shapes) {
        const std::string text = HookSettings::installed(shape.text).text;
        EXPECT_EQ(HookSettings::removed(text, shape.text).text, shape.text) << shape.name;
    }
}

TEST_F(EachShape, ComesBackAsItIsNowWhenItWasChangedInBetween) {
    for (const SettingsShape& shape : shapes) {
        // A comment in front leaves nothing of the original to compare with.
        const std::string text = "/* new */" + HookSettings::installed(shape.text).text;
        if (shape.text.starts_with("\xEF\xBB\xBF")) {
            continue;
        }
        EXPECT_EQ(HookSettings::removed(text, shape.text).text, "/* new */" + shape.text)
            << shape.name;
    }
}

TEST_F(EachShape, MeansTheSameAgainWithoutItsOriginal) {
    for (const SettingsShape& shape : shapes) {
        const std::string text = HookSettings::installed(shape.text).text;
        const HookSettings::Outcome outcome = HookSettings::removed(text, std::nullopt);
        EXPECT_FALSE(outcome.refusal) << shape.name;
        QJsonObject expected = parsed(shape.text);
        QJsonObject settings = parsed(outcome.text);
        expected.remove(QStringLiteral("hooks"));
        settings.remove(QStringLiteral("hooks"));
        EXPECT_EQ(settings, expected) << shape.name;
        EXPECT_EQ(countOf(outcome.text, "sallowmere"), 0U) << shape.name;
        EXPECT_TRUE(survives(outcome.text, text)) << shape.name;
    }
}

TEST_F(EachShape, KeepsItsLineBreaks) {
    for (const SettingsShape& shape : shapes) {
        const std::string text = HookSettings::installed(shape.text).text;
        const bool isCrLf = countOf(shape.text, "\r\n") > 0;
        if (countOf(shape.text, "\n") > 0) {
            EXPECT_EQ(countOf(text, "\r\n"), isCrLf ? countOf(text, "\n") : 0U) << shape.name;
        }
    }
}

/// Every beginning of a text is refused, or changed so that it is in order and can be undone.
void expectRightOrRefused(const std::string& text) {
    const HookSettings::Outcome outcome = HookSettings::installed(text);
    if (outcome.refusal) {
        EXPECT_EQ(outcome.text, text);
        EXPECT_LE(outcome.refusal->at, text.size());
        EXPECT_NE(outcome.refusal->reason, "");
        return;
    }
    const HookSettings::State state = HookSettings::state(outcome.text);
    ASSERT_FALSE(state.refusal) << text;
    EXPECT_THAT(state.missing, IsEmpty()) << text;
    EXPECT_TRUE(survives(text, outcome.text)) << text;
    EXPECT_EQ(HookSettings::state(HookSettings::removed(outcome.text, text).text).present.size(),
              0U)
        << text;
}

TEST_F(EachShape, IsRefusedOrRightWhenCutAnywhere) {
    std::size_t refused = 0;
    // The other combinations differ in what is not cut differently.
    for (std::size_t i = 0; i < shapes.size(); i += 31) {
        const std::string& text = shapes[i].text;
        for (std::size_t size = 0; size < text.size(); ++size) {
            expectRightOrRefused(text.substr(0, size));
            refused += HookSettings::state(text.substr(0, size)).refusal ? 1U : 0U;
        }
    }
    EXPECT_GT(refused, 1'000U);
}

TEST_F(EachShape, IsRefusedOrRightWhenCutAnywhereOnceInstalled) {
    for (std::size_t i = 0; i < shapes.size(); i += 151) {
        const std::string text = HookSettings::installed(shapes[i].text).text;
        for (std::size_t size = 0; size < text.size(); ++size) {
            expectRightOrRefused(text.substr(0, size));
        }
    }
}

TEST_F(EachShape, IsRefusedOrRightWithoutAnyOfItsBytes) {
    for (std::size_t i = 0; i < shapes.size(); i += 31) {
        for (std::size_t at = 0; at < shapes[i].text.size(); ++at) {
            std::string text = shapes[i].text;
            expectRightOrRefused(text.erase(at, 1));
        }
    }
}

} // namespace
} // namespace sallowmere
