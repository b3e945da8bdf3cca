// The script runner: `osascript`, a program that reads a script on its standard input and runs it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavrel::system {

// The path of the runner: /usr/bin/osascript on macOS, elsewhere the first executable file of that
// name in the folders of $PATH; none when there is none. An element of $PATH that is no absolute path is
// passed over, the empty one too, which shells take for the current folder: the host may stand in any
// folder. In a program that runs with other rights than its caller's, $PATH is not followed. May throw
// std::bad_alloc.
[[nodiscard]] std::optional<std::string> FindScriptRunner();

// Runs a script and waits until the runner has ended. False when there is no runner, when it cannot
// be started, is killed, or exits with anything but 0.
//
// The runner gets the script as its standard input, the host's standard error for both of its
// outputs and the host's environment; no other descriptor, no blocked or ignored signal. Nothing
// that the host does with SIGCHLD changes the result, and a runner that leaves its input unread
// raises no signal in the host. On Linux the runner is killed when the host ends before it, however
// that ends; what the runner itself has started is its own affair.
[[nodiscard]] bool RunScript(std::string_view script) noexcept;

}  // namespace tavrel::system
