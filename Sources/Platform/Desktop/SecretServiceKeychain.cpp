// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Desktop/SecretServiceKeychain.h"

#include "Platform/Desktop/GLibReference.h"
#include "Platform/Desktop/SecretPrompt.h"
#include "Platform/Linux/SpareDescriptors.h"

#include <array>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

#include <libsecret/secret.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sallowmere {

namespace {

/// GLib ends the program when it gets no descriptor. It takes half as many here.
constexpr std::size_t neededDescriptors = 16;

/// Keeps what the libraries have to tell this thread away from other threads' event loops.
class EventContext {
public:
    EventContext() : context_(g_main_context_new()) {
        g_main_context_push_thread_default(context_);
    }
    EventContext(const EventContext&) = delete;
    EventContext& operator=(const EventContext&) = delete;
    ~EventContext() {
        while (g_main_context_iteration(context_, FALSE) != FALSE) {
        }
        g_main_context_pop_thread_default(context_);
        g_main_context_unref(context_);
    }

private:
    GMainContext* context_;
};

/// Cancels what lasts longer than this.
class Deadline {
public:
    Deadline(GCancellable* cancelled, std::chrono::milliseconds patience)
        : thread_([=](const std::stop_token& over) {
              std::mutex lock;
              std::condition_variable_any never;
              std::unique_lock locked(lock);
              never.wait_for(locked, over, patience, [] { return false; });
              if (!over.stop_requested()) {
                  g_cancellable_cancel(cancelled);
              }
          }) {}

private:
    std::jthread thread_;
};

bool isOwnSocket(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode)
           && status.st_uid == geteuid();
}

/// Where there is none, but a window system, GLib would start one.
bool isThereABus() {
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS")) {
        return std::string_view(address).find("autolaunch:") == std::string_view::npos;
    }
    const char* directory = std::getenv("XDG_RUNTIME_DIR");
    return directory != nullptr && isOwnSocket(std::string(directory) + "/bus");
}

Reference<GDBusConnection> connect(GCancellable* cancelled) {
    Reference<GDBusConnection> bus(
        isThereABus() ? g_bus_get_sync(G_BUS_TYPE_SESSION, cancelled, nullptr) : nullptr);
    if (bus) {
        // Or the end of the bus would be the end of this program.
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    }
    return bus;
}

/// The first item, one that is not locked if there is any.
Reference<SecretItem> find(SecretService* secrets, std::string name, GCancellable* cancelled) {
    GHashTable* attributes = g_hash_table_new(g_str_hash, g_str_equal);
    std::string key = "service";
    g_hash_table_insert(attributes, key.data(), name.data());
    GList* items = secret_service_search_sync(secrets, nullptr, attributes, SECRET_SEARCH_NONE,
                                              cancelled, nullptr);
    g_hash_table_unref(attributes);
    Reference<SecretItem> found(items == nullptr ? nullptr
                                                 : SECRET_ITEM(g_object_ref(items->data)));
    g_list_free_full(items, g_object_unref);
    return found;
}

/// The path of the question that unlocking takes, "/" when it takes none; absent on failure.
std::optional<std::string> requestUnlock(GDBusProxy* secrets, GDBusProxy* item,
                                         GCancellable* cancelled) {
    const char* path = g_dbus_proxy_get_object_path(item);
    const Reference<GVariant> reply(g_dbus_proxy_call_sync(
        secrets, "Unlock",
        g_variant_new("(^ao)", std::array{path, static_cast<const char*>(nullptr)}.data()),
        G_DBUS_CALL_FLAGS_NONE, -1, cancelled, nullptr));
    if (!reply || g_variant_is_of_type(reply.get(), G_VARIANT_TYPE("(aoo)")) == FALSE) {
        return std::nullopt;
    }
    const char* prompt = nullptr;
    g_variant_get_child(reply.get(), 1, "&o", &prompt);
    return prompt;
}

bool ask(GDBusProxy* secrets, const std::string& prompt, GCancellable* cancelled) {
    const std::unique_ptr<char, decltype(&g_free)> owner(g_dbus_proxy_get_name_owner(secrets),
                                                         &g_free);
    return owner
           && SecretPrompt(g_dbus_proxy_get_connection(secrets), owner.get(), prompt)
                  .isAccepted(cancelled);
}

bool saysItMayNotBeRead(const GError* error) {
    return g_error_matches(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED) != FALSE
           || g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED) != FALSE;
}

Keychain::Item load(SecretItem* item, GCancellable* cancelled) {
    GError* failure = nullptr;
    secret_item_load_secret_sync(item, cancelled, &failure);
    const std::unique_ptr<GError, decltype(&g_error_free)> error(failure, &g_error_free);
    const std::unique_ptr<SecretValue, decltype(&secret_value_unref)> value(
        secret_item_get_secret(item), &secret_value_unref);
    if (error || !value) {
        return {saysItMayNotBeRead(error.get()) ? Keychain::Item::Outcome::refused
                                                : Keychain::Item::Outcome::missing,
                {}};
    }
    gsize length = 0;
    const char* bytes = secret_value_get(value.get(), &length);
    return {Keychain::Item::Outcome::found, std::string(bytes, length)};
}

Keychain::Item read(const std::string& name, GCancellable* cancelled,
                    std::chrono::milliseconds patience) {
    const EventContext context;
    std::optional<Deadline> deadline(std::in_place, cancelled, patience);
    const Reference<GDBusConnection> bus = connect(cancelled);
    const Reference<SecretService> secrets(
        bus ? secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_NONE, cancelled,
                                       nullptr)
            : nullptr);
    const Reference<SecretItem> item = secrets ? find(secrets.get(), name, cancelled) : nullptr;
    if (!item) {
        return {};
    }
    if (secret_item_get_locked(item.get()) != FALSE) {
        GDBusProxy* proxy = G_DBUS_PROXY(secrets.get());
        const auto prompt = requestUnlock(proxy, G_DBUS_PROXY(item.get()), cancelled);
        deadline.reset();
        if (!prompt || (*prompt != "/" && !ask(proxy, *prompt, cancelled))) {
            return {Keychain::Item::Outcome::refused, {}};
        }
        deadline.emplace(cancelled, patience);
    }
    return load(item.get(), cancelled);
}

} // namespace

class SecretServiceKeychain::End {
public:
    void come() { g_cancellable_cancel(come_.get()); }

    /// Cancels this too, as long as the result lives.
    auto cancels(GCancellable* other) {
        const gulong connection =
            g_cancellable_connect(come_.get(), G_CALLBACK(cancel), other, nullptr);
        const auto disconnect = [connection](GCancellable* come) {
            g_cancellable_disconnect(come, connection);
        };
        return std::unique_ptr<GCancellable, decltype(disconnect)>(come_.get(), disconnect);
    }

private:
    static void cancel(GCancellable*, GCancellable* other) { g_cancellable_cancel(other); }

    Reference<GCancellable> come_{g_cancellable_new()};
};

SecretServiceKeychain::SecretServiceKeychain(std::chrono::milliseconds patience)
    : patience_(patience), end_(std::make_unique<End>()) {}

SecretServiceKeychain::~SecretServiceKeychain() = default;

Keychain::Item SecretServiceKeychain::genericPassword(std::string_view service) {
    const std::string name(service);
    // D-Bus carries nothing else.
    if (g_utf8_validate_len(name.data(), name.size(), nullptr) == FALSE
        || !hasSpareDescriptors(neededDescriptors)) {
        return {};
    }
    const Reference<GCancellable> cancelled(g_cancellable_new());
    const auto ends = end_->cancels(cancelled.get());
    return read(name, cancelled.get(), patience_);
}

void SecretServiceKeychain::stopWaiting() {
    end_->come();
}

} // namespace sallowmere
