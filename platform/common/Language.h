#pragma once

#include <string>

namespace lng {

// The interface language as an index: 0 English, 1 Russian. Follows the user's
// locale (LC_ALL, LC_MESSAGES, LANG) at start-up.
extern int language;

// The tag of the current language: "en-US" or "ru-RU".
std::string languageName();

// The index a locale name maps to ("ru_RU.UTF-8" gives 1, anything else 0).
int languageFromLocale(const std::string& locale);

} // namespace lng
