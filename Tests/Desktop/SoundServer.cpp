// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Desktop/SoundServer.h"

#include "Desktop/Daemon.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <numeric>
#include <stdexcept>

namespace sallowmere {

namespace {

constexpr float audible = 1e-4F;
constexpr std::size_t pause = samplesPerSecond / 2;

bool isAudible(float sample) {
    return std::abs(sample) > audible;
}

Samples::const_iterator onset(const Samples& samples, std::size_t from) {
    return std::find_if(samples.begin() + static_cast<std::ptrdiff_t>(from), samples.end(),
                        isAudible);
}

/// How much of a frequency is in a sound (Goertzel's algorithm).
double amplitude(const Samples& sound, double frequency) {
    const double step = 2 * std::numbers::pi * frequency / samplesPerSecond;
    const double factor = 2 * std::cos(step);
    double last = 0;
    double beforeLast = 0;
    for (const float sample : sound) {
        const double next = static_cast<double>(sample) + factor * last - beforeLast;
        beforeLast = last;
        last = next;
    }
    return std::sqrt(last * last + beforeLast * beforeLast - factor * last * beforeLast);
}

/// At each semitone of six octaves.
std::vector<double> spectrum(const Samples& sound) {
    constexpr int tones = 72;
    std::vector<double> result;
    result.reserve(tones);
    for (int tone = 0; tone < tones; ++tone) {
        result.push_back(amplitude(sound, 110 * std::exp2(tone / 12.0)));
    }
    return result;
}

double product(const std::vector<double>& left, const std::vector<double>& right) {
    return std::inner_product(left.begin(), left.end(), right.begin(), 0.0);
}

} // namespace

double energy(const Samples& sound) {
    return std::accumulate(sound.begin(), sound.end(), 0.0, [](double sum, float sample) {
        return sum + static_cast<double>(sample) * static_cast<double>(sample);
    });
}

double likeness(const Samples& left, const Samples& right) {
    const std::vector<double> one = spectrum(left);
    const std::vector<double> other = spectrum(right);
    return product(one, other) / std::sqrt(product(one, one) * product(other, other));
}

std::string SoundServer::address(const TemporaryHome& home) {
    return "unix:" + home / "run/sound";
}

SoundServer::SoundServer(const TemporaryHome& home) : home_(home) {
    const std::string socket = home / "run/sound";
    home.makeDirectory("run");
    std::filesystem::permissions(home / "run", std::filesystem::perms::owner_all);
    std::filesystem::remove(socket);
    server_ =
        startDaemon(home, {"/usr/bin/pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1",
                           "--use-pid-file=no", "--disable-shm=yes", "--realtime=no",
                           "--high-priority=no", "--load=module-null-sink sink_name=loudspeaker",
                           "--load=module-native-protocol-unix auth-anonymous=1 socket=" + socket});
    if (!comesTrue([&] { return std::filesystem::exists(socket); })) {
        throw std::runtime_error("the sound server does not start");
    }
}

void SoundServer::stop() const {
    kill(server_->pid(), SIGSTOP);
}

void SoundServer::goOn() const {
    kill(server_->pid(), SIGCONT);
}

std::string SoundServer::control(const std::vector<std::string>& arguments) const {
    Command command{
        "/usr/bin/pactl",
        {"pactl"},
        {"PATH=/usr/bin:/bin", "HOME=" + home_.path(), "PULSE_SERVER=" + address(home_)},
        {}};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    return run(command).output;
}

Recording::Recording(const TemporaryHome& home) : file_(home / "recording") {
    std::filesystem::remove(file_);
    recorder_ = startDaemon(home,
                            {"/usr/bin/parec", "--device=loudspeaker.monitor", "--format=float32ne",
                             "--channels=1", "--latency-msec=20",
                             "--rate=" + std::to_string(samplesPerSecond), file_},
                            {"PULSE_SERVER=" + SoundServer::address(home)});
    if (!comesTrue([this] {
            read();
            return !heard_.empty();
        })) {
        throw std::runtime_error("nothing is recorded");
    }
}

bool Recording::isHeard() {
    read();
    return onset(heard_, done_) != heard_.end();
}

Samples Recording::next() {
    const bool ended = comesTrue([this] {
        const bool begun = isHeard();
        const auto last = std::find_if(heard_.rbegin(), heard_.rend(), isAudible).base();
        return begun && static_cast<std::size_t>(heard_.end() - last) > pause;
    });
    Samples sound(ended ? onset(heard_, done_) : heard_.end(), heard_.cend());
    done_ = heard_.size();
    return sound;
}

void Recording::read() {
    std::ifstream stream(file_, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(heard_.size() * sizeof(float)));
    for (float sample = 0;
         stream.read(reinterpret_cast<char*>(&sample), sizeof sample);) { // NOLINT
        heard_.push_back(sample);
    }
}

} // namespace sallowmere
