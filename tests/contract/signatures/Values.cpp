#include "contract/signatures/Signature.h"

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/BundleVersion.h>
#include <cppmicroservices/Constants.h>
#include <cppmicroservices/LDAPFilter.h>
#include <cppmicroservices/LDAPProp.h>
#include <cppmicroservices/ServiceProperties.h>

#include <functional>

using namespace cppmicroservices;

static_assert(contract::isValue<Any> && std::is_nothrow_move_constructible_v<Any>);
static_assert(std::is_constructible_v<Any, std::function<bool(int const&)>>);
CONTRACT_MEMBER(Any, Swap, Any& (Any::*)(Any&));
CONTRACT_MEMBER(Any, Empty, bool (Any::*)() const);
CONTRACT_MEMBER(Any, ToString, std::string (Any::*)() const);
CONTRACT_MEMBER(Any, ToStringNoExcept, std::string (Any::*)() const);
CONTRACT_MEMBER(Any, ToJSON, std::string (Any::*)(uint8_t, int32_t) const);
CONTRACT_MEMBER(Any, ToJSON, std::string (Any::*)(bool) const);
CONTRACT_MEMBER(Any, ToCPP, std::string (Any::*)(uint8_t, int32_t) const);
CONTRACT_MEMBER(Any, ToCPP, std::string (Any::*)(bool) const);
CONTRACT_MEMBER(Any, Type, std::type_info const& (Any::*)() const);
static_assert(std::is_base_of_v<std::bad_cast, BadAnyCastException>);
static_assert(std::is_constructible_v<BadAnyCastException, std::string> && contract::isValue<BadAnyCastException>);
static_assert(std::is_same_v<decltype(any_cast<int>(std::declval<Any*>())), int*>);
static_assert(std::is_same_v<decltype(any_cast<int>(std::declval<Any const*>())), int const*>);
static_assert(std::is_same_v<decltype(any_cast<int>(std::declval<Any const&>())), int>);
static_assert(std::is_same_v<decltype(any_cast<int>(std::declval<Any&>())), int>);
static_assert(std::is_same_v<decltype(ref_any_cast<int>(std::declval<Any&>())), int&>);
static_assert(std::is_same_v<decltype(ref_any_cast<int>(std::declval<Any const&>())), int const&>);
static_assert(std::is_same_v<decltype(unsafe_any_cast<int>(std::declval<Any*>())), int*>);
static_assert(std::is_same_v<decltype(unsafe_any_cast<int>(std::declval<Any const*>())), int const*>);

static_assert(std::is_base_of_v<any_map, AnyMap> && contract::isValue<AnyMap>);
static_assert(std::is_nothrow_move_constructible_v<any_map> && std::is_nothrow_move_assignable_v<any_map>);
static_assert(!std::is_default_constructible_v<any_map>);
static_assert(std::is_convertible_v<std::map<std::string, Any>, AnyMap>);
static_assert(std::is_convertible_v<std::unordered_map<std::string, Any>, AnyMap>);
static_assert(std::is_convertible_v<any_map::unordered_any_cimap, AnyMap>);
static_assert(any_map::ORDERED_MAP == 0 && any_map::UNORDERED_MAP == 1 &&
              any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS == 2);
static_assert(std::is_same_v<std::underlying_type_t<any_map::map_type>, uint8_t>);
static_assert(std::is_same_v<any_map::iterator, any_map::iter> &&
              std::is_same_v<any_map::const_iterator, any_map::const_iter>);
static_assert(std::is_same_v<std::iterator_traits<any_map::iterator::iterator>::value_type, any_map::value_type> ||
              std::is_same_v<any_map::iterator::value_type, any_map::value_type>);
static_assert(std::is_convertible_v<any_map::iter, any_map::const_iter>);
CONTRACT_MEMBER(any_map, begin, any_map::iter (any_map::*)());
CONTRACT_MEMBER(any_map, begin, any_map::const_iter (any_map::*)() const);
CONTRACT_MEMBER(any_map, cbegin, any_map::const_iter (any_map::*)() const);
CONTRACT_MEMBER(any_map, end, any_map::iter (any_map::*)());
CONTRACT_MEMBER(any_map, cend, any_map::const_iter (any_map::*)() const);
CONTRACT_MEMBER(any_map, empty, bool (any_map::*)() const);
CONTRACT_MEMBER(any_map, size, std::size_t (any_map::*)() const);
CONTRACT_MEMBER(any_map, count, std::size_t (any_map::*)(std::string const&) const);
CONTRACT_MEMBER(any_map, clear, void (any_map::*)());
CONTRACT_MEMBER(any_map, at, Any& (any_map::*)(std::string const&));
CONTRACT_MEMBER(any_map, at, Any const& (any_map::*)(std::string const&) const);
CONTRACT_MEMBER(any_map, operator[], Any& (any_map::*)(std::string const&));
CONTRACT_MEMBER(any_map, operator[], Any& (any_map::*)(std::string&&));
CONTRACT_MEMBER(any_map, insert, std::pair<any_map::iter, bool> (any_map::*)(any_map::value_type const&));
CONTRACT_MEMBER(any_map, find, any_map::const_iter (any_map::*)(std::string const&) const);
CONTRACT_MEMBER(any_map, erase, std::size_t (any_map::*)(std::string const&));
CONTRACT_MEMBER(any_map, operator==, bool (any_map::*)(any_map const&) const);
CONTRACT_MEMBER(any_map, operator!=, bool (any_map::*)(any_map const&) const);
CONTRACT_MEMBER(AnyMap, GetType, any_map::map_type (AnyMap::*)() const);
CONTRACT_MEMBER(AnyMap, AtCompoundKey, Any const& (AnyMap::*)(std::string const&) const);
CONTRACT_MEMBER(AnyMap, AtCompoundKey, Any (AnyMap::*)(std::string const&, Any) const noexcept);

static_assert(std::is_same_v<ServiceProperties, std::unordered_map<std::string, Any>>);

static_assert(std::is_copy_constructible_v<BundleVersion> && !std::is_copy_assignable_v<BundleVersion>);
static_assert(!std::is_default_constructible_v<BundleVersion>);
static_assert(std::is_convertible_v<std::string, BundleVersion> && !std::is_convertible_v<char const*, BundleVersion>);
static_assert(std::is_constructible_v<BundleVersion, unsigned, unsigned, unsigned> &&
              std::is_constructible_v<BundleVersion, unsigned, unsigned, unsigned, std::string>);
static_assert(std::is_same_v<decltype(&BundleVersion::EmptyVersion), BundleVersion (*)()>);
static_assert(std::is_same_v<decltype(&BundleVersion::UndefinedVersion), BundleVersion (*)()>);
static_assert(std::is_same_v<decltype(&BundleVersion::ParseVersion), BundleVersion (*)(std::string const&)>);
CONTRACT_MEMBER(BundleVersion, IsUndefined, bool (BundleVersion::*)() const);
CONTRACT_MEMBER(BundleVersion, GetMajor, unsigned (BundleVersion::*)() const);
CONTRACT_MEMBER(BundleVersion, GetMinor, unsigned (BundleVersion::*)() const);
CONTRACT_MEMBER(BundleVersion, GetMicro, unsigned (BundleVersion::*)() const);
CONTRACT_MEMBER(BundleVersion, GetQualifier, std::string (BundleVersion::*)() const);
CONTRACT_MEMBER(BundleVersion, ToString, std::string (BundleVersion::*)() const);
CONTRACT_MEMBER(BundleVersion, operator==, bool (BundleVersion::*)(BundleVersion const&) const);
CONTRACT_MEMBER(BundleVersion, Compare, int (BundleVersion::*)(BundleVersion const&) const);

static_assert(contract::isValue<LDAPFilter> && std::is_convertible_v<std::string, LDAPFilter>);
static_assert(!std::is_convertible_v<LDAPFilter, bool> && std::is_constructible_v<bool, LDAPFilter>);
CONTRACT_MEMBER(LDAPFilter, Match, bool (LDAPFilter::*)(ServiceReferenceBase const&) const);
CONTRACT_MEMBER(LDAPFilter, Match, bool (LDAPFilter::*)(Bundle const&) const);
CONTRACT_MEMBER(LDAPFilter, Match, bool (LDAPFilter::*)(AnyMap const&) const);
CONTRACT_MEMBER(LDAPFilter, MatchCase, bool (LDAPFilter::*)(AnyMap const&) const);
CONTRACT_MEMBER(LDAPFilter, ToString, std::string (LDAPFilter::*)() const);
CONTRACT_MEMBER(LDAPFilter, operator==, bool (LDAPFilter::*)(LDAPFilter const&) const);

static_assert(contract::isValue<LDAPPropExpr> && std::is_convertible_v<LDAPPropExpr, std::string>);
static_assert(!std::is_convertible_v<std::string, LDAPPropExpr> && std::is_constructible_v<LDAPPropExpr, std::string>);
static_assert(std::is_convertible_v<std::string, LDAPProp> && std::is_convertible_v<LDAPProp, LDAPPropExpr>);
static_assert(!std::is_copy_assignable_v<LDAPProp> && std::is_copy_constructible_v<LDAPProp>);
CONTRACT_MEMBER(LDAPPropExpr, IsNull, bool (LDAPPropExpr::*)() const);
CONTRACT_MEMBER(LDAPPropExpr, operator!, LDAPPropExpr& (LDAPPropExpr::*)());
CONTRACT_MEMBER(LDAPPropExpr, operator|=, LDAPPropExpr& (LDAPPropExpr::*)(LDAPPropExpr const&));
CONTRACT_MEMBER(LDAPPropExpr, operator&=, LDAPPropExpr& (LDAPPropExpr::*)(LDAPPropExpr const&));
CONTRACT_MEMBER(LDAPProp, operator==, LDAPPropExpr (LDAPProp::*)(std::string const&) const);
CONTRACT_MEMBER(LDAPProp, operator==, LDAPPropExpr (LDAPProp::*)(Any const&) const);
CONTRACT_MEMBER(LDAPProp, operator==, LDAPPropExpr (LDAPProp::*)(bool) const);
CONTRACT_MEMBER(LDAPProp, operator==<int>, LDAPPropExpr (LDAPProp::*)(int const&) const);
CONTRACT_MEMBER(LDAPProp, operator!=, LDAPPropExpr (LDAPProp::*)(Any const&) const);
CONTRACT_MEMBER(LDAPProp, operator>=, LDAPPropExpr (LDAPProp::*)(std::string const&) const);
CONTRACT_MEMBER(LDAPProp, operator<=, LDAPPropExpr (LDAPProp::*)(Any const&) const);
CONTRACT_MEMBER(LDAPProp, Approx, LDAPPropExpr (LDAPProp::*)(std::string const&) const);
CONTRACT_MEMBER(LDAPProp, Approx<int>, LDAPPropExpr (LDAPProp::*)(int const&) const);
static_assert(
    std::is_same_v<decltype(std::declval<LDAPPropExpr const&>() && std::declval<LDAPPropExpr const&>()), LDAPPropExpr>);
static_assert(
    std::is_same_v<decltype(std::declval<LDAPPropExpr const&>() || std::declval<LDAPPropExpr const&>()), LDAPPropExpr>);
static_assert(std::is_same_v<decltype(Constants::OBJECTCLASS), std::string const>);
