// refused by: sources
// message: condition_on_gnustep.mm:6: asks for the platform: GNUSTEP_BASE_LIBRARY
const char* text = "GNUSTEP"; /* GNUSTEP */
const char* raw = R"(
#ifdef GNUSTEP)";
#ifndef GNUSTEP_BASE_LIBRARY
#endif
