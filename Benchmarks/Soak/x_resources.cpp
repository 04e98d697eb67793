// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
// Prints what a process keeps in the X server: x-resources PROCESS
// "WINDOWS PIXMAPS PIXMAP-KIB ALL", of all its connections together.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include <xcb/res.h>
#include <xcb/xcb.h>

namespace {

struct Freed {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Freed>;

struct Counts {
    std::uint32_t windows = 0;
    std::uint32_t pixmaps = 0;
    std::uint64_t pixmapBytes = 0;
    std::uint32_t all = 0;
};

struct Display {
    Display() : xcb(xcb_connect(nullptr, nullptr)) {}
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;
    ~Display() { xcb_disconnect(xcb); }

    xcb_connection_t* xcb;
};

std::string atomName(xcb_connection_t* xcb, xcb_atom_t atom) {
    const Owned<xcb_get_atom_name_reply_t> name(
        xcb_get_atom_name_reply(xcb, xcb_get_atom_name(xcb, atom), nullptr));
    return name ? std::string(xcb_get_atom_name_name(name.get()),
                              static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())))
                : std::string();
}

void addClient(xcb_connection_t* xcb, std::uint32_t client, Counts& counts) {
    const Owned<xcb_res_query_client_resources_reply_t> kinds(xcb_res_query_client_resources_reply(
        xcb, xcb_res_query_client_resources(xcb, client), nullptr));
    const Owned<xcb_res_query_client_pixmap_bytes_reply_t> bytes(
        xcb_res_query_client_pixmap_bytes_reply(xcb, xcb_res_query_client_pixmap_bytes(xcb, client),
                                                nullptr));
    if (!kinds || !bytes) {
        return;
    }
    counts.pixmapBytes += bytes->bytes;
    for (auto kind = xcb_res_query_client_resources_types_iterator(kinds.get()); kind.rem > 0;
         xcb_res_type_next(&kind)) {
        const std::string name = atomName(xcb, kind.data->resource_type);
        counts.all += kind.data->count;
        counts.windows += name == "WINDOW" ? kind.data->count : 0;
        counts.pixmaps += name == "PIXMAP" ? kind.data->count : 0;
    }
}

/// Whether the ids answer to the question whose process a client is.
bool isOf(const xcb_res_query_client_ids_reply_t& ids, std::uint32_t process) {
    const auto value = xcb_res_query_client_ids_ids_iterator(&ids);
    return value.rem > 0 && xcb_res_client_id_value_value_length(value.data) > 0
           && *xcb_res_client_id_value_value(value.data) == process;
}

int run(std::uint32_t process) {
    const Display display;
    const Owned<xcb_res_query_clients_reply_t> clients(
        xcb_res_query_clients_reply(display.xcb, xcb_res_query_clients(display.xcb), nullptr));
    if (!clients) {
        std::fputs("x-resources: the X server does not tell\n", stderr);
        return EXIT_FAILURE;
    }
    Counts counts;
    for (auto client = xcb_res_query_clients_clients_iterator(clients.get()); client.rem > 0;
         xcb_res_client_next(&client)) {
        const std::uint32_t base = client.data->resource_base;
        const xcb_res_client_id_spec_t asked{base, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        const Owned<xcb_res_query_client_ids_reply_t> ids(xcb_res_query_client_ids_reply(
            display.xcb, xcb_res_query_client_ids(display.xcb, 1, &asked), nullptr));
        if (ids && isOf(*ids, process)) {
            addClient(display.xcb, base, counts);
        }
    }
    std::printf("%u %u %llu %u\n", counts.windows, counts.pixmaps,
                static_cast<unsigned long long>(counts.pixmapBytes >> 10U), counts.all);
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    const auto process =
        argc == 2 ? static_cast<std::uint32_t>(std::strtoul(argv[1], nullptr, 10)) : 0;
    if (process == 0) {
        std::fputs("usage: x-resources PROCESS\n", stderr);
        return 2;
    }
    return run(process);
}
