#include "platform/common/Language.h"

#include <cstdlib>

namespace lng {

namespace {

int languageFromEnvironment() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0')
            return languageFromLocale(value);
    }
    return 0;
}

} // namespace

int language = languageFromEnvironment();

int languageFromLocale(const std::string& locale) {
    return locale.rfind("ru", 0) == 0 ? 1 : 0;
}

std::string languageName() {
    return language == 1 ? "ru-RU" : "en-US";
}

} // namespace lng
