#pragma once

#include "inspection/Code.h"

#include <string>

namespace ostrel::inspection {

/// Something that is wrong with a bundle or a file. No text ends with a full stop.
struct Finding {
    Code code = Code::notABundle;
    std::string file;
    std::string bundle; ///< symbolic name; "" when the file as a whole is meant
    std::string what;   ///< as what is said of the file: "the archive in the file is damaged"
    std::string why;
    std::string remedy; ///< what mends it, as an order

    friend bool operator==(const Finding& a, const Finding& b)
    {
        return a.code == b.code && a.file == b.file && a.bundle == b.bundle && a.what == b.what && a.why == b.why &&
               a.remedy == b.remedy;
    }
};

/// A file of a directory that holds no bundle, and need not.
struct PassedOver {
    std::string file;
    std::string why;

    friend bool operator==(const PassedOver& a, const PassedOver& b) { return a.file == b.file && a.why == b.why; }
};

} // namespace ostrel::inspection
