// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// How many members an aggregate has, counted at compile time, so that a test over a type's
// members fails when a member is added and the test is not told of it.

#include <cstddef>

namespace corkwheel::test {

// Converts to any member type, to count an aggregate's members by how many it takes.
struct AnyMember {
    template <typename Member> operator Member() const;
};

template <typename Object, typename... Taken> constexpr std::size_t memberCount() {
    if constexpr (requires { Object{Taken{}..., AnyMember{}}; })
        return memberCount<Object, Taken..., AnyMember>();
    else
        return sizeof...(Taken);
}

} // namespace corkwheel::test
