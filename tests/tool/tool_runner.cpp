#include "tool_runner.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#ifndef VERRA_COLORCONFIG_EXE
#error "VERRA_COLORCONFIG_EXE must name the program under test"
#endif

namespace verra_test {

namespace {

/// Closes a descriptor once, when the object goes.
class Fd {
public:
    Fd() = default;
    explicit Fd(int fd) : m_fd(fd) {}
    ~Fd() { reset(); }
    Fd(Fd const&) = delete;
    Fd& operator=(Fd const&) = delete;
    int get() const { return m_fd; }
    void reset(int fd = -1)
    {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
        m_fd = fd;
    }

private:
    int m_fd = -1;
};

bool makePipe(Fd& readEnd, Fd& writeEnd)
{
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0) {
        return false;
    }
    readEnd.reset(fds[0]);
    writeEnd.reset(fds[1]);
    return true;
}

/// Opens a pseudo-terminal pair; the child writes to `terminal`, the
/// parent reads from `controller`.
bool makeTerminal(Fd& controller, Fd& terminal)
{
    int const master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0) {
        return false;
    }
    controller.reset(master);
    if (::grantpt(master) != 0 || ::unlockpt(master) != 0) {
        return false;
    }
    char const* name = ::ptsname(master);
    if (name == nullptr) {
        return false;
    }
    int const slave = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (slave < 0) {
        return false;
    }
    terminal.reset(slave);
    return true;
}

std::vector<char*> pointers(std::vector<std::string>& words)
{
    std::vector<char*> list;
    for (std::string& word : words) {
        list.push_back(word.data());
    }
    list.push_back(nullptr);
    return list;
}

/// Reads both descriptors until each reports its end (or, for a terminal,
/// an error once the child has closed it).
void drain(int outFd, int errFd, std::string& out, std::string& err)
{
    pollfd fds[2] = {{outFd, POLLIN, 0}, {errFd, POLLIN, 0}};
    std::string* sinks[2] = {&out, &err};
    int open = 2;
    while (open > 0) {
        if (::poll(fds, 2, -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            return;
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || fds[i].revents == 0) {
                continue;
            }
            char buffer[4096];
            ssize_t const got = ::read(fds[i].fd, buffer, sizeof buffer);
            if (got > 0) {
                sinks[i]->append(buffer, static_cast<std::size_t>(got));
            } else if (got == 0 || errno != EINTR) {
                fds[i].fd = -1;
                --open;
            }
        }
    }
}

} // namespace

std::string toolPath() { return VERRA_COLORCONFIG_EXE; }

ToolResult runTool(std::vector<std::string> const& args, Environment const& env, bool stderrIsTerminal)
{
    std::vector<std::string> argv{toolPath()};
    argv.insert(argv.end(), args.begin(), args.end());
    return runProgram(std::move(argv), env, stderrIsTerminal);
}

ToolResult runProgram(std::vector<std::string> argv, Environment const& env, bool stderrIsTerminal)
{
    ToolResult result;
    Fd outRead;
    Fd outWrite;
    Fd errRead;
    Fd errWrite;
    bool const ready = makePipe(outRead, outWrite) &&
                       (stderrIsTerminal ? makeTerminal(errRead, errWrite) : makePipe(errRead, errWrite));
    if (!ready) {
        ADD_FAILURE() << "cannot create the pipes: " << std::strerror(errno);
        return result;
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, outWrite.get(), 1);
    posix_spawn_file_actions_adddup2(&actions, errWrite.get(), 2);

    std::vector<std::string> envp = env;
    std::vector<char*> argPointers = pointers(argv);
    std::vector<char*> envPointers = pointers(envp);

    pid_t child = -1;
    int const spawned =
        ::posix_spawn(&child, argv[0].c_str(), &actions, nullptr, argPointers.data(), envPointers.data());
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) {
        ADD_FAILURE() << "cannot start " << argv[0] << ": " << std::strerror(spawned);
        return result;
    }
    outWrite.reset();
    errWrite.reset();
    drain(outRead.get(), errRead.get(), result.out, result.err);

    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status)) {
        result.exitCode = WEXITSTATUS(status);
    } else if (WIFSIGNALED(status)) {
        result.signal = WTERMSIG(status);
    }
    return result;
}

} // namespace verra_test
