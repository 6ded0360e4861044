// krocc_peers: registration, the collector of medians and the Markdown table.
//
//   krocc_peers [Google Benchmark flags] [--kp_table=FILE]
//
// Every case is timed at 1920x1080 and 3840x2160, single-threaded: ours (on the
// multiply-add path where the processor has it), memcpy of the bytes that ours
// reads and writes, and each peer conversion. With --kp_table the medians of
// the repetitions of this run are written to FILE as a Markdown table.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include "peers.h"

namespace kp {

bool is8bit(Fmt f) {
    switch (f) {
        case Fmt::P3S16: case Fmt::RGB16: case Fmt::Gray16: case Fmt::RGB32F: case Fmt::Gray32F: return false;
        default: return true;
    }
}

namespace {

struct PlaneShape {
    std::size_t rowBytes;
    int rows;
};

std::vector<PlaneShape> shape(Fmt f, int w, int h) {
    const std::size_t W = static_cast<std::size_t>(w);
    switch (f) {
        case Fmt::RGB: return {{3 * W, h}};
        case Fmt::RGBA: return {{4 * W, h}};
        case Fmt::Gray: return {{W, h}};
        case Fmt::YUY2: return {{2 * W, h}};
        case Fmt::I420: return {{W, h}, {W / 2, h / 2}, {W / 2, h / 2}};
        case Fmt::I420Packed: return {{W, h + h / 2}};
        case Fmt::NV12: return {{W, h}, {W, h / 2}};
        case Fmt::I422: return {{W, h}, {W / 2, h}, {W / 2, h}};
        case Fmt::P3: return {{W, h}, {W, h}, {W, h}};
        case Fmt::P3S16: return {{2 * W, h}, {2 * W, h}, {2 * W, h}};
        case Fmt::RGB16: return {{6 * W, h}};
        case Fmt::Gray16: return {{2 * W, h}};
        case Fmt::RGB32F: return {{12 * W, h}};
        case Fmt::Gray32F: return {{4 * W, h}};
    }
    return {};
}

}  // namespace

double imageBytes(Fmt f, int w, int h) {
    double b = 0;
    for (const PlaneShape& s : shape(f, w, h)) b += static_cast<double>(s.rowBytes) * s.rows;
    return b;
}

Buf::Buf(Fmt f, int w, int h, const Fill& fill, uint32_t seed) {
    const std::vector<PlaneShape> planes = shape(f, w, h);
    frames.reserve(planes.size());
    for (std::size_t i = 0; i < planes.size(); ++i) {
        frames.emplace_back(planes[i].rowBytes, planes[i].rows, seed + static_cast<uint32_t>(i));
        p[i] = frames[i].data();
        step[i] = frames[i].step;
    }
    if (fill.real) {
        const int channels = f == Fmt::Gray32F ? 1 : 3;
        std::mt19937 g(seed);
        std::uniform_real_distribution<float> u(0.f, 1.f);
        for (std::size_t i = 0; i < planes.size(); ++i)
            for (int y = 0; y < planes[i].rows; ++y) {
                auto* row = reinterpret_cast<float*>(frames[i].row(y));
                for (std::size_t x = 0; x < planes[i].rowBytes / 4; ++x) {
                    const int c = static_cast<int>(x % channels);
                    row[x] = fill.lo[c] + (fill.hi[c] - fill.lo[c]) * u(g);
                }
            }
    }
}

namespace {

const kb::Res kSizes[] = {kb::kHD, kb::k4K};

std::string resName(kb::Res r) { return std::to_string(r.w) + "x" + std::to_string(r.h); }
std::string key(const std::string& c, kb::Res r, const std::string& impl) { return c + "/" + resName(r) + "/" + impl; }
std::string memcpyKey(double bytesPerPixel, kb::Res r) {
    char b[32];
    std::snprintf(b, sizeof b, "%gB", bytesPerPixel);
    return std::string("memcpy/") + b + "/" + resName(r);
}

std::set<std::string> gFailed;

void registerImpl(const std::string& name, const Impl& impl, kb::Res r, bool oursPath) {
    benchmark::RegisterBenchmark(name.c_str(), [name, impl, r, oursPath](benchmark::State& st) {
        Buf in(impl.in, r.w, r.h, impl.fill, 11), out(impl.out, r.w, r.h, Fill{}, 23);
        const Run run = impl.make(r.w, r.h);
        if (oursPath && kb::cpuHasVnni()) kb::setPath(kb::Path::Vnni);
        const int first = run ? run(in, out) : -1;
        if (first < 0) {
            gFailed.insert(name);
            st.SkipWithError(("status " + std::to_string(first)).c_str());
            return;
        }
        for (auto _ : st) {
            int s = run(in, out);
            benchmark::DoNotOptimize(s);
            benchmark::ClobberMemory();
        }
        st.counters["ns/px"] = benchmark::Counter(static_cast<double>(r.w) * r.h * static_cast<double>(st.iterations()),
                                                  benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    })->Unit(benchmark::kMicrosecond);
}

void registerMemcpy(double bytesPerPixel, kb::Res r) {
    const std::string name = memcpyKey(bytesPerPixel, r);
    benchmark::RegisterBenchmark(name.c_str(), [bytesPerPixel, r](benchmark::State& st) {
        const std::size_t bytes = static_cast<std::size_t>(std::llround(bytesPerPixel / 2 * r.w * r.h));
        kb::Frame a(bytes, 1, 5), b(bytes, 1, 6);
        for (auto _ : st) {
            std::memcpy(b.data(), a.data(), bytes);
            benchmark::ClobberMemory();
        }
        st.counters["ns/px"] = benchmark::Counter(static_cast<double>(r.w) * r.h * static_cast<double>(st.iterations()),
                                                  benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    })->Unit(benchmark::kMicrosecond);
}

double oursBytes(const Case& c, kb::Res r) {
    return (imageBytes(c.ours.in, r.w, r.h) + imageBytes(c.ours.out, r.w, r.h)) / (static_cast<double>(r.w) * r.h);
}

// Keeps the console output and collects the time of every repetition.
class Collector : public benchmark::ConsoleReporter {
public:
    std::map<std::string, std::vector<double>> cpuNs, realNs, medianCpuNs;
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& r : runs) {
            const std::string& n = r.run_name.function_name;
            if (gFailed.count(n) || r.iterations <= 0) continue;
            const double it = static_cast<double>(r.iterations);
            if (r.run_type == Run::RT_Iteration) {
                cpuNs[n].push_back(r.cpu_accumulated_time / it * 1e9);
                realNs[n].push_back(r.real_accumulated_time / it * 1e9);
            } else if (r.aggregate_name == "median") {
                medianCpuNs[n].push_back(r.cpu_accumulated_time / it * 1e9);
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }
    // Median CPU time of one call, in ns; NaN when the benchmark did not run.
    double median(const std::string& n) const {
        auto it = cpuNs.find(n);
        std::vector<double> v;
        if (it != cpuNs.end()) v = it->second;
        else if (auto m = medianCpuNs.find(n); m != medianCpuNs.end()) v = m->second;
        if (v.empty()) return NAN;
        std::sort(v.begin(), v.end());
        const std::size_t k = v.size() / 2;
        return v.size() % 2 ? v[k] : (v[k - 1] + v[k]) / 2;
    }
    std::size_t reps(const std::string& n) const {
        auto it = cpuNs.find(n);
        return it == cpuNs.end() ? 0 : it->second.size();
    }
};

std::string fmt(double v, const char* f = "%.3f") {
    if (std::isnan(v)) return "-";
    char b[64];
    std::snprintf(b, sizeof b, f, v);
    return b;
}

void writeTable(const std::string& path, const Cases& cs, const Collector& col) {
    std::ostringstream o;
    std::size_t minReps = SIZE_MAX;
    o << "| case | frame | ours ns/px | fastest peer | peer ns/px | ours/peer | ours/memcpy | targets |\n"
         "|---|---|---:|---|---:|---:|---:|---|\n";
    std::ostringstream detail;
    detail << "| case | frame | implementation | ns/px |\n|---|---|---|---:|\n";
    int missedPeer = 0, missedCopy = 0, rows = 0;
    for (const Case& c : cs.present)
        for (kb::Res r : kSizes) {
            const double px = static_cast<double>(r.w) * r.h;
            const std::string ok = key(c.name, r, "ours");
            const double ours = col.median(ok) / px;
            if (std::isnan(ours)) continue;
            minReps = std::min(minReps, col.reps(ok));
            ++rows;
            const double copy = col.median(memcpyKey(oursBytes(c, r), r)) / px;
            std::string best;
            double bestNs = NAN;
            for (const Impl& p : c.peers) {
                const double t = col.median(key(c.name, r, p.name)) / px;
                if (std::isnan(t)) continue;
                detail << "| " << c.name << " | " << resName(r) << " | " << p.name << (p.ceiling ? " (ceiling)" : "")
                       << " | " << fmt(t) << " |\n";
                if (std::isnan(bestNs) || t < bestNs) bestNs = t, best = p.name + (p.ceiling ? " (ceiling)" : "");
            }
            const double rp = ours / bestNs, rc = ours / copy;
            std::string targets;
            if (!std::isnan(rp)) {
                const bool met = rp <= 0.8;
                targets += met ? "peer: met" : "peer: MISSED";
                missedPeer += !met;
            }
            const bool eight = is8bit(c.ours.in) && is8bit(c.ours.out);
            if (eight && r.w == 3840 && !std::isnan(rc)) {
                const bool met = rc <= 2.0;
                targets += std::string(targets.empty() ? "" : "; ") + (met ? "memcpy: met" : "memcpy: MISSED");
                missedCopy += !met;
            }
            o << "| " << c.name << " | " << resName(r) << " | " << fmt(ours) << " | " << (best.empty() ? "-" : best)
              << " | " << fmt(bestNs) << " | " << fmt(rp) << " | " << fmt(rc) << " | "
              << (targets.empty() ? "-" : targets) << " |\n";
        }

    std::ofstream f(path);
    f << "Median thread CPU time of " << (minReps == SIZE_MAX ? 0 : minReps)
      << " or more repetitions per entry, one process, one thread; ns/px is nanoseconds per pixel of the frame. "
         "Ours runs the multiply-add (VNNI) path where a function has two and the processor has it ("
      << (kb::cpuHasVnni() ? "it does here" : "it does not here") << "). memcpy moves half the bytes that ours reads "
         "and writes, so that it reads and writes the same number. Targets: at most 0.8 times the fastest peer; for "
         "8-bit conversions at 3840x2160 at most 2 times memcpy.\n\n";
    f << o.str() << "\n";
    f << rows << " rows; peer target missed in " << missedPeer << ", memcpy target missed in " << missedCopy << ".\n\n";
    f << "### Every peer\n\n" << detail.str() << "\n";
    f << "### Peers\n\n";
    for (const PeerInfo& p : peerInfo()) f << "- " << p.name << ": " << (p.usable ? "used" : "skipped") << "; " << p.note << "\n";
    f << "\n### Pairings waiting for their function in krocc.h\n\n";
    if (cs.waiting.empty()) f << "none\n";
    for (const std::string& n : cs.waiting) f << "- kroi" << n << "\n";
    if (!cs.mismatched.empty()) {
        f << "\n### Exported, but the benchmark's call does not match the prototype (fix the case)\n\n";
        for (const std::string& n : cs.mismatched) f << "- kroi" << n << "\n";
    }
}

}  // namespace
}  // namespace kp

int main(int argc, char** argv) {
    std::string table;
    int n = 1;
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], "--kp_table=", 11) == 0) table = argv[i] + 11;
        else argv[n++] = argv[i];
    }
    argc = n;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    for (const kp::PeerInfo& p : kp::peerInfo())
        std::fprintf(stderr, "peer %s: %s; %s\n", p.name.c_str(), p.usable ? "used" : "skipped", p.note.c_str());
    const kp::Cases cs = kp::buildCases();
    for (const std::string& w : cs.waiting) std::fprintf(stderr, "waiting for kroi%s in krocc.h\n", w.c_str());
    for (const std::string& m : cs.mismatched)
        std::fprintf(stderr, "WARNING: kroi%s is exported but the case's call does not match its prototype\n", m.c_str());

    std::set<std::string> copies;
    for (const kp::Case& c : cs.present)
        for (kb::Res r : kp::kSizes) {
            kp::registerImpl(kp::key(c.name, r, "ours"), c.ours, r, true);
            const std::string mk = kp::memcpyKey(kp::oursBytes(c, r), r);
            if (copies.insert(mk).second) kp::registerMemcpy(kp::oursBytes(c, r), r);
            for (const kp::Impl& p : c.peers) kp::registerImpl(kp::key(c.name, r, p.name), p, r, false);
        }

    kp::Collector col;
    benchmark::RunSpecifiedBenchmarks(&col);
    if (!table.empty()) kp::writeTable(table, cs, col);
    benchmark::Shutdown();
    return 0;
}
