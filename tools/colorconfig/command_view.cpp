// The `view` subcommand.

#include "color_names.h"
#include "commands.h"
#include "console.h"
#include "convert_level.h"
#include "display_view.h"
#include "image_file.h"
#include "safe_output.h"

#include <filesystem>

namespace colorconfig {

ExitCode runView(Context const& context)
{
    Options const& options = context.options;
    std::string const& input = options.positionals[0];
    std::string const& output = options.positionals[1];
    std::error_code ignored;
    if (std::filesystem::equivalent(input, output, ignored)) {
        console::error("'{}' would replace its own input; choose another output", output);
        return ExitCode::Failure;
    }
    orv::String const from = resolveColorSpace(options.from, context.config.ocio);
    if (from.isEmpty()) {
        return ExitCode::Failure;
    }
    DisplayView transform;
    std::string message;
    DisplayViewRequest const request{std::string(from.view()), options.display, options.view, options.looks};
    if (!chooseDisplayView(context.config.ocio, request, transform, message)) {
        console::error("{}", message);
        return ExitCode::Failure;
    }
    ImageFile file;
    if (!readImageFile(input, Precision::Float, file, message)) {
        console::error("cannot read '{}': {}", input, message);
        return ExitCode::Failure;
    }
    auto const apply = [&transform](OIIO::ImageBuf& pixels, std::string& reason) {
        return applyDisplayView(transform, pixels, reason);
    };
    for (ImageLevel& level : file.levels) {
        if (!transformColorChannels(level, apply, message)) {
            console::error("'{}' was not converted: {}", input, message);
            return ExitCode::Failure;
        }
        level.fileSpec.attribute("oiio:ColorSpace", transform.result);
    }
    if (!writeImageFile(output, file, message)) {
        console::error("cannot write '{}': {}", output, message);
        return ExitCode::Failure;
    }
    console::out(input + " -> " + output + " (" + transform.display + " / " + transform.view +
                 (transform.looks.empty() ? "" : ", looks " + transform.looks) + ")");
    return ExitCode::Success;
}

} // namespace colorconfig
