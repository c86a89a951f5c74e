#pragma once
// The entry points of the subcommands, one source file each.

#include "command.h"

namespace colorconfig {

/// `info`: the report and the catalogue, as text or JSON.
ExitCode runInfo(Context const& context);
/// `find`: the listed form of colour-space names.
ExitCode runFind(Context const& context);
/// `guess`: the colour space of files from their names.
ExitCode runGuess(Context const& context);
/// `color`: one colour converted between two colour spaces.
ExitCode runColor(Context const& context);
/// `convert`: images converted between two colour spaces.
ExitCode runConvert(Context const& context);
/// `preview`: a linear float image as an opaque 8-bit PNG.
ExitCode runPreview(Context const& context);

/// `view`: images through a display and view transform of the config.
ExitCode runView(Context const& context);
/// `check`: what works and what is broken in the config.
ExitCode runCheck(Context const& context);

} // namespace colorconfig
