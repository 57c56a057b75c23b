#include "cli/ProgramRun.h"

#include "cli/Terminal.h"
#include "support/TemporaryDirectory.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrel::test {

namespace {

// Called between fork() and exec(): system calls only.
void redirect(int descriptor, const char* path, int flags)
{
    const int file = open(path, flags, 0600);
    if (file < 0 || dup2(file, descriptor) < 0) {
        _exit(125);
    }
    close(file);
}

void redirectOutput(Output output, const char* capturedIn, int terminal)
{
    switch (output) {
    case Output::captured:
        redirect(STDOUT_FILENO, capturedIn, O_WRONLY | O_CREAT | O_TRUNC);
        break;
    case Output::terminal:
        if (dup2(terminal, STDOUT_FILENO) < 0) {
            _exit(125);
        }
        break;
    case Output::fullDisk:
        redirect(STDOUT_FILENO, "/dev/full", O_WRONLY);
        break;
    case Output::closed:
        close(STDOUT_FILENO);
        break;
    case Output::closedPipe: {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0 || dup2(ends[1], STDOUT_FILENO) < 0) {
            _exit(125);
        }
        close(ends[0]);
        close(ends[1]);
        break;
    }
    }
}

/// "NAME=VALUE" for those given, for what keeps the sanitizers out of the way, and for each of this process; of two
/// with one name the first counts.
std::vector<std::string> environmentWith(std::vector<std::string> given)
{
    const char* const options = std::getenv("ASAN_OPTIONS");
    // A crash is to end the program as it does without a sanitizer.
    given.push_back("ASAN_OPTIONS=" + std::string{options == nullptr ? "" : options} +
                    ":handle_segv=0:handle_sigbus=0:handle_abort=0:handle_sigfpe=0:handle_sigill=0:handle_sigtrap=0");
    for (char** variable = environ; *variable != nullptr; ++variable) {
        given.emplace_back(*variable);
    }
    return given;
}

std::vector<char*> pointersTo(std::vector<std::string>& words)
{
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// Waits for the end of the child and reads what it writes to the terminal meanwhile.
int waitFor(pid_t child, const std::optional<Terminal>& terminal, std::string& out)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes{1};
    const int handle = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
    std::array<pollfd, 2> awaited{pollfd{handle, POLLIN, 0}, pollfd{terminal ? terminal->readersEnd() : -1, POLLIN, 0}};
    while (awaited[0].revents == 0) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (poll(awaited.data(), awaited.size(), static_cast<int>(std::max(left.count(), std::int64_t{0}))) == 0) {
            kill(child, SIGKILL);
        }
        if (awaited[1].revents != 0) {
            out += terminal->read();
        }
    }
    close(handle);
    if (terminal) {
        out += terminal->read();
    }
    int state = 0;
    if (waitpid(child, &state, 0) != child) {
        throw std::runtime_error{"runProgram: cannot wait for the program"};
    }
    return WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
}

} // namespace

ProgramResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const Surroundings& surroundings)
{
    const TemporaryDirectory directory;
    const std::string in = directory.write("in", surroundings.input);
    const std::string out = directory.write("out", "");
    const std::string err = directory.write("err", "");

    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const std::vector<char*> argv = pointersTo(words);
    std::vector<std::string> variables = environmentWith(surroundings.environment);
    const std::vector<char*> environment = pointersTo(variables);
    std::optional<Terminal> terminal;
    if (surroundings.output == Output::terminal) {
        terminal.emplace(surroundings.columns);
    }

    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error{"runProgram: cannot fork"};
    }
    if (child == 0) {
        redirect(STDIN_FILENO, in.c_str(), O_RDONLY);
        redirect(STDERR_FILENO, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC);
        redirectOutput(surroundings.output, out.c_str(), terminal ? terminal->programsEnd() : -1);
        // What this process got from those that started it is no business of the program.
        close_range(STDERR_FILENO + 1, ~0U, 0);
        execve(argv.front(), argv.data(), environment.data());
        _exit(126);
    }
    std::string shown;
    const int status = waitFor(child, terminal, shown);
    return {status, shown + contentOf(out), contentOf(err)};
}

ProgramResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::string& input, Output output)
{
    return runProgram(program, arguments, Surroundings{input, output, 80, {}});
}

ProgramResult runHost(const std::vector<std::string>& arguments, Output output)
{
    return runProgram(OSTREL_TEST_HOST, arguments, {}, output);
}

ProgramResult runHost(const std::vector<std::string>& arguments, const Surroundings& surroundings)
{
    return runProgram(OSTREL_TEST_HOST, arguments, surroundings);
}

std::string withoutPath(std::string text, const std::filesystem::path& path)
{
    const std::string bytes = path.string();
    for (std::size_t at = text.find(bytes); at != std::string::npos; at = text.find(bytes, at)) {
        text.replace(at, bytes.size(), "<bundles>");
    }
    return text;
}

} // namespace ostrel::test
