// Every export of the table called from several threads at once, each on its
// own destination, gives the bytes of a call made alone.
#include <latch>
#include <thread>

#include "export_table.h"
#include "test_common.h"

namespace {

constexpr int kThreads = 4, kRounds = 3;
constexpr KroiSize kSize{1031, 37};
constexpr KroiRect kRect{3, 2, 1000, 33};
constexpr kx::StepMode kModes[4] = {kx::StepMode::Padded, kx::StepMode::Padded, kx::StepMode::Padded,
                                    kx::StepMode::Padded};

kx::Job jobFor(const kx::Row& row, int i) {
    kx::Job job(row, kSize, kRect, kModes, kModes, 1000u + i);
    job.call.alphaInt = 0x5a;
    job.call.alphaFloat = 0.25;
    return job;
}

class Threads : public ::testing::TestWithParam<kt::Path> {};

TEST_P(Threads, ConcurrentCallsGiveTheSerialBytes) {
    KT_USE_PATH(GetParam());
    const auto table = kx::exportTable();
    const int n = static_cast<int>(table.size());
    std::vector<std::vector<uint8_t>> serial(n);
    for (int i = 0; i < n; ++i) {
        kx::Job job = jobFor(table[i], i);
        ASSERT_GE(job.run(), 0) << table[i].name;
        serial[i] = job.dst.region();
    }
    // Each thread walks the whole table from its own starting row, so that
    // different families run side by side.
    std::vector<std::vector<std::string>> wrong(kThreads);
    std::latch start(kThreads);
    std::vector<std::thread> pool;
    for (int t = 0; t < kThreads; ++t)
        pool.emplace_back([&, t] {
            std::vector<kx::Job> jobs;
            for (int i = 0; i < n; ++i) jobs.push_back(jobFor(table[i], i));
            start.arrive_and_wait();
            for (int r = 0; r < kRounds; ++r)
                for (int k = 0; k < n; ++k) {
                    const int i = (k + t * n / kThreads) % n;
                    jobs[i].run();
                    if (jobs[i].dst.region() != serial[i]) wrong[t].push_back(table[i].name);
                }
        });
    for (auto& th : pool) th.join();
    for (int t = 0; t < kThreads; ++t) EXPECT_TRUE(wrong[t].empty()) << "thread " << t << ": " << wrong[t][0];
}

INSTANTIATE_TEST_SUITE_P(Paths, Threads, kt::bothPaths(), [](const auto& i) { return kt::pathName(i.param); });

}  // namespace
