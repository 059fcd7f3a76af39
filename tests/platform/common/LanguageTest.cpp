#include "platform/common/Language.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

TEST(Language, RussianLocalesGiveRussianAndAllOthersEnglish) {
    for (const char* ru : {"ru_RU.UTF-8", "ru_RU", "ru", "ru_UA.KOI8-U"})
        EXPECT_EQ(lng::languageFromLocale(ru), 1) << ru;
    for (const char* other : {"en_US.UTF-8", "C", "POSIX", "", "uk_UA.UTF-8", "de_DE", "C.UTF-8"})
        EXPECT_EQ(lng::languageFromLocale(other), 0) << other;
}

TEST(Language, NamesTheCurrentLanguage) {
    const int saved = lng::language;
    lng::language = 1;
    EXPECT_EQ(lng::languageName(), "ru-RU");
    lng::language = 0;
    EXPECT_EQ(lng::languageName(), "en-US");
    lng::language = saved;
}

// Run in a child with a chosen environment (see below); checks the language
// the library picked before main.
TEST(Language, StartUpLanguageProbe) {
    const char* expected = std::getenv("TAVNA_EXPECT_LANGUAGE");
    if (expected == nullptr)
        GTEST_SKIP() << "only meaningful in the child run";
    EXPECT_EQ(lng::language, std::atoi(expected));
}

int languageAtStartUp(const std::string& environment) {
    const std::string cmd = "env -u LC_ALL -u LC_MESSAGES -u LANG " + environment + " /proc/" +
                            std::to_string(getpid()) +
                            "/exe --gtest_filter=Language.StartUpLanguageProbe >/dev/null 2>&1";
    for (int candidate : {0, 1}) {
        const int status =
            std::system(("TAVNA_EXPECT_LANGUAGE=" + std::to_string(candidate) + " " + cmd).c_str());
        if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
            return candidate;
    }
    return -1;
}

TEST(Language, FollowsTheLocaleAtStartUpWithLcAllFirst) {
    EXPECT_EQ(languageAtStartUp("LANG=ru_RU.UTF-8"), 1);
    EXPECT_EQ(languageAtStartUp("LANG=en_GB.UTF-8"), 0);
    EXPECT_EQ(languageAtStartUp("LANG=en_US.UTF-8 LC_MESSAGES=ru_RU.UTF-8"), 1);
    EXPECT_EQ(languageAtStartUp("LANG=ru_RU.UTF-8 LC_ALL=C"), 0);
    EXPECT_EQ(languageAtStartUp(""), 0);
}

} // namespace
