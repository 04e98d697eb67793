// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// prompter-stand-in ADDRESS [PASSWORD]
// The program by which a GNOME desktop asks for the password of a keyring. The user answers the
// first question with the password, if there is one, and dismisses every other.
#include "Desktop/BusProgram.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gcrypt.h>

namespace sallowmere {
namespace {

using Bytes = std::vector<unsigned char>;

constexpr const char* protocol = "sx-aes-1";
constexpr std::size_t keyLength = 16;

constexpr const char* prompterInterfaces = R"xml(<node>
  <interface name="org.gnome.keyring.internal.Prompter">
    <method name="BeginPrompting"><arg name="callback" type="o" direction="in"/></method>
    <method name="PerformPrompt">
      <arg name="callback" type="o" direction="in"/><arg name="type" type="s" direction="in"/>
      <arg name="properties" type="a{sv}" direction="in"/>
      <arg name="exchange" type="s" direction="in"/>
    </method>
    <method name="StopPrompting"><arg name="callback" type="o" direction="in"/></method>
  </interface>
</node>)xml";

/// The second Oakley group's bigger sister with 1536 bits, RFC 3526.
constexpr const char* primeText =
    "FFFFFFFFFFFFFFFFC90FDAA22168C234C4C6628B80DC1CD129024E088A67CC74020BBEA63B139B22514A08798E3404"
    "DDEF9519B3CD3A431B302B0A6DF25F14374FE1356D6D51C245E485B576625E7EC6F44C42E9A637ED6B0BFF5CB6F406"
    "B7EDEE386BFB5A899FA5AE9F24117C4B1FE649286651ECE45B3DC2007CB8A163BF0598DA48361C55D39A69163FA8FD"
    "24CF5F83655D23DCA3AD961C62F356208552BB9ED529077096966D670C354E4ABC9804F1746C08CA237327FFFFFFFF"
    "FFFFFFFF";

/// A big number.
class Number {
public:
    explicit Number(unsigned long value) : mpi_(gcry_mpi_set_ui(nullptr, value)) {}
    explicit Number(const Bytes& bytes) {
        gcry_mpi_scan(&mpi_, GCRYMPI_FMT_USG, bytes.data(), bytes.size(), nullptr);
    }
    explicit Number(const char* hexadecimal) {
        gcry_mpi_scan(&mpi_, GCRYMPI_FMT_HEX, hexadecimal, 0, nullptr);
    }
    Number(const Number&) = delete;
    Number& operator=(const Number&) = delete;
    ~Number() { gcry_mpi_release(mpi_); }

    gcry_mpi_t get() const { return mpi_; }

    /// As many bytes as the prime has.
    Bytes bytes() const {
        Bytes result(192);
        const std::size_t length = (gcry_mpi_get_nbits(mpi_) + 7) / 8;
        gcry_mpi_print(GCRYMPI_FMT_USG, &result[result.size() - length], length, nullptr, mpi_);
        return result;
    }

private:
    gcry_mpi_t mpi_ = nullptr;
};

/// Of the Diffie-Hellman exchange.
Bytes power(const Number& base, unsigned long exponent) {
    const Number prime(primeText);
    const Number result(0UL);
    gcry_mpi_powm(result.get(), base.get(), Number(exponent).get(), prime.get());
    return result.bytes();
}

/// One whose shared number fills its bytes: programs disagree on whether a key is made of the
/// zeros before a shorter one, too, and one number in 256 is shorter.
unsigned long secretExponent(const Number& otherSide) {
    // On a bus of its own nobody listens who must not know it.
    unsigned long exponent = 65'537;
    while (power(otherSide, exponent).front() == 0) {
        ++exponent;
    }
    return exponent;
}

Bytes hmac(const Bytes& key, const Bytes& message) {
    Bytes result(32);
    GHmac* hmac = g_hmac_new(G_CHECKSUM_SHA256, key.data(), key.size());
    g_hmac_update(hmac, message.data(), static_cast<gssize>(message.size()));
    gsize length = result.size();
    g_hmac_get_digest(hmac, result.data(), &length);
    g_hmac_unref(hmac);
    return result;
}

/// The first bytes of an HKDF (RFC 5869) without salt.
Bytes keyOf(const Bytes& shared) {
    Bytes key = hmac(hmac(Bytes(32), shared), {1});
    key.resize(keyLength);
    return key;
}

/// AES-128-CBC with the padding of PKCS 7.
Bytes encrypted(const Bytes& key, const Bytes& start, const std::string& text) {
    Bytes bytes(text.begin(), text.end());
    const std::size_t padding = keyLength - bytes.size() % keyLength;
    bytes.insert(bytes.end(), padding, static_cast<unsigned char>(padding));
    gcry_cipher_hd_t cipher = nullptr;
    gcry_cipher_open(&cipher, GCRY_CIPHER_AES128, GCRY_CIPHER_MODE_CBC, 0);
    gcry_cipher_setkey(cipher, key.data(), key.size());
    gcry_cipher_setiv(cipher, start.data(), start.size());
    gcry_cipher_encrypt(cipher, bytes.data(), bytes.size(), nullptr, 0);
    gcry_cipher_close(cipher);
    return bytes;
}

std::string base64(const Bytes& bytes) {
    const std::unique_ptr<char, decltype(&g_free)> text(g_base64_encode(bytes.data(), bytes.size()),
                                                        &g_free);
    return text.get();
}

/// The other side's part of the exchange.
Bytes publicPart(const std::string& exchange) {
    const std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)> file(g_key_file_new(),
                                                                      &g_key_file_unref);
    g_key_file_load_from_data(file.get(), exchange.data(), exchange.size(), G_KEY_FILE_NONE,
                              nullptr);
    const std::unique_ptr<char, decltype(&g_free)> text(
        g_key_file_get_string(file.get(), protocol, "public", nullptr), &g_free);
    if (!text) {
        throw std::runtime_error("not understood: " + exchange);
    }
    gsize length = 0;
    const std::unique_ptr<unsigned char, decltype(&g_free)> bytes(
        g_base64_decode(text.get(), &length), &g_free);
    return {bytes.get(), bytes.get() + length};
}

std::string answerTo(const std::string& exchange, const std::string& password) {
    const Bytes start(keyLength, 7);
    const Number otherSide(publicPart(exchange));
    const unsigned long exponent = secretExponent(otherSide);
    const Bytes key = keyOf(power(otherSide, exponent));
    return std::string("[") + protocol + "]\npublic=" + base64(power(Number(2UL), exponent))
           + "\nsecret=" + base64(encrypted(key, start, password)) + "\niv=" + base64(start) + '\n';
}

class Prompter {
public:
    Prompter(const std::string& address, std::optional<std::string> password)
        : bus_(address), password_(std::move(password)) {
        bus_.serve("/org/gnome/keyring/Prompter", prompterInterfaces,
                   [this](const BusProgram::Call& call) { answer(call); });
    }

    int run() { return bus_.runAs("org.gnome.keyring.SystemPrompter"); }

private:
    void answer(const BusProgram::Call& call) {
        const char* callback = nullptr;
        g_variant_get_child(call.parameters, 0, "&o", &callback);
        const std::string asker = g_dbus_method_invocation_get_sender(call.invocation);
        const std::string path = callback;
        std::string exchange;
        if (call.method == "PerformPrompt") {
            const char* text = nullptr;
            g_variant_get_child(call.parameters, 3, "&s", &text);
            exchange = text;
        }
        call.reply();
        if (call.method == "StopPrompting") {
            tellAsker(asker, path, "PromptDone", nullptr);
        } else if (call.method == "BeginPrompting") {
            tellAsker(asker, path, "PromptReady", ready("", ""));
        } else if (password_) {
            tellAsker(asker, path, "PromptReady", ready("yes", answerTo(exchange, *password_)));
            password_.reset();
        } else {
            tellAsker(asker, path, "PromptReady", ready("no", ""));
        }
    }

    void tellAsker(const std::string& asker, const std::string& path, const char* method,
                   GVariant* parameters) {
        bus_.call(asker, path, "org.gnome.keyring.internal.Prompter.Callback", method, parameters);
    }

    static GVariant* ready(const char* reply, const std::string& exchange) {
        return g_variant_new("(sa{sv}s)", reply, nullptr, exchange.c_str());
    }

    BusProgram bus_;
    std::optional<std::string> password_;
};

} // namespace
} // namespace sallowmere

int main(int argc, char** argv) {
    gcry_check_version(nullptr);
    gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
    return sallowmere::Prompter(argv[1],
                                argc > 2 ? std::optional<std::string>(argv[2]) : std::nullopt)
        .run();
}
