// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/PanelScenes.h"

#include "Views/PanelHand.h"
#include "Views/Samples.h"

#include <chrono>

namespace sallowmere {

namespace {

using namespace std::chrono_literals;
using namespace Samples;

QString longText(const char* piece, int times) {
    return QString::fromUtf8(piece).repeated(times);
}

void completed(PanelStage& stage) {
    SessionInfo done = session(QStringLiteral("done"), QStringLiteral("Add retry to the uploader"),
                               SessionStatus::working, 2s);
    stage.scan({done});
    done.status = SessionStatus::done;
    stage.scan({done, idle()});
}

void select(PanelStage& stage, SessionInfo shown) {
    const QString id = shown.id;
    stage.scan({std::move(shown), titled("other", "Write the release notes", 1h)});
    stage.state().toggleSelection(id);
    stage.open();
}

void prompt(PanelStage& stage) {
    select(stage, detailed(false));
    stage.model().sendPrompt(QStringLiteral("work"), QStringLiteral("Run the tests"));
    stage.settle();
}

void fail(PanelStage& stage) {
    prompt(stage);
    stage.prompts.at(0).completion(QStringLiteral("claude exited with status 2"));
    stage.settle();
}

void typing(PanelStage& stage) {
    select(stage, detailed(false));
    PanelHand hand(stage);
    hand.click(hand.find(QStringLiteral("prompt")));
    hand.type("Now the tests, please");
}

void everything(PanelStage& stage) {
    completed(stage);
    SessionInfo done = session(QStringLiteral("done"), QStringLiteral("Add retry to the uploader"),
                               SessionStatus::done, 2min);
    stage.scan({asking(), working(), done, idle()}, {request()}, {orphan("/home/u/scratch")});
    stage.state().togglePin();
}

void manySessions(PanelStage& stage) {
    constexpr int many = 24;
    std::vector<SessionInfo> sessions;
    sessions.reserve(many);
    for (int number = 0; number < many; ++number) {
        sessions.push_back(session(QString::number(number), QStringLiteral("Task %1").arg(number),
                                   SessionStatus::done, number * 1min));
    }
    stage.scan(std::move(sessions));
    stage.open();
    const PanelHand hand(stage);
    hand.find(QStringLiteral("list")).setProperty("contentY", 150);
}

void question(PanelStage& stage) {
    stage.scan({asking(), working()});
    stage.open();
}

void focusedOption(PanelStage& stage) {
    SessionInfo selected = detailed(false);
    stage.scan({asking(), selected});
    stage.state().toggleSelection(selected.id);
    stage.open();
    PanelHand hand(stage);
    hand.click(hand.find(QStringLiteral("prompt")));
    while (stage.view().activeFocusItem()->objectName() != QStringLiteral("option")) {
        hand.key(Qt::Key_Backtab, Qt::ShiftModifier);
    }
}

void longQuestion(PanelStage& stage) {
    SessionInfo info = asking();
    info.ask->question = longText("What should become of the records that nobody reads? ", 4);
    info.ask->options = {longText("Keep them ", 12), longText("Drop", 90),
                         QStringLiteral("احذفها بعد ثلاثين يومًا")};
    stage.scan({info});
    stage.open();
}

void menu(PanelStage& stage) {
    question(stage);
    PanelHand(stage).clickRight({420, 120});
}

void tooltip(PanelStage& stage) {
    question(stage);
    PanelHand hand(stage);
    hand.point(hand.find(QStringLiteral("option"), 1));
    hand.waitFor([&] { return hand.has(QStringLiteral("helpTip")); });
}

void difficultTexts(PanelStage& stage) {
    SessionInfo wide = titled("wide",
                              "A title that goes on and on about everything that was to be done in "
                              "this session and more, until nobody reads it any longer",
                              1s);
    wide.projectName = QStringLiteral("a-project-with-a-very-long-name-of-its-own");
    wide.process = process(1'234'567, 1'234);
    stage.scan({wide, titled("rtl", "إصلاح نموذج تسجيل الدخول ثم اختباره", 2s),
                titled("cjk", "修复登录表单并添加测试", 3s),
                titled("emoji", "Ship it 👩‍🔬🚀 now <b>bold</b> & $x", 4s)},
               {}, {orphan("/home/u/שלום")});
    stage.open();
}

/// The scan's sessions, and the panel open if wanted.
std::function<void(PanelStage&)> of(std::vector<SessionInfo> sessions, bool isOpen) {
    return [sessions = std::move(sessions), isOpen](PanelStage& stage) {
        stage.scan(sessions);
        if (isOpen) {
            stage.open();
        }
    };
}

} // namespace

std::vector<PanelScene> PanelScene::all() {
    const auto openCompleted = [](PanelStage& stage) {
        completed(stage);
        stage.open();
    };
    return {
        {"collapsed-idle", false, of({idle()}, false)},
        {"collapsed-working", false, of({working(), idle()}, false)},
        {"collapsed-waiting", false, of({asking(), working()}, false)},
        {"collapsed-done", false,
         [](PanelStage& stage) {
             completed(stage);
             stage.queue().advance(AppState::peekTime);
             stage.settle();
         }},
        {"collapsed-notch", true, of({asking(), working()}, false)},
        {"empty", false, of({}, true)},
        {"sessions", false, of({working(), titled("t", "Add a retry", 1min), idle()}, true)},
        {"orphans", false,
         [](PanelStage& stage) {
             stage.scan({working()}, {}, {orphan("/home/u/scratch")});
             stage.open();
         }},
        {"completion", false, openCompleted},
        {"permission", false,
         [](PanelStage& stage) {
             stage.scan({working()}, {request()});
             stage.open();
         }},
        {"question", false, question},
        {"question-long", false, longQuestion},
        {"plan", false, of({planning()}, true)},
        {"detail", false, [](PanelStage& stage) { select(stage, detailed(false)); }},
        {"detail-empty", false, [](PanelStage& stage) { select(stage, idle()); }},
        {"detail-running", false, [](PanelStage& stage) { select(stage, detailed(true)); }},
        {"detail-prompting", false, prompt},
        {"detail-error", false, fail},
        {"detail-typing", false, typing},
        {"everything-pinned", false, everything},
        {"notch", true, of({asking(), working()}, true)},
        {"tooltip", false, tooltip},
        {"focus", false, focusedOption},
        {"menu", false, menu},
        {"scrolled", false, manySessions},
        {"difficult-texts", false, difficultTexts},
    };
}

} // namespace sallowmere
