#include "cli/ProgramRun.h"

#include "support/TemporaryDirectory.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
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

void redirectOutput(Output output, const char* capturedIn)
{
    switch (output) {
    case Output::captured:
        redirect(STDOUT_FILENO, capturedIn, O_WRONLY | O_CREAT | O_TRUNC);
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

} // namespace

ProgramResult runProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::string& input, Output output)
{
    const TemporaryDirectory directory;
    const std::string in = directory.write("in", input);
    const std::string out = directory.write("out", "");
    const std::string err = directory.write("err", "");

    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);

    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error{"runProgram: cannot fork"};
    }
    if (child == 0) {
        redirect(STDIN_FILENO, in.c_str(), O_RDONLY);
        redirect(STDERR_FILENO, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC);
        redirectOutput(output, out.c_str());
        execv(argv.front(), argv.data());
        _exit(126);
    }
    int state = 0;
    if (waitpid(child, &state, 0) != child) {
        throw std::runtime_error{"runProgram: cannot wait for the program"};
    }
    const int status = WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
    return {status, contentOf(out), contentOf(err)};
}

ProgramResult runHost(const std::vector<std::string>& arguments, Output output)
{
    return runProgram(OSTREL_TEST_HOST, arguments, {}, output);
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
