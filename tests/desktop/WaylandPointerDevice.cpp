// SPDX-License-Identifier: GPL-3.0-or-later

// A pointer device plugged into a Wayland compositor for as long as this program runs, moved
// and pressed on command.
//
// A headless compositor has no input devices, so its seat offers clients no pointer at all.
// This program makes a virtual pointer, prints "ready" once the compositor has it, and then
// reads commands, a line each, answering each with "ok" once the compositor has it:
//
//   move X Y      the pointer to (X, Y) of a layout of WIDTHxHEIGHT, the program's arguments
//   press         the left button down
//   release       the left button up
//
// It keeps the device until its standard input closes.
//
// A wlroots compositor (sway) offers the wlroots virtual-pointer protocol, whose absolute
// motions are spread over the size given. KWin offers its own fake input protocol instead,
// whose absolute motions are in the compositor's own coordinates already (it takes them only
// with KWIN_WAYLAND_NO_PERMISSION_CHECKS set, as a test session has it). The protocols'
// interfaces are spelled out here rather than generated, as only a few requests are used and
// Debian ships no package with the wlroots protocol's description.

#include <wayland-client.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

namespace {

extern const wl_interface virtualPointerInterface;

const wl_interface* createTypes[] = {&wl_seat_interface, &virtualPointerInterface};

const wl_message managerRequests[] = {
    {"create_virtual_pointer", "?on", createTypes},
    {"destroy", "", nullptr},
};

const wl_interface managerInterface = {
    "zwlr_virtual_pointer_manager_v1", 1, 2, managerRequests, 0, nullptr,
};

const wl_interface* noTypes[] = {nullptr, nullptr, nullptr, nullptr, nullptr};

const wl_message pointerRequests[] = {
    {"motion", "uff", noTypes},   {"motion_absolute", "uuuuu", noTypes},
    {"button", "uuu", noTypes},   {"axis", "uuf", noTypes},
    {"frame", "", nullptr},       {"axis_source", "u", noTypes},
    {"axis_stop", "uu", noTypes}, {"axis_discrete", "uufi", noTypes},
    {"destroy", "", nullptr},
};

const wl_interface virtualPointerInterface = {
    "zwlr_virtual_pointer_v1", 1, 9, pointerRequests, 0, nullptr,
};

// KWin's org_kde_kwin_fake_input, up to the version that brings absolute motion.
const wl_message fakeInputRequests[] = {
    {"authenticate", "ss", noTypes}, {"pointer_motion", "ff", noTypes},
    {"button", "uu", noTypes},       {"axis", "uf", noTypes},
    {"touch_down", "2uff", noTypes}, {"touch_motion", "2uff", noTypes},
    {"touch_up", "2u", noTypes},     {"touch_cancel", "2", noTypes},
    {"touch_frame", "2", noTypes},   {"pointer_motion_absolute", "3ff", noTypes},
};

const wl_interface fakeInputInterface = {
    "org_kde_kwin_fake_input", 3, 10, fakeInputRequests, 0, nullptr,
};

// What the compositor offers: one of the two is bound.
struct Globals {
    wl_proxy* manager = nullptr;
    wl_proxy* fakeInput = nullptr;
};

void noteGlobal(void* data, wl_registry* registry, uint32_t name, const char* interface,
                uint32_t version) {
    auto* globals = static_cast<Globals*>(data);
    if (std::strcmp(interface, managerInterface.name) == 0)
        globals->manager =
            static_cast<wl_proxy*>(wl_registry_bind(registry, name, &managerInterface, 1));
    else if (std::strcmp(interface, fakeInputInterface.name) == 0 &&
             version >= static_cast<uint32_t>(fakeInputInterface.version))
        globals->fakeInput = static_cast<wl_proxy*>(
            wl_registry_bind(registry, name, &fakeInputInterface, fakeInputInterface.version));
}

void ignoreRemovedGlobal(void*, wl_registry*, uint32_t) {}

enum Request : uint32_t { MotionAbsolute = 1, Button = 2, Frame = 4, Destroy = 8 };
constexpr uint32_t kLeftButton = 0x110;

uint32_t milliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint32_t>(now.tv_sec * 1000 + now.tv_nsec / 1000000);
}

enum FakeInputRequest : uint32_t { Authenticate = 0, FakeButton = 2, FakeMotionAbsolute = 9 };

// Carries out one command line with KWin's fake input; false for one it does not know.
bool performFake(wl_proxy* fakeInput, const std::string& line) {
    unsigned x = 0;
    unsigned y = 0;
    if (std::sscanf(line.c_str(), "move %u %u", &x, &y) == 2)
        wl_proxy_marshal_flags(fakeInput, FakeMotionAbsolute, nullptr, 3, 0,
                               wl_fixed_from_int(static_cast<int>(x)),
                               wl_fixed_from_int(static_cast<int>(y)));
    else if (line == "press" || line == "release")
        wl_proxy_marshal_flags(fakeInput, FakeButton, nullptr, 3, 0, kLeftButton,
                               line == "press" ? 1u : 0u);
    else
        return false;
    return true;
}

// Carries out one command line; false for one it does not know.
bool perform(wl_proxy* pointer, const std::string& line, uint32_t width, uint32_t height) {
    unsigned x = 0;
    unsigned y = 0;
    if (std::sscanf(line.c_str(), "move %u %u", &x, &y) == 2)
        wl_proxy_marshal_flags(pointer, MotionAbsolute, nullptr, 1, 0, milliseconds(), x, y, width,
                               height);
    else if (line == "press" || line == "release")
        wl_proxy_marshal_flags(pointer, Button, nullptr, 1, 0, milliseconds(), kLeftButton,
                               line == "press" ? 1u : 0u);
    else
        return false;
    wl_proxy_marshal_flags(pointer, Frame, nullptr, 1, 0);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s OUTPUT-WIDTH OUTPUT-HEIGHT\n", argv[0]);
        return 2;
    }
    const auto width = static_cast<uint32_t>(std::strtoul(argv[1], nullptr, 10));
    const auto height = static_cast<uint32_t>(std::strtoul(argv[2], nullptr, 10));
    wl_display* display = wl_display_connect(nullptr);
    if (!display) {
        std::fprintf(stderr, "no Wayland display\n");
        return 1;
    }
    Globals globals;
    wl_registry* registry = wl_display_get_registry(display);
    static const wl_registry_listener listener{&noteGlobal, &ignoreRemovedGlobal};
    wl_registry_add_listener(registry, &listener, &globals);
    wl_display_roundtrip(display);
    wl_proxy* pointer = nullptr;
    if (globals.manager) {
        pointer = wl_proxy_marshal_flags(globals.manager, 0, &virtualPointerInterface, 1, 0,
                                         nullptr, nullptr);
    } else if (globals.fakeInput) {
        // KWin ignores a client's fake input until it has said who it is.
        wl_proxy_marshal_flags(globals.fakeInput, Authenticate, nullptr, 3, 0,
                               "wayland-pointer-device", "end-to-end tests");
    } else {
        std::fprintf(stderr, "the compositor offers no virtual pointers\n");
        return 1;
    }
    wl_display_roundtrip(display);
    std::printf("ready\n");
    std::fflush(stdout);

    char line[128];
    while (std::fgets(line, sizeof line, stdin)) {
        std::string command(line);
        while (!command.empty() && (command.back() == '\n' || command.back() == '\r'))
            command.pop_back();
        const bool done = pointer ? perform(pointer, command, width, height)
                                  : performFake(globals.fakeInput, command);
        wl_display_roundtrip(display);
        std::printf(done ? "ok\n" : "unknown command\n");
        std::fflush(stdout);
    }
    if (pointer)
        wl_proxy_marshal_flags(pointer, Destroy, nullptr, 1, WL_MARSHAL_FLAG_DESTROY);
    else
        wl_proxy_destroy(globals.fakeInput);
    wl_display_roundtrip(display);
    wl_display_disconnect(display);
    return 0;
}
