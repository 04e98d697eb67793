// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Desktop/GLibReference.h"

#include <atspi/atspi.h>

#include "EndToEnd/AccessibleTree.h"
#include "X11/WaitFor.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace sallowmere {

namespace {

/// Milliseconds, for a program that is busy or has to share the machine.
constexpr int longestAnswer = 30'000;

// What is gone by now answers with an error, and is as good as without a name or a place.
std::string taken(gchar* text) {
    const std::unique_ptr<gchar, decltype(&g_free)> owner(text, &g_free);
    return text != nullptr ? text : "";
}

std::shared_ptr<AtspiAccessible> owned(AtspiAccessible* object) {
    return object == nullptr ? nullptr
                             : std::shared_ptr<AtspiAccessible>(
                                 object, [](AtspiAccessible* last) { g_object_unref(last); });
}

std::string nameOf(AtspiAccessible* object) {
    return taken(atspi_accessible_get_name(object, nullptr));
}

std::string roleOf(AtspiAccessible* object) {
    const std::string name = taken(atspi_accessible_get_role_name(object, nullptr));
    // Newer versions of the library call it so (2.56).
    return name == "button" ? "push button" : name;
}

Box boxOf(AtspiAccessible* object) {
    const Reference<AtspiComponent> component(atspi_accessible_get_component_iface(object));
    const std::unique_ptr<AtspiRect, decltype(&g_free)> place(
        component ? atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, nullptr)
                  : nullptr,
        &g_free);
    return place ? Box{place->x, place->y, place->width, place->height} : Box{};
}

std::vector<std::string> actionsOf(AtspiAccessible* object) {
    const Reference<AtspiAction> action(atspi_accessible_get_action_iface(object));
    std::vector<std::string> names;
    const int count = action ? atspi_action_get_n_actions(action.get(), nullptr) : 0;
    names.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int number = 0; number < count; ++number) {
        names.push_back(taken(atspi_action_get_action_name(action.get(), number, nullptr)));
    }
    return names;
}

void readStates(AtspiAccessible* object, Control& control) {
    const Reference<AtspiStateSet> states(atspi_accessible_get_state_set(object));
    const auto has = [&](AtspiStateType state) {
        return states && atspi_state_set_contains(states.get(), state) != FALSE;
    };
    control.isShown = has(ATSPI_STATE_SHOWING);
    control.isFocused = has(ATSPI_STATE_FOCUSED);
    control.isFocusable = has(ATSPI_STATE_FOCUSABLE);
}

Control read(const std::shared_ptr<AtspiAccessible>& object) {
    Control control;
    control.object = object;
    readStates(object.get(), control);
    if (control.isShown) {
        control.name = nameOf(object.get());
        control.role = roleOf(object.get());
        control.description = taken(atspi_accessible_get_description(object.get(), nullptr));
        control.box = boxOf(object.get());
        control.actions = actionsOf(object.get());
    }
    return control;
}

} // namespace

AccessibleTree::AccessibleTree(pid_t program) : program_(program) {
    atspi_init();
    atspi_set_timeout(longestAnswer, longestAnswer);
}

AccessibleTree::Object AccessibleTree::application() const {
    const Object desktop = owned(atspi_get_desktop(0));
    const int count = atspi_accessible_get_child_count(desktop.get(), nullptr);
    for (int index = 0; index < count; ++index) {
        Object application =
            owned(atspi_accessible_get_child_at_index(desktop.get(), index, nullptr));
        if (application
            && atspi_accessible_get_process_id(application.get(), nullptr)
                   == static_cast<guint>(program_)) {
            return application;
        }
    }
    return nullptr;
}

bool AccessibleTree::visit(const Object& object, const Visitor& visitor) {
    if (!visitor(object)) {
        return false;
    }
    const int count = atspi_accessible_get_child_count(object.get(), nullptr);
    for (int index = 0; index < count; ++index) {
        const Object child =
            owned(atspi_accessible_get_child_at_index(object.get(), index, nullptr));
        if (child && !visit(child, visitor)) {
            return false;
        }
    }
    return true;
}

std::vector<Control> AccessibleTree::shown() const {
    std::vector<Control> controls;
    if (const Object root = application()) {
        visit(root, [&](const Object& object) {
            Control control = read(object);
            if (control.isShown) {
                controls.push_back(std::move(control));
            }
            return true;
        });
    }
    return controls;
}

bool AccessibleTree::findShown(const std::string& name, const std::string& role,
                               Control* found) const {
    const Object root = application();
    return root && !visit(root, [&](const Object& object) {
               if (nameOf(object.get()) != name
                   || (!role.empty() && roleOf(object.get()) != role)) {
                   return true;
               }
               const Control control = read(object);
               if (control.isShown && found != nullptr) {
                   *found = control;
               }
               return !control.isShown;
           });
}

Control AccessibleTree::find(const std::string& name, const std::string& role) const {
    Control found;
    waitFor(role + " \"" + name + '"', [&] { return findShown(name, role, &found); });
    return found;
}

bool AccessibleTree::isShown(const std::string& name, const std::string& role) const {
    return findShown(name, role, nullptr);
}

bool AccessibleTree::isDescribed(const std::string& description) const {
    const std::vector<Control> controls = shown();
    return std::any_of(controls.begin(), controls.end(),
                       [&](const Control& control) { return control.description == description; });
}

void AccessibleTree::waitUntilGone(const std::string& name, const std::string& role) const {
    waitFor("the end of \"" + name + '"', [&] { return !isShown(name, role); });
}

std::string AccessibleTree::text() const {
    std::ostringstream lines;
    for (const Control& control : shown()) {
        lines << control.role << " \"" << control.name << "\" " << control.box
              << (control.isFocused ? " focused" : "") << '\n';
    }
    return lines.str();
}

std::string AccessibleTree::text(const Control& field) {
    const Reference<AtspiText> text(atspi_accessible_get_text_iface(field.object.get()));
    return text ? taken(atspi_text_get_text(text.get(), 0, -1, nullptr)) : "";
}

bool AccessibleTree::isFocused(const Control& control) {
    return read(control.object).isFocused;
}

void AccessibleTree::act(const Control& control) {
    const Reference<AtspiAction> action(atspi_accessible_get_action_iface(control.object.get()));
    if (!action || atspi_action_do_action(action.get(), 0, nullptr) == FALSE) {
        throw std::runtime_error("\"" + control.name + "\" does nothing");
    }
}

} // namespace sallowmere
