// The fuzz target's check, run without the fuzzer: every input kept in
// fuzz/regressions (each one a finding, fixed) and a batch of random inputs.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "contract_check.h"
#include "test_common.h"

namespace {

void setVnni(bool on) { kt::setPath(on && kt::cpuHasVnni() ? kt::Path::Vnni : kt::Path::Plain); }

std::vector<uint8_t> readFile(const std::filesystem::path& p) {
    std::ifstream f(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>()};
}

TEST(FuzzReplay, KeptFindingsStayFixed) {
    const std::filesystem::path dir = KROCC_FUZZ_REGRESSIONS;
    ASSERT_TRUE(std::filesystem::is_directory(dir)) << dir;
    int n = 0;
    for (const auto& e : std::filesystem::directory_iterator(dir)) {
        if (!e.is_regular_file() || e.path().filename().string()[0] == '.') continue;
        const auto in = readFile(e.path());
        EXPECT_EQ(kx::checkOneCall(in.data(), in.size(), setVnni), "") << e.path().filename();
        ++n;
    }
    std::printf("replayed %d kept inputs\n", n);
}

TEST(FuzzReplay, RandomCallsKeepTheContract) {
    std::mt19937 g(20261123);
    for (int i = 0; i < 100000; ++i) {
        uint8_t in[64];
        for (auto& b : in) b = static_cast<uint8_t>(g());
        const std::string bad = kx::checkOneCall(in, sizeof in, setVnni);
        ASSERT_EQ(bad, "") << "input " << i;
    }
}

}  // namespace
