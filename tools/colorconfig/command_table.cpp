#include "command.h"
#include "commands.h"

namespace colorconfig {

std::vector<OptionSpec> const& commonOptions()
{
    static std::vector<OptionSpec> const options{
        {"--config", nullptr, "PATH", false,
         "The OCIO config file, or the name of an environment variable holding its path (NAME, $NAME or "
         "%NAME%). Without it: the path written in $XDG_CONFIG_HOME/verra/ocio.txt (or "
         "~/.config/verra/ocio.txt), then $OCIO, then the built-in colour spaces."},
        {"--verbose", "-v", nullptr, false, "Also print the config report on standard error."},
        {"--help", "-h", nullptr, false, "Print this help and exit."},
    };
    return options;
}

std::vector<OptionSpec> allOptions(Command const& command)
{
    std::vector<OptionSpec> options = command.options;
    options.insert(options.end(), commonOptions().begin(), commonOptions().end());
    return options;
}

std::vector<Command> const& commands()
{
    static std::vector<Command> const table{
        {"info",
         "Show which config is used and what it offers",
         {"[--json]"},
         "Loads the config, prints the report of how it was chosen, then the catalogue: colour spaces, "
         "default display and view, each display with its views, looks and roles.",
         {{"--json", nullptr, nullptr, false, "Print the same content as a JSON object, for scripts."}},
         0,
         0,
         true,
         &runInfo},
        {"find",
         "Print the listed form of colour-space names",
         {"NAME..."},
         "Looks each NAME up without regard to letter case or blanks around it, and prints the name as the "
         "colour-space list holds it. With several names, each line reads 'NAME: LISTED'. A name that is not "
         "found is reported on standard error with the closest listed names.",
         {},
         1,
         kUnlimited,
         false,
         &runFind},
        {"guess",
         "Guess the colour space of files from their names",
         {"[--no-fallback] FILE..."},
         "Tells the colour space of each FILE from its name alone (the file is not opened): the file rules of "
         "the OCIO config named by $OCIO, then a colour-space name found in the text, then the extension "
         "(png, jpg, tga and bmp are sRGB, anything else linear). With several files, each line reads "
         "'FILE: SPACE'.",
         {{"--no-fallback", nullptr, nullptr, false,
           "Do not guess from the extension; a file with no other answer is a failure."}},
         1,
         kUnlimited,
         false,
         &runGuess},
        {"color",
         "Convert one colour between two colour spaces",
         {"--from NAME --to NAME R G B [ALPHA]"},
         "Converts the colour R G B (and ALPHA, which is printed unchanged) and prints the result with 17 "
         "significant digits, enough to read back the exact double. Negative values are accepted as they "
         "are (-0.5, -inf), as are inf and nan. With --verbose, standard error also tells the route: "
         "'built-in curve' (the module's own sRGB and Rec709 curves, used between linear and those two "
         "whatever the config says), 'processor' (the config's), or 'same'.",
         {{"--from", nullptr, "NAME", true, "The colour space of the given colour."},
          {"--to", nullptr, "NAME", true, "The colour space to convert into."}},
         3,
         4,
         false,
         &runColor},
        {"convert",
         "Convert images between two colour spaces",
         {"--from NAME --to NAME IN OUT", "--from NAME --to NAME --out-dir DIR IN..."},
         "Reads each image, converts its colour channels and writes the result in the format that the "
         "output's extension names. Everything else is kept as the format allows: the data type, every "
         "subimage and MIP level, windows, pixel aspect, tiling, compression and attributes, and every "
         "channel other than R, G and B (alpha, depth, others) untouched; 'oiio:ColorSpace' names the new "
         "space. Grey comes out as RGB. 8-bit pixels written to an 8-bit format go through the module's RGBA8 "
         "transform; every other case is computed in float. A format that cannot hold every subimage or MIP "
         "level is refused. Each output is written beside its target and renamed into place only once "
         "complete, so a failed or interrupted run leaves existing files as they were, and no output ever "
         "replaces an input. With --out-dir, each output takes its input's file name, and a progress line is "
         "shown while standard error is a terminal.",
         {{"--from", nullptr, "NAME", true, "The colour space of the input pixels."},
          {"--to", nullptr, "NAME", true, "The colour space to convert into."},
          {"--out-dir", nullptr, "DIR", false, "Write every output into this existing folder."}},
         1,
         kUnlimited,
         false,
         &runConvert},
        {"preview",
         "Turn an image into an opaque 8-bit preview",
         {"[--from NAME] [--to NAME] IN OUT"},
         "Reads the first image of IN as float pixels in the colour space --from (linear when not given), "
         "converts its colour channels (grey is spread over RGB, alpha is dropped) into the colour space --to "
         "(sRGB when not given), and writes an opaque 8-bit image to OUT in the format that its extension "
         "names (RGBA, or RGB for a format without alpha). Float-only formats (exr, hdr) are refused. OUT is "
         "written beside its target and renamed into place once complete, and never replaces IN.",
         {{"--from", nullptr, "NAME", false, "The colour space of the input pixels (linear when not given)."},
          {"--to", nullptr, "NAME", false, "The colour space of the preview (sRGB when not given)."}},
         2,
         2,
         false,
         &runPreview},
    };
    return table;
}

Command const* findCommand(std::string_view name)
{
    for (Command const& command : commands()) {
        if (name == command.name) {
            return &command;
        }
    }
    return nullptr;
}

} // namespace colorconfig
