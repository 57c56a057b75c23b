// The public types and functions beside the container, by their exact types. It is checked when this file is compiled.
#include "container/DiagnosticLog.h"
#include "container/MicroServicesContainer.h"
#include "platform/DiagnosticLogger.h"
#include "platform/InstallBundles.h"
#include "platform/Utf16Path.h"

#include <cstdint>
#include <type_traits>

namespace ostrel {
namespace {

using cppmicroservices::Any;
using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;
using cppmicroservices::ServiceReference;
using platform::DiagnosticLogger;
using platform::Utf16Path;
using us_container::FilterMap;
using us_container::LoadedService;

static_assert(std::is_same_v<FilterMap, std::unordered_map<std::string, std::pair<std::string, bool>>>);
static_assert(std::is_same_v<LoadedService, std::pair<ServiceReference<void>, cppmicroservices::InterfaceMapConstPtr>>);

static_assert(
    std::is_same_v<decltype(&us_container::checkFilter), bool (*)(const Any&, const FilterMap&, const std::string&)>);
static_assert(std::is_same_v<decltype(&us_container::diagnosticLog), DiagnosticLogger& (*)()>);
static_assert(
    std::is_same_v<decltype(&platform::installBundles), std::vector<Bundle> (*)(BundleContext, const Utf16Path&)>);
static_assert(std::is_same_v<decltype(&platform::toUtf16), std::u16string (*)(const std::string&)>);
static_assert(std::is_same_v<decltype(&platform::joinPath), void (*)(std::u16string&, const std::u16string&, bool)>);

static_assert(std::is_constructible_v<Utf16Path, std::u16string>);
static_assert(std::is_constructible_v<Utf16Path, std::u16string, bool>);
static_assert(!std::is_convertible_v<std::u16string, Utf16Path>);
static_assert(std::is_copy_constructible_v<Utf16Path>);
static_assert(std::is_copy_assignable_v<Utf16Path>);
static_assert(std::is_same_v<decltype(&Utf16Path::path), const std::u16string& (Utf16Path::*)() const noexcept>);
static_assert(std::is_same_v<decltype(&Utf16Path::flag), bool (Utf16Path::*)() const noexcept>);
static_assert(noexcept(std::declval<const Utf16Path&>() == std::declval<const Utf16Path&>()));
static_assert(noexcept(std::declval<const Utf16Path&>() != std::declval<const Utf16Path&>()));

static_assert(std::is_constructible_v<DiagnosticLogger, const std::string&>);
static_assert(!std::is_convertible_v<std::string, DiagnosticLogger>);
static_assert(!std::is_copy_constructible_v<DiagnosticLogger>);
static_assert(!std::is_copy_assignable_v<DiagnosticLogger>);
static_assert(std::is_final_v<DiagnosticLogger>);
static_assert(std::is_nothrow_destructible_v<DiagnosticLogger>);
static_assert(
    std::is_same_v<decltype(&DiagnosticLogger::enabledSeverities), std::uint32_t (DiagnosticLogger::*)() const>);
static_assert(
    std::is_same_v<decltype(&DiagnosticLogger::setEnabledSeverities), void (DiagnosticLogger::*)(std::uint32_t)>);

} // namespace
} // namespace ostrel
