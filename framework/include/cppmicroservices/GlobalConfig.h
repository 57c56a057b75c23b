#pragma once

/// Platform, version and helper macros, with the names and values that hosts and bundles written for
/// CppMicroServices 3.8.4 use. Includes nothing.

#define US_BUILD_SHARED_LIBS
#define US_ENABLE_THREADING_SUPPORT
#define US_HAVE_VISIBILITY_ATTRIBUTE
#define US_HAVE_CXXABI_H
#define US_HAVE_THREAD_LOCAL
#define US_HAVE_REGEX

// The version of the API, not of this project: code asks it to choose between API revisions.
#define CppMicroServices_VERSION_MAJOR 3
#define CppMicroServices_VERSION_MINOR 8
#define CppMicroServices_VERSION_PATCH 4
#define CppMicroServices_VERSION 3.8.4
#define CppMicroServices_VERSION_STR "3.8.4"

#define US_VERSION_MAJOR 3
#define US_VERSION_MINOR 8
#define US_VERSION_PATCH 4
#define US_VERSION 3.8.4
#define US_VERSION_STR "3.8.4"

#define US_PLATFORM_LINUX
#define US_PLATFORM_POSIX
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
#define US_BIG_ENDIAN
#else
#define US_LITTLE_ENDIAN
#endif

#define US_LIB_PREFIX "lib"
#define US_LIB_EXT ".so"
#define US_EXE_EXT ""
#ifdef NDEBUG
#define US_LIB_POSTFIX ""
#else
#define US_LIB_POSTFIX "d"
#endif

#define US_ABI_EXPORT __attribute__((visibility("default")))
#define US_ABI_IMPORT __attribute__((visibility("default")))
#define US_ABI_LOCAL __attribute__((visibility("hidden")))

#define US_DEPRECATED __attribute__((deprecated))
#define US_UNUSED(x) (void)(x)

#define US_MSVC_PUSH_DISABLE_WARNING(number)
#define US_MSVC_POP_WARNING
#define US_MSVC_DISABLE_WARNING(number)

#define us_gcc_pragma_expand(x) _Pragma(#x)
// clang-format off
#define US_GCC_PUSH_DISABLE_WARNING(name)                                                                              \
    _Pragma("GCC diagnostic push") us_gcc_pragma_expand(GCC diagnostic ignored "-W" #name)
#define US_GCC_POP_WARNING _Pragma("GCC diagnostic pop")

// Used as: US_HASH_FUNCTION_BEGIN(Type) return ...arg...; US_HASH_FUNCTION_END
#define US_HASH_FUNCTION_BEGIN(type)                                                                                   \
    namespace std {                                                                                                    \
    template <>                                                                                                        \
    struct hash<type> {                                                                                                \
        std::size_t operator()(const type& arg) const                                                                  \
        {

#define US_HASH_FUNCTION_END                                                                                           \
    }                                                                                                                  \
    }                                                                                                                  \
    ;                                                                                                                  \
    }

// clang-format on
#define US_STR_(x) #x
#define US_STR(x) US_STR_(x)
#define US_CONCAT_(x, y) x##y
#define US_CONCAT(x, y) US_CONCAT_(x, y)

// Names of the functions and the variable that the macros for bundles define and the framework looks up; the name of
// the bundle is appended.
#define US_GET_CTX_PREFIX _us_get_bundle_context_instance_
#define US_SET_CTX_PREFIX _us_set_bundle_context_instance_
#define US_CTX_INS_PREFIX _us_bundle_context_instance_
#define US_CREATE_ACTIVATOR_PREFIX _us_create_activator_
#define US_DESTROY_ACTIVATOR_PREFIX _us_destroy_activator_

#define US_GET_CTX_FUNC(bsn) US_CONCAT(US_GET_CTX_PREFIX, bsn)
#define US_SET_CTX_FUNC(bsn) US_CONCAT(US_SET_CTX_PREFIX, bsn)
#define US_CTX_INS(bsn) US_CONCAT(US_CTX_INS_PREFIX, bsn)
#define US_CREATE_ACTIVATOR_FUNC(bsn) US_CONCAT(US_CREATE_ACTIVATOR_PREFIX, bsn)
#define US_DESTROY_ACTIVATOR_FUNC(bsn) US_CONCAT(US_DESTROY_ACTIVATOR_PREFIX, bsn)

#define US_FUTURE_READY std::future_status::ready
#define US_FUTURE_TIMEOUT std::future_status::timeout
