#include "contract/traces/Subjects.h"

#include <cstdint>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using contract::Choices;
using contract::Trace;

struct Subject {
    std::string name;
    void (*run)(Choices&, Trace&, std::size_t);
    /// How many steps a recorded trace has.
    std::size_t steps;
};

std::vector<Subject> const& subjects()
{
    static std::vector<Subject> const all{
        {"values", &contract::traceValues, 150},     {"maps", &contract::traceMaps, 150},
        {"versions", &contract::traceVersions, 80},  {"filters", &contract::traceFilters, 60},
        {"services", &contract::traceServices, 200},
    };
    return all;
}

Subject const& subjectOf(std::string const& name)
{
    for (auto const& subject : subjects()) {
        if (subject.name == name) {
            return subject;
        }
    }
    throw std::invalid_argument("no subject is called " + name);
}

void write(std::ostream& os, Subject const& subject, std::uint32_t seed, std::size_t steps)
{
    Choices choices(seed);
    Trace trace(os);
    subject.run(choices, trace, steps);
    trace.end();
}

std::string fileOf(std::string const& folder, std::string const& subject, std::string const& seed)
{
    return folder + "/" + subject + "-" + seed + ".txt";
}

int compare(std::string const& folder, std::string const& name, std::string const& seed)
{
    auto const& subject = subjectOf(name);
    std::ifstream file(fileOf(folder, name, seed));
    if (!file) {
        throw std::runtime_error("no recorded trace " + fileOf(folder, name, seed));
    }
    std::stringstream written;
    write(written, subject, static_cast<std::uint32_t>(std::stoul(seed)), subject.steps);
    std::string expected;
    std::string found;
    for (std::size_t line = 1;; ++line) {
        bool const more = static_cast<bool>(std::getline(file, expected));
        bool const got = static_cast<bool>(std::getline(written, found));
        if (!more && !got) {
            return 0;
        }
        if (more != got || expected != found) {
            std::cerr << fileOf(folder, name, seed) << ':' << line
                      << ": the calls went another way\n  expected: " << (more ? expected : "(end)")
                      << "\n  found:    " << (got ? found : "(end)") << '\n';
            return 1;
        }
    }
}

int run(std::vector<std::string> const& arguments)
{
    if (arguments.size() == 4 && arguments[0] == "compare") {
        return compare(arguments[1], arguments[2], arguments[3]);
    }
    if (arguments.size() == 4 && arguments[0] == "record") {
        std::ofstream file(fileOf(arguments[1], arguments[2], arguments[3]));
        auto const& subject = subjectOf(arguments[2]);
        write(file, subject, static_cast<std::uint32_t>(std::stoul(arguments[3])), subject.steps);
        return file.flush() ? 0 : 1;
    }
    if (arguments.size() == 4 && arguments[0] == "print") {
        auto const last = std::stoul(arguments[3]);
        for (auto seed = std::stoul(arguments[2]); seed <= last; ++seed) {
            auto const& subject = subjectOf(arguments[1]);
            std::cout << "== " << subject.name << ' ' << seed << '\n';
            write(std::cout, subject, static_cast<std::uint32_t>(seed), subject.steps);
            std::cout.flush();
        }
        return 0;
    }
    std::cerr << "usage: contract_traces compare|record FOLDER SUBJECT SEED\n"
                 "       contract_traces print SUBJECT FIRST-SEED LAST-SEED\n";
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return run(std::vector<std::string>(argv + 1, argv + argc));
    } catch (std::exception const& e) {
        std::cerr << "contract_traces: " << e.what() << '\n';
        return 2;
    }
}
