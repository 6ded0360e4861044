// Every export of the table on images whose last row ends exactly before an
// inaccessible page, or whose first row starts right after one, at widths
// around every block boundary and on both feature paths. Nothing may fault;
// a fault prints the case and aborts.
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "export_table.h"
#include "test_common.h"

namespace {

// A body of memory with an inaccessible page on each side, mapped once.
class Slot {
public:
    static constexpr std::size_t kBody = 1 << 20;
    Slot() {
        page_ = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        map_ = static_cast<uint8_t*>(
            mmap(nullptr, kBody + 2 * page_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        if (map_ == MAP_FAILED) throw std::runtime_error("mmap failed");
        mprotect(map_, page_, PROT_NONE);
        mprotect(map_ + page_ + kBody, page_, PROT_NONE);
        for (std::size_t i = 0; i < kBody; ++i) map_[page_ + i] = static_cast<uint8_t>(i * 151 + 7);
    }
    ~Slot() { munmap(map_, kBody + 2 * page_); }
    // `bytes` ending at the page after, or starting `lead` bytes after the page before.
    uint8_t* at(std::size_t bytes, bool after, std::size_t lead) {
        if (bytes + lead > kBody) throw std::runtime_error("slot too small");
        return after ? map_ + page_ + kBody - bytes : map_ + page_ + lead;
    }

private:
    uint8_t* map_;
    std::size_t page_;
};

char gCase[256];
void onFault(int sig) {
    const char head[] = "\n*** fault in guard-page case: ";
    (void)!write(2, head, sizeof head - 1);
    (void)!write(2, gCase, strnlen(gCase, sizeof gCase));
    (void)!write(2, "\n", 1);
    signal(sig, SIG_DFL);
    raise(sig);
}

std::vector<int> widths() {
    std::vector<int> w;
    for (int i = 1; i <= 200; ++i) w.push_back(i);
    for (int base : {192, 256, 384, 512, 1024})
        for (int d = -2; d <= 2; ++d) w.push_back(base + d);
    return w;
}

class Guard : public ::testing::TestWithParam<kt::Path> {};

TEST_P(Guard, NoExportReadsOrWritesPastItsRows) {
    KT_USE_PATH(GetParam());
    signal(SIGSEGV, onFault);
    signal(SIGBUS, onFault);
    static Slot slots[2][4];
    int calls = 0, done = 0;
    const std::vector<int> ws = widths();
    for (const kx::Row& row : kx::exportTable()) {
        for (int w : ws) {
            for (int h : {1, 2, 3, 4, 5, 8, 9}) {
                for (bool after : {true, false}) {
                    snprintf(gCase, sizeof gCase, "%s path %s width %d height %d, rows %s a guard page", row.name,
                             kt::pathName(GetParam()), w, h, after ? "ending right before" : "starting right after");
                    const KroiSize size{w, h};
                    const KroiRect rect{0, 0, w, h};
                    kx::Call c;
                    c.size = size;
                    c.rect = rect;
                    c.alphaInt = 0x7f;
                    c.alphaFloat = 0.5;
                    const kx::Side* sides[2] = {&row.src, &row.dst};
                    for (int s = 0; s < 2; ++s) {
                        const KroiSize reg = kx::sideRegion(row, s, size, rect);
                        c.planes[s] = sides[s]->planes;
                        for (int p = 0; p < sides[s]->planes; ++p) {
                            const kx::Plane& pl = sides[s]->plane[p];
                            const std::size_t rb = kx::planeRowBytes(pl, reg.width);
                            const int rows = kx::planeRows(pl, reg.height);
                            const std::size_t lead = s == 0 ? kx::readsBeforeRow(row, w) : 0;
                            c.plane[s][p] = slots[s][p].at(rb * rows, after, lead);
                            c.step[s][p] = static_cast<int>(rb);
                        }
                    }
                    const KroStatus st = row.call(c);
                    ++calls;
                    done += st >= 0;
                    ASSERT_TRUE(kx::isContractStatus(st)) << gCase << ": status " << st;
                }
            }
        }
    }
    signal(SIGSEGV, SIG_DFL);
    signal(SIGBUS, SIG_DFL);
    // Most calls must have run: a table whose rows all fail would test nothing.
    EXPECT_GT(done, calls * 3 / 4);
}

INSTANTIATE_TEST_SUITE_P(Paths, Guard, kt::bothPaths(), [](const auto& i) { return kt::pathName(i.param); });

}  // namespace
