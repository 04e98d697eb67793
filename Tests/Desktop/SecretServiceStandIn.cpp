// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// secret-service-stand-in ADDRESS WORD...
// A Secret Service that behaves as a test says, also in ways that no real one can be made to.
//
//   open                an item that is not locked, with the secret "the open one"
//   locked              a locked item, with the secret "the locked one"
//   at-once             unlocking it needs no question
//   accepts, dismisses  the user is asked, and does that
//   pretends            the user is asked and accepts, but the item stays locked
//   waits               the user is asked and does not answer, nor does this program meanwhile
//   dies                this program ends when the user is to be asked
//   silent:METHOD       that method never answers
//   fails:METHOD:ERROR  that method fails
//
// A locked item with none of these is not unlocked, and nobody is asked.
#include "Desktop/BusProgram.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace sallowmere {
namespace {

const std::string servicePath = "/org/freedesktop/secrets";
const std::string openItem = "/org/freedesktop/secrets/collection/one/1";
const std::string lockedItem = "/org/freedesktop/secrets/collection/two/2";
const std::string promptPath = "/org/freedesktop/secrets/prompt/1";
const std::string promptInterface = "org.freedesktop.Secret.Prompt";

constexpr const char* serviceInterfaces = R"xml(<node>
  <interface name="org.freedesktop.Secret.Service">
    <method name="OpenSession">
      <arg name="algorithm" type="s" direction="in"/><arg name="input" type="v" direction="in"/>
      <arg name="output" type="v" direction="out"/><arg name="result" type="o" direction="out"/>
    </method>
    <method name="SearchItems">
      <arg name="attributes" type="a{ss}" direction="in"/>
      <arg name="unlocked" type="ao" direction="out"/>
      <arg name="locked" type="ao" direction="out"/>
    </method>
    <method name="Unlock">
      <arg name="objects" type="ao" direction="in"/>
      <arg name="unlocked" type="ao" direction="out"/>
      <arg name="prompt" type="o" direction="out"/>
    </method>
    <property name="Collections" type="ao" access="read"/>
  </interface>
</node>)xml";

constexpr const char* itemInterfaces = R"xml(<node>
  <interface name="org.freedesktop.Secret.Item">
    <method name="GetSecret">
      <arg name="session" type="o" direction="in"/>
      <arg name="secret" type="(oayays)" direction="out"/>
    </method>
    <property name="Locked" type="b" access="read"/>
    <property name="Attributes" type="a{ss}" access="read"/>
    <property name="Label" type="s" access="read"/>
    <property name="Created" type="t" access="read"/>
    <property name="Modified" type="t" access="read"/>
  </interface>
</node>)xml";

constexpr const char* promptInterfaces = R"xml(<node>
  <interface name="org.freedesktop.Secret.Prompt">
    <method name="Prompt"><arg name="window-id" type="s" direction="in"/></method>
    <method name="Dismiss"/>
    <signal name="Completed">
      <arg name="dismissed" type="b"/><arg name="result" type="v"/>
    </signal>
  </interface>
</node>)xml";

/// An object path for those texts in which variants are written.
std::string pathText(const std::string& path) {
    return "objectpath '" + path + "'";
}

class SecretService {
public:
    SecretService(const std::string& address, std::vector<std::string> words)
        : bus_(address), words_(std::move(words)) {
        const auto answer = [this](const BusProgram::Call& call) { this->answer(call); };
        bus_.serve(servicePath, serviceInterfaces, answer, [](const std::string&) {
            return std::map<std::string, std::string>{{"Collections", "@ao []"}};
        });
        for (const std::string& item : {openItem, lockedItem}) {
            bus_.serve(item, itemInterfaces, answer,
                       [this](const std::string& path) { return properties(path); });
        }
        bus_.serve(promptPath, promptInterfaces, answer);
    }

    int run() { return bus_.runAs("org.freedesktop.secrets"); }

private:
    bool is(const std::string& word) const {
        return std::find(words_.begin(), words_.end(), word) != words_.end();
    }

    std::optional<std::string> errorOf(const std::string& method) const {
        const std::string start = "fails:" + method + ':';
        const auto word = std::find_if(words_.begin(), words_.end(), [&](const std::string& each) {
            return each.starts_with(start);
        });
        return word == words_.end() ? std::nullopt : std::optional(word->substr(start.size()));
    }

    bool isLocked(const std::string& path) const { return path == lockedItem && locked_; }

    std::map<std::string, std::string> properties(const std::string& path) const {
        return {{"Locked", isLocked(path) ? "true" : "false"},
                {"Attributes", "@a{ss} {}"},
                {"Label", "'item'"},
                {"Created", "@t 0"},
                {"Modified", "@t 0"}};
    }

    void answer(const BusProgram::Call& call) {
        if (is("silent:" + call.method) || (isAsking_ && call.method != "Dismiss")) {
            return;
        }
        if (const auto error = errorOf(call.method)) {
            call.fail(*error);
        } else if (call.method == "SearchItems") {
            search(call);
        } else if (call.method == "Unlock") {
            unlock(call);
        } else if (call.method == "OpenSession") {
            openSession(call);
        } else if (call.method == "GetSecret") {
            giveSecret(call);
        } else if (call.method == "Prompt") {
            prompt(call);
        } else {
            call.reply();
        }
    }

    void search(const BusProgram::Call& call) const {
        char* attributes = g_variant_print(call.parameters, FALSE);
        tell(attributes);
        g_free(attributes);
        const std::string unlocked = is("open") ? pathText(openItem) : "";
        const std::string locked = is("locked") ? pathText(lockedItem) : "";
        call.reply(
            g_variant_new_parsed(("(@ao [" + unlocked + "], @ao [" + locked + "])").c_str()));
    }

    void unlock(const BusProgram::Call& call) {
        const bool atOnce = is("at-once");
        locked_ = locked_ && !atOnce;
        const bool asks =
            is("accepts") || is("dismisses") || is("pretends") || is("waits") || is("dies");
        call.reply(g_variant_new_parsed(("(@ao [" + (atOnce ? pathText(lockedItem) : "") + "], "
                                         + pathText(asks ? promptPath : "/") + ")")
                                            .c_str()));
    }

    void prompt(const BusProgram::Call& call) {
        if (is("dies")) {
            std::_Exit(0);
        }
        call.reply();
        locked_ = locked_ && !is("accepts");
        isAsking_ = is("waits");
        if (!isAsking_) {
            bus_.emit(promptPath, promptInterface, "Completed",
                      is("dismisses") ? g_variant_new_parsed("(true, <@ao []>)")
                                      : g_variant_new_parsed(
                                          ("(false, <[" + pathText(lockedItem) + "]>)").c_str()));
        }
    }

    static void openSession(const BusProgram::Call& call) {
        const char* algorithm = nullptr;
        g_variant_get_child(call.parameters, 0, "&s", &algorithm);
        if (std::string(algorithm) == "plain") {
            call.reply(
                g_variant_new_parsed("(<''>, objectpath '/org/freedesktop/secrets/session/1')"));
        } else {
            call.fail("org.freedesktop.DBus.Error.NotSupported");
        }
    }

    void giveSecret(const BusProgram::Call& call) const {
        if (isLocked(call.path)) {
            call.fail("org.freedesktop.Secret.Error.IsLocked");
            return;
        }
        const std::string secret = call.path == openItem ? "the open one" : "the locked one";
        GVariant* bytes =
            g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, secret.data(), secret.size(), 1);
        GVariant* none = g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, nullptr, 0, 1);
        call.reply(g_variant_new("((o@ay@ays))", "/org/freedesktop/secrets/session/1", none, bytes,
                                 "text/plain"));
    }

    BusProgram bus_;
    std::vector<std::string> words_;
    bool locked_ = true;
    bool isAsking_ = false;
};

} // namespace
} // namespace sallowmere

int main(int argc, char** argv) {
    return sallowmere::SecretService(argv[1], {argv + 2, argv + argc}).run();
}
