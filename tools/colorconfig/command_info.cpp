// The `info` subcommand.

#include "catalogue.h"
#include "commands.h"

#include <cstdio>

namespace colorconfig {

ExitCode runInfo(Context const& context)
{
    Catalogue const catalogue = readCatalogue(context.config);
    std::string const text = context.options.json ? catalogueJson(catalogue) : catalogueText(catalogue);
    std::fwrite(text.data(), 1, text.size(), stdout);
    return ExitCode::Success;
}

} // namespace colorconfig
