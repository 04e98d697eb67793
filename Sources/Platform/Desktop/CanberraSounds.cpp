// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Desktop/CanberraSounds.h"

#include "Platform/Linux/LinuxWorkQueue.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cmath>
#include <future>
#include <string>
#include <thread>
#include <utility>

#include <canberra.h>
#include <locale.h> // NOLINT(modernize-deprecated-headers): for newlocale

namespace sallowmere {

namespace {

struct Sound {
    std::string_view name;
    const char* event;
};

constexpr std::array<Sound, 3> sounds{{
    {"Glass", "complete"},
    {"Ping", "message-new-instant"},
    {"Submarine", "dialog-warning"},
}};

constexpr std::chrono::seconds farewell{1};

struct Destroy {
    void operator()(ca_context* context) const { ca_context_destroy(context); }
};

using Context = std::unique_ptr<ca_context, Destroy>;

Context newContext() {
    ca_context* made = nullptr;
    if (ca_context_create(&made) != CA_SUCCESS) {
        return nullptr;
    }
    Context context(made);
    // The others heed no volume, and complain aloud where there is no sound card.
    ca_context_set_driver(made, "pulse");
    ca_context_change_props(made, CA_PROP_APPLICATION_NAME, "Sallowmere", nullptr);
    return context;
}

/// Numbers have a decimal point on this thread, whatever the user's locale, as long as this lives.
class PlainNumbers {
public:
    PlainNumbers() : plain_(newlocale(LC_ALL_MASK, "C", nullptr)), before_(uselocale(plain_)) {}
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;
    ~PlainNumbers() {
        uselocale(before_);
        freelocale(plain_);
    }

private:
    locale_t plain_;
    locale_t before_;
};

std::string decibels(float volume) {
    std::array<char, 32> text{};
    const double value = 20 * std::log10(static_cast<double>(volume));
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

} // namespace

/// Talks to the sound server, on the queue's thread.
class CanberraSounds::Player {
public:
    /// False when that sound waits for its turn already. Any thread.
    bool startWaiting(std::size_t sound) { return !waiting_.at(sound).exchange(true); }

    void play(std::size_t sound, float volume) {
        waiting_.at(sound) = false;
        const bool wasConnected = context_ != nullptr;
        const int result = tryToPlay(sound, volume);
        // The server may have been another one since.
        if (wasConnected && result != CA_SUCCESS && result != CA_ERROR_NOTFOUND) {
            tryToPlay(sound, volume);
        }
    }

private:
    int tryToPlay(std::size_t sound, float volume) {
        if (!context_) {
            context_ = newContext();
        }
        // libcanberra reads the volume in the user's locale.
        const PlainNumbers numbers;
        const int result =
            context_ ? ca_context_play(context_.get(), 0, CA_PROP_EVENT_ID, sounds.at(sound).event,
                                       CA_PROP_CANBERRA_VOLUME, decibels(volume).c_str(), nullptr)
                     : CA_ERROR_OOM;
        if (result != CA_SUCCESS) {
            context_.reset();
        }
        return result;
    }

    std::array<std::atomic<bool>, sounds.size()> waiting_{};
    Context context_;
};

CanberraSounds::CanberraSounds()
    : player_(std::make_shared<Player>()), queue_(std::make_unique<LinuxWorkQueue>("sounds")) {}

CanberraSounds::~CanberraSounds() {
    std::promise<void> ended;
    const std::future<void> end = ended.get_future();
    std::thread([player = std::move(player_), queue = std::move(queue_),
                 ended = std::move(ended)]() mutable {
        queue.reset();
        player.reset();
        ended.set_value_at_thread_exit();
    }).detach();
    end.wait_for(farewell);
}

void CanberraSounds::play(std::string_view name, float volume) {
    const auto sound = std::find_if(sounds.begin(), sounds.end(),
                                    [=](const Sound& known) { return known.name == name; });
    if (sound == sounds.end() || !(volume > 0)) {
        return;
    }
    const auto index = static_cast<std::size_t>(sound - sounds.begin());
    if (player_->startWaiting(index)) {
        queue_->post([player = player_, index, loudness = std::min(volume, 1.0F)] {
            player->play(index, loudness);
        });
    }
}

} // namespace sallowmere
