// The activator of the second bundle in the file; the target defines the first one's name.
#undef US_BUNDLE_NAME
#define US_BUNDLE_NAME beta
#include "Activator.cpp"
