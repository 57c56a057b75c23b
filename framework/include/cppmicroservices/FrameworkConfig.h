#pragma once

#include "cppmicroservices/FrameworkExport.h"

#define US_FRAMEWORK_VERSION_MAJOR 3
#define US_FRAMEWORK_VERSION_MINOR 8
#define US_FRAMEWORK_VERSION_PATCH 4
#define US_FRAMEWORK_VERSION 3.8.4
#define US_FRAMEWORK_VERSION_STR "3.8.4"
