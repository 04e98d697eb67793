// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Soak/Outside.h"

namespace sallowmere {

void SoakProcesses::endOne() {
    if (!running_.empty()) {
        running_.erase(running_.begin());
    }
}

std::string SoakProcesses::listing() const {
    std::string text = "40 1 1000 1.0 05:00 kitty\n";
    for (const auto& [pid, directory] : running_) {
        text += std::to_string(pid) + " 40 1000 2.5 00:09 claude\n";
    }
    return text;
}

std::optional<std::string> SoakProcesses::workingDirectory(std::int32_t pid) const {
    const auto found = running_.find(pid);
    return found == running_.end() ? std::nullopt : std::optional(found->second);
}

void SoakService::get(HttpRequest request, Completion completion) {
    ++asked_;
    if (status_ == silence) {
        queue_.after(request.timeout, [completion = std::move(completion)] { completion({}); });
        return;
    }
    const std::string percent = std::to_string(asked_ % 100);
    completion(HttpResponse{status_, R"({"limits":[{"kind":"session","percent":)" + percent
                                         + R"(},{"kind":"weekly_all","percent":)" + percent
                                         + R"(},{"kind":"weekly_scoped","percent":5,"scope":)"
                                           R"({"model":{"display_name":"Fable"}}}]})"});
}

Keychain::Item SoakKeychain::genericPassword(std::string_view) {
    return {Item::Outcome::found, R"({"claudeAiOauth":{"accessToken":"not-a-token"}})"};
}

std::optional<RunningApplication> SoakApplications::ofProcess(std::int32_t pid) {
    return RunningApplication{pid};
}

std::optional<RunningApplication> SoakApplications::withIdentifier(std::string_view) {
    return std::nullopt;
}

std::vector<ApplicationWindow> SoakApplications::windows(RunningApplication) {
    return {{1, "a terminal"}, {2, std::nullopt}};
}

} // namespace sallowmere
