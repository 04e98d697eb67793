// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <glib-object.h>

namespace sallowmere {

struct Unreference {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GVariant* value) const { g_variant_unref(value); }
};

/// One reference to an object of GLib's.
template <typename Object>
using Reference = std::unique_ptr<Object, Unreference>;

} // namespace sallowmere
