#include "frame/UsageError.h"

#include <CLI/CLI.hpp>

#include <inspection/Text.h>
#include <string_view>

namespace ostrel::host {

namespace {

std::string helpOf(const CLI::App& command)
{
    const bool isProgram = command.get_parent() == nullptr;
    return "'ostrel-host " + (isProgram ? std::string{} : command.get_name() + " ") + "--help'";
}

std::string usageOf(const CLI::App& command)
{
    const std::string usage = CLI::Formatter{}.make_usage(&command, "ostrel-host " + command.get_name());
    const std::size_t begin = usage.find("ostrel-host");
    return usage.substr(begin, usage.find('\n', begin) - begin);
}

std::vector<std::string> commandsOf(const CLI::App& program)
{
    std::vector<std::string> names;
    for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
    }
    return names;
}

std::vector<std::string> optionsOf(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

std::string joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

/// "did you mean WORD? ", or nothing when no word is near.
std::string meant(const std::string& word, const std::vector<std::string>& known)
{
    const std::string_view found = inspection::nearest(word, {known.begin(), known.end()});
    return found.empty() ? std::string{} : "did you mean " + std::string{found} + "? ";
}

Problem unknownCommand(const CLI::App& program, const std::vector<std::string>& arguments)
{
    const std::vector<std::string> commands = commandsOf(program);
    const std::string reason = "the commands are: " + joined(commands);
    for (const std::string& argument : arguments) {
        if (argument.empty() || argument.front() != '-') {
            return {ExitStatus::usage, Problem::Text{"unknown command " + quoted(argument),
                                                     "",
                                                     {reason},
                                                     meant(argument, commands) + "see " + helpOf(program)}};
        }
    }
    return {ExitStatus::usage, Problem::Text{"no command was given", "", {reason}, "see " + helpOf(program)}};
}

bool isOption(const std::string& argument)
{
    return argument.size() > 1 && argument.front() == '-' && argument != "--";
}

/// An option up to its value, "--when" of "--when=a=b".
std::string nameOf(const std::string& option)
{
    return option.substr(0, option.find('='));
}

Problem unexpected(const CLI::App& command, const std::string& argument)
{
    const bool isProgram = command.get_parent() == nullptr;
    const std::string owner = isProgram ? "ostrel-host" : quoted(command.get_name());
    if (isOption(argument)) {
        return {ExitStatus::usage,
                Problem::Text{"unknown option " + quoted(nameOf(argument)),
                              "",
                              {owner + " has the options " + joined(optionsOf(command))},
                              meant(nameOf(argument), optionsOf(command)) + "see " + helpOf(command)}};
    }
    return {ExitStatus::usage,
            Problem::Text{
                "unexpected argument " + quoted(argument), "", {owner + " takes no more"}, "see " + helpOf(command)}};
}

} // namespace

Problem usageError(const CLI::App& program, const std::vector<std::string>& arguments, const CLI::ParseError& error)
{
    const auto chosen = program.get_subcommands();
    // An unknown option is said before anything that is missing, since its value may have taken the place of that.
    for (const std::string& argument : program.remaining()) {
        if (!chosen.empty() || isOption(argument)) {
            return unexpected(program, argument);
        }
    }
    if (chosen.empty()) {
        return unknownCommand(program, arguments);
    }
    const CLI::App& command = *chosen.front();
    const std::vector<std::string> left = command.remaining();
    for (const std::string& argument : left) {
        if (isOption(argument)) {
            return unexpected(command, argument);
        }
    }
    if (!left.empty()) {
        return unexpected(command, left.front());
    }
    return {ExitStatus::usage,
            Problem::Text{error.what(), "", {"the usage is: " + usageOf(command)}, "see " + helpOf(command)}};
}

} // namespace ostrel::host
