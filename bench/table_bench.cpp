// Every export of the table at 1920x1080 on random content, on both feature
// paths: the one benchmark that covers a new export as soon as its row is in
// the table. Rows are packed (step = row bytes); the family benchmarks and
// krocc_peers time aligned frames and the peers.
#include <string>

#include "bench_common.h"
#include "export_table.h"

namespace {

const bool kRegistered = [] {
    constexpr kx::StepMode kTight[4] = {};
    for (const kx::Row& row : kx::exportTable()) {
        for (kb::Path path : {kb::Path::Plain, kb::Path::Vnni}) {
            const std::string name = std::string("table/") + row.name + (path == kb::Path::Vnni ? "/vnni" : "/plain") +
                                     "/1920x1080";
            benchmark::RegisterBenchmark(name.c_str(), [&row, path, kTight](benchmark::State& st) {
                if (path == kb::Path::Vnni && !kb::cpuHasVnni()) return st.SkipWithError("no VNNI on this CPU");
                kb::setPath(path);
                const KroiSize size{kb::kHD.w, kb::kHD.h};
                kx::Job job(row, size, KroiRect{0, 0, size.width, size.height}, kTight, kTight, 7);
                job.call.alphaInt = 0xff;
                job.call.alphaFloat = 1.0;
                const double bytes = static_cast<double>(job.src.region().size() + job.dst.region().size());
                for (auto _ : st) {
                    benchmark::DoNotOptimize(job.run());
                    benchmark::ClobberMemory();
                }
                kb::setCounters(st, size.width, size.height, bytes / (static_cast<double>(size.width) * size.height));
            })->Unit(benchmark::kMicrosecond);
        }
    }
    return true;
}();

}  // namespace
