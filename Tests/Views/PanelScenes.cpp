// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/PanelScenes.h"

#include "Support/Times.h"

#include <QCoreApplication>

#include <chrono>

namespace sallowmere {

namespace {

using namespace std::chrono_literals;

const char* const moment = "2026-11-20T12:00:00Z";

UsageWindow window(double used, double limit, double resetsIn) {
    return {used, limit, resetsIn, std::nullopt};
}

UsageSnapshot usage() {
    UsageSnapshot snapshot;
    snapshot.fiveHour = window(31e6, 50e6, 8'040);
    snapshot.weekly = window(140e6, 350e6, 291'900);
    snapshot.weeklyFable = window(151e6, 180e6, 291'900);
    return snapshot;
}

SessionInfo session(const QString& id, const QString& title, SessionStatus status,
                    std::chrono::seconds age) {
    SessionInfo info;
    info.id = id;
    info.sessionId = id;
    info.title = title;
    info.projectName = QStringLiteral("accounts");
    info.cwd = QStringLiteral("/home/u/accounts");
    info.status = status;
    info.modelBadge = QStringLiteral("Opus");
    info.lastActivityAt = at(moment) - age;
    return info;
}

ClaudeProcess process(std::int32_t pid, double cpu) {
    ClaudeProcess running;
    running.pid = pid;
    running.cpuPercent = cpu;
    running.elapsed = QStringLiteral("3h12m");
    running.terminalName = QStringLiteral("kitty");
    running.terminalPid = 7;
    return running;
}

SessionInfo asking() {
    SessionInfo info =
        session(QStringLiteral("ask"), QStringLiteral("Pick a database for the account service"),
                SessionStatus::waiting, 40s);
    info.lastPrompt = QStringLiteral("choose something we can run without an administrator");
    info.activity = QStringLiteral("Asks: Which database should the new service use?");
    info.todo = TodoProgress{2, 5};
    info.ask =
        AskQuestion{QStringLiteral("Which database should the new service use?"),
                    {QStringLiteral("PostgreSQL"), QStringLiteral("SQLite, one file per user"),
                     QStringLiteral("Keep the JSON files")}};
    info.process = process(5120, 3.4);
    return info;
}

SessionInfo planning() {
    SessionInfo info = session(QStringLiteral("plan"), QStringLiteral("Move the cache to disk"),
                               SessionStatus::waiting, 90s);
    info.activity = QStringLiteral("Plan ready for review");
    info.plan = QStringLiteral("## Move the cache to disk\n\n"
                               "- Write `CacheStore` with an **atomic** rename\n"
                               "- Replace the map in `Session`, keep its *interface*\n"
                               "- Measure start-up before and after\n\n"
                               "| step | days |\n| --- | --- |\n| write | 1 |\n| measure | 2 |\n\n"
                               "See [the notes](https://example.org/notes) and "
                               "![a picture](https://example.org/picture.png).\n");
    return info;
}

SessionInfo working() {
    SessionInfo info = session(QStringLiteral("work"), QStringLiteral("Fix the login form"),
                               SessionStatus::working, 1s);
    info.projectName = QStringLiteral("webapp");
    info.modelBadge = QStringLiteral("Sonnet");
    info.lastPrompt = QStringLiteral("make the submit button disabled while the request runs");
    info.activity = QStringLiteral("Writing LoginForm.tsx");
    info.process = process(5121, 37);
    return info;
}

SessionInfo idle() {
    SessionInfo info = session(QStringLiteral("idle"),
                               QStringLiteral("Read the release notes and say what concerns us"),
                               SessionStatus::idle, 1h);
    info.modelBadge = QStringLiteral("Haiku");
    return info;
}

SessionInfo detailed(bool isRunning) {
    SessionInfo info = working();
    if (!isRunning) {
        info.process.reset();
        info.status = SessionStatus::done;
    }
    const auto event = [](const char* id, LogEvent::Kind kind, const char* label) {
        return LogEvent{QString::fromUtf8(id), kind, QString::fromUtf8(label), {}, {}};
    };
    info.events = {
        event("1.0", LogEvent::Kind::tool, "Read(LoginForm.tsx)"),
        event("2.0", LogEvent::Kind::text,
              "The button ignores the pending state. I will pass it down."),
        event("3.0", LogEvent::Kind::tool, "Edit(LoginForm.tsx)"),
        event("4.0", LogEvent::Kind::tool, "Bash(npm test -- LoginForm)"),
    };
    return info;
}

ClaudeProcess orphan(const char* cwd) {
    ClaudeProcess running = process(4242, 0);
    running.cwd = QString::fromUtf8(cwd);
    return running;
}

PermissionRequest request() {
    return {QStringLiteral("request.json"), QStringLiteral("work"),
            QStringLiteral("Bash: npm test -- LoginForm --watch=false"), at(moment)};
}

void scan(PanelStage& stage, std::vector<SessionInfo> sessions,
          std::vector<PermissionRequest> requests = {}, std::vector<ClaudeProcess> orphans = {}) {
    stage.state().setUsage(usage());
    stage.state().applyScan(std::move(sessions), std::move(orphans), std::move(requests));
}

void open(PanelStage& stage) {
    stage.state().hoverChanged(true);
}

void complete(PanelStage& stage) {
    SessionInfo before =
        session(QStringLiteral("done"), QStringLiteral("Add retry to the uploader"),
                SessionStatus::working, 2s);
    scan(stage, {before});
    before.status = SessionStatus::done;
    scan(stage, {before, idle()});
    open(stage);
}

void everything(PanelStage& stage) {
    SessionInfo done = session(QStringLiteral("done"), QStringLiteral("Add retry to the uploader"),
                               SessionStatus::working, 2min);
    scan(stage, {done});
    done.status = SessionStatus::done;
    scan(stage, {asking(), working(), done, idle()}, {request()}, {orphan("/home/u/scratch")});
    stage.state().togglePin();
}

SessionInfo titled(const char* id, const char* title, std::chrono::seconds age) {
    return session(QString::fromUtf8(id), QString::fromUtf8(title), SessionStatus::done, age);
}

void difficultTexts(PanelStage& stage) {
    SessionInfo wide = titled("wide",
                              "A title that goes on and on about everything that was to be done in "
                              "this session and more, until nobody reads it any longer",
                              1s);
    wide.projectName = QStringLiteral("a-project-with-a-very-long-name-of-its-own");
    wide.process = process(1'234'567, 1'234);
    scan(stage,
         {wide, titled("rtl", "إصلاح نموذج تسجيل الدخول ثم اختباره", 2s),
          titled("cjk", "修复登录表单并添加测试", 3s),
          titled("emoji", "Ship it 👩‍🔬🚀 now <b>bold</b> & $x", 4s)},
         {}, {orphan("/home/u/שלום")});
    open(stage);
}

} // namespace

PanelStage::PanelStage(const NotchMetrics& metrics)
    : metrics_(metrics), start_(at(moment)), queue_(start_), player_(sounds_, queue_.clock()),
      state_(std::make_unique<AppState>(Settings::defaults("/home/u"), services())),
      model_(std::make_unique<PanelModel>(*state_, keystrokes, queue_)),
      view_(std::make_unique<PanelView>(*model_, metrics, state_->settings().wingWidth)) {
    applications.running[7] = {};
    view_->setMotionWanted(false);
    settle();
    view_->show();
}

AppServices PanelStage::services() {
    return {queue_.clock(),
            queue_,
            files_,
            "/home/u",
            applications,
            keystrokes,
            [](const std::string& /*folder*/) {},
            player_,
            [](const QString& /*prompt*/, const SessionInfo& /*session*/,
               const Settings& /*settings*/, const PromptRunner::Completion& /*completion*/) {}};
}

void PanelStage::settle() {
    // Views measure themselves, which changes the model once more.
    for (int turn = 0; turn < 4; ++turn) {
        queue_.runPosted();
        QCoreApplication::processEvents();
        const Rect frame = metrics_.frame(state_->expanded(), state_->contentHeight(),
                                          state_->settings().wingWidth);
        view_->resize(qRound(frame.width), qRound(frame.height));
    }
}

std::vector<PanelScene> PanelScene::all() {
    return {
        {"collapsed-idle", false, [](PanelStage& stage) { scan(stage, {idle()}); }},
        {"collapsed-working", false,
         [](PanelStage& stage) {
             scan(stage, {working(), idle()});
         }},
        {"collapsed-waiting", false,
         [](PanelStage& stage) {
             scan(stage, {asking(), working()});
         }},
        {"collapsed-notch", true,
         [](PanelStage& stage) {
             scan(stage, {asking(), working()});
         }},
        {"empty", false, open},
        {"sessions", false,
         [](PanelStage& stage) {
             scan(stage, {working(), idle()}, {}, {orphan("/home/u/scratch")});
             open(stage);
         }},
        {"completion", false, complete},
        {"permission", false,
         [](PanelStage& stage) {
             scan(stage, {working()}, {request()});
             open(stage);
         }},
        {"question", false,
         [](PanelStage& stage) {
             scan(stage, {asking(), working()});
             open(stage);
         }},
        {"plan", false,
         [](PanelStage& stage) {
             scan(stage, {planning()});
             open(stage);
         }},
        {"detail", false,
         [](PanelStage& stage) {
             scan(stage, {detailed(false), idle()});
             open(stage);
             stage.state().toggleSelection(QStringLiteral("work"));
         }},
        {"detail-running", false,
         [](PanelStage& stage) {
             scan(stage, {detailed(true), idle()});
             open(stage);
             stage.state().toggleSelection(QStringLiteral("work"));
         }},
        {"everything-pinned", false, everything},
        {"notch", true,
         [](PanelStage& stage) {
             scan(stage, {asking(), working()});
             open(stage);
         }},
        {"difficult-texts", false, difficultTexts},
    };
}

} // namespace sallowmere
