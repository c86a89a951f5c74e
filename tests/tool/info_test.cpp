// `info`: the report and the catalogue, as text for people and as JSON
// holding exactly what the module answers.

#include "json_value.h"
#include "tool_test.h"

#include <verra_sdk/colorconfig.h>

namespace verra_test {
namespace {

namespace sdk = orv::verra_sdk;

using ToolInfo = ToolTest;

std::vector<std::string> strings(orv::StringVector const& list)
{
    std::vector<std::string> result;
    for (orv::String const& item : list) {
        result.emplace_back(item.view());
    }
    return result;
}

/// The lines of `text` from the one after `heading` to the next empty line.
std::vector<std::string> section(std::string const& text, std::string const& heading)
{
    std::vector<std::string> const lines = splitLines(text);
    std::vector<std::string> body;
    bool inside = false;
    for (std::string const& line : lines) {
        if (inside && line.empty()) {
            break;
        }
        if (inside) {
            body.push_back(line);
        }
        inside = inside || line == heading;
    }
    return body;
}

/// The cells of `lines`: text split at runs of two or more spaces, at ", "
/// and at a comma that ends a line.
std::vector<std::string> cells(std::vector<std::string> const& lines)
{
    std::vector<std::string> words;
    for (std::string const& line : lines) {
        std::size_t i = 0;
        while (i < line.size()) {
            while (i < line.size() && (line[i] == ' ' || line[i] == ',')) {
                ++i;
            }
            std::size_t end = i;
            while (end < line.size() && !(line[end] == ' ' && (end + 1 >= line.size() || line[end + 1] == ' ')) &&
                   !(line[end] == ',' && end + 1 < line.size() && line[end + 1] == ' ')) {
                ++end;
            }
            std::string word = line.substr(i, end - i);
            if (!word.empty() && word.back() == ',' && end == line.size()) {
                word.pop_back();
            }
            if (!word.empty()) {
                words.push_back(word);
            }
            i = end;
        }
    }
    return words;
}

JsonValue parsedJson(ToolResult const& result)
{
    std::string error;
    std::optional<JsonValue> value = parseJson(result.out, &error);
    EXPECT_TRUE(value) << error << "\n" << result.out;
    return value ? *value : JsonValue();
}

TEST_F(ToolInfo, BuiltInSpacesWithoutAnyConfig)
{
    ToolResult const result = run({"info"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(section(result.out, "Config"),
              (std::vector<std::string>{"  No OCIO config found, will use built-in color spaces.",
                                        "  In use: the built-in colour spaces only (linear, sRGB, Rec709)."}));
    EXPECT_EQ(section(result.out, "Colour spaces (3)"), std::vector<std::string>{"  linear  sRGB    Rec709"});
    EXPECT_TRUE(contains(result.out, "\nDefault display  (none)\nDefault view     (none)\n"));
    EXPECT_EQ(section(result.out, "Displays and their views (0)"), std::vector<std::string>{"  (none)"});
    EXPECT_EQ(section(result.out, "Looks (0)"), std::vector<std::string>{"  (none)"});
    EXPECT_EQ(section(result.out, "Roles (0)"), std::vector<std::string>{"  (none)"});
}

TEST_F(ToolInfo, BuiltInSpacesAsJson)
{
    ToolResult const result = run({"info", "--json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    JsonValue const json = parsedJson(result);
    ASSERT_EQ(json.kind, JsonValue::Kind::Object);
    std::vector<std::string> keys;
    for (auto const& [key, unused] : json.members) {
        keys.push_back(key);
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"report", "configFile", "errors", "colorSpaces", "defaultDisplay",
                                              "defaultView", "displays", "looks", "roles"}));
    EXPECT_EQ(json.member("report")->text, "No OCIO config found, will use built-in color spaces.");
    EXPECT_EQ(json.member("configFile")->text, "");
    EXPECT_TRUE(json.member("errors")->items.empty());
    EXPECT_EQ(json.member("colorSpaces")->strings(), (std::vector<std::string>{"linear", "sRGB", "Rec709"}));
    EXPECT_EQ(json.member("defaultDisplay")->text, "");
    EXPECT_EQ(json.member("defaultView")->text, "");
    EXPECT_TRUE(json.member("displays")->items.empty());
    EXPECT_TRUE(json.member("looks")->items.empty());
    EXPECT_TRUE(json.member("roles")->items.empty());
}

TEST_F(ToolInfo, TextShowsTestConfigCatalogue)
{
    std::string const config = writeConfig(sampleConfig());
    ToolResult const result = run({"info", "--config", config});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(cells(section(result.out, "Config")),
              (std::vector<std::string>{"Using specified OCIO config: " + config}))
        << result.out;
    EXPECT_EQ(cells(section(result.out, "Colour spaces (6)")),
              (std::vector<std::string>{"linear", "sRGB", "Rec709", "lin", "raw", "srgb_tex"}));
    EXPECT_TRUE(contains(result.out, "\nDefault display  Monitor\nDefault view     Standard\n")) << result.out;
    EXPECT_EQ(section(result.out, "Displays and their views (2)"),
              (std::vector<std::string>{"  Monitor    Standard, Raw", "  Projector  Film"}));
    EXPECT_EQ(section(result.out, "Looks (1)"), std::vector<std::string>{"  Warm"});

    sdk::ColorConfig::loadOcioConfig(orv::String(config));
    std::vector<std::string> const roles = strings(sdk::roles());
    EXPECT_EQ(roles.size(), 2u);
    EXPECT_EQ(cells(section(result.out, "Roles (2)")), roles);
}

TEST_F(ToolInfo, JsonHoldsWhatTheModuleAnswers)
{
    std::string const config = writeConfig(sampleConfig());
    ToolResult const result = run({"info", "--config", config, "--json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    JsonValue const json = parsedJson(result);

    orv::String const report = sdk::ColorConfig::loadOcioConfig(orv::String(config));
    EXPECT_EQ(json.member("report")->text, std::string(report.view()));
    EXPECT_EQ(json.member("colorSpaces")->strings(), strings(sdk::ColorConfig::colorSpaces()));
    EXPECT_EQ(json.member("defaultDisplay")->text, std::string(sdk::defaultDisplay().view()));
    EXPECT_EQ(json.member("defaultView")->text, std::string(sdk::defaultView().view()));
    EXPECT_EQ(json.member("looks")->strings(), strings(sdk::looks()));
    EXPECT_EQ(json.member("roles")->strings(), strings(sdk::roles()));

    std::vector<std::string> const displays = strings(sdk::displays());
    auto const views = sdk::views();
    JsonValue const& listed = *json.member("displays");
    ASSERT_EQ(listed.items.size(), displays.size());
    for (std::size_t i = 0; i < displays.size(); ++i) {
        EXPECT_EQ(listed.items[i].member("name")->text, displays[i]);
        orv::StringVector const* expected = views.find(orv::String(displays[i]));
        ASSERT_NE(expected, nullptr) << displays[i];
        EXPECT_EQ(listed.items[i].member("views")->strings(), strings(*expected));
    }
    EXPECT_EQ(displays, (std::vector<std::string>{"Monitor", "Projector"}));
}

TEST_F(ToolInfo, JsonEscapesNamesAndTextShowsThemAsTheyAre)
{
    OcioConfigText config;
    std::vector<std::string> const names{"lin", "say \"hi\"", "back\\slash", "tab\there", "caf\xC3\xA9"};
    config.colorSpaces = names;
    std::string const path = writeConfig(config);

    ToolResult const json = run({"info", "--config", path, "--json"});
    EXPECT_EQ(json.exitCode, 0);
    std::vector<std::string> expected{"linear", "sRGB", "Rec709"};
    expected.insert(expected.end(), names.begin(), names.end());
    EXPECT_EQ(parsedJson(json).member("colorSpaces")->strings(), expected);
    EXPECT_TRUE(contains(json.out, R"("say \"hi\"")"));
    EXPECT_TRUE(contains(json.out, R"("back\\slash")"));
    EXPECT_TRUE(contains(json.out, R"("tab\there")"));

    ToolResult const text = run({"info", "--config", path});
    EXPECT_TRUE(contains(text.out, "say \"hi\"")) << text.out;
    EXPECT_TRUE(contains(text.out, "back\\slash"));
    EXPECT_TRUE(contains(text.out, "caf\xC3\xA9"));
}

TEST_F(ToolInfo, JsonStaysValidForNamesThatAreNotUtf8)
{
    OcioConfigText config;
    config.colorSpaces = {"lin", "r\xE9w"};
    std::string const path = writeConfig(config);
    ToolResult const result = run({"info", "--config", path, "--json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(parsedJson(result).member("colorSpaces")->strings(),
              (std::vector<std::string>{"linear", "sRGB", "Rec709", "lin", "r\xEF\xBF\xBDw"}));
}

TEST_F(ToolInfo, TextFitsIn80ColumnsWithManyAndLongNames)
{
    OcioConfigText config;
    config.colorSpaces.clear();
    for (int i = 0; i < 40; ++i) {
        config.colorSpaces.push_back("space number " + std::to_string(i) + std::string(static_cast<std::size_t>(i % 13), 'x'));
    }
    std::string const huge(90, 'h');
    config.colorSpaces.push_back(huge);
    std::vector<std::string> manyViews;
    for (int i = 0; i < 12; ++i) {
        manyViews.push_back("View with a long name " + std::to_string(i));
    }
    config.displays = {{"A display whose name is longer than the column", manyViews}, {"Short", {"One"}}};
    std::string const path = writeConfig(config);

    ToolResult const result = run({"info", "--config", path});
    EXPECT_EQ(result.exitCode, 0);
    for (std::string const& line : splitLines(result.out)) {
        if (line == "  " + huge) {
            continue;
        }
        EXPECT_LE(line.size(), 79u) << line;
    }
    std::vector<std::string> const spaces = cells(section(result.out, "Colour spaces (44)"));
    std::vector<std::string> expected{"linear", "sRGB", "Rec709"};
    expected.insert(expected.end(), config.colorSpaces.begin(), config.colorSpaces.end());
    EXPECT_EQ(spaces, expected);
    std::vector<std::string> const displays = cells(section(result.out, "Displays and their views (2)"));
    std::vector<std::string> expectedDisplays{"A display whose name is longer than the column"};
    expectedDisplays.insert(expectedDisplays.end(), manyViews.begin(), manyViews.end());
    expectedDisplays.insert(expectedDisplays.end(), {"Short", "One"});
    EXPECT_EQ(displays, expectedDisplays);
}

TEST_F(ToolInfo, VerboseChangesNothingForInfo)
{
    ToolResult const plain = run({"info"});
    ToolResult const verbose = run({"info", "--verbose"});
    EXPECT_EQ(verbose.exitCode, 0);
    EXPECT_EQ(verbose.out, plain.out);
    EXPECT_EQ(verbose.err, "");
}

} // namespace
} // namespace verra_test
