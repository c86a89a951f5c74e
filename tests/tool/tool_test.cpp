#include "tool_test.h"

#include <cstdlib>

namespace verra_test {

namespace {

/// Variables passed through to the child when this process has them: the
/// sanitizers' settings and the temporary folder.
constexpr char const* kPassThrough[] = {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TMPDIR",
                                        "LD_LIBRARY_PATH"};

} // namespace

ToolTest::ToolTest()
{
    m_configHome = m_dir.mkdir("config-home");
    m_ocio.unset();
    m_xdg.set(m_configHome);
    m_childEnv = {{"PATH", "/usr/bin:/bin"}, {"HOME", m_dir.mkdir("home")}, {"XDG_CONFIG_HOME", m_configHome}};
    for (char const* name : kPassThrough) {
        if (char const* value = std::getenv(name)) {
            m_childEnv.emplace_back(name, value);
        }
    }
}

namespace {

Environment childEnvironment(std::vector<std::pair<std::string, std::string>> const& variables)
{
    Environment env;
    for (auto const& [name, value] : variables) {
        env.push_back(name + "=" + value);
    }
    return env;
}

} // namespace

ToolResult ToolTest::runScript(std::string const& script, std::vector<std::string> const& args) const
{
    std::vector<std::string> argv{"/bin/sh", "-c", script, "sh", toolPath()};
    argv.insert(argv.end(), args.begin(), args.end());
    return runProgram(argv, childEnvironment(m_childEnv));
}

ToolResult ToolTest::run(std::vector<std::string> const& args, bool stderrIsTerminal) const
{
    Environment const env = childEnvironment(m_childEnv);
    ToolResult result = runTool(args, env, stderrIsTerminal);
    EXPECT_EQ(result.signal, 0) << "the program was killed by signal " << result.signal << "\n" << result.err;
    return result;
}

void ToolTest::setChildEnv(std::string const& name, std::string const& value)
{
    for (auto& [key, existing] : m_childEnv) {
        if (key == name) {
            existing = value;
            return;
        }
    }
    m_childEnv.emplace_back(name, value);
}

std::string ToolTest::writeConfig(OcioConfigText const& config, std::string const& fileName) const
{
    return m_dir.write(fileName, config.str());
}

OcioConfigText ToolTest::sampleConfig()
{
    OcioConfigText config;
    config.colorSpaces = {"lin", "raw", "srgb_tex"};
    config.srgbSpaces = {"srgb_tex"};
    config.displays = {{"Monitor", {"Standard", "Raw"}}, {"Projector", {"Film"}}};
    config.looks = {"Warm"};
    config.roles = {{"scene_linear", "lin"}};
    return config;
}

std::vector<std::string> splitLines(std::string const& text)
{
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) {
            end = text.size();
        }
        std::string line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

bool contains(std::string const& text, std::string const& part) { return text.find(part) != std::string::npos; }

} // namespace verra_test
