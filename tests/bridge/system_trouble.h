#pragma once
// Calls of the system that the transport makes, each of which a test can have fail. The program's
// imports of these functions lead here first.

namespace norvane::test {

struct System_Trouble {
    bool no_message = false;
    bool no_atom = false;
    bool no_mapping = false;
    bool no_view = false;
};

[[nodiscard]] System_Trouble& Trouble();

}  // namespace norvane::test
