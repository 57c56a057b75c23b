// A program at a fixed address that takes the address of a framework's function: the function then has an address in
// the program, for the framework's own library as well.

#include "process/RunningFramework.h"

#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <gtest/gtest.h>

#include <cstring>
#include <dlfcn.h>
#include <string>

using cppmicroservices::Framework;
using cppmicroservices::FrameworkFactory;

namespace {

std::string holderOf(Framework (FrameworkFactory::*function)())
{
    const void* address = nullptr;
    std::memcpy(&address, &function, sizeof address);
    Dl_info holder{};
    return ::dladdr(address, &holder) != 0 ? holder.dli_fname : "";
}

TEST(FixedProgram, GivenFunctionWithAddressInProgram_WhenFrameworkIsAsked_ThenItIsToldAllTheSame)
{
    const std::string holder = holderOf(&FrameworkFactory::NewFramework);
    ASSERT_NE(holder.find("unit_fixed_program"), std::string::npos) << holder << ": the address is that of a library";

    EXPECT_NE(ostrel::process::runningFramework(), ostrel::bundle_reader::Framework::none);
}

} // namespace
