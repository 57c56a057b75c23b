#pragma once

#include "inspection/Code.h"
#include "inspection/Export.h"

#include <string>
#include <string_view>

namespace ostrel::inspection {

/// Why a bundle did not start. The texts are not escaped: they quote what the bundle and its file say.
struct StartFailure {
    Code code;           ///< undefinedSymbol, libraryMissing or activatorMissing; startThrows for all else
    std::string what;    ///< in short, to be read behind the bundle's file
    std::string why;     ///< what the dynamic loader or the activator says, without the framework's words around it
    std::string remedy;  ///< true for this code
    std::string symbol;  ///< undefinedSymbol: the symbol as it is written in C++; else empty
    std::string library; ///< libraryMissing: the library as the dynamic loader names it; else empty
};

/// What the text of the exception tells that the start of a bundle threw, on either framework. If the bundle failed
/// because it started another one, it tells of that.
///
/// @throws std::bad_alloc alone
/// @locks  none
/// @cost   linear
OSTREL_INSPECTION_EXPORT StartFailure startFailure(std::string_view text);

} // namespace ostrel::inspection
