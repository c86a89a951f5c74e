#include <verra_sdk/kit/catalogue.h>

#include <verra_sdk/colorconfig.h>

#include <algorithm>

namespace orv::verra_sdk::kit {

namespace {

std::vector<std::string> toStrings(StringVector const& list)
{
    std::vector<std::string> strings;
    for (String const& item : list) {
        strings.emplace_back(item.view());
    }
    return strings;
}

} // namespace

Catalogue readCatalogue(ContextVariables const& context)
{
    Catalogue catalogue;
    catalogue.status = configStatus(context);
    catalogue.colorSpaces = toStrings(ColorConfig::colorSpaces());
    catalogue.inactive = inactiveColorSpaces();
    catalogue.hidden = hiddenColorSpaces();
    catalogue.defaultDisplay = std::string(defaultDisplay().view());
    catalogue.defaultView = std::string(defaultView().view());
    StringVector const names = displays();
    ds::HashMap<String, StringVector> const viewsOf = views();
    for (String const& display : names) {
        StringVector const* list = viewsOf.find(display);
        catalogue.displays.push_back(
            {std::string(display.view()), list != nullptr ? toStrings(*list) : std::vector<std::string>()});
    }
    catalogue.looks = toStrings(looks());
    std::vector<RoleSpace> const spaces = rolesWithSpaces();
    for (std::string const& role : toStrings(roles())) {
        auto const found =
            std::find_if(spaces.begin(), spaces.end(), [&role](RoleSpace const& entry) { return entry.role == role; });
        catalogue.roles.push_back({role, found != spaces.end() ? found->colorSpace : std::string()});
    }
    return catalogue;
}

} // namespace orv::verra_sdk::kit
