// Runs a fuzz target over files instead of invented inputs: what once was a fault stays a test with every compiler.
#include "fuzz/FuzzTarget.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(const fs::path& folder)
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const fs::path& file)
{
    // Named first, so that the name is the last that is read when the input ends the process.
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        throw std::runtime_error{"cannot read " + file.string()};
    }
    const std::string bytes{std::istreambuf_iterator<char>{in}, {}};
    // A block of exactly this size, so that tools that check memory accesses see the first byte too many.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

} // namespace

/// Each argument is a folder of inputs, which must hold some.
int main(int argc, char** argv)
{
    try {
        if (argc < 2) {
            throw std::runtime_error{"usage: replay FOLDER..."};
        }
        for (int i = 1; i < argc; ++i) {
            const auto files = filesOf(argv[i]);
            if (files.empty()) {
                throw std::runtime_error{std::string{"no inputs in "} + argv[i]};
            }
            std::for_each(files.begin(), files.end(), replay);
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
}
