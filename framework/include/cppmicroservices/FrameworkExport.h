#pragma once

#include "cppmicroservices/GlobalConfig.h"

/// Marks what the framework's library exports. Classes that carry it also share one type information across libraries
/// built with hidden visibility, so they may be thrown from one and caught in another.
#ifdef CppMicroServices_EXPORTS
#define US_Framework_EXPORT US_ABI_EXPORT
#else
#define US_Framework_EXPORT US_ABI_IMPORT
#endif
