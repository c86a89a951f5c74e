#pragma once
// The program's exit status.

namespace colorconfig {

/// What the program tells its caller when it ends.
enum class ExitCode : int {
    /// Everything asked for was done.
    Success = 0,
    /// A conversion or lookup failed: an unknown colour space, a file that
    /// cannot be read or written, a conversion the configuration refuses.
    Failure = 1,
    /// The command line was wrong: an unknown subcommand or option, a
    /// missing or malformed argument.
    Usage = 2,
};

} // namespace colorconfig
