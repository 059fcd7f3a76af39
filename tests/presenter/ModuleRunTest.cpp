// The working folder the build prepares for the host and the module. The host
// loading the real module from it and opening a capture is the end-to-end
// session's first step.
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

std::string readAll(const fs::path& path) {
    return TavTest::readFile(path.string());
}

TEST(ModuleRun, WorkingFolderHoldsHelpIconAndStyleSheet) {
    const fs::path run = TAVNA_RUN_DIR;
    for (const char* lang : {"ru-RU", "en-US"}) {
        const std::string pdf = readAll(run / "Help" / lang / "Главное окно программы.pdf");
        EXPECT_EQ(pdf.substr(0, 5), "%PDF-") << lang;
        EXPECT_GT(pdf.size(), 2000u) << lang;
    }
    const std::string icon = readAll(run / "Icons/Shell/NetworkAnalyzer_network_analyzer.png");
    EXPECT_EQ(icon.substr(1, 3), "PNG");
    EXPECT_NE(readAll(run / "tavna.css").find(".cancelLoadImage"), std::string::npos);
}

} // namespace
