// The real host with the real module, started from the working folder the
// build prepares, on a real capture.
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

std::string readAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Runs `tavna FILE` in the working folder with its log in `state`; ends it
// with the test, whatever happens.
class HostProcess {
public:
    HostProcess(const std::string& file, const std::string& state) {
        pid = fork();
        if (pid == 0) {
            if (chdir(TAVNA_RUN_DIR) != 0)
                _exit(120);
            setenv("XDG_STATE_HOME", state.c_str(), 1);
            setenv("NO_AT_BRIDGE", "1", 1);
            unsetenv("TAVNA_MODULE");
            execl(TAVNA_EXE, TAVNA_EXE, file.c_str(), static_cast<char*>(nullptr));
            _exit(121);
        }
    }
    ~HostProcess() {
        if (pid > 0 && !exited()) {
            kill(pid, SIGTERM);
            waitpid(pid, nullptr, 0);
        }
    }
    bool exited() {
        int status = 0;
        return waitpid(pid, &status, WNOHANG) == pid;
    }

    pid_t pid = -1;
};

bool waitFor(const std::function<bool()>& done, std::chrono::seconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(50ms);
    }
    return true;
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

TEST(ModuleRun, HostLoadsTheModuleAndOpensTheCaptureNamedOnItsCommandLine) {
    const std::string capture =
        TavTest::sharedCapture("goose_3pub_interlocking_vlan0_451frames.pcap");
    const std::string state = TavTest::tempDir() + "/state";
    const fs::path log = fs::path(state) / "tavna" / "tavna.log";
    HostProcess host(capture, state);
    ASSERT_GT(host.pid, 0);

    const bool opened = waitFor(
        [&] { return readAll(log).find("Файл открыт: " + capture) != std::string::npos; }, 60s);
    const std::string text = readAll(log);
    ASSERT_TRUE(opened) << text;
    EXPECT_NE(text.find("Запуск Сетевого Анализатора"), std::string::npos);
    EXPECT_NE(text.find("Старт потока парсинга. Файл: " + capture), std::string::npos);
    EXPECT_FALSE(host.exited());

    // Left in the build folder for a person to look at; a blank screen would
    // be a small file.
    const std::string shot = TAVNA_SHOT;
    std::string out;
    ASSERT_EQ(TavTest::runCommand({"import", "-window", "root", shot}, out), 0) << out;
    EXPECT_GT(fs::file_size(shot), 5000u);
}

} // namespace
