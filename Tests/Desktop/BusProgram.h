// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gio/gio.h>

namespace sallowmere {

/// A program that stands in for a service of the desktop: it serves objects on a message bus, tells
/// on its standard output, a line each, what it is asked, and ends with its standard input.
class BusProgram {
public:
    struct Call {
        GDBusMethodInvocation* invocation;
        std::string path;
        std::string method;
        GVariant* parameters;

        /// Each answers the call; this is to be done once, or never.
        void reply(GVariant* result = nullptr) const;
        void fail(const std::string& errorName) const;
    };

    using Methods = std::function<void(const Call&)>;
    /// By name, in the text format of `GVariant`.
    using Properties = std::function<std::map<std::string, std::string>(const std::string& path)>;

    explicit BusProgram(const std::string& address);
    BusProgram(const BusProgram&) = delete;
    BusProgram& operator=(const BusProgram&) = delete;
    ~BusProgram();

    /// Serves every interface of an introspection document at a path. Each call is told of before
    /// it is handed on.
    void serve(const std::string& path, const std::string& interfaces, Methods methods,
               Properties properties = nullptr);
    void emit(const std::string& path, const std::string& interfaceName, const std::string& signal,
              GVariant* parameters);
    /// Calls without waiting for an answer.
    void call(const std::string& name, const std::string& path, const std::string& interfaceName,
              const std::string& method, GVariant* parameters);

    /// Takes the name and says "ready"; returns when standard input ends.
    int runAs(const std::string& name);

private:
    struct Object;

    GDBusConnection* connection_;
    GMainLoop* loop_;
    std::vector<std::unique_ptr<Object>> objects_;
};

/// Prints one line at once.
void tell(const std::string& line);

} // namespace sallowmere
