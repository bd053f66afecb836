#pragma once

// Whether this build runs under AddressSanitizer, where every run of the tool
// is many times slower: the long fault tests make fewer trials there, enough
// for the sanitizers to see every step.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool sanitizedBuild = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool sanitizedBuild = true;
#else
constexpr bool sanitizedBuild = false;
#endif
#else
constexpr bool sanitizedBuild = false;
#endif
