// What the user is told of a file that cannot be read, or only in part: one
// dialog each, naming the file and the reason, through the real window.
#include "model/TavNaModel.h"
#include "presenter/TavNaPresenter.h"
#include "presenter/TavNaStatusbarPresenter.h"
#include "tests/platform/view/DialogAnswer.h"
#include "tests/support/GuiTest.h"
#include "tests/support/TestCaptures.h"
#include "view/TavNaStatusbarView.h"

#include <gtest/gtest.h>
#include <gtkmm/messagedialog.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <regex>
#include <string>
#include <vector>

namespace {

using namespace TavNA;
using namespace std::chrono_literals;

class FailureDialogs : public ::testing::Test {
protected:
    FailureDialogs() { shell->open(nullptr); }

    // Opens the file, waits for its load to end and for the dialogs it brings.
    void load(const std::string& path) {
        shell->getModel().parseFile(path);
        auto& bar = dynamic_cast<TavNaStatusbarView&>(*shell->getStatusbarPresenter().getView());
        ASSERT_TRUE(TavTest::pumpUntil([&] { return !bar.progressBar().get_visible(); }, 60s));
        TavTest::pumpFor(200ms);
    }

    std::unique_ptr<TavNaPresenter> shell = std::make_unique<TavNaPresenter>();
    TavTest::MessageBoxes boxes;
    std::vector<std::string>& texts = boxes.texts;
};

TEST_F(FailureDialogs, AFileThatIsNotACaptureIsNamedAndStillListed) {
    const std::string path = TavTest::tempDir() + "/notes.pcap";
    std::ofstream(path) << "these are notes, not packets\n";
    load(path);
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0],
              "Не удалось прочитать файл " + path + ": это не файл захвата pcap или pcapng.");
    EXPECT_TRUE(shell->getModel().getFileManagerModel().isExists(path));
}

TEST_F(FailureDialogs, ATruncatedFileTellsWhatWasKept) {
    const std::string whole =
        TavTest::generated("whole", {"--sv", "2", "--duration", "0.1", "--start", "1700000000"});
    const std::string cut = TavTest::tempDir() + "/cut.pcap";
    std::filesystem::copy_file(whole, cut, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::resize_file(cut, std::filesystem::file_size(whole) - 10);
    load(cut);
    ASSERT_EQ(texts.size(), 1u);
    const std::regex expected("Файл " + cut +
                              " прочитан не полностью: файл обрывается на байте [0-9]+\\. "
                              "Прочитано кадров SV и GOOSE: 799, с 2023-11-14 22:13:20\\.000000 "
                              "по 2023-11-14 22:13:20\\.099750 UTC\\.");
    EXPECT_TRUE(std::regex_match(texts[0], expected)) << texts[0];
    EXPECT_TRUE(shell->getModel().getFileManagerModel().isExists(cut));
}

// Nothing to tell of a whole file, nor of one whose open was cancelled.
TEST_F(FailureDialogs, AGoodOrCancelledFileBringsNoDialog) {
    load(TavTest::generated("good", {"--sv", "1", "--goose", "1", "--duration", "0.1"}));
    shell->getModel().parseFile(TavTest::generated("long", {"--sv", "8", "--duration", "20"}));
    shell->getModel().stopParsing();
    TavTest::pumpFor(300ms);
    EXPECT_TRUE(texts.empty()) << texts.front();
}

} // namespace
